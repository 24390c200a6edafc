// NumericType text forms, byte for byte: the constructor-call string, the display block and
// the per-property strings.
#include <gtest/gtest.h>

#include <string>

#include "test_host.h"
#include "types/numeric_type.h"

namespace corbel {
namespace {

using Mode = DataTypeModeEnum;

class NumericTypeTextTest : public WithHost {};

TEST_F(NumericTypeTextTest, ConstructorCallString) {
  const std::string sd = "numerictype('DataType','ScaledDouble',";
  struct Case {
    NumericType t;
    std::string text;
  } cases[] = {
      {NumericType(), "numerictype(true,16,15)"},
      {NumericType(false, 32, 0), "numerictype(false,32,0)"},
      {NumericType(true, 8, -3), "numerictype(true,8,-3)"},
      {NumericType(true, 65535, 70000), "numerictype(true,65535,70000)"},
      {NumericType(Mode::FixedUnspecified, false, 16, 1, 0, 0), "numerictype(false,16)"},
      // Slope-bias: "2^e" only while the factor is exactly 1 and the bias exactly 0;
      // otherwise the slope with 17 significant digits.
      {NumericType(Mode::FixedSlopeBias, true, 8, 1.0, -3, 0.0), "numerictype(true,8,2^-3,0)"},
      {NumericType(Mode::FixedSlopeBias, true, 8, 1.0, 3, 0.0), "numerictype(true,8,2^3,0)"},
      {NumericType(Mode::FixedSlopeBias, true, 8, 1.0, -3, 1.0), "numerictype(true,8,0.125,1)"},
      {NumericType(Mode::FixedSlopeBias, false, 8, 1.1, -3, 0.1),
       "numerictype(false,8,0.13750000000000001,0.10000000000000001)"},
      {NumericType(Mode::FixedSlopeBias, true, 8, 1.75, 20, -0.5),
       "numerictype(true,8,1835008,-0.5)"},
      {NumericType(Mode::Boolean, false, 1, 1, 0, 0), "numerictype('boolean')"},
      {NumericType(Mode::Single, true, 32, 1, 0, 0), "numerictype('single')"},
      {NumericType(Mode::Double, true, 64, 1, 0, 0), "numerictype('double')"},
      {NumericType(Mode::ScaledDoubleBinaryPoint, true, 16, 1, -15, 0),
       sd + "'Signed',true,'WordLength',16,'Scaling','BinaryPoint','FractionLength',15)"},
      {NumericType(Mode::ScaledDoubleUnspecified, true, 9, 1, 0, 0),
       sd + "'Signed',true,'WordLength',9,'Scaling','Unspecified')"},
      // No comma between 'Bias' and its value in this form.
      {NumericType(Mode::ScaledDoubleSlopeBias, false, 16, 1, -2, 0),
       sd + "'Signed',false,'WordLength',16,'Scaling','SlopeBias','Slope',2^-2,'Bias'0)"},
      {NumericType(Mode::ScaledDoubleSlopeBias, true, 12, 1.5, -3, 1.5),
       sd + "'Signed',true,'WordLength',12,'Scaling','SlopeBias','Slope',0.1875,'Bias'1.5)"},
  };
  for (const Case& c : cases) EXPECT_EQ(c.t.tostring("numerictype"), c.text);
  EXPECT_EQ(NumericType().tostring("T"), "T(true,16,15)");
  EXPECT_EQ(NumericType().tostring(""), "(true,16,15)");
}

TEST_F(NumericTypeTextTest, PropertyStrings) {
  const NumericType bp(true, 12, -3);
  EXPECT_EQ(bp.getWordLengthString(), "12");
  EXPECT_EQ(bp.getFractionLengthString(), "-3");
  EXPECT_EQ(bp.getSlopeString(), "2^3");
  EXPECT_EQ(bp.getBiasString(), "0");
  EXPECT_STREQ(bp.getIsSignedString(), "true");
  EXPECT_STREQ(bp.getIsAliasString(), "false");
  const NumericType sb(Mode::FixedSlopeBias, false, 8, 1.0, -4, -0.1);
  EXPECT_EQ(sb.getSlopeString(), "0.0625");
  EXPECT_EQ(sb.getBiasString(), "-0.10000000000000001");
  EXPECT_STREQ(sb.getIsSignedString(), "false");
  EXPECT_EQ(NumericType(Mode::FixedSlopeBias, true, 8, 1.25, -60, 0).getSlopeString(),
            "1.0842021724855044e-18");
}

// Labels right-aligned so every colon sits in the same column as fimath's.
TEST_F(NumericTypeTextTest, DisplayBlock) {
  struct Case {
    NumericType t;
    std::string text;
  } cases[] = {
      {NumericType(),
       "\n          DataTypeMode: Fixed-point: binary point scaling"
       "\n                Signed: true"
       "\n            WordLength: 16"
       "\n        FractionLength: 15\n"},
      {NumericType(Mode::FixedSlopeBias, false, 8, 1.25, -3, -0.5),
       "\n          DataTypeMode: Fixed-point: slope and bias scaling"
       "\n                Signed: false"
       "\n            WordLength: 8"
       "\n                 Slope: 0.15625"
       "\n                  Bias: -0.5\n"},
      {NumericType(Mode::ScaledDoubleSlopeBias, true, 20, 1.0, -7, 0.0),
       "\n          DataTypeMode: Scaled double: slope and bias scaling"
       "\n                Signed: true"
       "\n            WordLength: 20"
       "\n                 Slope: 2^-7"
       "\n                  Bias: 0\n"},
      {NumericType(Mode::ScaledDoubleUnspecified, false, 5, 1, 0, 0),
       "\n          DataTypeMode: Scaled double: unspecified scaling"
       "\n                Signed: false"
       "\n            WordLength: 5\n"},
      {NumericType(Mode::Double, true, 64, 1, 0, 0), "\n          DataTypeMode: double\n"},
      {NumericType(Mode::Boolean, false, 1, 1, 0, 0), "\n          DataTypeMode: boolean\n"},
  };
  for (const Case& c : cases) {
    c.t.disp();
    EXPECT_EQ(host.take_console(), c.text);
  }
  EXPECT_TRUE(host.take_warnings().empty());
}

}  // namespace
}  // namespace corbel
