// fi: max and min of real fixed-point arrays as whole-array loops over inline doubles. Both
// operands' elements are compared as doubles, which for finite values is the exact order;
// the left (or first) of equal elements is kept, zeros of either sign being equal, as in the
// element path. They decline (and the element path runs) for complex arrays, which compare
// by magnitude, for other data types, when a log is kept and when an element is not an
// inline double.
#include "fi/bulk_parts.h"
#include "fi/element_kernels.h"
#include "fi/fi.h"

namespace corbel {
namespace {

bool selectable(const fi& x) {
  return !x.getLogging() && x.isreal() && x.getNumericType().isFixed() && x.getWordLength() <= 52 &&
         bulk::allInline(x);
}

}  // namespace

std::unique_ptr<fi> fi::bulkSelect(const fi& b, bool larger) const {
  if (!selectable(*this) || !selectable(b)) return nullptr;
  const fi& shape = bulk::shapeOf(*this, b);
  auto r =
      std::unique_ptr<fi>(new fi(shape.dims(), shape.ndims(), type_, math_, Unfilled::Elements));
  std::size_t sa, sb;
  const number* pa = bulk::partOf(*this, false, sa);
  const number* pb = bulk::partOf(b, false, sb);
  kernels::select(larger, pa, sa, pb, sb, r->rawElements(false),
                  static_cast<std::size_t>(r->numel_));
  return r;
}

std::unique_ptr<fi> fi::bulkReduceSelect(const std::vector<int>& outDims, int outer, int stride,
                                         int length, bool larger, double* index) const {
  if (length == 0 || !selectable(*this) || !bulk::allInline(*this)) return nullptr;
  auto r = std::unique_ptr<fi>(
      new fi(outDims.data(), static_cast<int>(outDims.size()), type_, math_, Unfilled::Elements));
  number* values = r->rawElements(false);
  if (r->numel_ > 0)
    kernels::reduceSelect(larger, &real(0), static_cast<std::size_t>(outer),
                          static_cast<std::size_t>(stride), static_cast<std::size_t>(length),
                          values, index);
  return r;
}

}  // namespace corbel
