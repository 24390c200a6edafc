// The services a host gives the module (console, warnings, host function calls with error
// trapping, the object system's built-in methods), and the slot that holds the one
// implementation active at a time.
#pragma once

#include <span>
#include <string_view>

#include "host/host_array.h"
#include "host/xo_error_status.h"

namespace corbel {

// The error mode under which a trapped failure makes a host call return a status.
inline constexpr int kHostErrorModeReturn = -1;

class HostServices {
 public:
  virtual ~HostServices() = default;

  // Writes text to the host's console as it is (no newline is added).
  virtual void print(std::string_view text) = 0;

  // Prints a real or complex double matrix in the host's compact style, without a
  // variable name.
  virtual void print_matrix(const HostArray& values) = 0;

  // Issues a warning with a message identifier; execution continues.
  virtual void warning(std::string_view identifier, std::string_view text) = 0;

  // Calls the host function `name`; outputs.size() is the number of results asked for and
  // the function fills them in. Returns 0 on success. A failure (including an unknown name)
  // becomes the host's last error (see "lasterr"); then, if the error trap is on and the
  // error mode is kHostErrorModeReturn, the call returns a non-zero status with the outputs
  // empty, and otherwise the failure is raised as a HostError.
  virtual int call_function(std::string_view name, std::span<HostArray> outputs,
                            std::span<const HostArray> inputs) = 0;

  // The error trap: whether a failing host call may return a status instead of raising.
  void set_error_trap(bool on) { trap_ = on; }
  bool error_trap() const { return trap_; }

  // The error mode; set_error_mode returns the previous mode.
  int set_error_mode(int mode) {
    const int previous = mode_;
    mode_ = mode;
    return previous;
  }
  int error_mode() const { return mode_; }

  // Whether a failing host call returns a status now (the trap on, the mode "return").
  bool returns_status() const { return trap_ && mode_ == kHostErrorModeReturn; }

  // Calls a built-in method of the object system (inputs[0] is the object). Failures are
  // recorded in `status`, in order, and become the host's last error; none is raised.
  virtual void call_builtin_method(std::string_view method, std::span<HostArray> outputs,
                                   std::span<const HostArray> inputs, XoErrorStatus& status) = 0;

  // Lets the user stop a long operation: throws the host's own interrupt exception when an
  // interrupt is pending, and otherwise returns at once. The library calls it between
  // elements of its long loops, at points where unwinding leaves every operand as it was
  // (results are built apart from the operands and dropped on the way out).
  virtual void poll_interrupt() {}

 private:
  bool trap_ = false;
  int mode_ = 0;
};

// The active host. Until a host installs itself this is a process-wide in-process host
// that writes console text and warnings to standard output.
HostServices& host_services();

// Makes `host` the active host and returns the previous one; nullptr restores the
// process-wide default. The caller keeps ownership.
HostServices* set_host_services(HostServices* host);

// The active host's poll_interrupt(), for the library's long loops.
void poll_interrupt();

}  // namespace corbel
