// doublenumber: the fast body of a number, one IEEE double, used whenever a value needs
// at most 52 bits and multiprecision is not forced.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

#include "number/numberrepbody.h"
#include "number/pool.h"

namespace corbel {

class doublenumber final : public numberrepbody, public Pooled<doublenumber> {
 public:
  explicit doublenumber(double v = 0.0) : numberrepbody(numbertype::doublenumber), value_(v) {}
  doublenumber(const doublenumber& other) : numberrepbody(other), value_(other.value_) {}

  double getelement() const { return value_; }
  void setelement(double v) { value_ = v; }
  // Precision is fixed at 52; promotion to multiprecision is numberops' work.
  void setprecision(unsigned long) {}

  double todouble() const override { return value_; }
  numberrepbody* clone() const override { return new doublenumber(*this); }
  numberrepbody& setvalue(const unsigned int* words, int nwords, bool issigned, int wordlength,
                          double slope, int exponent, double bias) override;
  numberrepbody& setvalue(const unsigned int* words, int nwords, bool issigned, int wordlength,
                          int fractionlength) override;
  numberrepbody& setvalue(double v) override {
    value_ = v;
    return *this;
  }
  using numberrepbody::setvalue;
  unsigned long getprecision() const override { return 52; }
  char sign() const override { return value_ < 0 ? -1 : (value_ > 0 ? 1 : 0); }
  numberrepbody& negate() override {
    value_ = -value_;
    return *this;
  }
  numberrepbody& pow2(long n) override;
  numberrepbody& abs() override;
  numberrepbody& stripscaling(double slope, int exponent, double bias) override;

  numberrepbody& bitcmp(bool issigned, int wordlength, double slope, int exponent, double bias,
                        mpz_srcptr xormask, mpfr_srcptr twoToTheWordLength) override;
  numberrepbody& bitcmp(bool issigned, int wordlength, double slope, int exponent, double bias,
                        std::uint64_t xormask, std::uint64_t twoToTheWordLength) override;
  numberrepbody& fibitand(const numberrepbody& other, bool issigned, int wordlength, double slope,
                          int exponent, double bias, mpfr_srcptr twoToTheWordLength) override;
  numberrepbody& fibitand(const numberrepbody& other, bool issigned, int wordlength, double slope,
                          int exponent, double bias, std::uint64_t twoToTheWordLength) override;
  numberrepbody& fibitor(const numberrepbody& other, bool issigned, int wordlength, double slope,
                         int exponent, double bias, mpfr_srcptr twoToTheWordLength) override;
  numberrepbody& fibitor(const numberrepbody& other, bool issigned, int wordlength, double slope,
                         int exponent, double bias, std::uint64_t twoToTheWordLength) override;
  numberrepbody& bitxor(const numberrepbody& other, bool issigned, int wordlength, double slope,
                        int exponent, double bias, mpfr_srcptr twoToTheWordLength) override;
  numberrepbody& bitxor(const numberrepbody& other, bool issigned, int wordlength, double slope,
                        int exponent, double bias, std::uint64_t twoToTheWordLength) override;
  unsigned char bitget(long position, bool issigned, int wordlength, double slope, int exponent,
                       double bias, mpfr_srcptr twoToTheWordLength) const override;
  unsigned char bitget(long position, bool issigned, int wordlength, double slope, int exponent,
                       double bias, std::uint64_t twoToTheWordLength) const override;
  numberrepbody& bitset(long position, bool bitvalue, bool issigned, int wordlength, double slope,
                        int exponent, double bias, mpfr_srcptr twoToTheWordLength) override;
  numberrepbody& bitset(long position, bool bitvalue, bool issigned, int wordlength, double slope,
                        int exponent, double bias, std::uint64_t twoToTheWordLength) override;

  bool myisfinite() const override;
  bool myisinf() const override;
  bool iszero() const override { return value_ == 0.0; }
  bool notzero() const { return value_ != 0.0; }
  bool isnegative() const override { return value_ < 0.0; }
  long unbiasedexponent() const override;

  numberrepbody& ceil(long n) override;
  numberrepbody& ceil() override;
  numberrepbody& convergent(long n) override;
  numberrepbody& convergent() override;
  numberrepbody& fix(long n) override;
  numberrepbody& fix() override;
  numberrepbody& floor(long n) override;
  numberrepbody& floor() override;
  numberrepbody& nearest(long n) override;
  numberrepbody& nearest() override;
  numberrepbody& round(long n) override;
  numberrepbody& round() override;

  void disp() const override;
  double tosingle() const override { return static_cast<double>(static_cast<float>(value_)); }

  // The two's-complement stored integer of the value (scaled by 2^-exponent) as an
  // unsigned 64-bit pattern; 0x8000000000000000 when it does not fit.
  std::uint64_t convertToUnsignedInteger(double slope, int exponent, double bias,
                                         std::uint64_t twoToTheWordLength) const;

  // 2^wordlength - 1; all ones for 64.
  static std::uint64_t bitcmpXorMask(int wordlength);

  // The value times 2^fractionlength truncated toward zero into 64 bits, then narrowed
  // to T by keeping the low bits. Out of the signed 64-bit range the pattern is
  // 0x8000000000000000 before narrowing.
  template <class T>
  T fixed2int(long fractionlength) const;

  // The floor-style remainder of two doubles, with the sign of the divisor.
  static double mod(double x, double y);

  // The integer roundings and the power-of-two scaling on plain doubles. The body's
  // operations are these; bulk paths that work on raw doubles call them too, so both give
  // the same bits.
  static double ceilOf(double x) { return std::ceil(x); }
  static double floorOf(double x) { return std::floor(x); }
  // Toward zero; a zero result is +0 whatever the sign of the input.
  static double fixOf(double x) { return std::trunc(x) + 0.0; }
  // floor(x + 1/2): halves go toward +infinity. A select rather than a branch on the
  // fraction, which is random in bulk data; at infinities x - floor(x) is NaN, so they
  // and zeros of either sign come back as they are.
  static double nearestOf(double x) {
    const double f = std::floor(x);
    return x - f >= 0.5 ? f + 1.0 : f;
  }
  // Nearest integer, halves to the even neighbour.
  static double convergentOf(double x) {
    const double f = std::floor(x);
    const double d = x - f;
    const bool up = d > 0.5 || (d == 0.5 && std::fmod(f, 2.0) != 0.0);
    return up ? f + 1.0 : f;
  }
  static double roundOf(double x);
  // Within the normal exponent range 2^n is a double, and one multiplication rounds
  // exactly as ldexp does (once, to nearest); outside it ldexp handles the extremes.
  static double pow2Of(double x, long n) {
    if (n >= -1022 && n <= 1023)
      return x * std::bit_cast<double>(static_cast<std::uint64_t>(1023 + n) << 52);
    return pow2OfExtreme(x, n);
  }

 private:
  static double pow2OfExtreme(double x, long n);

  double value_;
};

}  // namespace corbel
