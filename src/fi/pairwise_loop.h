// The pairwise loop the element kernels share: out[i] = op(a[i * sa], b[i * sb]) over inline
// doubles, steps 0 or 1 (a scalar operand is one element repeated), written into raw storage.
// It reports whether every operand element was an inline double; when one was not, the
// value op saw for it is meaningless and the caller discards the output. Included only by
// *_kernels.cpp files, whose loops are built per x86-64 level.
#pragma once

#include <cstddef>

#include "number/number.h"
#include "quantize/cpu_clones.h"

namespace corbel::kernels {

template <std::size_t Sa, std::size_t Sb, class Op>
CORBEL_INLINE bool pairwiseRun(const number* a, const number* b, number* out, std::size_t n,
                               Op op) {
  std::size_t boxed = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const number& x = a[i * Sa];
    const number& y = b[i * Sb];
    boxed += !x.isdouble();
    boxed += !y.isdouble();
    number::placedouble(out + i, op(x.inlinedouble(), y.inlinedouble()));
  }
  return boxed == 0;
}

template <class Op>
CORBEL_INLINE bool pairwise(const number* a, std::size_t sa, const number* b, std::size_t sb,
                            number* out, std::size_t n, Op op) {
  if (sa == 1 && sb == 1) return pairwiseRun<1, 1>(a, b, out, n, op);
  if (sa == 0 && sb == 1) return pairwiseRun<0, 1>(a, b, out, n, op);
  if (sa == 1 && sb == 0) return pairwiseRun<1, 0>(a, b, out, n, op);
  return pairwiseRun<0, 0>(a, b, out, n, op);
}

}  // namespace corbel::kernels
