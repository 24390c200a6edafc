// The one way the Octave host enters the library: every entry point Octave calls (functions,
// operators, indexing, display, copies) runs its work inside guarded(), which turns whatever
// the library throws into an Octave error. A C++ exception that escaped to the interpreter
// would end the Octave process.
#pragma once

#include <octave/oct.h>
#include <octave/quit.h>

#include <new>
#include <string>

#include "host/host_error.h"
#include "host/messages.h"

namespace corbel::octave_host {

// Raises a HostError as an Octave error with the same identifier and text.
[[noreturn]] inline void rethrow_in_octave(const HostError& e) {
  error_with_id(e.identifier().c_str(), "%s", e.text().c_str());
}

// Raises the catalogue's error m as an Octave error, for code outside guarded().
template <class... Args>
[[noreturn]] void octave_raise(Msg m, Args... args) {
  const std::string text = format_message(m, args...);
  error_with_id(std::string(message_identifier(m)).c_str(), "%s", text.c_str());
}

template <class Work>
auto guarded(Work&& work) -> decltype(work()) {
  try {
    return work();
  } catch (const octave::execution_exception&) {
    throw;  // already an Octave error
  } catch (const octave::interrupt_exception&) {
    throw;  // Ctrl-C: Octave unwinds to the prompt itself
  } catch (const octave::exit_exception&) {
    throw;  // 'exit' called from code the library ran
  } catch (const std::bad_alloc&) {
    throw;  // Octave reports it as "out of memory or dimension too large"
  } catch (const HostError& e) {
    rethrow_in_octave(e);
  } catch (const std::exception& e) {
    octave_raise(Msg::OctaveInternal, e.what());
  }
}

}  // namespace corbel::octave_host
