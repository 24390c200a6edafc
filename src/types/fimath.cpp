// fimath: defaults, checked setters, C style, equality, display and the string form.
#include "types/fimath.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "host/host_array.h"
#include "host/messages.h"
#include "host/services.h"
#include "host/xo_class.h"
#include "types/embedded.h"
#include "types/numeric_type.h"

namespace corbel {
namespace {

std::string printed(const char* format, double v) {
  char buf[64];
  std::snprintf(buf, sizeof buf, format, v);
  return buf;
}

std::string printed(int v) {
  return std::to_string(v);
}

template <class E>
std::string text_of(E value) {
  return std::string(enum_to_string(value).value_or(""));
}

void check_word_length(int n, Msg nonPositive, Msg tooBig) {
  if (n <= 0) raise(nonPositive);
  if (n > 65535) raise(tooBig);
}

}  // namespace

fimath::fimath()
    : fimath(RoundModeEnum::Nearest, OverflowModeEnum::Saturate, PrecisionModeEnum::Arbitrary,
             ArithmeticModeEnum::FullPrecision, 32, 128, 30, ArithmeticModeEnum::FullPrecision, 32,
             128, 30, true) {}

fimath::fimath(RoundModeEnum roundMode, OverflowModeEnum overflowMode,
               PrecisionModeEnum precisionMode, ArithmeticModeEnum productMode,
               int productWordLength, int maxProductWordLength, int productFractionLength,
               ArithmeticModeEnum sumMode, int sumWordLength, int maxSumWordLength,
               int sumFractionLength, bool castBeforeSum)
    : roundMode_(roundMode),
      overflowMode_(overflowMode),
      precisionMode_(precisionMode),
      precisionSteps_{8, 16, 32},
      productMode_(productMode),
      productWordLength_(productWordLength),
      maxProductWordLength_(maxProductWordLength),
      productFixedExponent_(negated(productFractionLength)),
      sumMode_(sumMode),
      sumWordLength_(sumWordLength),
      maxSumWordLength_(maxSumWordLength),
      sumFixedExponent_(negated(sumFractionLength)),
      castBeforeSum_(castBeforeSum) {}

fimath::fimath(const HostArray& value) : fimath() {
  const XoInterface* object = value.object();
  if (object == nullptr ||
      object->getClass()->getPackageClassName() != getNorvakPackageClassName() ||
      object->getClassSpecificObject() == nullptr)
    raise(Msg::FimathMustBeFimath);
  *this = *static_cast<const fimath*>(object->getClassSpecificObject());
}

const std::string& fimath::getNorvakPackageClassName() {
  static const std::string name =
      std::string(embedded::getEmbeddedPackageName()) + "." + getNorvakClassName();
  return name;
}

XoEnumStringType* fimath::getPrecisionModeEnum() {
  return embedded::getEnumType<PrecisionModeEnum>();
}
XoEnumStringType* fimath::getArithmeticModeEnum() {
  return embedded::getEnumType<ArithmeticModeEnum>();
}

double fimath::getProductSlope() const {
  return std::ldexp(productSlopeAdjustmentFactor_, productFixedExponent_);
}
double fimath::getSumSlope() const {
  return std::ldexp(sumSlopeAdjustmentFactor_, sumFixedExponent_);
}

// --- Text getters ------------------------------------------------------------------------

std::string fimath::getRoundModeString() const {
  return text_of(roundMode_);
}
std::string fimath::getOverflowModeString() const {
  return text_of(overflowMode_);
}
std::string fimath::getProductModeString() const {
  return text_of(productMode_);
}
std::string fimath::getSumModeString() const {
  return text_of(sumMode_);
}
std::string fimath::getProductWordLengthString() const {
  return printed(productWordLength_);
}
std::string fimath::getMaxProductWordLengthString() const {
  return printed(maxProductWordLength_);
}
std::string fimath::getProductFixedExponentString() const {
  return printed(productFixedExponent_);
}
std::string fimath::getProductFractionLengthString() const {
  return printed(getProductFractionLength());
}
std::string fimath::getSumWordLengthString() const {
  return printed(sumWordLength_);
}
std::string fimath::getMaxSumWordLengthString() const {
  return printed(maxSumWordLength_);
}
std::string fimath::getSumFixedExponentString() const {
  return printed(sumFixedExponent_);
}
std::string fimath::getSumFractionLengthString() const {
  return printed(getSumFractionLength());
}
std::string fimath::getProductSlopeString() const {
  return printed("%1.5g", getProductSlope());
}
std::string fimath::getSumSlopeString() const {
  return printed("%1.5g", getSumSlope());
}
std::string fimath::getProductSlopeAdjustmentFactorString() const {
  return printed("%1.5g", productSlopeAdjustmentFactor_);
}
std::string fimath::getProductBiasString() const {
  return printed("%1.5g", productBias_);
}
std::string fimath::getSumSlopeAdjustmentFactorString() const {
  return printed("%1.5g", sumSlopeAdjustmentFactor_);
}
std::string fimath::getSumBiasString() const {
  return printed("%1.5g", sumBias_);
}
std::string fimath::getCastBeforeSumString() const {
  return castBeforeSum_ ? "1" : "0";
}

// --- Checked setters ---------------------------------------------------------------------

void fimath::setProductWordLength(int n) {
  check_word_length(n, Msg::FimathNonPositiveProductWordLength, Msg::FimathTooBigProductWordLength);
  productWordLength_ = n;
}
void fimath::setMaxProductWordLength(int n) {
  check_word_length(n, Msg::FimathNonPositiveMaxProductWordLength,
                    Msg::FimathTooBigMaxProductWordLength);
  maxProductWordLength_ = n;
}
void fimath::setSumWordLength(int n) {
  check_word_length(n, Msg::FimathNonPositiveSumWordLength, Msg::FimathTooBigSumWordLength);
  sumWordLength_ = n;
}
void fimath::setMaxSumWordLength(int n) {
  check_word_length(n, Msg::FimathNonPositiveMaxSumWordLength, Msg::FimathTooBigMaxSumWordLength);
  maxSumWordLength_ = n;
}

void fimath::setProductSlope(double s) {
  int exponent = 0;
  productSlopeAdjustmentFactor_ =
      NumericType::computeFixedPropsFromSlope(s, exponent, Msg::FimathInvalidSlope);
  productFixedExponent_ = exponent;
}
void fimath::setSumSlope(double s) {
  int exponent = 0;
  sumSlopeAdjustmentFactor_ =
      NumericType::computeFixedPropsFromSlope(s, exponent, Msg::FimathInvalidSlope);
  sumFixedExponent_ = exponent;
}
void fimath::setProductSlopeAdjustmentFactor(double f) {
  if (f >= 1 && f < 2)
    productSlopeAdjustmentFactor_ = f;
  else
    warn(Msg::FimathInvalidSlopeAdjustmentFactor);
}
void fimath::setSumSlopeAdjustmentFactor(double f) {
  if (f >= 1 && f < 2)
    sumSlopeAdjustmentFactor_ = f;
  else
    warn(Msg::FimathInvalidSlopeAdjustmentFactor);
}

fimath::Format fimath::getProductFormat() const {
  return {productWordLength_, getProductFractionLength()};
}
fimath::Format fimath::getSumFormat() const {
  return {sumWordLength_, getSumFractionLength()};
}
void fimath::setProductFormat(Format f) {
  setProductWordLength(saturatedInt(f.first));
  productFixedExponent_ = negated(saturatedInt(f.second));
}
void fimath::setSumFormat(Format f) {
  setSumWordLength(saturatedInt(f.first));
  sumFixedExponent_ = negated(saturatedInt(f.second));
}

bool fimath::isProductSlopeBiasScaled() const {
  return productSlopeAdjustmentFactor_ != 1.0 || productBias_ != 0.0;
}
bool fimath::isSumSlopeBiasScaled() const {
  return sumSlopeAdjustmentFactor_ != 1.0 || sumBias_ != 0.0;
}

// --- C style -----------------------------------------------------------------------------

void fimath::setCStyle(int n) {
  setProductWordLength(n);
  setSumWordLength(n);
  roundMode_ = RoundModeEnum::Floor;
  overflowMode_ = OverflowModeEnum::Wrap;
  productMode_ = ArithmeticModeEnum::KeepLSB;
  sumMode_ = ArithmeticModeEnum::KeepLSB;
  castBeforeSum_ = true;
}

void fimath::setCStyle(const HostArray& value) {
  if (!(value.is_numeric() || value.is_logical()) || value.numel() > 1)
    raise(Msg::FimathCStyleBadValue);
  if (value.is_empty()) return setCStyle(32);
  // Truncated to an integer; NaN and infinities are none, and a number beyond int's range
  // stays beyond every word length so that setCStyle(n) refuses it.
  const double v = value.real_as_double(0);
  if (!std::isfinite(v)) raise(Msg::FimathCStyleBadValue);
  const int n = saturatedInt(v);
  if (n == 1) return setCStyle(32);
  if (n == 0) return;
  setCStyle(n);
}

bool fimath::isCStyle() const {
  return roundMode_ == RoundModeEnum::Floor && overflowMode_ == OverflowModeEnum::Wrap &&
         productMode_ == ArithmeticModeEnum::KeepLSB && sumMode_ == ArithmeticModeEnum::KeepLSB &&
         productWordLength_ == sumWordLength_ && castBeforeSum_;
}

HostArray fimath::getCStyle() const {
  return HostArray::make_double(isCStyle() ? 1.0 : 0.0);
}

// --- Equality ----------------------------------------------------------------------------

namespace {

// The fields a mode uses: KeepLSB and KeepMSB compare word length, maximum and fraction
// length; SpecifyPrecision only the fraction length (its word length is deliberately not
// compared); FullPrecision nothing. The mode of the left operand decides.
bool same_sizing(ArithmeticModeEnum mode, int wl, int maxwl, int fl, int owl, int omaxwl, int ofl) {
  switch (mode) {
    case ArithmeticModeEnum::FullPrecision:
      return true;
    case ArithmeticModeEnum::KeepLSB:
    case ArithmeticModeEnum::KeepMSB:
      return wl == owl && maxwl == omaxwl && fl == ofl;
    case ArithmeticModeEnum::SpecifyPrecision:
      return fl == ofl;
  }
  return true;
}

}  // namespace

bool fimath::isequal(const fimath& o) const {
  return roundMode_ == o.roundMode_ && overflowMode_ == o.overflowMode_ &&
         productMode_ == o.productMode_ && sumMode_ == o.sumMode_ &&
         castBeforeSum_ == o.castBeforeSum_ &&
         same_sizing(productMode_, productWordLength_, maxProductWordLength_, productFixedExponent_,
                     o.productWordLength_, o.maxProductWordLength_, o.productFixedExponent_) &&
         same_sizing(sumMode_, sumWordLength_, maxSumWordLength_, sumFixedExponent_,
                     o.sumWordLength_, o.maxSumWordLength_, o.sumFixedExponent_);
}

// --- Display and string form -------------------------------------------------------------

namespace {

// One block of the display for products or sums; labels end at the common colon column.
void sizing_lines(std::string& out, ArithmeticModeEnum mode, const char* maxLabel,
                  const char* wordLabel, const char* slopeLabel, const char* biasLabel,
                  const char* fractionLabel, int maxwl, int wl, bool slopeBias, double slope,
                  double bias, int fl) {
  char buf[128];
  switch (mode) {
    case ArithmeticModeEnum::FullPrecision:
      std::snprintf(buf, sizeof buf, maxLabel, maxwl);
      out += buf;
      break;
    case ArithmeticModeEnum::KeepLSB:
    case ArithmeticModeEnum::KeepMSB:
      std::snprintf(buf, sizeof buf, wordLabel, wl);
      out += buf;
      break;
    case ArithmeticModeEnum::SpecifyPrecision:
      std::snprintf(buf, sizeof buf, wordLabel, wl);
      out += buf;
      if (slopeBias) {
        std::snprintf(buf, sizeof buf, slopeLabel, slope);
        out += buf;
        std::snprintf(buf, sizeof buf, biasLabel, bias);
        out += buf;
      } else {
        std::snprintf(buf, sizeof buf, fractionLabel, fl);
        out += buf;
      }
      break;
  }
}

}  // namespace

void fimath::disp() const {
  std::string out = "\n             RoundMode: ";
  out += getRoundModeString();
  out += "\n          OverflowMode: ";
  out += getOverflowModeString();
  out += "\n           ProductMode: ";
  out += getProductModeString();
  sizing_lines(out, productMode_, "\n  MaxProductWordLength: %d", "\n     ProductWordLength: %d",
               "\n          ProductSlope: %1.5g", "\n           ProductBias: %1.5g",
               "\n ProductFractionLength: %d", maxProductWordLength_, productWordLength_,
               isProductSlopeBiasScaled(), getProductSlope(), productBias_,
               getProductFractionLength());
  out += "\n               SumMode: ";
  out += getSumModeString();
  sizing_lines(out, sumMode_, "\n      MaxSumWordLength: %d", "\n         SumWordLength: %d",
               "\n              SumSlope: %1.5g", "\n               SumBias: %1.5g",
               "\n     SumFractionLength: %d", maxSumWordLength_, sumWordLength_,
               isSumSlopeBiasScaled(), getSumSlope(), sumBias_, getSumFractionLength());
  out += "\n         CastBeforeSum: ";
  out += castBeforeSum_ ? "true" : "false";
  out += "\n";
  host_services().print(out);
}

std::string fimath::convertToString() const {
  std::string s;
  for (const std::string& line :
       {getRoundModeString(), getOverflowModeString(), getProductModeString(),
        getProductWordLengthString(), getMaxProductWordLengthString(),
        getProductFractionLengthString(), getSumModeString(), getSumWordLengthString(),
        getMaxSumWordLengthString(), getSumFractionLengthString(), getCastBeforeSumString()}) {
    s += line;
    s += '\n';
  }
  return s;
}

namespace {

template <class E>
E parse_enum(const std::string& text) {
  const std::optional<E> v = enum_from_string<E>(text);
  if (!v) raise(Msg::FimathString2FimathBadEnum, text.c_str());
  return *v;
}

// A plain decimal conversion: malformed digits are not an error, text gives 0.
int parse_int(const std::string& text) {
  return std::atoi(text.c_str());
}

}  // namespace

fimath fimath::string2Fimath(const std::string& text) {
  std::vector<std::string> f;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) f.push_back(line);
  f.resize(11);
  // The mode lines are read in order, so the first bad one is the one reported.
  const auto round = parse_enum<RoundModeEnum>(f[0]);
  const auto overflow = parse_enum<OverflowModeEnum>(f[1]);
  const auto product = parse_enum<ArithmeticModeEnum>(f[2]);
  const auto sum = parse_enum<ArithmeticModeEnum>(f[6]);
  return fimath(round, overflow, PrecisionModeEnum::Arbitrary, product, parse_int(f[3]),
                parse_int(f[4]), parse_int(f[5]), sum, parse_int(f[7]), parse_int(f[8]),
                parse_int(f[9]), parse_int(f[10]) != 0);
}

}  // namespace corbel
