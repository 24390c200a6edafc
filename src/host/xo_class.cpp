// Class objects, instances, property and method infos, signatures.
#include "host/xo_class.h"

#include "host/messages.h"
#include "host/xo_package.h"
#include "host/xo_values.h"

namespace corbel {

XoMethodSignature& XoMethodSignature::addArgType(XoDataType* type) {
  args_.push_back(type);
  return *this;
}

XoMethodSignature& XoMethodSignature::addResultType(XoDataType* type) {
  results_.push_back(type);
  return *this;
}

XoInterface* XoInterface::create(XoClass* cls, void* object) {
  return new XoInterface(cls, object);
}

void XoInterface::release() {
  if (--count_ > 0) return;
  // The class frees its object once; the instance goes even if that throws.
  struct Free {
    XoInterface* self;
    ~Free() { delete self; }
  } free{this};
  class_->destroyObject(this);
}

void XoPropInfoTemplate::setValue(XoInterface* instance, void*) {
  raise(Msg::XoReadOnlyProperty, name_.c_str(),
        instance->getClass()->getPackageClassName().c_str());
}

void XoPropInfoTemplate::releaseValue(void* value) {
  xo_delete_value(*type_, value);
}

XoMethodSignature& XoMethodInfo::addSignature() {
  signatures_.push_back(std::make_unique<XoMethodSignature>());
  return *signatures_.back();
}

XoClass::~XoClass() {
  if (package_) package_->forgetClass(this);
}

std::string XoClass::getPackageClassName() const {
  return package_ ? package_->getName() + "." + name_ : name_;
}

bool XoClass::isA(const XoClass* other) const {
  for (const XoClass* c = this; c; c = c->superclass_) {
    if (c == other) return true;
  }
  return false;
}

XoMethodSignature& XoClass::addConstructorSignature() {
  constructors_.push_back(std::make_unique<XoMethodSignature>());
  return *constructors_.back();
}

XoPropInfoTemplate* XoClass::addProperty(std::unique_ptr<XoPropInfoTemplate> property) {
  properties_.push_back(std::move(property));
  return properties_.back().get();
}

XoMethodInfo* XoClass::addMethod(std::unique_ptr<XoMethodInfo> method) {
  methods_.push_back(std::move(method));
  return methods_.back().get();
}

XoInterface* XoClass::duplicateInstance(XoInterface*) {
  raise(Msg::XoCannotCopy, getPackageClassName().c_str());
}

std::vector<std::size_t> XoClass::getInstanceDims(XoInterface*) const {
  return {1, 1};
}

XoPropInfoTemplate* XoClass::findProperty(std::string_view name) const {
  for (const XoClass* c = this; c; c = c->superclass_) {
    for (const auto& p : c->properties_) {
      if (p->getName() == name) return p.get();
    }
  }
  return nullptr;
}

XoMethodInfo* XoClass::findMethod(std::string_view name) const {
  for (const XoClass* c = this; c; c = c->superclass_) {
    for (const auto& m : c->methods_) {
      if (m->getName() == name) return m.get();
    }
  }
  return nullptr;
}

}  // namespace corbel
