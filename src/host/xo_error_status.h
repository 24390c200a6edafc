// The object system's error-status record: the errors raised inside one built-in method call,
// kept in order instead of being thrown.
#pragma once

#include <string>
#include <vector>

namespace corbel {

struct XoErrorStatus {
  struct Entry {
    std::string identifier;
    std::string message;
  };
  std::vector<Entry> errors;

  bool hasErrors() const { return !errors.empty(); }
  // The most recent error; only when hasErrors().
  const Entry& last() const { return errors.back(); }
};

}  // namespace corbel
