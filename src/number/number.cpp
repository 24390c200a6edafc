// number: the value layer over numberrephandle, and the process-wide defaults.
#include "number/number.h"

#include <algorithm>
#include <cmath>

#include "number/doublenumber.h"
#include "number/mpnumber.h"

namespace corbel {
namespace {

// Read whenever a number is made without an explicit precision.
unsigned long default_precision = 52;
bool default_force = false;

}  // namespace

number::number(double v) : handle_(new numberrephandle(v, default_precision, default_force)) {}

number::number(double v, unsigned long precision, bool force)
    : handle_(new numberrephandle(v, precision, force)) {}

number::number(const numberrephandle& handle) : handle_(new numberrephandle(handle)) {}

number::number(const number& other) : handle_(new numberrephandle(*other.handle_)) {}

number& number::operator=(const number& other) {
  *handle_ = *other.handle_;
  return *this;
}

number& number::operator=(double v) {
  return setvalue(v);
}

void number::setDefaultPrecision(unsigned long precision, bool force) {
  default_precision = precision;
  default_force = force;
}
void number::setDefaultForceMultiplePrecision(bool force) {
  default_force = force;
}
unsigned long number::getDefaultPrecision() {
  return default_precision;
}
bool number::getDefaultForceMultiplePrecision() {
  return default_force;
}

number& number::operator+=(const number& r) {
  *handle_ += *r.handle_;
  return *this;
}
number& number::operator-=(const number& r) {
  *handle_ -= *r.handle_;
  return *this;
}
number& number::operator*=(const number& r) {
  *handle_ *= *r.handle_;
  return *this;
}
number& number::operator/=(const number& r) {
  *handle_ /= *r.handle_;
  return *this;
}
number& number::negate() {
  handle_->negate();
  return *this;
}
number& number::pow2(long n) {
  handle_->pow2(n);
  return *this;
}
number& number::abs() {
  handle_->abs();
  return *this;
}
number& number::abs(const number& x) {
  handle_->setvalue(*x.handle_);
  handle_->abs();
  return *this;
}
number& number::_hypot(const number& a, const number& b) {
  handle_->_hypot(*a.handle_, *b.handle_);
  return *this;
}
number& number::mod(const number& divisor) {
  handle_->mod(*divisor.handle_);
  return *this;
}
number& number::setprecision(unsigned long precision, bool force) {
  handle_->setprecision(precision, force);
  return *this;
}
number& number::setvalue(const number& x) {
  handle_->setvalue(*x.handle_);
  return *this;
}
number& number::setvalue(double v) {
  handle_->setvalue(v);
  return *this;
}
number& number::setvalue(const number& x, double slope, double bias) {
  setvalue(x);
  if (slope != 1.0) *this *= number(slope);
  if (bias != 0.0) *this += number(bias);
  return *this;
}
number& number::setvalue(const unsigned int* words, int nwords, bool issigned, int wordlength,
                         double slope, int exponent, double bias) {
  handle_->setvalue(words, nwords, issigned, wordlength, slope, exponent, bias);
  return *this;
}
number& number::setvalue(const unsigned int* words, int nwords, bool issigned, int wordlength,
                         int fractionlength) {
  handle_->setvalue(words, nwords, issigned, wordlength, fractionlength);
  return *this;
}
number& number::setvalue(mpz_srcptr integer, long exponent) {
  const unsigned long bits = mpz_sizeinbase(integer, 2);
  if (bits <= 52 && !default_force && exponent > -1000 && exponent < 1000) {
    // Exact: the integer fits the mantissa and the scaling stays in the normal range.
    *handle_ = numberrephandle(std::ldexp(mpz_get_d(integer), static_cast<int>(exponent)),
                               std::max(bits, 1UL), false);
    return *this;
  }
  // A fresh body, not yet shared, is written directly and then adopted.
  numberrephandle h(0.0, std::max({bits, default_precision, 53UL}), true);
  mpfr_set_z_2exp(static_cast<mpnumber&>(h.getbody()).getmodifiableelement(), integer, exponent,
                  MPFR_RNDN);
  *handle_ = h;
  return *this;
}

void number::getvalue(mpq_ptr q) const {
  if (gettype() == numbertype::doublenumber) {
    mpq_set_d(q, static_cast<const doublenumber&>(body()).getelement());
    return;
  }
  mpz_t z;
  mpz_init(z);
  const mpfr_exp_t e = mpfr_get_z_2exp(z, static_cast<const mpnumber&>(body()).getelement());
  mpq_set_z(q, z);
  if (e > 0) mpq_mul_2exp(q, q, static_cast<mp_bitcnt_t>(e));
  if (e < 0) mpq_div_2exp(q, q, static_cast<mp_bitcnt_t>(-e));
  mpz_clear(z);
}

number& number::stripscaling(double slope, int exponent, double bias) {
  handle_->stripscaling(slope, exponent, bias);
  return *this;
}

#define CORBEL_ROUNDING(name)    \
  number& number::name() {       \
    handle_->name();             \
    return *this;                \
  }                              \
  number& number::name(long n) { \
    handle_->name(n);            \
    return *this;                \
  }
CORBEL_ROUNDING(ceil)
CORBEL_ROUNDING(convergent)
CORBEL_ROUNDING(fix)
CORBEL_ROUNDING(floor)
CORBEL_ROUNDING(nearest)
CORBEL_ROUNDING(round)
#undef CORBEL_ROUNDING

number& number::bitcmp(bool s, int wl, double slope, int e, double bias, std::uint64_t mask,
                       std::uint64_t two) {
  handle_->bitcmp(s, wl, slope, e, bias, mask, two);
  return *this;
}
number& number::bitcmp(bool s, int wl, double slope, int e, double bias, mpz_srcptr mask,
                       mpfr_srcptr two) {
  handle_->bitcmp(s, wl, slope, e, bias, mask, two);
  return *this;
}
number& number::doublebitand(const number& o, bool s, int wl, double slope, int e, double bias,
                             std::uint64_t two) {
  handle_->fibitand(*o.handle_, s, wl, slope, e, bias, two);
  return *this;
}
number& number::mpbitand(const number& o, bool s, int wl, double slope, int e, double bias,
                         mpfr_srcptr two) {
  handle_->fibitand(*o.handle_, s, wl, slope, e, bias, two);
  return *this;
}
number& number::doublebitor(const number& o, bool s, int wl, double slope, int e, double bias,
                            std::uint64_t two) {
  handle_->fibitor(*o.handle_, s, wl, slope, e, bias, two);
  return *this;
}
number& number::mpbitor(const number& o, bool s, int wl, double slope, int e, double bias,
                        mpfr_srcptr two) {
  handle_->fibitor(*o.handle_, s, wl, slope, e, bias, two);
  return *this;
}
number& number::doublebitxor(const number& o, bool s, int wl, double slope, int e, double bias,
                             std::uint64_t two) {
  handle_->bitxor(*o.handle_, s, wl, slope, e, bias, two);
  return *this;
}
number& number::mpbitxor(const number& o, bool s, int wl, double slope, int e, double bias,
                         mpfr_srcptr two) {
  handle_->bitxor(*o.handle_, s, wl, slope, e, bias, two);
  return *this;
}
unsigned char number::bitget(long p, bool s, int wl, double slope, int e, double bias,
                             std::uint64_t two) const {
  return handle_->bitget(p, s, wl, slope, e, bias, two);
}
unsigned char number::bitget(long p, bool s, int wl, double slope, int e, double bias,
                             mpfr_srcptr two) const {
  return handle_->bitget(p, s, wl, slope, e, bias, two);
}
number& number::bitset(long p, bool v, bool s, int wl, double slope, int e, double bias,
                       std::uint64_t two) {
  handle_->bitset(p, v, s, wl, slope, e, bias, two);
  return *this;
}
number& number::bitset(long p, bool v, bool s, int wl, double slope, int e, double bias,
                       mpfr_srcptr two) {
  handle_->bitset(p, v, s, wl, slope, e, bias, two);
  return *this;
}

}  // namespace corbel
