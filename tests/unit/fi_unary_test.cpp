// Negation, pow2, abs, conj, complex, max and min against an exact model (rationals rounded and
// overflowed by the test's own cast), and their whole-array paths against the element path,
// over word lengths 1 to 130, fraction lengths below 0 and above the word length, both
// signednesses, complex arrays and zeros of either sign; then their refusals.
#include <gmp.h>
#include <gtest/gtest.h>

#include <cmath>
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

// The exact text of a result part from the model: the cast of v into x's type, and for a
// zero the sign given (or the element's own sign where the model leaves it open).
std::string modelPart(const fi& x, const Q& v, const char* zeroSign, const std::string& got) {
  const NumericType& t = x.getNumericType();
  const Q r = cast(v, t.getSigned(), t.getWordLength(), t.getFixedExponent(), x.getRoundMode(),
                   x.getOverflowMode());
  if (mpq_sgn(r.v) != 0) return r.str();
  return zeroSign ? zeroSign : (got == "-0" ? "-0" : "+0");
}

Q negated(const Q& v) {
  Q r;
  mpq_neg(r.v, v.v);
  return r;
}

struct Operand {
  std::unique_ptr<fi> x;
  std::vector<std::string> parts;
};

Operand randomOperand(std::mt19937_64& rng, gmp_randstate_t state, const fimath& m,
                      std::vector<int> dims) {
  const RandomFormat f(rng, 130);
  auto x = randomNumbers(rng, state, dims, rng() % 2 == 0, f.wl, f.fl, m, rng() % 4 == 0);
  auto parts = exactParts(*x);
  return {std::move(x), std::move(parts)};
}

TEST(FiUnary, NegationPow2AbsAndConjugateFollowTheModel) {
  InProcessHost host;
  ScopedHost scope(host);
  std::mt19937_64 rng(44);
  GmpRandom random(44);
  auto& state = random.state;
  Sweep sweep;
  for (int trial = 0; trial < 300; ++trial) {
    fimath m;
    m.setRoundMode(kRoundModes[trial % 6]);
    m.setOverflowMode(trial % 4 < 2 ? OverflowModeEnum::Wrap : OverflowModeEnum::Saturate);
    const Operand a = randomOperand(rng, state, m, {trial % 9 == 0 ? 0 : 3, 5});
    const fi& x = *a.x;
    // Now and then a shift past the doubles' exponent range, or past 2^20.
    const long far[] = {-5000, -1100, 1100, (1L << 20) + 7};
    const long k = trial % 10 == 7 ? far[trial / 10 % 4] : static_cast<long>(rng() % 41) - 20;
    const auto negation = sweep.check([&] { return x.uminus(); }, "uminus");
    const auto scaled = sweep.check([&] { return x.pow2(k); }, "pow2");
    const auto conjugate = sweep.check([&] { return x.conj(); }, "conj");
    const std::vector<std::string> n = exactParts(*negation), p = exactParts(*scaled),
                                   c = exactParts(*conjugate);
    for (size_t i = 0; i < a.parts.size(); ++i) {
      const int e = static_cast<int>(i / 2);
      const number& v = i % 2 ? x.imag(e) : x.real(e);
      if (i % 2 == 1 && x.isreal()) {  // no imaginary part to change
        ASSERT_EQ(n[i] + p[i] + c[i], "+0+0+0");
        continue;
      }
      const bool zero = v.iszero(), negativeZero = a.parts[i] == "-0";
      const char* flipped = negativeZero ? "+0" : "-0";
      ASSERT_EQ(n[i], modelPart(x, negated(Q(v)), zero ? flipped : "+0", n[i]))
          << "uminus " << a.parts[i];
      // A value rounded to zero keeps whichever sign the rounding gives.
      ASSERT_EQ(p[i], modelPart(x, Q(v).scaled(k), zero ? a.parts[i].c_str() : nullptr, p[i]))
          << "pow2 " << k << " " << a.parts[i];
      if (i % 2 == 0)
        ASSERT_EQ(c[i], a.parts[i]) << "conj";
      else
        ASSERT_EQ(c[i], n[i]) << "conj";
    }
    if (x.isreal()) {
      const auto magnitude = sweep.check([&] { return x.abs(); }, "abs");
      const std::vector<std::string> r = exactParts(*magnitude);
      for (size_t i = 0; i < r.size(); i += 2) {
        const Q v(x.real(static_cast<int>(i / 2)));
        ASSERT_EQ(r[i], modelPart(x, mpq_sgn(v.v) < 0 ? negated(v) : v, "+0", r[i]))
            << "abs " << a.parts[i];
      }
    }
    EXPECT_EQ(exactParts(x), a.parts) << "operand changed";
  }
}

