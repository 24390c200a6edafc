// The fimath text parser: any text is parsed or refused with a HostError, and a parsed
// fimath writes back the text that parses to an equal one.
#include "fuzz_input.h"
#include "types/fimath.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace corbel;
  fuzz::useHost();
  fuzz::expectOnlyHostErrors([&] {
    const fimath f = fimath::string2Fimath(std::string(reinterpret_cast<const char*>(data), size));
    const fimath again = fimath::string2Fimath(f.convertToString());
    if (!again.isequal(f)) std::abort();
  });
  return 0;
}
