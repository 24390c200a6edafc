// Representation choice, copy-on-write, promotion and precision changes of numbers.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "number/doublenumber.h"
#include "number/mpnumber.h"
#include "number/number.h"
#include "number/numberfactory.h"

namespace corbel {
namespace {

TEST(NumberRepresentation, PrecisionAndForceChooseTheBody) {
  struct Case {
    unsigned long precision;
    bool force;
    numbertype type;
    unsigned long expectedPrecision;
  } cases[] = {
      {1, false, numbertype::doublenumber, 52}, {52, false, numbertype::doublenumber, 52},
      {53, false, numbertype::mpnumber, 53},    {200, false, numbertype::mpnumber, 200},
      {10, true, numbertype::mpnumber, 32},     {52, true, numbertype::mpnumber, 52},
  };
  for (const Case& c : cases) {
    number n(1.5, c.precision, c.force);
    EXPECT_EQ(n.gettype(), c.type) << c.precision << " " << c.force;
    EXPECT_EQ(n.getprecision(), c.expectedPrecision) << c.precision << " " << c.force;
    EXPECT_EQ(n.todouble(), 1.5);
  }
}

TEST(NumberRepresentation, FactoryBodiesStartUncounted) {
  numberrepbody* d = numberfactory::createnumber();
  numberrepbody* m = numberfactory::createnumber(0.25, 70, false);
  EXPECT_EQ(d->gettype(), numbertype::doublenumber);
  EXPECT_EQ(d->todouble(), 0.0);
  EXPECT_EQ(d->getcount(), 0);
  EXPECT_EQ(m->gettype(), numbertype::mpnumber);
  EXPECT_EQ(m->getcount(), 0);
  numberrephandle h(*m);  // adopts and counts
  EXPECT_EQ(m->getcount(), 1);
  delete d;
}

TEST(NumberRepresentation, DefaultsApplyToNumbersMadeWithoutPrecision) {
  EXPECT_EQ(number::getDefaultPrecision(), 52u);
  EXPECT_FALSE(number::getDefaultForceMultiplePrecision());
  EXPECT_EQ(number(0.5).gettype(), numbertype::doublenumber);
  number::setDefaultPrecision(80, false);
  EXPECT_EQ(number(0.5).getprecision(), 80u);
  number::setDefaultPrecision(20, false);
  number::setDefaultForceMultiplePrecision(true);
  EXPECT_EQ(number(0.5).gettype(), numbertype::mpnumber);
  number::setDefaultPrecision(52, false);
  EXPECT_EQ(number(0.5).gettype(), numbertype::doublenumber);
}

// Multiprecision copies share one body; a double is held inline and never shared.
TEST(NumberRepresentation, CopiesShareUntilOneChanges) {
  for (unsigned long precision : {52ul, 120ul}) {
    const auto shared = [&](int n) { return precision > 52 ? n : 1; };
    number a(3.0, precision, false);
    number b(a);
    number c = a;
    EXPECT_EQ(a.getcount(), shared(3));
    c += number(1.0, precision, false);
    b.negate();
    EXPECT_EQ(a.todouble(), 3.0);
    EXPECT_EQ(b.todouble(), -3.0);
    EXPECT_EQ(c.todouble(), 4.0);
    EXPECT_EQ(a.getcount(), 1);
    // Self-assignment and assignment from a sibling keep the counts right.
    a = a;
    b = a;
    EXPECT_EQ(a.getcount(), shared(2));
    a += a;
    EXPECT_EQ(a.todouble(), 6.0);
    EXPECT_EQ(b.todouble(), 3.0);
  }
}

// A double is held as its own bits, except a NaN whose pattern reads as a boxed handle: it
// becomes the quiet NaN, so no input can pass for a multiprecision value.
TEST(NumberRepresentation, DoublesAreHeldInlineAndNoNaNPassesForABox) {
  for (std::uint64_t bits : {0xFFF6'0000'0000'0000ull, 0xFFF6'1234'5678'9ABCull}) {
    number x = number::ondouble(std::bit_cast<double>(bits));
    number y(std::bit_cast<double>(bits));
    y.setvalue(std::bit_cast<double>(bits));
    for (const number* n : {&x, &y}) {
      EXPECT_TRUE(n->isdouble());
      EXPECT_TRUE(std::isnan(n->todouble()));
      EXPECT_EQ(number(*n).gettype(), numbertype::doublenumber);
    }
  }
  const number negativeZero = number::ondouble(-0.0);
  EXPECT_TRUE(std::signbit(number(negativeZero).todouble()));
  // Zero-filled memory is a double zero.
  EXPECT_EQ(std::bit_cast<std::uint64_t>(number().todouble()), 0u);
}

TEST(NumberRepresentation, ValueOperatorsNeverChangeTheLeftOperand) {
  const number a(6.0), b(4.0);
  EXPECT_EQ((a + b).todouble(), 10.0);
  EXPECT_EQ((a - b).todouble(), 2.0);
  EXPECT_EQ((a * b).todouble(), 24.0);
  EXPECT_EQ((a / b).todouble(), 1.5);
  EXPECT_EQ((-a).todouble(), -6.0);
  EXPECT_EQ(a.todouble(), 6.0);
  EXPECT_EQ(b.todouble(), 4.0);
}

TEST(NumberRepresentation, MixedOperationsPromoteTheLeftToTheRightPrecision) {
  number d(0.1, 52, false);
  const number m(1.0, 100, false);
  d += m;
  EXPECT_EQ(d.gettype(), numbertype::mpnumber);
  EXPECT_EQ(d.getprecision(), 100u);
  // 0.1 as a double, plus 1, is exact at 100 bits and not at 53.
  mpfr_t expected;
  mpfr_init2(expected, 100);
  mpfr_set_d(expected, 0.1, MPFR_RNDN);
  mpfr_add_ui(expected, expected, 1, MPFR_RNDN);
  const auto& body = static_cast<const mpnumber&>(d.gethandle().getbody());
  EXPECT_TRUE(mpfr_equal_p(body.getelement(), expected));
  mpfr_clear(expected);

  // Multiprecision left, double right: the left keeps its precision.
  number m2(1.0, 64, false);
  m2 *= number(3.0);
  EXPECT_EQ(m2.getprecision(), 64u);
  EXPECT_EQ(m2.todouble(), 3.0);

  // A promoted sibling leaves the shared original double-backed.
  number orig(2.0);
  number sib(orig);
  sib -= m;
  EXPECT_EQ(orig.gettype(), numbertype::doublenumber);
  EXPECT_EQ(sib.gettype(), numbertype::mpnumber);
  EXPECT_EQ(sib.todouble(), 1.0);
}

TEST(NumberRepresentation, MixedComparisonsRoundTheDoubleToTheOtherPrecision) {
  // 1 + 2^-40 rounds to 1 at 32 bits, so the comparison sees equality.
  const number wide(1.0 + 0x1p-40);
  const number narrow(1.0, 32, true);
  EXPECT_TRUE(wide == narrow);
  EXPECT_TRUE(narrow == wide);
  EXPECT_FALSE(wide > narrow);
  const number fine(1.0, 64, true);
  EXPECT_TRUE(wide > fine);
  EXPECT_TRUE(fine < wide);
  EXPECT_TRUE(fine <= wide && fine != wide && !(fine >= wide));
  // Comparisons change nothing.
  EXPECT_EQ(wide.gettype(), numbertype::doublenumber);
}

TEST(NumberRepresentation, SetPrecisionPromotesButNeverDemotes) {
  number d(0.1);
  d.setprecision(40, false);
  EXPECT_EQ(d.gettype(), numbertype::doublenumber);
  d.setprecision(60, false);
  EXPECT_EQ(d.gettype(), numbertype::mpnumber);
  EXPECT_EQ(d.getprecision(), 60u);
  EXPECT_EQ(d.todouble(), 0.1);

  // Re-rounding keeps one more bit than construction gives, and no fewer than 33.
  number m(0.1, 10, true);
  EXPECT_EQ(m.getprecision(), 32u);
  m.setprecision(10, false);
  EXPECT_EQ(m.getprecision(), 33u);
  m.setprecision(100, false);
  EXPECT_EQ(m.getprecision(), 101u);
  m.setprecision(40, false);
  EXPECT_EQ(m.gettype(), numbertype::mpnumber);
  EXPECT_EQ(m.getprecision(), 41u);

  // Forcing rebuilds from the value as a double, at exactly the precision asked for.
  number wide(1.0, 200, false);
  wide.pow2(-150);
  wide += number(1.0);  // 1 + 2^-150: not a double
  wide.setprecision(200, true);
  EXPECT_EQ(wide.getprecision(), 200u);
  EXPECT_TRUE(wide == number(1.0));
}

TEST(NumberRepresentation, PromotionKeepsTheRightPrecisionOverASweep) {
  std::mt19937_64 rng(20261122);
  std::uniform_int_distribution<unsigned long> prec(53, 400);
  std::uniform_real_distribution<double> val(-1e6, 1e6);
  for (int i = 0; i < 300; ++i) {
    const unsigned long p = prec(rng);
    const double x = val(rng), y = val(rng);
    number l(x), r(y, p, false);
    number sum = l + r;
    EXPECT_EQ(sum.getprecision(), p);
    EXPECT_EQ(l.gettype(), numbertype::doublenumber);
    // The exact sum of two doubles needs at most ~2100 bits; at p bits it is the
    // correctly rounded sum.
    mpfr_t e;
    mpfr_init2(e, static_cast<mpfr_prec_t>(p));
    mpfr_set_d(e, x, MPFR_RNDN);
    mpfr_add_d(e, e, y, MPFR_RNDN);
    EXPECT_TRUE(
        mpfr_equal_p(static_cast<const mpnumber&>(sum.gethandle().getbody()).getelement(), e));
    mpfr_clear(e);
  }
}

// Random copies, assignments and changes over a pool of numbers of both kinds: every
// number always holds the value the same steps give on plain doubles, so no change ever
// reaches a sibling that shares its body.
TEST(NumberRepresentation, CopyOnWriteNeverChangesASiblingOverASweep) {
  std::mt19937_64 rng(4);
  std::vector<number> pool;
  std::vector<double> shadow;
  for (int i = 0; i < 16; ++i) {
    pool.emplace_back(static_cast<double>(i), (i % 2) ? 52ul : 90ul, false);
    shadow.push_back(i);
  }
  std::uniform_int_distribution<size_t> pick(0, pool.size() - 1);
  for (int step = 0; step < 5000; ++step) {
    const size_t a = pick(rng), b = pick(rng);
    switch (rng() % 5) {
      case 0:
        pool[a] = pool[b];
        shadow[a] = shadow[b];
        break;
      case 1:
        pool[a] += pool[b];
        shadow[a] += shadow[b];
        break;
      case 2:
        pool[a].negate();
        shadow[a] = -shadow[a];
        break;
      case 3:
        pool[a].pow2(-1).floor();
        shadow[a] = std::floor(shadow[a] / 2);
        break;
      case 4:
        pool[a] = number(pool[b]) - pool[a];
        shadow[a] = shadow[b] - shadow[a];
        break;
    }
    for (size_t i = 0; i < pool.size(); ++i)
      ASSERT_EQ(pool[i].todouble(), shadow[i]) << "step " << step << " number " << i;
  }
}

}  // namespace
}  // namespace corbel