TEST(FiUnary, MaxMinAndComplexPickOrQuantizeTheRightElements) {
  InProcessHost host;
  ScopedHost scope(host);
  std::mt19937_64 rng(45);
  GmpRandom random(45);
  auto& state = random.state;
  Sweep sweep;
  for (int trial = 0; trial < 200; ++trial) {
    fimath m;
    m.setRoundMode(kRoundModes[trial % 6]);
    const std::vector<int> dims = {1 + static_cast<int>(rng() % 3), static_cast<int>(rng() % 4),
                                   1 + static_cast<int>(rng() % 2)};
    const Operand a = randomOperand(rng, state, m, dims);
    // b: same type and fimath, with elements equal to a's now and then.
    auto b = std::make_unique<fi>(*a.x, fi::WholeCopy);
    const int numel = a.x->numel();
    for (int i = 0; i < numel; ++i)
      if (rng() % 2) b->realRef(i) = a.x->real(static_cast<int>(rng() % numel));
    for (bool larger : {true, false}) {
      const auto r = sweep.check([&] { return larger ? a.x->max(*b) : a.x->min(*b); }, "max/min");
      for (int i = 0; i < numel; ++i) {
        const Q x(a.x->real(i)), y(b->real(i));
        if (a.x->isreal()) {
          ASSERT_EQ(Q(r->real(i)).str(), (larger == (mpq_cmp(y.v, x.v) > 0) ? y : x).str());
        }
      }
      std::unique_ptr<fi> values;
      HostArray index;
      const int dim = trial % 4;  // 0: the first dimension longer than one
      larger ? a.x->unary_max(values, index, dim) : a.x->unary_min(values, index, dim);
      ASSERT_EQ(values->numel(), static_cast<int>(index.numel()));
      // The element path (forced by a log) gives the same values, zeros' signs and places.
      {
        std::unique_ptr<fi> slowValues;
        HostArray slowIndex;
        fi::setLogging(true);
        larger ? a.x->unary_max(slowValues, slowIndex, dim)
               : a.x->unary_min(slowValues, slowIndex, dim);
        fi::setLogging(false);
        ASSERT_EQ(exactParts(*values), exactParts(*slowValues));
        ASSERT_EQ(values->getNumericType().isequal(slowValues->getNumericType()), true);
        for (std::size_t k = 0; k < index.numel(); ++k)
          ASSERT_EQ(index.real_as_double(k), slowIndex.real_as_double(k));
      }
      if (!a.x->isreal()) continue;
      // Every chosen element is the first of the extreme ones along its line.
      const int d = dim == 0 ? (dims[0] != 1 ? 0 : (dims[1] != 1 ? 1 : 2)) : dim - 1;
      const int length = d < 3 ? dims[static_cast<size_t>(d)] : 1;
      const int stride = d == 0 ? 1 : (d == 1 ? dims[0] : (d == 2 ? dims[0] * dims[1] : numel));
      for (int out = 0; out < values->numel() && length > 0; ++out) {
        const int first = out / stride * stride * length + out % stride;
        const int at = static_cast<int>(static_cast<const double*>(index.real_data())[out]) - 1;
        const Q best(values->real(out));
        ASSERT_EQ(best.str(), Q(a.x->real(first + at * stride)).str());
        for (int k = 0; k < length; ++k) {
          const int c = mpq_cmp(Q(a.x->real(first + k * stride)).v, best.v);
          ASSERT_TRUE(larger ? c <= 0 : c >= 0);
          if (k < at) {
            ASSERT_NE(c, 0) << "not the first of equals";
          }
        }
      }
    }
    // complex: b's values quantized into a's type.
    if (a.x->isreal()) {
      const fi wider(0.3, true, 60, 58, m);
      const auto z = a.x->complex(wider);
      for (int i = 0; i < numel; ++i)
        ASSERT_EQ(exactParts(*z)[static_cast<size_t>(2 * i + 1)],
                  modelPart(*a.x, Q(wider.real(0)), "+0", ""));
    }
  }
}

TEST(FiUnary, RefusalsNameTheOperationAndChangeNothing) {
  const fimath m;
  const fi real(0.5, true, 16, 15, m);
  const double re[] = {0.25}, im[] = {-0.5};
  const int one[] = {1, 1};
  const fi complex(re, im, one, 2, NumericType(true, 16, 15), m);
  const fi slopeBias(0.5, NumericType(DataTypeModeEnum::FixedSlopeBias, true, 16, 0.75, -4, 0.5),
                     m);
  expect_error([&] { slopeBias.pow2(1); }, "velkora:fi:pow2:binarypointonly",
               "pow2(A,K) can only be calculated for FI object A when the scaling of A has a "
               "fractional slope of 1 and 0 bias (binary-point only scaling).");
  expect_error([&] { complex.abs(); }, "velkora:fi:abs:nocomplex",
               "The abs function is not supported for complex fi.");
  expect_error([&] { slopeBias.abs(); }, "velkora:fi:abs:binarypointonly",
               "abs(A) can only be calculated for FI object A when the scaling of A has a "
               "fractional slope of 1 and 0 bias (binary-point only scaling).");
  expect_error([&] { real.complex(complex); }, "velkora:fi:complex:invalidRealPartInput",
               "Input arguments to COMPLEX must be real-valued.");
  fimath other = m;
  other.setRoundMode(RoundModeEnum::Floor);
  const fi otherMath(0.5, true, 16, 15, other), otherType(0.5, true, 16, 14, m);
  // The fimath is checked before the type.
  expect_error([&] { real.max(otherMath); }, "velkora:fi:max:fimathmismatch",
               "FIMATH of both operands must be equal.");
  expect_error([&] { otherType.min(otherMath); }, "velkora:fi:min:fimathmismatch",
               "FIMATH of both operands must be equal.");
  expect_error([&] { real.max(otherType); }, "velkora:fi:max:numerictypemismatch",
               "NUMERICTYPE of both operands must be equal.");
  expect_error([&] { real.min(otherType); }, "velkora:fi:min:numerictypemismatch",
               "NUMERICTYPE of both operands must be equal.");
  EXPECT_EQ(real.realdouble(0), 0.5);
  EXPECT_EQ(complex.imagdouble(0), -0.5);
}

