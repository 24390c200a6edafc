// The whole-array kernels against the element path, bit for bit, over a sweep of formats
// (word lengths 1 to 52, fraction lengths below 0 and above the word length), values (zeros
// of both signs, overflowing ones), shapes (scalar expansion, empty arrays, complex parts)
// and every rounding, overflow, sum and product setting.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "fi/fi.h"
#include "host/inprocess_host.h"
#include "random_formats.h"

namespace corbel {
namespace {

// Every element's real and imaginary parts, interleaved (a real array's imaginary parts are
// its zeros).
std::vector<double> parts(const fi& x) {
  std::vector<double> out;
  for (int i = 0; i < x.numel(); ++i) {
    out.push_back(x.realdouble(i));
    out.push_back(x.imagdouble(i));
  }
  return out;
}

// The result of an element operator for every element, assigned through the result's
// quantizer: the path the fast paths must reproduce.
template <class Op>
std::vector<double> elementPath(const fi& a, const fi& b, const NumericType& T, Op op) {
  const fi& shape = a.numel() == 1 ? b : a;
  fi r(shape.dims(), shape.ndims(), T, a.getFimath(), a.iscomplex() || b.iscomplex());
  if (a.numel() == 1) a.setIndex(0);
  if (b.numel() == 1) b.setIndex(0);
  for (int i = 0; i < r.numel(); ++i) {
    if (a.numel() != 1) a.setIndex(i);
    if (b.numel() != 1) b.setIndex(i);
    r.setIndex(i);
    r = op(a, b);
  }
  return parts(r);
}

void expectSameBits(const fi& fast, const std::vector<double>& slow, const char* what) {
  const std::vector<double> got = parts(fast);
  ASSERT_EQ(got.size(), slow.size()) << what;
  for (size_t i = 0; i < got.size(); ++i)
    ASSERT_EQ(std::bit_cast<std::uint64_t>(got[i]), std::bit_cast<std::uint64_t>(slow[i]))
        << what << (i % 2 ? " imaginary part " : " real part ") << i / 2 << ": " << got[i] << " vs "
        << slow[i];
}

fi randomArray(std::mt19937_64& rng, int numel, bool issigned, int wl, int fl, const fimath& m,
               int rows = 1, bool complex = false) {
  std::uniform_real_distribution<double> spread(-1.5, 1.5);
  const double range = std::ldexp(1.0, wl - fl);
  std::vector<double> re(static_cast<size_t>(numel)), im(re.size());
  for (double& x : re) x = spread(rng) * range;
  for (double& x : im) x = spread(rng) * range;
  if (numel > 2) {
    re[0] = im[1] = 0.0;
    re[1] = im[2] = -0.0;
  }
  const int dims[] = {rows, rows == 0 ? 0 : numel / rows};
  return fi(re.data(), complex ? im.data() : nullptr, dims, 2, NumericType(issigned, wl, fl), m);
}

TEST(FiBulk, SumsDifferencesAndProductsMatchTheElementOperatorsBitForBit) {
  std::mt19937_64 rng(20261122);
  std::uniform_int_distribution<int> coin(0, 1);
  int sums = 0, complexSums = 0, products = 0;
  for (int trial = 0; trial < 600; ++trial) {
    const fimath m = randomFimath(rng, trial, 48, 56);
    // Scalar expansion on either side now and then, and empty arrays.
    const int na = trial % 7 == 0 ? 1 : (trial % 23 == 0 ? 0 : 37);
    const int nb = trial % 5 == 0 ? 1 : (na == 0 ? 0 : 37);
    const RandomFormat fa(rng), fb(rng);
    // Complex operands on either side now and then: their sums run part by part.
    const fi a = randomArray(rng, na, coin(rng), fa.wl, fa.fl, m, na == 0 ? 0 : 1, trial % 3 == 1);
    const fi b = randomArray(rng, nb, coin(rng), fb.wl, fb.fl, m, nb == 0 ? 0 : 1, trial % 4 == 2);

    const NumericType T = a.getNumericTypeForAddOp(b);
    for (bool subtract : {false, true}) {
      a.initializeSumRegister(T, m);
      auto fast = a.bulkSum(b, T, subtract);
      if (!fast) continue;  // an exact sum too wide for a double
      ++sums;
      complexSums += fast->iscomplex();
      EXPECT_EQ(fast->iscomplex(), a.iscomplex() || b.iscomplex());
      const auto slow = elementPath(a, b, T, [subtract](const fi& x, const fi& y) -> const fi& {
        return subtract ? x - y : x + y;
      });
      expectSameBits(*fast, slow, subtract ? "difference" : "sum");
    }
    const NumericType P = a.getProductTypeForMpyOp(b);
    a.initializeProductRegister(P, P, m);
    if (auto fast = a.bulkProduct(b, P)) {
      ++products;
      const auto slow =
          elementPath(a, b, P, [](const fi& x, const fi& y) -> const fi& { return x * y; });
      expectSameBits(*fast, slow, "product");
    }
  }
  // The sweep must exercise the fast paths, not fall back everywhere.
  EXPECT_GT(sums, 400);
  EXPECT_GT(complexSums, 150);
  EXPECT_GT(products, 150);
}

// The matrix product against the element path, which logging forces (the logging
// quantizers round and overflow as the plain ones do; the host takes the warnings).
TEST(FiBulk, MatrixProductsMatchTheElementPathBitForBit) {
  InProcessHost host;
  ScopedHost scope(host);
  std::mt19937_64 rng(4096);
  std::uniform_int_distribution<int> coin(0, 1), size(1, 9);
  int bulk = 0;
  for (int trial = 0; trial < 300; ++trial) {
    const fimath m = randomFimath(rng, trial, 24, 32);
    const int rows = size(rng), inner = size(rng), cols = size(rng);
    const RandomFormat fa(rng, 26), fb(rng, 26);
    const fi a = randomArray(rng, rows * inner, coin(rng), fa.wl, fa.fl, m, rows);
    const fi b = randomArray(rng, inner * cols, coin(rng), fb.wl, fb.fl, m, inner);
    if (a.numel() == 1 || b.numel() == 1) continue;  // a scalar makes it an element-wise product
    const NumericType P = a.getProductTypeForMpyOp(b);
    const NumericType S = inner == 1 ? P : NumericType(a.getSumNumericTypeForMatrixMultiply(b, P));
    fi fast(rows, cols, S, m, false);
    a.initializeProductRegister(S, P, m);
    if (!a.bulkMatrixProduct(b, fast)) continue;
    ++bulk;
    fi::setLogging(true);
    const auto slow = a.mtimes(b);
    fi::setLogging(false);
    expectSameBits(fast, parts(*slow), "matrix product");
  }
  EXPECT_GT(bulk, 100);
}

// Construction from doubles and re-quantization after a change of type, whole-array
// against the element path (which a log forces), every rounding and overflow mode.
TEST(FiBulk, ConstructionAndRequantizationMatchTheElementPathBitForBit) {
  InProcessHost host;
  ScopedHost scope(host);
  std::mt19937_64 rng(52);
  std::uniform_real_distribution<double> spread(-1.5, 1.5);
  for (int trial = 0; trial < 300; ++trial) {
    fimath m;
    m.setRoundMode(kRoundModes[trial % 6]);
    m.setOverflowMode(trial % 4 < 2 ? OverflowModeEnum::Wrap : OverflowModeEnum::Saturate);
    const RandomFormat f(rng), g(rng);
    const bool issigned = trial % 3 != 0, complex = trial % 5 == 0;
    std::vector<double> re(41), im(41);
    for (size_t i = 0; i < re.size(); ++i) {
      re[i] = spread(rng) * std::ldexp(1.0, f.wl - f.fl + static_cast<int>(i % 3));
      im[i] = spread(rng) * std::ldexp(1.0, f.wl - f.fl);
    }
    re[0] = -0.0, re[1] = 1e300, re[2] = -1e-300, im[3] = -0.0;
    const int dims[] = {1, 41};
    const auto make = [&](bool logging) {
      fi::setLogging(logging);
      auto x = std::make_unique<fi>(re.data(), complex ? im.data() : nullptr, dims, 2,
                                    NumericType(issigned, f.wl, f.fl), m);
      const std::vector<double> made = parts(*x);
      x->setFractionLength(g.fl);
      x->setWordLength(g.wl);
      fi::setLogging(false);
      return std::make_pair(made, parts(*x));
    };
    const auto fast = make(false), slow = make(true);
    const fi reference(re.data(), complex ? im.data() : nullptr, dims, 2,
                       NumericType(issigned, f.wl, f.fl), m);
    expectSameBits(reference, slow.first, "construction");
    ASSERT_EQ(fast.second.size(), slow.second.size());
    for (size_t i = 0; i < fast.second.size(); ++i)
      ASSERT_EQ(std::bit_cast<std::uint64_t>(fast.second[i]),
                std::bit_cast<std::uint64_t>(slow.second[i]))
          << "re-quantization, part " << i;
  }
}

TEST(FiBulk, DeclinesWhatItCannotDoExactly) {
  const fimath m;
  const double v[] = {0.25, -0.5};
  const int dims[] = {1, 2};
  const fi wide(v, nullptr, dims, 2, NumericType(true, 60, 30), m);
  const fi narrow(v, nullptr, dims, 2, NumericType(true, 16, 15), m);
  const fi complex(v, v, dims, 2, NumericType(true, 16, 15), m);
  const NumericType T = narrow.getNumericTypeForAddOp(narrow);
  narrow.initializeSumRegister(T, m);
  EXPECT_NE(narrow.bulkSum(narrow, T, false), nullptr);
  // A log is kept element by element.
  fi::setLogging(true);
  EXPECT_EQ(narrow.bulkSum(narrow, T, false), nullptr);
  fi::setLogging(false);
  wide.initializeSumRegister(wide.getNumericTypeForAddOp(wide), m);
  EXPECT_EQ(wide.bulkSum(wide, wide.getNumericTypeForAddOp(wide), false), nullptr);
  // Complex sums run part by part; complex products take the element path.
  complex.initializeSumRegister(T, m);
  EXPECT_NE(complex.bulkSum(narrow, T, false), nullptr);
  const NumericType Pc = complex.getProductTypeForMpyOp(narrow);
  complex.initializeProductRegister(complex.getSumTypeForMpyOp(narrow, Pc), Pc, m);
  EXPECT_EQ(complex.bulkProduct(narrow, Pc), nullptr);
  // 32 + 32 product bits do not fit a double's mantissa.
  const fi w32(v, nullptr, dims, 2, NumericType(true, 32, 16), m);
  const NumericType P = w32.getProductTypeForMpyOp(w32);
  w32.initializeProductRegister(P, P, m);
  EXPECT_EQ(w32.bulkProduct(w32, P), nullptr);
}

// Arrays past a megabyte take their storage from the cache of freed blocks; an element that
// is not held in a double, met after many blocks are built, makes the path decline and
// give back all it built (the sanitizer run checks that nothing leaks).
TEST(FiBulk, LargeArraysAgreeWithThemselvesAndDeclineLate) {
  const fimath m;
  std::mt19937_64 rng(77);
  const int n = 70000;
  fi a = randomArray(rng, n, true, 16, 15, m);
  const fi b = randomArray(rng, n, true, 16, 15, m);
  const NumericType T = a.getNumericTypeForAddOp(b);
  a.initializeSumRegister(T, m);
  auto first = a.bulkSum(b, T, false);
  ASSERT_NE(first, nullptr);
  const std::vector<double> firstValues = parts(*first);
  first.reset();  // its block goes to the cache and serves the next sum
  auto second = a.bulkSum(b, T, false);
  ASSERT_NE(second, nullptr);
  expectSameBits(*second, firstValues, "repeated sum");
  EXPECT_EQ(second->realdouble(n - 1), a.realdouble(n - 1) + b.realdouble(n - 1));

  a.realRef(n - 2) = number(a.realdouble(n - 2), 80, true);
  EXPECT_EQ(a.bulkSum(b, T, false), nullptr);
}

}  // namespace
}  // namespace corbel
