// Host services of the in-process host: eval of numeric text, host function calls with the
// error trap and error mode, lasterr, and the built-in "set" with its error-status record.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "expect_error.h"
#include "host/dispatcher.h"
#include "host/host_error.h"
#include "host/inprocess_host.h"
#include "host_toy_counter.h"

namespace corbel {
namespace {

HostArray eval(InProcessHost& host, std::string_view text) {
  HostArray out[1];
  HostArray in[] = {HostArray::make_text(text)};
  host.call_function("eval", out, in);
  return std::move(out[0]);
}

TEST(HostEval, NumericTextGivesItsValue) {
  InProcessHost host;
  struct Case {
    const char* text;
    std::size_t rows, cols;
    std::vector<double> values;  // column-major
  };
  const Case cases[] = {
      {"-0.5", 1, 1, {-0.5}},
      {"1e-3", 1, 1, {1e-3}},
      {" +2.5E+2 ", 1, 1, {250}},
      {".5", 1, 1, {0.5}},
      {"2^-15", 1, 1, {std::ldexp(1, -15)}},
      {"-2^2", 1, 1, {-4}},
      {"1.5*2^-3", 1, 1, {0.1875}},
      {"(1+2)/4", 1, 1, {0.75}},
      {"pi", 1, 1, {std::numbers::pi}},
      {"[1 2; 3 4]", 2, 2, {1, 3, 2, 4}},
      {"[1, -2, 3]", 1, 3, {1, -2, 3}},
      {"[1 -2]", 1, 2, {1, -2}},
      {"[1 - 2]", 1, 1, {-1}},
      {"[(1 -2) 3]", 1, 2, {-1, 3}},
      {"[1;2;3]", 3, 1, {1, 2, 3}},
      {"[1 2\n3 4]", 2, 2, {1, 3, 2, 4}},
      {"[]", 0, 0, {}},
      {"[true 2]", 1, 2, {1, 2}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    HostArray v = eval(host, c.text);
    EXPECT_EQ(v.element_class(), HostClass::Double);
    EXPECT_EQ(v.dims(), (std::vector<std::size_t>{c.rows, c.cols}));
    for (std::size_t k = 0; k < c.values.size(); ++k) EXPECT_EQ(v.real_as_double(k), c.values[k]);
  }
  EXPECT_TRUE(std::isinf(eval(host, "-Inf").real_as_double(0)));
  EXPECT_TRUE(std::isnan(eval(host, "NaN").real_as_double(0)));
  HostArray t = eval(host, "[true false]");
  EXPECT_EQ(t.element_class(), HostClass::Logical);
  EXPECT_EQ(t.real_as_double(0), 1.0);
  EXPECT_EQ(eval(host, "false").element_class(), HostClass::Logical);
}

TEST(HostEval, TextOutsideTheGrammarIsRefused) {
  InProcessHost host;
  for (const char* text : {"1 2", "[1 2", "1e", "1.2.3", "x", "[1,,2]", "[[1]]", "3+", "(1"}) {
    SCOPED_TRACE(text);
    expect_error(
        [&] { eval(host, text); }, "velkora:host:evalSyntax",
        "The text '" + std::string(text) + "' is not a numeric expression this host can evaluate.");
  }
  expect_error([&] { eval(host, "[1 2; 3]"); }, "velkora:host:evalRows",
               "The rows of '[1 2; 3]' do not have the same number of elements.");
  HostArray out[1];
  HostArray number[] = {HostArray::make_double(1)};
  expect_error([&] { host.call_function("eval", out, number); }, "velkora:host:evalNotText",
               "The input of eval must be a character vector.");
}

TEST(HostCalls, TrappedFailureReturnsAStatusAndLasterrTellsWhy) {
  InProcessHost host;
  host.register_function("twice", [](std::span<HostArray> out, std::span<const HostArray> in) {
    if (in.size() != 1) throw HostError("test:twice:nargs", "twice takes one input");
    out[0] = HostArray::make_double(2 * in[0].real_as_double(0));
  });
  host.register_function("plain", [](std::span<HostArray>, std::span<const HostArray>) {
    throw std::runtime_error("plain failure");
  });

  HostArray out[1];
  HostArray three[] = {HostArray::make_double(3)};
  EXPECT_EQ(host.call_function("twice", out, three), 0);
  EXPECT_EQ(out[0].real_as_double(0), 6.0);

  host.set_error_trap(true);
  const int previous = host.set_error_mode(kHostErrorModeReturn);
  EXPECT_EQ(previous, 0);
  EXPECT_NE(host.call_function("twice", out, {}), 0);
  EXPECT_TRUE(out[0].is_empty());  // a failed call leaves no output behind

  HostArray err[2];
  ASSERT_EQ(host.call_function("lasterr", err, {}), 0);
  EXPECT_EQ(err[0].text(), "twice takes one input");
  EXPECT_EQ(err[1].text(), "test:twice:nargs");

  EXPECT_NE(host.call_function("plain", {}, {}), 0);
  ASSERT_EQ(host.call_function("lasterr", err, {}), 0);
  EXPECT_EQ(err[0].text(), "plain failure");
  EXPECT_TRUE(err[1].is_empty());  // an error without identifier

  EXPECT_NE(host.call_function("nosuch", {}, {}), 0);
  EXPECT_EQ(host.last_error_identifier(), "velkora:host:unknownFunction");
  EXPECT_EQ(host.last_error_message(), "There is no host function named 'nosuch'.");

  // The mode is the caller's to restore; with it back the trap alone does not catch.
  EXPECT_EQ(host.set_error_mode(previous), kHostErrorModeReturn);
  EXPECT_EQ(host.error_mode(), 0);
  EXPECT_TRUE(host.error_trap());
  expect_error([&] { host.call_function("twice", out, {}); }, "test:twice:nargs",
               "twice takes one input");
}

TEST(HostCalls, UntrappedFailureRaisesAndIsStillTheLastError) {
  InProcessHost host;
  host.set_error_mode(kHostErrorModeReturn);  // the mode alone does not catch either
  expect_error([&] { host.call_function("nosuch", {}, {}); }, "velkora:host:unknownFunction",
               "There is no host function named 'nosuch'.");
  EXPECT_EQ(host.last_error_identifier(), "velkora:host:unknownFunction");
  HostArray three[3];
  expect_error([&] { host.call_function("lasterr", three, {}); }, "velkora:host:tooManyOutputs",
               "Host function 'lasterr' gives at most 2 outputs.");
  HostArray none[1];
  HostArray extra[] = {HostArray::make_text("x")};
  expect_error([&] { host.call_function("lasterr", none, extra); }, "velkora:host:wrongInputCount",
               "Host function 'lasterr' takes 0 inputs.");
}

class BuiltinSet : public ::testing::Test {
 protected:
  InProcessHost host;
  toy::ToyPackage toy;
  HostArray c = dispatcher::construct("toy.Counter", {});
  XoErrorStatus status;

  void set(std::vector<HostArray> in, std::span<HostArray> out = {}) {
    host.call_builtin_method("set", out, in, status);
  }
};

TEST_F(BuiltinSet, ListsSettablePropertiesAndEnumValues) {
  set({c});
  EXPECT_EQ(host.take_console(),
            "  Count\n  Scale\n  Enabled\n  Label\n  Mode: [ up | down | hold ]\n  Partner\n"
            "  Data\n");
  set({c, HostArray::make_text("Mode")});
  EXPECT_EQ(host.take_console(), "[ up | down | hold ]\n");
  HostArray out[1];
  set({c, HostArray::make_text("Mode")}, out);
  EXPECT_EQ(out[0].text(), "[ up | down | hold ]");
  set({c, HostArray::make_text("Count")}, out);
  EXPECT_TRUE(out[0].is_empty());
  EXPECT_FALSE(status.hasErrors());
}

TEST_F(BuiltinSet, StoresPairsAndRecordsFailuresWithoutRaising) {
  set({c, HostArray::make_text("Count"), HostArray::make_double(4), HostArray::make_text("Mode"),
       HostArray::make_text("hold")});
  EXPECT_EQ(toy::counter_of(c.object()).count, 4);
  EXPECT_EQ(toy::counter_of(c.object()).mode, 5);
  EXPECT_FALSE(status.hasErrors());

  set({c, HostArray::make_text("Colour")});
  set({c, HostArray::make_text("Count"), HostArray::make_double(0.5)});
  set({c, HostArray::make_text("Count")}, {});
  ASSERT_EQ(status.errors.size(), 2u);
  EXPECT_EQ(status.errors[0].identifier, "velkora:xo:unknownProperty");
  EXPECT_EQ(status.last().identifier, "velkora:xo:wrongPropertyValue");
  EXPECT_EQ(status.last().message,
            "The value of property 'Count' of class 'toy.Counter' must be a real integer scalar "
            "in the int32 range.");
  EXPECT_EQ(host.last_error_identifier(), "velkora:xo:wrongPropertyValue");
  EXPECT_EQ(toy::counter_of(c.object()).count, 4);

  XoErrorStatus fresh;
  host.call_builtin_method("get", {}, std::vector<HostArray>{c}, fresh);
  host.call_builtin_method("set", {}, std::vector<HostArray>{HostArray::make_double(1)}, fresh);
  host.call_builtin_method("set", {}, std::vector<HostArray>{c, HostArray::make_text("Count")},
                           fresh);
  ASSERT_EQ(fresh.errors.size(), 2u);
  EXPECT_EQ(fresh.errors[0].message, "The object system has no built-in method 'get'.");
  EXPECT_EQ(fresh.errors[1].message,
            "The built-in method 'set' needs an object as its first input.");
}

// The compact matrix form: whole numbers without decimals (non-finite values do not stop
// it), otherwise four decimals; no minus on a value that prints as zero; a third dimension
// laid out as further columns; complex parts aligned.
TEST(HostMatrixPrinter, WholeNumbersDecimalsPagesAndComplexParts) {
  InProcessHost host;
  host.print_matrix(HostArray::make_double_matrix(2, 2, {1, -20, INFINITY, NAN}));
  EXPECT_EQ(host.take_console(), "     1   Inf\n   -20   NaN\n");
  host.print_matrix(HostArray::make_double_matrix(1, 3, {-0.00001, 2.5, -1e10}));
  EXPECT_EQ(host.take_console(), "             0.0000             2.5000  -10000000000.0000\n");
  HostArray pages = HostArray::make_numeric(HostClass::Double, {1, 1, 2});
  pages.real<double>()[0] = 3;
  pages.real<double>()[1] = -4;
  host.print_matrix(pages);
  EXPECT_EQ(host.take_console(), "   3  -4\n");
  HostArray z = HostArray::make_numeric(HostClass::Double, {1, 2}, Complexity::Complex);
  z.real<double>()[0] = 1, z.imag<double>()[0] = -12;
  z.real<double>()[1] = -3, z.imag<double>()[1] = 4;
  host.print_matrix(z);
  EXPECT_EQ(host.take_console(), "   1 - 12i  -3 +  4i\n");
}

}  // namespace
}  // namespace corbel
