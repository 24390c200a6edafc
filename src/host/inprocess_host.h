// The in-process host: host services for C++ programs and the unit tests. It records
// console output and warnings so that they can be read back, and can echo them.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "host/services.h"

namespace corbel {

class InProcessHost : public HostServices {
 public:
  struct Warning {
    std::string identifier;
    std::string text;
    bool operator==(const Warning&) const = default;
  };

  // echo: where console text and warnings are also written (nullptr: nowhere).
  // record: whether they are kept for take_console() and take_warnings().
  explicit InProcessHost(std::FILE* echo = nullptr, bool record = true)
      : echo_(echo), record_(record) {}

  void print(std::string_view text) override;
  void warning(std::string_view identifier, std::string_view text) override;

  // Return what was recorded since the last call and forget it.
  std::string take_console();
  std::vector<Warning> take_warnings();

 private:
  std::FILE* echo_;
  bool record_;
  std::string console_;
  std::vector<Warning> warnings_;
};

// Installs a host for the lifetime of a scope, then restores the previous one.
class ScopedHost {
 public:
  explicit ScopedHost(HostServices& host) : previous_(set_host_services(&host)) {}
  ~ScopedHost() { set_host_services(previous_); }
  ScopedHost(const ScopedHost&) = delete;
  ScopedHost& operator=(const ScopedHost&) = delete;

 private:
  HostServices* previous_;
};

}  // namespace corbel
