// fimath: defaults, word-length errors, slope warnings, C style, equality, display and
// the string form.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "expect_error.h"
#include "host/host_array.h"
#include "host/host_error.h"
#include "test_host.h"
#include "types/fimath.h"

namespace corbel {
namespace {

class FimathTest : public WithHost {};

TEST_F(FimathTest, DefaultDisplay) {
  fimath().disp();
  EXPECT_EQ(host.take_console(),
            "\n             RoundMode: nearest"
            "\n          OverflowMode: saturate"
            "\n           ProductMode: FullPrecision"
            "\n  MaxProductWordLength: 128"
            "\n               SumMode: FullPrecision"
            "\n      MaxSumWordLength: 128"
            "\n         CastBeforeSum: true\n");
  fimath f;
  f.setProductMode(ArithmeticModeEnum::SpecifyPrecision);
  f.setProductSlopeAdjustmentFactor(1.5);
  f.setProductBias(-2);
  f.setSumMode(ArithmeticModeEnum::SpecifyPrecision);
  f.setSumWordLength(20);
  f.setSumFractionLength(9);
  f.setCastBeforeSum(false);
  f.setRoundMode(RoundModeEnum::Convergent);
  f.disp();
  EXPECT_EQ(host.take_console(),
            "\n             RoundMode: convergent"
            "\n          OverflowMode: saturate"
            "\n           ProductMode: SpecifyPrecision"
            "\n     ProductWordLength: 32"
            "\n          ProductSlope: 1.397e-09"
            "\n           ProductBias: -2"
            "\n               SumMode: SpecifyPrecision"
            "\n         SumWordLength: 20"
            "\n     SumFractionLength: 9"
            "\n         CastBeforeSum: false\n");
}

TEST_F(FimathTest, WordLengthSettersRejectOutOfRange) {
  fimath f;
  struct Case {
    void (fimath::*set)(int);
    int (fimath::*get)() const;
    std::string name;
  } cases[] = {
      {&fimath::setProductWordLength, &fimath::getProductWordLength, "ProductWordLength"},
      {&fimath::setMaxProductWordLength, &fimath::getMaxProductWordLength, "MaxProductWordLength"},
      {&fimath::setSumWordLength, &fimath::getSumWordLength, "SumWordLength"},
      {&fimath::setMaxSumWordLength, &fimath::getMaxSumWordLength, "MaxSumWordLength"},
  };
  for (const Case& c : cases) {
    const int before = (f.*c.get)();
    expect_error([&] { (f.*c.set)(0); }, "velkora:fimath:NonPositive" + c.name,
                 c.name + " must be greater than 0.");
    expect_error([&] { (f.*c.set)(65536); }, "velkora:fimath:TooBig" + c.name,
                 c.name + " cannot be greater than 65535.");
    EXPECT_EQ((f.*c.get)(), before);
    (f.*c.set)(65535);
    EXPECT_EQ((f.*c.get)(), 65535);
  }
  // No relation between a word length and its maximum is enforced.
  f.setMaxProductWordLength(8);
  f.setProductWordLength(64);
  EXPECT_EQ(f.getProductWordLength(), 64);
  expect_error(
      [&] {
        f.setSumFormat({0, 3});
      },
      "velkora:fimath:NonPositiveSumWordLength", "SumWordLength must be greater than 0.");
  f.setSumFormat({24, 20});
  EXPECT_EQ(f.getSumFormat(), (fimath::Format{24, 20}));
}

TEST_F(FimathTest, SlopeSettersWarn) {
  fimath f;
  f.setProductSlope(0);
  EXPECT_EQ(f.getProductSlopeAdjustmentFactor(), 0.0);
  EXPECT_EQ(f.getProductFixedExponent(), -1);
  f.setSumSlopeAdjustmentFactor(2.0);
  EXPECT_EQ(f.getSumSlopeAdjustmentFactor(), 1.0);
  f.setSumSlope(0.375);
  EXPECT_EQ(f.getSumSlopeAdjustmentFactor(), 1.5);
  EXPECT_EQ(f.getSumFixedExponent(), -2);
  const auto w = host.take_warnings();
  ASSERT_EQ(w.size(), 2u);
  EXPECT_EQ(w[0], (InProcessHost::Warning{
                      "Velkora:fimathInvalidSetting",
                      "Invalid total slope specified; the total slope must be greater than 0 "
                      "and finite"}));
  EXPECT_EQ(w[1], (InProcessHost::Warning{
                      "Velkora:fimathInvalidSetting",
                      "Invalid SlopeAdjustmentFactor specified; the SlopeAdjustmentFactor "
                      "must be greater than or equal to 1 and less than 2"}));
}

TEST_F(FimathTest, CStyle) {
  fimath f;
  f.setCStyle(16);
  EXPECT_TRUE(f.isCStyle());
  EXPECT_EQ(f.getCStyle().real_as_double(0), 1.0);
  f.setSumWordLength(32);
  EXPECT_FALSE(f.isCStyle());

  fimath t;
  t.setCStyle(HostArray::make_logical(true));
  EXPECT_TRUE(t.isCStyle());
  EXPECT_EQ(t.getProductWordLength(), 32);
  fimath n;
  n.setCStyle(HostArray::make_logical(false));
  EXPECT_TRUE(n.isequal(fimath()) && fimath().isequal(n));
  n.setCStyle(HostArray::make_double_matrix(0, 0));
  EXPECT_TRUE(n.isCStyle());
  n.setCStyle(HostArray::make_double(8));
  EXPECT_EQ(n.getSumWordLength(), 8);
  expect_error(
      [&] {
        n.setCStyle(HostArray::make_double_matrix(1, 2, {8, 16}));
      },
      "velkora:fimath:cstyle:badvalue", "Word length must be scalar integer.");
  for (const HostArray& bad : {HostArray::make_text("x"), HostArray::make_double(std::nan("")),
                               HostArray::make_double(-HUGE_VAL)})
    expect_error([&] { n.setCStyle(bad); }, "velkora:fimath:cstyle:badvalue",
                 "Word length must be scalar integer.");
  for (const HostArray& big : {HostArray::make_double(70000), HostArray::make_double(5.7e250)})
    expect_error([&] { n.setCStyle(big); }, "velkora:fimath:TooBigProductWordLength",
                 "ProductWordLength cannot be greater than 65535.");
  expect_error([] { fimath f2(HostArray::make_double(1)); }, "velkora:fimath:mustBeFimath",
               "This parameter must be a fimath.");
}

TEST_F(FimathTest, EqualityComparesOnlyWhatTheModeUses) {
  fimath a, b;
  a.setProductMode(ArithmeticModeEnum::SpecifyPrecision);
  b.setProductMode(ArithmeticModeEnum::SpecifyPrecision);
  b.setProductWordLength(40);
  EXPECT_TRUE(a.isequal(b));
  a.setProductMode(ArithmeticModeEnum::KeepLSB);
  b.setProductMode(ArithmeticModeEnum::KeepLSB);
  EXPECT_FALSE(a.isequal(b));
  // FullPrecision looks at nothing more; steps, slopes and biases never count.
  fimath c, d;
  d.setMaxSumWordLength(7);
  d.setSumBias(3);
  d.setPrecisionMode(PrecisionModeEnum::Stepped);
  EXPECT_TRUE(c.isequal(d));
  d.setCastBeforeSum(false);
  EXPECT_FALSE(c.isequal(d));
}

TEST_F(FimathTest, StringFormRoundTripsOverASweep) {
  EXPECT_EQ(fimath().convertToString(),
            "nearest\nsaturate\nFullPrecision\n32\n128\n30\nFullPrecision\n32\n128\n30\n1\n");
  std::mt19937 rng(11);
  for (int i = 0; i < 500; ++i) {
    const fimath x(static_cast<RoundModeEnum>(rng() % 6), static_cast<OverflowModeEnum>(rng() % 2),
                   PrecisionModeEnum::Arbitrary, static_cast<ArithmeticModeEnum>(rng() % 4),
                   1 + rng() % 65535, 1 + rng() % 65535, static_cast<int>(rng() % 200) - 100,
                   static_cast<ArithmeticModeEnum>(rng() % 4), 1 + rng() % 65535, 1 + rng() % 65535,
                   static_cast<int>(rng() % 200) - 100, rng() % 2);
    const fimath y = fimath::string2Fimath(x.convertToString());
    ASSERT_EQ(y.convertToString(), x.convertToString());
    ASSERT_TRUE(y.isequal(x) && x.isequal(y));
  }
  std::string bad = fimath().convertToString();
  bad.replace(0, 7, "nearst");
  expect_error([&] { fimath::string2Fimath(bad); }, "velkora:fimath:string2Fimath",
               "\nThe 'nearst' enumerated value is invalid.\n");
}

}  // namespace
}  // namespace corbel
