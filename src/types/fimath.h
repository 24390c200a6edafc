// fimath: the arithmetic settings a fi carries: rounding and overflow when casting, and
// the rules that size products and sums.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "types/enumerations.h"
#include "types/exponents.h"

namespace corbel {

class HostArray;
class XoEnumStringType;

class fimath {
 public:
  using PrecisionModeEnum = corbel::PrecisionModeEnum;
  using ArithmeticModeEnum = corbel::ArithmeticModeEnum;
  // [word length, fraction length]
  using Format = std::pair<double, double>;

  // The defaults: nearest, saturate, Arbitrary, FullPrecision 32/128/30 for products and
  // sums, cast before sum.
  fimath();
  // Stores every value unchecked; slope factors 1, biases 0, precision steps 8, 16, 32.
  fimath(RoundModeEnum roundMode, OverflowModeEnum overflowMode, PrecisionModeEnum precisionMode,
         ArithmeticModeEnum productMode, int productWordLength, int maxProductWordLength,
         int productFractionLength, ArithmeticModeEnum sumMode, int sumWordLength,
         int maxSumWordLength, int sumFractionLength, bool castBeforeSum);
  // The settings of the fimath object a host value holds; anything else is refused.
  explicit fimath(const HostArray& value);
  static fimath convertFromNorvakArray(const HostArray& value) { return fimath(value); }

  RoundModeEnum getRoundMode() const { return roundMode_; }
  OverflowModeEnum getOverflowMode() const { return overflowMode_; }
  PrecisionModeEnum getPrecisionMode() const { return precisionMode_; }
  const std::vector<int>& getPrecisionSteps() const { return precisionSteps_; }
  ArithmeticModeEnum getProductMode() const { return productMode_; }
  int getProductWordLength() const { return productWordLength_; }
  int getMaxProductWordLength() const { return maxProductWordLength_; }
  int getProductFixedExponent() const { return productFixedExponent_; }
  int getProductFractionLength() const { return negated(productFixedExponent_); }
  double getProductSlopeAdjustmentFactor() const { return productSlopeAdjustmentFactor_; }
  double getProductSlope() const;
  double getProductBias() const { return productBias_; }
  ArithmeticModeEnum getSumMode() const { return sumMode_; }
  int getSumWordLength() const { return sumWordLength_; }
  int getMaxSumWordLength() const { return maxSumWordLength_; }
  int getSumFixedExponent() const { return sumFixedExponent_; }
  int getSumFractionLength() const { return negated(sumFixedExponent_); }
  double getSumSlopeAdjustmentFactor() const { return sumSlopeAdjustmentFactor_; }
  double getSumSlope() const;
  double getSumBias() const { return sumBias_; }
  bool getCastBeforeSum() const { return castBeforeSum_; }

  // Text forms of the settings.
  std::string getRoundModeString() const;
  std::string getOverflowModeString() const;
  std::string getProductModeString() const;
  std::string getSumModeString() const;
  std::string getProductWordLengthString() const;
  std::string getMaxProductWordLengthString() const;
  std::string getProductFixedExponentString() const;
  std::string getProductFractionLengthString() const;
  std::string getSumWordLengthString() const;
  std::string getMaxSumWordLengthString() const;
  std::string getSumFixedExponentString() const;
  std::string getSumFractionLengthString() const;
  std::string getProductSlopeString() const;
  std::string getSumSlopeString() const;
  std::string getProductSlopeAdjustmentFactorString() const;
  std::string getProductBiasString() const;
  std::string getSumSlopeAdjustmentFactorString() const;
  std::string getSumBiasString() const;
  std::string getCastBeforeSumString() const;

  // Unchecked setters.
  void setRoundMode(RoundModeEnum v) { roundMode_ = v; }
  void setOverflowMode(OverflowModeEnum v) { overflowMode_ = v; }
  void setPrecisionMode(PrecisionModeEnum v) { precisionMode_ = v; }
  void setProductMode(ArithmeticModeEnum v) { productMode_ = v; }
  void setSumMode(ArithmeticModeEnum v) { sumMode_ = v; }
  void setCastBeforeSum(bool v) { castBeforeSum_ = v; }
  void setProductFractionLength(int v) { productFixedExponent_ = negated(v); }
  void setProductFixedExponent(int v) { productFixedExponent_ = v; }
  void setSumFractionLength(int v) { sumFixedExponent_ = negated(v); }
  void setSumFixedExponent(int v) { sumFixedExponent_ = v; }
  void setProductBias(double v) { productBias_ = v; }
  void setSumBias(double v) { sumBias_ = v; }

  // Word lengths: 1 to 65535, else an error and no change.
  void setProductWordLength(int n);
  void setMaxProductWordLength(int n);
  void setSumWordLength(int n);
  void setMaxSumWordLength(int n);
  // Slopes are split into factor and exponent, stored even after the invalid-slope
  // warning; factors outside [1, 2) warn and change nothing.
  void setProductSlope(double s);
  void setSumSlope(double s);
  void setProductSlopeAdjustmentFactor(double f);
  void setSumSlopeAdjustmentFactor(double f);

  Format getProductFormat() const;
  Format getSumFormat() const;
  // The checked word-length setter on the first number, the second stored unchecked.
  void setProductFormat(Format f);
  void setSumFormat(Format f);

  bool isProductSlopeBiasScaled() const;
  bool isSumSlopeBiasScaled() const;

  // C-style arithmetic: word length n for products and sums, floor, wrap, KeepLSB, cast
  // before sum.
  void setCStyle(int n);
  // From a host value: empty or true means 32, false changes nothing, another integer n
  // applies setCStyle(n).
  void setCStyle(const HostArray& value);
  bool isCStyle() const;
  // 1 or 0 as a host double scalar.
  HostArray getCStyle() const;

  // Compares the modes and cast-before-sum, then per product and sum mode only the fields
  // that mode uses; deliberately asymmetric (see fimath.cpp).
  bool isequal(const fimath& other) const;

  void disp() const;
  // Eleven lines: the modes, word and fraction lengths and cast-before-sum.
  std::string convertToString() const;
  static fimath string2Fimath(const std::string& text);

  // The host types of the two enumerations, registered on first use.
  static XoEnumStringType* getPrecisionModeEnum();
  static XoEnumStringType* getArithmeticModeEnum();

  static const char* getNorvakClassName() { return "fimath"; }
  static const std::string& getNorvakPackageClassName();

 private:
  RoundModeEnum roundMode_;
  OverflowModeEnum overflowMode_;
  PrecisionModeEnum precisionMode_;
  std::vector<int> precisionSteps_;
  ArithmeticModeEnum productMode_;
  int productWordLength_;
  int maxProductWordLength_;
  int productFixedExponent_;
  double productSlopeAdjustmentFactor_ = 1.0;
  double productBias_ = 0.0;
  ArithmeticModeEnum sumMode_;
  int sumWordLength_;
  int maxSumWordLength_;
  int sumFixedExponent_;
  double sumSlopeAdjustmentFactor_ = 1.0;
  double sumBias_ = 0.0;
  bool castBeforeSum_;
};

}  // namespace corbel
