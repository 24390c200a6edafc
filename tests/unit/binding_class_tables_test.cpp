// The class tables: every registered name in order, typed here from the class tables, and
// the rules the property and method classes carry (last property set, text twins,
// derived quantizer properties, the data-type restriction, operation reports).
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <tuple>

#include "binding/class_objects.h"
#include "binding/corbel_entry.h"
#include "binding/fi_class.h"
#include "expect_error.h"
#include "host/dispatcher.h"
#include "host/inprocess_host.h"
#include "quantize/slopebiasquantizer.h"

namespace corbel {
namespace {

using Names = std::vector<std::string>;
using Warnings = std::vector<InProcessHost::Warning>;

class BindingTables : public ::testing::Test {
 protected:
  void SetUp() override {
    NVInitialize_corbel();
    fi::setLogging(false);
  }
  void TearDown() override { fi::setLogging(false); }

  static HostArray make(const char* cls) { return dispatcher::construct(cls, {}); }
  static HostArray get(const HostArray& o, const char* p) {
    return dispatcher::get_property(o.object(), p);
  }
  static void set(const HostArray& o, const char* p, HostArray v) {
    dispatcher::set_property(o.object(), p, v);
  }
  static HostArray call(const char* m, std::vector<HostArray> args) {
    auto r = dispatcher::invoke(m, args, 1);
    return r.empty() ? HostArray() : r[0];
  }
  static HostArray d(double v) { return HostArray::make_double(v); }
  static HostArray t(const char* s) { return HostArray::make_text(s); }

