// Conversion of host arrays to and from the typed values of the object system.
#include "host/xo_values.h"

#include <cmath>
#include <limits>

#include "host/messages.h"
#include "host/xo_class.h"

namespace corbel {
namespace {

// A real, non-complex scalar readable as a number (numeric or logical).
bool is_real_number(const HostArray& a) {
  return a.is_scalar() && !a.is_complex() && (a.is_numeric() || a.is_logical());
}

bool is_char_vector(const HostArray& a) {
  return a.is_text() && a.dims().size() == 2 && (a.rows() == 1 || a.is_empty());
}

bool fits_int32(double v) {
  return v == std::floor(v) && v >= std::numeric_limits<std::int32_t>::min() &&
         v <= std::numeric_limits<std::int32_t>::max();
}

}  // namespace

XoFit xo_fit(const XoDataType& type, const HostArray& value) {
  switch (type.getKind()) {
    case XoTypeKind::HostArray:
      return kAnyFit;
    case XoTypeKind::Int32:
      if (!is_real_number(value) || !fits_int32(value.real_as_double(0))) return kNoFit;
      return value.element_class() == HostClass::Int32 ? kExactFit : kConvertFit;
    case XoTypeKind::Double:
      if (!is_real_number(value)) return kNoFit;
      return value.element_class() == HostClass::Double ? kExactFit : kConvertFit;
    case XoTypeKind::Bool:
      if (!is_real_number(value) || std::isnan(value.real_as_double(0))) return kNoFit;
      return value.is_logical() ? kExactFit : kConvertFit;
    case XoTypeKind::String:
      return is_char_vector(value) ? kExactFit : kNoFit;
    case XoTypeKind::EnumString:
      if (!is_char_vector(value)) return kNoFit;
      return static_cast<const XoEnumStringType&>(type).codeOf(value.text()) ? kExactFit : kNoFit;
    case XoTypeKind::Class: {
      const XoClass* cls = static_cast<const XoClassType&>(type).getClass();
      const XoInterface* object = value.object();
      return cls && object && object->getClass()->isA(cls) ? kExactFit : kNoFit;
    }
  }
  return kNoFit;
}

XoValue::XoValue(const XoDataType& type, const HostArray& value) {
  switch (type.getKind()) {
    case XoTypeKind::Int32:
      value_ = static_cast<std::int32_t>(value.real_as_double(0));
      break;
    case XoTypeKind::Double:
      value_ = value.real_as_double(0);
      break;
    case XoTypeKind::Bool:
      value_ = value.real_as_double(0) != 0.0;
      break;
    case XoTypeKind::String:
      value_ = value.text();
      break;
    case XoTypeKind::EnumString:
      value_ = *static_cast<const XoEnumStringType&>(type).codeOf(value.text());
      break;
    // The module treats a borrowed HostArray as read-only.
    case XoTypeKind::HostArray:
      value_ = const_cast<HostArray*>(&value);
      break;
    case XoTypeKind::Class:
      value_ = value.object();
      break;
  }
}

void* XoValue::pointer() {
  if (auto* a = std::get_if<HostArray*>(&value_)) return *a;
  if (auto* o = std::get_if<XoInterface*>(&value_)) return *o;
  return std::visit([](auto& v) -> void* { return &v; }, value_);
}

HostArray xo_value_to_host(const XoDataType& type, void* value) {
  switch (type.getKind()) {
    case XoTypeKind::Int32:
      return HostArray::make_double(*static_cast<std::int32_t*>(value));
    case XoTypeKind::Double:
      return HostArray::make_double(*static_cast<double*>(value));
    case XoTypeKind::Bool:
      return HostArray::make_logical(*static_cast<bool*>(value));
    case XoTypeKind::String:
      return HostArray::make_text(*static_cast<std::string*>(value));
    case XoTypeKind::EnumString: {
      const std::int32_t code = *static_cast<std::int32_t*>(value);
      const std::string* text = static_cast<const XoEnumStringType&>(type).stringOf(code);
      if (!text) raise(Msg::XoBadEnumCode, static_cast<int>(code), type.getName().c_str());
      return HostArray::make_text(*text);
    }
    case XoTypeKind::HostArray:
      return std::move(*static_cast<HostArray*>(value));
    case XoTypeKind::Class:
      return HostArray::make_object(static_cast<XoInterface*>(value));
  }
  return HostArray();
}

void xo_delete_value(const XoDataType& type, void* value) {
  if (!value) return;
  switch (type.getKind()) {
    case XoTypeKind::Int32:
    case XoTypeKind::EnumString:
      delete static_cast<std::int32_t*>(value);
      break;
    case XoTypeKind::Double:
      delete static_cast<double*>(value);
      break;
    case XoTypeKind::Bool:
      delete static_cast<bool*>(value);
      break;
    case XoTypeKind::String:
      delete static_cast<std::string*>(value);
      break;
    case XoTypeKind::HostArray:
      delete static_cast<HostArray*>(value);
      break;
    case XoTypeKind::Class:
      static_cast<XoInterface*>(value)->release();
      break;
  }
}

}  // namespace corbel
