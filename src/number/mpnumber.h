// mpnumber: the multiprecision body of a number, one MPFR float (at least 32 bits), with
// GMP integers for the stored-integer bit operations.
#pragma once

#include <cstdint>

#include "number/numberrepbody.h"
#include "number/pool.h"

namespace corbel {

// Precision rules: construction gives max(p, 32) bits; setprecision(p) re-rounds to
// max(p, 32) + 1 bits; copies keep the source's precision. So no multiprecision value
// has fewer than 32 bits. Every arithmetic result rounds to nearest at this value's
// precision; the scaled setters and the bit operations widen the value when its
// stored integer needs more bits than it has, so that they stay exact.
class mpnumber final : public numberrepbody, public Pooled<mpnumber> {
 public:
  mpnumber(double v, unsigned long precision);
  mpnumber(const mpnumber& other);
  ~mpnumber() override;

  mpfr_srcptr getelement() const { return value_; }
  mpfr_ptr getmodifiableelement() { return value_; }
  long getexponent() const { return mpfr_get_exp(value_); }
  void setexponent(long e) { mpfr_set_exp(value_, e); }
  void setprecision(unsigned long p);

  double todouble() const override { return mpfr_get_d(value_, MPFR_RNDN); }
  numberrepbody* clone() const override { return new mpnumber(*this); }
  numberrepbody& setvalue(const unsigned int* words, int nwords, bool issigned, int wordlength,
                          double slope, int exponent, double bias) override;
  numberrepbody& setvalue(const unsigned int* words, int nwords, bool issigned, int wordlength,
                          int fractionlength) override;
  numberrepbody& setvalue(double v) override;
  using numberrepbody::setvalue;
  unsigned long getprecision() const override { return mpfr_get_prec(value_); }
  char sign() const override;
  numberrepbody& negate() override;
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

  bool myisnan() const { return mpfr_nan_p(value_) != 0; }
  bool myisfinite() const override { return mpfr_number_p(value_) != 0; }
  bool myisinf() const override { return mpfr_inf_p(value_) != 0; }
  bool iszero() const override { return mpfr_zero_p(value_) != 0; }
  bool notzero() const { return !iszero(); }
  bool isnegative() const override { return mpfr_sgn(value_) < 0; }
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
  double tosingle() const override;  // one rounding, straight to single

  // Floor-style remainder with the sign of the divisor; a zero divisor leaves the value.
  mpnumber& mod(const mpnumber& divisor);

  // The value scaled by 2^-exponent, rounded to an integer (halves away from zero) and,
  // when negative, increased by 2^wordlength: the two's-complement pattern.
  void convertToUnsignedInteger(mpz_ptr result, double slope, int exponent, double bias,
                                mpfr_srcptr twoToTheWordLength) const;

  // The value times 2^fractionlength truncated toward zero, narrowed to T by keeping the
  // low bits; a value outside [-2^63, 2^64) gives 0x8000000000000000 before narrowing.
  template <class T>
  T fixed2int(long fractionlength) const;

  // Initialises x and sets it to exactly 2^n.
  static void twoToTheN(mpfr_ptr x, long n);
  // Sets m to 2^wordlength - 1.
  static void bitcmpXorMask(mpz_ptr m, int wordlength);

 private:
  // Replaces the value by (integer - 2^wordlength when signed and its top bit is set)
  // times 2^exponent, widening the precision to hold the integer exactly.
  void setFromPattern(mpz_srcptr pattern, bool issigned, int wordlength, int exponent);
  // Sets the value to an integer times 2^exponent, widening the precision when needed.
  void setFromInteger(mpz_srcptr integer, int exponent);

  mpfr_ptr value_;  // owned: allocated from the C heap, initialised, cleared and freed here
};

}  // namespace corbel
