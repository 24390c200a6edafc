// The host services of a running Octave: console text through Octave's pager (so evalc and
// diary see it), matrices through Octave's own number printer (so 'format long' applies),
// warnings and errors with identifiers, calls of Octave functions with error trapping, and
// the object system's built-in methods.
#pragma once

#include <ostream>

#include "host/services.h"

namespace corbel::octave_host {

class OctaveHost : public HostServices {
 public:
  void print(std::string_view text) override;
  void print_matrix(const HostArray& values) override;
  void warning(std::string_view identifier, std::string_view text) override;
  int call_function(std::string_view name, std::span<HostArray> outputs,
                    std::span<const HostArray> inputs) override;
  void call_builtin_method(std::string_view method, std::span<HostArray> outputs,
                           std::span<const HostArray> inputs, XoErrorStatus& status) override;
  // Throws octave::interrupt_exception when the user has pressed Ctrl-C.
  void poll_interrupt() override;

  // Where console text goes: Octave's standard output unless an OutputTo is alive.
  std::ostream& out() const;

 private:
  friend class OutputTo;
  std::ostream* out_ = nullptr;
};

// The one Octave host of the process (installed by the registration function).
OctaveHost& the_octave_host();

// Sends the host's console text to another stream for the lifetime of a scope: a value
// printed inside a struct or cell, or the text that 'str = disp (a)' returns.
class OutputTo {
 public:
  explicit OutputTo(std::ostream& os);
  ~OutputTo();
  OutputTo(const OutputTo&) = delete;
  OutputTo& operator=(const OutputTo&) = delete;

 private:
  std::ostream* previous_;
};

}  // namespace corbel::octave_host
