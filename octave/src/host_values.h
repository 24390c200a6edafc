// Conversions between Octave values and host arrays: numbers of every class (real or
// complex, any number of dimensions), logical values, text and Corbel objects. Structs,
// cells and function handles become host arrays of their class without elements, so that
// the library refuses them with its own errors.
#pragma once

#include <octave/oct.h>

#include <span>
#include <vector>

#include "host/host_array.h"

namespace corbel::octave_host {

HostArray to_host(const octave_value& value);
std::vector<HostArray> to_host(const octave_value_list& values, int first = 0);

// A result for Octave: a logical scalar becomes a bool, a 1xN char array a string, an object
// reference a new Corbel value that takes over the array's reference. Arrays of classes
// without elements (which the library does not return) raise an internal error.
octave_value to_octave(HostArray&& value);
octave_value_list to_octave(std::vector<HostArray>&& values);

dim_vector to_dim_vector(const std::vector<std::size_t>& dims);

}  // namespace corbel::octave_host
