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

// out[i] = b[i * sb] when it lies strictly above a[i * sa] (larger) or strictly below it,
// else a[i * sa] (steps 0 or 1), written into raw storage; false when an operand element is
// not an inline double (out then holds garbage, to be discarded).
bool select(bool larger, const number* a, std::size_t sa, const number* b, std::size_t sb,
            number* out, std::size_t n);
// The extreme elements of x along lines of `length` elements `stride` apart, x holding `outer`
// blocks of stride * length elements: values[o * stride + s] gets the first extreme element of
// line (o, s), written into raw storage, and index[o * stride + s] its one-based place on it.
// The elements are inline doubles; length is at least one.
void reduceSelect(bool larger, const number* x, std::size_t outer, std::size_t stride,
                  std::size_t length, number* values, double* index);

// c = a * b for column-major a (m x n) and b (n x p), the products and their sums
// exact in doubles, so that the order of the additions does not matter.
void matrixProduct(const double* a, const double* b, double* c, std::size_t m, std::size_t n,
                   std::size_t p);

}  // namespace corbel::kernels
