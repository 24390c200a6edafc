// fi: whole-array sums, differences, products, matrix products and quantization of
// double-backed binary-point arrays. They take the steps of the element operators in the
// same order (quantize the left operand to the sum type when CastBeforeSum is on, add or
// multiply exactly, quantize to the register's type, accumulate with a quantization after
// each addition, quantize to the result's type), on raw doubles and through the
// quantizer's double kernels, so their bits are the element path's bits. A step that can
// change no value (a quantization onto a grid and range that hold every value the step
// before can give) is left out. They apply only when no log is kept and every value and
// every exact intermediate fits a double's 53-bit mantissa; otherwise they decline and
// the element path runs. Complex sums are taken part by part; complex products are left
// to the element path.
#include <algorithm>
#include <cmath>
#include <vector>

#include "fi/bulk_parts.h"
#include "fi/element_kernels.h"
#include "fi/element_storage.h"
#include "fi/fi.h"
#include "fi/stored_span.h"
#include "host/services.h"

namespace corbel {
namespace {

using bulk::kBlock;
using bulk::partOf;
using bulk::shapeOf;

constexpr int kDoubleBits = 52;

bool fitsDouble(const NumericType& t) {
  return t.isFixed() && !t.isSlopeBiasScaled() &&
         number::gridPrecision(static_cast<unsigned long>(t.getWordLength()),
                               t.getFixedExponent()) <= kDoubleBits;
}

// Whether a quantizer has double bounds; the kernels need them.
bool onDoubles(const quantizer& q) {
  quantizer::DoubleBounds bounds;
  return q.doubleBounds(bounds);
}

bool qualifies(const fi& x) {
  return x.isreal() && fitsDouble(x.getNumericType());
}

// Double-backed types are at most 52 bits wide: their bounds fit 128 bits.
using DoubleSpan = Span<int128>;

}  // namespace

// The steps of one element-wise sum or product, each quantizer null where it changes
// nothing.
struct fi::ElementwiseSteps {
  const quantizer* cast;  // the left operand to the sum type, before the sum
  kernels::Combine op;
  const quantizer* toRegister;
  bool toResult;  // through the result's own quantizer
};

std::unique_ptr<fi> fi::elementwiseDoubles(const fi& b, const NumericType& T, fi& reg,
                                           const ElementwiseSteps& steps) const {
  const fi& shape = shapeOf(*this, b);
  auto result =
      std::unique_ptr<fi>(new fi(shape.dims(), shape.ndims(), T, math_, Unfilled::Elements));
  const std::size_t n = result->shared_->elements;
  // Real parts, then (for complex operands) imaginary parts, each its own pass.
  double last[2] = {0.0, 0.0};
  if (steps.toResult && !onDoubles(result->assignQuantizer_)) return nullptr;
  const auto pass = [&](bool imagPart) {
    std::size_t sa, sb;
    const number* pa = partOf(*this, imagPart, sa);
    const number* pb = partOf(b, imagPart, sb);
    number* out = result->rawElements(imagPart);
    if (!steps.cast && !steps.toRegister && !steps.toResult) {
      // Nothing to quantize: one pass from the operands to the result.
      if (!kernels::combineInto(steps.op, pa, sa, pb, sb, out, n)) {
        result->discardRawElements(imagPart);
        return false;
      }
      if (n > 0) last[imagPart] = out[n - 1].todouble();
      return true;
    }
    double x[kBlock], y[kBlock];
    for (std::size_t first = 0; first < n; first += kBlock) {
      const std::size_t count = std::min(kBlock, n - first);
      if (!kernels::load(pa + first * sa, sa, count, x) ||
          !kernels::load(pb + first * sb, sb, count, y)) {
        result->discardRawElements(imagPart);
        return false;
      }
      if (steps.cast) steps.cast->quantizeDoubles(x, count);
      kernels::combine(steps.op, x, y, count);
      if (steps.toRegister) steps.toRegister->quantizeDoubles(x, count);
      if (steps.toResult) result->assignQuantizer_.quantizeDoubles(x, count);
      kernels::store(out + first, x, count);
      last[imagPart] = x[count - 1];
    }
    return true;
  };
  const bool complex = iscomplex() || b.iscomplex();
  if (!pass(false) || (complex && !pass(true))) return nullptr;
  // The register is left holding the last value, as the element path leaves it.
  if (complex) reg.coordinateComplexity(true);
  if (n > 0) {
    reg.realData_[0] = last[0];
    if (complex) reg.imagRef(0) = last[1];
  }
  leaveIndicesAfterElementwise(b, *result);
  return result;
}

number* fi::rawElements(bool imagPart) {
  number*& target = imagPart ? *imagSlot_ : realData_;
  target = ElementStorage::allocateRaw(shared_->elements);
  if (imagPart) isreal_ = false;
  return target;
}

void fi::discardRawElements(bool imagPart) {
  number*& target = imagPart ? *imagSlot_ : realData_;
  ElementStorage::discard(target, shared_->elements);
  target = nullptr;
  if (imagPart) isreal_ = true;
}

bool fi::storeDoubles(const double* values, bool imagPart) {
  if (getLogging() || !fitsDouble(type_) || !onDoubles(assignQuantizer_) ||
      number::getDefaultForceMultiplePrecision() || number::getDefaultPrecision() > kDoubleBits)
    return false;
  const std::size_t n = shared_->elements;
  // NaN and infinity take the element path, which refuses them with their own messages.
  bool finite = true;
  for (std::size_t i = 0; i < n; ++i) finite &= std::isfinite(values[i]);
  if (!finite) return false;
  number* out = imagPart ? *imagSlot_ : realData_;
  if (out == nullptr) return false;
  double x[kBlock];
  for (std::size_t first = 0; first < n; first += kBlock) {
    const std::size_t count = std::min(kBlock, n - first);
    std::copy(values + first, values + first + count, x);
    assignQuantizer_.quantizeDoubles(x, count);
    kernels::store(out + first, x, count);
  }
  return true;
}

int fi::quantizeDoublesInPlace(bool imagPart) {
  if (getLogging() || !fitsDouble(type_) || !onDoubles(assignQuantizer_)) return 0;
  const std::size_t n = shared_->elements;
  number* data = imagPart ? *imagSlot_ : realData_;
  if (data == nullptr) return numel_;
  double x[kBlock];
  for (std::size_t first = 0; first < n; first += kBlock) {
    const std::size_t count = std::min(kBlock, n - first);
    if (!kernels::load(data + first, 1, count, x)) return static_cast<int>(first);
    assignQuantizer_.quantizeDoubles(x, count);
    kernels::store(data + first, x, count);
  }
  return numel_;
}

bool fi::mapDoubles(UnaryStep step, long k) {
  if (getLogging() || !fitsDouble(type_) || !onDoubles(assignQuantizer_)) return false;
  const std::size_t n = shared_->elements;
  const bool imagOnly = step == UnaryStep::NegateImaginary;
  number* parts[] = {imagOnly ? nullptr : realData_, isreal_ ? nullptr : *imagSlot_};
  // Every element is checked before any is changed.
  for (number* p : parts)
    if (p && !kernels::alldoubles(p, n)) return false;
  const kernels::Map op = step == UnaryStep::Abs    ? kernels::Map::Abs
                          : step == UnaryStep::Pow2 ? kernels::Map::Pow2
                                                    : kernels::Map::Negate;
  double x[kBlock];
  for (number* p : parts) {
    if (!p) continue;
    for (std::size_t first = 0; first < n; first += kBlock) {
      const std::size_t count = std::min(kBlock, n - first);
      kernels::load(p + first, 1, count, x);
      kernels::map(op, x, count, k);
      assignQuantizer_.quantizeDoubles(x, count);
      kernels::store(p + first, x, count);
    }
  }
  return true;
}

std::unique_ptr<fi> fi::bulkSum(const fi& b, const NumericType& T, bool subtract) const {
  // Complex sums are two real ones, part by part.
  if (getLogging() || !fitsDouble(type_) || !fitsDouble(b.type_) || !fitsDouble(T)) return nullptr;
  if (numel_ != 1 && b.numel_ != 1) checkElementwiseSize(b);
  // The exact sum must fit: from the lower grid to one bit above the larger magnitude.
  const bool cast = math_.getCastBeforeSum();
  const NumericType& left = cast ? T : type_;
  const int top = std::max(left.getWordLength() + left.getFixedExponent(),
                           b.getWordLength() + b.type_.getFixedExponent());
  const int bottom = std::min(left.getFixedExponent(), b.type_.getFixedExponent());
  if (top + 1 - bottom > kDoubleBits) return nullptr;
  fi& reg = *sumRegister_;
  const NumericType& R = reg.type_;
  if (!fitsDouble(R) || !onDoubles(reg.assignQuantizer_)) return nullptr;
  // With CastBeforeSum the left value is first quantized to the register's type.
  const DoubleSpan a = cast ? quantized(R, spanOf<int128>(type_)) : spanOf<int128>(type_);
  const DoubleSpan sum = sumSpan(a, spanOf<int128>(b.type_), subtract);
  const ElementwiseSteps steps{
      cast && !holds(R, spanOf<int128>(type_)) ? &reg.assignQuantizer_ : nullptr,
      subtract ? kernels::Combine::Subtract : kernels::Combine::Add,
      holds(R, sum) ? nullptr : &reg.assignQuantizer_, !holds(T, quantized(R, sum))};
  return elementwiseDoubles(b, T, reg, steps);
}

std::unique_ptr<fi> fi::bulkProduct(const fi& b, const NumericType& P) const {
  if (getLogging() || !qualifies(*this) || !qualifies(b) || !fitsDouble(P) ||
      getWordLength() + b.getWordLength() > kDoubleBits)
    return nullptr;
  if (numel_ != 1 && b.numel_ != 1) checkElementwiseSize(b);
  fi& reg = *productRegister_;
  if (!fitsDouble(reg.type_) || !onDoubles(reg.assignQuantizer_)) return nullptr;
  const DoubleSpan product = productSpan(spanOf<int128>(type_), spanOf<int128>(b.type_));
  const ElementwiseSteps steps{nullptr, kernels::Combine::Multiply,
                               holds(reg.type_, product) ? nullptr : &reg.assignQuantizer_,
                               !holds(P, quantized(reg.type_, product))};
  return elementwiseDoubles(b, P, reg, steps);
}

bool fi::bulkMatrixProduct(const fi& b, fi& result) const {
  const fi& reg = *productRegister_;
  const fi& acc = *reg.sumRegister_;
  const NumericType& S = acc.type_;
  const NumericType& P = reg.type_;
  if (getLogging() || !qualifies(*this) || !qualifies(b) || !fitsDouble(P) || !fitsDouble(S) ||
      getWordLength() + b.getWordLength() > kDoubleBits || n_ == 0 || !result.isreal() ||
      !onDoubles(reg.assignQuantizer_) || !onDoubles(acc.assignQuantizer_) ||
      !onDoubles(result.assignQuantizer_))
    return false;
  // Every accumulation must be exact in a double, as each product is.
  const int top =
      std::max(S.getWordLength() + S.getFixedExponent(), P.getWordLength() + P.getFixedExponent());
  if (top + 1 - std::min(S.getFixedExponent(), P.getFixedExponent()) > kDoubleBits) return false;
  std::vector<double> x(static_cast<std::size_t>(numel_)), y(static_cast<std::size_t>(b.numel_));
  if (!kernels::load(realData_, 1, x.size(), x.data()) ||
      !kernels::load(b.realData_, 1, y.size(), y.data()))
    return false;

  const quantizer& qp = reg.assignQuantizer_;
  const quantizer& qs = acc.assignQuantizer_;
  const std::size_t m = static_cast<std::size_t>(m_), n = static_cast<std::size_t>(n_);
  const std::size_t p = static_cast<std::size_t>(b.n_);
  std::vector<double> out(static_cast<std::size_t>(result.numel_));
  // Each product quantized to the product register, then added into the accumulator, which
  // quantizes after each addition. When none of these quantizations can change a value
  // (every partial sum of n products lies on the accumulator's grid and in its range) the
  // sums are exact and the product is plain arithmetic.
  const DoubleSpan product =
      quantized(P, productSpan(spanOf<int128>(type_), spanOf<int128>(b.type_)));
  const int128 terms = static_cast<int128>(n);
  const DoubleSpan partial{terms * std::min<int128>(product.lo, 0),
                           terms * std::max<int128>(product.hi, 0), product.e};
  const bool plain =
      holds(P, productSpan(spanOf<int128>(type_), spanOf<int128>(b.type_))) && holds(S, partial);
  std::vector<double> products(n);
  double lastProduct = 0.0;
  if (plain) {
    kernels::matrixProduct(x.data(), y.data(), out.data(), m, n, p);
    if (!out.empty()) lastProduct = x[m * n - 1] * y[n * p - 1];
  } else {
    for (std::size_t e = 0; e < out.size(); ++e) {
      poll_interrupt();
      const std::size_t i = e % m, j = e / m;
      for (std::size_t k = 0; k < n; ++k) products[k] = x[i + k * m] * y[k + j * n];
      qp.quantizeDoubles(products.data(), n);
      double sum = 0.0;
      qs.accumulateDoubles(sum, products.data(), n);
      out[e] = sum;
    }
    if (!out.empty()) lastProduct = products.back();
  }
  if (!holds(result.type_, quantized(S, partial)))
    result.assignQuantizer_.quantizeDoubles(out.data(), out.size());

  kernels::store(result.realData_, out.data(), out.size());
  if (!out.empty()) {
    // The registers and the current elements as the element path leaves them.
    reg.realData_[0] = lastProduct;
    acc.realData_[0] = out.back();
    acc.setIndex(0);
    setIndex(numel_ - 1);
    b.setIndex(b.numel_ - 1);
    result.index_ = result.numel_ - 1;
  }
  return true;
}

void fi::leaveIndicesAfterElementwise(const fi& b, fi& result) const {
  if (numel_ == 1) setIndex(0);
  if (b.numel_ == 1) b.setIndex(0);
  if (result.numel_ == 0) return;
  if (numel_ != 1) setIndex(result.numel_ - 1);
  if (b.numel_ != 1) b.setIndex(result.numel_ - 1);
  result.index_ = result.numel_ - 1;
}

}  // namespace corbel