// The edge cases that most easily go wrong: the most negative value negated, and halves
// rounded by pow2(-1).
TEST(FiUnary, MostNegativeValueAndHalvedIntegers) {
  fimath saturate, wrap;
  wrap.setOverflowMode(OverflowModeEnum::Wrap);
  EXPECT_EQ(fi(-128, true, 8, 0, saturate).uminus()->realdouble(0), 127);
  EXPECT_EQ(fi(-128, true, 8, 0, wrap).uminus()->realdouble(0), -128);
  // abs quantizes (saturates) the array; the element form gives the exact magnitude.
  const fi lowest(-128, true, 8, 0, saturate);
  EXPECT_EQ(lowest.abs()->realdouble(0), 127);
  number magnitude;
  lowest.abs(magnitude);
  EXPECT_EQ(magnitude.todouble(), 128);
  const double v[] = {3, -3, 5};
  const int dims[] = {1, 3};
  fimath floor;
  floor.setRoundMode(RoundModeEnum::Floor);
  const auto halved = fi(v, nullptr, dims, 2, NumericType(true, 8, 0), floor).pow2(-1);
  EXPECT_EQ(halved->realdouble(0), 1);
  EXPECT_EQ(halved->realdouble(1), -2);
  EXPECT_EQ(halved->realdouble(2), 2);
}

// stripscaling gives each part's stored integer (the value times 2^-FractionLength) in an
// integer type of the same word; range puts the two bounds of the type side by side.
TEST(FiUnary, StripscalingAndRangeReadTheStoredIntegers) {
  std::mt19937_64 rng(45);
  GmpRandom random(45);
  fimath m;
  for (int trial = 0; trial < 200; ++trial) {
    const RandomFormat f(rng, 130);
    const bool issigned = rng() % 2 == 0;
    auto x = randomNumbers(rng, random.state, {2, 3}, issigned, f.wl, f.fl, m, rng() % 3 == 0);
    const auto s = x->stripscaling();
    ASSERT_TRUE(s->getNumericType().isequal(NumericType(issigned, f.wl, 0)));
    ASSERT_EQ(s->isreal(), x->isreal());
    for (int i = 0; i < x->numel(); ++i)
      for (bool imagPart : {false, true}) {
        Q q(imagPart ? x->imag(i) : x->real(i));
        mpq_mul_2exp(q.v, q.v, static_cast<mp_bitcnt_t>(f.fl > 0 ? f.fl : 0));
        mpq_div_2exp(q.v, q.v, static_cast<mp_bitcnt_t>(f.fl < 0 ? -f.fl : 0));
        ASSERT_EQ(Q(imagPart ? s->imag(i) : s->real(i)).str(), q.str());
      }
    const auto r = x->range();
    ASSERT_EQ(r->numel(), 2);
    ASSERT_EQ(Q(r->real(0)).str(), Q(x->lowerbound()->real(0)).str());
    ASSERT_EQ(Q(r->real(1)).str(), Q(x->upperbound()->real(0)).str());
    Q low, high;
    mpz_t z;
    mpz_init(z);
    if (issigned) {
      mpz_setbit(z, static_cast<mp_bitcnt_t>(f.wl - 1));
      mpz_neg(z, z);
      mpq_set_z(low.v, z);
      mpz_neg(z, z);
    } else {
      mpz_setbit(z, static_cast<mp_bitcnt_t>(f.wl));
    }
    mpz_sub_ui(z, z, 1);
    mpq_set_z(high.v, z);
    mpz_clear(z);
    for (Q* b : {&low, &high}) {
      if (f.fl > 0) mpq_div_2exp(b->v, b->v, static_cast<mp_bitcnt_t>(f.fl));
      if (f.fl < 0) mpq_mul_2exp(b->v, b->v, static_cast<mp_bitcnt_t>(-f.fl));
    }
    ASSERT_EQ(Q(r->real(0)).str(), low.str()) << f.wl << " " << f.fl;
    ASSERT_EQ(Q(r->real(1)).str(), high.str()) << f.wl << " " << f.fl;
  }
  // A slope-bias type: the stored integer of 0.25 + 1.5 * 5 is 5.
  const fi sb(0.25 + 1.5 * 5, NumericType(DataTypeModeEnum::FixedSlopeBias, true, 8, 1.5, 0, 0.25),
              m);
  EXPECT_EQ(sb.stripscaling()->realdouble(0), 5);
}

}  // namespace
}  // namespace corbel
