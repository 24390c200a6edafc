// Quantizer grids, the routines of every mode, and a sweep against independent integer
// arithmetic (64-bit integers up to 52 bits, GMP integers above).
#include <gmp.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "exact.h"
#include "expect_error.h"
#include "host/host_error.h"
#include "host/xo_types.h"
#include "quantize/loggingquantizer.h"
#include "quantize/quantizer.h"

namespace corbel {
namespace {

constexpr RoundModeEnum kRoundModes[] = {RoundModeEnum::Ceil,    RoundModeEnum::Convergent,
                                         RoundModeEnum::Fix,     RoundModeEnum::Floor,
                                         RoundModeEnum::Nearest, RoundModeEnum::Round};

double q(const quantizer& z, double v) {
  number x(v);
  qlogger log;
  return z.quantize(x, log).todouble();
}

// 2^e + k, exactly, at the given precision.
number powerPlus(int e, double k, unsigned long precision) {
  number x(1.0, precision, false);
  return x.pow2(e) += number(k);
}

TEST(Quantizer, ModeTypesListTheirStringsInOrder) {
  std::vector<std::string> all, fi;
  for (const auto& v : quantizer::getModeEnum()->getValues()) all.push_back(v.text);
  for (const auto& v : quantizer::getFiModeEnum()->getValues()) fi.push_back(v.text);
  EXPECT_EQ(all, (std::vector<std::string>{"none", "double", "float", "fixed", "single", "ufixed",
                                           "boolean", "ScaledDouble", "UnsignedScaledDouble"}));
  EXPECT_EQ(fi, (std::vector<std::string>{"none", "fixed", "ufixed"}));
  EXPECT_EQ(*quantizer::getModeEnum()->codeOf("none"), 5);
  EXPECT_EQ(*quantizer::getFiModeEnum()->codeOf("ufixed"), 4);
}

// The bounds of fixed grids (their quantization is the sweep's), an overflow mode set later;
// booleans are 1 for any nonzero value.
TEST(Quantizer, FixedAndBooleanGrids) {
  quantizer s(quantizer::Fixed, RoundModeEnum::Nearest, OverflowModeEnum::Wrap, 8, 7);
  EXPECT_EQ(s.getRealmax().todouble(), 127.0 / 128);
  EXPECT_EQ(s.getLowerBound().todouble(), -1.0);
  EXPECT_EQ(s.getWrapAround().todouble(), 2.0);
  EXPECT_EQ(s.getEps().todouble(), 1.0 / 128);
  EXPECT_EQ(s.getPrecision(), 8u);
  EXPECT_EQ(q(s, 1.0), -1.0);
  s.setOverflowMode(OverflowModeEnum::Saturate);
  EXPECT_EQ(q(s, 1.0), 127.0 / 128);
  EXPECT_EQ(quantizer(quantizer::Ufixed, RoundModeEnum::Floor, OverflowModeEnum::Wrap, 8, 0)
                .getPrecision(),
            9u);
  const quantizer b(quantizer::Boolean, RoundModeEnum::Floor, OverflowModeEnum::Wrap, 9, 9);
  EXPECT_EQ(b.getFormat(), (quantizer::RealPoint{1, 0}));
  EXPECT_EQ(q(b, -0.25), 1.0);
  EXPECT_EQ(q(b, 0.0), 0.0);
}

// An overflowing value held at no more bits than the word (a double, a narrow multiprecision
// difference, 2^63 at 64 bits) still saturates and wraps to exact values of the wide type,
// logged or not.
TEST(Quantizer, NarrowValuesOverflowIntoWideWordsExactly) {
  const auto sat = OverflowModeEnum::Saturate, wrap = OverflowModeEnum::Wrap;
  struct Case {
    quantizer::ModeEnum mode;
    OverflowModeEnum o;
    int w, f;
    number in, expected;
  } cases[] = {
      // s100 fraction 90: the largest value is 2^9 - 2^-90.
      {quantizer::Fixed, sat, 100, 90, number(513.0),
       powerPlus(9, 0, 100) -= powerPlus(-90, 0, 100)},
      {quantizer::Fixed, sat, 100, 90, number(513.0, 61, true),
       powerPlus(9, 0, 100) -= powerPlus(-90, 0, 100)},
      // u99 fraction 6: -15.5 wraps to 2^93 - 15.5, which needs 98 bits.
      {quantizer::Ufixed, wrap, 99, 6, number(-15.5, 61, true), powerPlus(93, -15.5, 100)},
      // 2^63, and 2^63 + 5 (not a double), wrap to -2^63 and -2^63 + 5.
      {quantizer::Fixed, wrap, 64, 0, powerPlus(63, 0, 64), powerPlus(63, 0, 64).negate()},
      {quantizer::Fixed, wrap, 64, 0, powerPlus(63, 5, 64), powerPlus(63, -5, 64).negate()},
  };
  for (const bool logged : {false, true}) {
    for (const Case& c : cases) {
      SCOPED_TRACE(std::to_string(c.w) + (logged ? " logged" : ""));
      const auto z = logged
                         ? std::unique_ptr<quantizer>(
                               new loggingquantizer(c.mode, RoundModeEnum::Floor, c.o, c.w, c.f))
                         : std::make_unique<quantizer>(c.mode, RoundModeEnum::Floor, c.o, c.w, c.f);
      number x(c.in);
      qlogger log;
      EXPECT_TRUE(Q(z->quantize(x, log)) == Q(c.expected));
    }
  }
}

TEST(Quantizer, HalfPrecisionFloatGrid) {
  loggingquantizer f(quantizer::Float, RoundModeEnum::Nearest, OverflowModeEnum::Saturate, 16, 5);
  EXPECT_EQ(f.getExponentmax(), 15);
  EXPECT_EQ(f.getExponentbias(), 15);
  EXPECT_EQ(f.getExponentmin(), -14);
  EXPECT_EQ(f.getEps().todouble(), std::ldexp(1.0, -10));
  EXPECT_EQ(f.getRealmin().todouble(), std::ldexp(1.0, -14));
  EXPECT_EQ(f.getDenormalmin().todouble(), std::ldexp(1.0, -24));
  EXPECT_EQ(f.getDenormalmax().todouble(), std::ldexp(1.0, -14) - std::ldexp(1.0, -24));
  EXPECT_EQ(f.getRealmax().todouble(), 65504.0);
  number big(70000.0);
  f.quantize(big);
  EXPECT_TRUE(big.myisinf() && !big.isnegative());
  EXPECT_EQ(f.getNoverflows(), 1);
  // 3 * 2^-25 sits halfway between denormals 2^-24 and 2^-23; nearest goes up.
  number tiny(3 * std::ldexp(1.0, -25));
  f.quantize(tiny);
  EXPECT_EQ(tiny.todouble(), std::ldexp(1.0, -23));
  // Normal values round on their binade's spacing: 1 + 2^-11 is a tie, up to 1 + 2^-10.
  number one(1.0 + std::ldexp(1.0, -11));
  f.quantize(one);
  EXPECT_EQ(one.todouble(), 1.0 + std::ldexp(1.0, -10));
}

TEST(Quantizer, SingleAlwaysRoundsHalvesAwayFromZero) {
  quantizer s(quantizer::Single, RoundModeEnum::Floor, OverflowModeEnum::Saturate, 0, 0);
  EXPECT_EQ(s.getFormat(), (quantizer::RealPoint{32, 8}));
  const double tie = 1.0 + std::ldexp(1.0, -24);  // halfway between two singles
  EXPECT_EQ(q(s, tie), 1.0 + std::ldexp(1.0, -23));
  EXPECT_EQ(q(s, -tie), -(1.0 + std::ldexp(1.0, -23)));
  EXPECT_EQ(q(s, 0.1), static_cast<double>(0.1f));
}

TEST(Quantizer, ZeroIsNeverRounded) {
  for (RoundModeEnum r : kRoundModes) {
    quantizer s(quantizer::Fixed, r, OverflowModeEnum::Wrap, 8, 4);
    EXPECT_TRUE(std::signbit(q(s, -0.0)));
  }
}

TEST(Quantizer, DoubleNoneAndScaledDoubleLeaveValues) {
  loggingquantizer d(quantizer::Double, RoundModeEnum::Floor, OverflowModeEnum::Wrap, 3, 3);
  EXPECT_EQ(d.getFormat(), (quantizer::RealPoint{64, 11}));
  number x(0.1);
  d.quantize(x);
  EXPECT_EQ(x.todouble(), 0.1);
  number inf(INFINITY);
  d.quantize(inf);
  EXPECT_EQ(d.getNoverflows(), 1);
  loggingquantizer sd(quantizer::ScaledDouble, RoundModeEnum::Floor, OverflowModeEnum::Wrap, 8, 4);
  number over(100.3), under(0.01);
  sd.quantize(over);
  sd.quantize(under);
  EXPECT_EQ(over.todouble(), 100.3);
  EXPECT_EQ(under.todouble(), 0.01);
  EXPECT_EQ(sd.getNoverflows(), 1);
  EXPECT_EQ(sd.getNunderflows(), 1);
  EXPECT_EQ(sd.getNoperations(), 2);
}

// A quantizer whose grid is copied from an earlier one with the same settings has every
// bound bit for bit as the one that computed it; the largest double is a 64-bit float
// format's largest value.
TEST(Quantizer, RememberedGridsEqualComputedOnes) {
  struct Settings {
    quantizer::ModeEnum mode;
    int first, second;
  };
  const Settings sweep[] = {
      {quantizer::Fixed, 16, 15},  {quantizer::Fixed, 1, 0},         {quantizer::Fixed, 200, 77},
      {quantizer::Ufixed, 8, -3},  {quantizer::Ufixed, 53, 60},      {quantizer::Float, 16, 5},
      {quantizer::Float, 120, 15}, {quantizer::Double, 0, 0},        {quantizer::Single, 0, 0},
      {quantizer::Boolean, 0, 0},  {quantizer::ScaledDouble, 24, 30}};
  auto same = [](const number& a, const number& b) {
    return a.getprecision() == b.getprecision() && a == b;
  };
  for (const Settings& s : sweep) {
    const quantizer computed(s.mode, RoundModeEnum::Floor, OverflowModeEnum::Wrap, s.first,
                             s.second);
    const quantizer copied(s.mode, RoundModeEnum::Nearest, OverflowModeEnum::Saturate, s.first,
                           s.second);
    SCOPED_TRACE(quantizer::mode_string(s.mode));
    EXPECT_EQ(copied.getFormat(), computed.getFormat());
    EXPECT_EQ(copied.getWordlength(), computed.getWordlength());
    EXPECT_EQ(copied.getFractionlength(), computed.getFractionlength());
    EXPECT_EQ(copied.getPrecision(), computed.getPrecision());
    EXPECT_EQ(copied.getExponentlength(), computed.getExponentlength());
    EXPECT_EQ(copied.getExponentmin(), computed.getExponentmin());
    EXPECT_EQ(copied.getExponentmax(), computed.getExponentmax());
    for (auto get : {&quantizer::getMax, &quantizer::getLowerBound, &quantizer::getRealmax,
                     &quantizer::getRealmin, &quantizer::getEps, &quantizer::getNegativeEps,
                     &quantizer::getWrapAround, &quantizer::getDenormalmin}) {
      EXPECT_TRUE(same((copied.*get)(), (computed.*get)()));
    }
  }
  const quantizer d(quantizer::Double, RoundModeEnum::Floor, OverflowModeEnum::Wrap, 0, 0);
  EXPECT_EQ(d.getRealmax().todouble(), std::numeric_limits<double>::max());
  EXPECT_EQ(d.getLowerBound().todouble(), -std::numeric_limits<double>::max());
}

TEST(Quantizer, SettingErrorsKeepTheSettings) {
  quantizer s(quantizer::Fixed, RoundModeEnum::Floor, OverflowModeEnum::Wrap, 8, 4);
  expect_error([&] { s.setWordlength(65536); }, "velkora:quantizer:wordlengthtoobig",
               "Word length cannot be greater than 65535.");
  expect_error([&] { s.setWordlength(0); }, "velkora:quantizer:wordlengthtoosmall",
               "Wordlength cannot be negative or zero.");
  expect_error(
      [&] {
        s.setFormat({70000, 3});
      },
      "velkora:quantizer:wordlengthtoobig", "Word length cannot be greater than 65535.");
  // NaN and infinite formats are refused before any conversion to an integer.
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  for (const double bad : {nan, inf, -inf, 1e300})
    expect_error(
        [&] {
          s.setFormat({8, bad});
        },
        "velkora:quantizer:fractionlength",
        "The fraction length must be a finite number of magnitude below 2^31.");
  expect_error(
      [&] {
        s.setFormat({nan, 3});
      },
      "velkora:quantizer:wordlengthtoosmall", "Wordlength cannot be negative or zero.");
  EXPECT_EQ(s.getWordlength(), 8);
  EXPECT_EQ(s.getRealmax().todouble(), 127.0 / 16);

  quantizer f(quantizer::Float, RoundModeEnum::Floor, OverflowModeEnum::Wrap, 16, 5);
  expect_error([&] { f.setExponentlength(32); }, "velkora:quantizer:exponenttoobig",
               "Exponent length cannot be greater than 31.");
  expect_error([&] { f.setExponentlength(-1); }, "velkora:quantizer:exponenttoosmall",
               "Exponent length cannot be negative.");
  expect_error([&] { f.setExponentlength(16); }, "velkora:quantizer:exponentlargerthanwordlength",
               "Exponentlength must be less than wordlength.");
  expect_error([&] { f.setWordlength(5); }, "velkora:quantizer:wordlengthlargerthanexponent",
               "Wordlength must be larger than exponentlength.");
  expect_error(
      [&] {
        f.setFormat({16, std::numeric_limits<double>::quiet_NaN()});
      },
      "velkora:quantizer:exponenttoosmall", "Exponent length cannot be negative.");
  EXPECT_EQ(f.getExponentlength(), 5);
  EXPECT_EQ(f.getRealmax().todouble(), 65504.0);

  quantizer x(quantizer::Fixed, RoundModeEnum::Floor, OverflowModeEnum::Wrap, 16, 40);
  expect_error([&] { x.setMode(quantizer::Float); }, "velkora:quantizer:exponenttoobig",
               "Exponent length cannot be greater than 31.");
  EXPECT_EQ(x.getMode(), quantizer::Fixed);
  EXPECT_EQ(x.getFractionlength(), 40);
}

TEST(Quantizer, WideCustomFloatsComputeExactly) {
  // 31 exponent bits: realmax is (2 - eps) * 2^(2^30 - 1), far beyond a double.
  quantizer f(quantizer::Float, RoundModeEnum::Nearest, OverflowModeEnum::Wrap, 40, 31);
  EXPECT_EQ(f.getExponentmax(), (1L << 30) - 1);
  EXPECT_EQ(f.getRealmax().gettype(), numbertype::mpnumber);
  EXPECT_TRUE(f.getRealmax().myisfinite());
  EXPECT_EQ(f.getRealmax().unbiasedexponent(), (1L << 30) - 1);
  EXPECT_EQ(f.getDenormalmin().unbiasedexponent(), 1 - ((1L << 30) - 1) - 8);
}

// The sweep: the quantizer against integer arithmetic on the scaled value. Random values up
// to four times the range with bits below the grid: doubles up to 52 bits; above, integers of
// w + 12 random bits at a precision that holds them exactly.
void sweep(unsigned seed, long minw, long maxw, int cases) {
  std::mt19937_64 rng(seed);
  gmp_randstate_t gmp;
  gmp_randinit_default(gmp);
  gmp_randseed_ui(gmp, seed);
  mpz_t k;
  mpz_init(k);
  for (int i = 0; i < cases; ++i) {
    const long w = std::uniform_int_distribution<long>(minw, maxw)(rng);
    const bool issigned = rng() & 1;
    const long f = std::uniform_int_distribution<long>(-8, w + 8)(rng);
    number x;
    if (w <= 52) {
      const long top = w - f + 2;
      x = number(
          std::ldexp(std::uniform_real_distribution<double>(-1, 1)(rng),
                     static_cast<int>(std::uniform_int_distribution<long>(top - 60, top)(rng))));
    } else {
      const long bits = std::uniform_int_distribution<long>(1, w + 12)(rng);
      mpz_urandomb(k, gmp, static_cast<mp_bitcnt_t>(bits));
      // |k| from its 32-bit words, then the sign.
      std::vector<unsigned int> words((mpz_sizeinbase(k, 2) + 31) / 32 + 1, 0u);
      mpz_export(words.data(), nullptr, -1, sizeof(unsigned int), 0, 0, k);
      x = number(0.0, static_cast<unsigned long>(w + 12), false);
      x.setvalue(words.data(), static_cast<int>(words.size()), false,
                 static_cast<int>(32 * words.size()), 0);
      if (rng() & 1) x.negate();
      x.pow2(-(f + 10));
    }
    for (RoundModeEnum r : kRoundModes) {
      for (OverflowModeEnum o : {OverflowModeEnum::Saturate, OverflowModeEnum::Wrap}) {
        const quantizer z(issigned ? quantizer::Fixed : quantizer::Ufixed, r, o,
                          static_cast<int>(w), static_cast<int>(f));
        number v(x);
        qlogger log;
        z.quantize(v, log);
        ASSERT_TRUE(Q(v) == cast(Q(x), issigned, w, -f, r, o))
            << "x " << x.todouble() << " [" << w << " " << f << "] signed " << issigned << " round "
            << static_cast<int>(r) << " overflow " << static_cast<int>(o) << " got "
            << v.todouble();
        // Quantizing twice changes nothing.
        number again(v);
        z.quantize(again, log);
        ASSERT_TRUE(again == v);
      }
    }
  }
  mpz_clear(k);
  gmp_randclear(gmp);
}

TEST(Quantizer, FixedPointMatchesIntegerArithmeticUpTo52Bits) {
  sweep(16, 1, 52, 1500);
}

TEST(Quantizer, FixedPointMatchesIntegerArithmeticAbove52Bits) {
  sweep(17, 53, 300, 400);
}

}  // namespace
}  // namespace corbel
