// The stored-integer loops of wide binary-point types (see wide_kernels.h).
#include "fi/wide_kernels.h"

#include "fi/stored_span.h"
#include "quantize/cpu_clones.h"
#include "types/numeric_type.h"

namespace corbel::kernels {
namespace {

// v / 2^s rounded to an integer by r, for s >= 1 and |v| < 2^kHeadroom<T> (so neither v +
// 2^(s-1) nor -v can overflow). A larger s gives what s = kHeadroom + 1 gives: every v is
// then below half a step.
template <class T>
CORBEL_INLINE T roundShift(T v, long shift, RoundModeEnum r) {
  const int s = shift > kHeadroom<T> + 1 ? kHeadroom<T> + 1 : static_cast<int>(shift);
  const T half = shiftLeft(T(1), s - 1);
  switch (r) {
    case RoundModeEnum::Floor:
      return v >> s;
    case RoundModeEnum::Ceil:
      return -((-v) >> s);
    case RoundModeEnum::Fix:
      return v < T(0) ? -((-v) >> s) : v >> s;
    case RoundModeEnum::Nearest:
      return (v + half) >> s;
    case RoundModeEnum::Round:
      return v < T(0) ? -((half - v) >> s) : (v + half) >> s;
    case RoundModeEnum::Convergent: {
      const T q = v >> s;
      const T rest = v - shiftLeft(q, s);
      return rest > half || (rest == half && isodd(q)) ? q + T(1) : q;
    }
  }
  return v;
}

// v modulo 2^n, in [0, 2^n), for 0 < n < kHeadroom<T>.
template <class T>
CORBEL_INLINE T lowBits(T v, int n) {
  return v - shiftLeft(v >> n, n);
}

// v (below 2^kHeadroom<T>) on the grid of q's type: rounded by `shift` bits or shifted
// exactly by -shift, then saturated or wrapped into the type's range. Sets lostSign when a
// nonzero v becomes zero.
template <class T>
CORBEL_INLINE T quantizeStored(T v, long shift, const StoredStep<T>& q, bool& lostSign) {
  if (v == T(0)) return v;  // zeros are never rounded
  T r;
  if (shift > 0) {
    r = roundShift(v, shift, q.round);
    if (r > q.hi || r < q.lo) {
      if (q.overflow == OverflowModeEnum::Saturate) {
        r = r > q.hi ? q.hi : q.lo;
      } else {
        r = lowBits(r, q.wordLength);
        if (r > q.hi) r = r + q.lo + q.lo;  // r - 2^wordLength
      }
    }
  } else {
    // v * 2^k is formed only when it lies in the range.
    const long k = -shift;
    if (k < kHeadroom<T> && v <= (q.hi >> static_cast<int>(k)) &&
        v >= -((-q.lo) >> static_cast<int>(k)))
      return shiftLeft(v, static_cast<int>(k));
    if (q.overflow == OverflowModeEnum::Saturate) {
      r = v > T(0) ? q.hi : q.lo;
    } else {
      r = k >= q.wordLength
              ? T(0)
              : shiftLeft(lowBits(v, q.wordLength - static_cast<int>(k)), static_cast<int>(k));
      if (r > q.hi) r = r + q.lo + q.lo;
    }
  }
  lostSign |= r == T(0);
  return r;
}

template <class T>
CORBEL_INLINE T step(T v, const StoredStep<T>& q, bool& lostSign) {
  return q.active ? quantizeStored(v, q.shift, q, lostSign) : v;
}

template <class T, class S>
CORBEL_INLINE T widen(S v) {
  if constexpr (sizeof(T) < sizeof(S))
    return narrow(v);
  else
    return T(v);
}

template <class T, class A, class B>
CORBEL_INLINE T sumRegister(A a, B b, const StoredSum<T>& p, bool& lostSign) {
  const T x = shiftLeft(step(widen<T>(a), p.cast, lostSign), p.alignA);
  const T y = shiftLeft(widen<T>(b), p.alignB);
  return step(p.subtract ? x - y : x + y, p.toRegister, lostSign);
}

template <class T, class A, class B, class R>
bool sumLoop(const A* a, std::size_t sa, const B* b, std::size_t sb, R* out, std::size_t n,
             const StoredSum<T>& p, T& last) {
  bool lostSign = false;
  const bool plain = !p.cast.active && !p.toRegister.active && !p.toResult.active &&
                     p.alignA == 0 && p.alignB == 0 && p.store == 0;
  if (plain) {
    // Full precision on one grid: the exact sums themselves.
    if (p.subtract)
      for (std::size_t i = 0; i < n; ++i)
        out[i] = widen<R>(widen<T>(a[i * sa]) - widen<T>(b[i * sb]));
    else
      for (std::size_t i = 0; i < n; ++i)
        out[i] = widen<R>(widen<T>(a[i * sa]) + widen<T>(b[i * sb]));
  } else {
    for (std::size_t i = 0; i < n; ++i) {
      const T r = sumRegister(a[i * sa], b[i * sb], p, lostSign);
      out[i] = widen<R>(shiftLeft(step(r, p.toResult, lostSign), p.store));
    }
  }
  if (n > 0) last = sumRegister(a[(n - 1) * sa], b[(n - 1) * sb], p, lostSign);
  return !lostSign;
}

template <class R>
bool productLoop(const int128* a, std::size_t sa, const int128* b, std::size_t sb, R* out,
                 std::size_t n, const StoredProduct& p, int256& last) {
  bool lostSign = false;
  const auto product = [&](std::size_t i) {
    const int128 x = a[i * sa], y = b[i * sb];
    const int256 v = multiply(x, y);
    // A zero times a negative value is a negative zero in the element path.
    lostSign |= v == int256(0) && (x < 0 || y < 0);
    return step(v, p.toRegister, lostSign);
  };
  for (std::size_t i = 0; i < n; ++i)
    out[i] = widen<R>(shiftLeft(step(product(i), p.toResult, lostSign), p.store));
  if (n > 0) last = product(n - 1);
  return !lostSign;
}

// Calls f with the typed pointer of a part.
template <class F>
decltype(auto) typed(const StoredPart& x, F f) {
  return x.limbs == 2 ? f(static_cast<const int128*>(x.data))
                      : f(static_cast<const int256*>(x.data));
}
template <class F>
decltype(auto) typedOut(void* out, int limbs, F f) {
  return limbs == 2 ? f(static_cast<int128*>(out)) : f(static_cast<int256*>(out));
}

template <class T>
bool sumAny(const StoredPart& a, const StoredPart& b, void* out, int outLimbs, std::size_t n,
            const StoredSum<T>& plan, T& last) {
  return typed(a, [&](auto pa) {
    return typed(b, [&](auto pb) {
      return typedOut(out, outLimbs,
                      [&](auto po) { return sumLoop(pa, a.step, pb, b.step, po, n, plan, last); });
    });
  });
}

}  // namespace

template <class T>
StoredStep<T> storedStep(const NumericType& t, RoundModeEnum round, OverflowModeEnum overflow,
                         long from) {
  const Span<T> bounds = spanOf<T>(t);
  return {true,      round,    overflow, t.getSigned(), t.getWordLength(), bounds.e - from,
          bounds.lo, bounds.hi};
}
template StoredStep<int128> storedStep(const NumericType&, RoundModeEnum, OverflowModeEnum, long);
template StoredStep<int256> storedStep(const NumericType&, RoundModeEnum, OverflowModeEnum, long);

bool sum(const StoredPart& a, const StoredPart& b, void* out, int outLimbs, std::size_t n,
         const StoredSum<int128>& plan, int128& last) {
  return sumAny(a, b, out, outLimbs, n, plan, last);
}

bool sum(const StoredPart& a, const StoredPart& b, void* out, int outLimbs, std::size_t n,
         const StoredSum<int256>& plan, int256& last) {
  return sumAny(a, b, out, outLimbs, n, plan, last);
}

bool product(const StoredPart& a, const StoredPart& b, void* out, int outLimbs, std::size_t n,
             const StoredProduct& plan, int256& last) {
  const auto* pa = static_cast<const int128*>(a.data);
  const auto* pb = static_cast<const int128*>(b.data);
  return typedOut(out, outLimbs,
                  [&](auto po) { return productLoop(pa, a.step, pb, b.step, po, n, plan, last); });
}

bool fromDoubles(const double* x, std::size_t n, const StoredStep<int128>& q, long to,
                 int128* out) {
  bool lostSign = false;
  for (std::size_t i = 0; i < n; ++i) {
    const SplitDouble v = splitDouble(x[i]);
    lostSign |= v.negativeZero;
    out[i] = quantizeStored(v.m, to - v.k, q, lostSign);
  }
  return !lostSign;
}

}  // namespace corbel::kernels
