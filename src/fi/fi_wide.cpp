// fi: arrays of wide binary-point types (53 to 252 bits) on their stored integers. Made
// from doubles or by an element-wise sum, difference or real product, such an array holds
// int128 or int256 stored integers (wide_elements.h) and turns them into numbers only when an
// element is asked for. The whole-array operations take the element operators' steps in
// their order on the integers (wide_kernels.h), leaving out the quantizations that can change
// nothing, so their values are the element path's values; they decline, and the element
// path runs, while a log is kept, for slope-bias types, complex products, a value that is
// not a stored integer of its type, and wherever a negative zero may arise.
#include <gmp.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

#include "fi/bit_kernels.h"
#include "fi/bulk_parts.h"
#include "fi/element_storage.h"
#include "fi/fi.h"
#include "fi/stored_span.h"
#include "fi/wide_elements.h"
#include "fi/wide_kernels.h"
#include "number/mpnumber.h"

namespace corbel {
namespace {

bool binaryPoint(const NumericType& t) {
  return t.isFixed() && !t.isSlopeBiasScaled();
}
// A type whose arrays may hold stored integers.
bool wideType(const NumericType& t) {
  return binaryPoint(t) && t.getWordLength() >= kWideMinBits && t.getWordLength() <= kWideMaxBits;
}
// A type whose values the loops can read.
bool loadable(const NumericType& t) {
  return binaryPoint(t) && t.getWordLength() <= kWideMaxBits;
}

// The number holding v * 2^exponent, with at least `precision` bits.
template <class I>
number toNumber(I v, long exponent, unsigned long precision) {
  constexpr int kLimbs = sizeof(I) / 8;
  const bool negative = v < I(0);
  if (negative) v = -v;
  mp_limb_t limbs[kLimbs];
  for (int i = 0; i < kLimbs; ++i) {
    limbs[i] = static_cast<mp_limb_t>(narrow(v) & ~std::uint64_t{0});
    v = v >> 64;
  }
  int size = kLimbs;
  while (size > 0 && limbs[size - 1] == 0) --size;
  mpz_t z;
  mpz_roinit_n(z, limbs, negative ? -size : size);
  return number::multiprecision(z, exponent, precision);
}

// The stored integer of x on the grid 2^exponent, when x is a finite value other than -0
// that lies on that grid below 2^kHeadroom<I> in magnitude.
template <class I>
bool storedInteger(const number& x, long exponent, mpz_ptr scratch, I& out) {
  // x = scratch * 2^shift * 2^exponent.
  long shift;
  if (x.isdouble()) {
    const SplitDouble v = splitDouble(x.inlinedouble());
    if (v.negativeZero || !std::isfinite(x.inlinedouble())) return false;
    mpz_set_si(scratch, static_cast<long>(v.m));
    shift = v.k - exponent;
  } else {
    mpfr_srcptr v = static_cast<const mpnumber&>(x.gethandle().getbody()).getelement();
    if (!mpfr_number_p(v) || (mpfr_zero_p(v) && mpfr_signbit(v))) return false;
    if (mpfr_zero_p(v)) mpz_set_si(scratch, 0);
    shift = mpfr_zero_p(v) ? 0 : mpfr_get_z_2exp(scratch, v) - exponent;
  }
  if (mpz_sgn(scratch) == 0) {
    out = I(0);
    return true;
  }
  if (shift >= kHeadroom<I>) return false;
  if (shift >= 0) {
    mpz_mul_2exp(scratch, scratch, static_cast<mp_bitcnt_t>(shift));
  } else {
    if (static_cast<long>(mpz_scan1(scratch, 0)) < -shift) return false;  // off the grid
    mpz_tdiv_q_2exp(scratch, scratch, static_cast<mp_bitcnt_t>(-shift));
  }
  if (mpz_sizeinbase(scratch, 2) >= static_cast<std::size_t>(kHeadroom<I>)) return false;
  I magnitude = 0;
  for (int i = static_cast<int>(mpz_size(scratch)) - 1; i >= 0; --i)
    magnitude = shiftLeft(magnitude, 64) + I(static_cast<int128>(mpz_getlimbn(scratch, i)));
  out = mpz_sgn(scratch) < 0 ? -magnitude : magnitude;
  return true;
}

// One part of an operand as the loops read it: its own stored integers when it holds them,
// else its numbers converted into `scratch`; the zeros of a real operand's imaginary part
// are one zero repeated. False when a number has no stored integer of the operand's type.
template <class I>
bool operandPart(const fi& x, const WideElements* wide, bool imagPart, std::vector<I>& scratch,
                 kernels::StoredPart& out) {
  static const int256 kZero(0);
  const std::size_t step = x.numel() == 1 ? 0 : 1;
  if (imagPart && x.isreal()) {
    out = {&kZero, 4, 0};
    return true;
  }
  const long e = x.getNumericType().getFixedExponent();
  if (wide && wide->exponent == e) {
    out = {wide->part(imagPart), wide->limbs, step};
    return true;
  }
  const std::size_t n = x.numel() == 1 ? 1 : static_cast<std::size_t>(x.numel());
  scratch.resize(n);
  mpz_t z;
  mpz_init(z);
  bool ok = true;
  for (std::size_t i = 0; ok && i < n; ++i) {
    const int k = static_cast<int>(i);
    ok = storedInteger(imagPart ? x.imag(k) : x.real(k), e, z, scratch[i]);
  }
  mpz_clear(z);
  out = {scratch.data(), static_cast<int>(sizeof(I) / 8), step};
  return ok;
}

}  // namespace

void fi::materialize() const {
  if (!wide_) return;
  const WideElements& w = *wide_;
  // Each part is made whole before either is installed, so a failure changes nothing.
  number* parts[2] = {nullptr, nullptr};
  const auto make = [&](bool imagPart) {
    number* p = ElementStorage::allocateRaw(w.n);
    std::size_t made = 0;
    try {
      for (; made < w.n; ++made) {
        if (w.limbs == 2)
          new (p + made) number(toNumber(static_cast<const int128*>(w.part(imagPart))[made],
                                         w.exponent, w.precision));
        else
          new (p + made) number(toNumber(static_cast<const int256*>(w.part(imagPart))[made],
                                         w.exponent, w.precision));
      }
    } catch (...) {
      for (std::size_t i = 0; i < made; ++i) p[i].~number();
      ElementStorage::discard(p, w.n);
      throw;
    }
    parts[imagPart] = p;
  };
  try {
    make(false);
    if (w.part(true)) make(true);
  } catch (...) {
    ElementStorage::destroy(parts[0], w.n);
    throw;
  }
  realData_ = parts[0];
  shared_->imag = parts[1];
  wide_.reset();
}

bool fi::storeWide(const double* re, const double* im) {
  if (getLogging() || !wideType(type_) || storedLimbs(getWordLength()) != 2) return false;
  const std::size_t n = static_cast<std::size_t>(numel_);
  for (const double* part : {re, im})
    if (part && !std::all_of(part, part + n, [](double v) { return std::isfinite(v); }))
      return false;
  // Two limbs an element; beyond the limit the element path refuses the array.
  if (16.0 * static_cast<double>(n) * (im ? 2 : 1) > arrayMemoryLimit()) return false;
  const long e = type_.getFixedExponent();
  auto wide = std::make_unique<WideElements>(2, e, getWordLength(), n);
  const auto q = kernels::storedStep<int128>(type_, getRoundMode(), getOverflowMode(), e);
  for (bool imagPart : {false, true}) {
    const double* part = imagPart ? im : re;
    if (part &&
        !kernels::fromDoubles(part, n, q, e, static_cast<int128*>(wide->allocate(imagPart))))
      return false;
  }
  shared_->elements = n;
  isreal_ = im == nullptr;
  wide_ = std::move(wide);
  return true;
}

namespace {

// The loops' integer type for values of up to `bits` bits, and whether one serves.
int loopLimbs(int bits) {
  return bits < kHeadroom<int128> ? 2 : bits < kHeadroom<int256> ? 4 : 0;
}

// The exponent of the values a step leaves: the target's when it is active.
template <class T>
long after(const kernels::StoredStep<T>& s, long from) {
  return s.active ? from + s.shift : from;
}

}  // namespace

std::unique_ptr<fi> fi::wideSum(const fi& b, const NumericType& T, bool subtract) const {
  fi& reg = *sumRegister_;
  const NumericType& R = reg.type_;
  if (getLogging() || !wideType(T) || !loadable(type_) || !loadable(b.type_) || !loadable(R))
    return nullptr;
  if (numel_ != 1 && b.numel_ != 1) checkElementwiseSize(b);
  // The exact sum must fit the loops' integers: from the lower grid to one bit above the
  // larger magnitude.
  const bool cast = math_.getCastBeforeSum();
  const NumericType& left = cast ? R : type_;
  const long top = std::max<long>(left.getWordLength() + left.getFixedExponent(),
                                  b.getWordLength() + b.type_.getFixedExponent());
  const long bottom = std::min<long>(left.getFixedExponent(), b.type_.getFixedExponent());
  const int limbs = loopLimbs(
      static_cast<int>(std::max<long>({top + 1 - bottom, getWordLength(), b.getWordLength(),
                                       R.getWordLength(), T.getWordLength()})));
  if (limbs == 0 || top + 1 - bottom >= kHeadroom<int256>) return nullptr;

  const auto run = [&](auto zero) -> std::unique_ptr<fi> {
    using I = decltype(zero);
    const RoundModeEnum round = getRoundMode();
    const OverflowModeEnum overflow = getOverflowMode();
    const Span<I> a0 = spanOf<I>(type_);
    kernels::StoredSum<I> plan;
    plan.subtract = subtract;
    if (cast && !holds(R, a0)) plan.cast = kernels::storedStep<I>(R, round, overflow, a0.e);
    const Span<I> a = cast ? quantized(R, a0) : a0;
    const Span<I> bs = spanOf<I>(b.type_);
    const Span<I> s = sumSpan(a, bs, subtract);
    plan.alignA = static_cast<int>(a.e - s.e);
    plan.alignB = static_cast<int>(bs.e - s.e);
    if (!holds(R, s)) plan.toRegister = kernels::storedStep<I>(R, round, overflow, s.e);
    const long e1 = after(plan.toRegister, s.e);
    if (!holds(T, quantized(R, s))) plan.toResult = kernels::storedStep<I>(T, round, overflow, e1);
    // A result step left out leaves values on T's grid or zeros.
    plan.store =
        static_cast<int>(std::max<long>(after(plan.toResult, e1) - T.getFixedExponent(), 0));

    const fi& shape = numel_ == 1 ? b : *this;
    auto result =
        std::unique_ptr<fi>(new fi(shape.dims(), shape.ndims(), T, math_, Unfilled::Elements));
    const std::size_t n = result->shared_->elements;
    const bool complex = iscomplex() || b.iscomplex();
    auto wide = std::make_unique<WideElements>(storedLimbs(T.getWordLength()), T.getFixedExponent(),
                                               T.getWordLength(), n);
    std::vector<I> sa, sb;
    I last[2] = {I(0), I(0)};
    for (bool imagPart : {false, true}) {
      if (imagPart && !complex) break;
      kernels::StoredPart pa{}, pb{};
      if (!operandPart(*this, wide_.get(), imagPart, sa, pa) ||
          !operandPart(b, b.wide_.get(), imagPart, sb, pb) ||
          !kernels::sum(pa, pb, wide->allocate(imagPart), wide->limbs, n, plan, last[imagPart]))
        return nullptr;
    }
    result->isreal_ = !complex;
    result->wide_ = std::move(wide);
    // The register is left holding the last value, as the element path leaves it.
    if (n > 0) {
      if (complex) reg.coordinateComplexity(true);
      const long e = after(plan.toRegister, s.e);
      reg.realRef(0) = toNumber(last[0], e, R.getWordLength());
      if (complex) reg.imagRef(0) = toNumber(last[1], e, R.getWordLength());
    }
    leaveIndicesAfterElementwise(b, *result);
    return result;
  };
  return limbs == 2 ? run(int128(0)) : run(int256(0));
}

std::unique_ptr<fi> fi::wideProduct(const fi& b, const NumericType& P) const {
  fi& reg = *productRegister_;
  const NumericType& R = reg.type_;
  if (getLogging() || !isreal_ || !b.isreal_ || !wideType(P) || !loadable(R) ||
      !binaryPoint(type_) || !binaryPoint(b.type_) || loopLimbs(getWordLength()) != 2 ||
      loopLimbs(b.getWordLength()) != 2 || loopLimbs(R.getWordLength()) == 0)
    return nullptr;
  if (numel_ != 1 && b.numel_ != 1) checkElementwiseSize(b);
  const RoundModeEnum round = getRoundMode();
  const OverflowModeEnum overflow = getOverflowMode();
  const Span<int256> p = productSpan(spanOf<int256>(type_), spanOf<int256>(b.type_));
  kernels::StoredProduct plan;
  if (!holds(R, p)) plan.toRegister = kernels::storedStep<int256>(R, round, overflow, p.e);
  const long e1 = after(plan.toRegister, p.e);
  if (!holds(P, quantized(R, p)))
    plan.toResult = kernels::storedStep<int256>(P, round, overflow, e1);
  plan.store = static_cast<int>(std::max<long>(after(plan.toResult, e1) - P.getFixedExponent(), 0));

  const fi& shape = numel_ == 1 ? b : *this;
  auto result =
      std::unique_ptr<fi>(new fi(shape.dims(), shape.ndims(), P, math_, Unfilled::Elements));
  const std::size_t n = result->shared_->elements;
  auto wide = std::make_unique<WideElements>(storedLimbs(P.getWordLength()), P.getFixedExponent(),
                                             P.getWordLength(), n);
  std::vector<int128> sa, sb;
  kernels::StoredPart pa{}, pb{};
  int256 last(0);
  if (!operandPart(*this, wide_.get(), false, sa, pa) ||
      !operandPart(b, b.wide_.get(), false, sb, pb) || pa.limbs != 2 || pb.limbs != 2 ||
      !kernels::product(pa, pb, wide->allocate(false), wide->limbs, n, plan, last))
    return nullptr;
  result->wide_ = std::move(wide);
  if (n > 0) reg.realRef(0) = toNumber(last, e1, R.getWordLength());
  leaveIndicesAfterElementwise(b, *result);
  return result;
}

std::unique_ptr<fi> fi::wideBitwise(const fi& b, BitOp op) const {
  if (getLogging() || !wideType(type_) || (!wide_ && !b.wide_)) return nullptr;
  const fi& shape = numel_ == 1 ? b : *this;
  const std::size_t n = static_cast<std::size_t>(shape.numel_);
  const int limbs = storedLimbs(getWordLength());
  const bool complex = iscomplex() || b.iscomplex();
  auto wide = std::make_unique<WideElements>(limbs, type_.getFixedExponent(), getWordLength(), n);
  const kernels::Bitwise kind = bulk::bitwiseOf(op);
  const auto run = [&](auto zero) {
    using I = decltype(zero);
    std::vector<I> sa, sb;
    for (bool imagPart : {false, true}) {
      if (imagPart && !complex) break;
      kernels::StoredPart pa{}, pb{};
      if (!operandPart(*this, wide_.get(), imagPart, sa, pa) ||
          !operandPart(b, b.wide_.get(), imagPart, sb, pb))
        return false;
      // The zeros of a real part stand for any width.
      const int la = imagPart && isreal_ ? limbs : pa.limbs;
      const int lb = imagPart && b.isreal_ ? limbs : pb.limbs;
      if (la != limbs || lb != limbs) return false;
      kernels::wordwise(kind, static_cast<const std::uint64_t*>(pa.data), pa.step,
                        static_cast<const std::uint64_t*>(pb.data), pb.step,
                        static_cast<std::uint64_t*>(wide->allocate(imagPart)), n, limbs);
    }
    return true;
  };
  if (!(limbs == 2 ? run(int128(0)) : run(int256(0)))) return nullptr;
  auto result =
      std::unique_ptr<fi>(new fi(shape.dims(), shape.ndims(), type_, math_, Unfilled::Elements));
  result->isreal_ = !complex;
  result->wide_ = std::move(wide);
  return result;
}

}  // namespace corbel
