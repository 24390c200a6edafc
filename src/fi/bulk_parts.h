// What the whole-array paths share: the block size of their loops and how they walk the
// parts of an operand with scalar expansion.
#pragma once

#include <cstddef>

#include "fi/bit_kernels.h"
#include "fi/element_kernels.h"
#include "fi/fi.h"

namespace corbel::bulk {

// Elements per pass of the block loops: two blocks of doubles stay in the first-level cache.
inline constexpr std::size_t kBlock = 1024;

// The operand whose shape an element-wise result takes (the other one when this is scalar).
inline const fi& shapeOf(const fi& a, const fi& b) {
  return a.numel() == 1 ? b : a;
}

// The data of one part of x for a block loop, with the step between its elements: the
// zeros of a real array's imaginary part are one zero repeated.
inline const number* partOf(const fi& x, bool imagPart, std::size_t& step) {
  step = x.numel() == 1 ? 0 : 1;
  if (!imagPart) return &x.real(0);
  if (x.isreal()) step = 0;
  return &x.imag(0);
}

// Whether every element of x's parts is an inline double (by the vectorised loop).
inline bool allInline(const fi& x) {
  const auto n = static_cast<std::size_t>(x.numel());
  if (n == 0) return true;
  return kernels::alldoubles(&x.real(0), n) && (x.isreal() || kernels::alldoubles(&x.imag(0), n));
}

// The loops' name of a bit operation.
inline kernels::Bitwise bitwiseOf(fi::BitOp op) {
  switch (op) {
    case fi::BitOp::And:
      return kernels::Bitwise::And;
    case fi::BitOp::Or:
      return kernels::Bitwise::Or;
    case fi::BitOp::Xor:
      break;
  }
  return kernels::Bitwise::Xor;
}

}  // namespace corbel::bulk
