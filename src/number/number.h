// number: the exact scalar that every value of the arithmetic is held in.
//
// A number is one 64-bit word. A value on a double body is that double itself, held inline:
// making, copying and dropping it touch no heap and call nothing virtual, and an array of
// such numbers is an array of plain doubles that whole-array loops read and write directly.
// A multiprecision value is "boxed": the word is a tag in the high 16 bits (the pattern of
// a negative signalling NaN, which no arithmetic produces) over a pointer to a handle that
// the number owns alone; copies share the handle's body until one of them changes.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "number/doublenumber.h"
#include "number/numberrephandle.h"
#include "number/numbertype.h"

namespace corbel {

// A value needing at most 52 bits (and not forced to multiprecision) lives in a double;
// otherwise in a multiprecision float of the requested precision. Arithmetic between the
// two kinds promotes to multiprecision. Operations work in place and return *this; the
// value-returning operators copy their left operand first and never change it.
//
// Every operation on an inline double runs the double body's own code on a body made on
// the stack, so the two kinds of storage cannot disagree; the commonest ones are written
// out in number.cpp as the same IEEE operations.
class number {
 public:
  // 0.0 as a double: the all-zero word, so zero-filled memory holds double zeros.
  number() noexcept : bits_(0) {}
  // v at the process-wide default precision and force flag.
  explicit number(double v);
  number(double v, unsigned long precision, bool force);
  explicit number(const numberrephandle& handle);
  number(const number& other) : bits_(other.bits_) {
    if (other.isboxed()) bits_ = box(new numberrephandle(other.handle()));
  }
  number(number&& other) noexcept : bits_(other.bits_) { other.bits_ = 0; }
  // A number on a double body holding v, whatever the process-wide defaults are: what a
  // default-made number holds after setvalue(v).
  static number ondouble(double v) noexcept {
    number n;
    n.bits_ = encode(v);
    return n;
  }
  number& operator=(const number& other);
  number& operator=(number&& other) noexcept {
    if (this != &other) {
      release();
      bits_ = other.bits_;
      other.bits_ = 0;
    }
    return *this;
  }
  number& operator=(double v) { return setvalue(v); }
  ~number() { release(); }

  // Process-wide defaults for numbers made without an explicit precision.
  static void setDefaultPrecision(unsigned long precision, bool force);
  static void setDefaultForceMultiplePrecision(bool force);
  static unsigned long getDefaultPrecision();
  // The precision that holds every multiple of 2^exponent below 2^(bits + exponent) in
  // magnitude exactly: `bits` when a double body can (52 bits or fewer on a grid well inside
  // the double's normal exponent range), otherwise at least 53, a multiprecision body.
  static unsigned long gridPrecision(unsigned long bits, long exponent) {
    const bool inDouble =
        bits <= 52 && exponent > -1000 && exponent + static_cast<long>(bits) < 1000;
    return inDouble ? bits : (bits > 53 ? bits : 53);
  }
  static bool getDefaultForceMultiplePrecision();

  // ---- Storage --------------------------------------------------------------------------
  // Whether the value is a double held inline (every double-bodied number is).
  bool isdouble() const noexcept { return !isboxed(); }
  // The inline double; only for isdouble() numbers.
  double inlinedouble() const noexcept { return std::bit_cast<double>(bits_); }
  // Writes v as an inline double into a slot that holds no multiprecision value (raw or
  // zero-filled memory, or a double): the whole-array loops store results this way.
  static void placedouble(number* slot, double v) noexcept { slot->bits_ = encode(v); }
  // Whether the n numbers at p are all inline doubles.
  static bool alldoubles(const number* p, std::size_t n) noexcept {
    std::uint64_t boxed = 0;
    for (std::size_t i = 0; i < n; ++i) boxed += (p[i].bits_ & ~kPayload) == kBoxTag;
    return boxed == 0;
  }
  // The handle of a multiprecision value; only for !isdouble() numbers.
  const numberrephandle& gethandle() const { return handle(); }

