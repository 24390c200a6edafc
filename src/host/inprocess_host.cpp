// The in-process host and the active-host slot.
#include "host/inprocess_host.h"

#include <utility>

namespace corbel {
namespace {

HostServices& default_host() {
  static InProcessHost host(stdout, false);
  return host;
}

HostServices* active_host = nullptr;

}  // namespace

HostServices& host_services() {
  return active_host ? *active_host : default_host();
}

HostServices* set_host_services(HostServices* host) {
  HostServices* previous = active_host;
  active_host = host;
  return previous;
}

void InProcessHost::print(std::string_view text) {
  if (echo_) std::fwrite(text.data(), 1, text.size(), echo_);
  if (record_) console_.append(text);
}

void InProcessHost::warning(std::string_view identifier, std::string_view text) {
  if (echo_) std::fprintf(echo_, "Warning: %.*s\n", static_cast<int>(text.size()), text.data());
  if (record_) warnings_.push_back({std::string(identifier), std::string(text)});
}

std::string InProcessHost::take_console() {
  return std::exchange(console_, {});
}

std::vector<InProcessHost::Warning> InProcessHost::take_warnings() {
  return std::exchange(warnings_, {});
}

}  // namespace corbel
