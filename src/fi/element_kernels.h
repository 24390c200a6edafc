// Loops over element arrays of double-backed numbers: reading them as doubles, writing
// doubles into them, and the exact arithmetic between. Each loop is built for several
// x86-64 levels (see quantize/cpu_clones.h); none rounds anything that is not exact.
#pragma once

#include <cstddef>

#include "number/number.h"

namespace corbel::kernels {

// Reads p[0 .. n) into out (step 1), or p[0] n times (step 0); false when one of them is
// not an inline double, out then holding garbage.
bool load(const number* p, std::size_t step, std::size_t n, double* out);
// Whether p[0 .. n) are all inline doubles.
bool alldoubles(const number* p, std::size_t n);
// Writes x[0 .. n) as inline doubles into raw storage p.
void store(number* p, const double* x, std::size_t n);

enum class Combine { Add, Subtract, Multiply };
// x[i] = x[i] op y[i], in IEEE arithmetic (the callers make sure that it is exact).
void combine(Combine op, double* x, const double* y, std::size_t n);

enum class Map { Negate, Abs, Pow2 };
// x[i] = -x[i], |x[i]| or x[i] * 2^k, as a double body does it.
void map(Map op, double* x, std::size_t n, long k);

// out[i] = a[i * sa] op b[i * sb] (steps 0 or 1) in one pass, written into raw storage;
// false when an operand element is not an inline double (out then holds some doubles and
// garbage, to be discarded).
bool combineInto(Combine op, const number* a, std::size_t sa, const number* b, std::size_t sb,
                 number* out, std::size_t n);

// c = a * b for column-major a (m x n) and b (n x p), the products and their sums
// exact in doubles, so that the order of the additions does not matter.
void matrixProduct(const double* a, const double* b, double* c, std::size_t m, std::size_t n,
                   std::size_t p);

}  // namespace corbel::kernels
