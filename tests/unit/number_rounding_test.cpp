// The six roundings of numbers, at an integer and at n fraction bits, on both bodies,
// against an exact rational reference.
#include <gmp.h>
#include <gtest/gtest.h>
#include <mpfr.h>

#include <random>
#include <string>

#include "number/mpnumber.h"
#include "number/number.h"

namespace corbel {
namespace {

enum class Mode { Ceil, Convergent, Fix, Floor, Nearest, Round };
constexpr Mode kModes[] = {Mode::Ceil,  Mode::Convergent, Mode::Fix,
                           Mode::Floor, Mode::Nearest,    Mode::Round};

const char* name(Mode m) {
  static const char* names[] = {"ceil", "convergent", "fix", "floor", "nearest", "round"};
  return names[static_cast<int>(m)];
}

number& apply(number& x, Mode m) {
  switch (m) {
    case Mode::Ceil:
      return x.ceil();
    case Mode::Convergent:
      return x.convergent();
    case Mode::Fix:
      return x.fix();
    case Mode::Floor:
      return x.floor();
    case Mode::Nearest:
      return x.nearest();
    case Mode::Round:
      return x.round();
  }
  return x;
}

number& apply(number& x, Mode m, long n) {
  switch (m) {
    case Mode::Ceil:
      return x.ceil(n);
    case Mode::Convergent:
      return x.convergent(n);
    case Mode::Fix:
      return x.fix(n);
    case Mode::Floor:
      return x.floor(n);
    case Mode::Nearest:
      return x.nearest(n);
    case Mode::Round:
      return x.round(n);
  }
  return x;
}

// The exact value of a number as a rational.
void to_rational(const number& x, mpq_t q) {
  if (x.gettype() == numbertype::doublenumber) {
    mpq_set_d(q, x.todouble());
  } else {
    mpfr_get_q(q, static_cast<const mpnumber&>(x.gethandle().getbody()).getelement());
  }
}

// Reference: q * 2^n rounded to an integer by the mode's rule, times 2^-n.
void reference(mpq_t q, Mode m, long n) {
  mpq_t s, half;
  mpq_inits(s, half, nullptr);
  if (n >= 0)
    mpq_mul_2exp(s, q, static_cast<mp_bitcnt_t>(n));
  else
    mpq_div_2exp(s, q, static_cast<mp_bitcnt_t>(-n));
  mpq_set_ui(half, 1, 2);
  mpz_t f, r;
  mpz_inits(f, r, nullptr);
  mpz_fdiv_q(f, mpq_numref(s), mpq_denref(s));
  mpq_t frac;
  mpq_init(frac);
  mpq_set_z(frac, f);
  mpq_sub(frac, s, frac);  // s - floor(s), in [0, 1)
  const int cmpHalf = mpq_cmp(frac, half);
  const bool exact = mpq_sgn(frac) == 0;
  mpz_set(r, f);
  switch (m) {
    case Mode::Floor:
      break;
    case Mode::Ceil:
      if (!exact) mpz_add_ui(r, f, 1);
      break;
    case Mode::Fix:
      if (!exact && mpq_sgn(s) < 0) mpz_add_ui(r, f, 1);
      break;
    case Mode::Nearest:
      if (cmpHalf >= 0) mpz_add_ui(r, f, 1);
      break;
    case Mode::Round:
      if (cmpHalf > 0 || (cmpHalf == 0 && mpq_sgn(s) > 0)) mpz_add_ui(r, f, 1);
      break;
    case Mode::Convergent:
      if (cmpHalf > 0 || (cmpHalf == 0 && mpz_odd_p(f))) mpz_add_ui(r, f, 1);
      break;
  }
  mpq_set_z(q, r);
  if (n >= 0)
    mpq_div_2exp(q, q, static_cast<mp_bitcnt_t>(n));
  else
    mpq_mul_2exp(q, q, static_cast<mp_bitcnt_t>(-n));
  mpq_clears(s, half, frac, nullptr);
  mpz_clears(f, r, nullptr);
}

bool equals_reference(const number& original, const number& rounded, Mode m, long n) {
  mpq_t expect, got;
  mpq_inits(expect, got, nullptr);
  to_rational(original, expect);
  reference(expect, m, n);
  to_rational(rounded, got);
  const bool same = mpq_equal(expect, got) != 0;
  mpq_clears(expect, got, nullptr);
  return same;
}

// Zeros carry a sign, and the two bodies must agree on it: a rounding that lands on zero
// from below gives the same zero on both.
TEST(NumberRounding, BodiesAgreeOnTheSignOfAZeroResult) {
  for (double x : {-0.0, -0.25, -0.5, 0.25}) {
    for (Mode m : kModes) {
      number d(x), mp(x, 100, false);
      apply(d, m);
      apply(mp, m);
      EXPECT_EQ(std::signbit(d.todouble()), std::signbit(mp.todouble()))
          << name(m) << "(" << x << ")";
    }
  }
}

TEST(NumberRounding, FixOfAZeroIsPositiveZero) {
  for (double x : {-0.0, -0.25}) {
    for (unsigned long precision : {52ul, 100ul}) {
      number n(x, precision, false);
      n.fix();
      EXPECT_TRUE(n.iszero());
      EXPECT_FALSE(std::signbit(n.todouble())) << x << " at " << precision;
    }
  }
}

TEST(NumberRounding, WideValuesRoundExactly) {
  // 2^100 + 1/2 and its negative: only a multiprecision body holds them.
  for (int s : {1, -1}) {
    for (Mode m : kModes) {
      number x(1.0, 200, false);
      x.pow2(100);
      x += number(0.5);
      if (s < 0) x.negate();
      const number original(x);
      number rounded(x);
      apply(rounded, m);
      EXPECT_TRUE(equals_reference(original, rounded, m, 0)) << name(m) << " sign " << s;
    }
  }
}

// Random values with at most 41 significant bits, every mode, n from -6 to 50: the
// double body, a multiprecision body and the rational reference agree, ties included.
TEST(NumberRounding, BodiesAgreeWithTheReferenceOverASweep) {
  std::mt19937_64 rng(1122);
  std::uniform_int_distribution<long long> mant(-(1LL << 40), 1LL << 40);
  std::uniform_int_distribution<int> scale(0, 45);
  std::uniform_int_distribution<long> bits(-6, 50);
  std::uniform_int_distribution<unsigned long> prec(53, 300);
  for (int i = 0; i < 4000; ++i) {
    const double x = std::ldexp(static_cast<double>(mant(rng)), -scale(rng));
    const long n = bits(rng);
    for (Mode m : kModes) {
      number d(x), mp(x, prec(rng), false);
      apply(d, m, n);
      apply(mp, m, n);
      ASSERT_TRUE(equals_reference(number(x), d, m, n)) << name(m) << "(" << x << ", " << n << ")";
      ASSERT_TRUE(d == mp) << name(m) << "(" << x << ", " << n << ")";
    }
  }
}

// Values just below a half (53 significant bits): a rounded x + 1/2 would cross the
// integer; the roundings must not.
TEST(NumberRounding, JustBelowAHalfStaysBelow) {
  const double below = 0.5 - 0x1p-54;
  for (Mode m : {Mode::Nearest, Mode::Round, Mode::Convergent}) {
    number d(below);
    apply(d, m);
    EXPECT_EQ(d.todouble(), 0.0) << name(m);
  }
}

}  // namespace
}  // namespace corbel
