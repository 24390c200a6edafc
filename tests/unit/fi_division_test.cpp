// The quotient in a given type against an exact model: the rational quotient of the operands
// (complex ones as a * conj(b) / |b|^2), rounded and overflowed once by the test's own cast,
// and a zero divisor saturating by the dividend's sign with one warning per operation.
#include <gmp.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "expect_error.h"
#include "fi/fi.h"
#include "fi_sweep.h"
#include "host/inprocess_host.h"
#include "random_formats.h"

namespace corbel {
namespace {

using Warnings = std::vector<InProcessHost::Warning>;

// The model's text for a quotient part n / d in type t.
std::string quotientPart(const Q& n, const Q& d, const NumericType& t, const fimath& m) {
  const bool negative = mpq_sgn(n.v) < 0;
  if (mpq_sgn(d.v) == 0) {
    // The saturated bound on the dividend's side.
    Q bound = Q(1.0).scaled(t.getSigned() ? t.getWordLength() - 1 : t.getWordLength());
    bound = negative ? (t.getSigned() ? Q(mpq_sub, Q(), bound) : Q()) : bound - Q(1.0);
    const Q v = bound.scaled(t.getFixedExponent());
    return mpq_sgn(v.v) == 0 ? "+0" : v.str();
  }
  const Q r = cast(Q(mpq_div, n, d), t.getSigned(), t.getWordLength(), t.getFixedExponent(),
                   m.getRoundMode(), m.getOverflowMode());
  return mpq_sgn(r.v) == 0 ? "+0" : r.str();
}

TEST(FiDivision, QuotientsAreRoundedOnceIntoTheQuotientType) {
  InProcessHost host;
  ScopedHost scope(host);
  std::mt19937_64 rng(46);
  GmpRandom random(46);
  auto& state = random.state;
  int zeroDivisors = 0;
  for (int trial = 0; trial < 300; ++trial) {
    fimath m;
    m.setRoundMode(kRoundModes[trial % 6]);
    m.setOverflowMode(trial % 4 < 2 ? OverflowModeEnum::Wrap : OverflowModeEnum::Saturate);
    const RandomFormat fa(rng, 130), fb(rng, 130), fq(rng, 130);
    const bool complex = trial % 5 == 0;
    const int na = trial % 7 == 0 ? 1 : 6, nb = trial % 3 == 0 ? 1 : 6;
    const auto a = randomNumbers(rng, state, {1, na}, rng() % 2, fa.wl, fa.fl, m, complex);
    auto b = randomNumbers(rng, state, {1, nb}, rng() % 2, fb.wl, fb.fl, m, trial % 4 == 0);
    // Divisors that are powers of two now and then, so that quotients meet ties.
    if (trial % 2 == 0 && fb.wl > 2)
      for (int j = 0; j < b->numel(); ++j)
        b->realRef(j) =
            std::ldexp(rng() % 2 && b->getSigned() ? -1.0 : 1.0,
                       static_cast<int>(rng() % static_cast<unsigned>(fb.wl - 2)) - fb.fl);
    const NumericType T(rng() % 2, fq.wl, fq.fl);
    const auto q = a->over(*b, T);
    const std::vector<std::string> got = exactParts(*q);
    // The integer path for double-backed arrays gives the element path's bits, which a log
    // forces.
    fi::setLogging(true);
    const std::vector<std::string> slow = exactParts(*a->over(*b, T));
    fi::setLogging(false);
    ASSERT_EQ(got, slow) << trial;
    bool anyZero = false;
    for (int k = 0; k < q->numel(); ++k) {
      const int i = na == 1 ? 0 : k, j = nb == 1 ? 0 : k;
      const Q xr(a->real(i)), xi(a->imag(i)), yr(b->real(j)), yi(b->imag(j));
      const Q d = yr * yr + yi * yi;
      std::string re, im;
      if (mpq_sgn(d.v) == 0) {
        anyZero = true;
        re = quotientPart(xr, Q(), T, m);
        im = q->iscomplex() ? quotientPart(xi, Q(), T, m) : "+0";
      } else {
        re = quotientPart(xr * yr + xi * yi, d, T, m);
        im = quotientPart(xi * yr - xr * yi, d, T, m);
      }
      // A quotient that rounds to zero keeps whichever sign the rounding gives it.
      const auto same = [](std::string got, const std::string& want) {
        return (got == "-0" ? "+0" : got) == want;
      };
      ASSERT_TRUE(same(got[static_cast<size_t>(2 * k)], re)) << trial << " " << k << " " << re;
      ASSERT_TRUE(same(got[static_cast<size_t>(2 * k + 1)], im)) << trial << " " << k << " " << im;
    }
    const InProcessHost::Warning warning{"fi:divideByZero",
                                         "Division by zero occurred. Quotient was saturated."};
    const Warnings expected = anyZero ? Warnings{warning, warning} : Warnings{};
    ASSERT_EQ(host.take_warnings(), expected);
    zeroDivisors += anyZero;
  }
  EXPECT_GT(zeroDivisors, 20);
}

// Halves, where the round modes part ways: 5/2, -5/2, 3/2 and -3/2 into an integer type.
TEST(FiDivision, HalvesFollowEachRoundMode) {
  const double v[] = {5, -5, 3, -3};
  const int dims[] = {1, 4};
  const std::pair<RoundModeEnum, std::vector<double>> cases[] = {
      {RoundModeEnum::Nearest, {3, -2, 2, -1}},    {RoundModeEnum::Round, {3, -3, 2, -2}},
      {RoundModeEnum::Convergent, {2, -2, 2, -2}}, {RoundModeEnum::Floor, {2, -3, 1, -2}},
      {RoundModeEnum::Ceil, {3, -2, 2, -1}},       {RoundModeEnum::Fix, {2, -2, 1, -1}}};
  for (const auto& [mode, want] : cases) {
    fimath m;
    m.setRoundMode(mode);
    const fi a(v, nullptr, dims, 2, NumericType(true, 8, 0), m);
    const auto q = a.over(fi(2, true, 8, 0, m), NumericType(true, 8, 0));
    for (int i = 0; i < 4; ++i) EXPECT_EQ(q->realdouble(i), want[static_cast<size_t>(i)]) << i;
  }
}

TEST(FiDivision, RefusesFloatingQuotientTypesAndUnequalSizes) {
  const fimath m;
  const double v[] = {1, 2, 3};
  const int two[] = {1, 2}, three[] = {1, 3};
  const fi a(v, nullptr, two, 2, NumericType(true, 8, 4), m);
  const fi b(v, nullptr, three, 2, NumericType(true, 8, 4), m);
  expect_error([&] { a.over(b, NumericType(true, 8, 4)); }, "velkora:fi:dimagree",
               "Matrix dimensions must agree.");
  expect_error([&] { a.over(a, NumericType(DataTypeModeEnum::Double, true, 64, 1, 0, 0)); },
               "velkora:fi:numerictype:fixedonly", "fi DataType must be FIXED.");
}

}  // namespace
}  // namespace corbel
