// Host values as a host adapter hands them to the dispatcher, drawn from the fuzzer's bytes:
// numbers that matter to word and fraction lengths and modes (0, 1, -1, 65535, 65536, the
// int32 limits, NaN, Inf, fractions, huge values), small arrays of every class, the names
// and strings the classes know (property names, enumeration strings) and raw text, and
// references to instances of every class.
#pragma once

#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "binding/corbel_entry.h"
#include "fuzz_input.h"
#include "host/dispatcher.h"
#include "host/host_array.h"

namespace corbel::fuzz {

// The package's classes by name, the order they are drawn in.
inline const std::array<const char*, 7> kClassNames = {
    "embedded.numerictype",   "embedded.ModelessQuantizer",
    "embedded.CoreQuantizer", "embedded.slopebiasquantizer",
    "embedded.fimath",        "embedded.CoreFi",
    "embedded.qloggerstruct"};

// Every property name and enumeration string of the package's classes, gathered once.
inline const std::vector<std::string>& knownWords() {
  static const std::vector<std::string> words = [] {
    std::vector<std::string> w;
    for (const char* name : kClassNames) {
      const dispatcher::ClassListing listing = dispatcher::describe(name);
      for (const auto& p : listing.properties) {
        w.push_back(p.name);
        w.insert(w.end(), p.values.begin(), p.values.end());
      }
    }
    return w;
  }();
  return words;
}

// One instance of each class made from no arguments where the class allows it, kept for the
// life of the process so that values can refer to them.
inline const std::vector<HostArray>& sampleObjects() {
  static const std::vector<HostArray> objects = [] {
    std::vector<HostArray> o;
    for (const char* name : kClassNames) {
      try {
        o.push_back(dispatcher::construct(name, {}));
      } catch (const HostError&) {
      }
    }
    return o;
  }();
  return objects;
}

// The module registered and the host installed, once.
inline void useModule() {
  useHost();
  static const bool ready = [] {
    NVInitialize_corbel();
    return true;
  }();
  (void)ready;
}

inline double interestingNumber(Input& in) {
  static constexpr double kInt32Max = std::numeric_limits<int>::max();
  static const double kNumbers[] = {0,
                                    1,
                                    -1,
                                    2,
                                    8,
                                    15,
                                    16,
                                    32,
                                    52,
                                    53,
                                    64,
                                    65535,
                                    65536,
                                    kInt32Max,
                                    -kInt32Max - 1,
                                    kInt32Max + 1.0,
                                    0.5,
                                    -2.5,
                                    1e300,
                                    std::numeric_limits<double>::infinity(),
                                    -std::numeric_limits<double>::infinity(),
                                    std::numeric_limits<double>::quiet_NaN(),
                                    std::numeric_limits<double>::denorm_min()};
  switch (in.bits(2)) {
    case 0:
      return in.rawDouble();
    case 1:
      return static_cast<double>(in.range(-100, 400));
    default:
      return kNumbers[in.bits(8) % std::size(kNumbers)];
  }
}

// One host value.
inline HostArray hostValue(Input& in) {
  constexpr HostClass kNumeric[] = {HostClass::Single, HostClass::Int8,   HostClass::UInt8,
                                    HostClass::Int16,  HostClass::UInt16, HostClass::Int32,
                                    HostClass::UInt32, HostClass::Int64,  HostClass::UInt64};
  switch (in.bits(4)) {
    case 0:
    case 1:
    case 2:
    case 3:
      return HostArray::make_double(interestingNumber(in));
    case 4: {
      const double re = interestingNumber(in);
      return HostArray::make_complex(re, interestingNumber(in));
    }
    case 5: {
      // A small array, sometimes empty or 3-d.
      std::vector<std::size_t> dims(static_cast<std::size_t>(in.range(2, 3)));
      for (std::size_t& d : dims) d = static_cast<std::size_t>(in.range(0, 3));
      HostArray a(HostClass::Double, dims, in.bits(1) ? Complexity::Complex : Complexity::Real);
      for (std::size_t k = 0; k < a.numel(); ++k) {
        a.real<double>()[k] = interestingNumber(in);
        if (a.is_complex()) a.imag<double>()[k] = interestingNumber(in);
      }
      return a;
    }
    case 6: {
      HostArray a = HostArray::make_numeric(kNumeric[in.bits(4) % std::size(kNumeric)],
                                            {1, static_cast<std::size_t>(in.range(0, 2))});
      auto* p = static_cast<std::uint8_t*>(a.real_data());
      for (std::size_t k = 0; k < a.numel() * host_element_size(a.element_class()); ++k)
        p[k] = static_cast<std::uint8_t>(in.bits(8));
      return a;
    }
    case 7:
      return HostArray::make_logical(in.bits(1));
    case 8:
    case 9:
    case 10: {
      const auto& words = knownWords();
      return HostArray::make_text(words[in.bits(16) % words.size()]);
    }
    case 11: {
      std::string s(static_cast<std::size_t>(in.range(0, 12)), ' ');
      for (char& c : s) c = static_cast<char>(in.bits(8));
      return HostArray::make_text(s);
    }
    case 12:
    case 13: {
      const auto& objects = sampleObjects();
      return objects[in.bits(8) % objects.size()];
    }
    case 14:
      return HostArray(in.bits(1) ? HostClass::Cell : HostClass::Struct, {1, 1});
    default:
      return HostArray();
  }
}

}  // namespace corbel::fuzz
