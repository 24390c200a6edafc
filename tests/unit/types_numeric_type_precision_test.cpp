// Best-precision scaling of a NumericType: from a largest magnitude, and from host data of
// every element class.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>

#include "expect_error.h"
#include "host/host_array.h"
#include "host/host_error.h"
#include "test_host.h"
#include "types/numeric_type.h"

namespace corbel {
namespace {

using Mode = DataTypeModeEnum;

class BestPrecisionTest : public WithHost {};

// Zeros of either sign get the fraction length of values just below one; types without
// scaling are left alone. Other values are the sweep's below.
TEST_F(BestPrecisionTest, ZerosAndUnscaledTypes) {
  for (auto [issigned, zero, fractionLength] :
       {std::tuple{true, 0.0, 15}, {true, -0.0, 15}, {false, 0.0, 16}}) {
    NumericType t(issigned, 16, 0);
    t.setBestPrecisionFromMaxAbs(zero);
    EXPECT_EQ(t.getFractionLength(), fractionLength) << issigned;
  }
  NumericType d(Mode::Double, true, 64, 1, 0, 0);
  d.setBestPrecisionFromMaxAbs(3);
  EXPECT_EQ(d.getFixedExponent(), 0);
}

// The fewest integer bits n (word length minus fraction length minus the sign bit) whose
// range holds the value: 2^n strictly above |v|, except that two's complement reaches -2^n
// itself. Found by search, independently of how the type computes it.
int integer_bits_needed(bool issigned, double v) {
  for (int n = -300;; ++n) {
    const double top = std::ldexp(1.0, n);
    if (issigned && v < 0 ? -v <= top : std::fabs(v) < top) return n;
  }
}

TEST_F(BestPrecisionTest, PowersOfTwoAndTheirNeighboursOfBothSigns) {
  const double mantissas[] = {1, -1, 1.5, -1.5, 0.75, -0.75, 1.9999999999999998, -0.5000000001};
  for (int wordLength : {2, 16, 64, 65535}) {
    for (bool issigned : {true, false}) {
      for (int k = -100; k <= 100; ++k) {
        for (double m : mantissas) {
          const double v = std::ldexp(m, k);
          NumericType t(issigned, wordLength, 0);
          t.setBestPrecisionFromMaxAbs(v);
          ASSERT_TRUE(t.getWordLength() == wordLength && t.getSigned() == issigned);
          const int bits = wordLength - t.getFractionLength() - (issigned ? 1 : 0);
          ASSERT_EQ(bits, integer_bits_needed(issigned, v))
              << "word length " << wordLength << (issigned ? " signed " : " unsigned ") << v;
        }
      }
    }
  }
}

TEST_F(BestPrecisionTest, LargestMagnitudeOfHostData) {
  auto row = [](std::initializer_list<double> v) {
    return HostArray::make_double_matrix(1, v.size(), v);
  };
  // Of equal magnitudes the positive one wins, whichever comes first.
  EXPECT_EQ(NumericType::largestMagnitude(row({-2, 2})), 2.0);
  EXPECT_EQ(NumericType::largestMagnitude(row({2, -2})), 2.0);
  EXPECT_EQ(NumericType::largestMagnitude(row({1, -3, 2})), -3.0);
  // No elements give -0; zeros give +0.
  EXPECT_TRUE(std::signbit(NumericType::largestMagnitude(HostArray::make_double_matrix(0, 0))));
  EXPECT_FALSE(std::signbit(NumericType::largestMagnitude(row({0, -0.0}))));
  // The imaginary parts count too.
  EXPECT_EQ(NumericType::largestMagnitude(HostArray::make_complex(0.5, -3.0)), -3.0);

  HostArray s = HostArray::make_numeric(HostClass::Single, {1, 3});
  s.real<float>()[0] = 0.25f;
  s.real<float>()[1] = -6.5f;
  s.real<float>()[2] = 6.5f;
  EXPECT_EQ(NumericType::largestMagnitude(s), 6.5);
  s.real<float>()[2] = NAN;
  expect_error([&] { NumericType::largestMagnitude(s); }, "velkora:fi:nonan",
               "NaN is not allowed in FI.");
}

TEST_F(BestPrecisionTest, FromHostData) {
  NumericType t;
  t.setBestPrecision(HostArray::make_double_matrix(1, 2, {1, -1}));
  EXPECT_EQ(t.getFractionLength(), 14);  // the positive 1 wins
  t.setBestPrecision(HostArray::make_double(-1));
  EXPECT_EQ(t.getFractionLength(), 15);

  NumericType twelve(true, 12, 3);
  twelve.setBestPrecision(HostArray::make_double_matrix(0, 0));
  EXPECT_EQ(twelve.getFractionLength(), 11);

  // Slope-bias scaling gives way to binary point; a scaled double stays scaled double.
  NumericType sd(Mode::ScaledDoubleSlopeBias, false, 10, 1.5, -3, 2.0);
  sd.setBestPrecision(HostArray::make_double(5));
  EXPECT_EQ(sd.getDataTypeMode(), Mode::ScaledDoubleBinaryPoint);
  EXPECT_EQ(sd.getSlopeAdjustmentFactor(), 1.0);
  EXPECT_EQ(sd.getBias(), 0.0);
  EXPECT_EQ(sd.getFractionLength(), 7);
  EXPECT_FALSE(sd.getSigned());

  // Integer data set the whole type, with binary point scaling and slope 1.
  struct Case {
    HostClass cls;
    bool issigned;
    int wordLength;
  } cases[] = {
      {HostClass::UInt8, false, 8}, {HostClass::Int8, true, 8},
      {HostClass::Int16, true, 16}, {HostClass::UInt16, false, 16},
      {HostClass::Int32, true, 32}, {HostClass::UInt32, false, 32},
      {HostClass::Int64, true, 64}, {HostClass::UInt64, false, 64},
  };
  for (const Case& c : cases) {
    NumericType u(Mode::FixedSlopeBias, !c.issigned, 20, 1.5, -3, 2.0);
    u.setBestPrecision(HostArray::make_numeric(c.cls, {2, 2}));
    EXPECT_EQ(u.getDataTypeMode(), Mode::FixedBinaryPoint) << static_cast<int>(c.cls);
    EXPECT_EQ(u.getSigned(), c.issigned) << static_cast<int>(c.cls);
    EXPECT_EQ(u.getWordLength(), c.wordLength) << static_cast<int>(c.cls);
    EXPECT_EQ(u.getFractionLength(), 0) << static_cast<int>(c.cls);
    EXPECT_EQ(u.getSlope(), 1.0);
    EXPECT_EQ(u.getBias(), 0.0);
  }

  // Non-numeric data fail after the scaling has become binary point.
  NumericType sb(Mode::FixedSlopeBias, true, 16, 1.5, -3, 2.0);
  for (const HostArray& bad : {HostArray::make_logical(true), HostArray::make_text("ab"),
                               HostArray(HostClass::Cell, {1, 1})})
    expect_error([&] { sb.setBestPrecision(bad); }, "velkora:fi:setBestPrecision:mustbenumeric",
                 "Data must be numeric.");
  EXPECT_EQ(sb.getDataTypeMode(), Mode::FixedBinaryPoint);
  EXPECT_EQ(sb.getFractionLength(), 3);

  // Nothing happens to a type without scaling, whatever the data.
  NumericType single(Mode::Single, true, 32, 1, 0, 0);
  single.setBestPrecision(HostArray::make_logical(true));
  EXPECT_EQ(single.getDataTypeMode(), Mode::Single);
}

}  // namespace
}  // namespace corbel
