// NumericType: how the stored integers of a fi are read: data type (fixed point, scaled
// double, double, single, boolean), scaling, signedness and word length.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/messages.h"
#include "types/enumerations.h"
#include "types/exponents.h"

namespace corbel {

class HostArray;
class XoEnumStringType;

// Invariant: DataTypeMode always agrees with DataType and Scaling. Every setter keeps it
// so: a setting that makes no sense for the current mode is refused with a warning and
// changes nothing, and a change of mode resets the fields the new mode does not use.
class NumericType {
 public:
  using DataTypeModeEnum = corbel::DataTypeModeEnum;
  using DataTypeEnum = corbel::DataTypeEnum;
  using ScalingEnum = corbel::ScalingEnum;

  // Signed 16-bit binary point with fraction length 15.
  NumericType();
  // Binary point, stored unchecked.
  NumericType(bool issigned, int wordLength, int fractionLength);
  // Stores the values unchecked, then applies setDataTypeMode(mode, false).
  NumericType(DataTypeModeEnum mode, bool issigned, int wordLength, double slopeAdjustmentFactor,
              int fixedExponent, double bias);
  // Stores the values unchecked, then applies setDataType(dataType).
  NumericType(DataTypeEnum dataType, ScalingEnum scaling, bool issigned, int wordLength,
              double slopeAdjustmentFactor, int fixedExponent, double bias);
  NumericType(const NumericType&) = default;
  NumericType& operator=(const NumericType&) = default;
  virtual ~NumericType() = default;
  void set(const NumericType& other) { *this = other; }
  // Not used polymorphically; the two virtual queries are part of the host's view.
  virtual bool isAlias() const { return false; }
  virtual const char* getIsAliasString() const { return "false"; }

  DataTypeModeEnum getDataTypeMode() const { return dataTypeMode_; }
  DataTypeEnum getDataType() const { return dataType_; }
  ScalingEnum getScaling() const { return scaling_; }
  bool getSigned() const { return signed_; }
  bool isSigned() const { return signed_; }
  int getWordLength() const { return wordLength_; }
  int getFractionLength() const { return negated(fixedExponent_); }
  int getFixedExponent() const { return fixedExponent_; }
  double getSlopeAdjustmentFactor() const { return slopeAdjustmentFactor_; }
  double getSlope() const;
  double getBias() const { return bias_; }

  bool isFixed() const { return dataType_ == DataTypeEnum::Fixed; }
  bool isDouble() const { return dataType_ == DataTypeEnum::Double; }
  bool isScaledDouble() const { return dataType_ == DataTypeEnum::ScaledDouble; }
  bool isSingle() const { return dataType_ == DataTypeEnum::Single; }
  bool isBoolean() const { return dataType_ == DataTypeEnum::Boolean; }
  bool isScaledType() const { return isFixed() || isScaledDouble(); }
  bool isFloat() const { return isDouble() || isSingle(); }
  bool isBinaryPointScalingSet() const {
    return isScaledType() && scaling_ == ScalingEnum::BinaryPoint;
  }
  bool isSlopeBiasScalingSet() const {
    return isScaledType() && scaling_ == ScalingEnum::SlopeBias;
  }
  // A NaN bias counts as not zero.
  bool isSlopeBiasScaled() const {
    return isScaledType() && (slopeAdjustmentFactor_ != 1.0 || !(bias_ == 0.0));
  }
  const char* getIsSignedString() const { return signed_ ? "true" : "false"; }

  // The host types of the three enumerations, registered on first use.
  static XoEnumStringType* getDataTypeModeEnum();
  static XoEnumStringType* getDataTypeEnum();
  static XoEnumStringType* getScalingEnum();

  static const char* getNorvakClassName() { return "numerictype"; }
  // The type held by a host value that holds a numerictype object; anything else is
  // refused.
  static NumericType convertFromNorvakArray(const HostArray& value);
  static const std::string& getNorvakPackageClassName();

  void setDataTypeMode(DataTypeModeEnum mode, bool resetFromFloat);
  void setDataType(DataTypeEnum dataType);
  void setScaling(ScalingEnum scaling);
  void setSigned(bool value);
  void setIsSigned(bool value) { setSigned(value); }
  void setWordLength(int value);
  void setFractionLength(int value);
  void setFixedExponent(int value);
  void setSlopeAdjustmentFactor(double value);
  void setSlope(double value);
  void setBias(double value);
  // Unchecked: store the values and derive the mode.
  void setDataTypeProps(DataTypeEnum dataType, ScalingEnum scaling, bool issigned, int wordLength,
                        double slopeAdjustmentFactor, int fixedExponent, double bias);
  void setFixedPointProps(bool issigned, int wordLength, double slopeAdjustmentFactor,
                          int fixedExponent, double bias);

  static DataTypeEnum convertDataTypeModeToDataType(DataTypeModeEnum mode);
  // Splits |slope| into a factor in [1, 2) and a power of two. A slope that is not
  // positive and finite raises `warning` first, and is split all the same.
  static double computeFixedPropsFromSlope(double slope, int& fixedExponentOut, Msg warning);
  static void checkNaNInf(DataTypeEnum dataType, double value);
  static void errorIfComplexLogical(DataTypeEnum dataType, bool isComplex);
  static void errorIfBadValue(DataTypeEnum dataType, double real, double imag, bool isComplex);
  static void errorIfBadValue(DataTypeEnum dataType, double value);
  // Whether a fraction length or fixed exponent of `value` may be set; warns when not.
  bool fixedExponentConsistencyCheck(int value, const char* propertyName) const;

  // Equal data type, signedness, word length, factor, exponent and bias; scaling enters
  // only through the unspecified-scaling test of this object (deliberately asymmetric).
  bool isequal(const NumericType& other) const;
  // The host class that holds this type's values exactly, if there is one.
  std::optional<std::string_view> getEquivalentNorvakClassName() const;
  // The fixed exponent that best fits values up to |maxAbs| in the word length.
  void setBestPrecisionFromMaxAbs(double maxAbs);

  // Text forms.
  std::string tostring(std::string_view prefix) const;
  void disp() const;
  std::string getWordLengthString() const;
  std::string getFractionLengthString() const;
  std::string getSlopeString() const;
  std::string getBiasString() const;

  // The largest magnitude of the data, negated when it came from a negative element.
  static double largestMagnitude(const HostArray& data);
  // Best-precision scaling for host data (binary point; integer classes set the type).
  void setBestPrecision(const HostArray& data);

 private:
  // Refuses a setting: the generic warning with the property and the forbidding modes.
  static void refuse(const char* property, const char* modes);

  DataTypeModeEnum dataTypeMode_;
  DataTypeEnum dataType_;
  ScalingEnum scaling_;
  bool signed_;
  int wordLength_;
  int fixedExponent_;
  double slopeAdjustmentFactor_;
  double bias_;
};

}  // namespace corbel
