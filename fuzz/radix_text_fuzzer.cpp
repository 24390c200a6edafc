// Radix text into a fi at a random type: the text is read or refused with a HostError, and
// what is read writes back as text that reads to the same stored integers.
#include "fi/fi.h"
#include "fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace corbel;
  fuzz::useHost();
  fuzz::Input in(data, size);
  const bool issigned = in.bits(1);
  const int w = static_cast<int>(in.bits(1) ? in.range(1, 2000) : in.range(1, 140));
  const int f = static_cast<int>(in.range(-40, 340));
  const int n = static_cast<int>(in.range(1, 6));
  constexpr int kRadixes[] = {2, 8, 10, 16};
  const int radix = kRadixes[in.bits(2)];
  const HostArray text = HostArray::make_text(in.rest());
  fuzz::expectOnlyHostErrors([&] {
    const int dims[] = {1, n};
    fi a(dims, 2, NumericType(issigned, w, f), fimath(), false);
    a.base2num(text, radix);
    fi b(dims, 2, NumericType(issigned, w, f), fimath(), false);
    b.base2num(a.radixText(radix, radix == 10), radix);
    for (int i = 0; i < n; ++i)
      if (!(a.real(i) == b.real(i))) std::abort();
  });
  return 0;
}
