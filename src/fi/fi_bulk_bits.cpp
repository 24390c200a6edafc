// fi: the bit operations as whole-array loops over inline doubles, for fixed-point words of at
// most 52 bits. They apply when every element of the operands is an inline double (so the
// element path too would take the 64-bit forms) and no log is kept, and give the element
// path's bits; otherwise they decline and the element path runs. Positions are checked
// before any storage is written, so a refusal leaves nothing behind.
#include <algorithm>
#include <cmath>
#include <optional>

#include "fi/bit_kernels.h"
#include "fi/bulk_parts.h"
#include "fi/fi.h"
#include "host/messages.h"

namespace corbel {
namespace {

using bulk::kBlock;

// The word of x for the loops, or nothing when they do not apply; with `inlineChecked` also
// when an element is not an inline double.
std::optional<kernels::BitFormat> bitFormat(const fi& x, bool inlineChecked = true) {
  const NumericType& t = x.getNumericType();
  const int w = t.getWordLength(), e = t.getFixedExponent();
  if (x.getLogging() || !t.isFixed() || w > 52 || e < -1000 || e + w > 1000) return std::nullopt;
  if (inlineChecked && !bulk::allInline(x)) return std::nullopt;
  return kernels::BitFormat(t.getSigned(), w, e);
}

// A position of a host array as the element path reads it (truncated toward zero, beyond
// the long range refused), checked against 1 .. w.
long checkedPosition(const HostArray& positions, std::size_t k, int w, Msg outOfRange) {
  const double v = positions.real_as_double(k);
  if (!(v >= 1 && v <= w && v == std::trunc(v))) raise(outOfRange);
  return static_cast<long>(v);
}

// Every position, checked; the refusal comes before anything is written.
std::vector<long> checkedPositions(const HostArray& positions, int w, Msg outOfRange) {
  std::vector<long> out(positions.numel());
  for (std::size_t k = 0; k < out.size(); ++k)
    out[k] = checkedPosition(positions, k, w, outOfRange);
  return out;
}

}  // namespace

std::unique_ptr<fi> fi::bulkBitwise(const fi& b, BitOp op) const {
  // The loop itself finds elements that are not inline doubles.
  const auto f = bitFormat(*this, false);
  if (!f || !bitFormat(b, false)) return nullptr;
  const fi& shape = bulk::shapeOf(*this, b);
  auto r =
      std::unique_ptr<fi>(new fi(shape.dims(), shape.ndims(), type_, math_, Unfilled::Elements));
  const auto n = static_cast<std::size_t>(r->numel_);
  const kernels::Bitwise kind = bulk::bitwiseOf(op);
  for (bool imagPart : {false, true}) {
    if (imagPart && isreal_ && b.isreal_) break;
    std::size_t sa, sb;
    const number* pa = bulk::partOf(*this, imagPart, sa);
    const number* pb = bulk::partOf(b, imagPart, sb);
    if (!kernels::bitwise(kind, *f, pa, sa, pb, sb, r->rawElements(imagPart), n)) {
      r->discardRawElements(imagPart);
      return nullptr;
    }
  }
  return r;
}

bool fi::bulkBitget(const HostArray& positions, HostArray& bits) const {
  const auto f = bitFormat(*this);
  if (!f) return false;
  const std::vector<long> at = checkedPositions(positions, getWordLength(), Msg::BitgetOutOfRange);
  kernels::getBits(*f, &real(0), numel_ == 1 ? 0 : 1, at.data(), at.size() == 1 ? 0 : 1,
                   static_cast<std::uint8_t*>(bits.real_data()), bits.numel());
  return true;
}

std::unique_ptr<fi> fi::bulkBitset(const HostArray& positions, const HostArray& values,
                                   const std::vector<int>& dims) const {
  const auto f = bitFormat(*this);
  if (!f) return nullptr;
  const std::vector<long> at = checkedPositions(positions, getWordLength(), Msg::BitsetOutOfRange);
  std::vector<std::uint8_t> bits(values.numel());
  for (std::size_t k = 0; k < bits.size(); ++k) bits[k] = values.real_as_double(k) != 0.0;
  auto r = std::unique_ptr<fi>(
      new fi(dims.data(), static_cast<int>(dims.size()), type_, math_, Unfilled::Elements));
  const auto n = static_cast<std::size_t>(r->numel_);
  const std::size_t step = numel_ == 1 ? 0 : 1;
  kernels::setBits(*f, &real(0), step, at.data(), at.size() == 1 ? 0 : 1, bits.data(),
                   bits.size() == 1 ? 0 : 1, r->rawElements(false), n);
  // The imaginary parts are copied as they are.
  if (iscomplex()) {
    number* im = r->rawElements(true);
    const number* from = &imag(0);
    for (std::size_t k = 0; k < n; ++k) number::placedouble(im + k, from[k * step].inlinedouble());
  }
  return r;
}

}  // namespace corbel
