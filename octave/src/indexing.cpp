// Positions and layouts of index expressions, from Octave's indexing of double arrays.
#include "indexing.h"

#include <algorithm>
#include <cmath>

#include "fi/fi.h"

namespace corbel::octave_host {
namespace {

// The positions 1 .. numel, shaped like dv; negated with `kept`.
NDArray numbered(const dim_vector& dv, bool kept) {
  NDArray a(dv);
  double* p = a.fortran_vec();
  for (octave_idx_type k = 0; k < a.numel(); ++k) p[k] = kept ? -(k + 1.0) : k + 1.0;
  return a;
}

// A real double scalar with an integer value in 1 .. extent, or 0.
octave_idx_type scalar_subscript(const octave_value& v, octave_idx_type extent) {
  if (!v.is_double_type() || !v.is_real_scalar()) return 0;
  const double d = v.double_value();
  if (d != std::trunc(d) || d < 1 || d > static_cast<double>(extent)) return 0;
  return static_cast<octave_idx_type>(d);
}

// The number of elements after a(idx) = v: every subscript's extent, the last one counting
// the dimensions it folds together.
double grown_numel(const dim_vector& dv, const octave_value_list& idx) {
  const int n = idx.length();
  if (n == 0) return static_cast<double>(dv.numel());
  double count = 1;
  for (int i = 0; i < n; ++i) {
    octave_idx_type extent = 1;
    if (i == n - 1)
      for (int d = i; d < dv.ndims(); ++d) extent *= dv(d);
    else
      extent = i < dv.ndims() ? dv(i) : 1;
    count *= static_cast<double>(idx(i).index_vector().extent(extent));
  }
  return count;
}

}  // namespace

octave_idx_type scalar_position(const dim_vector& dv, const octave_value_list& idx) {
  const int n = idx.length();
  if (n == 1) return scalar_subscript(idx(0), dv.numel());
  if (n != dv.ndims()) return 0;
  octave_idx_type position = 0, stride = 1;
  for (int i = 0; i < n; ++i) {
    const octave_idx_type s = scalar_subscript(idx(i), dv(i));
    if (s == 0) return 0;
    position += (s - 1) * stride;
    stride *= dv(i);
  }
  return position + 1;
}

NDArray index_positions(const dim_vector& dv, const octave_value_list& idx) {
  return octave_value(numbered(dv, false)).index_op(idx).array_value();
}

NDArray assignment_layout(const dim_vector& dv, const octave_value_list& idx,
                          const dim_vector* rhs) {
  // A growth too large for one array is refused before its layout is made.
  if (rhs) fi::checkElementCount(grown_numel(dv, idx));
  NDArray layout = numbered(dv, true);
  Array<octave::idx_vector> ia(dim_vector(idx.length(), 1));
  for (int i = 0; i < idx.length(); ++i) ia(i) = idx(i).index_vector();
  if (rhs)
    layout.assign(ia, numbered(*rhs, false), 0.0);
  else
    layout.delete_elements(ia);
  return layout;
}

NDArray permuted_positions(const dim_vector& dv, const Array<int>& order, bool inverse) {
  return numbered(dv, false).permute(order, inverse);
}

NDArray resized_layout(const dim_vector& dv, const dim_vector& to) {
  NDArray layout = numbered(dv, true);
  layout.resize(to, 0.0);
  return layout;
}

NDArray placed_positions(const dim_vector& dv, const dim_vector& block,
                         const Array<octave_idx_type>& at) {
  NDArray positions(block);
  double* p = positions.fortran_vec();
  const int nd = block.ndims();
  Array<octave_idx_type> s(dim_vector(nd, 1), 0);  // the block subscript, first fastest
  for (octave_idx_type k = 0; k < positions.numel(); ++k) {
    octave_idx_type linear = 0, stride = 1;
    const int all = std::max(nd, static_cast<int>(dv.ndims()));
    for (int i = 0; i < all; ++i) {
      const octave_idx_type sub = (i < nd ? s(i) : 0) + (i < at.numel() ? at(i) : 0);
      linear += sub * stride;
      stride *= i < dv.ndims() ? dv(i) : 1;
    }
    p[k] = static_cast<double>(linear + 1);
    for (int i = 0; i < nd && ++s(i) == block(i); ++i) s(i) = 0;
  }
  return positions;
}

}  // namespace corbel::octave_host
