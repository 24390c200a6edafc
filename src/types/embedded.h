// embedded: the package that holds every class of the module, the registration of its
// enumerated types, and the host helpers through which the module re-raises host errors
// and calls host functions.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "host/host_array.h"
#include "host/xo_class.h"
#include "host/xo_package.h"
#include "host/xo_types.h"
#include "types/enumerations.h"

namespace corbel {

class embedded {
 public:
  using RoundModeEnum = corbel::RoundModeEnum;
  using OverflowModeEnum = corbel::OverflowModeEnum;

  // The package's name as the host knows it; class names are formed from it.
  static constexpr std::string_view getEmbeddedPackageName() { return "embedded"; }
  // Made on the first call, then the same object until terminateEmbeddedPackage.
  static XoPackage* getEmbeddedPackage();
  // Hands the package back to the host and forgets it; nothing when there is none.
  static void terminateEmbeddedPackage();

  static XoEnumStringType* getRoundModeEnum();
  static XoEnumStringType* getOverflowModeEnum();
  static XoEnumStringType* getScalingEnum();

  // The registered host type of an enumeration. The first call looks the name up and,
  // when no type of that name exists yet, creates it with the table's values in order;
  // a type found already registered is used as it is. Later calls reuse the answer.
  template <class E>
  static XoEnumStringType* getEnumType() {
    static XoEnumStringType* const slot = registerEnumType(enum_type_name<E>(), enum_rows<E>());
    return slot;
  }

  // Raises the host's last error again: its identifier, or throw_last_error's own when
  // the host gave none.
  [[noreturn]] static void throw_last_error();
  // Calls a host function with the error trap on and the error mode at "return"; the
  // previous mode is restored, the trap left on. Returns the host's status (0: success).
  static int call_NORVAK_with_trap(int nout, HostArray* outputs, int nin, const HostArray* inputs,
                                   const char* name);
  // The class of the object a host value holds (null when it holds none).
  static XoClass* HostArray2XoClass(const HostArray& value);
  // The first imaginary element as a double; 0 for real, empty or non-numeric data.
  static double getScalarImag(const HostArray& value);
  // The object-system reference to the object a host handle value holds.
  static HostArray external_to_internal_reference(const HostArray& value);

  // Looks a type up by name and, when there is none, registers a new one with the rows
  // as its values, in order.
  static XoEnumStringType* registerEnumType(std::string_view name, std::span<const EnumRow> rows);
};

// The host's "set" for fi, fimath and numerictype objects: listing forms go to the
// object system's built-in set; assigning through set is refused (dot notation is the
// way to assign).
class EmbeddedFiSetMethodInfo : public XoMethodInfo {
 public:
  explicit EmbeddedFiSetMethodInfo(std::string className);
  void invokeMethod(XoMethodSignature* matched, int* nout, void** outputs, int nin,
                    void** inputs) override;

 private:
  std::string className_;
};

}  // namespace corbel
