// numberops: the four representation pairs of every two-body operation.
#include "number/numberops.h"

#include <algorithm>
#include <cmath>

#include "number/doublenumber.h"
#include "number/mpnumber.h"

namespace corbel {
namespace {

bool is_double(const numberrepbody& b) {
  return b.gettype() == numbertype::doublenumber;
}
doublenumber& as_double(numberrepbody& b) {
  return static_cast<doublenumber&>(b);
}
const doublenumber& as_double(const numberrepbody& b) {
  return static_cast<const doublenumber&>(b);
}
mpnumber& as_mp(numberrepbody& b) {
  return static_cast<mpnumber&>(b);
}
const mpnumber& as_mp(const numberrepbody& b) {
  return static_cast<const mpnumber&>(b);
}

// Each operation once for doubles and once for two multiprecision values.
struct Plus {
  static double apply(double a, double b) { return a + b; }
  static void apply(mpnumber& a, const mpnumber& b) {
    mpfr_add(a.getmodifiableelement(), a.getelement(), b.getelement(), MPFR_RNDN);
  }
};
struct Minus {
  static double apply(double a, double b) { return a - b; }
  static void apply(mpnumber& a, const mpnumber& b) {
    mpfr_sub(a.getmodifiableelement(), a.getelement(), b.getelement(), MPFR_RNDN);
  }
};
struct Times {
  static double apply(double a, double b) { return a * b; }
  static void apply(mpnumber& a, const mpnumber& b) {
    mpfr_mul(a.getmodifiableelement(), a.getelement(), b.getelement(), MPFR_RNDN);
  }
};
struct Divide {
  static double apply(double a, double b) { return a / b; }
  static void apply(mpnumber& a, const mpnumber& b) {
    mpfr_div(a.getmodifiableelement(), a.getelement(), b.getelement(), MPFR_RNDN);
  }
};
struct Mod {
  static double apply(double a, double b) { return doublenumber::mod(a, b); }
  static void apply(mpnumber& a, const mpnumber& b) { a.mod(b); }
};
struct Set {
  static double apply(double, double b) { return b; }
  static void apply(mpnumber& a, const mpnumber& b) {
    mpfr_set(a.getmodifiableelement(), b.getelement(), MPFR_RNDN);
  }
};

struct Less {
  static bool apply(double a, double b) { return a < b; }
  static bool apply(mpfr_srcptr a, mpfr_srcptr b) { return mpfr_less_p(a, b) != 0; }
};
struct LessEqual {
  static bool apply(double a, double b) { return a <= b; }
  static bool apply(mpfr_srcptr a, mpfr_srcptr b) { return mpfr_lessequal_p(a, b) != 0; }
};
struct Greater {
  static bool apply(double a, double b) { return a > b; }
  static bool apply(mpfr_srcptr a, mpfr_srcptr b) { return mpfr_greater_p(a, b) != 0; }
};
struct GreaterEqual {
  static bool apply(double a, double b) { return a >= b; }
  static bool apply(mpfr_srcptr a, mpfr_srcptr b) { return mpfr_greaterequal_p(a, b) != 0; }
};
struct Equal {
  static bool apply(double a, double b) { return a == b; }
  static bool apply(mpfr_srcptr a, mpfr_srcptr b) { return mpfr_equal_p(a, b) != 0; }
};
struct NotEqual {
  // NaN is unequal to everything, itself included.
  static bool apply(double a, double b) { return a != b; }
  static bool apply(mpfr_srcptr a, mpfr_srcptr b) { return mpfr_equal_p(a, b) == 0; }
};

}  // namespace

template <class Op>
numberrepbody& numberops::arithmetic(numberrepbody& l, const numberrepbody& r) {
  if (is_double(l)) {
    if (is_double(r)) {
      doublenumber& d = as_double(l);
      d.setelement(Op::apply(d.getelement(), as_double(r).getelement()));
      return l;
    }
    // Promotion: the result lives in a new body at the right operand's precision.
    auto* promoted = new mpnumber(l.todouble(), r.getprecision());
    try {
      Op::apply(*promoted, as_mp(r));
    } catch (...) {
      delete promoted;
      throw;
    }
    return *promoted;
  }
  if (is_double(r)) {
    const mpnumber rounded(r.todouble(), l.getprecision());
    Op::apply(as_mp(l), rounded);
    return l;
  }
  Op::apply(as_mp(l), as_mp(r));
  return l;
}

template <class Cmp>
bool numberops::compare(const numberrepbody& l, const numberrepbody& r) {
  const bool ld = is_double(l), rd = is_double(r);
  if (ld && rd) return Cmp::apply(as_double(l).getelement(), as_double(r).getelement());
  if (!ld && !rd) return Cmp::apply(as_mp(l).getelement(), as_mp(r).getelement());
  if (ld) {
    const mpnumber lm(l.todouble(), r.getprecision());
    return Cmp::apply(lm.getelement(), as_mp(r).getelement());
  }
  const mpnumber rm(r.todouble(), l.getprecision());
  return Cmp::apply(as_mp(l).getelement(), rm.getelement());
}

numberrepbody& numberops::plusequals(numberrepbody& l, const numberrepbody& r) {
  return arithmetic<Plus>(l, r);
}
numberrepbody& numberops::minusequals(numberrepbody& l, const numberrepbody& r) {
  return arithmetic<Minus>(l, r);
}
numberrepbody& numberops::timesequals(numberrepbody& l, const numberrepbody& r) {
  return arithmetic<Times>(l, r);
}
numberrepbody& numberops::divideequals(numberrepbody& l, const numberrepbody& r) {
  return arithmetic<Divide>(l, r);
}
numberrepbody& numberops::mod(numberrepbody& l, const numberrepbody& r) {
  return arithmetic<Mod>(l, r);
}
numberrepbody& numberops::setvalue(numberrepbody& l, const numberrepbody& r) {
  return arithmetic<Set>(l, r);
}
bool numberops::lessthan(const numberrepbody& l, const numberrepbody& r) {
  return compare<Less>(l, r);
}
bool numberops::lessthanorequal(const numberrepbody& l, const numberrepbody& r) {
  return compare<LessEqual>(l, r);
}
bool numberops::greaterthan(const numberrepbody& l, const numberrepbody& r) {
  return compare<Greater>(l, r);
}
bool numberops::greaterthanorequal(const numberrepbody& l, const numberrepbody& r) {
  return compare<GreaterEqual>(l, r);
}
bool numberops::equal(const numberrepbody& l, const numberrepbody& r) {
  return compare<Equal>(l, r);
}
bool numberops::notequal(const numberrepbody& l, const numberrepbody& r) {
  return compare<NotEqual>(l, r);
}

numberrepbody& numberops::_hypot(numberrepbody& self, const numberrepbody& a,
                                 const numberrepbody& b) {
  if (is_double(self) && is_double(a) && is_double(b)) {
    as_double(self).setelement(std::hypot(a.todouble(), b.todouble()));
    return self;
  }
  unsigned long precision = 0;
  for (const numberrepbody* x : {static_cast<const numberrepbody*>(&self), &a, &b})
    if (!is_double(*x)) precision = std::max(precision, x->getprecision());
  const mpnumber ma = is_double(a) ? mpnumber(a.todouble(), precision) : as_mp(a);
  const mpnumber mb = is_double(b) ? mpnumber(b.todouble(), precision) : as_mp(b);
  mpnumber* target = is_double(self) ? new mpnumber(0.0, precision) : &as_mp(self);
  mpfr_hypot(target->getmodifiableelement(), ma.getelement(), mb.getelement(), MPFR_RNDN);
  return *target;
}

numberrepbody& numberops::setprecision(numberrepbody& b, unsigned long precision, bool force) {
  if (force) return *new mpnumber(b.todouble(), precision);
  if (!is_double(b)) {
    as_mp(b).setprecision(precision);  // never demoted
    return b;
  }
  if (precision > 52) return *new mpnumber(b.todouble(), precision);
  return b;
}

template <class T>
T numberops::fixed2int(const numberrepbody& b, long fractionlength) {
  return is_double(b) ? as_double(b).fixed2int<T>(fractionlength)
                      : as_mp(b).fixed2int<T>(fractionlength);
}

// The word length does not enter the conversion: the target type's width does.
std::int8_t numberops::fixed2int8(const numberrepbody& b, long, long fl) {
  return fixed2int<std::int8_t>(b, fl);
}
std::int16_t numberops::fixed2int16(const numberrepbody& b, long, long fl) {
  return fixed2int<std::int16_t>(b, fl);
}
std::int32_t numberops::fixed2int32(const numberrepbody& b, long, long fl) {
  return fixed2int<std::int32_t>(b, fl);
}
std::int64_t numberops::fixed2int64(const numberrepbody& b, long, long fl) {
  return fixed2int<std::int64_t>(b, fl);
}
std::uint8_t numberops::fixed2uint8(const numberrepbody& b, long, long fl) {
  return fixed2int<std::uint8_t>(b, fl);
}
std::uint16_t numberops::fixed2uint16(const numberrepbody& b, long, long fl) {
  return fixed2int<std::uint16_t>(b, fl);
}
std::uint32_t numberops::fixed2uint32(const numberrepbody& b, long, long fl) {
  return fixed2int<std::uint32_t>(b, fl);
}
std::uint64_t numberops::fixed2uint64(const numberrepbody& b, long, long fl) {
  return fixed2int<std::uint64_t>(b, fl);
}

// The body's two-operand members forward here.
numberrepbody& numberrepbody::setvalue(const numberrepbody& o) {
  return numberops::setvalue(*this, o);
}
numberrepbody& numberrepbody::operator+=(const numberrepbody& r) {
  return numberops::plusequals(*this, r);
}
numberrepbody& numberrepbody::operator-=(const numberrepbody& r) {
  return numberops::minusequals(*this, r);
}
numberrepbody& numberrepbody::operator*=(const numberrepbody& r) {
  return numberops::timesequals(*this, r);
}
numberrepbody& numberrepbody::operator/=(const numberrepbody& r) {
  return numberops::divideequals(*this, r);
}
bool numberrepbody::operator<(const numberrepbody& r) const {
  return numberops::lessthan(*this, r);
}
bool numberrepbody::operator<=(const numberrepbody& r) const {
  return numberops::lessthanorequal(*this, r);
}
bool numberrepbody::operator>(const numberrepbody& r) const {
  return numberops::greaterthan(*this, r);
}
bool numberrepbody::operator>=(const numberrepbody& r) const {
  return numberops::greaterthanorequal(*this, r);
}
bool numberrepbody::operator==(const numberrepbody& r) const {
  return numberops::equal(*this, r);
}
bool numberrepbody::operator!=(const numberrepbody& r) const {
  return numberops::notequal(*this, r);
}
numberrepbody& numberrepbody::_hypot(const numberrepbody& a, const numberrepbody& b) {
  return numberops::_hypot(*this, a, b);
}
numberrepbody& numberrepbody::setprecision(unsigned long p, bool force) {
  return numberops::setprecision(*this, p, force);
}
numberrepbody& numberrepbody::mod(const numberrepbody& d) {
  return numberops::mod(*this, d);
}
std::int8_t numberrepbody::fixed2int8(long w, long f) const {
  return numberops::fixed2int8(*this, w, f);
}
std::int16_t numberrepbody::fixed2int16(long w, long f) const {
  return numberops::fixed2int16(*this, w, f);
}
std::int32_t numberrepbody::fixed2int32(long w, long f) const {
  return numberops::fixed2int32(*this, w, f);
}
std::int64_t numberrepbody::fixed2int64(long w, long f) const {
  return numberops::fixed2int64(*this, w, f);
}
std::uint8_t numberrepbody::fixed2uint8(long w, long f) const {
  return numberops::fixed2uint8(*this, w, f);
}
std::uint16_t numberrepbody::fixed2uint16(long w, long f) const {
  return numberops::fixed2uint16(*this, w, f);
}
std::uint32_t numberrepbody::fixed2uint32(long w, long f) const {
  return numberops::fixed2uint32(*this, w, f);
}
std::uint64_t numberrepbody::fixed2uint64(long w, long f) const {
  return numberops::fixed2uint64(*this, w, f);
}

}  // namespace corbel
