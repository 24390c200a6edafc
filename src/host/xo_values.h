// How values of object-system types travel as void*, and their conversion to and from host
// arrays.
//
// The convention, by type kind:
//   int32          std::int32_t*
//   double         double*
//   bool           bool*
//   string         std::string*
//   enumerated     std::int32_t*  (the code of one of the type's value strings)
//   "Norvak array" HostArray*
//   class type     XoInterface*
// A value handed to the module (a set value, method inputs, constructor arguments) is
// borrowed for the duration of the call: the module copies what it keeps, takes its own
// reference on an instance it keeps, and treats a HostArray as read-only. A value handed back
// by the module (a property's get value, method outputs) is newly allocated with `new`, or
// for a class type is a new reference, and belongs to the receiver.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "host/host_array.h"
#include "host/xo_types.h"

namespace corbel {

class XoInterface;

// How well a host value fits a type: kNoFit, kAnyFit (a "Norvak array" takes anything),
// kConvertFit (e.g. a uint8 scalar for a double) or kExactFit (e.g. a logical for a bool).
enum XoFit : int { kNoFit = -1, kAnyFit = 0, kConvertFit = 1, kExactFit = 2 };
XoFit xo_fit(const XoDataType& type, const HostArray& value);

// A host value converted to a type, holding the storage that pointer() points into. For the
// "Norvak array" and class kinds it points at the host array and at its instance (borrowed).
class XoValue {
 public:
  // Converts `value`, which must fit `type` (xo_fit(type, value) != kNoFit).
  XoValue(const XoDataType& type, const HostArray& value);
  XoValue(XoValue&&) = default;
  XoValue& operator=(XoValue&&) = default;

  void* pointer();

 private:
  std::variant<std::int32_t, double, bool, std::string, HostArray*, XoInterface*> value_;
};

// Converts a value owned by the caller into a host array: int32 and double to a real double
// scalar, bool to a logical scalar, string and enumerated to text, a class reference to an
// object-reference array (taking its own reference). A HostArray is moved out of `value`.
// The value itself is not freed. A code the enumerated type lacks is an internal error.
HostArray xo_value_to_host(const XoDataType& type, void* value);

// Frees an owned value of the type: deletes the buffer or releases the instance. Null is
// ignored.
void xo_delete_value(const XoDataType& type, void* value);

}  // namespace corbel
