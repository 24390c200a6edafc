// The quotient loop (see quotient_kernels.h).
#include "fi/quotient_kernels.h"

#include <cmath>
#include <cstdint>

#include "fi/wide_integer.h"

namespace corbel::kernels {
namespace {

// round(n / d) by the mode, for d > 0: floor division, then the remainder decides.
template <class I>
I roundedQuotient(I n, I d, RoundModeEnum mode) {
  I q = n / d, r = n % d;
  if (r < 0) r += d, q -= 1;  // floor
  if (r == 0) return q;
  const I twice = 2 * r;
  switch (mode) {
    case RoundModeEnum::Floor:
      return q;
    case RoundModeEnum::Ceil:
      return q + 1;
    case RoundModeEnum::Fix:
      return n < 0 ? q + 1 : q;
    case RoundModeEnum::Nearest:
      return twice >= d ? q + 1 : q;
    case RoundModeEnum::Round:
      return twice > d || (twice == d && n > 0) ? q + 1 : q;
    case RoundModeEnum::Convergent:
      return twice > d || (twice == d && (q & 1) != 0) ? q + 1 : q;
  }
  return q;
}

template <class I>
bool run(const double* a, std::size_t sa, const double* b, std::size_t sb, double* out,
         std::size_t n, const QuotientPlan& p, bool& byZero) {
  const I top = static_cast<I>(1) << (p.issigned ? p.wordLength - 1 : p.wordLength);
  const I hi = top - 1, lo = p.issigned ? -top : 0;
  const I modulus = static_cast<I>(1) << p.wordLength;
  bool lostSign = false;
  for (std::size_t i = 0; i < n; ++i) {
    const I x = static_cast<I>(a[i * sa] * p.scaleA), y = static_cast<I>(b[i * sb] * p.scaleB);
    I q;
    if (y == 0) {
      byZero = true;
      q = x < 0 ? lo : hi;
    } else {
      I num = p.shift >= 0 ? x << p.shift : x, den = p.shift >= 0 ? y : y << -p.shift;
      if (den < 0) num = -num, den = -den;
      q = roundedQuotient(num, den, p.round);
      lostSign |= q == 0 && num < 0;
      if (q > hi || q < lo) {
        if (p.overflow == OverflowModeEnum::Saturate) {
          q = q > hi ? hi : lo;
        } else {
          q %= modulus;
          if (q < 0) q += modulus;
          if (q > hi) q -= modulus;
        }
      }
    }
    out[i] = static_cast<double>(q) * p.scaleQ;
  }
  return !lostSign;
}

}  // namespace

bool quotients(const double* a, std::size_t sa, const double* b, std::size_t sb, double* q,
               std::size_t n, const QuotientPlan& plan, bool& dividedByZero) {
  return plan.wide ? run<int128>(a, sa, b, sb, q, n, plan, dividedByZero)
                   : run<std::int64_t>(a, sa, b, sb, q, n, plan, dividedByZero);
}

}  // namespace corbel::kernels
