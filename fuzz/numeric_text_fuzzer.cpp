// The in-process host's evaluation of numeric text: any text gives an array or a HostError.
#include "fuzz_input.h"
#include "host/numeric_eval.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace corbel;
  fuzz::useHost();
  fuzz::expectOnlyHostErrors([&] {
    const HostArray a =
        evaluate_numeric_text(std::string_view(reinterpret_cast<const char*>(data), size));
    (void)a.numel();
  });
  return 0;
}
