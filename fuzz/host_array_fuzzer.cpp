// Host arrays of every numeric class into a fi: random class, dimensions, complexity and
// bits (NaN and Inf included), at a random type. The array is made or refused with a
// HostError; a made one has the host array's shape.
#include "fi/fi.h"
#include "fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace corbel;
  fuzz::useHost();
  fuzz::Input in(data, size);
  constexpr HostClass kClasses[] = {HostClass::Double, HostClass::Single,  HostClass::Int8,
                                    HostClass::UInt8,  HostClass::Int16,   HostClass::UInt16,
                                    HostClass::Int32,  HostClass::UInt32,  HostClass::Int64,
                                    HostClass::UInt64, HostClass::Logical, HostClass::Char};
  const HostClass cls = kClasses[in.bits(8) % std::size(kClasses)];
  std::vector<std::size_t> dims(static_cast<std::size_t>(in.range(2, 3)));
  for (std::size_t& d : dims) d = static_cast<std::size_t>(in.range(0, 4));
  const bool complex = in.bits(1) && cls != HostClass::Logical && cls != HostClass::Char;
  const bool issigned = in.bits(1);
  const int w = static_cast<int>(in.bits(1) ? in.range(1, 300) : in.range(1, 60));
  const int f = static_cast<int>(in.range(-80, 320));
  HostArray values(cls, dims, complex ? Complexity::Complex : Complexity::Real);
  const std::size_t bytes = values.numel() * host_element_size(cls);
  for (void* part : {values.real_data(), values.imag_data()}) {
    if (!part) continue;
    auto* p = static_cast<std::uint8_t*>(part);
    for (std::size_t k = 0; k < bytes; ++k)
      p[k] = static_cast<std::uint8_t>(cls == HostClass::Logical ? in.bits(1) : in.bits(8));
  }
  fuzz::expectOnlyHostErrors([&] {
    const fi a(values, NumericType(issigned, w, f), fimath());
    if (static_cast<std::size_t>(a.numel()) != values.numel()) std::abort();
  });
  return 0;
}
