// The module's four exported entry points and its function table.
#pragma once

#include <cstdint>

namespace corbel {

// The module's function table: where its list of host-callable functions is, the table's
// mark, and when the module was built.
struct CorbelFunctionTable {
  const void* functions;     // the list of host-callable functions (empty: all zero)
  std::uint32_t mark;        // 0xA088ABAB
  std::uint32_t buildTime;   // seconds since 1970
};

}  // namespace corbel

extern "C" {
// Creates the package "embedded" and its seven classes, once per load.
void NVInitialize_corbel();
// Hands the package back to the host, once per load.
void NVTerminate_corbel();
const corbel::CorbelFunctionTable* QueryNVFcnTable_corbel();
const void* QueryNVFcns_corbel();
}
