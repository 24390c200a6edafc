// fi: the unary operations (negation, scaling by a power of two, absolute value, conjugate)
// and the element-wise selections that keep the type (complex, max, min, and the largest or
// smallest elements along a dimension). Each makes a new array; the operands never change.
#include <gmp.h>

#include <algorithm>
#include <vector>

#include "fi/exact_values.h"
#include "fi/fi.h"
#include "host/messages.h"
#include "host/services.h"

namespace corbel {
namespace {

// |x|^2 for a complex element, exactly.
void squaredMagnitude(mpq_ptr out, const number& re, const number& im) {
  mpq_t t;
  mpq_init(t);
  re.getvalue(out);
  mpq_mul(out, out, out);
  im.getvalue(t);
  mpq_mul(t, t, t);
  mpq_add(out, out, t);
  mpq_clear(t);
}

// Whether element i of x lies strictly beyond element j of y in the direction asked for: by
// value for real arrays, by magnitude for complex ones.
bool beyond(const fi& x, int i, const fi& y, int j, bool larger) {
  int c;
  if (x.isreal() && y.isreal()) {
    c = x.real(i) > y.real(j) ? 1 : (x.real(i) < y.real(j) ? -1 : 0);
  } else {
    mpq_t a, b;
    mpq_inits(a, b, nullptr);
    squaredMagnitude(a, x.real(i), x.imag(i));
    squaredMagnitude(b, y.real(j), y.imag(j));
    c = mpq_cmp(a, b);
    mpq_clears(a, b, nullptr);
  }
  return larger ? c > 0 : c < 0;
}

}  // namespace

std::unique_ptr<fi> fi::uminus() const {
  auto r = std::make_unique<fi>(*this, WholeCopy);
  r->filog_.reset();
  if (r->mapDoubles(UnaryStep::Negate, 0)) return r;
  const quantizer& q = getLogging() ? loggingQuantizer_ : assignQuantizer_;
  for (int i = 0; i < r->numel_; ++i) {
    poll_interrupt();
    q.quantize(r->realRef(i).negate(), r->filog_);
    if (r->iscomplex()) q.quantize(r->imagRef(i).negate(), r->filog_);
  }
  return r;
}

std::unique_ptr<fi> fi::pow2(long k) const {
  if (isSlopeBiasScaled()) raise(Msg::FiPow2BinaryPointOnly);
  return scaledByPowerOfTwo(k);
}

std::unique_ptr<fi> fi::scaledByPowerOfTwo(long k) const {
  auto r = std::make_unique<fi>(*this, WholeCopy);
  const int w = getWordLength();
  const long e = type_.getFixedExponent();
  // On a fixed-point grid a shift left by 2^20 saturates or wraps every nonzero element as a
  // shift by the word length does, and one right by 2^20 rounds as one by W + 1 does: beyond
  // those, the scaling stays within the multiprecision exponent range.
  constexpr long kFar = 1L << 20;
  if (type_.isFixed()) k = std::clamp(k, -kFar, kFar);
  // Elements held in doubles go multiprecision where the scaled values leave the doubles'
  // exponent range, and come back to doubles once quantized.
  const bool beyondDoubles = type_.isFixed() && (e + k < -1000 || e + w + k > 1000);
  if (!beyondDoubles && r->mapDoubles(UnaryStep::Pow2, k)) return r;
  const auto scale = [&](number& x) {
    if (beyondDoubles && x.isdouble())
      x.setprecision(static_cast<unsigned long>(std::max(w, 53)), true);
    x.pow2(k);
  };
  for (int i = 0; i < r->numel_; ++i) scale(r->realRef(i));
  if (r->iscomplex())
    for (int i = 0; i < r->numel_; ++i) scale(r->imagRef(i));
  r->quantizeAll();
  if (beyondDoubles && w <= 52 && !number::getDefaultForceMultiplePrecision())
    for (int i = 0; i < r->numel_; ++i) {
      r->realRef(i).setprecision(static_cast<unsigned long>(w), false);
      if (r->iscomplex()) r->imagRef(i).setprecision(static_cast<unsigned long>(w), false);
    }
  return r;
}

std::unique_ptr<fi> fi::abs() const {
  if (iscomplex()) raise(Msg::FiAbsNoComplex);
  if (isSlopeBiasScaled()) raise(Msg::FiAbsBinaryPointOnly);
  auto r = std::make_unique<fi>(*this, WholeCopy);
  r->filog_.reset();
  if (r->mapDoubles(UnaryStep::Abs, 0)) return r;
  const quantizer& q = getLogging() ? loggingQuantizer_ : assignQuantizer_;
  for (int i = 0; i < r->numel_; ++i) q.quantize(r->realRef(i).abs(), r->filog_);
  return r;
}

void fi::abs(number& out) const {
  out.abs(real());
}

std::unique_ptr<fi> fi::conj() const {
  auto r = std::make_unique<fi>(*this, WholeCopy);
  if (isreal_) return r;
  r->filog_.reset();
  if (r->mapDoubles(UnaryStep::NegateImaginary, 0)) return r;
  // The negated imaginary part of the most negative value saturates or wraps.
  const quantizer& q = getLogging() ? loggingQuantizer_ : assignQuantizer_;
  for (int i = 0; i < r->numel_; ++i) q.quantize(r->imagRef(i).negate(), r->filog_);
  return r;
}

std::unique_ptr<fi> fi::sign() const {
  if (iscomplex()) raise(Msg::FiComplexNotDefined, "sign");
  auto r = std::make_unique<fi>(dims(), ndims(), NumericType(true, 2, 0), math_, false);
  // With a bias the sign is that of the real-world value, not of the element.
  const bool slopeBias = isSlopeBiasScaled();
  Rational value;
  for (int i = 0; i < numel_; ++i) {
    const number& x = real(i);
    int s = x.iszero() ? 0 : (x.isnegative() ? -1 : 1);
    if (slopeBias) {
      poll_interrupt();
      realWorld(value.v, x, type_);
      s = mpq_sgn(value.v);
    }
    r->realRef(i) = static_cast<double>(s);
  }
  return r;
}

std::unique_ptr<fi> fi::stripscaling() const {
  // Each element is its stored integer times 2^FixedExponent, so scaling it by
  // 2^-FixedExponent gives the stored integer exactly, already on the integer type's grid.
  const long e = type_.getFixedExponent();
  auto r = std::make_unique<fi>(dims(), ndims(), NumericType(getSigned(), getWordLength(), 0),
                                math_, !isreal_);
  for (int i = 0; i < numel_; ++i) {
    poll_interrupt();
    r->realRef(i).setvalue(real(i)).pow2(-e);
    if (!isreal_) r->imagRef(i).setvalue(imag(i)).pow2(-e);
  }
  return r;
}

std::unique_ptr<fi> fi::complex(const fi& im) const {
  if (iscomplex() || im.iscomplex()) raise(Msg::FiComplexRealPartInput);
  if (numel_ != 1 && im.numel_ != 1) checkElementwiseSize(im);
  const fi& shape = numel_ == 1 ? im : *this;
  auto r = std::make_unique<fi>(shape.dims(), shape.ndims(), type_, math_, true);
  // The imaginary values enter through this type's quantizer, as an assignment would.
  for (int i = 0; i < r->numel_; ++i) {
    poll_interrupt();
    r->realRef(i) = real(numel_ == 1 ? 0 : i);
    r->quantizeElement(r->imagRef(i) = im.real(im.numel_ == 1 ? 0 : i));
  }
  return r;
}

std::unique_ptr<fi> fi::select(const fi& b, bool larger) const {
  if (!math_.isequal(b.math_)) raise(larger ? Msg::FiMaxFimathMismatch : Msg::FiMinFimathMismatch);
  if (!type_.isequal(b.type_))
    raise(larger ? Msg::FiMaxNumericTypeMismatch : Msg::FiMinNumericTypeMismatch);
  if (numel_ != 1 && b.numel_ != 1) checkElementwiseSize(b);
  const fi& shape = numel_ == 1 ? b : *this;
  if (shape.numel_ > 0)
    if (auto r = bulkSelect(b, larger)) return r;
  const bool complex = iscomplex() || b.iscomplex();
  auto r = std::make_unique<fi>(shape.dims(), shape.ndims(), type_, math_, complex);
  // On a tie the left operand's element is kept.
  for (int k = 0; k < r->numel_; ++k) {
    poll_interrupt();
    const int i = numel_ == 1 ? 0 : k, j = b.numel_ == 1 ? 0 : k;
    const bool right = beyond(b, j, *this, i, larger);
    const fi& from = right ? b : *this;
    const int at = right ? j : i;
    r->realRef(k) = from.real(at);
    if (complex) r->imagRef(k) = from.imag(at);
  }
  return r;
}

std::unique_ptr<fi> fi::max(const fi& b) const {
  return select(b, true);
}

std::unique_ptr<fi> fi::min(const fi& b) const {
  return select(b, false);
}

void fi::reduceSelect(std::unique_ptr<fi>& values, HostArray& indices, int dim, bool larger) const {
  // An empty dimension stays empty.
  const Lines lines = linesAlong(dim, false);
  const std::vector<int>& outDims = lines.outDims;
  const int length = lines.length, stride = lines.stride, outer = lines.outer;
  indices = HostArray(HostClass::Double, std::vector<std::size_t>(outDims.begin(), outDims.end()));
  auto* index = static_cast<double*>(indices.real_data());
  if (indices.numel() > 0 &&
      (values = bulkReduceSelect(outDims, outer, stride, length, larger, index)))
    return;
  values = std::make_unique<fi>(outDims.data(), static_cast<int>(outDims.size()), type_, math_,
                                iscomplex());
  if (length == 0) return;
  for (int o = 0; o < outer; ++o) {
    for (int s = 0; s < stride; ++s) {
      poll_interrupt();
      const int first = o * stride * length + s;
      int best = first;
      for (int k = 1; k < length; ++k) {
        const int at = first + k * stride;
        if (beyond(*this, at, *this, best, larger)) best = at;  // the first of equals wins
      }
      const int out = o * stride + s;
      values->realRef(out) = real(best);
      if (iscomplex()) values->imagRef(out) = imag(best);
      index[out] = (best - first) / stride + 1;
    }
  }
}

void fi::unary_max(std::unique_ptr<fi>& values, HostArray& indices, int dim) const {
  reduceSelect(values, indices, dim, true);
}

void fi::unary_min(std::unique_ptr<fi>& values, HostArray& indices, int dim) const {
  reduceSelect(values, indices, dim, false);
}

}  // namespace corbel
