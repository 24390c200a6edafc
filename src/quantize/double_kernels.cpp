// The whole-array quantization of doubles: the fixed-point steps of quantize on
// double-backed values, as loops the compiler vectorises. This file is built at -O3 with
// -fno-trapping-math (which changes no value, only whether exception flags may be raised
// by operations whose results are then discarded), so that the selects of rounding and
// saturation become blends; on x86-64 each loop is also built for the AVX2 and SSE4.1
// levels, chosen at load time, where floor and ceil are single instructions.
#include "number/doublenumber.h"
#include "quantize/cpu_clones.h"
#include "quantize/quantizer.h"

namespace corbel {
namespace {

template <RoundModeEnum R>
CORBEL_INLINE double roundDouble(double x) {
  if constexpr (R == RoundModeEnum::Ceil) return doublenumber::ceilOf(x);
  if constexpr (R == RoundModeEnum::Convergent) return doublenumber::convergentOf(x);
  if constexpr (R == RoundModeEnum::Fix) return doublenumber::fixOf(x);
  if constexpr (R == RoundModeEnum::Floor) return doublenumber::floorOf(x);
  if constexpr (R == RoundModeEnum::Nearest) return doublenumber::nearestOf(x);
  if constexpr (R == RoundModeEnum::Round) return doublenumber::roundOf(x);
}

}  // namespace

// One value through the steps of quantizeFixed, saturate, wrap and uwrap on a double body.
template <RoundModeEnum R, OverflowModeEnum O, bool Signed>
CORBEL_INLINE double quantizer::DoubleBounds::step(double v) const {
  if (v == 0.0) return v;
  v = doublenumber::pow2Of(roundDouble<R>(doublenumber::pow2Of(v, f)), -f);
  if constexpr (O == OverflowModeEnum::Saturate) {
    if (v > hi)
      v = hi;
    else if (v < lo)
      v = lo;
  } else if (v > hi || v < lo) {
    v = doublenumber::mod(v, w);
    if constexpr (Signed) {
      v += lo;
      if (v < 0.0)
        v -= lo;
      else
        v += lo;
    }
  }
  return v;
}

namespace {

using Bounds = quantizer::DoubleBounds;

template <RoundModeEnum R, OverflowModeEnum O, bool Signed>
CORBEL_INLINE void quantizeRun(const Bounds& b, double* x, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) x[i] = b.template step<R, O, Signed>(x[i]);
}

template <RoundModeEnum R, OverflowModeEnum O, bool Signed>
void accumulateRun(const Bounds& b, double& sum, const double* terms, std::size_t n) {
  double s = sum;
  for (std::size_t i = 0; i < n; ++i) s = b.template step<R, O, Signed>(s + terms[i]);
  sum = s;
}

// Calls Run<R, O, Signed>::go(args...) for the settings of b.
template <template <RoundModeEnum, OverflowModeEnum, bool> class Run, class... Args>
CORBEL_INLINE void dispatch(const Bounds& b, Args&&... args) {
#define CORBEL_KERNEL_CASE(R)                                                               \
  case RoundModeEnum::R:                                                                    \
    if (b.overflow == OverflowModeEnum::Saturate) {                                         \
      if (b.issigned)                                                                       \
        Run<RoundModeEnum::R, OverflowModeEnum::Saturate, true>::go(b, args...);            \
      else                                                                                  \
        Run<RoundModeEnum::R, OverflowModeEnum::Saturate, false>::go(b, args...);           \
    } else {                                                                                \
      if (b.issigned)                                                                       \
        Run<RoundModeEnum::R, OverflowModeEnum::Wrap, true>::go(b, args...);                \
      else                                                                                  \
        Run<RoundModeEnum::R, OverflowModeEnum::Wrap, false>::go(b, args...);               \
    }                                                                                       \
    return;
  switch (b.round) {
    CORBEL_KERNEL_CASE(Ceil)
    CORBEL_KERNEL_CASE(Convergent)
    CORBEL_KERNEL_CASE(Fix)
    CORBEL_KERNEL_CASE(Floor)
    CORBEL_KERNEL_CASE(Nearest)
    CORBEL_KERNEL_CASE(Round)
  }
#undef CORBEL_KERNEL_CASE
}

template <RoundModeEnum R, OverflowModeEnum O, bool Signed>
struct QuantizeRun {
  CORBEL_INLINE static void go(const Bounds& b, double* x, std::size_t n) { quantizeRun<R, O, Signed>(b, x, n); }
};
template <RoundModeEnum R, OverflowModeEnum O, bool Signed>
struct AccumulateRun {
  static void go(const Bounds& b, double& sum, const double* terms, std::size_t n) {
    accumulateRun<R, O, Signed>(b, sum, terms, n);
  }
};

CORBEL_CPU_CLONES void quantizeAll(const Bounds& b, double* x, std::size_t n) {
  dispatch<QuantizeRun>(b, x, n);
}

}  // namespace

bool quantizer::doubleBounds(DoubleBounds& bounds) const {
  if (mode_ != Fixed && mode_ != Ufixed) return false;
  for (const number* bound : {&max_, &lowerbound_, &wraparound_})
    if (!bound->isdouble()) return false;
  bounds = {roundmode_,      overflowmode_,         mode_ == Fixed,
            fractionlength_, max_.todouble(),       lowerbound_.todouble(),
            wraparound_.todouble()};
  return true;
}

bool quantizer::quantizeDoubles(double* x, std::size_t n) const {
  DoubleBounds bounds;
  if (!doubleBounds(bounds)) return false;
  quantizeAll(bounds, x, n);
  return true;
}

bool quantizer::accumulateDoubles(double& sum, const double* terms, std::size_t n) const {
  DoubleBounds bounds;
  if (!doubleBounds(bounds)) return false;
  dispatch<AccumulateRun>(bounds, sum, terms, n);
  return true;
}

}  // namespace corbel
