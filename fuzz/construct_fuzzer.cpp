// Construction through the dispatcher, as the host's constructor calls reach it: a random
// class of the package and zero to five random host values. The instance is made or refused
// with a HostError; every property of a made one can be read.
#include "fuzz_input.h"
#include "host_values.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace corbel;
  fuzz::useModule();
  fuzz::Input in(data, size);
  const char* cls = fuzz::kClassNames[in.bits(8) % fuzz::kClassNames.size()];
  std::vector<HostArray> args(static_cast<std::size_t>(in.range(0, 5)));
  for (HostArray& a : args) a = fuzz::hostValue(in);
  fuzz::expectOnlyHostErrors([&] {
    const HostArray made = dispatcher::construct(cls, args);
    for (const auto& p : dispatcher::describe(cls).properties)
      fuzz::expectOnlyHostErrors([&] { dispatcher::get_property(made.object(), p.name); });
  });
  return 0;
}
