// What every fuzzer shares: an in-process host for the library's warnings, a reader that
// takes numbers and text from the fuzzer's bytes, and the rule that a library failure is a
// HostError: any other exception is a finding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <string>

#include "host/host_error.h"
#include "host/inprocess_host.h"

namespace corbel::fuzz {

// The host every fuzzer runs under, made once.
inline void useHost() {
  static InProcessHost host(nullptr, false);
  static ScopedHost scope(host);
}

// Reads integers and text from the front of the input, zero once it runs out.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  std::uint64_t bits(int n) {
    std::uint64_t v = 0;
    for (int i = 0; i < (n + 7) / 8; ++i) v = v << 8 | (at_ < size_ ? data_[at_++] : 0);
    return n >= 64 ? v : v & ((std::uint64_t{1} << n) - 1);
  }
  // An integer in [lo, hi].
  long range(long lo, long hi) {
    return lo + static_cast<long>(bits(32) % static_cast<std::uint64_t>(hi - lo + 1));
  }
  double rawDouble() {
    const std::uint64_t b = bits(64);
    double d;
    std::memcpy(&d, &b, sizeof d);
    return d;
  }
  // The rest of the input as text.
  std::string rest() {
    std::string s(reinterpret_cast<const char*>(data_ + at_), size_ - at_);
    at_ = size_;
    return s;
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_, at_ = 0;
};

// Runs f; a HostError is the library refusing the input, anything else a finding.
template <class F>
void expectOnlyHostErrors(F f) {
  try {
    f();
  } catch (const HostError&) {
  } catch (const std::exception& e) {
    std::fprintf(stderr, "not a HostError: %s\n", e.what());
    std::abort();
  }
}

}  // namespace corbel::fuzz
