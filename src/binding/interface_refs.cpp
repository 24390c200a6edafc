// Holders of references to host instances.
#include "binding/interface_refs.h"

#include "binding/class_objects.h"

namespace corbel {

void CorbelXoInterfaceRef::changeInterface(XoInterface* instance) {
  if (instance == instance_) return;
  if (instance_) instance_->release();
  instance_ = getReference(instance);
}

FiXoInterfaceRef::FiXoInterfaceRef(const fi& value)
    : CorbelXoInterfaceRef(FiXoClass::wrap(value)) {}

}  // namespace corbel
