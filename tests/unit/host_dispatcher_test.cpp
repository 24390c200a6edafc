// The dispatcher on the toy counter: construction, property reads and writes of every value
// kind, method calls with signature choice, and the refusals that leave the object unchanged.
#include <gtest/gtest.h>

#include "expect_error.h"
#include "host/dispatcher.h"
#include "host/host_error.h"
#include "host_toy_counter.h"

namespace corbel {
namespace {

using toy::counter_of;

class Dispatcher : public ::testing::Test {
 protected:
  toy::ToyPackage toy;
  HostArray c = dispatcher::construct("toy.Counter", {});
  XoInterface* obj() { return c.object(); }
  toy::Counter& state() { return counter_of(obj()); }
  HostArray get(std::string_view p) { return dispatcher::get_property(obj(), p); }
  void set(std::string_view p, const HostArray& v) { dispatcher::set_property(obj(), p, v); }
};

TEST_F(Dispatcher, ConstructsByQualifiedOrBareNameWithEachConstructorForm) {
  ASSERT_NE(obj(), nullptr);
  EXPECT_EQ(obj()->getClass(), &toy.counter());
  EXPECT_EQ(obj()->getRefCount(), 1);
  EXPECT_EQ(state().count, 0);

  HostArray args[] = {HostArray::make_double(7)};
  HostArray d = dispatcher::construct("Counter", args);
  EXPECT_EQ(counter_of(d.object()).count, 7);

  HostArray two[] = {HostArray::make_double(1), HostArray::make_double(2)};
  expect_error([&] { dispatcher::construct("toy.Counter", two); },
               "velkora:xo:noMatchingConstructor",
               "The constructor of class 'toy.Counter' does not take 2 arguments.");
  HostArray text[] = {HostArray::make_text("seven")};
  expect_error([&] { dispatcher::construct("toy.Counter", text); }, "velkora:xo:wrongArgumentType",
               "Argument 1 of method 'Counter' of class 'toy.Counter' must be a real "
               "integer scalar in the int32 range.");
  expect_error([&] { dispatcher::construct("toy.Gauge", {}); }, "velkora:xo:unknownClass",
               "There is no class named 'toy.Gauge'.");
}

TEST_F(Dispatcher, ReadsEveryKindAsTheHostSeesIt) {
  state().count = -3;
  state().mode = 5;
  HostArray count = get("Count");
  EXPECT_EQ(count.element_class(), HostClass::Double);
  EXPECT_EQ(count.real_as_double(0), -3.0);
  EXPECT_EQ(get("Scale").real_as_double(0), 1.0);
  EXPECT_EQ(get("Enabled").element_class(), HostClass::Logical);
  EXPECT_EQ(get("Label").text(), "counter");
  EXPECT_EQ(get("Mode").text(), "hold");
  EXPECT_EQ(get("Serial").real_as_double(0), state().serial);

  HostArray self = get("Partner");
  EXPECT_EQ(self.element_class(), HostClass::Object);
  EXPECT_EQ(self.object(), obj());
  EXPECT_EQ(obj()->getRefCount(), 2);  // the returned reference only; the get's own is gone
}

TEST_F(Dispatcher, WritesEveryKindConvertingHostValues) {
  set("Count", HostArray::make_double(42));
  HostArray u8 = HostArray::make_uint8_matrix(1, 1);
  u8.real<std::uint8_t>()[0] = 200;
  set("Scale", u8);
  set("Enabled", HostArray::make_double(0));
  set("Label", HostArray::make_text("renamed"));
  set("Mode", HostArray::make_text("down"));
  set("Data", HostArray::make_double_matrix(1, 2, {1.5, 2.5}));
  EXPECT_EQ(state().count, 42);
  EXPECT_EQ(state().scale, 200.0);
  EXPECT_FALSE(state().enabled);
  EXPECT_EQ(state().label, "renamed");
  EXPECT_EQ(state().mode, 1);
  EXPECT_EQ(get("Data").real_as_double(1), 2.5);

  HostArray other = dispatcher::construct("toy.Counter", {});
  set("Partner", other);
  EXPECT_EQ(state().partner, other.object());
  EXPECT_EQ(other.object()->getRefCount(), 2);
}

TEST_F(Dispatcher, RefusedWritesRaiseAndChangeNothing) {
  const std::int32_t count = state().count, mode = state().mode;
  const std::string label = state().label;
  const bool enabled = state().enabled;
  struct Case {
    const char* property;
    HostArray value;
    const char* id;
    const char* text;
  };
  const char* wrong = "velkora:xo:wrongPropertyValue";
  Case cases[] = {
      {"Count", HostArray::make_double(2.5), wrong,
       "The value of property 'Count' of class 'toy.Counter' must be a real integer scalar in "
       "the int32 range."},
      {"Count", HostArray::make_double(2147483648.0), wrong,
       "The value of property 'Count' of class 'toy.Counter' must be a real integer scalar in "
       "the int32 range."},
      {"Count", HostArray::make_text("3"), wrong,
       "The value of property 'Count' of class 'toy.Counter' must be a real integer scalar in "
       "the int32 range."},
      {"Scale", HostArray::make_complex(1, 1), wrong,
       "The value of property 'Scale' of class 'toy.Counter' must be a real scalar."},
      {"Enabled", HostArray::make_double_matrix(1, 2), wrong,
       "The value of property 'Enabled' of class 'toy.Counter' must be a logical or real "
       "scalar."},
      {"Label", HostArray::make_double(1), wrong,
       "The value of property 'Label' of class 'toy.Counter' must be a character vector."},
      {"Mode", HostArray::make_text("Down"), wrong,
       "The value of property 'Mode' of class 'toy.Counter' must be one of 'up', 'down', "
       "'hold'."},
      {"Partner", HostArray::make_double(1), wrong,
       "The value of property 'Partner' of class 'toy.Counter' must be an object of class "
       "'toy.Counter'."},
      {"Serial", HostArray::make_double(9), "velkora:xo:readOnlyProperty",
       "Property 'Serial' of class 'toy.Counter' is read-only."},
      {"count", HostArray::make_double(1), "velkora:xo:unknownProperty",
       "There is no property 'count' in class 'toy.Counter'."},
  };
  for (const Case& k : cases) {
    SCOPED_TRACE(k.property);
    expect_error([&] { set(k.property, k.value); }, k.id, k.text);
  }
  EXPECT_EQ(state().count, count);
  EXPECT_EQ(state().label, label);
  EXPECT_EQ(state().mode, mode);
  EXPECT_EQ(state().enabled, enabled);
  EXPECT_EQ(state().partner, nullptr);
  expect_error([&] { get("Colour"); }, "velkora:xo:unknownProperty",
               "There is no property 'Colour' in class 'toy.Counter'.");
}

TEST_F(Dispatcher, ReadOnlyPropertyRefusesEvenWhenCalledDirectly) {
  XoPropInfoTemplate* serial = toy.counter().findProperty("Serial");
  std::int32_t v = 9;
  expect_error([&] { serial->setValue(obj(), &v); }, "velkora:xo:readOnlyProperty",
               "Property 'Serial' of class 'toy.Counter' is read-only.");
}

TEST_F(Dispatcher, InvokeChoosesTheSignatureByArityAndKind) {
  HostArray one[] = {c};
  auto r = dispatcher::invoke("bump", one, 1);
  ASSERT_EQ(r.size(), 1u);
  EXPECT_EQ(r[0].real_as_double(0), 1.0);

  HostArray by_five[] = {c, HostArray::make_double(5)};
  EXPECT_EQ(dispatcher::invoke("bump", by_five, 1)[0].real_as_double(0), 6.0);

  HostArray add_int[] = {c, HostArray::make_logical(true)};  // a logical converts to int32
  EXPECT_EQ(dispatcher::invoke("add", add_int, 1)[0].real_as_double(0), 7.0);
  HostArray add_text[] = {c, HostArray::make_text("!")};
  EXPECT_EQ(dispatcher::invoke("add", add_text, 1)[0].text(), "counter!");

  // Variable arguments, two results, and the object found in any position.
  HostArray totals[] = {c, HostArray::make_double(0.5), HostArray::make_text("A")};
  auto t = dispatcher::invoke(&toy.counter(), "total", totals, 1);
  ASSERT_EQ(t.size(), 2u);
  EXPECT_EQ(t[0].real_as_double(0), 7.0 + 0.5 + 65.0);
  EXPECT_EQ(t[1].real_as_double(0), 2.0);
}

TEST_F(Dispatcher, RefusedCallsRaiseAndChangeNothing) {
  HostArray fraction[] = {c, HostArray::make_double(2.5)};
  expect_error([&] { dispatcher::invoke("add", fraction, 1); }, "velkora:xo:wrongArgumentType",
               "Argument 2 of method 'add' of class 'toy.Counter' must be a real integer "
               "scalar in the int32 range.");
  HostArray three[] = {c, HostArray::make_double(1), HostArray::make_double(2)};
  expect_error([&] { dispatcher::invoke("bump", three, 1); }, "velkora:xo:noMatchingSignature",
               "Method 'bump' of class 'toy.Counter' does not take 3 arguments.");
  HostArray alone[] = {c};
  expect_error([&] { dispatcher::invoke("total", alone, 1); }, "velkora:xo:noMatchingSignature",
               "Method 'total' of class 'toy.Counter' does not take 1 arguments.");
  expect_error([&] { dispatcher::invoke("reset", alone, 0); }, "velkora:xo:unknownMethod",
               "There is no method 'reset' in class 'toy.Counter'.");
  HostArray no_object[] = {HostArray::make_double(1)};
  expect_error([&] { dispatcher::invoke("bump", no_object, 1); }, "velkora:xo:notAnObject",
               "Method 'bump' needs an object among its arguments.");
  EXPECT_EQ(state().count, 0);
  EXPECT_EQ(state().label, "counter");
}

TEST_F(Dispatcher, ObjectsLiveAsLongAsTheirLastReference) {
  const int before = toy::Counter::destroyed;
  {
    HostArray a = dispatcher::construct("toy.Counter", {});
    HostArray b = dispatcher::construct("toy.Counter", {});
    dispatcher::set_property(a.object(), "Partner", b);
    XoInterface* kept = b.object();
    b.release();  // a still holds b
    EXPECT_EQ(toy::Counter::destroyed, before);
    EXPECT_EQ(kept->getRefCount(), 1);
    HostArray copy = a;  // a second reference on a
    a.release();
    EXPECT_EQ(toy::Counter::destroyed, before);
  }
  EXPECT_EQ(toy::Counter::destroyed, before + 2);  // each destroyObject ran exactly once
}

TEST_F(Dispatcher, DescribeListsWhatTheClassOffersInOrder) {
  dispatcher::ClassListing l = dispatcher::describe("toy.Counter");
  EXPECT_EQ(l.name, "toy.Counter");
  EXPECT_EQ(l.constructors, (std::vector<std::string>{"() -> ()", "(int32) -> ()"}));
  std::vector<std::string> names;
  for (const auto& p : l.properties) names.push_back(p.name);
  EXPECT_EQ(names, (std::vector<std::string>{"Count", "Scale", "Enabled", "Label", "Mode", "Serial",
                                             "Partner", "Data"}));
  EXPECT_EQ(l.properties[4].type, "toy Counter Mode");
  EXPECT_EQ(l.properties[4].values, (std::vector<std::string>{"up", "down", "hold"}));
  EXPECT_TRUE(l.properties[5].read_only);
  EXPECT_FALSE(l.properties[0].read_only);
  ASSERT_EQ(l.methods.size(), 3u);
  EXPECT_EQ(l.methods[1].name, "add");
  EXPECT_EQ(l.methods[1].signatures,
            (std::vector<std::string>{"(toy.Counter, int32) -> (int32)",
                                      "(toy.Counter, string) -> (string)"}));
  EXPECT_EQ(l.methods[2].signatures[0], "(toy.Counter, Norvak array, ...) -> (double, int32)");
}

}  // namespace
}  // namespace corbel
