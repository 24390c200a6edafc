// fi sums, differences, products and matrix products against an exact rational reference,
// rounded and overflowed by hand wherever a register or the result holds a value.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "exact.h"
#include "fi/fi.h"
#include "host/host_error.h"
#include "test_host.h"

namespace corbel {
namespace {

using AM = ArithmeticModeEnum;
using RM = RoundModeEnum;
const char* const kOpNames[] = {"plus", "minus", "times", "mtimes"};

// The operation numbered op: 0 plus, 1 minus, 2 times, 3 mtimes.
std::unique_ptr<fi> apply(int op, const fi& a, const fi& b) {
  switch (op) {
    case 0:
      return a.plus(b);
    case 1:
      return a.minus(b);
    case 2:
      return a.times(b);
    default:
      return a.mtimes(b);
  }
}

// The real-world values of one element, bias + factor * stored form, exactly.
struct C {
  Q re, im;
};
C element(const fi& x, int i) {
  const NumericType& t = x.getNumericType();
  const Q bias(t.getBias()), factor(t.getSlopeAdjustmentFactor());
  return {bias + factor * Q(x.real(i)), bias + factor * Q(x.imag(i))};
}

// v as type t holds it: (v - bias) / factor cast onto the grid 2^FixedExponent of the word.
Q cast(const Q& v, const NumericType& t, const fimath& m) {
  const Q bias(t.getBias()), factor(t.getSlopeAdjustmentFactor());
  return bias + factor * cast(Q(mpq_div, v - bias, factor), t.getSigned(), t.getWordLength(),
                              t.getFixedExponent(), m.getRoundMode(), m.getOverflowMode());
}

// With CastBeforeSum the left value is cast to the sum type before the right one is added;
// `once` (no CastBeforeSum, or a slope-bias sum) rounds the exact sum a single time.
C sumRef(const C& x, const C& y, bool subtract, const NumericType& T, const fimath& m, bool once) {
  const auto part = [&](const Q& a, const Q& b) {
    const Q first = once ? a : cast(a, T, m);
    return cast(subtract ? first - b : first + b, T, m);
  };
  return {part(x.re, y.re), part(x.im, y.im)};
}
// Complex: part products cast to P, summed in the two-term sum type S, the sum cast to P.
C productRef(const C& x, const C& y, bool complex, const NumericType& P, const NumericType& S,
             const fimath& m) {
  if (!complex) return {cast(x.re * y.re, P, m), Q()};
  const auto twoTerm = [&](const Q& p1, const Q& p2, bool subtract) {
    const Q a = cast(cast(p1, P, m), S, m), b = cast(p2, P, m);
    return cast(cast(subtract ? a - b : a + b, S, m), P, m);
  };
  return {twoTerm(x.re * y.re, x.im * y.im, true), twoTerm(x.re * y.im, x.im * y.re, false)};
}
// Element (i, j): every part product cast to P, then added into S, rounding each time.
C dotRef(const fi& a, const fi& b, int i, int j, const NumericType& P, const NumericType& S,
         const fimath& m) {
  C acc;
  const auto add = [&](Q& into, const Q& p, bool subtract) {
    const Q q = cast(p, P, m);
    into = cast(subtract ? into - q : into + q, S, m);
  };
  for (int k = 0; k < a.getN(); ++k) {
    const C x = element(a, i + k * a.getM()), y = element(b, k + j * b.getM());
    add(acc.re, x.re * y.re, false);
    if (a.isreal() && b.isreal()) continue;
    add(acc.re, x.im * y.im, true);
    add(acc.im, x.re * y.im, false);
    add(acc.im, x.im * y.re, false);
  }
  return acc;
}

// Stored integers over the whole range, often the extremes, 0 and +-1; at word-length precision.
std::unique_ptr<fi> randomFi(std::mt19937_64& rng, int rows, int cols, const NumericType& t,
                             const fimath& m, bool complex) {
  auto x = std::make_unique<fi>(rows, cols, t, m, complex);
  const int w = t.getWordLength();
  const bool s = t.getSigned();
  mpz_t n, top;
  mpz_inits(n, top, nullptr);
  mpz_setbit(top, static_cast<mp_bitcnt_t>(s ? w - 1 : w));
  for (int i = 0; i < x->numel() * (complex ? 2 : 1); ++i) {
    const unsigned pick = static_cast<unsigned>(rng() % 8);
    mpz_set_si(n, pick == 3 ? (s ? -1 : 1) : 0);
    if (pick == 1) mpz_sub_ui(n, top, 1);
    if (pick == 2 && s) mpz_neg(n, top);
    for (int got = 0; pick > 3 && got < w; got += 64)
      mpz_mul_2exp(n, n, 64), mpz_add_ui(n, n, static_cast<unsigned long>(rng()));
    if (pick > 3) mpz_fdiv_r_2exp(n, n, static_cast<mp_bitcnt_t>(w));
    if (pick > 3 && s && mpz_cmp(n, top) >= 0) mpz_submul_ui(n, top, 2);
    number& el = i < x->numel() ? x->realRef(i) : x->imagRef(i - x->numel());
    el.setvalue(n, t.getFixedExponent());
    el.setprecision(static_cast<unsigned long>(w), false);
  }
  mpz_clears(n, top, nullptr);
  return x;
}

std::string fmt(const NumericType& t) {
  return (t.getSigned() ? "s" : "u") + t.getWordLengthString() + "," + t.getFractionLengthString() +
         " slope " + t.getSlopeString() + " bias " + t.getBiasString();
}

// What an operation must leave alone in an operand: shape, values, type, math and log.
std::string snapshot(const fi& x) {
  const qlogger& log = x.getfilog();
  std::string s = std::to_string(x.getM()) + "x" + std::to_string(x.getN()) + " " +
                  fmt(x.getNumericType()) + " [" + x.getFimath().convertToString() + "] log " +
                  std::to_string(log.getNoverflows()) + "," + std::to_string(log.getNunderflows());
  for (int i = 0; i < x.numel(); ++i)
    s += " " + element(x, i).re.str() + (x.iscomplex() ? "," + element(x, i).im.str() : "");
  return s;
}

class FiArithmetic : public WithHost {
 protected:
  // Random settings, operands and operations. Slope-bias trials (real operands, register
  // settings SpecifyPrecision, the only mode that allows them) draw slope-bias types too.
  static void sweep(std::uint64_t seed, int trials, bool slopeBias) {
    std::mt19937_64 rng(seed);
    const double factors[] = {1.0, 1.25, 1.1, 1.75}, biases[] = {0.0, 0.5, -3.25, 0.1};
    // Small, middling and multiprecision words; the binary point left of, in or right of them.
    const auto type = [&] {
      const unsigned top[] = {9, 51, 119};
      const int w = 2 + static_cast<int>(rng() % top[rng() % 3]);
      const int e = 6 - static_cast<int>(rng() % static_cast<unsigned>(w + 13));
      const double f = factors[rng() % 4], bias = biases[rng() % 4];
      if (!slopeBias || (f == 1.0 && bias == 0.0)) return NumericType(rng() % 2 == 0, w, -e);
      return NumericType(DataTypeModeEnum::FixedSlopeBias, rng() % 2 == 0, w, f, e, bias);
    };
    for (int trial = 0; trial < trials; ++trial) {
      const int op = trial % 4;
      fimath m;
      m.setRoundMode(static_cast<RM>(rng() % 6));
      m.setOverflowMode(rng() % 2 ? OverflowModeEnum::Wrap : OverflowModeEnum::Saturate);
      // Slope-bias sums are refused without CastBeforeSum; products never are.
      m.setCastBeforeSum(rng() % 2 == 0 || (slopeBias && op < 2));
      m.setSumMode(slopeBias ? AM::SpecifyPrecision : static_cast<AM>(rng() % 4));
      m.setProductMode(slopeBias ? AM::SpecifyPrecision : static_cast<AM>(rng() % 4));
      m.setMaxSumWordLength(1024);
      m.setMaxProductWordLength(1024);
      const NumericType s = type(), p = type();
      m.setSumFormat({s.getWordLength(), s.getFractionLength()});
      m.setProductFormat({p.getWordLength(), p.getFractionLength()});
      m.setSumSlopeAdjustmentFactor(s.getSlopeAdjustmentFactor());
      m.setSumBias(s.getBias());
      m.setProductSlopeAdjustmentFactor(p.getSlopeAdjustmentFactor());
      m.setProductBias(p.getBias());
      // a and b 2x3, or up to 3x3 for a matrix product; now and then a scalar on either side.
      int d[4] = {2, 3, 2, 3};
      for (int& x : d) x = op == 3 ? 1 + static_cast<int>(rng() % 3) : x;
      if (op == 3) d[2] = d[1];
      if (const unsigned shape = rng() % 4; shape < 2) d[2 * shape] = d[2 * shape + 1] = 1;
      const bool ca = !slopeBias && rng() % 3 == 0, cb = !slopeBias && rng() % 3 == 0;
      const auto a = randomFi(rng, d[0], d[1], type(), m, ca),
                 b = randomFi(rng, d[2], d[3], type(), m, cb);
      // Now and then a square array times itself: one object on both sides.
      const fi& bb = op == 3 && a->getM() == a->getN() && trial % 8 == 3 ? *a : *b;
      const std::string before = snapshot(*a) + " | " + snapshot(bb);
      const auto r = apply(op, *a, bb);
      const std::string what = kOpNames[op] + (" #" + std::to_string(trial)) + ": " + before;
      EXPECT_EQ(snapshot(*a) + " | " + snapshot(bb), before) << what;
      ASSERT_EQ(r->iscomplex(), a->iscomplex() || bb.iscomplex()) << what;
      const NumericType& T = r->getNumericType();
      // The product and two-term sum types are the library's own, checked by the result-type
      // sweep.
      const NumericType P = a->getProductTypeForMpyOp(bb);
      const bool matrix = op == 3 && a->numel() > 1 && bb.numel() > 1;
      const fi& shaped = a->numel() == 1 ? bb : *a;
      ASSERT_EQ(r->getM(), matrix ? a->getM() : shaped.getM()) << what;
      ASSERT_EQ(r->getN(), matrix ? bb.getN() : shaped.getN()) << what;
      // The result type must be plausible: products, and matrix products of one term per
      // element, are of the product type.
      if (op == 2 || (op == 3 && (!matrix || a->getN() == 1))) {
        EXPECT_EQ(fmt(T), fmt(P)) << what;
      }
      if (op < 2 && m.getSumMode() != AM::FullPrecision) {
        EXPECT_EQ(T.getWordLength(), m.getSumWordLength()) << what;
      }
      // Full-precision like-signed sums and signed differences are exact.
      const bool exact = op < 2 && m.getSumMode() == AM::FullPrecision &&
                         a->getSigned() == bb.getSigned() && (op == 0 || a->getSigned());
      const bool once = !m.getCastBeforeSum() || a->isSlopeBiasScaled() || bb.isSlopeBiasScaled() ||
                        m.isSumSlopeBiasScaled();
      for (int i = 0, failures = 0; i < r->numel() && failures < 3; ++i) {
        const auto at = [&](const fi& z) { return element(z, matrix || z.numel() == 1 ? 0 : i); };
        const C x = at(*a), y = at(bb);
        const C want = matrix ? dotRef(*a, bb, i % r->getM(), i / r->getM(), P, T, m)
                       : op >= 2
                           ? productRef(x, y, r->iscomplex(), T, a->getSumTypeForMpyOp(bb, T), m)
                           : sumRef(x, y, op == 1, T, m, once);
        EXPECT_TRUE(!exact || want.re == (op == 0 ? x.re + y.re : x.re - y.re)) << what;
        const C got = element(*r, i);
        if (want.re == got.re && (r->isreal() || want.im == got.im)) continue;
        ++failures;
        ADD_FAILURE() << what << "\n  element " << i << ": expected " << want.re.str() << " + "
                      << want.im.str() << "i, got " << got.re.str() << " + " << got.im.str() << "i";
      }
    }
  }

