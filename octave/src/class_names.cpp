// The class-name table of the Octave host.
#include "class_names.h"

namespace corbel::octave_host {
namespace {

constexpr std::string_view kPackage = "embedded";

// Classes whose Octave name differs from their own.
struct Renamed {
  std::string_view core;
  std::string_view octave;
};
constexpr Renamed kRenamed[] = {
    {"CoreFi", "fi"},
    {"CoreQuantizer", "quantizer"},
};

}  // namespace

std::string octave_class_name(std::string_view core_name) {
  for (const Renamed& r : kRenamed) {
    if (r.core == core_name) return std::string(kPackage) + "." + std::string(r.octave);
  }
  return std::string(kPackage) + "." + std::string(core_name);
}

std::string core_class_name(std::string_view name) {
  const std::string prefix = std::string(kPackage) + ".";
  if (name.starts_with(prefix)) name.remove_prefix(prefix.size());
  for (const Renamed& r : kRenamed) {
    if (r.octave == name) return prefix + std::string(r.core);
  }
  return prefix + std::string(name);
}

}  // namespace corbel::octave_host
