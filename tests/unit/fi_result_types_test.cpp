// fi result types: sums, products, matrix-product accumulators and the two-term sums of
// complex products; their word-length and slope-bias refusals; a sweep against a reference
// worked out from the full-precision integer and fraction bits of each result.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <string>

#include "expect_error.h"
#include "fi/fi.h"
#include "host/host_error.h"
#include "test_host.h"

namespace corbel {
namespace {

using AM = ArithmeticModeEnum;
const char* const kModeName[] = {"FullPrecision", "KeepLSB", "KeepMSB", "SpecifyPrecision"};

std::string sumTooWide(int max, int need) {
  return "MaxSumWordLength is " + std::to_string(max) + " bits and a minimum word length of " +
         std::to_string(need) +
         " bits is necessary to guarantee that this sum or difference can be computed with no "
         "loss of precision.  Increase MaxSumWordLength if you want the sum to grow to a larger "
         "word length.";
}
std::string productTooWide(int max, int need) {
  return "MaxProductWordLength is " + std::to_string(max) + " bits and a minimum word length of " +
         std::to_string(need) +
         " bits is necessary to guarantee that this product can be computed with no loss of "
         "precision.  Increase MaxProductWordLength if you want the product to grow to a "
         "larger word length.";
}
std::string modeRefusal(const std::string& which, AM mode) {
  return "Math is not supported for slope-bias FIs when the " + which + "Mode is " +
         kModeName[static_cast<int>(mode)] + ".";
}

void expectType(const NumericType& t, bool issigned, int w, int f, double factor = 1.0,
                double bias = 0.0) {
  EXPECT_EQ(t.getSigned(), issigned);
  EXPECT_EQ(t.getWordLength(), w);
  EXPECT_EQ(t.getFractionLength(), f);
  EXPECT_EQ(t.getSlopeAdjustmentFactor(), factor);
  EXPECT_EQ(t.getBias(), bias);
}

NumericType slopeBias(bool s, int w, int e, double factor, double bias) {
  return NumericType(DataTypeModeEnum::FixedSlopeBias, s, w, factor, e, bias);
}
NumericType scaledDouble(bool s, int w, int f) {
  return NumericType(DataTypeModeEnum::ScaledDoubleBinaryPoint, s, w, 1.0, -f, 0.0);
}
const NumericType kDouble(DataTypeModeEnum::Double, true, 64, 1.0, 0, 0.0);

class FiResultTypes : public WithHost {};

// Worked examples of every rule (mixed signs, KeepMSB, the accumulator's growth, scaled-double
// and double operands, slope-bias settings of the fimath) are the sweep's at the end; here the
// boundary of the maximum word lengths and the cache a refused rule leaves.
TEST_F(FiResultTypes, FullPrecisionMayBeExactlyAsWideAsTheMaximum) {
  const NumericType t(true, 16, 15), P(true, 32, 30);
  for (int slack : {0, -1}) {
    fimath m;
    m.setMaxSumWordLength(17 + slack);
    m.setMaxProductWordLength(32 + slack);
    fi a(4, 3, t, m, true), b(3, 2, t, m, true);
    const auto sum = [&] { return a.getNumericTypeForAddOp(a); };
    const auto product = [&] { return a.getProductTypeForMpyOp(b); };
    const auto complexSum = [&] { return a.getSumTypeForMpyOp(b, t); };
    if (slack == 0) {
      expectType(sum(), true, 17, 15);
      expectType(product(), true, 32, 30);
      expectType(complexSum(), true, 17, 15);
      continue;
    }
    expect_error(sum, "velkora:fi:MaxSumWordLengthExceeded", sumTooWide(16, 17));
    expect_error(product, "velkora:fi:MaxProductWordLengthExceeded", productTooWide(31, 32));
    expect_error(complexSum, "velkora:fi:MaxSumWordLengthExceeded", sumTooWide(16, 17));
  }
  fimath m;
  m.setMaxSumWordLength(34);
  fi a(4, 3, t, m, false), b(3, 2, t, m, false), c(4, 4, t, m, false);
  expectType(a.getSumNumericTypeForMatrixMultiply(b, P), true, 34, 30);
  // A refused rule keeps the previous fixed-point properties in the cache.
  const NumericType& cache = c.getNumericTypeForAddOp(c);
  expect_error([&] { c.getSumNumericTypeForMatrixMultiply(c, NumericType(true, 33, 30)); },
               "velkora:fi:MaxSumWordLengthExceeded", sumTooWide(34, 35));
  expectType(cache, true, 17, 15);
}

// The reference: every rule's full-precision result has IB integer bits and FB fraction
// bits; KeepLSB keeps the fraction bits, KeepMSB the integer bits, both at the set width.
struct Expected {
  DataTypeEnum dataType;
  std::string id, text;  // id empty: no error
  bool issigned = true;
  int w = 0, e = 0;
  double factor = 1.0, bias = 0.0;
};

Expected rule(DataTypeEnum dt, bool issigned, int IB, int FB, bool slopeBias, bool isSum,
              const fimath& m) {
  Expected x{dt, "", ""};
  if (dt != DataTypeEnum::Fixed && dt != DataTypeEnum::ScaledDouble) return x;
  const AM mode = isSum ? m.getSumMode() : m.getProductMode();
  const int width = isSum ? m.getSumWordLength() : m.getProductWordLength();
  const int max = isSum ? m.getMaxSumWordLength() : m.getMaxProductWordLength();
  x.issigned = issigned;
  if (slopeBias && mode != AM::SpecifyPrecision) {
    x.id = "velkora:fi:mathmodeslopebiasnotdefined";
    x.text = modeRefusal(isSum ? "Sum" : "Product", mode);
  } else if (mode == AM::FullPrecision) {
    x.w = IB + FB, x.e = -FB;
    if (max < x.w) {
      x.id =
          isSum ? "velkora:fi:MaxSumWordLengthExceeded" : "velkora:fi:MaxProductWordLengthExceeded";
      x.text = isSum ? sumTooWide(max, x.w) : productTooWide(max, x.w);
    }
  } else if (mode == AM::KeepLSB) {
    x.w = width, x.e = -FB;
  } else if (mode == AM::KeepMSB) {
    x.w = width, x.e = IB - width;
  } else {
    x.w = width;
    x.e = isSum ? m.getSumFixedExponent() : m.getProductFixedExponent();
    if (slopeBias) {
      x.factor = isSum ? m.getSumSlopeAdjustmentFactor() : m.getProductSlopeAdjustmentFactor();
      x.bias = isSum ? m.getSumBias() : m.getProductBias();
    }
  }
  return x;
}

void check(const std::function<const NumericType&()>& call, const Expected& x,
           const std::string& where) {
  SCOPED_TRACE(where);
  if (!x.id.empty()) return expect_error(call, x.id, x.text);
  const NumericType t = call();
  ASSERT_EQ(t.getDataType(), x.dataType);
  if (!t.isScaledType()) return;
  EXPECT_EQ(t.getSigned(), x.issigned);
  EXPECT_EQ(t.getWordLength(), x.w);
  EXPECT_EQ(t.getFixedExponent(), x.e);
  EXPECT_EQ(t.getSlopeAdjustmentFactor(), x.factor);
  EXPECT_EQ(t.getBias(), x.bias);
}

TEST_F(FiResultTypes, SweepAgreesWithIntegerAndFractionBitReference) {
  std::mt19937 rng(4417);
  const auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  const auto type = [&] {
    const int w = pick(1, 3) == 1 ? pick(53, 130) : pick(2, 40);
    const bool s = pick(0, 1) == 1;
    const int e = -pick(-12, w + 12);
    return pick(1, 7) == 1 ? slopeBias(s, w, e, 1.5, -1.0) : NumericType(s, w, -e);
  };
  for (int iter = 0; iter < 500; ++iter) {
    fimath m;
    m.setSumMode(static_cast<AM>(pick(0, 3)));
    m.setProductMode(static_cast<AM>(pick(0, 3)));
    m.setSumWordLength(pick(1, 90));
    m.setProductWordLength(pick(1, 90));
    m.setMaxSumWordLength(pick(0, 1) ? 128 : pick(2, 100));
    m.setMaxProductWordLength(pick(0, 1) ? 128 : pick(2, 180));
    m.setSumFixedExponent(pick(-90, 20));
    m.setProductFixedExponent(pick(-90, 20));
    if (pick(1, 6) == 1) m.setSumBias(0.25 * pick(-8, 8));
    if (pick(1, 6) == 1) m.setProductSlopeAdjustmentFactor(1.125);
    NumericType ta = type(), tb = type();
    const int kind = pick(1, 10);
    if (kind == 1) ta = tb = kDouble;
    if (kind == 2 && !tb.isSlopeBiasScaled())
      tb = scaledDouble(tb.getSigned(), tb.getWordLength(), tb.getFractionLength());
    if (kind == 3 && !ta.isSlopeBiasScaled())
      ta = scaledDouble(ta.getSigned(), ta.getWordLength(), ta.getFractionLength());
    const int inner = pick(1, 9);
    const bool ca = pick(0, 1) == 1, cb = pick(0, 1) == 1;
    fi a(2, inner, ta, m, ca), b(inner, 3, tb, m, cb);
    const NumericType P(pick(0, 1) == 1, pick(2, 70), pick(-20, 60));

    const DataTypeEnum dt = tb.isScaledDouble() ? DataTypeEnum::ScaledDouble : ta.getDataType();
    const bool s = ta.getSigned() || tb.getSigned();
    const int fa = ta.getFractionLength(), fb = tb.getFractionLength();
    const int wa = ta.getWordLength(), wb = tb.getWordLength();
    const bool sbOperand = ta.isSlopeBiasScaled() || tb.isSlopeBiasScaled();
    const bool sbProduct = sbOperand || m.isProductSlopeBiasScaled();
    const int IBsum = std::max(wa - fa, wb - fb) + 1;
    const int n = inner + (ca && cb ? 1 : 0);
    int G = 0;
    while ((1 << G) < n) ++G;
    const int wP = P.getWordLength(), eP = P.getFixedExponent();
    const std::string where = "iteration " + std::to_string(iter);
    check([&]() -> const NumericType& { return a.getNumericTypeForAddOp(b); },
          rule(dt, s, IBsum, std::max(fa, fb), sbOperand || m.isSumSlopeBiasScaled(), true, m),
          where + " sum");
    check([&]() -> const NumericType& { return a.getProductTypeForMpyOp(b); },
          rule(dt, s, wa + wb - fa - fb, fa + fb, sbProduct, false, m), where + " product");
    check([&]() -> const NumericType& { return a.getSumNumericTypeForMatrixMultiply(b, P); },
          rule(dt, P.getSigned(), wP + G + eP, -eP, sbProduct, true, m), where + " accumulator");
    Expected two = rule(dt, P.getSigned(), wP + 1 + eP, -eP, false, true, m);
    check([&]() -> const NumericType& { return a.getSumTypeForMpyOp(b, P); }, two,
          where + " complex sum");
  }
}

}  // namespace
}  // namespace corbel
