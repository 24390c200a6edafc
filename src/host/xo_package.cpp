// Packages and the package manager.
#include "host/xo_package.h"

#include <algorithm>

#include "host/messages.h"
#include "host/xo_class.h"
#include "host/xo_types.h"

namespace corbel {

void XoPackage::addClass(XoClass* cls) {
  if (cls->package_ || findClass(cls->getName())) {
    raise(Msg::XoDuplicateClass, cls->getName().c_str(), name_.c_str());
  }
  auto type = std::make_unique<XoClassType>(name_ + "." + cls->getName(), cls);
  XoClassType* registered =
      static_cast<XoClassType*>(XoTypeRepository::instance().registerType(std::move(type)));
  classes_.push_back(cls);
  cls->package_ = this;
  cls->type_ = registered;
}

XoClass* XoPackage::findClass(std::string_view name) const {
  for (XoClass* cls : classes_) {
    if (cls->getName() == name) return cls;
  }
  return nullptr;
}

void XoPackage::forgetClass(XoClass* cls) {
  classes_.erase(std::remove(classes_.begin(), classes_.end(), cls), classes_.end());
  if (cls->type_) {
    cls->type_->forgetClass();
    XoTypeRepository::instance().retireType(cls->type_);
  }
  cls->package_ = nullptr;
  cls->type_ = nullptr;
}

XoPackage::~XoPackage() {
  while (!classes_.empty()) forgetClass(classes_.back());
}

XoPackageManager& XoPackageManager::instance() {
  // Never destroyed, like the type repository: class singletons may outlive any static.
  static XoPackageManager* manager = new XoPackageManager;
  return *manager;
}

XoPackage* XoPackageManager::createPackage(std::string_view name, bool flag) {
  if (findPackage(name)) raise(Msg::XoPackageExists, std::string(name).c_str());
  packages_.emplace_back(new XoPackage(std::string(name), flag));
  return packages_.back().get();
}

void XoPackageManager::removePackage(XoPackage* package) {
  auto it = std::find_if(packages_.begin(), packages_.end(),
                         [package](const auto& p) { return p.get() == package; });
  if (it != packages_.end()) packages_.erase(it);
}

XoPackage* XoPackageManager::findPackage(std::string_view name) const {
  for (const auto& p : packages_) {
    if (p->getName() == name) return p.get();
  }
  return nullptr;
}

XoClass* XoPackageManager::findClass(std::string_view name) const {
  const std::size_t dot = name.rfind('.');
  if (dot != std::string_view::npos) {
    XoPackage* package = findPackage(name.substr(0, dot));
    return package ? package->findClass(name.substr(dot + 1)) : nullptr;
  }
  for (const auto& p : packages_) {
    if (XoClass* cls = p->findClass(name)) return cls;
  }
  return nullptr;
}

std::vector<XoPackage*> XoPackageManager::getPackages() const {
  std::vector<XoPackage*> list;
  for (const auto& p : packages_) list.push_back(p.get());
  return list;
}

}  // namespace corbel
