// Property sets through the dispatcher: an instance of a random class (made from no
// arguments, or a fi from a random value and type), then up to four sets of a random
// property (a known name, or one with a few bits flipped) to a random host value. A refused set
// raises a HostError and changes nothing: every property reads as it did before.
#include <algorithm>

#include "fuzz_input.h"
#include "host/xo_class.h"
#include "host_values.h"

namespace {

using namespace corbel;

// Every property's value as text that two equal values share: class, size and bytes, and
// for an instance its own properties, one level down.
std::string describeValue(const HostArray& v, int depth);

std::string describeObject(XoInterface* object, int depth) {
  std::string s;
  const dispatcher::ClassListing listing = dispatcher::describe(*object->getClass());
  for (const auto& p : listing.properties) {
    s += p.name + "=";
    try {
      s += describeValue(dispatcher::get_property(object, p.name), depth + 1);
    } catch (const HostError& e) {
      s += "error " + e.identifier();
    }
    s += ";";
  }
  return s;
}

std::string describeValue(const HostArray& v, int depth) {
  std::string s(v.class_name());
  for (std::size_t d : v.dims()) s += " " + std::to_string(d);
  if (v.object()) return depth > 1 ? s : s + "{" + describeObject(v.object(), depth) + "}";
  if (!v.real_data()) return s;
  const std::size_t bytes = v.numel() * host_element_size(v.element_class());
  for (const void* part : {v.real_data(), v.imag_data()})
    if (part) s.append(static_cast<const char*>(part), bytes);
  return s;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::useModule();
  fuzz::Input in(data, size);
  const char* cls = fuzz::kClassNames[in.bits(8) % fuzz::kClassNames.size()];
  HostArray object;
  try {
    if (in.bits(1)) {
      cls = "embedded.CoreFi";
      const HostArray type = dispatcher::construct(
          "embedded.numerictype",
          std::vector<HostArray>{HostArray::make_double(static_cast<double>(in.bits(1))),
                                 HostArray::make_double(static_cast<double>(in.range(1, 300))),
                                 HostArray::make_double(static_cast<double>(in.range(-40, 320)))});
      object = dispatcher::construct(
          cls, std::vector<HostArray>{fuzz::hostValue(in), type, fuzz::sampleObjects()[4]});
    } else {
      object = dispatcher::construct(cls, {});
    }
  } catch (const HostError&) {
    return 0;
  }
  const auto properties = dispatcher::describe(cls).properties;
  for (int k = static_cast<int>(in.range(1, 4)); k > 0; --k) {
    std::string name = properties[in.bits(8) % properties.size()].name;
    if (in.bits(3) == 0)
      for (char& c : name) c = static_cast<char>(c ^ in.bits(2));  // a near miss
    const HostArray value = fuzz::hostValue(in);
    const std::string before = describeObject(object.object(), 0);
    try {
      dispatcher::set_property(object.object(), name, value);
    } catch (const HostError&) {
      const std::string after = describeObject(object.object(), 0);
      if (after != before) {
        const std::size_t at =
            std::mismatch(before.begin(), before.end(), after.begin()).first - before.begin();
        const std::size_t from = before.rfind(';', at) + 1;  // the property that differs
        std::fprintf(stderr, "a refused set of %s changed the instance at %s\n", name.c_str(),
                     before.substr(from, before.find('=', from) - from).c_str());
        std::abort();
      }
    } catch (const std::exception& e) {
      std::fprintf(stderr, "not a HostError: %s\n", e.what());
      std::abort();
    }
  }
  return 0;
}
