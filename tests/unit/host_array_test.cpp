// Host arrays: creation, shape, element reads by class, text, copies and object references.
#include "host/host_array.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "expect_error.h"
#include "host/host_error.h"
#include "host_toy_counter.h"

namespace corbel {
namespace {

TEST(HostArray, CreationGivesClassShapeAndFlags) {
  HostArray d = HostArray::make_double(2.5);
  EXPECT_EQ(d.element_class(), HostClass::Double);
  EXPECT_EQ(d.dims(), (std::vector<std::size_t>{1, 1}));
  EXPECT_TRUE(d.is_numeric());
  EXPECT_FALSE(d.is_complex());
  EXPECT_EQ(d.imag_data(), nullptr);

  HostArray z = HostArray::make_complex(1, -2);
  EXPECT_TRUE(z.is_complex());
  EXPECT_EQ(z.imag_as_double(0), -2.0);

  EXPECT_FALSE(HostArray::make_logical(true).is_numeric());
  EXPECT_FALSE(HostArray::make_text("ab").is_numeric());
  EXPECT_TRUE(HostArray::make_uint8_matrix(2, 3).is_numeric());
  EXPECT_EQ(HostArray::make_uint8_matrix(2, 3).numel(), 6u);

  // Fewer than two dimensions are padded, trailing singletons beyond two dropped.
  EXPECT_EQ(HostArray(HostClass::Int16, {4}).dims(), (std::vector<std::size_t>{4, 1}));
  EXPECT_EQ(HostArray(HostClass::Int16, {2, 3, 1, 1}).dims(), (std::vector<std::size_t>{2, 3}));
  EXPECT_EQ(HostArray(HostClass::Int16, {2, 1, 4}).numel(), 8u);

  HostArray empty;
  EXPECT_EQ(empty.dims(), (std::vector<std::size_t>{0, 0}));
  EXPECT_TRUE(empty.is_empty());
  EXPECT_EQ(HostArray::make_text("").dims(), (std::vector<std::size_t>{0, 0}));

  expect_internal_error(
      [&] {
        HostArray::make_numeric(HostClass::Char, {1, 1});
      },
      "velkora:hostarray:notNumericClass", "A numeric array cannot have the element class char.");
}

// Every class read as double, including the extremes the narrower reads would get wrong.
TEST(HostArray, ElementsReadAsDoubleByClass) {
  auto one = [](HostClass cls, auto v) {
    HostArray a = HostArray::make_numeric(cls, {1, 2}, Complexity::Complex);
    a.imag<decltype(v)>()[1] = v;
    return a.imag_as_double(1);
  };
  EXPECT_EQ(one(HostClass::Int8, std::int8_t{-128}), -128.0);
  EXPECT_EQ(one(HostClass::UInt8, std::uint8_t{255}), 255.0);
  EXPECT_EQ(one(HostClass::Int16, std::int16_t{-32768}), -32768.0);
  EXPECT_EQ(one(HostClass::UInt16, std::uint16_t{65535}), 65535.0);
  EXPECT_EQ(one(HostClass::Int32, std::int32_t{-2147483647 - 1}), -2147483648.0);
  EXPECT_EQ(one(HostClass::UInt32, std::uint32_t{4294967295u}), 4294967295.0);
  EXPECT_EQ(one(HostClass::Int64, std::numeric_limits<std::int64_t>::min()), -std::ldexp(1, 63));
  EXPECT_EQ(one(HostClass::UInt64, std::uint64_t{1} << 63), std::ldexp(1, 63));
  EXPECT_EQ(one(HostClass::UInt64, ~std::uint64_t{0}), std::ldexp(1, 64));  // nearest double
  EXPECT_EQ(one(HostClass::Single, 0.1f), static_cast<double>(0.1f));
  EXPECT_EQ(one(HostClass::Double, -0.0), 0.0);

  HostArray l = HostArray::make_logical_matrix(1, 2);
  l.real<bool>()[1] = true;
  EXPECT_EQ(l.real_as_double(1), 1.0);
  EXPECT_EQ(HostArray::make_text("A").real_as_double(0), 65.0);
  EXPECT_EQ(HostArray::make_double(3).imag_as_double(0), 0.0);  // a real array's imaginary part

  HostArray m = HostArray::make_double_matrix(2, 2, {1, 2, 3, 4});  // column-major
  EXPECT_EQ(m.real_as_double(2), 3.0);
}

TEST(HostArray, RefusedReads) {
  expect_error([&] { HostArray::make_double(1).real_as_double(1); },
               "velkora:hostarray:indexOutOfRange", "Element 1 is outside an array of 1 elements.");
  expect_error(
      [&] {
        HostArray(HostClass::Cell, {1, 1}).real_as_double(0);
      },
      "velkora:hostarray:notNumeric", "The elements of a cell array are not numbers.");
  expect_error([&] { HostArray::make_double(1).text(); }, "velkora:hostarray:notText",
               "A double array is not text.");
  expect_internal_error([&] { HostArray::make_uint8_matrix(1, 1).real<std::int8_t>(); },
                        "velkora:hostarray:elementType",
                        "The elements of a uint8 array cannot be accessed as a signed integer.");
}

TEST(HostArray, TextKeepsEveryByte) {
  const std::string s = "a'b\"\xe9\x01 z";
  HostArray t = HostArray::make_text(s);
  EXPECT_EQ(t.dims(), (std::vector<std::size_t>{1, s.size()}));
  EXPECT_EQ(t.real<char16_t>()[4], 0xE9);
  EXPECT_EQ(t.text(), s);
  t.real<char16_t>()[0] = 0x263A;  // beyond one byte
  EXPECT_EQ(t.text()[0], '?');
}

TEST(HostArray, CopiesAreDeepAndMovesLeaveAnEmptyArray) {
  HostArray a = HostArray::make_double_matrix(1, 2, Complexity::Complex);
  a.real<double>()[0] = 1;
  a.imag<double>()[1] = 2;
  HostArray b = a;
  b.real<double>()[0] = 10;
  b.imag<double>()[1] = 20;
  EXPECT_EQ(a.real_as_double(0), 1.0);
  EXPECT_EQ(a.imag_as_double(1), 2.0);

  HostArray c = std::move(b);
  EXPECT_EQ(c.imag_as_double(1), 20.0);
  EXPECT_EQ(b.dims(), (std::vector<std::size_t>{0, 0}));  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(b.real_data(), nullptr);

  c.release();
  EXPECT_EQ(c.element_class(), HostClass::Double);
  EXPECT_TRUE(c.is_empty());
  EXPECT_FALSE(c.is_complex());
}

TEST(HostArray, ObjectReferencesAreCountedByEveryHolder) {
  toy::ToyPackage toy;
  const int destroyed = toy::Counter::destroyed;
  XoInterface* instance = XoInterface::create(&toy.counter(), new toy::Counter);
  {
    HostArray a = HostArray::make_object(instance);
    EXPECT_EQ(a.element_class(), HostClass::Object);
    EXPECT_EQ(instance->getRefCount(), 2);
    HostArray b = a;
    HostArray c;
    c = b;
    EXPECT_EQ(instance->getRefCount(), 4);
    HostArray d = std::move(c);
    EXPECT_EQ(instance->getRefCount(), 4);
    b.release();
    EXPECT_EQ(instance->getRefCount(), 3);
  }
  EXPECT_EQ(instance->getRefCount(), 1);
  HostArray e = HostArray::make_object(instance);
  instance->release();
  XoInterface* taken = e.detach_object();  // the last reference passes to us
  EXPECT_TRUE(e.is_empty());
  EXPECT_EQ(toy::Counter::destroyed, destroyed);
  taken->release();
  EXPECT_EQ(toy::Counter::destroyed, destroyed + 1);
}

}  // namespace
}  // namespace corbel
