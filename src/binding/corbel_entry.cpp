// The module's entry points: initialisation and termination, once each per load, and the
// function table through which the host finds the module's functions (it has none of its
// own: everything is reached through the classes).
#include "binding/corbel_entry.h"

#include <ctime>
#include <string>

#include "binding/class_objects.h"

extern "C" {
const char corbel_version[] = "0.1.0";
const char corbel_build_date[] = __DATE__ " " __TIME__;
}

namespace corbel {
namespace {

bool initialized = false;
bool terminated = false;
// Set at load, cleared once the step has run.
bool mustDeclare = true;
bool mustRegister = true;

// The build time as seconds since 1970 (UTC), read from the compiler's build stamp.
std::uint32_t buildTime() {
  std::tm t{};
  if (strptime(corbel_build_date, "%b %d %Y %H:%M:%S", &t) == nullptr) return 0;
  return static_cast<std::uint32_t>(timegm(&t));
}

}  // namespace

void Corbel::declareXoClasses() {
  if (!mustDeclare) return;
  NumericTypeXoClass::registerXoClass();
  ModelessQuantizerXoClass::registerXoClass();
  QuantizerXoClass::registerXoClass();
  SlopeBiasQuantizerXoClass::registerXoClass();
  FimathXoClass::registerXoClass();
  FiXoClass::registerXoClass();
  QloggerXoClass::registerXoClass();
  mustDeclare = false;
}

// Every class exists before any is filled: the tables refer to each other's types.
void Corbel::registerXoClasses() {
  if (!mustRegister) return;
  declareXoClasses();
  NumericTypeXoClass::getInstance()->init();
  NumericTypeXoClass::getInstance()->init_fi_methods();
  ModelessQuantizerXoClass::getInstance()->init();
  QuantizerXoClass::getInstance()->init();
  SlopeBiasQuantizerXoClass::getInstance()->init();
  FimathXoClass::getInstance()->init();
  FimathXoClass::getInstance()->init_fi_methods();
  FiXoClass::getInstance()->init();
  QloggerXoClass::getInstance()->init();
  mustRegister = false;
}

}  // namespace corbel

using namespace corbel;

// This host has no dialog framework to load, so "numerictype" and "fimath" are registered
// without a superclass.
void NVInitialize_corbel() {
  if (initialized) return;
  embedded::getEmbeddedPackage();
  Corbel::registerXoClasses();
  initialized = true;
}

void NVTerminate_corbel() {
  if (terminated) return;
  embedded::terminateEmbeddedPackage();
  terminated = true;
}

const void* QueryNVFcns_corbel() {
  static const void* const kNoFunctions[4] = {};
  return kNoFunctions;
}

const CorbelFunctionTable* QueryNVFcnTable_corbel() {
  static const CorbelFunctionTable table{QueryNVFcns_corbel(), 0xA088ABABu, buildTime()};
  return &table;
}
