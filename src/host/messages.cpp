// The message catalogue's table and its raise and warn paths.
#include "host/messages.h"

#include <cstdarg>
#include <cstdio>
#include <vector>

#include "host/host_error.h"
#include "host/services.h"

namespace corbel {
namespace {

struct MessageRow {
  MsgKind kind;
  std::string_view identifier;
  std::string_view format;
};

constexpr MessageRow kMessages[] = {
#define CORBEL_MESSAGE(name, kind, identifier, text) {MsgKind::kind, identifier, text},
#include "host/messages.def"
#undef CORBEL_MESSAGE
};

constexpr std::string_view kReportTrailer =
    "\nPlease report this problem to The Quillon so\n"
    "that we have the best chance of correcting it:\n"
    "\n"
    "  If the problem is reproducible, send this message to\n"
    "  the Corbel maintainers through the project's issue tracker,\n"
    "  with the steps and the files that reproduce the problem\n"
    "  and every message that was shown.\n"
    "\n"
    "  A maintainer will reply to your report.\n"
    "\n"
    "Thank you for your assistance.  \n";

const MessageRow& row(Msg m) {
  return kMessages[static_cast<int>(m)];
}

// printf into a string.
std::string vprint(std::string_view format, va_list args) {
  std::string fmt(format);
  va_list again;
  va_copy(again, args);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  int n = std::vsnprintf(nullptr, 0, fmt.c_str(), args);
  std::vector<char> buf(static_cast<size_t>(n > 0 ? n : 0) + 1);
  std::vsnprintf(buf.data(), buf.size(), fmt.c_str(), again);
#pragma GCC diagnostic pop
  va_end(again);
  return std::string(buf.data(), static_cast<size_t>(n > 0 ? n : 0));
}

std::string vformat(Msg m, va_list args) {
  std::string text = vprint(row(m).format, args);
  if (row(m).kind == MsgKind::Internal) text += kReportTrailer;
  return text;
}

}  // namespace

std::optional<Msg> message_named(std::string_view name) {
  static constexpr std::string_view kNames[] = {
#define CORBEL_MESSAGE(name, kind, identifier, text) #name,
#include "host/messages.def"
#undef CORBEL_MESSAGE
  };
  for (std::size_t i = 0; i < std::size(kNames); ++i)
    if (kNames[i] == name) return static_cast<Msg>(i);
  return std::nullopt;
}

std::string_view message_identifier(Msg m) {
  return row(m).identifier;
}
std::string_view message_format(Msg m) {
  return row(m).format;
}
MsgKind message_kind(Msg m) {
  return row(m).kind;
}
std::string_view report_trailer() {
  return kReportTrailer;
}

std::string format_message(Msg m, ...) {
  va_list args;
  va_start(args, m);
  std::string text = vformat(m, args);
  va_end(args);
  return text;
}

void raise(Msg m, ...) {
  va_list args;
  va_start(args, m);
  std::string text = vformat(m, args);
  va_end(args);
  throw HostError(std::string(row(m).identifier), std::move(text));
}

void raise_patterned(Msg m, ...) {
  va_list args;
  va_start(args, m);
  va_list again;
  va_copy(again, args);
  std::string identifier = vprint(row(m).identifier, args);
  std::string text = vformat(m, again);
  va_end(again);
  va_end(args);
  throw HostError(std::move(identifier), std::move(text));
}

void warn(Msg m, ...) {
  va_list args;
  va_start(args, m);
  std::string text = vformat(m, args);
  va_end(args);
  host_services().warning(row(m).identifier, text);
}

namespace {
// A pattern identifier with its "%s" filled by `name`.
std::string identifier_named(Msg m, std::string_view name) {
  std::string id(row(m).identifier);
  const size_t at = id.find("%s");
  if (at != std::string::npos) id.replace(at, 2, name);
  return id;
}
}  // namespace

void warn_named(Msg m, std::string_view name, ...) {
  va_list args;
  va_start(args, name);
  std::string text = vformat(m, args);
  va_end(args);
  host_services().warning(identifier_named(m, name), text);
}

void raise_host_error(std::string identifier, std::string text) {
  throw HostError(std::move(identifier), std::move(text));
}

}  // namespace corbel
