// The bit operations against a model on the two's-complement stored integers (GMP), over word
// lengths 1 to 130, both signednesses, fraction lengths below 0 and above the word length,
// complex arrays, scalar expansion, arrays held in doubles, in multiprecision values and in
// a mix of both; then the refusals, in the order they are checked.
#include <gmp.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "expect_error.h"
#include "fi/fi.h"
#include "fi_sweep.h"
#include "host/inprocess_host.h"
#include "random_formats.h"

namespace corbel {
namespace {

// The W-bit pattern of an element's stored integer.
struct Pattern {
  mpz_t u;
  Pattern(const number& x, const NumericType& t) {
    mpz_init(u);
    const Q q = Q(x).scaled(-t.getFixedExponent());
    mpz_set(u, mpq_numref(q.v));
    mpz_fdiv_r_2exp(u, u, static_cast<mp_bitcnt_t>(t.getWordLength()));
  }
  ~Pattern() { mpz_clear(u); }
  Pattern(const Pattern&) = delete;
  Pattern& operator=(const Pattern&) = delete;
};

// The value a pattern stands for in type t, as exact text.
std::string valueOf(mpz_srcptr pattern, const NumericType& t) {
  mpz_t s;
  mpz_init_set(s, pattern);
  const auto w = static_cast<mp_bitcnt_t>(t.getWordLength());
  if (t.getSigned() && mpz_tstbit(s, w - 1)) {
    mpz_t top;
    mpz_init(top);
    mpz_setbit(top, w);
    mpz_sub(s, s, top);
    mpz_clear(top);
  }
  Q q;
  mpq_set_z(q.v, s);
  mpz_clear(s);
  const Q v = q.scaled(t.getFixedExponent());
  return mpq_sgn(v.v) == 0 ? "0" : v.str();
}

// exactParts without the sign of zero, which stored integers do not have.
std::vector<std::string> values(const fi& x) {
  std::vector<std::string> out = exactParts(x);
  for (std::string& s : out)
    if (s == "+0" || s == "-0") s = "0";
  return out;
}

TEST(FiBits, OperationsFollowTheStoredIntegerModel) {
  std::mt19937_64 rng(48);
  GmpRandom random(48);
  auto& state = random.state;
  Sweep sweep;
  for (int trial = 0; trial < 300; ++trial) {
    const fimath m;
    RandomFormat f(rng, 130);
    if (trial % 10 == 3) f.wl = 52;  // the widest word of the double-backed loops
    const bool issigned = rng() % 2, complex = trial % 5 == 0;
    const int n = trial % 9 == 0 ? 1 : 5;
    auto a = randomNumbers(rng, state, {1, n}, issigned, f.wl, f.fl, m, complex);
    auto b = randomNumbers(rng, state, {1, trial % 4 == 0 ? 1 : 5}, issigned, f.wl, f.fl, m,
                           trial % 7 == 0);
    if (f.wl >= 53 && trial % 2 == 0)
      b = std::make_unique<fi>(
          randomDoubles(rng, b->numel(), issigned, f.wl, f.fl, m, !b->isreal()), fi::WholeCopy);
    // Now and then a multiprecision first element over double-backed ones, or a double zero
    // first in a multiprecision word (as zero-filled arrays hold).
    if (f.wl <= 52 && trial % 3 == 0) a->realRef(0) = number(a->realdouble(0), 80, true);
    if (f.wl >= 53 && trial % 3 == 1) a->realRef(0) = number::ondouble(0.0);
    // Or, in a wide word, arrays made from doubles, which hold stored integers.
    if (f.wl >= 53 && trial % 3 == 2)
      a = std::make_unique<fi>(randomDoubles(rng, n, issigned, f.wl, f.fl, m, complex),
                               fi::WholeCopy);
    const NumericType& t = a->getNumericType();
    mpz_t all, r;
    mpz_inits(all, r, nullptr);
    mpz_setbit(all, static_cast<mp_bitcnt_t>(f.wl));
    mpz_sub_ui(all, all, 1);

    // Each result also against the element path, which a log forces.
    const std::vector<std::string> c = values(*sweep.check([&] { return a->bitcmp(); }, "bitcmp"));
    const auto both = sweep.check([&] { return a->fibitand(*b); }, "bitand");
    const auto either = sweep.check([&] { return a->fibitor(*b); }, "bitor");
    const auto differ = sweep.check([&] { return a->bitxor(*b); }, "bitxor");
    const std::vector<std::string> x1 = values(*both), x2 = values(*either), x3 = values(*differ);
    // One position for every element, or (now and then) one for each, or several for a scalar.
    const bool each = trial % 2 == 0;
    HostArray at(HostClass::Double, {1, each ? std::size_t{5} : 1});
    for (std::size_t k = 0; k < at.numel(); ++k)
      static_cast<double*>(at.real_data())[k] = 1 + static_cast<double>(rng() % f.wl);
    const auto positionOf = [&](int i) {
      return static_cast<long>(at.real_as_double(each ? i : 0));
    };
    const HostArray bitget = a->bitget(at);
    fi::setLogging(true);
    const HostArray slowBitget = a->bitget(at);
    fi::setLogging(false);
    ASSERT_EQ(std::memcmp(bitget.real_data(), slowBitget.real_data(), bitget.numel()), 0);
    const bool bit = rng() % 2;
    const std::vector<std::string> s = values(
        *sweep.check([&] { return a->bitset(at, HostArray::make_double(bit ? 7 : 0)); }, "bitset"));
    const auto pick = [](const fi& x, int i) { return x.numel() == 1 ? 0 : i; };
    for (int i = 0; i < std::max(a->numel(), b->numel()); ++i)
      for (bool imagPart : {false, true}) {
        const size_t k = static_cast<size_t>(2 * i + imagPart);
        const Pattern p(imagPart ? a->imag(pick(*a, i)) : a->real(pick(*a, i)), t);
        const Pattern q(imagPart ? b->imag(pick(*b, i)) : b->real(pick(*b, i)), t);
        if (i < a->numel() && (!imagPart || a->iscomplex())) {
          mpz_xor(r, p.u, all);
          ASSERT_EQ(c[k], valueOf(r, t)) << "bitcmp " << f.wl << "," << f.fl;
        }
        mpz_and(r, p.u, q.u);
        ASSERT_EQ(x1[k], valueOf(r, t)) << "bitand";
        mpz_ior(r, p.u, q.u);
        ASSERT_EQ(x2[k], valueOf(r, t)) << "bitor";
        mpz_xor(r, p.u, q.u);
        ASSERT_EQ(x3[k], valueOf(r, t)) << "bitxor";
      }
    for (int i = 0; i < static_cast<int>(bitget.numel()); ++i) {
      const Pattern p(a->real(pick(*a, i)), t);
      const long position = positionOf(i);
      ASSERT_EQ(static_cast<const std::uint8_t*>(bitget.real_data())[i],
                mpz_tstbit(p.u, static_cast<mp_bitcnt_t>(position - 1)))
          << "bitget " << position;
      mpz_set(r, p.u);
      bit ? mpz_setbit(r, static_cast<mp_bitcnt_t>(position - 1))
          : mpz_clrbit(r, static_cast<mp_bitcnt_t>(position - 1));
      ASSERT_EQ(s[static_cast<size_t>(2 * i)], valueOf(r, t)) << "bitset " << position;
    }
    // Complementing twice gives the stored integers back.
    EXPECT_EQ(values(*a->bitcmp()->bitcmp()), values(*a));
    mpz_clears(all, r, nullptr);
  }
  EXPECT_GT(sweep.held, 10) << "the stored-integer loops hardly ran";
}

TEST(FiBits, BitshiftScalesTheStoredIntegersAndKeepsTheScaling) {
  fimath wrap;
  wrap.setOverflowMode(OverflowModeEnum::Wrap);
  const double v[] = {5, -3, 100};
  const int dims[] = {1, 3};
  const fi a(v, nullptr, dims, 2, NumericType(true, 8, 0), wrap);
  const auto left = a.bitshift(2), right = a.bitshift(-1);
  EXPECT_EQ(values(*left), (std::vector<std::string>{"20", "0", "-12", "0", "-112", "0"}));
  EXPECT_EQ(values(*right), (std::vector<std::string>{"3", "0", "-1", "0", "50", "0"}));
  const NumericType sb(DataTypeModeEnum::FixedSlopeBias, true, 8, 1.5, -2, 0.25);
  const fi s(1.0, sb, wrap);
  const auto shifted = s.bitshift(1);
  EXPECT_EQ(shifted->getNumericType().getSlopeAdjustmentFactor(), 1.5);
  EXPECT_EQ(shifted->getBias(), 0.25);
  EXPECT_EQ(Q(shifted->real(0)).str(), Q(Q(s.real(0)).scaled(1)).str());
}

// Narrow words on grids beyond a double's exponent range hold their values in
// multiprecision: the complement of zero is exactly -2^e, and the square of -2^600 in a
// one-bit product wraps to exactly -2^1201 (double bodies overflowed to NaN and infinity,
// and reading those back aborted the process).
TEST(FiBits, NarrowWordsOnGridsBeyondTheDoubleRange) {
  InProcessHost host;
  ScopedHost scope(host);
  fimath m;
  m.setOverflowMode(OverflowModeEnum::Wrap);
  m.setProductMode(ArithmeticModeEnum::KeepMSB);
  m.setProductWordLength(1);
  const int dims[] = {1, 2};
  for (const int e : {-1100, -1070, 1010, 1100}) {
    const fi zeros(dims, 2, NumericType(true, 8, -e), m, false);
    EXPECT_EQ(Q(zeros.bitcmp()->real(1)).str(), Q(-1.0).scaled(e).str()) << e;
  }
  const fi a(-std::ldexp(1.0, 600), NumericType(true, 1, -600), m);
  const auto p = a.times(a);
  EXPECT_EQ(p->getNumericType().getFixedExponent(), 1201);
  EXPECT_EQ(Q(p->real(0)).str(), Q(-1.0).scaled(1201).str());
}

TEST(FiBits, RefusalsInTheirOrder) {
  const fimath m;
  const double v[] = {1, 2};
  const int two[] = {1, 2};
  const fi a(v, nullptr, two, 2, NumericType(true, 8, 0), m);
  const fi other(v, nullptr, two, 2, NumericType(true, 9, 0), m);
  expect_error([&] { a.fibitand(other); }, "velkora:fi:bitAndXorOr:mixedNumericTypes",
               "Bit AND/OR/XOR must have matching operand types.");
  const HostArray three = HostArray::make_double_matrix(1, 3);
  expect_error([&] { a.bitget(HostArray::make_text("1")); }, "velkora:fi:bitget:indexMustBeNumeric",
               "BITGET index only valid for built-in numeric types");
  expect_error([&] { a.bitget(HostArray::make_complex(1, 1)); },
               "velkora:fi:bitget:inputsMustBeReal", "The arguments to BITGET must be real.");
  expect_error([&] { a.bitget(three); }, "velkora:fi:bitGet:sizeMismatch",
               "Inputs must have the same size.");
  const std::string range = "A bit position is not an integer in the appropriate range.";
  expect_error([&] { a.bitget(HostArray::make_double(0)); }, "velkora:fi:bitget:BITOutOfRange",
               range);
  for (const double bad : {9.0, 1.5, std::numeric_limits<double>::quiet_NaN()})
    expect_error([&] { a.bitget(HostArray::make_double(bad)); }, "velkora:fi:bitget:BITOutOfRange",
                 range);
  expect_error([&] { a.bitset(HostArray::make_text("1")); }, "velkora:fi:bitset:indexMustBeNumeric",
               "BITSET index only valid for built-in numeric types");
  expect_error([&] { a.bitset(HostArray::make_complex(1, 1)); },
               "velkora:fi:bitset:inputsMustBeReal", "The arguments to BITSET must be real.");
  expect_error([&] { a.bitset(HostArray::make_double(1), HostArray::make_text("1")); },
               "velkora:fi:bitset:valuesMustBeNumeric",
               "BITSET value only valid for built-in numeric types");
  expect_error([&] { a.bitset(three, HostArray::make_double_matrix(1, 2)); },
               "velkora:fi:bitSet:ArgSizeMismatch",
               "Second and third argument to BITSET must be the same size.");
  expect_error([&] { a.bitset(three); }, "velkora:fi:bitSet:sizeMismatch",
               "Inputs must have the same size.");
  expect_error([&] { a.bitset(HostArray::make_double(9)); }, "velkora:fi:bitset:BITOutOfRange",
               range);
  // A scalar fi and several positions give an array shaped like the positions.
  const fi one(5, true, 8, 0, m);
  const HostArray bits = one.bitget(HostArray::make_double_matrix(3, 1, {1, 2, 3}));
  EXPECT_EQ(bits.dims(), (std::vector<std::size_t>{3, 1}));
  EXPECT_EQ(static_cast<const std::uint8_t*>(bits.real_data())[1], 0);
  EXPECT_EQ(values(a), (std::vector<std::string>{"1", "0", "2", "0"}));
}

}  // namespace
}  // namespace corbel
