// The object system: type repository, enumerated types, packages and class types, instances
// and their reference counts.
#include <gtest/gtest.h>

#include "expect_error.h"
#include "host/host_error.h"
#include "host_toy_counter.h"

namespace corbel {
namespace {

XoTypeRepository& repo() {
  return XoTypeRepository::instance();
}

TEST(XoTypes, PrimitiveTypesAreRegisteredWithTheirKinds) {
  const std::pair<const char*, XoTypeKind> expected[] = {
      {"int32", XoTypeKind::Int32},
      {"double", XoTypeKind::Double},
      {"bool", XoTypeKind::Bool},
      {"string", XoTypeKind::String},
      {"Norvak array", XoTypeKind::HostArray},
  };
  for (const auto& [name, kind] : expected) {
    XoDataType* t = repo().getType(name);
    ASSERT_NE(t, nullptr) << name;
    EXPECT_EQ(t->getKind(), kind) << name;
  }
  EXPECT_EQ(repo().getType("int64"), nullptr);
  EXPECT_EQ(repo().getType("Int32"), nullptr);
}

TEST(XoTypes, EnumTypeIsRegisteredOnceAndReused) {
  XoEnumStringType* first = toy::mode_type();
  XoEnumStringType* again = toy::mode_type();
  EXPECT_EQ(first, again);
  EXPECT_EQ(repo().getType("toy Counter Mode"), first);
  const auto names = repo().getTypeNames();
  EXPECT_EQ(std::count(names.begin(), names.end(), "toy Counter Mode"), 1);

  ASSERT_EQ(first->getValues().size(), 3u);
  EXPECT_EQ(first->getValues()[2].text, "hold");
  EXPECT_EQ(first->codeOf("hold"), 5);
  EXPECT_EQ(first->codeOf("Hold"), std::nullopt);
  EXPECT_EQ(*first->stringOf(1), "down");
  EXPECT_EQ(first->stringOf(2), nullptr);  // the gap between 1 and 5 finds nothing

  expect_error([&] { repo().registerType(std::make_unique<XoEnumStringType>("toy Counter Mode")); },
               "velkora:xo:typeExists", "A type named 'toy Counter Mode' is already registered.");
  EXPECT_EQ(first->getValues().size(), 3u);
}

TEST(XoTypes, EnumValuesAreUniqueByTextAndCode) {
  XoEnumStringType t("scratch");
  t.addValue("a", 0);
  for (auto [text, code] : {std::pair{"a", 7}, std::pair{"b", 0}})
    expect_internal_error([&] { t.addValue(text, code); }, "velkora:xo:duplicateEnumValue",
                          "Type 'scratch' already has the value '" + std::string(text) +
                              "' or the code " + std::to_string(code) + ".");
  EXPECT_EQ(t.getValues().size(), 1u);
}

// A minimal class whose instances hold an int and count their destructions.
class Probe : public XoClass {
 public:
  explicit Probe(std::string name) : XoClass(std::move(name)) {}
  XoInterface* createClassSpecificObject(XoInterface* i, void**, int) override { return i; }
  void destroyObject(XoInterface* i) override {
    ++destroyed;
    delete static_cast<int*>(i->getClassSpecificObject());
  }
  int destroyed = 0;
};

TEST(XoPackages, ClassesJoinInOrderAndBecomeTypes) {
  auto& pm = XoPackageManager::instance();
  XoPackage* pkg = pm.createPackage("probes", true);
  EXPECT_TRUE(pkg->getFlag());
  Probe a("A"), b("B"), c("C");
  pkg->addClass(&b);
  pkg->addClass(&a);
  pkg->addClass(&c);
  EXPECT_EQ(pkg->getClasses(), (std::vector<XoClass*>{&b, &a, &c}));
  EXPECT_EQ(a.getPackageClassName(), "probes.A");
  EXPECT_EQ(pm.findClass("probes.C"), &c);
  EXPECT_EQ(pm.findClass("C"), &c);

  auto* type = dynamic_cast<XoClassType*>(repo().getType("probes.A"));
  ASSERT_NE(type, nullptr);
  EXPECT_EQ(type->getClass(), &a);
  EXPECT_EQ(repo().getType("A"), nullptr);
  EXPECT_EQ(repo().getType("A", 1), type);  // the search flag finds bare class names

  Probe twin("A");
  expect_error([&] { pkg->addClass(&twin); }, "velkora:xo:duplicateClass",
               "Class 'A' cannot join package 'probes': it is already in a package or the "
               "name is taken.");
  expect_error([&] { pm.createPackage("probes", false); }, "velkora:xo:packageExists",
               "A package named 'probes' already exists.");

  pm.removePackage(pkg);
  pm.removePackage(pkg);  // a second removal does nothing
  EXPECT_EQ(pm.findPackage("probes"), nullptr);
  EXPECT_EQ(a.getPackage(), nullptr);
  EXPECT_EQ(repo().getType("probes.A"), nullptr);
  EXPECT_EQ(type->getClass(), nullptr);  // the retired type stays valid and matches nothing
  XoPackage* again = pm.createPackage("probes", true);
  again->addClass(&a);
  EXPECT_EQ(repo().getType("probes.A")->getKind(), XoTypeKind::Class);
  pm.removePackage(again);
}

TEST(XoPackages, ADestroyedClassLeavesItsPackage) {
  auto& pm = XoPackageManager::instance();
  XoPackage* pkg = pm.createPackage("shortlived", false);
  Probe keep("Keep");
  pkg->addClass(&keep);
  {
    Probe gone("Gone");
    pkg->addClass(&gone);
  }
  EXPECT_EQ(pkg->getClasses(), (std::vector<XoClass*>{&keep}));
  EXPECT_EQ(repo().getType("shortlived.Gone"), nullptr);
  pm.removePackage(pkg);
}

TEST(XoInstances, DestroyObjectRunsOnceWhenTheLastReferenceGoes) {
  Probe probe("Probe");
  XoInterface* i = XoInterface::create(&probe, new int(3));
  EXPECT_EQ(*static_cast<int*>(i->getClassSpecificObject()), 3);
  i->addRef();
  i->addRef();
  i->release();
  i->release();
  EXPECT_EQ(probe.destroyed, 0);
  EXPECT_EQ(i->getRefCount(), 1);
  i->release();
  EXPECT_EQ(probe.destroyed, 1);
}

TEST(XoClasses, LookupClimbsTheSuperclassChain) {
  toy::ToyPackage toy;
  Probe derived("Derived");
  derived.setSuperclass(&toy.counter());
  EXPECT_TRUE(derived.isA(&toy.counter()));
  EXPECT_FALSE(toy.counter().isA(&derived));
  EXPECT_EQ(derived.findProperty("Mode"), toy.counter().findProperty("Mode"));
  EXPECT_EQ(derived.findMethod("bump"), toy.counter().findMethod("bump"));
  EXPECT_EQ(derived.findMethod("Bump"), nullptr);
}

}  // namespace
}  // namespace corbel
