// fi: whole-array sums and products of double-backed binary-point arrays. They take the
// steps of the element operators in the same order (quantize the left operand to the sum
// type when CastBeforeSum is on, add or multiply exactly, quantize to the register's type,
// quantize to the result's type), on raw doubles and through the quantizer's double
// kernel, so their bits are the element path's bits. They apply only when no log is kept
// and every value and every exact intermediate fits a double's 53-bit mantissa.
#include <algorithm>

#include "fi/element_storage.h"
#include "fi/fi.h"
#include "number/doublenumber.h"

namespace corbel {
namespace {

constexpr int kDoubleBits = 52;

bool qualifies(const fi& x) {
  return x.isreal() && x.isFixed() && !x.isSlopeBiasScaled() && x.getWordLength() <= kDoubleBits;
}

// Reads elements first .. first + count - 1 of x (every one when step is 1, element 0
// when it is 0) into out; false when one of them is not held in a double.
bool gather(const fi& x, int first, int count, int step, double* out) {
  for (int i = 0; i < count; ++i) {
    const numberrepbody& body = x.real((first + i) * step).gethandle().getbody();
    if (body.gettype() != numbertype::doublenumber) return false;
    out[i] = static_cast<const doublenumber&>(body).getelement();
  }
  return true;
}

}  // namespace

template <class Fill>
bool fi::fillDoubles(Fill fill) {
  realData_ = ElementStorage::makeDoubles(shared_->elements, fill);
  return realData_ != nullptr;
}

std::unique_ptr<fi> fi::bulkSum(const fi& b, const NumericType& T, bool subtract) const {
  if (getLogging() || !qualifies(*this) || !qualifies(b) || !T.isFixed() || T.isSlopeBiasScaled() ||
      T.getWordLength() > kDoubleBits)
    return nullptr;
  if (numel_ != 1 && b.numel_ != 1) checkElementwiseSize(b);
  // The exact sum must fit: from the lower grid to one bit above the larger magnitude.
  const bool cast = math_.getCastBeforeSum();
  const NumericType& left = cast ? T : type_;
  const int top = std::max(left.getWordLength() + left.getFixedExponent(),
                           b.getWordLength() + b.type_.getFixedExponent());
  const int bottom = std::min(left.getFixedExponent(), b.type_.getFixedExponent());
  if (top + 1 - bottom > kDoubleBits) return nullptr;

  const fi& reg = *sumRegister_;
  const quantizer& q = reg.assignQuantizer_;
  auto result = std::unique_ptr<fi>(new fi(numel_ == 1 ? b : *this, T, math_, Unfilled::Shape));
  const quantizer& r = result->assignQuantizer_;
  const int sa = numel_ == 1 ? 0 : 1, sb = b.numel_ == 1 ? 0 : 1;  // scalar expansion
  double last = 0.0;
  const auto fill = [&](std::size_t first, std::size_t count, double* out) {
    const int f = static_cast<int>(first), n = static_cast<int>(count);
    double y[ElementStorage::kBlock];
    if (!gather(*this, f, n, sa, out) || !gather(b, f, n, sb, y)) return false;
    if (cast && !q.quantizeDoubles(out, count)) return false;
    if (subtract)
      for (int i = 0; i < n; ++i) out[i] -= y[i];
    else
      for (int i = 0; i < n; ++i) out[i] += y[i];
    if (!q.quantizeDoubles(out, count) || !r.quantizeDoubles(out, count)) return false;
    last = out[n - 1];
    return true;
  };
  if (!result->fillDoubles(fill)) return nullptr;
  // The register is left holding the last sum, as the element path leaves it.
  if (result->numel_ > 0) reg.realData_[0] = last;
  return result;
}

std::unique_ptr<fi> fi::bulkProduct(const fi& b, const NumericType& P) const {
  if (getLogging() || !qualifies(*this) || !qualifies(b) || !P.isFixed() || P.isSlopeBiasScaled() ||
      P.getWordLength() > kDoubleBits || getWordLength() + b.getWordLength() > kDoubleBits)
    return nullptr;
  if (numel_ != 1 && b.numel_ != 1) checkElementwiseSize(b);
  const fi& reg = *productRegister_;
  const quantizer& q = reg.assignQuantizer_;
  auto result = std::unique_ptr<fi>(new fi(numel_ == 1 ? b : *this, P, math_, Unfilled::Shape));
  const quantizer& r = result->assignQuantizer_;
  const int sa = numel_ == 1 ? 0 : 1, sb = b.numel_ == 1 ? 0 : 1;
  double last = 0.0;
  const auto fill = [&](std::size_t first, std::size_t count, double* out) {
    const int f = static_cast<int>(first), n = static_cast<int>(count);
    double y[ElementStorage::kBlock];
    if (!gather(*this, f, n, sa, out) || !gather(b, f, n, sb, y)) return false;
    for (int i = 0; i < n; ++i) out[i] *= y[i];
    if (!q.quantizeDoubles(out, count) || !r.quantizeDoubles(out, count)) return false;
    last = out[n - 1];
    return true;
  };
  if (!result->fillDoubles(fill)) return nullptr;
  if (result->numel_ > 0) reg.realData_[0] = last;
  return result;
}

}  // namespace corbel
