// Assertions that an operation raises a host error with an exact identifier and text.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "host/host_error.h"

namespace corbel {

// f() must raise a HostError with exactly this identifier and text.
template <class F>
void expect_error(F f, const std::string& id, const std::string& text) {
  try {
    f();
    ADD_FAILURE() << "no error, expected " << id;
  } catch (const HostError& e) {
    EXPECT_EQ(e.identifier(), id);
    EXPECT_EQ(e.text(), text);
  }
}

// The same for texts with a long fixed ending (the internal-error report): only the
// beginning is compared.
template <class F>
void expect_error_starting(F f, const std::string& id, const std::string& text_start) {
  try {
    f();
    ADD_FAILURE() << "no error, expected " << id;
  } catch (const HostError& e) {
    EXPECT_EQ(e.identifier(), id);
    EXPECT_EQ(e.text().substr(0, text_start.size()), text_start);
  }
}

// An internal error: its own sentence, then the request to report the problem.
template <class F>
void expect_internal_error(F f, const std::string& id, const std::string& sentence) {
  expect_error_starting(f, id, sentence + "\nPlease report this problem to The Quillon so\n");
}

}  // namespace corbel
