// The package's enumerated types as C++ enumerations, with their host strings and
// registration order, all generated from enumerations.def.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace corbel {

#define CORBEL_ENUM(Type, hostName) enum class Type : std::int32_t {
#define CORBEL_ENUM_VALUE(Type, Enumerator, code, text) Enumerator = code,
#define CORBEL_ENUM_END(Type) \
  }                           \
  ;
#include "types/enumerations.def"
#undef CORBEL_ENUM
#undef CORBEL_ENUM_VALUE
#undef CORBEL_ENUM_END

// One value of an enumerated type: its code and its host string.
struct EnumRow {
  std::int32_t code;
  std::string_view text;
};

// The table of an enumerated type: its host type name and its values in registration
// order.
template <class E>
struct EnumTable;

#define CORBEL_ENUM(Type, hostName)                    \
  template <>                                          \
  struct EnumTable<Type> {                             \
    static constexpr std::string_view name = hostName; \
    static constexpr EnumRow rows[] = {
#define CORBEL_ENUM_VALUE(Type, Enumerator, code, text) {code, text},
#define CORBEL_ENUM_END(Type) \
  }                           \
  ;                           \
  }                           \
  ;
#include "types/enumerations.def"
#undef CORBEL_ENUM
#undef CORBEL_ENUM_VALUE
#undef CORBEL_ENUM_END

// The host type name of an enumerated type.
template <class E>
constexpr std::string_view enum_type_name() {
  return EnumTable<E>::name;
}

// The values of an enumerated type, in registration order.
template <class E>
constexpr std::span<const EnumRow> enum_rows() {
  return EnumTable<E>::rows;
}

// The host string of a value; nothing for a code that is not one of the type's values.
template <class E>
constexpr std::optional<std::string_view> enum_to_string(E value) {
  for (const EnumRow& r : EnumTable<E>::rows)
    if (r.code == static_cast<std::int32_t>(value)) return r.text;
  return std::nullopt;
}

// The value whose host string is text (exact match); nothing when there is none.
template <class E>
constexpr std::optional<E> enum_from_string(std::string_view text) {
  for (const EnumRow& r : EnumTable<E>::rows)
    if (r.text == text) return static_cast<E>(r.code);
  return std::nullopt;
}

}  // namespace corbel