  numbertype gettype() const { return isboxed() ? body().gettype() : numbertype::doublenumber; }
  double todouble() const { return isboxed() ? body().todouble() : inlinedouble(); }
  // The value rounded to single precision and widened back.
  double tosingle() const {
    return isboxed() ? body().tosingle() : static_cast<double>(static_cast<float>(inlinedouble()));
  }
  char sign() const { return isboxed() ? body().sign() : doublenumber(inlinedouble()).sign(); }
  unsigned long getprecision() const { return isboxed() ? body().getprecision() : 52; }
  // The number of numbers sharing the value; an inline double is never shared.
  std::int32_t getcount() const { return isboxed() ? body().getcount() : 1; }
  bool isnegative() const { return isboxed() ? body().isnegative() : inlinedouble() < 0.0; }
  bool iszero() const { return isboxed() ? body().iszero() : inlinedouble() == 0.0; }
  bool myisfinite() const;
  bool myisinf() const;
  long unbiasedexponent() const;
  void disp() const;

  number& operator+=(const number& r);
  number& operator-=(const number& r);
  number& operator*=(const number& r);
  number& operator/=(const number& r);
  number& negate();
  number& pow2(long n);
  number& abs();
  number& abs(const number& x);  // this = |x|
  number& _hypot(const number& a, const number& b);
  number& mod(const number& divisor);
  number& setprecision(unsigned long precision, bool force);
  number& setvalue(const number& x);
  number& setvalue(double v);
  // this = x * slope + bias, the slope and bias made at the default precision; a slope of
  // exactly 1 and a bias of 0 are not applied.
  number& setvalue(const number& x, double slope, double bias);
  // From a little-endian array of 32-bit words holding a stored integer.
  number& setvalue(const unsigned int* words, int nwords, bool issigned, int wordlength,
                   double slope, int exponent, double bias);
  number& setvalue(const unsigned int* words, int nwords, bool issigned, int wordlength,
                   int fractionlength);
  // Exactly integer * 2^exponent, at a precision that holds the integer (a double when it
  // needs at most 52 bits and multiprecision is not forced by default).
  number& setvalue(mpz_srcptr integer, long exponent);
  // A multiprecision number of at least `precision` bits, and as many as the integer needs,
  // holding integer * 2^exponent exactly.
  static number multiprecision(mpz_srcptr integer, long exponent, unsigned long precision);
  // The exact value as a rational; an infinity or NaN reads 0.
  void getvalue(mpq_ptr q) const;
  // Turns the real-world value into its stored integer.
  number& stripscaling(double slope, int exponent, double bias);

  number& ceil();
  number& ceil(long n);
  number& convergent();
  number& convergent(long n);
  number& fix();
  number& fix(long n);
  number& floor();
  number& floor(long n);
  number& nearest();
  number& nearest(long n);
  number& round();
  number& round(long n);

  // Stored-integer bit operations. The 64-bit forms are for double-backed values of word
  // lengths below 64 (twoToTheWordLength = 2^wordlength); the multiprecision forms are
  // for multiprecision values.
  number& bitcmp(bool issigned, int wordlength, double slope, int exponent, double bias,
                 std::uint64_t xormask, std::uint64_t twoToTheWordLength);
  number& bitcmp(bool issigned, int wordlength, double slope, int exponent, double bias,
                 mpz_srcptr xormask, mpfr_srcptr twoToTheWordLength);
  number& doublebitand(const number& other, bool issigned, int wordlength, double slope,
                       int exponent, double bias, std::uint64_t twoToTheWordLength);
  number& mpbitand(const number& other, bool issigned, int wordlength, double slope, int exponent,
                   double bias, mpfr_srcptr twoToTheWordLength);
  number& doublebitor(const number& other, bool issigned, int wordlength, double slope,
                      int exponent, double bias, std::uint64_t twoToTheWordLength);
  number& mpbitor(const number& other, bool issigned, int wordlength, double slope, int exponent,
                  double bias, mpfr_srcptr twoToTheWordLength);
  number& doublebitxor(const number& other, bool issigned, int wordlength, double slope,
                       int exponent, double bias, std::uint64_t twoToTheWordLength);
  number& mpbitxor(const number& other, bool issigned, int wordlength, double slope, int exponent,
                   double bias, mpfr_srcptr twoToTheWordLength);
  unsigned char bitget(long position, bool issigned, int wordlength, double slope, int exponent,
                       double bias, std::uint64_t twoToTheWordLength) const;
  unsigned char bitget(long position, bool issigned, int wordlength, double slope, int exponent,
                       double bias, mpfr_srcptr twoToTheWordLength) const;
  number& bitset(long position, bool bitvalue, bool issigned, int wordlength, double slope,
                 int exponent, double bias, std::uint64_t twoToTheWordLength);
  number& bitset(long position, bool bitvalue, bool issigned, int wordlength, double slope,
                 int exponent, double bias, mpfr_srcptr twoToTheWordLength);

