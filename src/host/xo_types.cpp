// Enumerated string types and the type repository.
#include "host/xo_types.h"

#include <algorithm>

#include "host/messages.h"
#include "host/xo_class.h"
#include "host/xo_package.h"

namespace corbel {

void XoEnumStringType::addValue(std::string text, std::int32_t code) {
  for (const Value& v : values_) {
    if (v.text == text || v.code == code) {
      raise(Msg::XoDuplicateEnumValue, getName().c_str(), text.c_str(), static_cast<int>(code));
    }
  }
  values_.push_back({std::move(text), code});
}

std::optional<std::int32_t> XoEnumStringType::codeOf(std::string_view text) const {
  for (const Value& v : values_) {
    if (v.text == text) return v.code;
  }
  return std::nullopt;
}

const std::string* XoEnumStringType::stringOf(std::int32_t code) const {
  for (const Value& v : values_) {
    if (v.code == code) return &v.text;
  }
  return nullptr;
}

XoTypeRepository& XoTypeRepository::instance() {
  // Never destroyed: class objects and types may be used from other static destructors.
  static XoTypeRepository* repository = new XoTypeRepository;
  return *repository;
}

XoTypeRepository::XoTypeRepository() {
  const std::pair<std::string_view, XoTypeKind> primitives[] = {
      {kXoInt32TypeName, XoTypeKind::Int32},         {kXoDoubleTypeName, XoTypeKind::Double},
      {kXoBoolTypeName, XoTypeKind::Bool},           {kXoStringTypeName, XoTypeKind::String},
      {kXoHostArrayTypeName, XoTypeKind::HostArray},
  };
  for (const auto& [name, kind] : primitives) {
    types_.push_back(std::make_unique<XoDataType>(std::string(name), kind));
  }
}

XoDataType* XoTypeRepository::getType(std::string_view name, int search) const {
  for (const auto& t : types_) {
    if (t->getName() == name) return t.get();
  }
  if (search != 0 && name.find('.') == std::string_view::npos) {
    for (XoPackage* package : XoPackageManager::instance().getPackages()) {
      if (XoClass* cls = package->findClass(name)) return cls->getClassType();
    }
  }
  return nullptr;
}

XoDataType* XoTypeRepository::registerType(std::unique_ptr<XoDataType> type) {
  if (getType(type->getName())) raise(Msg::XoTypeExists, type->getName().c_str());
  types_.push_back(std::move(type));
  return types_.back().get();
}

void XoTypeRepository::retireType(XoDataType* type) {
  auto it =
      std::find_if(types_.begin(), types_.end(), [type](const auto& t) { return t.get() == type; });
  if (it == types_.end()) return;
  retired_.push_back(std::move(*it));
  types_.erase(it);
}

std::vector<std::string> XoTypeRepository::getTypeNames() const {
  std::vector<std::string> names;
  for (const auto& t : types_) names.push_back(t->getName());
  return names;
}

}  // namespace corbel
