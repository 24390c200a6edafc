// embedded: the package that holds every class of the module, its enumerated types and
// the host helpers through which the module reports errors and calls host functions.
#pragma once

#include <string_view>

#include "types/enumerations.h"

namespace corbel {

class embedded {
 public:
  using RoundModeEnum = corbel::RoundModeEnum;
  using OverflowModeEnum = corbel::OverflowModeEnum;

  // The package's name as the host knows it; class names are formed from it.
  static constexpr std::string_view getEmbeddedPackageName() { return "embedded"; }
};

}  // namespace corbel