  std::int8_t fixed2int8(long wl, long fl) const;
  std::int16_t fixed2int16(long wl, long fl) const;
  std::int32_t fixed2int32(long wl, long fl) const;
  std::int64_t fixed2int64(long wl, long fl) const;
  std::uint8_t fixed2uint8(long wl, long fl) const;
  std::uint16_t fixed2uint16(long wl, long fl) const;
  std::uint32_t fixed2uint32(long wl, long fl) const;
  std::uint64_t fixed2uint64(long wl, long fl) const;

  bool operator>(const number& r) const;
  bool operator<(const number& r) const;
  bool operator>=(const number& r) const;
  bool operator<=(const number& r) const;
  bool operator==(const number& r) const;
  bool operator!=(const number& r) const;

  number operator+(const number& r) const { return number(*this) += r; }
  number operator-(const number& r) const { return number(*this) -= r; }
  number operator*(const number& r) const { return number(*this) *= r; }
  number operator/(const number& r) const { return number(*this) /= r; }
  number operator-() const { return number(*this).negate(); }

 private:
  // The high 16 bits of a boxed word; the low 48 hold the handle's address.
  static constexpr std::uint64_t kBoxTag = 0xFFF6'0000'0000'0000;
  static constexpr std::uint64_t kPayload = 0x0000'FFFF'FFFF'FFFF;
  // The quiet NaN that stands for any NaN whose pattern would read as a box.
  static constexpr std::uint64_t kQuietNaN = 0x7FF8'0000'0000'0000;

  static std::uint64_t encode(double v) noexcept {
    const std::uint64_t b = std::bit_cast<std::uint64_t>(v);
    return (b & ~kPayload) == kBoxTag ? kQuietNaN : b;
  }
  static std::uint64_t box(numberrephandle* h) noexcept {
    return kBoxTag | reinterpret_cast<std::uintptr_t>(h);
  }
  bool isboxed() const noexcept { return (bits_ & ~kPayload) == kBoxTag; }
  numberrephandle& handle() const noexcept {
    return *reinterpret_cast<numberrephandle*>(bits_ & kPayload);
  }
  const numberrepbody& body() const { return handle().getbody(); }
  void release() noexcept {
    if (isboxed()) delete &handle();
  }
  void setinline(double v) noexcept {
    release();
    bits_ = encode(v);
  }
  // Makes this number hold `b`, a body made or returned by an operation: inline when it is
  // a double body, else shared through a new handle.
  void adopt(numberrepbody& b);

  // Runs a body operation op(body) -> result body on this number's value: on the shared
  // body of a multiprecision value (copy-on-write, then adoption of a promoted result), or
  // on a double body made on the stack for an inline value.
  template <class Op>
  number& mutate(Op op);
  // Calls f with the body of x: its shared body, or a stack double body for an inline value.
  template <class F>
  static decltype(auto) withbody(const number& x, F f);

  std::uint64_t bits_;
};
}  // namespace corbel
