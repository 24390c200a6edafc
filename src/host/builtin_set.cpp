// The built-in "set" shared by every host.
#include "host/builtin_set.h"

#include <string>

#include "host/dispatcher.h"
#include "host/messages.h"
#include "host/services.h"
#include "host/xo_class.h"

namespace corbel {
namespace {

// "[ a | b ]" for an enumerated type, empty otherwise.
std::string value_choices(const XoDataType& type) {
  if (type.getKind() != XoTypeKind::EnumString) return {};
  std::string s = "[";
  const auto& values = static_cast<const XoEnumStringType&>(type).getValues();
  for (std::size_t i = 0; i < values.size(); ++i) s += (i ? " | " : " ") + values[i].text;
  return s + " ]";
}

void builtin_set(HostServices& host, std::span<HostArray> outputs,
                 std::span<const HostArray> inputs) {
  if (inputs.empty() || !inputs[0].object()) raise(Msg::XoBuiltinNeedsObject, "set");
  XoInterface* object = inputs[0].object();
  auto name_of = [](const HostArray& a) {
    if (!a.is_text()) raise(Msg::XoSetNeedsName);
    return a.text();
  };

  if (inputs.size() >= 3) {
    if (inputs.size() % 2 == 0) raise(Msg::XoSetNeedsPairs);
    for (std::size_t i = 1; i < inputs.size(); i += 2) {
      dispatcher::set_property(object, name_of(inputs[i]), inputs[i + 1]);
    }
    return;
  }

  std::string listing;
  if (inputs.size() == 2) {
    const std::string name = name_of(inputs[1]);
    XoPropInfoTemplate* p = object->getClass()->findProperty(name);
    if (!p) {
      raise(Msg::XoUnknownProperty, name.c_str(),
            object->getClass()->getPackageClassName().c_str());
    }
    listing = value_choices(*p->getType());
    if (outputs.empty() && !listing.empty()) listing += "\n";
  } else {
    for (const XoClass* c = object->getClass(); c; c = c->getSuperclass()) {
      for (const auto& p : c->getProperties()) {
        if (p->isReadOnly() || (p->getFlags() & kXoPropHidden)) continue;
        const std::string choices = value_choices(*p->getType());
        listing += "  " + p->getName() + (choices.empty() ? "" : ": " + choices) + "\n";
      }
    }
  }
  if (outputs.empty()) {
    host.print(listing);
  } else {
    outputs[0] = HostArray::make_text(listing);
  }
}

}  // namespace

void run_builtin_method(HostServices& host, std::string_view method, std::span<HostArray> outputs,
                        std::span<const HostArray> inputs) {
  if (method != "set") raise(Msg::XoUnknownBuiltinMethod, std::string(method).c_str());
  builtin_set(host, outputs, inputs);
}

}  // namespace corbel
