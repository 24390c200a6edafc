// fi: sums along a dimension. The terms of each line are added in order into a running sum
// held in the sum type for that many terms, quantized by that type after every addition, as
// an accumulator register of that type would hold it; at full precision the type holds every
// partial sum, so nothing rounds. Values are carried by their real-world values.
#include <vector>

#include "fi/exact_values.h"
#include "fi/fi.h"
#include "host/services.h"

namespace corbel {

fi::Lines fi::linesAlong(int dim, bool emptyBecomesOne) const {
  int d = dim - 1;
  if (dim <= 0) {
    d = 0;
    while (d < ndims() && dims_[static_cast<size_t>(d)] == 1) ++d;
    if (d == ndims()) d = 0;
  }
  Lines lines{std::vector<int>(dims_), 0, 1, 1};
  std::vector<int>& outDims = lines.outDims;
  if (d >= ndims()) {
    // A dimension past the last: lines of one element, one for each element in order.
    lines.length = 1;
    lines.stride = numel_;
    return lines;
  }
  lines.length = outDims[static_cast<size_t>(d)];
  for (int k = 0; k < d; ++k) lines.stride *= outDims[static_cast<size_t>(k)];
  for (size_t k = static_cast<size_t>(d) + 1; k < outDims.size(); ++k) lines.outer *= outDims[k];
  if (lines.length != 0 || emptyBecomesOne) outDims[static_cast<size_t>(d)] = 1;
  while (outDims.size() > 2 && outDims.back() == 1) outDims.pop_back();
  return lines;
}

std::unique_ptr<fi> fi::leadingdimension_sum(int dim) const {
  // A 0x0 array sums to one zero, as Octave's sum of [] does.
  const bool none = ndims() == 2 && dims_[0] == 0 && dims_[1] == 0 && dim <= 0;
  const Lines lines = none ? Lines{{1, 1}, 0, 1, 1} : linesAlong(dim, true);
  const NumericType T = getSumTypeForAddends(lines.length);
  auto r = std::make_unique<fi>(lines.outDims.data(), static_cast<int>(lines.outDims.size()), T,
                                math_, iscomplex());
  Rational sum, term;
  for (int o = 0; o < lines.outer; ++o)
    for (int s = 0; s < lines.stride; ++s) {
      const int out = o * lines.stride + s, first = o * lines.stride * lines.length + s;
      for (bool imagPart : {false, true}) {
        if (imagPart && isreal_) break;
        number& element = imagPart ? r->imagRef(out) : r->realRef(out);
        mpq_set_ui(sum.v, 0, 1);
        for (int k = 0; k < lines.length; ++k) {
          poll_interrupt();
          const int i = first + k * lines.stride;
          realWorld(term.v, imagPart ? imag(i) : real(i), type_);
          mpq_add(sum.v, sum.v, term.v);
          r->storeRealWorld(element, sum.v);
          realWorld(sum.v, element, T);
        }
      }
    }
  if (getLogging()) r->reportQuantizations("sum");
  return r;
}

}  // namespace corbel
