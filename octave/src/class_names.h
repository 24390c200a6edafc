// The names Octave shows for the classes of the "embedded" package, and the way back from
// any name a user may give to the class the object system knows. No Octave header here, so
// that the build-time stub writer shares the table.
#pragma once

#include <string>
#include <string_view>

namespace corbel::octave_host {

// "CoreFi" -> "embedded.fi", "CoreQuantizer" -> "embedded.quantizer", any other class
// "<name>" -> "embedded.<name>".
std::string octave_class_name(std::string_view core_name);

// "fi", "embedded.fi", "CoreFi" and "embedded.CoreFi" all give "embedded.CoreFi"; a name
// outside the table keeps its own class part ("fimath" -> "embedded.fimath").
std::string core_class_name(std::string_view name);

}  // namespace corbel::octave_host
