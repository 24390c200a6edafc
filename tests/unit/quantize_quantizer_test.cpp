// Quantizer grids, the routines of every mode, and a sweep against independent integer
// arithmetic (64-bit integers up to 52 bits, GMP integers above).
#include <gmp.h>
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "expect_error.h"
#include "host/host_error.h"
#include "host/xo_types.h"
#include "number/mpnumber.h"
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

TEST(Quantizer, ModeTypesListTheirStringsInOrder) {
  std::vector<std::string> all, fi;
  for (const auto& v : quantizer::getModeEnum()->getValues()) all.push_back(v.text);
  for (const auto& v : quantizer::getFiModeEnum()->getValues()) fi.push_back(v.text);
  EXPECT_EQ(all, (std::vector<std::string>{"none", "double", "float", "fixed", "single", "ufixed",
                                           "boolean", "ScaledDouble", "UnsignedScaledDouble"}));
  EXPECT_EQ(fi, (std::vector<std::string>{"none", "fixed", "ufixed"}));
  EXPECT_EQ(*quantizer::getModeEnum()->codeOf("none"), 5);
  EXPECT_EQ(*quantizer::getFiModeEnum()->codeOf("ufixed"), 4);
  EXPECT_EQ(quantizer::getModeEnum(), quantizer::getModeEnum());
}

TEST(Quantizer, SignedAndUnsignedFixedGrids) {
  quantizer s(quantizer::Fixed, RoundModeEnum::Nearest, OverflowModeEnum::Wrap, 8, 7);
  EXPECT_EQ(s.getRealmax().todouble(), 127.0 / 128);
  EXPECT_EQ(s.getLowerBound().todouble(), -1.0);
  EXPECT_EQ(s.getWrapAround().todouble(), 2.0);
  EXPECT_EQ(s.getEps().todouble(), 1.0 / 128);
  EXPECT_EQ(s.getPrecision(), 8u);
  EXPECT_EQ(q(s, 1.0), -1.0);
  s.setOverflowMode(OverflowModeEnum::Saturate);
  EXPECT_EQ(q(s, 1.0), 127.0 / 128);
  EXPECT_EQ(q(s, -3.0), -1.0);

  quantizer u(quantizer::Ufixed, RoundModeEnum::Floor, OverflowModeEnum::Wrap, 8, 0);
  EXPECT_EQ(u.getPrecision(), 9u);
  EXPECT_EQ(q(u, -1.0), 255.0);
  u.setOverflowMode(OverflowModeEnum::Saturate);
  EXPECT_EQ(q(u, -1.0), 0.0);
  EXPECT_EQ(q(u, 300.7), 255.0);

  quantizer b(quantizer::Boolean, RoundModeEnum::Floor, OverflowModeEnum::Wrap, 9, 9);
  EXPECT_EQ(b.getFormat(), (quantizer::RealPoint{1, 0}));
  EXPECT_EQ(q(b, -0.25), 1.0);
  EXPECT_EQ(q(b, 0.0), 0.0);
}

TEST(Quantizer, SixtyFourBitWrapIsExact) {
  quantizer s(quantizer::Fixed, RoundModeEnum::Floor, OverflowModeEnum::Wrap, 64, 0);
  number x(1.0, 64, false);
  x.pow2(63);
  qlogger log;
  s.quantize(x, log);
  number expected(-1.0, 64, false);
  EXPECT_TRUE(x == expected.pow2(63));
  // 2^63 + 5 (not a double) wraps to -2^63 + 5.
  number y(1.0, 64, false);
  y.pow2(63);
  y += number(5.0);
  s.quantize(y, log);
  number e2(-1.0, 64, false);
  e2.pow2(63);
  e2 += number(5.0);
  EXPECT_TRUE(y == e2);
}

