// numberrepbody: the shared, reference-counted body of a number. Its two kinds are
// doublenumber (an IEEE double) and mpnumber (a multiprecision float).
#pragma once

#include <gmp.h>
#include <mpfr.h>

#include <cstdint>

#include "number/numbertype.h"

namespace corbel {

// Every mutating operation works in place and returns the body that holds the result.
// That is this body, except where an operation promotes a double value to
// multiprecision: then a new body (count 0) comes back and the caller's handle adopts it.
//
// The scaled operations take, in this order: signedness, word length, slope, fixed
// exponent (the power of two of the scaling, minus the fraction length) and bias. The bit
// operations come in two forms: 64-bit masks for word lengths below 64 (double bodies),
// and multiprecision masks (multiprecision bodies). Each body refuses the other's form
// with an internal error.
class numberrepbody {
 public:
  virtual ~numberrepbody() = default;

  virtual double todouble() const = 0;
  virtual numberrepbody* clone() const = 0;
  virtual numberrepbody& setvalue(const unsigned int* words, int nwords, bool issigned,
                                  int wordlength, double slope, int exponent, double bias) = 0;
  virtual numberrepbody& setvalue(const unsigned int* words, int nwords, bool issigned,
                                  int wordlength, int fractionlength) = 0;
  virtual numberrepbody& setvalue(double v) = 0;
  virtual unsigned long getprecision() const = 0;
  virtual char sign() const = 0;
  virtual numberrepbody& negate() = 0;
  virtual numberrepbody& pow2(long n) = 0;
  virtual numberrepbody& abs() = 0;
  virtual numberrepbody& stripscaling(double slope, int exponent, double bias) = 0;

  virtual numberrepbody& bitcmp(bool issigned, int wordlength, double slope, int exponent,
                                double bias, mpz_srcptr xormask,
                                mpfr_srcptr twoToTheWordLength) = 0;
  virtual numberrepbody& bitcmp(bool issigned, int wordlength, double slope, int exponent,
                                double bias, std::uint64_t xormask,
                                std::uint64_t twoToTheWordLength) = 0;
  virtual numberrepbody& fibitand(const numberrepbody& other, bool issigned, int wordlength,
                                  double slope, int exponent, double bias,
                                  mpfr_srcptr twoToTheWordLength) = 0;
  virtual numberrepbody& fibitand(const numberrepbody& other, bool issigned, int wordlength,
                                  double slope, int exponent, double bias,
                                  std::uint64_t twoToTheWordLength) = 0;
  virtual numberrepbody& fibitor(const numberrepbody& other, bool issigned, int wordlength,
                                 double slope, int exponent, double bias,
                                 mpfr_srcptr twoToTheWordLength) = 0;
  virtual numberrepbody& fibitor(const numberrepbody& other, bool issigned, int wordlength,
                                 double slope, int exponent, double bias,
                                 std::uint64_t twoToTheWordLength) = 0;
  virtual numberrepbody& bitxor(const numberrepbody& other, bool issigned, int wordlength,
                                double slope, int exponent, double bias,
                                mpfr_srcptr twoToTheWordLength) = 0;
  virtual numberrepbody& bitxor(const numberrepbody& other, bool issigned, int wordlength,
                                double slope, int exponent, double bias,
                                std::uint64_t twoToTheWordLength) = 0;
  virtual unsigned char bitget(long position, bool issigned, int wordlength, double slope,
                               int exponent, double bias, mpfr_srcptr twoToTheWordLength) const = 0;
  virtual unsigned char bitget(long position, bool issigned, int wordlength, double slope,
                               int exponent, double bias,
                               std::uint64_t twoToTheWordLength) const = 0;
  virtual numberrepbody& bitset(long position, bool bitvalue, bool issigned, int wordlength,
                                double slope, int exponent, double bias,
                                mpfr_srcptr twoToTheWordLength) = 0;
  virtual numberrepbody& bitset(long position, bool bitvalue, bool issigned, int wordlength,
                                double slope, int exponent, double bias,
                                std::uint64_t twoToTheWordLength) = 0;

  virtual bool myisfinite() const = 0;
  virtual bool myisinf() const = 0;
  virtual bool iszero() const = 0;
  virtual bool isnegative() const = 0;
  virtual long unbiasedexponent() const = 0;

  // Roundings to an integer, and (with n) to a multiple of 2^-n.
  virtual numberrepbody& ceil(long n) = 0;
  virtual numberrepbody& ceil() = 0;
  virtual numberrepbody& convergent(long n) = 0;
  virtual numberrepbody& convergent() = 0;
  virtual numberrepbody& fix(long n) = 0;
  virtual numberrepbody& fix() = 0;
  virtual numberrepbody& floor(long n) = 0;
  virtual numberrepbody& floor() = 0;
  virtual numberrepbody& nearest(long n) = 0;
  virtual numberrepbody& nearest() = 0;
  virtual numberrepbody& round(long n) = 0;
  virtual numberrepbody& round() = 0;

  virtual void disp() const = 0;

  // The value rounded to single precision and widened back to double.
  virtual double tosingle() const = 0;

  // Operations on two bodies; numberops chooses the arithmetic by the pair of kinds.
  numberrepbody& setvalue(const numberrepbody& other);
  numberrepbody& operator+=(const numberrepbody& r);
  numberrepbody& operator-=(const numberrepbody& r);
  numberrepbody& operator*=(const numberrepbody& r);
  numberrepbody& operator/=(const numberrepbody& r);
  bool operator<(const numberrepbody& r) const;
  bool operator<=(const numberrepbody& r) const;
  bool operator>(const numberrepbody& r) const;
  bool operator>=(const numberrepbody& r) const;
  bool operator==(const numberrepbody& r) const;
  bool operator!=(const numberrepbody& r) const;
  numberrepbody& _hypot(const numberrepbody& a, const numberrepbody& b);
  numberrepbody& setprecision(unsigned long precision, bool force);
  numberrepbody& mod(const numberrepbody& divisor);

  std::int8_t fixed2int8(long wordlength, long fractionlength) const;
  std::int16_t fixed2int16(long wordlength, long fractionlength) const;
  std::int32_t fixed2int32(long wordlength, long fractionlength) const;
  std::int64_t fixed2int64(long wordlength, long fractionlength) const;
  std::uint8_t fixed2uint8(long wordlength, long fractionlength) const;
  std::uint16_t fixed2uint16(long wordlength, long fractionlength) const;
  std::uint32_t fixed2uint32(long wordlength, long fractionlength) const;
  std::uint64_t fixed2uint64(long wordlength, long fractionlength) const;

  std::int32_t getcount() const { return count_; }
  void setcount(std::int32_t c) { count_ = c; }
  void incrcount() { ++count_; }
  // Returns the count after the decrement.
  std::int32_t decrcount() { return --count_; }
  numbertype gettype() const { return type_; }

 protected:
  explicit numberrepbody(numbertype t) : type_(t) {}
  numberrepbody(const numberrepbody& other) : count_(0), type_(other.type_) {}
  numberrepbody& operator=(const numberrepbody&) = delete;

 private:
  std::int32_t count_ = 0;  // handles that reference this body; 0 until one adopts it
  numbertype type_;
};

}  // namespace corbel
