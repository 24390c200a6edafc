// The object system's built-in methods as every host runs them: "set", which lists the
// settable properties of an instance or the values of one enumerated property, or stores
// name/value pairs through the dispatcher.
#pragma once

#include <span>
#include <string_view>

#include "host/host_array.h"

namespace corbel {

class HostServices;

// Runs the built-in method `method` (inputs[0] is the object); "set" is the only one.
// set(obj) lists the settable properties, one per line ("  Name" or "  Name: [ a | b ]" for
// an enumerated type); set(obj, name) gives the value strings of an enumerated property as
// "[ a | b ]" (empty text for other types); either prints through host.print when no output
// is asked for and returns the text otherwise. set(obj, name, value, ...) stores each pair in
// turn and stops at the first failure. Failures are raised as HostError; the host records
// them in its error status.
void run_builtin_method(HostServices& host, std::string_view method, std::span<HostArray> outputs,
                        std::span<const HostArray> inputs);

}  // namespace corbel
