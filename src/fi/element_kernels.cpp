// Loops over element arrays of double-backed numbers, built per x86-64 level.
#include "fi/element_kernels.h"

#include <cstring>

#include "quantize/cpu_clones.h"

namespace corbel::kernels {

CORBEL_CPU_CLONES bool load(const number* p, std::size_t step, std::size_t n, double* out) {
  if (n == 0) return true;
  if (step == 0) {
    const double v = p->inlinedouble();
    for (std::size_t i = 0; i < n; ++i) out[i] = v;
    return p->isdouble();
  }
  if (step == 1) {
    // A number is its 64-bit word: copied whole, then checked for boxes.
    std::memcpy(out, static_cast<const void*>(p), n * sizeof(number));
    return number::alldoubles(p, n);
  }
  bool doubles = true;
  for (std::size_t i = 0; i < n; ++i) {
    doubles &= p[i * step].isdouble();
    out[i] = p[i * step].inlinedouble();
  }
  return doubles;
}

CORBEL_CPU_CLONES bool alldoubles(const number* p, std::size_t n) {
  return number::alldoubles(p, n);
}

CORBEL_CPU_CLONES void store(number* p, const double* x, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) number::placedouble(p + i, x[i]);
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

CORBEL_CPU_CLONES void matrixProduct(const double* a, const double* b, double* c, std::size_t m,
                                     std::size_t n, std::size_t p) {
  std::memset(c, 0, m * p * sizeof(double));
  for (std::size_t j = 0; j < p; ++j) {
    double* cj = c + j * m;
    for (std::size_t k = 0; k < n; ++k) {
      const double bkj = b[k + j * n];
      const double* ak = a + k * m;
      for (std::size_t i = 0; i < m; ++i) cj[i] += ak[i] * bkj;
    }
  }
}

}  // namespace corbel::kernels
