// Conversions of numbers: stored integers in and out, scaling, remainders, exponents,
// single precision and the debugging print.
#include <gmp.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "host/inprocess_host.h"
#include "number/doublenumber.h"
#include "number/mpnumber.h"
#include "number/number.h"

namespace corbel {
namespace {

TEST(NumberConversion, FixedToIntegerTruncatesAndKeepsTheLowBits) {
  for (unsigned long p : {52ul, 90ul}) {
    const number x(1.5, p, false);
    EXPECT_EQ(x.fixed2int8(8, 2), 6);
    EXPECT_EQ(x.fixed2int8(3, 2), 6);  // the word length plays no part
    const number y(-2.75, p, false);
    EXPECT_EQ(y.fixed2int16(16, 0), -2);  // toward zero
    EXPECT_EQ(y.fixed2uint8(8, 2), 245);  // -11 in 8 bits
    const number big(300.0, p, false);
    EXPECT_EQ(big.fixed2int8(16, 0), 44);  // 300 mod 256
    EXPECT_EQ(big.fixed2uint16(16, 0), 300);
    EXPECT_EQ(big.fixed2int64(16, 10), 300 * 1024);
  }
  // Beyond 2^63 a double gives the integer-indefinite pattern.
  const number huge(0x1p70);
  EXPECT_EQ(huge.fixed2int64(64, 0), INT64_MIN);
  EXPECT_EQ(huge.fixed2uint32(64, 0), 0u);
  // A multiprecision value reads the full unsigned 64-bit range exactly.
  number wide(1.0, 80, false);
  wide.pow2(64);
  wide -= number(1.0);
  EXPECT_EQ(wide.fixed2uint64(64, 0), UINT64_MAX);
}

TEST(NumberConversion, StoredIntegersFromWords) {
  const unsigned int allOnes[] = {0xFFFFFFFFu};
  for (unsigned long p : {52ul, 64ul}) {
    number s(0.0, p, false), u(0.0, p, false);
    s.setvalue(allOnes, 1, true, 32, 0);
    u.setvalue(allOnes, 1, false, 32, 0);
    EXPECT_EQ(s.todouble(), -1.0);
    EXPECT_EQ(u.todouble(), 4294967295.0);
    // The scaled form applies the power of two of the scaling.
    number t(0.0, p, false);
    t.setvalue(allOnes, 1, true, 32, 1.0, -4, 0.0);
    EXPECT_EQ(t.todouble(), -0.0625);
  }
  // 96 bits, two's complement: -2^64 + 5 read from three words, exact only in
  // multiprecision.
  const unsigned int words[] = {5u, 0u, 0xFFFFFFFFu};
  number w(0.0, 100, false);
  w.setvalue(words, 3, true, 96, 0);
  mpz_t expected;
  mpz_init_set_si(expected, 5);
  mpz_t p64;
  mpz_init(p64);
  mpz_setbit(p64, 64);
  mpz_sub(expected, expected, p64);
  mpfr_t e;
  mpfr_init2(e, 100);
  mpfr_set_z(e, expected, MPFR_RNDN);
  EXPECT_TRUE(mpfr_equal_p(static_cast<const mpnumber&>(w.gethandle().getbody()).getelement(), e));
  mpfr_clear(e);
  mpz_clears(expected, p64, nullptr);
}

TEST(NumberConversion, StripScalingRoundsHalvesAwayFromZero) {
  for (unsigned long p : {52ul, 80ul}) {
    number a(0.15625, p, false);  // 2.5 units of 1/16
    EXPECT_EQ(a.stripscaling(1.0, -4, 0.0).todouble(), 3.0);
    number b(-0.15625, p, false);
    EXPECT_EQ(b.stripscaling(1.0, -4, 0.0).todouble(), -3.0);
  }
}

TEST(NumberConversion, UnsignedPatternsOfBothBodies) {
  const doublenumber neg(-0.5);
  EXPECT_EQ(neg.convertToUnsignedInteger(1.0, -2, 0.0, 1ULL << 8), 254u);
  EXPECT_EQ(doublenumber(0.0).convertToUnsignedInteger(1.0, -2, 0.0, 1ULL << 8), 0u);
  EXPECT_EQ(doublenumber::bitcmpXorMask(64), UINT64_MAX);
  EXPECT_EQ(doublenumber::bitcmpXorMask(5), 31u);
  const mpnumber mneg(-0.5, 64);
  mpfr_t two;
  mpnumber::twoToTheN(two, 8);
  mpz_t r;
  mpz_init(r);
  mneg.convertToUnsignedInteger(r, 1.0, -2, 0.0, two);
  EXPECT_EQ(mpz_get_ui(r), 254u);
  mpz_clear(r);
  mpfr_clear(two);
}

TEST(NumberConversion, ModTakesTheSignOfTheDivisor) {
  struct Case {
    double x, y, expected;
  } cases[] = {
      {7, 3, 1},      {-7, 3, 2},        {7, -3, -2},        {-7, -3, -1}, {5.5, 2, 1.5},
      {-5.5, 2, 0.5}, {1.25, 0.5, 0.25}, {-1.25, 0.5, 0.25}, {3, 0.75, 0}, {4, 0, 4},
  };
  for (const Case& c : cases) {
    for (unsigned long p : {52ul, 70ul}) {
      number x(c.x, p, false);
      x.mod(number(c.y, p, false));
      EXPECT_EQ(x.todouble(), c.expected) << c.x << " mod " << c.y << " at " << p;
    }
  }
}

// The double rule is exact for integer divisors and for powers of two (whose quotients
// are exact); there both bodies must give the same remainder.
TEST(NumberConversion, ModAgreesAcrossBodiesOverASweep) {
  std::mt19937_64 rng(7);
  std::uniform_int_distribution<long long> k(-(1LL << 30), 1LL << 30);
  std::uniform_int_distribution<int> sh(0, 12);
  for (int i = 0; i < 2000; ++i) {
    const double x = std::ldexp(static_cast<double>(k(rng)), -sh(rng));
    const double y = (rng() & 1) ? static_cast<double>(k(rng) % 5000)
                                 : std::ldexp((rng() & 1) ? 1.0 : -1.0, 6 - sh(rng));
    number d(x), m(x, 80, false);
    d.mod(number(y));
    m.mod(number(y, 80, false));
    ASSERT_TRUE(d == m) << x << " mod " << y;
    if (y != 0) {
      ASSERT_TRUE(d.iszero() || (d.isnegative() == (y < 0))) << x << " mod " << y;
    }
  }
}

TEST(NumberConversion, ExponentsSignsAndPredicates) {
  for (unsigned long p : {52ul, 100ul}) {
    EXPECT_EQ(number(1.0, p, false).unbiasedexponent(), 0);
    EXPECT_EQ(number(0.75, p, false).unbiasedexponent(), -1);
    EXPECT_EQ(number(-6.0, p, false).unbiasedexponent(), 2);
    EXPECT_EQ(number(-0.0, p, false).sign(), 0);
    EXPECT_EQ(number(-3.0, p, false).sign(), -1);
    EXPECT_EQ(number(NAN, p, false).sign(), 0);
    EXPECT_TRUE(number(-INFINITY, p, false).myisinf());
    EXPECT_FALSE(number(NAN, p, false).myisinf());
    EXPECT_FALSE(number(NAN, p, false).myisfinite());
    EXPECT_TRUE(number(-0.0, p, false).iszero());
  }
  // pow2 is exact in multiprecision and follows IEEE in a double.
  number m(3.0, 64, false);
  EXPECT_EQ(m.pow2(-1100).pow2(1100).todouble(), 3.0);
  number d(3.0);
  EXPECT_TRUE(d.pow2(2000).myisinf());
}

TEST(NumberConversion, SingleHypotAndScaledAssignment) {
  EXPECT_EQ(number(0.1).tosingle(), static_cast<double>(0.1f));
  EXPECT_EQ(number(0.1, 100, false).tosingle(), static_cast<double>(0.1f));
  number h;
  h._hypot(number(3.0), number(4.0));
  EXPECT_EQ(h.todouble(), 5.0);
  number hm;
  hm._hypot(number(3.0), number(4.0, 80, false));
  EXPECT_EQ(hm.gettype(), numbertype::mpnumber);
  EXPECT_EQ(hm.todouble(), 5.0);
  number a;
  a.abs(number(-2.5, 70, false));
  EXPECT_EQ(a.todouble(), 2.5);
  number s;
  s.setvalue(number(3.0), 0.5, 10.0);
  EXPECT_EQ(s.todouble(), 11.5);
}

TEST(NumberConversion, DispPrintsThroughTheHostConsole) {
  InProcessHost host;
  ScopedHost scope(host);
  number(0.25).disp();
  EXPECT_EQ(host.take_console(), "\ndoublenumber = 0.25");
  number(0.25, 40, true).disp();
  EXPECT_EQ(host.take_console(), "\nmpnumber = 0.25\nPrecision = 40\n");
}

}  // namespace
}  // namespace corbel
