// number: the exact scalar that every value of the arithmetic is held in. A small value
// that owns a handle; copies share the body until one of them changes.
#pragma once

#include <cstdint>

#include "number/numberrephandle.h"
#include "number/numbertype.h"

namespace corbel {

// A value needing at most 52 bits (and not forced to multiprecision) lives in a double;
// otherwise in a multiprecision float of the requested precision. Arithmetic between the
// two kinds promotes to multiprecision. Operations work in place and return *this; the
// value-returning operators copy their left operand first and never change it.
class number {
 public:
  // 0.0 as a double.
  number() : handle_(new numberrephandle()) {}
  // v at the process-wide default precision and force flag.
  explicit number(double v);
  number(double v, unsigned long precision, bool force);
  explicit number(const numberrephandle& handle);
  number(const number& other);
  // A number on a double body holding v, whatever the process-wide defaults are: what a
  // default-made number holds after setvalue(v).
  static number ondouble(double v) { return number(new numberrephandle(v)); }
  number& operator=(const number& other);
  number& operator=(double v);
  virtual ~number() { delete handle_; }

  // Process-wide defaults for numbers made without an explicit precision.
  static void setDefaultPrecision(unsigned long precision, bool force);
  static void setDefaultForceMultiplePrecision(bool force);
  static unsigned long getDefaultPrecision();
  static bool getDefaultForceMultiplePrecision();

  numbertype gettype() const { return body().gettype(); }
  double todouble() const { return body().todouble(); }
  // The value rounded to single precision and widened back.
  double tosingle() const { return body().tosingle(); }
  char sign() const { return body().sign(); }
  unsigned long getprecision() const { return body().getprecision(); }
  std::int32_t getcount() const { return body().getcount(); }
  bool isnegative() const { return body().isnegative(); }
  bool myisfinite() const { return body().myisfinite(); }
  bool myisinf() const { return body().myisinf(); }
  bool iszero() const { return body().iszero(); }
  long unbiasedexponent() const { return body().unbiasedexponent(); }
  void disp() const { body().disp(); }
  const numberrephandle& gethandle() const { return *handle_; }

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
  // The exact value as a rational (finite values only).
  void getvalue(mpq_ptr q) const;
  // Turns the real-world value into its stored integer.
  virtual number& stripscaling(double slope, int exponent, double bias);

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

  std::int8_t fixed2int8(long wl, long fl) const { return body().fixed2int8(wl, fl); }
  std::int16_t fixed2int16(long wl, long fl) const { return body().fixed2int16(wl, fl); }
  std::int32_t fixed2int32(long wl, long fl) const { return body().fixed2int32(wl, fl); }
  std::int64_t fixed2int64(long wl, long fl) const { return body().fixed2int64(wl, fl); }
  std::uint8_t fixed2uint8(long wl, long fl) const { return body().fixed2uint8(wl, fl); }
  std::uint16_t fixed2uint16(long wl, long fl) const { return body().fixed2uint16(wl, fl); }
  std::uint32_t fixed2uint32(long wl, long fl) const { return body().fixed2uint32(wl, fl); }
  std::uint64_t fixed2uint64(long wl, long fl) const { return body().fixed2uint64(wl, fl); }

  bool operator>(const number& r) const { return body() > r.body(); }
  bool operator<(const number& r) const { return body() < r.body(); }
  bool operator>=(const number& r) const { return body() >= r.body(); }
  bool operator<=(const number& r) const { return body() <= r.body(); }
  bool operator==(const number& r) const { return body() == r.body(); }
  bool operator!=(const number& r) const { return body() != r.body(); }

  number operator+(const number& r) const { return number(*this) += r; }
  number operator-(const number& r) const { return number(*this) -= r; }
  number operator*(const number& r) const { return number(*this) *= r; }
  number operator/(const number& r) const { return number(*this) /= r; }
  number operator-() const { return number(*this).negate(); }

 private:
  explicit number(numberrephandle* adopted) : handle_(adopted) {}
  const numberrepbody& body() const { return handle_->getbody(); }

  numberrephandle* handle_;  // owned alone; never null
};

}  // namespace corbel
