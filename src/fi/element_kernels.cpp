// Loops over element arrays of double-backed numbers, built per x86-64 level.
#include "fi/element_kernels.h"

#include <cmath>
#include <cstring>

#include "fi/pairwise_loop.h"
#include "host/services.h"
#include "number/doublenumber.h"
#include "quantize/cpu_clones.h"

namespace corbel::kernels {

CORBEL_CPU_CLONES bool load(const number* p, std::size_t step, std::size_t n, double* out) {
  if (n == 0) return true;
  if (step == 0) {
    const double v = p->inlinedouble();
    for (std::size_t i = 0; i < n; ++i) out[i] = v;
    return p->isdouble();
  }
  // A number is its 64-bit word: copied whole, then checked for boxes.
  std::memcpy(out, static_cast<const void*>(p), n * sizeof(number));
  return number::alldoubles(p, n);
}

CORBEL_CPU_CLONES bool alldoubles(const number* p, std::size_t n) {
  return number::alldoubles(p, n);
}

CORBEL_CPU_CLONES void store(number* p, const double* x, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) number::placedouble(p + i, x[i]);
}

CORBEL_CPU_CLONES void map(Map op, double* x, std::size_t n, long k) {
  switch (op) {
    case Map::Negate:
      for (std::size_t i = 0; i < n; ++i) x[i] = -x[i];
      return;
    case Map::Abs:
      for (std::size_t i = 0; i < n; ++i) x[i] = std::fabs(x[i]);
      return;
    case Map::Pow2:
      for (std::size_t i = 0; i < n; ++i) x[i] = doublenumber::pow2Of(x[i], k);
      return;
  }
}

CORBEL_CPU_CLONES void combine(Combine op, double* x, const double* y, std::size_t n) {
  switch (op) {
    case Combine::Add:
      for (std::size_t i = 0; i < n; ++i) x[i] += y[i];
      return;
    case Combine::Subtract:
      for (std::size_t i = 0; i < n; ++i) x[i] -= y[i];
      return;
    case Combine::Multiply:
      for (std::size_t i = 0; i < n; ++i) x[i] *= y[i];
      return;
  }
}

CORBEL_CPU_CLONES bool combineInto(Combine op, const number* a, std::size_t sa, const number* b,
                                   std::size_t sb, number* out, std::size_t n) {
  switch (op) {
    case Combine::Add:
      return pairwise(a, sa, b, sb, out, n, [](double x, double y) { return x + y; });
    case Combine::Subtract:
      return pairwise(a, sa, b, sb, out, n, [](double x, double y) { return x - y; });
    case Combine::Multiply:
      return pairwise(a, sa, b, sb, out, n, [](double x, double y) { return x * y; });
  }
  return false;
}

namespace {

// Whether y lies strictly beyond x.
template <bool Larger>
CORBEL_INLINE bool beyond(double y, double x) {
  return Larger ? y > x : y < x;
}

template <bool Larger>
CORBEL_INLINE void reduceBlock(const number* block, std::size_t stride, std::size_t length,
                               number* best, double* at) {
  if (stride == 1) {
    // One line of consecutive elements.
    double v = block[0].inlinedouble();
    std::size_t k = 0;
    for (std::size_t i = 1; i < length; ++i) {
      const double y = block[i].inlinedouble();
      if (beyond<Larger>(y, v)) v = y, k = i;
    }
    number::placedouble(best, v);
    at[0] = static_cast<double>(k + 1);
    return;
  }
  // stride lines side by side, walked row by row.
  for (std::size_t s = 0; s < stride; ++s) {
    number::placedouble(best + s, block[s].inlinedouble());
    at[s] = 1.0;
  }
  for (std::size_t i = 1; i < length; ++i) {
    const number* row = block + i * stride;
    for (std::size_t s = 0; s < stride; ++s) {
      const double y = row[s].inlinedouble(), v = best[s].inlinedouble();
      const bool take = beyond<Larger>(y, v);
      number::placedouble(best + s, take ? y : v);
      at[s] = take ? static_cast<double>(i + 1) : at[s];
    }
  }
}

}  // namespace

CORBEL_CPU_CLONES bool select(bool larger, const number* a, std::size_t sa, const number* b,
                              std::size_t sb, number* out, std::size_t n) {
  // The right element only when strictly beyond the left one: a tie keeps the left.
  if (larger)
    return pairwise(a, sa, b, sb, out, n,
                    [](double x, double y) { return beyond<true>(y, x) ? y : x; });
  return pairwise(a, sa, b, sb, out, n,
                  [](double x, double y) { return beyond<false>(y, x) ? y : x; });
}

CORBEL_CPU_CLONES void reduceSelect(bool larger, const number* x, std::size_t outer,
                                    std::size_t stride, std::size_t length, number* values,
                                    double* index) {
  for (std::size_t o = 0; o < outer; ++o) {
    const number* block = x + o * stride * length;
    larger ? reduceBlock<true>(block, stride, length, values + o * stride, index + o * stride)
           : reduceBlock<false>(block, stride, length, values + o * stride, index + o * stride);
  }
}

CORBEL_CPU_CLONES void matrixProduct(const double* a, const double* b, double* c, std::size_t m,
                                     std::size_t n, std::size_t p) {
  std::memset(c, 0, m * p * sizeof(double));
  for (std::size_t j = 0; j < p; ++j) {
    poll_interrupt();
    double* cj = c + j * m;
    for (std::size_t k = 0; k < n; ++k) {
      const double bkj = b[k + j * n];
      const double* ak = a + k * m;
      for (std::size_t i = 0; i < m; ++i) cj[i] += ak[i] * bkj;
    }
  }
}

}  // namespace corbel::kernels
