// The tag that says which representation a number's body uses.
#pragma once

#include <cstdint>

namespace corbel {

enum class numbertype : std::int32_t {
  doublenumber = 0,  // an IEEE double
  mpnumber = 1,      // a multiprecision binary float
};

}  // namespace corbel
