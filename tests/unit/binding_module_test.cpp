// Module entry: initialisation and termination once each, the package's classes in
// order, fi instances from 0 to 3 host values, the reference holders and the dummy
// constructors.
#include <gtest/gtest.h>

#include "binding/class_objects.h"
#include "binding/corbel_entry.h"
#include "binding/interface_refs.h"
#include "expect_error.h"
#include "host/dispatcher.h"
#include "host/inprocess_host.h"
#include "host/xo_package.h"

namespace corbel {
namespace {

class BindingModule : public ::testing::Test {
 protected:
  void SetUp() override { NVInitialize_corbel(); }
  InProcessHost host_;
  ScopedHost scope_{host_};
};

std::vector<std::string> class_names(const XoPackage& package) {
  std::vector<std::string> names;
  for (const XoClass* c : package.getClasses()) names.push_back(c->getName());
  return names;
}

const fi& fi_of(const HostArray& object) {
  return *static_cast<const fi*>(object.object()->getClassSpecificObject());
}

TEST_F(BindingModule, InitialisesOncePackageHoldsTheSevenClassesInOrder) {
  XoPackage* package = XoPackageManager::instance().findPackage("embedded");
  ASSERT_NE(package, nullptr);
  const std::vector<std::string> expected = {"numerictype", "ModelessQuantizer", "CoreQuantizer",
                                             "slopebiasquantizer", "fimath", "CoreFi",
                                             "qloggerstruct"};
  EXPECT_EQ(class_names(*package), expected);
  const std::size_t properties = FiXoClass::getInstance()->getProperties().size();
  NVInitialize_corbel();
  Corbel::registerXoClasses();
  FiXoClass::getInstance()->init();
  EXPECT_EQ(class_names(*package), expected);
  EXPECT_EQ(FiXoClass::getInstance()->getProperties().size(), properties);
  EXPECT_EQ(QuantizerXoClass::getInstance()->getSuperclass(), ModelessQuantizerXoClass::getInstance());
  EXPECT_EQ(SlopeBiasQuantizerXoClass::getInstance()->getSuperclass(),
            ModelessQuantizerXoClass::getInstance());
  EXPECT_EQ(FimathXoClass::getInstance()->getSuperclass(), nullptr);
}

TEST_F(BindingModule, FunctionTableAndEmptyFunctionList) {
  const CorbelFunctionTable* table = QueryNVFcnTable_corbel();
  EXPECT_EQ(table->mark, 0xA088ABABu);
  EXPECT_EQ(table->functions, QueryNVFcns_corbel());
  EXPECT_GT(table->buildTime, 1700000000u);  // after 2023
  const void* const* list = static_cast<const void* const*>(QueryNVFcns_corbel());
  EXPECT_EQ(list[0], nullptr);
}

// Termination runs in a child process so that the other tests keep their package.
TEST_F(BindingModule, TerminationRemovesThePackageOnce) {
  EXPECT_EXIT(
      {
        NVTerminate_corbel();
        bool gone = XoPackageManager::instance().findPackage("embedded") == nullptr;
        XoPackage* again = XoPackageManager::instance().createPackage("embedded", true);
        NVTerminate_corbel();  // must not remove the new package
        gone = gone && XoPackageManager::instance().findPackage("embedded") == again;
        std::exit(gone ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST_F(BindingModule, FiInstancesFromZeroToThreeHostValues) {
  const HostArray none = dispatcher::construct("embedded.CoreFi", {});
  EXPECT_EQ(fi_of(none).realdouble(0), 0.0);

  // One value: signed 16 bits, fraction length 15, nearest and saturate.
  const HostArray one = dispatcher::construct("CoreFi", {{HostArray::make_double(0.3)}});
  EXPECT_EQ(fi_of(one).getWordLength(), 16);
  EXPECT_EQ(fi_of(one).getFractionLength(), 15);
  EXPECT_EQ(fi_of(one).realdouble(0), 9830.0 / 32768);

  // A numeric type with unspecified scaling gets the best precision for the value; given
  // scaling is kept.
  HostArray T = dispatcher::construct("numerictype", {});
  dispatcher::set_property(T.object(), "WordLength", HostArray::make_double(8));
  dispatcher::set_property(T.object(), "DataTypeMode",
                           HostArray::make_text("Fixed-point: unspecified scaling"));
  const HostArray best = dispatcher::construct("CoreFi", {{HostArray::make_double(-5.25), T}});
  EXPECT_EQ(fi_of(best).getFractionLength(), 4);
  EXPECT_EQ(fi_of(best).realdouble(0), -5.25);
  dispatcher::set_property(T.object(), "DataTypeMode",
                           HostArray::make_text("Fixed-point: binary point scaling"));
  dispatcher::set_property(T.object(), "FractionLength", HostArray::make_double(2));
  const HostArray kept = dispatcher::construct("CoreFi", {{HostArray::make_double(-5.3), T}});
  EXPECT_EQ(fi_of(kept).getFractionLength(), 2);
  EXPECT_EQ(fi_of(kept).realdouble(0), -5.25);

  HostArray F = dispatcher::construct("fimath", {});
  dispatcher::set_property(F.object(), "RoundMode", HostArray::make_text("floor"));
  const HostArray three =
      dispatcher::construct("CoreFi", {{HostArray::make_double(-5.3), T, F}});
  EXPECT_EQ(fi_of(three).realdouble(0), -5.5);
  EXPECT_EQ(fi_of(three).getRoundMode(), RoundModeEnum::Floor);
}

TEST_F(BindingModule, FiCreationRefusals) {
  const long live = XoInterface::getLiveCount();
  const HostArray x = HostArray::make_double(1);
  // More than three values reach the class object (no signature takes four) and are refused
  // there before anything is built.
  void* args[4] = {nullptr, nullptr, nullptr, nullptr};
  XoInterface* instance = XoInterface::create(FiXoClass::getInstance());
  expect_error([&] { FiXoClass::getInstance()->createClassSpecificObject(instance, args, 4); },
               "velkora:fi:nargchk:tooManyInputs", "Too many input arguments");
  instance->release();
  expect_error([&] { dispatcher::construct("CoreFi", {{x, x}}); },
               "velkora:numerictype:mustBeNumerictype", "This parameter must be a numerictype.");
  const HostArray T = dispatcher::construct("numerictype", {});
  expect_error([&] { dispatcher::construct("CoreFi", {{x, T, x}}); },
               "velkora:fimath:mustBeFimath", "This parameter must be a fimath.");
  expect_error([&] { dispatcher::construct("CoreFi", {{HostArray::make_text("a")}}); },
               "velkora:fi:constructor:numeric", "FI constructor only valid for numeric data");
  EXPECT_EQ(XoInterface::getLiveCount(), live + 1);  // only T
}

TEST_F(BindingModule, DummyConstructorsRaiseTheirInternalErrors) {
  const std::string sentence = ":Invalid call to dummy constructor.";
  expect_internal_error([] { FiXoClass('a', 1, 1.0f, 1.0); },
                        "velkora:fi:FiXoClass:InvalidConstructor", "Velkora:FiXoClass" + sentence);
  expect_internal_error([] { FimathXoClass('a', 1, 1.0f, 1.0); }, "velkora:fimath:CoreError",
                        "Velkora:FimathXoClass" + sentence);
  expect_internal_error([] { QuantizerXoClass('a', 1, 1.0f, 1.0); },
                        "velkora:embedded:InvalidConstructor",
                        "Velkora:QuantizerXoClass" + sentence);
  expect_internal_error([] { ModelessQuantizerXoClass('a', 1, 1.0f, 1.0); },
                        "velkora:embedded:InvalidConstructor",
                        "Velkora:ModelessQuantizerXoClass" + sentence);
}

TEST_F(BindingModule, ReferenceHoldersCountDeliberately) {
  FiXoInterfaceRef held(fi(0.5, true, 8, 6, fimath()));
  XoInterface* instance = held.getInterface();
  EXPECT_EQ(held.getFi().realdouble(0), 0.5);
  EXPECT_EQ(instance->getRefCount(), 1);
  {
    CorbelXoInterfaceRef copy(held);  // copying takes a reference
    EXPECT_EQ(instance->getRefCount(), 2);
    CorbelXoInterfaceRef other;
    other = held;  // assignment takes none...
    EXPECT_EQ(instance->getRefCount(), 2);
    CorbelXoInterfaceRef::getReference(instance);  // ...so the test takes the one it drops
    CorbelXoInterfaceRef changed;
    changed.changeInterface(instance);
    changed.changeInterface(instance);  // the same instance: nothing happens
    EXPECT_EQ(instance->getRefCount(), 4);
    changed.changeInterface(nullptr);
    EXPECT_EQ(instance->getRefCount(), 3);
  }
  EXPECT_EQ(instance->getRefCount(), 1);
}

}  // namespace
}  // namespace corbel
