// HostError: the exception through which every failure reaches the host, as an
// identifier ("velkora:area:detail") and a message text.
#pragma once

#include <stdexcept>
#include <string>

namespace corbel {

class HostError : public std::runtime_error {
 public:
  HostError(std::string identifier, std::string text)
      : std::runtime_error(text), identifier_(std::move(identifier)), text_(std::move(text)) {}

  const std::string& identifier() const noexcept { return identifier_; }
  const std::string& text() const noexcept { return text_; }

 private:
  std::string identifier_;
  std::string text_;
};

}  // namespace corbel
