// The stored-integer paths of wide binary-point types against the element path (which a log
// forces), value for value and with the sign of every zero: construction from doubles, sums,
// differences and products, over word lengths 1 to 130 (operands) and up to 260 (registers
// and results), fraction lengths below 0 and above the word length, every rounding, overflow,
// sum and product setting, CastBeforeSum on and off, scalar expansion, empty arrays and
// complex sums, with operands held as stored integers and as numbers of full width.
#include <gmp.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "fi/fi.h"
#include "fi_sweep.h"
#include "host/inprocess_host.h"
#include "random_formats.h"

namespace corbel {
namespace {

TEST(FiWide, SumsDifferencesAndProductsMatchTheElementPath) {
  InProcessHost host;
  ScopedHost scope(host);
  std::mt19937_64 rng(20261124);
  GmpRandom random(1124);
  auto& state = random.state;
  std::uniform_int_distribution<int> coin(0, 1), wide(53, 124), any(1, 130);
  Sweep sweep;
  for (int trial = 0; trial < 240; ++trial) {
    fimath m = randomFimath(rng, trial, 250, 140);
    m.setMaxSumWordLength(1024);
    m.setMaxProductWordLength(1024);
    const int na = trial % 7 == 0 ? 1 : (trial % 23 == 0 ? 0 : 9);
    const int nb = trial % 5 == 0 ? 1 : (na == 0 ? 0 : 9);
    const int wa = trial % 4 == 3 ? any(rng) : wide(rng),
              wb = trial % 4 == 2 ? any(rng) : wide(rng);
    const int fa = std::uniform_int_distribution<int>(-8, wa + 8)(rng);
    const int fb = std::uniform_int_distribution<int>(-8, wb + 8)(rng);
    const bool complexA = trial % 3 == 1, complexB = trial % 4 == 2;
    const fi a = randomDoubles(rng, na, coin(rng), wa, fa, m, complexA);
    const auto numbers =
        randomNumbers(rng, state, {nb == 0 ? 0 : 1, nb}, coin(rng), wb, fb, m, complexB);
    const fi& b = *numbers;
    const auto sum = sweep.check([&] { return a.plus(b); }, "sum");
    sweep.check([&] { return b.minus(a); }, "difference");
    if (complexA || complexB) continue;
    // Products, and sums of what they give (stored integers of up to 256 bits).
    const auto product = sweep.check([&] { return a.times(b); }, "product");
    sweep.check([&] { return product->minus(*product); }, "difference of products");
    sweep.check([&] { return sum->plus(*product); }, "sum with a product");
  }
  // The sweep must exercise the stored-integer paths, not fall back everywhere.
  EXPECT_GT(sweep.held, sweep.ran / 3) << sweep.ran;
}

TEST(FiWide, ConstructionMatchesTheElementPath) {
  InProcessHost host;
  ScopedHost scope(host);
  std::mt19937_64 rng(53);
  std::uniform_int_distribution<int> wide(53, 124);
  int held = 0;
  for (int trial = 0; trial < 120; ++trial) {
    fimath m;
    m.setRoundMode(kRoundModes[trial % 6]);
    m.setOverflowMode(trial % 4 < 2 ? OverflowModeEnum::Wrap : OverflowModeEnum::Saturate);
    const int wl = wide(rng), fl = std::uniform_int_distribution<int>(-80, wl + 80)(rng);
    const auto make = [&] {
      return randomDoubles(rng, 31, trial % 3 != 0, wl, fl, m, trial % 5 == 0);
    };
    std::mt19937_64 again = rng;
    const fi fast = make();
    held += fast.holdsStoredIntegers();
    const fi copy(fast, fi::WholeCopy);
    EXPECT_EQ(copy.holdsStoredIntegers(), fast.holdsStoredIntegers());
    const std::vector<std::string> got = exactParts(fast);
    EXPECT_EQ(exactParts(copy), got);
    rng = again;
    fi::setLogging(true);
    const fi slow = make();
    fi::setLogging(false);
    EXPECT_EQ(got, exactParts(slow)) << wl << "," << fl;
  }
  EXPECT_GT(held, 80);
  // A negative zero, or a value that rounds to zero, leaves it to the element path.
  const double v[] = {1.0, -0.0};
  const int dims[] = {1, 2};
  const fi negativeZero(v, nullptr, dims, 2, NumericType(true, 80, 40), fimath());
  EXPECT_FALSE(negativeZero.holdsStoredIntegers());
  EXPECT_TRUE(std::signbit(negativeZero.realdouble(1)));
}

}  // namespace
}  // namespace corbel
