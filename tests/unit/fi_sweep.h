// What the sweeps of whole-array operations share: arrays of random values held as numbers of
// the whole word or made from doubles, every part of an array as exact text (with the sign of
// a zero), and the comparison of a result with the element path, which a log forces.
#pragma once

#include <gmp.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "exact.h"
#include "fi/fi.h"

namespace corbel {

// A GMP random state with a fixed seed, for randomNumbers.
struct GmpRandom {
  gmp_randstate_t state;
  explicit GmpRandom(unsigned long seed) {
    gmp_randinit_mt(state);
    gmp_randseed_ui(state, seed);
  }
  ~GmpRandom() { gmp_randclear(state); }
  GmpRandom(const GmpRandom&) = delete;
  GmpRandom& operator=(const GmpRandom&) = delete;
};

// Each part of each element as an exact rational, a zero with its sign.
inline std::vector<std::string> exactParts(const fi& x) {
  std::vector<std::string> out;
  for (int i = 0; i < x.numel(); ++i)
    for (const number* v : {&x.real(i), &x.imag(i)})
      out.push_back(v->iszero() ? (std::signbit(v->todouble()) ? "-0" : "+0") : Q(*v).str());
  return out;
}

// Elements with random stored integers of the whole word, a few of them zeros of either sign.
inline std::unique_ptr<fi> randomNumbers(std::mt19937_64& rng, gmp_randstate_t state,
                                         const std::vector<int>& dims, bool issigned, int wl,
                                         int fl, const fimath& m, bool complex) {
  auto x = std::make_unique<fi>(dims.data(), static_cast<int>(dims.size()),
                                NumericType(issigned, wl, fl), m, complex);
  const int numel = x->numel();
  mpz_t z, half;
  mpz_inits(z, half, nullptr);
  mpz_setbit(half, static_cast<mp_bitcnt_t>(wl - 1));
  for (int i = 0; i < numel; ++i)
    for (bool imagPart : {false, true}) {
      if (imagPart && !complex) continue;
      mpz_urandomb(z, state, static_cast<mp_bitcnt_t>(wl));
      if (issigned) mpz_sub(z, z, half);  // into [-2^(wl-1), 2^(wl-1))
      // Values on coarser grids now and then, so that roundings meet ties.
      if (rng() % 2 == 0) {
        const mp_bitcnt_t k = rng() % static_cast<unsigned>(wl);
        mpz_fdiv_q_2exp(z, z, k);
        mpz_mul_2exp(z, z, k);
      }
      if (rng() % 9 == 0) mpz_set_ui(z, 0);
      // Doubles where the type's values are held in doubles; zeros of either sign.
      number& e = imagPart ? x->imagRef(i) : x->realRef(i);
      e = wl <= 52 ? number::ondouble(std::ldexp(mpz_get_d(z), -fl))
                   : number::multiprecision(z, -fl, 64);
      if (mpz_sgn(z) == 0 && rng() % 3 == 0) e.negate();
    }
  mpz_clears(z, half, nullptr);
  return x;
}

// Elements made from doubles spread over the type's range and a little past it.
inline fi randomDoubles(std::mt19937_64& rng, int numel, bool issigned, int wl, int fl,
                        const fimath& m, bool complex) {
  std::uniform_real_distribution<double> spread(issigned ? -1.2 : -0.1, 1.2);
  std::vector<double> re(static_cast<size_t>(numel)), im(re.size());
  for (size_t i = 0; i < re.size(); ++i) {
    re[i] = spread(rng) * std::ldexp(1.0, wl - fl - (issigned ? 1 : 0));
    im[i] = spread(rng) * std::ldexp(1.0, wl - fl - (issigned ? 1 : 0));
  }
  const int dims[] = {numel == 0 ? 0 : 1, numel};
  return fi(re.data(), complex ? im.data() : nullptr, dims, 2, NumericType(issigned, wl, fl), m);
}

struct Sweep {
  int ran = 0, held = 0;
  // Runs op with logging off (the stored-integer path where it applies) and on (the element
  // path), and compares.
  template <class Op>
  std::unique_ptr<fi> check(Op op, const char* what) {
    auto fast = op();
    held += fast->holdsStoredIntegers();
    ++ran;
    const std::vector<std::string> got = exactParts(*fast);
    fi::setLogging(true);
    const auto slow = op();
    fi::setLogging(false);
    EXPECT_EQ(got, exactParts(*slow)) << what;
    return fast;
  }
};

}  // namespace corbel
