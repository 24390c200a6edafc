// embedded: the package object, enumerated type registration and the host helpers.
#include "types/embedded.h"

#include <cstdio>
#include <memory>
#include <vector>

#include "host/messages.h"
#include "host/services.h"

namespace corbel {
namespace {

XoPackage* package = nullptr;

}  // namespace

XoPackage* embedded::getEmbeddedPackage() {
  if (package == nullptr)
    package = XoPackageManager::instance().createPackage(getEmbeddedPackageName(), true);
  return package;
}

void embedded::terminateEmbeddedPackage() {
  if (package == nullptr) return;
  XoPackageManager::instance().removePackage(package);
  package = nullptr;
}

XoEnumStringType* embedded::registerEnumType(std::string_view name, std::span<const EnumRow> rows) {
  XoTypeRepository& repository = XoTypeRepository::instance();
  if (XoDataType* found = repository.getType(name, 1)) {
    // Registered by an earlier load or another module: taken as it is.
    return static_cast<XoEnumStringType*>(found);
  }
  auto type = std::make_unique<XoEnumStringType>(std::string(name));
  for (const EnumRow& row : rows) type->addValue(std::string(row.text), row.code);
  return static_cast<XoEnumStringType*>(repository.registerType(std::move(type)));
}

XoEnumStringType* embedded::getRoundModeEnum() {
  return getEnumType<RoundModeEnum>();
}
XoEnumStringType* embedded::getOverflowModeEnum() {
  return getEnumType<OverflowModeEnum>();
}
XoEnumStringType* embedded::getScalingEnum() {
  return getEnumType<QuantizerScalingEnum>();
}

void embedded::throw_last_error() {
  std::vector<HostArray> out(2);
  host_services().call_function("lasterr", out, {});
  std::string message = out[0].text();
  std::string identifier = out[1].is_empty() ? std::string() : out[1].text();
  out.clear();
  if (identifier.empty()) raise(Msg::EmbeddedThrowLastError, message.c_str());
  raise_host_error(std::move(identifier), std::move(message));
}

int embedded::call_NORVAK_with_trap(int nout, HostArray* outputs, int nin, const HostArray* inputs,
                                    const char* name) {
  HostServices& host = host_services();
  host.set_error_trap(true);
  const int previous = host.set_error_mode(kHostErrorModeReturn);
  int status = 0;
  try {
    status = host.call_function(name, std::span<HostArray>(outputs, static_cast<size_t>(nout)),
                                std::span<const HostArray>(inputs, static_cast<size_t>(nin)));
  } catch (...) {
    host.set_error_mode(previous);
    throw;
  }
  host.set_error_mode(previous);
  return status;
}

XoClass* embedded::HostArray2XoClass(const HostArray& value) {
  return value.object() ? value.object()->getClass() : nullptr;
}

double embedded::getScalarImag(const HostArray& value) {
  if (!value.is_numeric() || !value.is_complex() || value.is_empty()) return 0.0;
  return value.imag_as_double(0);
}

HostArray embedded::external_to_internal_reference(const HostArray& value) {
  // The object system keeps instances by reference, so the internal form of a handle is
  // a new reference to the same instance.
  if (value.object() == nullptr) return HostArray();
  return HostArray::make_object(value.object());
}

EmbeddedFiSetMethodInfo::EmbeddedFiSetMethodInfo(std::string className)
    : XoMethodInfo("set"), className_(std::move(className)) {}

void EmbeddedFiSetMethodInfo::invokeMethod(XoMethodSignature*, int* nout, void** outputs, int nin,
                                           void** inputs) {
  std::vector<HostArray> args;
  for (int i = 0; i < nin; ++i) args.push_back(*static_cast<HostArray*>(inputs[i]));
  const bool listing = nin == 1 || (nin == 2 && args[1].is_text());
  if (!listing) raise(Msg::SetInvalidUse, className_.c_str());

  HostServices& host = host_services();
  host.set_error_trap(true);
  const int previous = host.set_error_mode(kHostErrorModeReturn);
  XoErrorStatus status;
  std::vector<HostArray> results(static_cast<size_t>(*nout > 0 ? *nout : 0));
  host.call_builtin_method("set", results, args, status);
  host.set_error_mode(previous);
  if (status.hasErrors()) raise(Msg::SetBuiltinError, status.last().message.c_str());
  for (size_t i = 0; i < results.size(); ++i) outputs[i] = new HostArray(std::move(results[i]));
  *nout = static_cast<int>(results.size());
}

}  // namespace corbel
