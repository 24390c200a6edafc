// Loops over the stored integers of binary-point types wider than a double's mantissa, held
// as int128 (up to 125 bits) or int256 (up to 252 bits): quantization of doubles into such a
// type, and element-wise sums, differences and products with the quantization steps of the
// element operators, on the integers themselves.
//
// Every value the loops form is exact and kept below 2^kHeadroom<T> in magnitude (the
// callers choose T and the steps so). A quantization step rounds and overflows as the
// quantizer does on a number. A zero stored integer has no sign, so where the element path
// could leave a negative zero (a nonzero value quantized to zero, a zero times a negative
// value, a double -0) the loops report it and the caller takes the element path instead.
#pragma once

#include <cstddef>

#include "fi/wide_integer.h"
#include "types/enumerations.h"

namespace corbel {
class NumericType;
}

namespace corbel::kernels {

// One quantization onto a binary-point type, from a grid `shift` bits finer (rounding by
// `round`) or -shift bits coarser (exact), then the overflow rule on the type's bounds.
template <class T>
struct StoredStep {
  bool active = false;
  RoundModeEnum round = RoundModeEnum::Nearest;
  OverflowModeEnum overflow = OverflowModeEnum::Saturate;
  bool issigned = true;
  int wordLength = 1;
  long shift = 0;
  T lo = 0, hi = 0;
};
// The step onto type t (at most kHeadroom<T> - 1 bits) for values on the grid 2^from.
template <class T>
StoredStep<T> storedStep(const NumericType& t, RoundModeEnum round, OverflowModeEnum overflow,
                         long from);

// The steps of an element-wise sum or difference computed in T: the left operand quantized to
// the register's type (CastBeforeSum), both operands shifted onto the sum's grid, the exact
// sum or difference, its quantization to the register and then to the result, and a final
// exact shift onto the result's grid. Inactive steps change nothing.
template <class T>
struct StoredSum {
  bool subtract = false;
  StoredStep<T> cast;
  int alignA = 0, alignB = 0;
  StoredStep<T> toRegister, toResult;
  int store = 0;
};
// The steps of an element-wise product: the exact product of two int128 stored integers, its
// quantization to the register and then to the result, and a final shift onto the result.
struct StoredProduct {
  StoredStep<int256> toRegister, toResult;
  int store = 0;
};

// One part of an operand or a result: stored integers of `limbs` 64-bit limbs (2: int128,
// 4: int256), read at i * step (step 0 repeats a scalar).
struct StoredPart {
  const void* data;
  int limbs;
  std::size_t step;
};

// out (of outLimbs limbs) gets the n sums; `last` the register's value for the last element.
// False when a negative zero may have appeared.
bool sum(const StoredPart& a, const StoredPart& b, void* out, int outLimbs, std::size_t n,
         const StoredSum<int128>& plan, int128& last);
bool sum(const StoredPart& a, const StoredPart& b, void* out, int outLimbs, std::size_t n,
         const StoredSum<int256>& plan, int256& last);
// a and b hold int128 stored integers.
bool product(const StoredPart& a, const StoredPart& b, void* out, int outLimbs, std::size_t n,
             const StoredProduct& plan, int256& last);
// Finite doubles quantized by q (its shift unused: each double's own grid is the source)
// into stored integers on the grid 2^to.
bool fromDoubles(const double* x, std::size_t n, const StoredStep<int128>& q, long to, int128* out);

}  // namespace corbel::kernels
