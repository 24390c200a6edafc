// fi: whole-array sums, differences, products and matrix products of double-backed
// binary-point arrays. They take the steps of the element operators in the same order
// (quantize the left operand to the sum type when CastBeforeSum is on, add or multiply
// exactly, quantize to the register's type, accumulate with a quantization after each
// addition, quantize to the result's type), on raw doubles and through the quantizer's
// double kernels, so their bits are the element path's bits. They apply only when no log
// is kept and every value and every exact intermediate fits a double's 53-bit mantissa.
// Complex sums are taken part by part; complex products are left to the element path.
#include <algorithm>
#include <vector>

#include "fi/element_storage.h"
#include "fi/fi.h"
#include "number/doublenumber.h"

namespace corbel {
namespace {

constexpr int kDoubleBits = 52;

bool fitsDouble(const NumericType& t) {
  return t.isFixed() && !t.isSlopeBiasScaled() && t.getWordLength() <= kDoubleBits;
}

// The operand whose shape an element-wise result takes (the other one when this is scalar).
const fi& shapeOf(const fi& a, const fi& b) {
  return a.numel() == 1 ? b : a;
}

bool qualifies(const fi& x) {
  return x.isreal() && fitsDouble(x.getNumericType());
}

// Reads the real (or imaginary) parts of elements first .. first + count - 1 of x (every
// one when step is 1, element 0 when it is 0) into out; false when one of them is not held
// in a double. A real array's imaginary parts are its zeros.
bool gather(const fi& x, int first, int count, int step, double* out, bool imagPart = false) {
  for (int i = 0; i < count; ++i) {
    const int k = (first + i) * step;
    const numberrepbody& body = (imagPart ? x.imag(k) : x.real(k)).gethandle().getbody();
    if (body.gettype() != numbertype::doublenumber) return false;
    out[i] = static_cast<const doublenumber&>(body).getelement();
  }
  return true;
}

}  // namespace

template <class Fill>
bool fi::fillDoubles(Fill fill, bool imagPart) {
  number*& target = imagPart ? *imagSlot_ : realData_;
  target = ElementStorage::makeDoubles(shared_->elements, fill);
  if (target != nullptr && imagPart) isreal_ = false;
  return target != nullptr;
}

template <class Combine>
std::unique_ptr<fi> fi::elementwiseDoubles(const fi& b, const NumericType& T, fi& reg,
                                           Combine combine) const {
  const fi& shape = shapeOf(*this, b);
  auto result =
      std::unique_ptr<fi>(new fi(shape.dims(), shape.ndims(), T, math_, Unfilled::Elements));
  const quantizer& q = reg.assignQuantizer_;
  const quantizer& r = result->assignQuantizer_;
  const int sa = numel_ == 1 ? 0 : 1, sb = b.numel_ == 1 ? 0 : 1;  // scalar expansion
  // Real parts, then (for complex operands) imaginary parts, each its own pass.
  double last[2] = {0.0, 0.0};
  const auto pass = [&](bool imagPart) {
    return result->fillDoubles(
        [&](std::size_t first, std::size_t count, double* out) {
          const int f = static_cast<int>(first), n = static_cast<int>(count);
          double y[ElementStorage::kBlock];
          if (!gather(*this, f, n, sa, out, imagPart) || !gather(b, f, n, sb, y, imagPart) ||
              !combine(out, y, count) || !q.quantizeDoubles(out, count) ||
              !r.quantizeDoubles(out, count))
            return false;
          last[imagPart] = out[n - 1];
          return true;
        },
        imagPart);
  };
  const bool complex = iscomplex() || b.iscomplex();
  if (!pass(false) || (complex && !pass(true))) return nullptr;
  // The register is left holding the last value, as the element path leaves it.
  if (complex) reg.coordinateComplexity(true);
  if (result->numel_ > 0) {
    reg.realData_[0] = last[0];
    if (complex) reg.imagRef(0) = last[1];
  }
  leaveIndicesAfterElementwise(b, *result);
  return result;
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
  const quantizer& q = reg.assignQuantizer_;
  // With CastBeforeSum the left value is first quantized to the register's type.
  return elementwiseDoubles(b, T, reg, [&](double* x, const double* y, std::size_t n) {
    if (cast && !q.quantizeDoubles(x, n)) return false;
    if (subtract)
      for (std::size_t i = 0; i < n; ++i) x[i] -= y[i];
    else
      for (std::size_t i = 0; i < n; ++i) x[i] += y[i];
    return true;
  });
}

std::unique_ptr<fi> fi::bulkProduct(const fi& b, const NumericType& P) const {
  if (getLogging() || !qualifies(*this) || !qualifies(b) || !fitsDouble(P) ||
      getWordLength() + b.getWordLength() > kDoubleBits)
    return nullptr;
  if (numel_ != 1 && b.numel_ != 1) checkElementwiseSize(b);
  return elementwiseDoubles(b, P, *productRegister_, [](double* x, const double* y, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) x[i] *= y[i];
    return true;
  });
}

bool fi::bulkMatrixProduct(const fi& b, fi& result) const {
  const fi& reg = *productRegister_;
  const fi& acc = *reg.sumRegister_;
  const NumericType& S = acc.type_;
  const NumericType& P = reg.type_;
  if (getLogging() || !qualifies(*this) || !qualifies(b) || !fitsDouble(P) || !fitsDouble(S) ||
      getWordLength() + b.getWordLength() > kDoubleBits || n_ == 0 || !result.isreal())
    return false;
  // Every accumulation must be exact in a double, as each product is.
  const int top =
      std::max(S.getWordLength() + S.getFixedExponent(), P.getWordLength() + P.getFixedExponent());
  if (top + 1 - std::min(S.getFixedExponent(), P.getFixedExponent()) > kDoubleBits) return false;
  std::vector<double> x(static_cast<std::size_t>(numel_)), y(static_cast<std::size_t>(b.numel_));
  if (!gather(*this, 0, numel_, 1, x.data()) || !gather(b, 0, b.numel_, 1, y.data())) return false;

  // Each result element as the element path makes it: every product quantized to the
  // product register, then added into the accumulator, which quantizes after each addition.
  const quantizer& qp = reg.assignQuantizer_;
  const quantizer& qs = acc.assignQuantizer_;
  const int m = m_, n = n_;
  std::vector<double> out(static_cast<std::size_t>(result.numel_));
  std::vector<double> products(static_cast<std::size_t>(n));
  double lastSum = 0.0;
  for (int e = 0; e < result.numel_; ++e) {
    const int i = e % m, j = e / m;
    for (int k = 0; k < n; ++k)
      products[static_cast<std::size_t>(k)] =
          x[static_cast<std::size_t>(i + k * m)] * y[static_cast<std::size_t>(k + j * n)];
    if (!qp.quantizeDoubles(products.data(), products.size())) return false;
    double sum = 0.0;
    if (!qs.accumulateDoubles(sum, products.data(), products.size())) return false;
    out[static_cast<std::size_t>(e)] = sum;
    lastSum = sum;
  }
  if (!result.assignQuantizer_.quantizeDoubles(out.data(), out.size())) return false;

  for (int e = 0; e < result.numel_; ++e) result.realData_[e] = out[static_cast<std::size_t>(e)];
  if (result.numel_ > 0) {
    // The registers and the current elements as the element path leaves them.
    reg.realData_[0] = products.back();
    acc.realData_[0] = lastSum;
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
