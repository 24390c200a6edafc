// fi: whole-array sums and products of double-backed binary-point arrays. They take the
// steps of the element operators in the same order (quantize the left operand to the sum
// type when CastBeforeSum is on, add or multiply exactly, quantize to the register's type,
// quantize to the result's type), on raw doubles and through the quantizer's double
// kernel, so their bits are the element path's bits. They apply only when no log is kept
// and every value and every exact intermediate fits a double's 53-bit mantissa.
#include <algorithm>
#include <initializer_list>

#include "fi/fi.h"

namespace corbel {
namespace {

constexpr int kDoubleBits = 52;
// Elements per block: the working values stay in a small stack buffer.
constexpr int kBlock = 256;

bool qualifies(const fi& x) {
  return x.isreal() && x.isFixed() && !x.isSlopeBiasScaled() && x.getWordLength() <= kDoubleBits;
}

// Whether every element of x is held in a double.
bool doubleBacked(const fi& x) {
  for (int i = 0; i < x.numel(); ++i)
    if (x.real(i).gettype() != numbertype::doublenumber) return false;
  return true;
}

// Runs a whole-array operation block by block: f(first, count, out) fills out[0..count)
// with the results for elements first.., each quantizer in `steps` is applied to the
// block in turn, and the values are stored into the result.
template <class F>
bool runBlocks(fi& result, std::initializer_list<const quantizer*> steps, F f, double& last) {
  double out[kBlock];
  for (int first = 0; first < result.numel(); first += kBlock) {
    const int count = std::min(kBlock, result.numel() - first);
    f(first, count, out);
    for (const quantizer* q : steps)
      if (!q->quantizeDoubles(out, static_cast<size_t>(count))) return false;
    for (int i = 0; i < count; ++i) result.realRef(first + i) = out[i];
    last = out[count - 1];
  }
  return true;
}

}  // namespace

std::unique_ptr<fi> fi::bulkSum(const fi& b, const NumericType& T, bool subtract) const {
  if (getLogging() || !qualifies(*this) || !qualifies(b) || !T.isFixed() || T.isSlopeBiasScaled() ||
      T.getWordLength() > kDoubleBits)
    return nullptr;
  if (numel_ != 1 && b.numel_ != 1) checkElementwiseSize(b);
  // The exact sum must fit: from the lower grid to one bit above the larger magnitude.
  const NumericType& left = math_.getCastBeforeSum() ? T : type_;
  const int top = std::max(left.getWordLength() + left.getFixedExponent(),
                           b.getWordLength() + b.type_.getFixedExponent());
  const int bottom = std::min(left.getFixedExponent(), b.type_.getFixedExponent());
  if (top + 1 - bottom > kDoubleBits || !doubleBacked(*this) || !doubleBacked(b)) return nullptr;

  const fi& reg = *sumRegister_;
  const quantizer& q = reg.assignQuantizer_;
  const bool cast = math_.getCastBeforeSum();
  const fi& shape = numel_ == 1 ? b : *this;
  auto result = std::make_unique<fi>(shape.dims(), shape.ndims(), T, math_, false);
  const int sa = numel_ == 1 ? 0 : 1, sb = b.numel_ == 1 ? 0 : 1;  // scalar expansion
  const auto block = [&](int first, int count, double* out) {
    double x[kBlock];
    for (int i = 0; i < count; ++i) x[i] = realData_[(first + i) * sa].todouble();
    if (cast) q.quantizeDoubles(x, static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
      const double y = b.realData_[(first + i) * sb].todouble();
      out[i] = subtract ? x[i] - y : x[i] + y;
    }
  };
  double last = 0.0;
  if (!runBlocks(*result, {&q, &result->assignQuantizer_}, block, last)) return nullptr;
  // The register is left holding the last sum, as the element path leaves it.
  reg.realData_[0] = last;
  return result;
}

std::unique_ptr<fi> fi::bulkProduct(const fi& b, const NumericType& P) const {
  if (getLogging() || !qualifies(*this) || !qualifies(b) || !P.isFixed() || P.isSlopeBiasScaled() ||
      P.getWordLength() > kDoubleBits || getWordLength() + b.getWordLength() > kDoubleBits)
    return nullptr;
  if (numel_ != 1 && b.numel_ != 1) checkElementwiseSize(b);
  if (!doubleBacked(*this) || !doubleBacked(b)) return nullptr;
  const fi& reg = *productRegister_;
  const fi& shape = numel_ == 1 ? b : *this;
  auto result = std::make_unique<fi>(shape.dims(), shape.ndims(), P, math_, false);
  const int sa = numel_ == 1 ? 0 : 1, sb = b.numel_ == 1 ? 0 : 1;
  const auto block = [&](int first, int count, double* out) {
    for (int i = 0; i < count; ++i)
      out[i] = realData_[(first + i) * sa].todouble() * b.realData_[(first + i) * sb].todouble();
  };
  double last = 0.0;
  if (!runBlocks(*result, {&reg.assignQuantizer_, &result->assignQuantizer_}, block, last))
    return nullptr;
  reg.realData_[0] = last;
  return result;
}

}  // namespace corbel
