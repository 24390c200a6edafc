// NumericType: the mode rules of the setters and their warnings, value checks, equality,
// best precision and the text forms.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>

#include "expect_error.h"
#include "host/host_array.h"
#include "host/host_error.h"
#include "test_host.h"
#include "types/fimath.h"
#include "types/numeric_type.h"

namespace corbel {
namespace {

using Mode = DataTypeModeEnum;

const std::string kId = "Velkora:numerictype:InvalidSetting";

std::string cannot(const std::string& property, const std::string& modes) {
  return "Cannot change the " + property + " property when the data type mode is " + modes +
         ".  That property has not been changed.";
}

bool same_fields(const NumericType& a, const NumericType& b) {
  return a.getDataTypeMode() == b.getDataTypeMode() && a.getDataType() == b.getDataType() &&
         a.getScaling() == b.getScaling() && a.getSigned() == b.getSigned() &&
         a.getWordLength() == b.getWordLength() && a.getFixedExponent() == b.getFixedExponent() &&
         a.getSlopeAdjustmentFactor() == b.getSlopeAdjustmentFactor() && a.getBias() == b.getBias();
}

class NumericTypeTest : public WithHost {};

// The default type (signed, 16 bits, fraction length 15) is shown by the text tests.
TEST_F(NumericTypeTest, ModeChanges) {
  NumericType d(Mode::Double, true, 64, 1.0, 0, 0.0);
  NumericType keep = d;
  d.setDataTypeMode(Mode::FixedSlopeBias, true);  // from a float: a signed 16-bit integer
  EXPECT_EQ(d.getWordLength(), 16);
  EXPECT_EQ(d.getFractionLength(), 0);
  EXPECT_EQ(d.getScaling(), ScalingEnum::SlopeBias);
  keep.setDataTypeMode(Mode::FixedSlopeBias, false);
  EXPECT_EQ(keep.getWordLength(), 64);

  // The mode resets what it does not use.
  NumericType sb(Mode::FixedSlopeBias, false, 12, 1.5, -3, 2.0);
  sb.setScaling(ScalingEnum::BinaryPoint);
  EXPECT_EQ(sb.getDataTypeMode(), Mode::FixedBinaryPoint);
  EXPECT_EQ(sb.getSlopeAdjustmentFactor(), 1.0);
  EXPECT_EQ(sb.getBias(), 0.0);
  EXPECT_EQ(sb.getFixedExponent(), -3);
  sb.setDataType(DataTypeEnum::ScaledDouble);
  EXPECT_EQ(sb.getDataTypeMode(), Mode::ScaledDoubleBinaryPoint);
  sb.setDataType(DataTypeEnum::Boolean);
  EXPECT_EQ(sb.getWordLength(), 1);
  EXPECT_FALSE(sb.getSigned());
  EXPECT_TRUE(host.take_warnings().empty());

  expect_error([&] { sb.setDataTypeMode(static_cast<Mode>(6), false); },
               "velkora:numerictype:setDataTypeMode:invalid", "Unrecognized DataTypeMode.");
  expect_error([&] { sb.setDataType(static_cast<DataTypeEnum>(9)); },
               "velkora:numerictype:setDataType:invalid", "Unrecognized DataType.");
  expect_error([] { NumericType::convertDataTypeModeToDataType(static_cast<Mode>(6)); },
               "velkora:numericytpe:convertDataTypeModeToDataType:unknowndatatypemode",
               "Unknown DataTypeMode.");
  EXPECT_EQ(NumericType::convertDataTypeModeToDataType(Mode::ScaledDoubleSlopeBias),
            DataTypeEnum::ScaledDouble);
}

// Each refused setting leaves every field as it was and raises exactly its warning.
TEST_F(NumericTypeTest, RefusalsWarnAndChangeNothing) {
  const NumericType dbl(Mode::Double, true, 64, 1.0, 0, 0.0);
  const NumericType boolean(Mode::Boolean, false, 1, 1.0, 0, 0.0);
  const NumericType bp;
  const NumericType sb(Mode::FixedSlopeBias, true, 16, 1.25, -4, 0.5);
  const NumericType unspecified(Mode::FixedUnspecified, true, 16, 1.0, 0, 0.0);
  const NumericType single(Mode::Single, true, 32, 1.0, 0, 0.0);
  const NumericType sdUnspecified(Mode::ScaledDoubleUnspecified, false, 24, 1.0, 0, 0.0);
  const NumericType sdBinaryPoint(Mode::ScaledDoubleBinaryPoint, true, 20, 1.0, -6, 0.0);
  const NumericType sdSlopeBias(Mode::ScaledDoubleSlopeBias, true, 20, 1.75, -6, -3.0);
  const std::string floatModes = "Double, Single or Boolean";
  const std::string unscaled =
      "Double, Single, Boolean, Scaled double or Fixed-point: unspecified scaling";
  const std::string notSlopeBias = unscaled + " or binary point scaling";
  struct Case {
    const NumericType& start;
    std::function<void(NumericType&)> set;
    std::string text;
  } cases[] = {
      {dbl, [](NumericType& t) { t.setScaling(ScalingEnum::BinaryPoint); },
       cannot("Scaling", floatModes)},
      {bp, [](NumericType& t) { t.setScaling(ScalingEnum::Unused); },
       cannot("Scaling", "Fixed point")},
      {boolean, [](NumericType& t) { t.setSigned(true); }, cannot("Signed", floatModes)},
      {dbl, [](NumericType& t) { t.setSigned(false); }, cannot("Signed", floatModes)},
      {dbl, [](NumericType& t) { t.setWordLength(32); }, cannot("WordLength", floatModes)},
      {bp, [](NumericType& t) { t.setWordLength(0); },
       "Invalid WordLength specified; the WordLength must be greater than 0"},
      {bp, [](NumericType& t) { t.setWordLength(65536); },
       "Invalid WordLength specified; the WordLength must be less than 65536"},
      {dbl, [](NumericType& t) { t.setFractionLength(3); }, cannot("FractionLength", unscaled)},
      {unspecified, [](NumericType& t) { t.setFixedExponent(-2); },
       cannot("FixedExponent", unscaled)},
      {sb, [](NumericType& t) { t.setSlopeAdjustmentFactor(2.0); },
       "Invalid SlopeAdjustmentFactor specified; the SlopeAdjustmentFactor must be greater "
       "than or equal to 1 and less than 2"},
      {sb, [](NumericType& t) { t.setSlopeAdjustmentFactor(NAN); },
       "Invalid SlopeAdjustmentFactor specified; the SlopeAdjustmentFactor must be greater "
       "than or equal to 1 and less than 2"},
      {bp, [](NumericType& t) { t.setSlopeAdjustmentFactor(1.5); },
       cannot("SlopeAdjustmentFactor", notSlopeBias)},
      {bp, [](NumericType& t) { t.setSlope(0.75); },
       "Invalid total slope specified; for binary point scaling, the total slope must be an "
       "exact power of two"},
      {unspecified, [](NumericType& t) { t.setSlope(0.5); }, cannot("Slope", unscaled)},
      {bp, [](NumericType& t) { t.setBias(1.0); }, cannot("Bias", notSlopeBias)},
      // The same rules in the other modes that can refuse them.
      {sdBinaryPoint, [](NumericType& t) { t.setScaling(ScalingEnum::Unused); },
       cannot("Scaling", "Scaled double")},
      {single, [](NumericType& t) { t.setSigned(false); }, cannot("Signed", floatModes)},
      {single, [](NumericType& t) { t.setWordLength(64); }, cannot("WordLength", floatModes)},
      {boolean, [](NumericType& t) { t.setWordLength(8); }, cannot("WordLength", floatModes)},
      {sdUnspecified, [](NumericType& t) { t.setWordLength(-5); },
       "Invalid WordLength specified; the WordLength must be greater than 0"},
      {sdUnspecified, [](NumericType& t) { t.setFractionLength(1); },
       cannot("FractionLength", unscaled)},
      {boolean, [](NumericType& t) { t.setFixedExponent(1); }, cannot("FixedExponent", unscaled)},
      {sdSlopeBias, [](NumericType& t) { t.setSlopeAdjustmentFactor(0.999); },
       "Invalid SlopeAdjustmentFactor specified; the SlopeAdjustmentFactor must be greater "
       "than or equal to 1 and less than 2"},
      {sdBinaryPoint, [](NumericType& t) { t.setSlopeAdjustmentFactor(1.5); },
       cannot("SlopeAdjustmentFactor", notSlopeBias)},
      {sdUnspecified, [](NumericType& t) { t.setSlope(0.5); }, cannot("Slope", unscaled)},
      {dbl, [](NumericType& t) { t.setSlope(2.0); }, cannot("Slope", unscaled)},
      {sdBinaryPoint, [](NumericType& t) { t.setBias(0.5); }, cannot("Bias", notSlopeBias)},
      {unspecified, [](NumericType& t) { t.setBias(NAN); }, cannot("Bias", notSlopeBias)},
  };
  for (const Case& c : cases) {
    NumericType t = c.start;
    c.set(t);
    EXPECT_TRUE(same_fields(t, c.start)) << c.text;
    const auto w = host.take_warnings();
    ASSERT_EQ(w.size(), 1u) << c.text;
    EXPECT_EQ(w[0].identifier, kId);
    EXPECT_EQ(w[0].text, c.text);
  }
  // The settings each mode accepts silently.
  NumericType d = dbl;
  d.setFractionLength(0);
  d.setWordLength(64);
  d.setSigned(true);
  d.setScaling(ScalingEnum::Unused);
  d.setSlope(1.0);
  d.setBias(0.0);
  EXPECT_TRUE(host.take_warnings().empty());
  NumericType b = boolean;
  b.setSigned(false);
  b.setWordLength(1);
  NumericType s = single;
  s.setSigned(true);
  s.setWordLength(32);
  NumericType u = unspecified;
  u.setSlopeAdjustmentFactor(1.0);
  u.setFixedExponent(0);
  EXPECT_TRUE(host.take_warnings().empty());
  EXPECT_TRUE(same_fields(b, boolean) && same_fields(s, single) && same_fields(u, unspecified));
  NumericType w = bp;
  w.setWordLength(65535);
  EXPECT_EQ(w.getWordLength(), 65535);

  // An invalid slope in binary point mode draws both warnings: the split goes on after the
  // first, and its result is then refused as no power of two.
  for (double slope : {-1.0, 0.0, static_cast<double>(NAN)}) {
    NumericType t = bp;
    t.setSlope(slope);
    EXPECT_TRUE(same_fields(t, bp)) << slope;
    const auto warnings = host.take_warnings();
    ASSERT_EQ(warnings.size(), 2u) << slope;
    EXPECT_EQ(warnings[0].text,
              "Invalid total slope specified; the total slope must be greater than 0 and finite");
    EXPECT_EQ(warnings[1].text,
              "Invalid total slope specified; for binary point scaling, the total slope must be "
              "an exact power of two");
  }
  EXPECT_TRUE(unspecified.fixedExponentConsistencyCheck(0, "FixedExponent"));
  EXPECT_FALSE(unspecified.fixedExponentConsistencyCheck(2, "Named"));
  EXPECT_EQ(host.take_warnings().at(0).text, cannot("Named", unscaled));
  EXPECT_TRUE(sdBinaryPoint.fixedExponentConsistencyCheck(-9, "FixedExponent"));
}

TEST_F(NumericTypeTest, SlopesSplitIntoFactorAndExponent) {
  NumericType sd(Mode::ScaledDoubleBinaryPoint, true, 16, 1.0, -4, 0.0);
  sd.setSlope(0.75);  // no power-of-two rule for scaled doubles
  EXPECT_EQ(sd.getDataTypeMode(), Mode::ScaledDoubleBinaryPoint);
  EXPECT_EQ(sd.getSlopeAdjustmentFactor(), 1.5);
  EXPECT_EQ(sd.getFixedExponent(), -1);
  NumericType sb(Mode::FixedSlopeBias, true, 16, 1.0, 0, 0.0);
  sb.setSlope(-1.0);  // warns, and is stored all the same
  const auto w = host.take_warnings();
  ASSERT_EQ(w.size(), 1u);
  EXPECT_EQ(w[0].text,
            "Invalid total slope specified; the total slope must be greater than 0 and finite");
  EXPECT_EQ(sb.getSlopeAdjustmentFactor(), -1.0);
  EXPECT_EQ(sb.getFixedExponent(), 0);
  NumericType bp;
  bp.setSlope(std::ldexp(1.0, -9));
  EXPECT_EQ(bp.getFractionLength(), 9);
  // Fraction lengths are stored unchecked as negated exponents; -2^31 wraps to itself.
  constexpr int kMin = std::numeric_limits<int>::min();
  bp.setFractionLength(kMin);
  EXPECT_EQ(bp.getFixedExponent(), kMin);
  EXPECT_EQ(bp.getFractionLength(), kMin);
  fimath m;
  m.setProductFractionLength(kMin);
  m.setSumFractionLength(std::numeric_limits<int>::max());
  EXPECT_EQ(m.getProductFractionLength(), kMin);
  EXPECT_EQ(m.getSumFixedExponent(), -std::numeric_limits<int>::max());
}

TEST_F(NumericTypeTest, ValueChecks) {
  expect_error([] { NumericType::checkNaNInf(DataTypeEnum::Fixed, NAN); }, "velkora:nofixednan",
               "NaN cannot be converted to fixed-point.");
  expect_error([] { NumericType::checkNaNInf(DataTypeEnum::ScaledDouble, NAN); },
               "velkora:nofixednan", "NaN cannot be converted to scaled double.");
  expect_error([] { NumericType::checkNaNInf(DataTypeEnum::Boolean, NAN); }, "velkora:nologicalnan",
               "NaN cannot be converted to boolean.");
  expect_error([] { NumericType::checkNaNInf(DataTypeEnum::Fixed, -INFINITY); },
               "velkora:nofixedinf", "Inf cannot be converted to fixed-point.");
  expect_error([] { NumericType::checkNaNInf(DataTypeEnum::ScaledDouble, INFINITY); },
               "velkora:nofixedinf", "Inf cannot be converted to scaled double.");
  expect_error([] { NumericType::errorIfBadValue(DataTypeEnum::Boolean, 1, 0, true); },
               "velkora:nologicalcomplex", "Complex values cannot be converted to boolean.");
  expect_error([] { NumericType::errorIfBadValue(DataTypeEnum::Fixed, 1, NAN, true); },
               "velkora:nofixednan", "NaN cannot be converted to fixed-point.");
  NumericType::checkNaNInf(DataTypeEnum::Boolean, INFINITY);
  NumericType::errorIfBadValue(DataTypeEnum::Double, NAN, INFINITY, true);
  NumericType::errorIfBadValue(DataTypeEnum::Fixed, 1, NAN, false);  // imaginary unused
}

TEST_F(NumericTypeTest, EqualityIsAsymmetricInScaling) {
  const NumericType bp(Mode::FixedBinaryPoint, true, 16, 1.0, -4, 0.0);
  NumericType sbSame(Mode::FixedSlopeBias, true, 16, 1.0, -4, 0.0);
  EXPECT_TRUE(bp.isequal(sbSame));
  const NumericType unspecified(Mode::FixedUnspecified, true, 16, 1.0, 0, 0.0);
  const NumericType bp0(Mode::FixedBinaryPoint, true, 16, 1.0, 0, 0.0);
  EXPECT_TRUE(bp0.isequal(unspecified));
  EXPECT_FALSE(unspecified.isequal(bp0));
  NumericType other = bp;
  other.setBias(0.0);
  other.setSigned(false);
  EXPECT_FALSE(bp.isequal(other));
  // The same asymmetry for scaled doubles; a fixed-point and a scaled-double type never match.
  const NumericType sdUnspecified(Mode::ScaledDoubleUnspecified, true, 16, 1.0, 0, 0.0);
  const NumericType sdBinaryPoint(Mode::ScaledDoubleBinaryPoint, true, 16, 1.0, 0, 0.0);
  EXPECT_TRUE(sdBinaryPoint.isequal(sdUnspecified));
  EXPECT_FALSE(sdUnspecified.isequal(sdBinaryPoint));
  EXPECT_TRUE(sdUnspecified.isequal(sdUnspecified));
  EXPECT_FALSE(sdUnspecified.isequal(unspecified));
  EXPECT_FALSE(bp0.isequal(sdBinaryPoint));
  // Fields compare with ==, so a NaN bias is unequal even to itself.
  const NumericType nanBias(Mode::FixedSlopeBias, true, 16, 1.0, 0, NAN);
  EXPECT_FALSE(nanBias.isequal(nanBias));
}

TEST_F(NumericTypeTest, EquivalentHostClass) {
  EXPECT_EQ(NumericType(false, 16, 0).getEquivalentNorvakClassName(), "uint16");
  EXPECT_EQ(NumericType(true, 8, 0).getEquivalentNorvakClassName(), "int8");
  EXPECT_EQ(NumericType(false, 16, 1).getEquivalentNorvakClassName(), std::nullopt);
  EXPECT_EQ(NumericType(true, 64, 0).getEquivalentNorvakClassName(), std::nullopt);
  EXPECT_EQ(NumericType(Mode::Single, true, 32, 1, 0, 0).getEquivalentNorvakClassName(), "single");
  EXPECT_EQ(
      NumericType(Mode::ScaledDoubleBinaryPoint, true, 32, 1, 0, 0).getEquivalentNorvakClassName(),
      std::nullopt);
}

}  // namespace
}  // namespace corbel
