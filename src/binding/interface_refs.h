// Holders of references to host instances.
#pragma once

#include "fi/fi.h"
#include "host/xo_class.h"

namespace corbel {

// Holds one reference to an instance, or null.
class CorbelXoInterfaceRef {
 public:
  // Adopts `instance` without taking a further reference.
  explicit CorbelXoInterfaceRef(XoInterface* instance = nullptr) : instance_(instance) {}
  // Takes a reference of its own on the source's instance.
  CorbelXoInterfaceRef(const CorbelXoInterfaceRef& other) : instance_(getReference(other.instance_)) {}
  // Copies the pointer only: no reference is taken on it and the one held before is not
  // released. Callers that need ownership use changeInterface.
  CorbelXoInterfaceRef& operator=(const CorbelXoInterfaceRef& other) {
    instance_ = other.instance_;
    return *this;
  }
  virtual ~CorbelXoInterfaceRef() {
    if (instance_) instance_->release();
  }

  XoInterface* getInterface() const { return instance_; }
  // A newly taken reference on the held instance (null if none).
  XoInterface* getReference() const { return getReference(instance_); }
  static XoInterface* getReference(XoInterface* instance) {
    if (instance) instance->addRef();
    return instance;
  }
  // Holds a reference on `instance` instead of the present one; nothing when they are the
  // same.
  void changeInterface(XoInterface* instance);

 private:
  XoInterface* instance_;
};

// A holder whose instance holds a fi.
class FiXoInterfaceRef : public CorbelXoInterfaceRef {
 public:
  // Holds a new instance of the fi class around a copy of `value`.
  explicit FiXoInterfaceRef(const fi& value);
  fi& getFi() const { return *static_cast<fi*>(getInterface()->getClassSpecificObject()); }
};

}  // namespace corbel
