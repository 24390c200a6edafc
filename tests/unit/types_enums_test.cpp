// The enumeration tables: every value's code and host string, registration order, the
// unassigned data type mode 6, and the string conversions both ways.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "types/embedded.h"
#include "types/enumerations.h"
#include "types/fimath.h"
#include "types/numeric_type.h"

namespace corbel {
namespace {

struct Row {
  std::int32_t code;
  std::string text;
};

// The table of E holds exactly `expected`, in that order, under the host type name `name`,
// and each row converts both ways.
template <class E>
void expect_table(const std::string& name, const std::vector<Row>& expected) {
  SCOPED_TRACE(name);
  EXPECT_EQ(enum_type_name<E>(), name);
  const auto rows = enum_rows<E>();
  ASSERT_EQ(rows.size(), expected.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(rows[i].code, expected[i].code) << "row " << i;
    EXPECT_EQ(rows[i].text, expected[i].text) << "row " << i;
    EXPECT_EQ(enum_to_string(static_cast<E>(expected[i].code)), expected[i].text);
    EXPECT_EQ(enum_from_string<E>(expected[i].text), static_cast<E>(expected[i].code));
  }
  // One past the last code and a negative code are no values.
  EXPECT_EQ(enum_to_string(static_cast<E>(expected.back().code + 1)), std::nullopt);
  EXPECT_EQ(enum_to_string(static_cast<E>(-1)), std::nullopt);
}

TEST(EnumerationTables, CodesStringsAndOrder) {
  // Round modes are registered alphabetically, not in the order any display shows them.
  expect_table<embedded::RoundModeEnum>(
      "quantizer Round Mode",
      {{0, "ceil"}, {1, "convergent"}, {2, "fix"}, {3, "floor"}, {4, "nearest"}, {5, "round"}});
  expect_table<embedded::OverflowModeEnum>("quantizer Overflow Mode",
                                           {{0, "saturate"}, {1, "wrap"}});
  expect_table<QuantizerScalingEnum>("quantizer Scaling", {{0, "BinaryPoint"}, {1, "SlopeBias"}});
  expect_table<fimath::PrecisionModeEnum>("fimathPrecisionModeEnum",
                                          {{0, "Arbitrary"}, {1, "Stepped"}});
  expect_table<fimath::ArithmeticModeEnum>(
      "fimathArithmeticModeEnum",
      {{0, "FullPrecision"}, {1, "KeepLSB"}, {2, "KeepMSB"}, {3, "SpecifyPrecision"}});
  expect_table<NumericType::DataTypeModeEnum>("NumericTypeDataTypeModeEnum",
                                              {{0, "boolean"},
                                               {1, "single"},
                                               {2, "double"},
                                               {3, "Fixed-point: unspecified scaling"},
                                               {4, "Fixed-point: binary point scaling"},
                                               {5, "Fixed-point: slope and bias scaling"},
                                               {7, "Scaled double: unspecified scaling"},
                                               {8, "Scaled double: binary point scaling"},
                                               {9, "Scaled double: slope and bias scaling"}});
  expect_table<NumericType::DataTypeEnum>(
      "NumericTypeDataTypeEnum",
      {{0, "Fixed"}, {1, "boolean"}, {2, "double"}, {3, "single"}, {4, "ScaledDouble"}});
  expect_table<NumericType::ScalingEnum>(
      "NumericTypeScalingEnum",
      {{0, "BinaryPoint"}, {1, "SlopeBias"}, {2, "Unspecified"}, {3, "Unused"}});
}

// A scaled-double mode is its fixed-point mode plus 4, which is why 6 holds nothing.
TEST(EnumerationTables, DataTypeModeSixIsUnassigned) {
  using Mode = NumericType::DataTypeModeEnum;
  EXPECT_EQ(enum_to_string(static_cast<Mode>(6)), std::nullopt);
  EXPECT_EQ(static_cast<int>(Mode::ScaledDoubleUnspecified),
            static_cast<int>(Mode::FixedUnspecified) + 4);
  EXPECT_EQ(static_cast<int>(Mode::ScaledDoubleBinaryPoint),
            static_cast<int>(Mode::FixedBinaryPoint) + 4);
  EXPECT_EQ(static_cast<int>(Mode::ScaledDoubleSlopeBias),
            static_cast<int>(Mode::FixedSlopeBias) + 4);
}

// Strings match exactly: no case folding, no prefixes, no surrounding blanks. Two types may
// share a string ("BinaryPoint") and each answers with its own code.
TEST(EnumerationTables, StringLookupIsExact) {
  EXPECT_EQ(enum_from_string<embedded::RoundModeEnum>("Nearest"), std::nullopt);
  EXPECT_EQ(enum_from_string<embedded::RoundModeEnum>("near"), std::nullopt);
  EXPECT_EQ(enum_from_string<embedded::RoundModeEnum>(" floor"), std::nullopt);
  EXPECT_EQ(enum_from_string<embedded::RoundModeEnum>(""), std::nullopt);
  EXPECT_EQ(enum_from_string<NumericType::DataTypeEnum>("Boolean"), std::nullopt);
  EXPECT_EQ(enum_from_string<NumericType::DataTypeModeEnum>("Fixed-point: binary point"),
            std::nullopt);
  EXPECT_EQ(enum_from_string<NumericType::ScalingEnum>("Unused"), NumericType::ScalingEnum::Unused);
  EXPECT_EQ(enum_from_string<QuantizerScalingEnum>("Unused"), std::nullopt);
  EXPECT_EQ(enum_from_string<NumericType::DataTypeEnum>("boolean"),
            NumericType::DataTypeEnum::Boolean);
  EXPECT_EQ(enum_from_string<NumericType::DataTypeModeEnum>("boolean"),
            NumericType::DataTypeModeEnum::Boolean);
  EXPECT_NE(static_cast<int>(NumericType::DataTypeEnum::Boolean),
            static_cast<int>(NumericType::DataTypeModeEnum::Boolean));
}

}  // namespace
}  // namespace corbel
