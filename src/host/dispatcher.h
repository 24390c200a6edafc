// The generic dispatcher: the only way a host adapter reaches the classes of the object
// system. It finds classes, properties and methods by name, converts host arrays to and from
// the typed values of the module, and chooses among signatures.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/host_array.h"

namespace corbel {

class XoClass;
class XoInterface;

namespace dispatcher {

// The class named "package.Class", or a bare class name searched in every package in order.
// An unknown name raises Msg::XoUnknownClass.
XoClass* find_class(std::string_view class_name);

// A new instance of the class built from the arguments, as a 1x1 object-reference array
// (holding the only reference). The constructor signature is chosen as for methods; a class
// that declares none gets every argument as a HostArray*.
HostArray construct(std::string_view class_name, std::span<const HostArray> args);

// A new instance holding a deep copy of the object, as a 1x1 object-reference array.
HostArray duplicate(XoInterface* object);

// The dimensions of the object as the host shows them (at least two entries).
std::vector<std::size_t> dims(XoInterface* object);

// Whether the object's class, or a class it derives from, has a method of that name.
bool has_method(XoInterface* object, std::string_view method);

// The property's value as a host array (int32 and double as a double scalar, bool as a
// logical scalar, string and enumerated as text, class types as an object reference).
HostArray get_property(XoInterface* object, std::string_view property);

// Converts `value` to the property's type and stores it. An unknown or read-only property or
// a value of the wrong type raises before anything is changed.
void set_property(XoInterface* object, std::string_view property, const HostArray& value);

// Calls `method` of the class of the first argument that holds an object, or of `cls`.
// Signature choice: among the signatures whose arity fits, those where every argument fits
// its type; the best total fit wins (exact over converted over "Norvak array"), a fixed
// arity wins a tie over a variable one, then the earlier signature. When none fits, an
// arity that fits gives the wrong-argument error (Msg::XoArgumentNeeds...) for the first argument
// of the first such signature that does not fit, otherwise Msg::XoNoMatchingSignature. Returns the
// results the method gave (at least `nargout` are asked for).
std::vector<HostArray> invoke(std::string_view method, std::span<const HostArray> args,
                              int nargout);
std::vector<HostArray> invoke(XoClass* cls, std::string_view method,
                              std::span<const HostArray> args, int nargout);

// What a class offers: its properties and methods, own ones first, then inherited ones.
struct PropertyListing {
  std::string name;
  std::string type;  // the type's name in the repository
  bool read_only = false;
  std::vector<std::string> values;  // the value strings of an enumerated type
};
struct MethodListing {
  std::string name;
  // One line per signature: "(toy.Counter, int32) -> (double)", "..." marking variable
  // arguments.
  std::vector<std::string> signatures;
};
struct ClassListing {
  std::string name;        // the package class name
  std::string superclass;  // empty when none
  std::vector<std::string> constructors;
  std::vector<PropertyListing> properties;  // hidden ones left out
  std::vector<MethodListing> methods;
};
ClassListing describe(std::string_view class_name);
ClassListing describe(const XoClass& cls);

}  // namespace dispatcher
}  // namespace corbel
