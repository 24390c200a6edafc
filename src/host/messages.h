// The message catalogue's interface: the single raise path for errors and the single
// warn path for warnings. No other file spells a message identifier.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corbel {

enum class Msg : int {
#define CORBEL_MESSAGE(name, kind, identifier, text) name,
#include "host/messages.def"
#undef CORBEL_MESSAGE
};

enum class MsgKind { Error, Warning, Internal };

std::string_view message_identifier(Msg m);
// The message whose row is named `name` ("FiTooManyInputs"), if there is one.
std::optional<Msg> message_named(std::string_view name);
std::string_view message_format(Msg m);
MsgKind message_kind(Msg m);

// The text that follows every internal error's own message.
std::string_view report_trailer();

// The message text with its printf arguments filled in (and the report trailer for
// internal errors).
std::string format_message(Msg m, ...);

// Raises the catalogue's error m as a HostError.
[[noreturn]] void raise(Msg m, ...);

// Raises an error whose identifier is a pattern: the identifier and the text are each
// filled with the same arguments.
[[noreturn]] void raise_patterned(Msg m, ...);

// Issues the catalogue's warning m through the active host.
void warn(Msg m, ...);

// A warning whose identifier is a pattern: its "%s" is filled with `name`.
void warn_named(Msg m, std::string_view name, ...);

// Raises an error whose identifier and text come from the host itself (its last error).
[[noreturn]] void raise_host_error(std::string identifier, std::string text);

}  // namespace corbel
