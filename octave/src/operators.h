// Octave's operator tables for Corbel values: sums, differences and products of two Corbel
// values go to the class's methods; every other operator, every mix with a built-in operand,
// concatenation and assignment into a built-in array raise an identified error.
#pragma once

#include <octave/ov-typeinfo.h>

namespace corbel::octave_host {

// Installs the entries for the registered Corbel type against itself and against every
// built-in value type already in the table.
void install_operators(octave::type_info& ti);

}  // namespace corbel::octave_host
