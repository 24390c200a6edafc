// Random formats and arithmetic settings for the sweeps of the whole-array paths.
#pragma once

#include <random>

#include "types/fimath.h"

namespace corbel {

inline constexpr RoundModeEnum kRoundModes[] = {RoundModeEnum::Ceil,    RoundModeEnum::Convergent,
                                                RoundModeEnum::Fix,     RoundModeEnum::Floor,
                                                RoundModeEnum::Nearest, RoundModeEnum::Round};
inline constexpr ArithmeticModeEnum kModes[] = {
    ArithmeticModeEnum::FullPrecision, ArithmeticModeEnum::KeepLSB, ArithmeticModeEnum::KeepMSB,
    ArithmeticModeEnum::SpecifyPrecision};

// Random settings for trial t: every round mode in turn, either overflow mode and
// CastBeforeSum, any sum and product mode and register format up to maxWordLength + 4 bits.
inline fimath randomFimath(std::mt19937_64& rng, int t, int maxWordLength, int maxFraction) {
  std::uniform_int_distribution<int> wl(2, maxWordLength), fl(-4, maxFraction), coin(0, 1),
      mode(0, 3);
  fimath m;
  m.setRoundMode(kRoundModes[t % 6]);
  m.setOverflowMode(coin(rng) ? OverflowModeEnum::Wrap : OverflowModeEnum::Saturate);
  m.setCastBeforeSum(coin(rng) != 0);
  m.setSumMode(kModes[mode(rng)]);
  m.setProductMode(kModes[mode(rng)]);
  m.setSumWordLength(wl(rng) + 4);
  m.setSumFractionLength(fl(rng));
  m.setProductWordLength(wl(rng) + 4);
  m.setProductFractionLength(fl(rng));
  return m;
}

// A word length from 1 to maxWordLength, two times in three at most 24, and a fraction length from
// 8 below zero to 8 above the word length.
struct RandomFormat {
  int wl, fl;
  explicit RandomFormat(std::mt19937_64& rng, int maxWordLength = 52) {
    std::uniform_int_distribution<int> shortOrLong(0, 2);
    wl = std::uniform_int_distribution<int>(1, shortOrLong(rng) ? 24 : maxWordLength)(rng);
    fl = std::uniform_int_distribution<int>(-8, wl + 8)(rng);
  }
};

}  // namespace corbel
