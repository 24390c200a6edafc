// The in-process host: host services for C++ programs and the unit tests. It records
// console output and warnings so that they can be read back, and can echo them; it calls
// host functions from a table by name ("lasterr", "eval" and any a test registers).
#pragma once

#include <cstdio>
#include <functional>
#include <map>
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

  // A host function: fills outputs (outputs.size() of them were asked for) from inputs, and
  // fails by throwing (a HostError carries its identifier; any other exception has none).
  using Function =
      std::function<void(std::span<HostArray> outputs, std::span<const HostArray> inputs)>;

  // echo: where console text and warnings are also written (nullptr: nowhere).
  // record: whether they are kept for take_console() and take_warnings().
  explicit InProcessHost(std::FILE* echo = nullptr, bool record = true);
  InProcessHost(const InProcessHost&) = delete;
  InProcessHost& operator=(const InProcessHost&) = delete;

  void print(std::string_view text) override;
  // The compact matrix form, written through print():
  //   - one line per row, each ending in "\n"; dimensions beyond the second are laid side
  //     by side as further columns; an empty array prints nothing;
  //   - when every real and imaginary part is a whole number below 1e10 in magnitude the
  //     values print without decimals, otherwise every value prints as "%.4f"; a value
  //     that rounds to zero prints without a minus sign; non-finite values print as "Inf",
  //     "-Inf" and "NaN" and do not stop the whole-number form;
  //   - every column is right-aligned in a common width: two spaces, one place for the
  //     sign, then the widest unsigned real part; a complex element adds " + " or " - ",
  //     the magnitude of its imaginary part right-aligned in the widest such width, and "i".
  //   [1.5 -2; 0.25 3] prints "   1.5000  -2.0000\n   0.2500   3.0000\n";
  //   [1+2i 3-4i] prints "   1 + 2i   3 - 4i\n".
  void print_matrix(const HostArray& values) override;
  void warning(std::string_view identifier, std::string_view text) override;

  // Return what was recorded since the last call and forget it.
  std::string take_console();
  std::vector<Warning> take_warnings();

  // Host functions. The table starts with:
  //   "lasterr": no inputs, up to two outputs: the last error's message and identifier
  //              (0x0 char arrays when there is none);
  //   "eval":    one char input, up to one output: the value of numeric text
  //              (see numeric_eval.h).
  // register_function adds a function or replaces the one of that name.
  void register_function(std::string name, Function function);
  int call_function(std::string_view name, std::span<HostArray> outputs,
                    std::span<const HostArray> inputs) override;

  // The built-in methods (see builtin_set.h); failures are recorded in `status` and become
  // the last error.
  void call_builtin_method(std::string_view method, std::span<HostArray> outputs,
                           std::span<const HostArray> inputs, XoErrorStatus& status) override;

  // The user's interrupt, as a test stages it: poll_interrupt() throws Interrupt (which is
  // not a HostError) at the poll after the next `polls` ones, once; -1 never interrupts.
  // polls_seen() counts every poll since the host was made.
  struct Interrupt {};
  void interrupt_after(long polls) { countdown_ = polls; }
  void poll_interrupt() override;
  long polls_seen() const { return polls_seen_; }

  const std::string& last_error_message() const { return last_message_; }
  const std::string& last_error_identifier() const { return last_identifier_; }

 private:
  void record_error(std::string identifier, std::string message);

  std::FILE* echo_;
  bool record_;
  std::string console_;
  std::vector<Warning> warnings_;
  std::map<std::string, Function, std::less<>> functions_;
  std::string last_message_;
  std::string last_identifier_;
  long countdown_ = -1;
  long polls_seen_ = 0;
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
