// The services a host gives the module (console, warnings, ...), and the slot that
// holds the one implementation active at a time.
#pragma once

#include <string_view>

namespace corbel {

class HostServices {
 public:
  virtual ~HostServices() = default;

  // Writes text to the host's console as it is (no newline is added).
  virtual void print(std::string_view text) = 0;

  // Issues a warning with a message identifier; execution continues.
  virtual void warning(std::string_view identifier, std::string_view text) = 0;
};

// The active host. Until a host installs itself this is a process-wide in-process host
// that writes console text and warnings to standard output.
HostServices& host_services();

// Makes `host` the active host and returns the previous one; nullptr restores the
// process-wide default. The caller keeps ownership.
HostServices* set_host_services(HostServices* host);

}  // namespace corbel
