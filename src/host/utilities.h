// Numeric utilities the host provides to the module: its scalar rounding and its
// extreme doubles.
#pragma once

#include <cmath>
#include <limits>

namespace corbel {

// Rounds to the nearest integer, halves away from zero (2.5 -> 3, -2.5 -> -3).
inline double host_round(double x) {
  return std::round(x);
}

inline double host_minus_infinity() {
  return -std::numeric_limits<double>::infinity();
}

inline double host_largest_double() {
  return std::numeric_limits<double>::max();
}

}  // namespace corbel
