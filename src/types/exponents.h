// Fraction lengths and fixed exponents: each is the other's negation, stored unchecked. At
// the end of the int range the negation wraps as a two's-complement word does, so that
// -(-2^31) stays -2^31 rather than overflowing.
#pragma once

#include <algorithm>
#include <cmath>

namespace corbel {

constexpr int negated(int v) {
  return static_cast<int>(0u - static_cast<unsigned>(v));
}

// A host number as an int: truncated, held to the int range, NaN as 0.
inline int saturatedInt(double v) {
  if (std::isnan(v)) return 0;
  return static_cast<int>(std::clamp(std::trunc(v), -2147483648.0, 2147483647.0));
}

}  // namespace corbel
