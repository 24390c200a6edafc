// fi: the quotient of two arrays in a given type. Each quotient is formed exactly, as a
// rational of the operands' real-world values (a complex one as a * conj(b) / |b|^2, part by
// part), and rounded once into the quotient type by its RoundMode and OverflowMode. A zero
// divisor gives the saturated value on the side of the dividend's sign (a zero dividend counts
// as positive, so 0/0 gives the largest value) and one "fi:divideByZero" warning for the
// whole operation.
#include <algorithm>
#include <cmath>
#include <vector>

#include "fi/element_kernels.h"
#include "fi/element_storage.h"
#include "fi/exact_values.h"
#include "fi/fi.h"
#include "fi/quotient_kernels.h"
#include "host/messages.h"
#include "host/services.h"

namespace corbel {
namespace {

// The largest value of a fixed-point type, or its smallest when `negative`, as an element.
number saturated(const NumericType& t, bool negative) {
  Integer bound;
  const int magnitudeBits = t.getSigned() ? t.getWordLength() - 1 : t.getWordLength();
  if (negative) {
    if (t.getSigned()) {
      mpz_setbit(bound.v, static_cast<mp_bitcnt_t>(magnitudeBits));
      mpz_neg(bound.v, bound.v);
    }
  } else {
    mpz_setbit(bound.v, static_cast<mp_bitcnt_t>(magnitudeBits));
    mpz_sub_ui(bound.v, bound.v, 1);
  }
  number n;
  n.setvalue(bound.v, t.getFixedExponent());
  return n;
}

}  // namespace

std::unique_ptr<fi> fi::bulkQuotient(const fi& b, const NumericType& T) const {
  // Real double-backed binary-point operands and quotient, grids within a double's exponent
  // range, and numerators and divisors that fit 125 bits once shifted.
  const auto plain = [](const NumericType& t) {
    return t.isFixed() && !t.isSlopeBiasScaled() && t.getWordLength() <= 52 &&
           std::abs(t.getFixedExponent()) <= 1000;
  };
  if (getLogging() || !isreal_ || !b.isreal_ || !plain(type_) || !plain(b.type_) || !plain(T) ||
      number::getDefaultForceMultiplePrecision())
    return nullptr;
  const long ea = type_.getFixedExponent(), eb = b.type_.getFixedExponent();
  const long eq = T.getFixedExponent(), shift = ea - eb - eq;
  const long bits =
      std::max(getWordLength() + std::max(shift, 0L), b.getWordLength() + std::max(-shift, 0L));
  if (bits > 125) return nullptr;
  const kernels::QuotientPlan plan{shift,
                                   getRoundMode(),
                                   getOverflowMode(),
                                   T.getWordLength(),
                                   T.getSigned(),
                                   std::ldexp(1.0, static_cast<int>(-ea)),
                                   std::ldexp(1.0, static_cast<int>(-eb)),
                                   std::ldexp(1.0, static_cast<int>(eq)),
                                   bits > 61};
  std::vector<double> x(static_cast<size_t>(numel_)), y(static_cast<size_t>(b.numel_));
  if (!kernels::load(realData_, 1, x.size(), x.data()) ||
      !kernels::load(b.realData_, 1, y.size(), y.data()))
    return nullptr;
  const fi& shape = numel_ == 1 ? b : *this;
  auto q = std::unique_ptr<fi>(new fi(shape.dims(), shape.ndims(), T, math_, Unfilled::Elements));
  const std::size_t n = q->shared_->elements;
  std::vector<double> out(n);
  bool byZero = false;
  if (!kernels::quotients(x.data(), numel_ == 1 ? 0 : 1, y.data(), b.numel_ == 1 ? 0 : 1,
                          out.data(), n, plan, byZero))
    return nullptr;
  kernels::store(q->rawElements(false), out.data(), n);
  if (byZero) warn(Msg::FiDivideByZero);
  return q;
}

std::unique_ptr<fi> fi::over(const fi& b, const NumericType& quotientType) const {
  if (!quotientType.isFixed() && !quotientType.isScaledDouble()) raise(Msg::FiFixedOnly);
  if (numel_ != 1 && b.numel_ != 1) checkElementwiseSize(b);
  if (auto fast = bulkQuotient(b, quotientType)) return fast;
  const fi& shape = numel_ == 1 ? b : *this;
  const bool complex = iscomplex() || b.iscomplex();
  auto q = std::make_unique<fi>(shape.dims(), shape.ndims(), quotientType, math_, complex);
  bool byZero = false;
  Rational xr, xi, yr, yi, d, t, u;
  for (int k = 0; k < q->numel_; ++k) {
    poll_interrupt();
    const int i = numel_ == 1 ? 0 : k, j = b.numel_ == 1 ? 0 : k;
    realWorld(xr.v, real(i), type_);
    realWorld(yr.v, b.real(j), b.type_);
    if (complex) {
      realWorld(xi.v, imag(i), type_);
      realWorld(yi.v, b.imag(j), b.type_);
    }
    if (mpq_sgn(yr.v) == 0 && (!complex || mpq_sgn(yi.v) == 0)) {
      byZero = true;
      q->realRef(k) = saturated(quotientType, mpq_sgn(xr.v) < 0);
      if (complex) q->imagRef(k) = saturated(quotientType, mpq_sgn(xi.v) < 0);
      continue;
    }
    if (!complex) {
      mpq_div(t.v, xr.v, yr.v);
      q->storeRealWorld(q->realRef(k), t.v);
      continue;
    }
    // (xr + i xi) / (yr + i yi) = ((xr yr + xi yi) + i (xi yr - xr yi)) / (yr^2 + yi^2)
    mpq_mul(d.v, yr.v, yr.v);
    mpq_mul(t.v, yi.v, yi.v);
    mpq_add(d.v, d.v, t.v);
    mpq_mul(t.v, xr.v, yr.v);
    mpq_mul(u.v, xi.v, yi.v);
    mpq_add(t.v, t.v, u.v);
    mpq_div(t.v, t.v, d.v);
    q->storeRealWorld(q->realRef(k), t.v);
    mpq_mul(t.v, xi.v, yr.v);
    mpq_mul(u.v, xr.v, yi.v);
    mpq_sub(t.v, t.v, u.v);
    mpq_div(t.v, t.v, d.v);
    q->storeRealWorld(q->imagRef(k), t.v);
  }
  if (byZero) warn(Msg::FiDivideByZero);
  return q;
}

}  // namespace corbel
