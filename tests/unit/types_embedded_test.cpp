// The package object, registration of the enumerated types, and the host helpers.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "expect_error.h"
#include "host/dispatcher.h"
#include "host/host_error.h"
#include "host/inprocess_host.h"
#include "host/xo_types.h"
#include "host_toy_counter.h"
#include "types/embedded.h"
#include "types/fimath.h"
#include "types/numeric_type.h"

namespace corbel {
namespace {

std::vector<std::string> strings_of(const XoEnumStringType* t) {
  std::vector<std::string> out;
  for (const auto& v : t->getValues()) out.push_back(v.text);
  return out;
}

TEST(Embedded, EnumeratedTypesAreRegisteredOnceInTableOrder) {
  XoEnumStringType* round = embedded::getRoundModeEnum();
  EXPECT_EQ(round, embedded::getRoundModeEnum());
  EXPECT_EQ(round, XoTypeRepository::instance().getType("quantizer Round Mode"));
  EXPECT_EQ(strings_of(round),
            (std::vector<std::string>{"ceil", "convergent", "fix", "floor", "nearest", "round"}));
  XoEnumStringType* modes = NumericType::getDataTypeModeEnum();
  EXPECT_EQ(modes->getName(), "NumericTypeDataTypeModeEnum");
  EXPECT_EQ(modes->stringOf(6), nullptr);
  EXPECT_EQ(*modes->stringOf(7), "Scaled double: unspecified scaling");
  EXPECT_EQ(*modes->codeOf("Scaled double: slope and bias scaling"), 9);
  EXPECT_EQ(embedded::getScalingEnum()->getValues().size(), 2u);
  EXPECT_EQ(NumericType::getScalingEnum()->getValues().size(), 4u);
  EXPECT_EQ(strings_of(fimath::getArithmeticModeEnum()),
            (std::vector<std::string>{"FullPrecision", "KeepLSB", "KeepMSB", "SpecifyPrecision"}));
}

TEST(Embedded, AnExistingTypeIsTakenAsItIs) {
  // Registered by someone else first, with no values: used unchanged.
  XoDataType* mine = XoTypeRepository::instance().registerType(
      std::make_unique<XoEnumStringType>("fimathPrecisionModeEnum"));
  EXPECT_EQ(fimath::getPrecisionModeEnum(), mine);
  EXPECT_TRUE(fimath::getPrecisionModeEnum()->getValues().empty());
}

TEST(Embedded, PackageLifecycle) {
  XoPackage* p = embedded::getEmbeddedPackage();
  EXPECT_EQ(p->getName(), "embedded");
  EXPECT_EQ(embedded::getEmbeddedPackage(), p);
  EXPECT_EQ(XoPackageManager::instance().findPackage("embedded"), p);
  embedded::terminateEmbeddedPackage();
  EXPECT_EQ(XoPackageManager::instance().findPackage("embedded"), nullptr);
  embedded::terminateEmbeddedPackage();  // nothing the second time
  XoPackage* again = embedded::getEmbeddedPackage();
  EXPECT_EQ(XoPackageManager::instance().findPackage("embedded"), again);
  embedded::terminateEmbeddedPackage();
}

TEST(Embedded, HostErrorsAreRaisedAgainWithTheirIdentifiers) {
  InProcessHost host;
  ScopedHost scope(host);
  host.register_function("fails", [](std::span<HostArray>, std::span<const HostArray>) {
    throw HostError("test:fails:always", "it always fails");
  });
  host.register_function("plain", [](std::span<HostArray>, std::span<const HostArray>) {
    throw std::runtime_error("no identifier here");
  });
  host.set_error_mode(3);
  EXPECT_NE(embedded::call_NORVAK_with_trap(0, nullptr, 0, nullptr, "fails"), 0);
  EXPECT_EQ(host.error_mode(), 3);  // restored
  EXPECT_TRUE(host.error_trap());   // left on
  expect_error([] { embedded::throw_last_error(); }, "test:fails:always", "it always fails");
  EXPECT_NE(embedded::call_NORVAK_with_trap(0, nullptr, 0, nullptr, "plain"), 0);
  expect_error([] { embedded::throw_last_error(); }, "velkora:embedded:throw_last_error",
               "no identifier here");
  HostArray out[1];
  HostArray in[] = {HostArray::make_text("2^-3")};
  EXPECT_EQ(embedded::call_NORVAK_with_trap(1, out, 1, in, "eval"), 0);
  EXPECT_EQ(out[0].real_as_double(0), 0.125);
}

TEST(Embedded, ScalarImaginaryPart) {
  EXPECT_EQ(embedded::getScalarImag(HostArray::make_double(3)), 0.0);
  EXPECT_EQ(embedded::getScalarImag(HostArray::make_complex(1, -2.5)), -2.5);
  HostArray u = HostArray::make_numeric(HostClass::UInt32, {1, 1}, Complexity::Complex);
  u.imag<std::uint32_t>()[0] = 4294967295u;
  EXPECT_EQ(embedded::getScalarImag(u), 4294967295.0);
  HostArray i8 = HostArray::make_numeric(HostClass::Int8, {1, 2}, Complexity::Complex);
  i8.imag<std::int8_t>()[0] = -7;
  EXPECT_EQ(embedded::getScalarImag(i8), -7.0);
  EXPECT_EQ(embedded::getScalarImag(HostArray(HostClass::Cell, {1, 1})), 0.0);
}

// The set rule: listing forms go to the built-in set; assignments are refused.
TEST(Embedded, SetListsButNeverAssigns) {
  InProcessHost host;
  ScopedHost scope(host);
  toy::ToyPackage toy;
  HostArray c = dispatcher::construct("toy.Counter", {});
  EmbeddedFiSetMethodInfo set("fi");
  auto invoke = [&](std::vector<HostArray> args, int nout) {
    std::vector<void*> in, out(2, nullptr);
    for (HostArray& a : args) in.push_back(&a);
    set.invokeMethod(nullptr, &nout, out.data(), static_cast<int>(in.size()), in.data());
    std::vector<HostArray> results;
    for (int i = 0; i < nout; ++i) {
      results.push_back(std::move(*static_cast<HostArray*>(out[i])));
      delete static_cast<HostArray*>(out[i]);
    }
    return results;
  };
  invoke({c}, 0);
  EXPECT_NE(host.take_console().find("Mode: [ up | down | hold ]"), std::string::npos);
  auto listed = invoke({c, HostArray::make_text("Mode")}, 1);
  ASSERT_EQ(listed.size(), 1u);
  EXPECT_EQ(listed[0].text(), "[ up | down | hold ]");
  expect_error(
      [&] {
        invoke({c, HostArray::make_text("Mode"), HostArray::make_text("up")}, 0);
      },
      "velkora:set:InvalidUse",
      "You cannot use SET to change the properties of a fi object; use dot notation "
      "instead.");
  expect_error(
      [&] {
        invoke({c, HostArray::make_text("NoSuch")}, 1);
      },
      "velkora:set:builtinerror", "There is no property 'NoSuch' in class 'toy.Counter'.");
  EXPECT_EQ(toy::counter_of(c.object()).mode, 0);
}

}  // namespace
}  // namespace corbel
