// Exact bounds on the stored integers an array or a step of an operation can give, from
// which the whole-array paths decide which quantizations can change nothing and how wide
// their exact intermediates get.
#pragma once

#include <algorithm>

#include "fi/wide_integer.h"
#include "types/numeric_type.h"

namespace corbel {

// The values an array of a binary-point type can hold, or a step can give: the integers
// lo .. hi times 2^e, held in I (int128 or int256), whose width the caller keeps them within.
template <class I>
struct Span {
  I lo, hi;
  long e;
};

constexpr int128 boundProduct(int128 a, int128 b) {
  return a * b;
}
constexpr int256 boundProduct(int256 a, int256 b) {
  return multiply(narrow(a), narrow(b));
}

// Word lengths up to kHeadroom<I> - 1.
template <class I>
Span<I> spanOf(const NumericType& t) {
  const int wl = t.getWordLength();
  const I top = shiftLeft(I(1), t.getSigned() ? wl - 1 : wl);
  return {t.getSigned() ? -top : I(0), top - I(1), t.getFixedExponent()};
}

// s on the finer grid 2^e (e <= s.e), the caller making sure it fits.
template <class I>
Span<I> onGrid(const Span<I>& s, long e) {
  const int shift = static_cast<int>(s.e - e);
  return {shiftLeft(s.lo, shift), shiftLeft(s.hi, shift), e};
}

// Whether quantizing to t changes none of the values of s: they lie on its grid and in its
// range. Compares s with t's bounds scaled down to s's grid, so nothing can overflow.
template <class I>
bool holds(const NumericType& t, const Span<I>& s) {
  if (s.lo == I(0) && s.hi == I(0)) return true;
  const Span<I> r = spanOf<I>(t);
  if (s.e < r.e) return false;
  if (s.e - r.e >= kHeadroom<I>) return false;  // only zero fits a range scaled that far down
  const int k = static_cast<int>(s.e - r.e);
  return s.lo >= -((-r.lo) >> k) && s.hi <= (r.hi >> k);
}

// The span of a quantization to t: s itself when the quantization changes nothing, else
// the whole of t.
template <class I>
Span<I> quantized(const NumericType& t, const Span<I>& s) {
  return holds(t, s) ? s : spanOf<I>(t);
}

template <class I>
Span<I> sumSpan(const Span<I>& a, const Span<I>& b, bool subtract) {
  const long e = std::min(a.e, b.e);
  const Span<I> x = onGrid(a, e), y = onGrid(b, e);
  return subtract ? Span<I>{x.lo - y.hi, x.hi - y.lo, e} : Span<I>{x.lo + y.lo, x.hi + y.hi, e};
}

// Operands whose bounds fit 128 bits.
template <class I>
Span<I> productSpan(const Span<I>& a, const Span<I>& b) {
  const I c[] = {boundProduct(a.lo, b.lo), boundProduct(a.lo, b.hi), boundProduct(a.hi, b.lo),
                 boundProduct(a.hi, b.hi)};
  return {*std::min_element(c, c + 4), *std::max_element(c, c + 4), a.e + b.e};
}

}  // namespace corbel