  DefaultPrecisionGuard precision_;
};

TEST_F(FiArithmetic, EveryElementIsTheExactValueRoundedWhereTheRegistersHoldIt) {
  sweep(0x5eed2611, 4000, false);
}

TEST_F(FiArithmetic, SlopeBiasResultsAreTheExactRealWorldValueRoundedOnce) {
  sweep(77031, 2000, true);
}

TEST_F(FiArithmetic, RefusalsNameTheFaultAndLeaveBothOperandsAsTheyWere) {
  using DM = DataTypeModeEnum;
  fimath m, floor, sb, noCast, full;
  floor.setRoundMode(RM::Floor);
  for (fimath* x : {&sb, &noCast})
    x->setSumMode(AM::SpecifyPrecision), x->setProductMode(AM::SpecifyPrecision);
  noCast.setCastBeforeSum(false);
  full.setProductMode(AM::KeepMSB);
  const NumericType q(true, 16, 15), sbT(DM::FixedSlopeBias, true, 16, 1.5, -8, 0.5),
      dbl(DM::Double, true, 16, 1.0, 0, 0.0), boolean(DM::Boolean, true, 16, 1.0, 0, 0.0),
      sdsb(DM::ScaledDoubleSlopeBias, true, 16, 1.5, -8, 0.5);
  const double v[] = {0.5, -0.25, 0.125, 0.75, -1.0, 0.0};
  const auto f = [&](int rows, const NumericType& t, const fimath& fm, bool complex = false) {
    const int dims[] = {rows, 6 / rows};
    return std::make_unique<fi>(v, complex ? v : nullptr, dims, 2, t, fm);
  };
  const auto refused = [](const fi& a, const fi& b, int op, const std::string& id,
                          const std::string& text) {
    SCOPED_TRACE(std::string(kOpNames[op]) + " refused with " + id);
    const std::string before = snapshot(a) + " | " + snapshot(b);
    try {
      apply(op, a, b);
      ADD_FAILURE() << "no error";
    } catch (const HostError& e) {
      EXPECT_EQ(e.identifier() + ": " + e.text(), "velkora:fi:" + id + ": " + text);
    }
    EXPECT_EQ(snapshot(a) + " | " + snapshot(b), before);
  };
  refused(*f(2, q, m), *f(3, q, m, true), 0, "dimagree", "Matrix dimensions must agree.");
  refused(*f(2, q, m, true), *f(2, q, m), 3, "innerdim", "Inner matrix dimensions must agree.");
  // Inner dimensions are compared before the types and the math.
  refused(*f(2, q, m), *f(2, dbl, floor), 3, "innerdim", "Inner matrix dimensions must agree.");
  refused(*f(2, q, m), *f(2, dbl, floor), 1, "mixedmath",
          "Math operations are not allowed on FI objects with different data types.");
  refused(*f(2, q, m), *f(2, boolean, m), 2, "nobooleanmath",
          "Math operations are not allowed on FI objects with boolean data type.");
  refused(*f(2, q, m), *f(2, q, floor), 0, "fimathmismatch",
          "FIMATH of both operands must be equal.");
  // Complex slope-bias operands, refused by a matrix product before its inner dimensions are
  // compared.
  for (int op = 0; op < 4; ++op)
    refused(*f(2, sbT, sb, true), *f(2, sbT, sb), op, "complexslopebiasnotdefined",
            "Function '" + std::string(kOpNames[op]) +
                "' is not defined for complex-value FI objects with slope and bias scaling.");
  for (int op = 0; op < 2; ++op)
    refused(*f(2, q, noCast), *f(2, sbT, noCast), op, "castbeforesumfalseslopebiasnotdefined",
            "Function '" + std::string(kOpNames[op]) +
                "' is not defined for FI objects with slope and bias scaling when CastBeforeSum "
                "is false.");
  // The result type, and its refusal, come before the complex operand is looked at.
  refused(*f(2, sbT, full, true), *f(2, q, full), 1, "mathmodeslopebiasnotdefined",
          "Math is not supported for slope-bias FIs when the SumMode is FullPrecision.");
  refused(*f(2, q, full), *f(2, sbT, full), 2, "mathmodeslopebiasnotdefined",
          "Math is not supported for slope-bias FIs when the ProductMode is KeepMSB.");
  refused(*f(2, sdsb, sb), *f(2, q, sb), 0, "scaleddoubleslopebiasmathnotdefined",
          "Math is not supported for slope-bias FIs when DataTypeMode is 'Scaled double: slope "
          "and bias scaling'");
}

}  // namespace
}  // namespace corbel
