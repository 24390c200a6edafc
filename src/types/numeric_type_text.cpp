// NumericType: text forms, best precision from host data, and the division entry check.
#include <cmath>
#include <cstdio>

#include "host/host_array.h"
#include "host/services.h"
#include "types/numeric_type.h"

namespace corbel {
namespace {

std::string printed(const char* format, double v) {
  char buf[64];
  std::snprintf(buf, sizeof buf, format, v);
  return buf;
}

std::string printed(const char* format, int v) {
  char buf[64];
  std::snprintf(buf, sizeof buf, format, v);
  return buf;
}

}  // namespace

std::string NumericType::getWordLengthString() const {
  return printed("%d", wordLength_);
}

std::string NumericType::getFractionLengthString() const {
  return printed("%d", getFractionLength());
}

std::string NumericType::getSlopeString() const {
  if (slopeAdjustmentFactor_ == 1.0 && bias_ == 0.0) return printed("2^%d", fixedExponent_);
  return printed("%.17g", getSlope());
}

std::string NumericType::getBiasString() const {
  return printed("%.17g", bias_);
}

// Fixed-point forms are positional and scaled-double forms name/value pairs. In the
// scaled-double slope-bias form no comma separates 'Bias' from its value: that is the
// form as the host reads and writes it.
std::string NumericType::tostring(std::string_view prefix) const {
  std::string s(prefix);
  s += "(";
  const std::string sign = getIsSignedString();
  switch (dataType_) {
    case DataTypeEnum::Fixed:
      s += sign + "," + getWordLengthString();
      if (scaling_ == ScalingEnum::BinaryPoint)
        s += "," + getFractionLengthString();
      else if (scaling_ == ScalingEnum::SlopeBias)
        s += "," + getSlopeString() + "," + getBiasString();
      break;
    case DataTypeEnum::Boolean:
      s += "'boolean'";
      break;
    case DataTypeEnum::Double:
      s += "'double'";
      break;
    case DataTypeEnum::Single:
      s += "'single'";
      break;
    case DataTypeEnum::ScaledDouble:
      s += "'DataType','ScaledDouble','Signed'," + sign + ",'WordLength'," + getWordLengthString() +
           ",";
      if (scaling_ == ScalingEnum::BinaryPoint)
        s += "'Scaling','BinaryPoint','FractionLength'," + getFractionLengthString();
      else if (scaling_ == ScalingEnum::SlopeBias)
        s += "'Scaling','SlopeBias','Slope'," + getSlopeString() + ",'Bias'" + getBiasString();
      else
        s += "'Scaling','Unspecified'";
      break;
  }
  return s + ")";
}

void NumericType::disp() const {
  std::string out = "\n          DataTypeMode: ";
  out += enum_to_string(dataTypeMode_).value_or("");
  if (isScaledType()) {
    out += "\n                Signed: ";
    out += getIsSignedString();
    out += printed("\n            WordLength: %d", wordLength_);
    if (scaling_ == ScalingEnum::BinaryPoint) {
      out += printed("\n        FractionLength: %d", getFractionLength());
    } else if (scaling_ == ScalingEnum::SlopeBias) {
      out += (slopeAdjustmentFactor_ == 1.0 && bias_ == 0.0)
                 ? printed("\n                 Slope: 2^%d", fixedExponent_)
                 : printed("\n                 Slope: %.17g", getSlope());
      out += printed("\n                  Bias: %.17g", bias_);
    }
  }
  out += "\n";
  host_services().print(out);
}

namespace {

// Keeps the largest magnitude and whether it came from a negative element; of equal
// magnitudes the positive one wins. Starts at magnitude 0, negative.
template <class T>
void scan(const T* values, std::size_t n, double& magnitude, bool& negative) {
  for (std::size_t i = 0; i < n; ++i) {
    const double v = static_cast<double>(values[i]);
    if (std::isnan(v)) raise(Msg::FiNoNaN);
    const double a = std::fabs(v);
    if (a > magnitude || (a == magnitude && negative)) {
      magnitude = a;
      negative = v < 0;
    }
  }
}

}  // namespace

double NumericType::largestMagnitude(const HostArray& data) {
  double magnitude = 0.0;
  bool negative = true;
  const std::size_t n = data.numel();
  if (data.element_class() == HostClass::Single) {
    scan(data.real<float>(), n, magnitude, negative);
    if (data.is_complex()) scan(data.imag<float>(), n, magnitude, negative);
  } else {
    scan(data.real<double>(), n, magnitude, negative);
    if (data.is_complex()) scan(data.imag<double>(), n, magnitude, negative);
  }
  return negative ? -magnitude : magnitude;
}

void NumericType::setBestPrecision(const HostArray& data) {
  if (!isScaledType()) return;
  setDataTypeMode(
      isFixed() ? DataTypeModeEnum::FixedBinaryPoint : DataTypeModeEnum::ScaledDoubleBinaryPoint,
      true);
  if (data.is_empty()) {
    setFractionLength(wordLength_ - 1);
    return;
  }
  if (!data.is_numeric()) raise(Msg::BestPrecisionNotNumeric);
  struct IntegerType {
    bool issigned;
    int wordLength;
  };
  IntegerType t{};
  switch (data.element_class()) {
    case HostClass::Double:
    case HostClass::Single:
      setBestPrecisionFromMaxAbs(largestMagnitude(data));
      return;
    // Logical data carry no numeric flag and stop above; the row stays for data that do.
    case HostClass::Logical:
    case HostClass::UInt8:
      t = {false, 8};
      break;
    case HostClass::Int8:
      t = {true, 8};
      break;
    case HostClass::Int16:
      t = {true, 16};
      break;
    case HostClass::UInt16:
      t = {false, 16};
      break;
    case HostClass::Int32:
      t = {true, 32};
      break;
    case HostClass::UInt32:
      t = {false, 32};
      break;
    case HostClass::Int64:
      t = {true, 64};
      break;
    case HostClass::UInt64:
      t = {false, 64};
      break;
    default:
      raise(Msg::BestPrecisionUnsupportedClass);
  }
  setFixedPointProps(t.issigned, t.wordLength, 1.0, 0, 0.0);
}

}  // namespace corbel