// An overflowing value held at fewer bits than the word (a double, or a narrow multiprecision
// difference) still saturates and wraps to exact values of the wide type, logged or not.
TEST(Quantizer, NarrowValuesOverflowIntoWideWordsExactly) {
  // s100 fraction 90: the largest value is 2^9 - 2^-90.
  number most(1.0, 100, false);
  most.pow2(9);
  most -= number(1.0, 100, false).pow2(-90);
  // u99 fraction 6: -15.5 wraps to 2^93 - 15.5, which needs 98 bits.
  number wrapped(1.0, 100, false);
  wrapped.pow2(93);
  wrapped -= number(15.5);
  for (const bool logged : {false, true}) {
    const auto make = [logged](OverflowModeEnum o, quantizer::ModeEnum mode, int w, int f) {
      return logged ? std::unique_ptr<quantizer>(
                          new loggingquantizer(mode, RoundModeEnum::Floor, o, w, f))
                    : std::make_unique<quantizer>(mode, RoundModeEnum::Floor, o, w, f);
    };
    const auto sat = make(OverflowModeEnum::Saturate, quantizer::Fixed, 100, 90);
    const auto wrap = make(OverflowModeEnum::Wrap, quantizer::Ufixed, 99, 6);
    qlogger log;
    number fromDouble(513.0), fromNarrow(513.0, 61, true), negative(-15.5, 61, true);
    EXPECT_TRUE(sat->quantize(fromDouble, log) == most);
    EXPECT_TRUE(sat->quantize(fromNarrow, log) == most);
    EXPECT_TRUE(wrap->quantize(negative, log) == wrapped);
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
  const Settings sweep[] = {{quantizer::Fixed, 16, 15},  {quantizer::Fixed, 1, 0},
                            {quantizer::Fixed, 200, 77}, {quantizer::Ufixed, 8, -3},
                            {quantizer::Ufixed, 53, 60}, {quantizer::Float, 16, 5},
                            {quantizer::Float, 120, 15}, {quantizer::Double, 0, 0},
                            {quantizer::Single, 0, 0},   {quantizer::Boolean, 0, 0},
                            {quantizer::ScaledDouble, 24, 30}};
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

// ---------------------------------------------------------------------------------------
// The sweep: the quantizer against integer arithmetic on the scaled value.

// floor, ceil, ... of the exact rational s, as a GMP integer.
void round_integer(mpz_t k, const mpq_t s, RoundModeEnum r) {
  mpz_t f;
  mpz_init(f);
  mpz_fdiv_q(f, mpq_numref(s), mpq_denref(s));
  mpq_t frac, half;
  mpq_inits(frac, half, nullptr);
  mpq_set_z(frac, f);
  mpq_sub(frac, s, frac);
  mpq_set_ui(half, 1, 2);
  const int c = mpq_cmp(frac, half);
  const bool exact = mpq_sgn(frac) == 0, negative = mpq_sgn(s) < 0;
  bool up = false;
  switch (r) {
    case RoundModeEnum::Floor:
      break;
    case RoundModeEnum::Ceil:
      up = !exact;
      break;
    case RoundModeEnum::Fix:
      up = !exact && negative;
      break;
    case RoundModeEnum::Nearest:
      up = c >= 0;
      break;
    case RoundModeEnum::Round:
      up = c > 0 || (c == 0 && !negative);
      break;
    case RoundModeEnum::Convergent:
      up = c > 0 || (c == 0 && mpz_odd_p(f));
      break;
  }
  if (up) mpz_add_ui(f, f, 1);
  mpz_set(k, f);
  mpz_clear(f);
  mpq_clears(frac, half, nullptr);
}

// The reference quantization of the rational x to [w, f], as an exact rational.
void reference(mpq_t out, const mpq_t x, bool issigned, long w, long f, RoundModeEnum r,
               OverflowModeEnum o) {
  mpq_t s;
  mpq_init(s);
  mpq_set(s, x);
  if (f >= 0)
    mpq_mul_2exp(s, s, f);
  else
    mpq_div_2exp(s, s, -f);
  mpz_t k, lo, hi, m;
  mpz_inits(k, lo, hi, m, nullptr);
  round_integer(k, s, r);
  mpz_setbit(m, w);  // 2^w
  if (issigned) {
    mpz_set_ui(lo, 0);
    mpz_setbit(lo, w - 1);
    mpz_sub_ui(hi, lo, 1);
    mpz_neg(lo, lo);
  } else {
    mpz_set_ui(lo, 0);
    mpz_sub_ui(hi, m, 1);
  }
  if (mpq_sgn(s) != 0 && (mpz_cmp(k, hi) > 0 || mpz_cmp(k, lo) < 0)) {
    if (o == OverflowModeEnum::Saturate) {
      mpz_set(k, mpz_cmp(k, hi) > 0 ? hi : lo);
    } else {
      mpz_sub(k, k, lo);
      mpz_fdiv_r(k, k, m);
      mpz_add(k, k, lo);
    }
  }
  mpq_set_z(out, k);
  if (f >= 0)
    mpq_div_2exp(out, out, f);
  else
    mpq_mul_2exp(out, out, -f);
  mpq_clear(s);
  mpz_clears(k, lo, hi, m, nullptr);
}

bool same_value(const number& x, const mpq_t expected) {
  mpq_t got;
  mpq_init(got);
  if (x.gettype() == numbertype::doublenumber)
    mpq_set_d(got, x.todouble());
  else
    mpfr_get_q(got, static_cast<const mpnumber&>(x.gethandle().getbody()).getelement());
  const bool same = mpq_equal(got, expected) != 0;
  mpq_clear(got);
  return same;
}

// Random values up to four times the range with bits below the grid: doubles up to 52
// bits; above, integers of w + 12 random bits at a precision that holds them exactly.
void sweep(unsigned seed, long minw, long maxw, int cases) {
  std::mt19937_64 rng(seed);
  gmp_randstate_t gmp;
  gmp_randinit_default(gmp);
  gmp_randseed_ui(gmp, seed);
  mpz_t k;
  mpz_init(k);
  mpq_t exact, e;
  mpq_inits(exact, e, nullptr);
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
    if (x.gettype() == numbertype::doublenumber)
      mpq_set_d(exact, x.todouble());
    else
      mpfr_get_q(exact, static_cast<const mpnumber&>(x.gethandle().getbody()).getelement());
    for (RoundModeEnum r : kRoundModes) {
      for (OverflowModeEnum o : {OverflowModeEnum::Saturate, OverflowModeEnum::Wrap}) {
        const quantizer z(issigned ? quantizer::Fixed : quantizer::Ufixed, r, o,
                          static_cast<int>(w), static_cast<int>(f));
        number v(x);
        qlogger log;
        z.quantize(v, log);
        reference(e, exact, issigned, w, f, r, o);
        ASSERT_TRUE(same_value(v, e))
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
  mpq_clears(exact, e, nullptr);
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
