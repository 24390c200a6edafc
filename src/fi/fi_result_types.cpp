// fi: the types of sums, products, matrix-product accumulators and the two-term sums of
// complex products, worked out from the operands' types and the left operand's fimath.
#include <cmath>
#include <string>

#include "fi/fi.h"
#include "host/messages.h"

namespace corbel {
namespace {

// What a rule works out for a Fixed or ScaledDouble result.
struct FixedProps {
  bool issigned;
  int wordLength;
  int fixedExponent;
  double slopeAdjustmentFactor = 1.0;
  double bias = 0.0;
};

// The checks every rule opens with, then the result's data type: a ScaledDouble right
// operand makes the result ScaledDouble, otherwise it has the left operand's data type.
DataTypeEnum openRule(const fi& a, const fi& b) {
  fi::errorIfBooleanMath(a);
  fi::errorIfBooleanMath(b);
  fi::errorIfMixedMath(a, b);
  if (a.isFixed() && b.isFixed()) fi::errorIfFimathMismatch(a, b);
  return fi::getDataTypeForMathOp(a, b);
}

// Fills the cache (created on first use) with the data type and, for a scaled result, the
// fixed-point properties that `props` computes. A rule that raises leaves the cache with
// the new data type and its previous fixed-point properties.
template <class Props>
const NumericType& fillCache(std::unique_ptr<NumericType>& cache, DataTypeEnum dataType,
                             Props props) {
  if (!cache) cache = std::make_unique<NumericType>();
  cache->setDataType(dataType);
  if (dataType != DataTypeEnum::Fixed && dataType != DataTypeEnum::ScaledDouble) return *cache;
  const FixedProps p = props();
  cache->setFixedPointProps(p.issigned, p.wordLength, p.slopeAdjustmentFactor, p.fixedExponent,
                            p.bias);
  return *cache;
}

// Only SpecifyPrecision can give a slope-bias result its factor and bias.
void refuseSlopeBias(bool slopeBias, const char* which, ArithmeticModeEnum mode) {
  if (slopeBias && mode != ArithmeticModeEnum::SpecifyPrecision)
    raise(Msg::FiMathModeSlopeBias, which, std::string(*enum_to_string(mode)).c_str());
}

// ceil(log2(n)) as the accumulator's growth in bits; 0 for a single term.
int growthBits(int n) {
  return n <= 1 ? 0 : static_cast<int>(std::ceil(std::log2(static_cast<double>(n))));
}

// A fimath's settings for one kind of result, sums or products.
struct ModeSettings {
  ArithmeticModeEnum mode;
  int wordLength, maxWordLength, fixedExponent;
  double slopeAdjustmentFactor, bias;
  Msg tooWide;  // raised when a full-precision result would exceed maxWordLength
};

ModeSettings sumSettings(const fimath& m) {
  return {m.getSumMode(),
          m.getSumWordLength(),
          m.getMaxSumWordLength(),
          m.getSumFixedExponent(),
          m.getSumSlopeAdjustmentFactor(),
          m.getSumBias(),
          Msg::FiMaxSumWordLengthExceeded};
}

ModeSettings productSettings(const fimath& m) {
  return {m.getProductMode(),
          m.getProductWordLength(),
          m.getMaxProductWordLength(),
          m.getProductFixedExponent(),
          m.getProductSlopeAdjustmentFactor(),
          m.getProductBias(),
          Msg::FiMaxProductWordLengthExceeded};
}

// A result's type under the settings' mode, given its full-precision width and its
// exponent under KeepLSB and under KeepMSB; FullPrecision is refused beyond the maximum.
FixedProps modeProps(const ModeSettings& s, bool issigned, int fullWidth, int lsbExponent,
                     int msbExponent, bool slopeBias) {
  switch (s.mode) {
    case ArithmeticModeEnum::FullPrecision:
      if (s.maxWordLength < fullWidth) raise(s.tooWide, s.maxWordLength, fullWidth);
      return {issigned, fullWidth, lsbExponent};
    case ArithmeticModeEnum::KeepLSB:
      return {issigned, s.wordLength, lsbExponent};
    case ArithmeticModeEnum::KeepMSB:
      return {issigned, s.wordLength, msbExponent};
    case ArithmeticModeEnum::SpecifyPrecision:
      break;
  }
  FixedProps p{issigned, s.wordLength, s.fixedExponent};
  if (slopeBias) {
    p.slopeAdjustmentFactor = s.slopeAdjustmentFactor;
    p.bias = s.bias;
  }
  return p;
}

}  // namespace

DataTypeEnum fi::getDataTypeForMathOp(const fi& a, const fi& b) {
  return b.isScaledDouble() ? DataTypeEnum::ScaledDouble : a.getNumericType().getDataType();
}

const NumericType& fi::getNumericTypeForAddOp(const fi& b) const {
  const fi& a = *this;
  const DataTypeEnum dataType = openRule(a, b);
  const bool slopeBias =
      a.isSlopeBiasScaled() || b.isSlopeBiasScaled() || math_.isSumSlopeBiasScaled();
  return fillCache(sumTypeCache_, dataType, [&] {
    refuseSlopeBias(slopeBias, "Sum", math_.getSumMode());
    const int fa = -a.type_.getFixedExponent();
    const int fb = -b.type_.getFixedExponent();
    const int I = std::max(a.getWordLength() - fa, b.getWordLength() - fb);
    const int F = std::max(fa, fb);
    const bool issigned = a.getSigned() || b.getSigned();
    const ModeSettings settings = sumSettings(math_);
    return modeProps(settings, issigned, I + 1 + F, -F, I - settings.wordLength + 1, slopeBias);
  });
}

NumericType fi::getSumTypeForAddends(int n) const {
  // The two-term sum type, with the full-precision width grown by ceil(log2 n) bits for n
  // terms instead of one bit for two.
  NumericType T = getNumericTypeForAddOp(*this);
  if (!T.isFixed() && !T.isScaledDouble()) return T;
  const int f = -type_.getFixedExponent();
  const int I = getWordLength() - f;
  const int g = growthBits(n);
  const ModeSettings settings = sumSettings(math_);
  const FixedProps p = modeProps(settings, getSigned(), I + g + f, -f, I + g - settings.wordLength,
                                 math_.isSumSlopeBiasScaled());
  T.setFixedPointProps(p.issigned, p.wordLength, p.slopeAdjustmentFactor, p.fixedExponent, p.bias);
  return T;
}

const NumericType& fi::getProductTypeForMpyOp(const fi& b) const {
  const fi& a = *this;
  const DataTypeEnum dataType = openRule(a, b);
  const bool slopeBias =
      a.isSlopeBiasScaled() || b.isSlopeBiasScaled() || math_.isProductSlopeBiasScaled();
  return fillCache(productTypeCache_, dataType, [&] {
    refuseSlopeBias(slopeBias, "Product", math_.getProductMode());
    const int wa = a.getWordLength();
    const int wb = b.getWordLength();
    const int fa = -a.type_.getFixedExponent();
    const int fb = -b.type_.getFixedExponent();
    const bool issigned = a.getSigned() || b.getSigned();
    const ModeSettings settings = productSettings(math_);
    return modeProps(settings, issigned, wa + wb, -(fa + fb),
                     wa + wb - settings.wordLength - fa - fb, slopeBias);
  });
}

const NumericType& fi::getSumNumericTypeForMatrixMultiply(const fi& b, const NumericType& P) const {
  const fi& a = *this;
  const DataTypeEnum dataType = openRule(a, b);
  // The accumulator's slope-bias test looks at the product settings, as the product does.
  const bool slopeBias =
      a.isSlopeBiasScaled() || b.isSlopeBiasScaled() || math_.isProductSlopeBiasScaled();
  return fillCache(sumTypeCache_, dataType, [&] {
    refuseSlopeBias(slopeBias, "Sum", math_.getSumMode());
    // Terms summed per result element; the real part of a complex product is itself a
    // two-term sum.
    const int n = getN() + (a.iscomplex() && b.iscomplex() ? 1 : 0);
    const int G = growthBits(n);
    const int wP = P.getWordLength();
    const int eP = P.getFixedExponent();
    const ModeSettings settings = sumSettings(math_);
    return modeProps(settings, P.getSigned(), wP + G, eP, G + wP - settings.wordLength + eP,
                     slopeBias);
  });
}

const NumericType& fi::getSumTypeForMpyOp(const fi& b, const NumericType& P) const {
  const DataTypeEnum dataType = openRule(*this, b);
  return fillCache(sumTypeCache_, dataType, [&] {
    const int wP = P.getWordLength();
    const int eP = P.getFixedExponent();
    const ModeSettings settings = sumSettings(math_);
    return modeProps(settings, P.getSigned(), wP + 1, eP, wP - settings.wordLength + eP + 1, false);
  });
}

}  // namespace corbel
