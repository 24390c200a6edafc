// The Octave host services.
#include "octave_host.h"

#include <octave/interpreter.h>
#include <octave/oct.h>
#include <octave/ov-cx-mat.h>
#include <octave/ov-re-mat.h>
#include <octave/pager.h>
#include <octave/quit.h>

#include <new>
#include <string>
#include <utility>

#include "host/builtin_set.h"
#include "host/host_error.h"
#include "host/messages.h"
#include "host_values.h"

namespace corbel::octave_host {
namespace {

octave::interpreter& interpreter() {
  return *octave::interpreter::the_interpreter();
}

}  // namespace

OctaveHost& the_octave_host() {
  static OctaveHost host;
  return host;
}

OutputTo::OutputTo(std::ostream& os) : previous_(std::exchange(the_octave_host().out_, &os)) {}

OutputTo::~OutputTo() {
  the_octave_host().out_ = previous_;
}

void OctaveHost::poll_interrupt() {
  octave_quit();
}

std::ostream& OctaveHost::out() const {
  return out_ ? *out_ : octave_stdout;
}

void OctaveHost::print(std::string_view text) {
  out().write(text.data(), static_cast<std::streamsize>(text.size()));
}

void OctaveHost::print_matrix(const HostArray& values) {
  if (values.is_empty()) return;
  // The matrix types themselves, not octave_value's narrowing constructor: a 1x1 array
  // then prints in the same columns as a row would.
  std::ostream& os = out();
  octave_value matrix = to_octave(HostArray(values));
  if (matrix.iscomplex()) {
    octave_value(new octave_complex_matrix(matrix.complex_array_value())).print_raw(os);
  } else {
    octave_value(new octave_matrix(matrix.array_value())).print_raw(os);
  }
  os << "\n";
}

void OctaveHost::warning(std::string_view identifier, std::string_view text) {
  const std::string id(identifier);
  const std::string message(text);
  try {
    warning_with_id(id.c_str(), "%s", message.c_str());
  } catch (const octave::execution_exception& e) {
    // warning ('error', id) made it an error: the library sees it as one of its own.
    octave::error_system& es = interpreter().get_error_system();
    es.save_exception(e);
    interpreter().recover_from_exception();
    raise_host_error(es.last_error_id(), es.last_error_message());
  }
}

int OctaveHost::call_function(std::string_view name, std::span<HostArray> outputs,
                              std::span<const HostArray> inputs) {
  octave::interpreter& interp = interpreter();
  octave_value_list in(static_cast<octave_idx_type>(inputs.size()));
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    in(static_cast<octave_idx_type>(i)) = to_octave(HostArray(inputs[i]));
  }
  const int nargout = static_cast<int>(outputs.size());
  octave_value_list out;
  try {
    out = interp.feval(std::string(name), in, nargout);
  } catch (const octave::execution_exception& e) {
    octave::error_system& es = interp.get_error_system();
    es.save_exception(e);  // Octave's lasterr now reports it
    interp.recover_from_exception();
    for (HostArray& o : outputs) o.release();
    if (returns_status()) return 1;
    raise_host_error(es.last_error_id(), es.last_error_message());
  }
  // An output the function did not define stays an empty array.
  for (int i = 0; i < nargout && i < out.length(); ++i) {
    if (out(i).is_defined()) outputs[static_cast<std::size_t>(i)] = to_host(out(i));
  }
  return 0;
}

void OctaveHost::call_builtin_method(std::string_view method, std::span<HostArray> outputs,
                                     std::span<const HostArray> inputs, XoErrorStatus& status) {
  std::string identifier, message;
  try {
    run_builtin_method(*this, method, outputs, inputs);
    return;
  } catch (const HostError& e) {
    identifier = e.identifier();
    message = e.text();
  } catch (const octave::execution_exception& e) {
    identifier = e.identifier();
    message = e.message();
    interpreter().recover_from_exception();
  } catch (const octave::interrupt_exception&) {
    throw;
  } catch (const octave::exit_exception&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& e) {
    message = e.what();
  }
  status.errors.push_back({identifier, message});
  octave::error_system& es = interpreter().get_error_system();
  es.set_last_error_id(identifier);
  es.set_last_error_message(message);
}

}  // namespace corbel::octave_host
