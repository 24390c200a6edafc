// Stored-integer bit operations of numbers: the 64-bit forms of double bodies, the
// multiprecision forms, their errors, and their agreement with plain integer arithmetic.
#include <gmp.h>
#include <gtest/gtest.h>
#include <mpfr.h>

#include <random>
#include <string>

#include "expect_error.h"
#include "host/host_error.h"
#include "number/doublenumber.h"
#include "number/mpnumber.h"
#include "number/number.h"

namespace corbel {
namespace {

// The multiprecision constants of a word length.
struct MpMasks {
  explicit MpMasks(int wl) {
    mpz_init(xormask);
    mpnumber::bitcmpXorMask(xormask, wl);
    mpnumber::twoToTheN(two, wl);
  }
  ~MpMasks() {
    mpz_clear(xormask);
    mpfr_clear(two);
  }
  mpz_t xormask;
  mpfr_t two;
};

std::uint64_t two64(int wl) {
  return 1ULL << wl;
}

// A number holding stored integer k with fraction length fl.
number stored(long long k, int fl, unsigned long precision) {
  number n(static_cast<double>(k), precision, false);
  return n.pow2(-fl);
}

// Word lengths up to 52 are the sweep's below; these are multiprecision words.
TEST(NumberBits, WideWordsOnTheMultiprecisionForm) {
  // A 100-bit signed complement of 0 is -1.
  MpMasks m100(100);
  number z(0.0, 100, false);
  z.bitcmp(true, 100, 1.0, 0, 0.0, m100.xormask, m100.two);
  EXPECT_EQ(z.todouble(), -1.0);
  // And of -1 at 100 bits unsigned-reads as 2^100 - 1: exact, 100 significant bits.
  number u(-1.0, 100, false);
  MpMasks again(100);
  u.mpbitand(number(-1.0, 100, false), false, 100, 1.0, 0, 0.0, again.two);
  mpfr_t e;
  mpfr_init2(e, 128);
  mpfr_set_ui(e, 1, MPFR_RNDN);
  mpfr_mul_2ui(e, e, 100, MPFR_RNDN);
  mpfr_sub_ui(e, e, 1, MPFR_RNDN);
  EXPECT_TRUE(mpfr_equal_p(static_cast<const mpnumber&>(u.gethandle().getbody()).getelement(), e));
  mpfr_clear(e);
}

TEST(NumberBits, PositionsOutsideTheWordFail) {
  const std::string text = "A bit position is not an integer in the appropriate range.";
  MpMasks m(70);
  number d(3.0), mp(3.0, 70, false);
  for (long position : {0L, 9L}) {
    expect_error_starting([&] { d.bitget(position, true, 8, 1.0, 0, 0.0, two64(8)); },
                          "velkora:fi:bitget:BITOutOfRange", text);
    expect_error_starting([&] { d.bitset(position, true, true, 8, 1.0, 0, 0.0, two64(8)); },
                          "velkora:fi:bitset:BITOutOfRange", text);
  }
  for (long position : {0L, 71L}) {
    expect_error_starting([&] { mp.bitget(position, true, 70, 1.0, 0, 0.0, m.two); },
                          "velkora:fi:bitget:BITOutOfRange", text);
    expect_error_starting([&] { mp.bitset(position, false, true, 70, 1.0, 0, 0.0, m.two); },
                          "velkora:fi:bitset:BITOutOfRange", text);
  }
  // A failed operation leaves the value alone.
  EXPECT_EQ(d.todouble(), 3.0);
  EXPECT_EQ(mp.todouble(), 3.0);
}

TEST(NumberBits, EachBodyRefusesTheOtherBodysForm) {
  MpMasks m(8);
  number d(3.0), mp(3.0, 60, false);
  const number other(1.0);
  struct Case {
    std::function<void()> call;
    std::string id, text;
  } cases[] = {
      {[&] { d.bitcmp(true, 8, 1.0, 0, 0.0, m.xormask, m.two); },
       "velkora:fi:doublenumber:bitcmp:mpnumberparameters",
       "doublenumber::bitcmp has been called with mpnumber parameters"},
      {[&] { d.mpbitand(other, true, 8, 1.0, 0, 0.0, m.two); },
       "velkora:fi:doublenumber:fibitand:mpnumberparameters",
       "mpnumber::fibitand has been called with mpnumber parameters"},
      {[&] { d.mpbitor(other, true, 8, 1.0, 0, 0.0, m.two); },
       "velkora:fi:doublenumber:fibitor:mpnumberparameters",
       "doublenumber::fibitor has been called with mpnumber parameters"},
      {[&] { d.mpbitxor(other, true, 8, 1.0, 0, 0.0, m.two); },
       "velkora:fi:doublenumber:bitxor:mpnumberparameters",
       "doublenumber::bitxor has been called with mpnumber parameters"},
      {[&] { d.bitget(1, true, 8, 1.0, 0, 0.0, static_cast<mpfr_srcptr>(m.two)); },
       "velkora:fi:doublenumber:bitget:mpnumberparameters",
       "doublenumber::bitget has been called with mpnumber parameters"},
      {[&] { d.bitset(1, true, true, 8, 1.0, 0, 0.0, static_cast<mpfr_srcptr>(m.two)); },
       "velkora:fi:doublenumber:bitset:mpnumberparameters",
       "doublenumber::bitset has been called with mpnumber parameters"},
      {[&] { mp.bitcmp(true, 8, 1.0, 0, 0.0, std::uint64_t{255}, two64(8)); },
       "velkora:fi:mpnumber:bitcmp:doublenumberparameter",
       "mpnumber::bitcmp has been called with doublenumber parameters"},
      {[&] { mp.doublebitand(other, true, 8, 1.0, 0, 0.0, two64(8)); },
       "velkora:fi:mpnumber:fibitand:doublenumberparameter",
       "mpnumber::fibitand has been called with doublenumber parameters"},
      {[&] { mp.doublebitor(other, true, 8, 1.0, 0, 0.0, two64(8)); },
       "velkora:fi:mpnumber:fibitor:doublenumberparameter",
       "mpnumber::fibitor has been called with doublenumber parameters"},
      {[&] { mp.doublebitxor(other, true, 8, 1.0, 0, 0.0, two64(8)); },
       "velkora:fi:mpnumber:bitxor:doublenumberparameter",
       "mpnumber::bitxor has been called with doublenumber parameters"},
      {[&] { mp.bitget(1, true, 8, 1.0, 0, 0.0, two64(8)); },
       "velkora:fi:mpnumber:bitget:doublenumberparameter",
       "mpnumber::bitget has been called with doublenumber parameters"},
      {[&] { mp.bitset(1, true, true, 8, 1.0, 0, 0.0, two64(8)); },
       "velkora:fi:mpnumber:bitset:doublenumberparameter",
       "mpnumber::bitset has been called with doublenumber parameters"},
  };
  for (const Case& c : cases) expect_internal_error(c.call, c.id, c.text);
  EXPECT_EQ(d.todouble(), 3.0);
  EXPECT_EQ(mp.todouble(), 3.0);
}

// Plain 64-bit integer arithmetic on stored integers, the reference for the sweep.
long long signed_reading(std::uint64_t pattern, bool issigned, int wl) {
  pattern &= (wl == 64) ? ~0ULL : ((1ULL << wl) - 1);
  if (issigned && (pattern >> (wl - 1)) & 1) return static_cast<long long>(pattern) - (1LL << wl);
  return static_cast<long long>(pattern);
}

// For random word lengths up to 52, fraction lengths and stored integers, each bit
// operation gives the same value on a double body, on a multiprecision body, and in
// plain integer arithmetic.
TEST(NumberBits, DoubleAndMultiprecisionFormsAgreeOverASweep) {
  std::mt19937_64 rng(52);
  for (int i = 0; i < 3000; ++i) {
    const int wl = std::uniform_int_distribution<int>(1, 52)(rng);
    const bool issigned = wl > 1 ? (rng() & 1) : false;
    const int fl = std::uniform_int_distribution<int>(-10, 60)(rng);
    const long long lo = issigned ? -(1LL << (wl - 1)) : 0;
    const long long hi = issigned ? (1LL << (wl - 1)) - 1 : (1LL << wl) - 1;
    std::uniform_int_distribution<long long> pick(lo, hi);
    const long long ka = pick(rng), kb = pick(rng);
    const long position = std::uniform_int_distribution<long>(1, wl)(rng);
    const bool bit = rng() & 1;
    const std::uint64_t ua = static_cast<std::uint64_t>(ka), ub = static_cast<std::uint64_t>(kb);
    const MpMasks m(wl);
    const std::uint64_t two = two64(wl), mask = doublenumber::bitcmpXorMask(wl);
    const unsigned long p = std::uniform_int_distribution<unsigned long>(64, 200)(rng);

    struct Op {
      const char* name;
      long long expected;
      std::function<void(number&)> onDouble, onMp;
    } ops[] = {
        {"bitcmp", signed_reading(~ua, issigned, wl),
         [&](number& x) { x.bitcmp(issigned, wl, 1.0, -fl, 0.0, mask, two); },
         [&](number& x) { x.bitcmp(issigned, wl, 1.0, -fl, 0.0, m.xormask, m.two); }},
        {"and", signed_reading(ua & ub, issigned, wl),
         [&](number& x) { x.doublebitand(stored(kb, fl, 52), issigned, wl, 1.0, -fl, 0.0, two); },
         [&](number& x) { x.mpbitand(stored(kb, fl, p), issigned, wl, 1.0, -fl, 0.0, m.two); }},
        {"or", signed_reading(ua | ub, issigned, wl),
         [&](number& x) { x.doublebitor(stored(kb, fl, 52), issigned, wl, 1.0, -fl, 0.0, two); },
         [&](number& x) { x.mpbitor(stored(kb, fl, 52), issigned, wl, 1.0, -fl, 0.0, m.two); }},
        {"xor", signed_reading(ua ^ ub, issigned, wl),
         [&](number& x) { x.doublebitxor(stored(kb, fl, 52), issigned, wl, 1.0, -fl, 0.0, two); },
         [&](number& x) { x.mpbitxor(stored(kb, fl, p), issigned, wl, 1.0, -fl, 0.0, m.two); }},
        {"bitset",
         signed_reading(bit ? (ua | (1ULL << (position - 1))) : (ua & ~(1ULL << (position - 1))),
                        issigned, wl),
         [&](number& x) { x.bitset(position, bit, issigned, wl, 1.0, -fl, 0.0, two); },
         [&](number& x) { x.bitset(position, bit, issigned, wl, 1.0, -fl, 0.0, m.two); }},
    };
    for (const Op& op : ops) {
      number d = stored(ka, fl, 52), mp = stored(ka, fl, p);
      op.onDouble(d);
      op.onMp(mp);
      const number expected = stored(op.expected, fl, 52);
      ASSERT_TRUE(d == expected) << op.name << " wl " << wl << " fl " << fl << " k " << ka;
      ASSERT_TRUE(mp == expected) << op.name << " wl " << wl << " fl " << fl << " k " << ka;
    }
    const number d = stored(ka, fl, 52), mp = stored(ka, fl, p);
    const unsigned char expectedBit = (ua >> (position - 1)) & 1;
    ASSERT_EQ(d.bitget(position, issigned, wl, 1.0, -fl, 0.0, two), expectedBit);
    ASSERT_EQ(mp.bitget(position, issigned, wl, 1.0, -fl, 0.0, static_cast<mpfr_srcptr>(m.two)),
              expectedBit);
  }
}

}  // namespace
}  // namespace corbel
