// The quotient loop of double-backed binary-point arrays: each quotient of two stored
// integers rounded once onto the quotient's grid and saturated or wrapped into its word, in
// 64-bit or 128-bit integer arithmetic, exactly as the element path rounds the rational.
#pragma once

#include <cstddef>

#include "types/enumerations.h"

namespace corbel::kernels {

struct QuotientPlan {
  long shift;  // the quotient's stored integer is A * 2^shift / B
  RoundModeEnum round;
  OverflowModeEnum overflow;
  int wordLength;
  bool issigned;
  double scaleA, scaleB, scaleQ;  // 2^-ea, 2^-eb and 2^eq: doubles to stored integers and back
  bool wide;                      // 128-bit arithmetic
};

// q[i] = a[i * sa] / b[i * sb] (steps 0 or 1). Sets dividedByZero when a divisor is zero;
// false when a nonzero quotient rounded to zero with a negative sign, whose zero the element
// path signs.
bool quotients(const double* a, std::size_t sa, const double* b, std::size_t sb, double* q,
               std::size_t n, const QuotientPlan& plan, bool& dividedByZero);

}  // namespace corbel::kernels
