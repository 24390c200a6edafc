// Index expressions on an array of Corbel elements, turned into the positions and layouts the
// library's element methods take, by Octave's own indexing of double arrays, so that every
// index form, growth rule and index error is Octave's.
#pragma once

#include <octave/oct.h>

namespace corbel::octave_host {

// The one-based position that subscripts all real double scalars within the dimensions
// name, or 0 when the index takes the general way.
octave_idx_type scalar_position(const dim_vector& dv, const octave_value_list& idx);
// The positions a(idx) reads, shaped like the result.
NDArray index_positions(const dim_vector& dv, const octave_value_list& idx);
// The layout of the array after a(idx) = v, for v of dimensions rhs, or after a(idx) = []
// when rhs is null: -p keeps element p, p > 0 takes value p, 0 is a new zero.
NDArray assignment_layout(const dim_vector& dv, const octave_value_list& idx,
                          const dim_vector* rhs);

// The positions of permute (a, order) (or its inverse), shaped like the result.
NDArray permuted_positions(const dim_vector& dv, const Array<int>& order, bool inverse);

// The layout of an array of dimensions dv resized to `to`, elements keeping their subscripts.
NDArray resized_layout(const dim_vector& dv, const dim_vector& to);
// The positions in an array of dimensions dv of a block of dimensions block starting at the
// zero-based subscripts `at`, shaped like the block.
NDArray placed_positions(const dim_vector& dv, const dim_vector& block,
                         const Array<octave_idx_type>& at);

}  // namespace corbel::octave_host
