// number: inline doubles and boxed multiprecision handles, and the process-wide defaults.
#include "number/number.h"

#include <algorithm>
#include <cmath>

#include "number/mpnumber.h"

namespace corbel {
namespace {

// Read whenever a number is made without an explicit precision.
unsigned long default_precision = 52;
bool default_force = false;

bool is_double_body(const numberrepbody& b) {
  return b.gettype() == numbertype::doublenumber;
}

}  // namespace

template <class Op>
number& number::mutate(Op op) {
  if (isboxed()) {
    handle().mutate(op);
    return *this;
  }
  doublenumber local(inlinedouble());
  numberrepbody& result = op(static_cast<numberrepbody&>(local));
  if (&result == &local)
    bits_ = encode(local.getelement());
  else
    adopt(result);
  return *this;
}

template <class F>
decltype(auto) number::withbody(const number& x, F f) {
  if (x.isboxed()) return f(x.body());
  const doublenumber local(x.inlinedouble());
  return f(static_cast<const numberrepbody&>(local));
}

void number::adopt(numberrepbody& b) {
  // Operations on a double body return it or a new multiprecision body; the value of any
  // other double body is copied.
  if (is_double_body(b)) {
    setinline(b.todouble());
    return;
  }
  numberrephandle* h;
  try {
    h = new numberrephandle(b);
  } catch (...) {
    if (b.getcount() == 0) delete &b;  // a body just made, owned by no one yet
    throw;
  }
  release();
  bits_ = box(h);
}

number::number(double v) : number(v, default_precision, default_force) {}

number::number(double v, unsigned long precision, bool force) : bits_(0) {
  if (!force && precision < 53)
    bits_ = encode(v);
  else
    bits_ = box(new numberrephandle(v, precision, force));
}

number::number(const numberrephandle& handle) : bits_(0) {
  if (is_double_body(handle.getbody()))
    bits_ = encode(handle.getbody().todouble());
  else
    bits_ = box(new numberrephandle(handle));
}

number& number::operator=(const number& other) {
  if (!other.isboxed()) {
    setinline(other.inlinedouble());
  } else if (isboxed()) {
    handle() = other.handle();
  } else {
    bits_ = box(new numberrephandle(other.handle()));
  }
  return *this;
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

bool number::myisfinite() const {
  return withbody(*this, [](const numberrepbody& b) { return b.myisfinite(); });
}
bool number::myisinf() const {
  return withbody(*this, [](const numberrepbody& b) { return b.myisinf(); });
}
long number::unbiasedexponent() const {
  return withbody(*this, [](const numberrepbody& b) { return b.unbiasedexponent(); });
}
void number::disp() const {
  withbody(*this, [](const numberrepbody& b) { b.disp(); });
}

// Two inline doubles take the IEEE operation of the double body directly.
#define CORBEL_ARITHMETIC(op)                                                            \
  number& number::operator op##=(const number& r) {                                      \
    if (!isboxed() && !r.isboxed()) {                                                    \
      bits_ = encode(inlinedouble() op r.inlinedouble());                                \
      return *this;                                                                      \
    }                                                                                    \
    return withbody(r, [&](const numberrepbody& rb) -> number& {                         \
      return mutate([&](numberrepbody& b) -> numberrepbody& { return b op## = rb; });    \
    });                                                                                  \
  }
CORBEL_ARITHMETIC(+)
CORBEL_ARITHMETIC(-)
CORBEL_ARITHMETIC(*)
CORBEL_ARITHMETIC(/)
#undef CORBEL_ARITHMETIC

#define CORBEL_COMPARISON(op)                                                           \
  bool number::operator op(const number& r) const {                                     \
    if (!isboxed() && !r.isboxed()) return inlinedouble() op r.inlinedouble();          \
    return withbody(*this, [&](const numberrepbody& lb) {                               \
      return withbody(r, [&](const numberrepbody& rb) { return lb op rb; });            \
    });                                                                                 \
  }
CORBEL_COMPARISON(>)
CORBEL_COMPARISON(<)
CORBEL_COMPARISON(>=)
CORBEL_COMPARISON(<=)
CORBEL_COMPARISON(==)
CORBEL_COMPARISON(!=)
#undef CORBEL_COMPARISON

number& number::negate() {
  if (!isboxed()) {
    bits_ = encode(-inlinedouble());
    return *this;
  }
  return mutate([](numberrepbody& b) -> numberrepbody& { return b.negate(); });
}
number& number::pow2(long n) {
  return mutate([n](numberrepbody& b) -> numberrepbody& { return b.pow2(n); });
}
number& number::abs() {
  return mutate([](numberrepbody& b) -> numberrepbody& { return b.abs(); });
}
number& number::abs(const number& x) {
  setvalue(x);
  return abs();
}
number& number::_hypot(const number& a, const number& b) {
  return withbody(a, [&](const numberrepbody& ab) -> number& {
    return withbody(b, [&](const numberrepbody& bb) -> number& {
      return mutate([&](numberrepbody& s) -> numberrepbody& { return s._hypot(ab, bb); });
    });
  });
}
number& number::mod(const number& divisor) {
  return withbody(divisor, [&](const numberrepbody& d) -> number& {
    return mutate([&](numberrepbody& b) -> numberrepbody& { return b.mod(d); });
  });
}
number& number::setprecision(unsigned long precision, bool force) {
  return mutate([&](numberrepbody& b) -> numberrepbody& { return b.setprecision(precision, force); });
}
number& number::setvalue(const number& x) {
  if (!isboxed() && !x.isboxed()) {
    bits_ = x.bits_;
    return *this;
  }
  return withbody(x, [&](const numberrepbody& xb) -> number& {
    return mutate([&](numberrepbody& b) -> numberrepbody& { return b.setvalue(xb); });
  });
}
number& number::setvalue(double v) {
  if (!isboxed()) {
    bits_ = encode(v);
    return *this;
  }
  return mutate([v](numberrepbody& b) -> numberrepbody& { return b.setvalue(v); });
}
number& number::setvalue(const number& x, double slope, double bias) {
  setvalue(x);
  if (slope != 1.0) *this *= number(slope);
  if (bias != 0.0) *this += number(bias);
  return *this;
}
number& number::setvalue(const unsigned int* words, int nwords, bool issigned, int wordlength,
                         double slope, int exponent, double bias) {
  return mutate([&](numberrepbody& b) -> numberrepbody& {
    return b.setvalue(words, nwords, issigned, wordlength, slope, exponent, bias);
  });
}
number& number::setvalue(const unsigned int* words, int nwords, bool issigned, int wordlength,
                         int fractionlength) {
  return mutate([&](numberrepbody& b) -> numberrepbody& {
    return b.setvalue(words, nwords, issigned, wordlength, fractionlength);
  });
}
number& number::setvalue(mpz_srcptr integer, long exponent) {
  const unsigned long bits = mpz_sizeinbase(integer, 2);
  if (!default_force && gridPrecision(bits, exponent) <= 52) {
    // Exact: the integer fits the mantissa and the scaling stays in the normal range.
    setinline(std::ldexp(mpz_get_d(integer), static_cast<int>(exponent)));
    return *this;
  }
  // A fresh body, not yet shared, is written directly and then adopted.
  auto* body = new mpnumber(0.0, std::max({bits, default_precision, 53UL}));
  mpfr_set_z_2exp(body->getmodifiableelement(), integer, exponent, MPFR_RNDN);
  adopt(*body);
  return *this;
}

number number::multiprecision(mpz_srcptr integer, long exponent, unsigned long precision) {
  auto* body = new mpnumber(0.0, std::max<unsigned long>(mpz_sizeinbase(integer, 2), precision));
  mpfr_set_z_2exp(body->getmodifiableelement(), integer, exponent, MPFR_RNDN);
  number n;
  n.adopt(*body);
  return n;
}

void number::getvalue(mpq_ptr q) const {
  if (!isboxed()) {
    // As for a multiprecision body, an infinity or NaN has no rational value and reads 0
    // (GMP would abort the process on it).
    const double d = inlinedouble();
    std::isfinite(d) ? mpq_set_d(q, d) : mpq_set_ui(q, 0, 1);
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
  return mutate([&](numberrepbody& b) -> numberrepbody& {
    return b.stripscaling(slope, exponent, bias);
  });
}

#define CORBEL_ROUNDING(name)                                                    \
  number& number::name() {                                                       \
    return mutate([](numberrepbody& b) -> numberrepbody& { return b.name(); });  \
  }                                                                              \
  number& number::name(long n) {                                                 \
    return mutate([n](numberrepbody& b) -> numberrepbody& { return b.name(n); }); \
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
  return mutate([&](numberrepbody& b) -> numberrepbody& {
    return b.bitcmp(s, wl, slope, e, bias, mask, two);
  });
}
number& number::bitcmp(bool s, int wl, double slope, int e, double bias, mpz_srcptr mask,
                       mpfr_srcptr two) {
  return mutate([&](numberrepbody& b) -> numberrepbody& {
    return b.bitcmp(s, wl, slope, e, bias, mask, two);
  });
}

// The two-operand bit operations: the same body operation for both forms of the masks.
#define CORBEL_BITWISE(name, bodyop, Two)                                                   \
  number& number::name(const number& o, bool s, int wl, double slope, int e, double bias,  \
                       Two two) {                                                          \
    return withbody(o, [&](const numberrepbody& ob) -> number& {                           \
      return mutate([&](numberrepbody& b) -> numberrepbody& {                              \
        return b.bodyop(ob, s, wl, slope, e, bias, two);                                   \
      });                                                                                  \
    });                                                                                    \
  }
CORBEL_BITWISE(doublebitand, fibitand, std::uint64_t)
CORBEL_BITWISE(mpbitand, fibitand, mpfr_srcptr)
CORBEL_BITWISE(doublebitor, fibitor, std::uint64_t)
CORBEL_BITWISE(mpbitor, fibitor, mpfr_srcptr)
CORBEL_BITWISE(doublebitxor, bitxor, std::uint64_t)
CORBEL_BITWISE(mpbitxor, bitxor, mpfr_srcptr)
#undef CORBEL_BITWISE

unsigned char number::bitget(long p, bool s, int wl, double slope, int e, double bias,
                             std::uint64_t two) const {
  return withbody(*this, [&](const numberrepbody& b) {
    return b.bitget(p, s, wl, slope, e, bias, two);
  });
}
unsigned char number::bitget(long p, bool s, int wl, double slope, int e, double bias,
                             mpfr_srcptr two) const {
  return withbody(*this, [&](const numberrepbody& b) {
    return b.bitget(p, s, wl, slope, e, bias, two);
  });
}
number& number::bitset(long p, bool v, bool s, int wl, double slope, int e, double bias,
                       std::uint64_t two) {
  return mutate([&](numberrepbody& b) -> numberrepbody& {
    return b.bitset(p, v, s, wl, slope, e, bias, two);
  });
}
number& number::bitset(long p, bool v, bool s, int wl, double slope, int e, double bias,
                       mpfr_srcptr two) {
  return mutate([&](numberrepbody& b) -> numberrepbody& {
    return b.bitset(p, v, s, wl, slope, e, bias, two);
  });
}

#define CORBEL_FIXED2INT(name, T)                                              \
  T number::name(long wl, long fl) const {                                     \
    return withbody(*this, [&](const numberrepbody& b) { return b.name(wl, fl); }); \
  }
CORBEL_FIXED2INT(fixed2int8, std::int8_t)
CORBEL_FIXED2INT(fixed2int16, std::int16_t)
CORBEL_FIXED2INT(fixed2int32, std::int32_t)
CORBEL_FIXED2INT(fixed2int64, std::int64_t)
CORBEL_FIXED2INT(fixed2uint8, std::uint8_t)
CORBEL_FIXED2INT(fixed2uint16, std::uint16_t)
CORBEL_FIXED2INT(fixed2uint32, std::uint32_t)
CORBEL_FIXED2INT(fixed2uint64, std::uint64_t)
#undef CORBEL_FIXED2INT

}  // namespace corbel