  InProcessHost host_;
  ScopedHost scope_{host_};
};

Names own_properties(const XoClass& c) {
  Names n;
  for (const auto& p : c.getProperties()) n.push_back(p->getName());
  return n;
}
Names own_methods(const XoClass& c) {
  Names n;
  for (const auto& m : c.getMethods()) n.push_back(m->getName());
  return n;
}

TEST_F(BindingTables, FiNamesInOrder) {
  const Names properties = {
      "numerictype", "DataTypeMode", "DataType", "Scaling", "Signed", "WordLength",
      "FractionLength", "BinaryPoint", "FixedExponent", "Slope", "SlopeAdjustmentFactor", "Bias",
      "fimath", "RoundMode", "OverflowMode", "ProductMode", "ProductWordLength",
      "MaxProductWordLength", "ProductFractionLength", "ProductFixedExponent", "ProductSlope",
      "ProductSlopeAdjustmentFactor", "ProductBias", "SumMode", "SumWordLength",
      "MaxSumWordLength", "SumFractionLength", "SumFixedExponent", "SumSlope",
      "SumSlopeAdjustmentFactor", "SumBias", "CastBeforeSum", "CStyle", "Logging",
      "isautoscaled", "double", "data", "int", "intarray", "tessaronarray", "bin", "oct", "dec", "hex", "noverflows", "nunderflows", "maxlog", "minlog", "LastPropertySet"};
  EXPECT_EQ(own_properties(*FiXoClass::getInstance()), properties);
  // The methods whose operations exist, in their places in the order.
  const Names methods = {
      "disp", "numberofelements", "isfi", "isfixed", "isfloat", "isdouble", "isscaleddouble",
      "issingle", "isboolean", "isscaledtype", "isempty", "isscalar", "iscolumn", "isrow",
      "isvector", "isreal", "length", "size", "ndims", "fi_reshape", "squeeze", "transpose", "ctranspose", "stripscaling", "copy", "maxlog", "minlog", "noverflows", "nunderflows", "noperations",
      "nmathoperations", "numerictype", "fimath", "bin", "data", "dec", "double", "single", "hex", "int", "intarray", "oct", "tessaronarray", "realmax", "realmin", "fieps", "intmax", "intmin",
      "range", "lowerbound", "upperbound", "uminus", "conj", "pow2", "bitshift", "bitcmp", "bitand", "bitor", "bitxor", "bitget",
      "bitset", "leadingdimension_sum", "plus", "minus",
      "times", "mtimes", "binaryop_complex", "binary_max", "binary_min", "unary_max",
      "unary_min", "eq", "ge", "gt", "le", "lt", "ne", "sign", "binaryop_isequal", "diag", "tril", "triu", "toeplitz", "hankel", "subsref", "subsasgn", "subscriptedreference",
      "subscriptedgrowassignment", "num2sdec", "sdec", "num2base", "base2num", "copydata", "displaygloballog", "resetgloballog", "resetlogging", "resetlog", "abs",
      "set"};
  EXPECT_EQ(own_methods(*FiXoClass::getInstance()), methods);
  EXPECT_EQ(FiXoClass::getInstance()->getConstructorSignatures().size(), 4u);
}

TEST_F(BindingTables, FimathAndNumericTypeNamesInOrder) {
  const Names fimathProperties = {
      "RoundMode", "OverflowMode", "PrecisionMode", "ProductMode", "ProductWordLength",
      "MaxProductWordLength", "ProductFractionLength", "ProductFixedExponent", "ProductSlope",
      "ProductSlopeAdjustmentFactor", "ProductBias", "SumMode", "SumWordLength",
      "MaxSumWordLength", "SumFractionLength", "SumFixedExponent", "SumSlope",
      "SumSlopeAdjustmentFactor", "SumBias", "CastBeforeSum", "ProductWordLengthString",
      "MaxProductWordLengthString", "ProductFractionLengthString", "ProductFixedExponentString",
      "ProductSlopeString", "ProductSlopeAdjustmentFactorString", "ProductBiasString",
      "SumWordLengthString", "MaxSumWordLengthString", "SumFractionLengthString",
      "SumFixedExponentString", "SumSlopeString", "SumSlopeAdjustmentFactorString",
      "SumBiasString", "CStyle"};
  EXPECT_EQ(own_properties(*FimathXoClass::getInstance()), fimathProperties);
  EXPECT_EQ(own_methods(*FimathXoClass::getInstance()),
            (Names{"disp", "isequal", "isfimath", "set", "add", "mpy", "sub"}));

  const Names typeProperties = {
      "DataTypeMode", "DataType", "Scaling", "Signed", "WordLength", "FractionLength",
      "BinaryPoint", "FixedExponent", "Slope", "SlopeAdjustmentFactor", "Bias", "Path",
      "WordLengthString", "FractionLengthString", "SlopeString", "BiasString"};
  EXPECT_EQ(own_properties(*NumericTypeXoClass::getInstance()), typeProperties);
  EXPECT_EQ(own_methods(*NumericTypeXoClass::getInstance()),
            (Names{"disp", "tostring", "isnumerictype", "isbinarypointscalingset",
                   "isslopebiasscalingset", "isslopebiasscaled", "isfixed", "isscaledtype",
                   "isscaleddouble", "isfloat", "isdouble", "issingle", "isboolean", "set",
                   "divide"}));
  EXPECT_TRUE(NumericTypeXoClass::getInstance()->findProperty("Path")->isReadOnly());
}

TEST_F(BindingTables, QuantizerAndLogNamesInOrder) {
  const Names shared = {"roundmode", "overflowmode", "format", "wordlength", "fractionlength",
                        "precision", "exponentlength", "max", "min", "maxlog", "minlog",
                        "noverflows", "nunderflows", "noperations", "denormalmax",
                        "denormalmin", "eps", "exponentbias", "exponentmax", "exponentmin",
                        "realmax", "realmin", "version"};
  Names withModes = {"mode", "datamode"};
  withModes.insert(withModes.end(), shared.begin(), shared.end());
  EXPECT_EQ(own_properties(*ModelessQuantizerXoClass::getInstance()), shared);
  for (const char* cls : {"CoreQuantizer", "slopebiasquantizer"}) {
    Names listed;
    for (const auto& p : dispatcher::describe(cls).properties) listed.push_back(p.name);
    EXPECT_EQ(listed, withModes) << cls;
  }
  EXPECT_EQ(own_methods(*ModelessQuantizerXoClass::getInstance()),
            (Names{"disp", "initializestates", "resetlog", "resetlogging", "quantize",
                   "quantizenumeric", "num2base", "base2num", "isquantizer", "isequal"}));
  EXPECT_EQ(ModelessQuantizerXoClass::getInstance()->getConstructorSignatures().size(), 2u);
  EXPECT_EQ(QuantizerXoClass::getInstance()->getConstructorSignatures().size(), 2u);
  EXPECT_EQ(SlopeBiasQuantizerXoClass::getInstance()->getConstructorSignatures().size(), 3u);
  EXPECT_EQ(own_properties(*QloggerXoClass::getInstance()),
            (Names{"Max", "Min", "NOverflows", "NUnderflows", "NOperations"}));
}

TEST_F(BindingTables, LastPropertySetRecord) {
  const HostArray a = dispatcher::construct("CoreFi", {{d(0.75)}});
  EXPECT_EQ(get(a, "LastPropertySet").real_as_double(0), -1);
  set(a, "BinaryPoint", d(12));
  EXPECT_EQ(get(a, "FractionLength").real_as_double(0), 12);
  EXPECT_EQ(get(a, "LastPropertySet").real_as_double(0), 7);
  set(a, "FractionLength", d(13));
  EXPECT_EQ(get(a, "LastPropertySet").real_as_double(0), 6);
  set(a, "CStyle", HostArray::make_logical(true));  // writes no code
  set(a, "isautoscaled", HostArray::make_logical(true));
  EXPECT_EQ(get(a, "LastPropertySet").real_as_double(0), 6);
  set(a, "ProductFixedExponent", d(-20));
  EXPECT_EQ(get(a, "LastPropertySet").real_as_double(0), 39);
  set(a, "maxlog", d(3));
  EXPECT_EQ(get(a, "LastPropertySet").real_as_double(0), 45);
  set(a, "LastPropertySet", d(47));
  set(a, "LastPropertySet", d(-1));
  for (double bad : {48.0, -2.0}) {
    expect_error([&] { set(a, "LastPropertySet", d(bad)); },
                 "velkora:fi:setLastPropertySet:BadEnum",
                 "PropertyEnum out of range.  Valid values are -1 through 47, and " +
                     std::to_string(static_cast<int>(bad)) + " was entered.");
  }
  EXPECT_EQ(get(a, "LastPropertySet").real_as_double(0), -1);
  // A refused setting raises before the code is written.
  expect_error([&] { set(a, "ProductWordLength", d(0)); },
               "velkora:fimath:NonPositiveProductWordLength",
               "ProductWordLength must be greater than 0.");
  EXPECT_EQ(get(a, "LastPropertySet").real_as_double(0), -1);
}

TEST_F(BindingTables, FiPropertiesReachTheTypeAndTheFimath) {
  const HostArray a = dispatcher::construct("CoreFi", {{d(0.7)}});
  set(a, "WordLength", d(8));
  EXPECT_EQ(get(a, "numerictype").object()->getClass(), NumericTypeXoClass::getInstance());
  EXPECT_EQ(get(get(a, "numerictype"), "WordLength").real_as_double(0), 8);
  set(a, "RoundMode", t("floor"));
  EXPECT_EQ(get(get(a, "fimath"), "RoundMode").text(), "floor");
  EXPECT_EQ(get(a, "DataTypeMode").text(), "Fixed-point: binary point scaling");
  EXPECT_EQ(call("numberofelements", {a}).real_as_double(0), 1);
  EXPECT_TRUE(call("isfi", {a}).real_as_double(0));
  EXPECT_FALSE(call("isfloat", {a}).real_as_double(0));
  const HostArray m = dispatcher::construct(
      "CoreFi", {{HostArray::make_double_matrix(2, 3, {1, 2, 3, 4, 5, 6})}});
  EXPECT_EQ(call("numberofelements", {m}).real_as_double(0), 6);
  EXPECT_EQ(dispatcher::dims(m.object()), (std::vector<std::size_t>{2, 3}));
  // A copy is a separate value.
  const HostArray c = dispatcher::duplicate(m.object());
  set(c, "WordLength", d(4));
  EXPECT_EQ(get(m, "WordLength").real_as_double(0), 16);
}

TEST_F(BindingTables, TextTwinsMirrorAndEvaluate) {
  const HostArray F = make("fimath");
  set(F, "ProductWordLength", d(40));
  EXPECT_EQ(get(F, "ProductWordLengthString").text(), "40");
  set(F, "SumWordLengthString", t("2*12"));
  EXPECT_EQ(get(F, "SumWordLength").real_as_double(0), 24);
  set(F, "ProductSlope", d(0.125));
  EXPECT_EQ(get(F, "ProductSlopeString").text(), "0.125");
  const HostArray T = make("numerictype");
  set(T, "FractionLengthString", t("12"));
  EXPECT_EQ(get(T, "FixedExponent").real_as_double(0), -12);
  EXPECT_EQ(get(T, "FractionLengthString").text(), "12");
  EXPECT_EQ(get(T, "SlopeString").text(), "2^-12");
  // The host's own error passes through; text that is no scalar is refused.
  expect_error([&] { set(T, "WordLengthString", t("1 +* 2")); }, "velkora:host:evalSyntax",
               "The text '1 +* 2' is not a numeric expression this host can evaluate.");
  expect_error([&] { set(T, "WordLengthString", t("[1 2]")); },
               "velkora:embedded:evaluate:notscalar",
               "The text '[1 2]' does not evaluate to a real scalar.");
  expect_error([&] { set(T, "WordLengthString", t("2.5")); }, "velkora:xo:wrongPropertyValue",
               "The value of property 'WordLength' of class 'embedded.numerictype' must be a "
               "real integer scalar in the int32 range.");
  EXPECT_EQ(get(T, "WordLength").real_as_double(0), 16);
}

TEST_F(BindingTables, SetRuleOnEveryClass) {
  for (const auto& [cls, label] : {std::pair{"CoreFi", "FI"}, std::pair{"fimath", "FIMATH"},
                                   std::pair{"numerictype", "NUMERICTYPE"}}) {
    const HostArray o = make(cls);
    expect_error([&] { call("set", {o, t("RoundMode"), t("floor")}); }, "velkora:set:InvalidUse",
                 std::string("You cannot use SET to change the properties of a ") + label +
                     " object; use dot notation instead.");
  }
}

TEST_F(BindingTables, QuantizerPropertiesAndMethods) {
  const HostArray q = dispatcher::construct("CoreQuantizer", {{t("ufixed")}});
  EXPECT_EQ(get(q, "mode").text(), "ufixed");
  set(q, "format", HostArray::make_double_matrix(1, 2, {8, 4}));
  set(q, "wordlength", d(6.9));  // truncated toward zero
  EXPECT_EQ(get(q, "wordlength").real_as_double(0), 6);
  // NaN and numbers beyond every length reach the quantizer's own refusals.
  const double nan = std::nan(""), inf = HUGE_VAL;
  const std::string fraction =
      "The fraction length must be a finite number of magnitude below 2^31.";
  for (const auto& [name, v, id, text] :
       {std::tuple{"wordlength", nan, "wordlengthtoosmall",
                   "Wordlength cannot be negative or zero."},
        std::tuple{"wordlength", inf, "wordlengthtoobig",
                   "Word length cannot be greater than 65535."},
        std::tuple{"fractionlength", nan, "fractionlength", fraction.c_str()},
        std::tuple{"fractionlength", -1e300, "fractionlength", fraction.c_str()},
        std::tuple{"exponentlength", nan, "exponenttoosmall",
                   "Exponent length cannot be negative."},
        std::tuple{"exponentlength", inf, "exponenttoobig",
                   "Exponent length cannot be greater than 31."}})
    expect_error([&] { set(q, name, d(v)); }, std::string("velkora:quantizer:") + id, text);
  EXPECT_EQ(get(q, "realmax").real_as_double(0), 63.0 / 16);
  set(q, "realmax", d(1));
  set(q, "version", d(3));
  EXPECT_EQ(host_.take_warnings(),
            (Warnings{{"velkora:quantizer:derivedproperty",
                       "realmax is derived from other properties and cannot be set explicitly."},
                      {"velkora:quantizer:derivedproperty", "Version is a read-only property."}}));
  EXPECT_EQ(get(q, "version").real_as_double(0), 2);

  HostArray x = HostArray::make_double_matrix(1, 3, {0.03, 5.0, -1.0});
  const HostArray y = call("quantize", {q, x});
  EXPECT_EQ(y.real<double>()[0], 0.0);
  EXPECT_EQ(y.real<double>()[1], 63.0 / 16);
  EXPECT_EQ(y.real<double>()[2], 0.0);
  EXPECT_EQ(get(q, "noverflows").real_as_double(0), 2);
  // An interrupt part way through puts the log back as it was.
  host_.interrupt_after(2);
  EXPECT_THROW(call("quantize", {q, x}), InProcessHost::Interrupt);
  host_.interrupt_after(-1);
  EXPECT_EQ(get(q, "noverflows").real_as_double(0), 2);
  call("resetlog", {q});
  EXPECT_EQ(get(q, "noverflows").real_as_double(0), 0);
  expect_error([&] { call("quantize", {q, t("x")}); }, "velkora:quantizer:quantize:notnumeric",
               "Value to quantize must be numeric.");
  expect_error([&] { call("quantize", {q, HostArray::make_numeric(HostClass::Int64, {1, 1})}); },
               "velkora:quantizer:quantize:numericonly",
               "Only inputs of type double, single, [u]int[8,16,32] allowed.");

  // A copy of a slope-bias quantizer is one.
  const HostArray sb = dispatcher::construct("slopebiasquantizer", {});
  const HostArray sbCopy = dispatcher::duplicate(sb.object());
  EXPECT_NE(dynamic_cast<const slopebiasquantizer*>(
                static_cast<const loggingquantizer*>(sbCopy.object()->getClassSpecificObject())),
            nullptr);

  // A double quantizer's bounds are the largest double, and a logging "none" quantizer
  // counts an infinite input as an overflow.
  for (const char* mode : {"double", "none"}) {
    const HostArray f = dispatcher::construct("CoreQuantizer", {{t(mode)}});
    EXPECT_EQ(get(f, "realmax").real_as_double(0), std::numeric_limits<double>::max()) << mode;
    const HostArray inf = d(std::numeric_limits<double>::infinity());
    call("quantize", {f, inf});
    EXPECT_EQ(get(f, "noverflows").real_as_double(0), 1) << mode;
  }
}

TEST_F(BindingTables, FimathOperationsUseTheObjectsSettings) {
  const HostArray a = dispatcher::construct("CoreFi", {{d(0.75)}});
  const HostArray b = dispatcher::construct("CoreFi", {{d(0.5)}});
  const HostArray F = make("fimath");
  set(F, "SumMode", t("SpecifyPrecision"));
  set(F, "SumWordLength", d(16));
  set(F, "SumFractionLength", d(15));
  const HostArray s = call("add", {F, a, b});  // 1.25 saturates in s16/15
  EXPECT_EQ(get(s, "SumMode").text(), "SpecifyPrecision");
  EXPECT_EQ(get(s, "WordLength").real_as_double(0), 16);
  const HostArray p = call("mpy", {F, a, b});
  EXPECT_EQ(get(p, "WordLength").real_as_double(0), 32);
  EXPECT_EQ(get(a, "SumMode").text(), "FullPrecision");  // the operands are unchanged
}

TEST_F(BindingTables, SumsAndProductsReportUnderTheOperatorsName) {
  const HostArray a = dispatcher::construct("CoreFi", {{d(0.75)}});
  set(a, "SumMode", t("SpecifyPrecision"));
  set(a, "SumWordLength", d(16));
  set(a, "SumFractionLength", d(15));
  set(a, "Logging", HostArray::make_logical(true));
  const HostArray s = call("plus", {a, a});
  EXPECT_EQ(host_.take_warnings(),
            (Warnings{{"fi:overflow", "1 overflow occurred in the fi + operation."}}));
  EXPECT_EQ(get(s, "noverflows").real_as_double(0), 1);
  EXPECT_EQ(call("noperations", {s}).real_as_double(0), 3);  // two casts and the sum
  call("minus", {a, a});
  EXPECT_TRUE(host_.take_warnings().empty());
}

TEST_F(BindingTables, DataTypeRestriction) {
  const fi boolean(1.0, NumericType(DataTypeEnum::Boolean, ScalingEnum::Unused, false, 1, 1.0, 0,
                                    0.0),
                   fimath());
  expect_error([&] { checkDataTypeRule("bitand", boolean, DataTypeRule::FixedOnly); },
               "velkora:fi:bitand:boolean:notallowed",
               "Function 'bitand' is not defined for FI objects of data type 'boolean'.");
  expect_error([&] { checkDataTypeRule("binary_max", boolean, DataTypeRule::NotBoolean); },
               "velkora:fi:binary_max:boolean:notallowed",
               "Function 'binary_max' is not defined for FI objects of data type 'boolean'.");
  checkDataTypeRule("bitand", fi(), DataTypeRule::FixedOnly);
}

}  // namespace
}  // namespace corbel
