// fi construction, copies and aliases, shape queries, type setters and the operand checks
// of the arithmetic.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "exact.h"
#include "expect_error.h"
#include "fi/fi.h"
#include "host/host_error.h"
#include "test_host.h"

namespace corbel {
namespace {

using Warnings = std::vector<InProcessHost::Warning>;
using Mode = DataTypeModeEnum;

// The exact value of a number as a decimal rational.
std::string exact(const number& x) {
  return Q(x).str();
}

std::vector<double> reals(const fi& x) {
  std::vector<double> v;
  for (int i = 0; i < x.numel(); ++i) v.push_back(x.realdouble(i));
  return v;
}

fimath math(RoundModeEnum r, OverflowModeEnum o) {
  fimath m;
  m.setRoundMode(r);
  m.setOverflowMode(o);
  return m;
}

NumericType of_mode(Mode mode, double saf = 1.0, int fe = 0, double bias = 0.0) {
  return NumericType(mode, true, 16, saf, fe, bias);
}

// Aliases are made only by the reference classes; this one exposes the constructor.
struct AliasOf : fi {
  explicit AliasOf(const fi& root) : fi(root, fi::Alias) {}
};

class FiConstruction : public WithHost {
 protected:
  DefaultPrecisionGuard precision_;
};

TEST_F(FiConstruction, DefaultIsRealZeroSigned16Fraction15) {
  fi x;
  EXPECT_TRUE(x.isscalar() && x.ndims() == 2 && x.isreal());
  EXPECT_TRUE(x.real(0).iszero() && x.imag(0).iszero());
  EXPECT_EQ(x.getNumericType().getDataTypeMode(), Mode::FixedBinaryPoint);
  EXPECT_TRUE(x.getSigned() && x.getWordLength() == 16 && x.getFractionLength() == 15);
  EXPECT_TRUE(x.getFimath().isequal(fimath()));
  const quantizer& q = x.getAssignmentQuantizer();
  EXPECT_TRUE(q.getWordlength() == 16 && q.getFractionlength() == 15);
}

// The quantization itself is the quantizer sweep's; here each fimath mode must reach it,
// through both scalar constructors.
TEST_F(FiConstruction, ScalarIsQuantizedWithTheFimathModes) {
  using R = RoundModeEnum;
  using O = OverflowModeEnum;
  struct Case {
    double v;
    bool s;
    int w, f;
    R r;
    O o;
    double expected;
  } cases[] = {
      {0.3, true, 8, 4, R::Nearest, O::Saturate, 0.3125},
      {0.3, true, 8, 4, R::Floor, O::Wrap, 0.25},
      {0.09375, true, 8, 4, R::Convergent, O::Saturate, 0.125},
      {10.0, true, 8, 4, R::Nearest, O::Saturate, 127.0 / 16},
      {10.0, true, 8, 4, R::Floor, O::Wrap, -6.0},  // 160 wraps to -96
      {-1.0, false, 8, 0, R::Floor, O::Wrap, 255.0},
      {1000.0, true, 8, -4, R::Nearest, O::Saturate, 1008.0},  // grid of 16
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.v) + " w" + std::to_string(c.w) + " f" + std::to_string(c.f));
    EXPECT_EQ(fi(c.v, c.s, c.w, c.f, math(c.r, c.o)).realdouble(0), c.expected);
    EXPECT_EQ(fi(c.v, NumericType(c.s, c.w, c.f), math(c.r, c.o)).realdouble(0), c.expected);
  }
}

TEST_F(FiConstruction, SlopeBiasValuesAreStoredWithoutSlopeAndBias) {
  // (10 - 5) / 1.2 = 4.1667 lies on the 2^-2 grid at 4.25.
  fi x(10.0, of_mode(Mode::FixedSlopeBias, 1.2, -2, 5.0), fimath());
  EXPECT_EQ(x.realdouble(0), 4.25);
  EXPECT_DOUBLE_EQ(x.addSlopeAdjustmentFactorBias(x.realdouble(0)), 10.1);
  // (1/1.1) * 1.5125 is exactly the tie 1.375 and rounds up; 1.5125 / 1.1 falls just short
  // of it and would round down to 1.25.
  fi tie(1.5125, of_mode(Mode::FixedSlopeBias, 1.1, -2, 0.0), fimath());
  EXPECT_EQ(tie.realdouble(0), 1.5);
}

TEST_F(FiConstruction, NaNAndInfinityAreRefusedByType) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  const int dims[] = {1, 3};
  const double values[] = {0.5, 0.25, nan};
  const NumericType dbl = of_mode(Mode::Double);
  const std::function<void()> nans[] = {
      [&] { fi x(nan, NumericType(), fimath()); }, [&] { fi x(nan, dbl, fimath()); },
      [&] { fi x(values, nullptr, dims, 2, NumericType(), fimath()); },
      [&] { fi x(values, values, dims, 2, NumericType(), fimath()); },
      [&] { fi x(0.5, nan, true, dims, 2, NumericType(), fimath()); }};
  for (const auto& f : nans) expect_error(f, "velkora:fi:nonan", "NaN is not allowed in FI.");
  expect_error([&] { fi x(-inf, NumericType(), fimath()); }, "velkora:nofixedinf",
               "Inf cannot be converted to fixed-point.");
  expect_error([&] { fi x(inf, of_mode(Mode::ScaledDoubleBinaryPoint), fimath()); },
               "velkora:nofixedinf", "Inf cannot be converted to scaled double.");
  fi d(-inf, dbl, fimath());
  EXPECT_EQ(d.realdouble(0), -inf);
}

TEST_F(FiConstruction, HostArraysOfEveryNumericClass) {
  HostArray c = HostArray::make_numeric(HostClass::Double, {2, 3}, Complexity::Complex);
  for (int i = 0; i < 6; ++i) {
    c.real<double>()[i] = 0.1 * i;
    c.imag<double>()[i] = -0.3 * i;
  }
  fi x(c, NumericType(true, 16, 8), fimath());
  EXPECT_EQ(x.getM(), 2);
  EXPECT_EQ(x.getN(), 3);
  EXPECT_TRUE(x.iscomplex());
  EXPECT_EQ(x.realdouble(3), std::round(0.3 * 256) / 256);
  EXPECT_EQ(x.imagdouble(5), std::round(-1.5 * 256) / 256);

  HostArray s = HostArray::make_numeric(HostClass::Single, {1, 2});
  s.real<float>()[1] = 0.1f;
  fi xs(s, NumericType(true, 40, 38), fimath());
  EXPECT_EQ(xs.realdouble(1), static_cast<double>(0.1f));  // the single's own value, exactly

  HostArray i8 = HostArray::make_numeric(HostClass::Int8, {2, 1, 2});
  const std::int8_t v8[] = {-128, 127, -3, 5};
  std::copy(v8, v8 + 4, i8.real<std::int8_t>());
  fi x8(i8, NumericType(true, 8, 0), fimath());
  EXPECT_EQ(x8.ndims(), 3);
  EXPECT_EQ(x8.getDimension(3), 2);
  EXPECT_EQ(reals(x8), (std::vector<double>{-128, 127, -3, 5}));

  HostArray u16 = HostArray::make_numeric(HostClass::UInt16, {1, 2}, Complexity::Complex);
  u16.real<std::uint16_t>()[0] = 65535;
  u16.imag<std::uint16_t>()[1] = 300;
  fi x16(u16, NumericType(false, 8, 0), fimath());  // saturates into 8 bits
  EXPECT_EQ(x16.realdouble(0), 255.0);
  EXPECT_EQ(x16.imagdouble(1), 255.0);
  EXPECT_EQ(x16.imagdouble(0), 0.0);

  for (auto [cls, name] : {std::pair{HostClass::Int64, "int64"}, {HostClass::UInt64, "uint64"}})
    expect_error(
        [&] {
          fi x(HostArray::make_numeric(cls, {1, 1}), NumericType(), fimath());
        },
        "velkora:fi:constructor:" + std::string(name),
        "Conversion from " + std::string(name) + " not supported in FI constructor.");
  for (const HostArray& h : {HostArray::make_text("ab"), HostArray(HostClass::Cell, {1, 1})})
    expect_error([&] { fi x(h, NumericType(), fimath()); }, "velkora:fi:constructor:numeric",
                 "FI constructor only valid for numeric data");
}

TEST_F(FiConstruction, WideWordLengthsKeepExactValues) {
  const fimath floorWrap = math(RoundModeEnum::Floor, OverflowModeEnum::Wrap);
  EXPECT_EQ(exact(fi(1e30, true, 80, 0, fimath()).real(0)), "604462909807314587353087");
  EXPECT_EQ(exact(fi(-1.0, false, 80, 0, floorWrap).real(0)), "1208925819614629174706175");
  // 0.1 as a double needs 56 fraction bits: kept whole at fraction length 78.
  EXPECT_EQ(exact(fi(0.1, true, 80, 78, fimath()).real(0)), exact(number(0.1)));
  const int dims[] = {1, 1};
  fi c(0.0, -1.0, true, dims, 2, NumericType(false, 80, 0), floorWrap);
  EXPECT_EQ(exact(c.imag(0)), "1208925819614629174706175");
}

// A whole copy has its own data, its own log and registers of its own.
TEST_F(FiConstruction, WholeCopyIsIndependentOfItsSource) {
  const double re[] = {0.5, -0.25, 0.125, 0.75};
  const double im[] = {0.0, 0.5, -0.5, 0.25};
  const int dims[] = {2, 2};
  fi a(re, im, dims, 2, NumericType(true, 8, 6), fimath());
  fi b(a, fi::WholeCopy);
  EXPECT_TRUE(b.isSameSize(a) && b.iscomplex());
  EXPECT_EQ(reals(b), reals(a));
  EXPECT_EQ(b.imagdouble(2), -0.5);
  b.realRef(0).setvalue(0.0);
  b.imagRef(1).setvalue(0.0);
  b.setFractionLength(2);  // re-quantizes the copy's elements in place
  EXPECT_EQ(reals(b), (std::vector<double>{0.0, -0.25, 0.25, 0.75}));
  EXPECT_EQ(reals(a), (std::vector<double>{0.5, -0.25, 0.125, 0.75}));
  EXPECT_EQ(a.imagdouble(1), 0.5);
  EXPECT_EQ(a.imagdouble(3), 0.25);
  EXPECT_EQ(a.getFractionLength(), 6);

  fi::setLogging(true);
  fi logged(5.0, NumericType(true, 8, 6), fimath());  // saturates
  fi::setLogging(false);
  EXPECT_EQ(fi(logged, fi::WholeCopy).getNoverflows(), 1);

  logged.initializeSumRegister(NumericType(true, 32, 30), fimath());
  logged.initializeProductRegister(NumericType(true, 40, 30), NumericType(true, 24, 20), fimath());
  fi c(logged, fi::WholeCopy);
  ASSERT_TRUE(c.isSumRegisterInitialized() && c.isProductRegisterInitialized());
  EXPECT_NE(&c.getSumRegister(), &logged.getSumRegister());
  EXPECT_NE(&c.getProductRegister(), &logged.getProductRegister());
  EXPECT_EQ(c.getSumRegister().getWordLength(), 32);
  EXPECT_EQ(c.getProductRegister().getWordLength(), 24);
  EXPECT_EQ(c.getproductregsumfilog().getNoperations(), 0);
  fi e(logged, fi::CurrentElement);
  EXPECT_FALSE(e.isSumRegisterInitialized() || e.isProductRegisterInitialized());
}

TEST_F(FiConstruction, CurrentElementCopyIsOneByOne) {
  const double re[] = {1, 2, 3, 4, 5, 6, 7, 8};
  const double im[] = {-1, -2, -3, -4, -5, -6, -7, -8};
  const int dims[] = {2, 2, 2};
  fi a(re, im, dims, 3, NumericType(true, 8, 2), fimath());
  a(1, 3);  // the second row of the fourth column: linear index 7
  fi b(a, fi::CurrentElement);
  EXPECT_TRUE(b.isscalar() && b.iscomplex());
  EXPECT_EQ(b.getM(), 1);
  EXPECT_EQ(b.getN(), 1);
  EXPECT_EQ(b.realdouble(0), 8.0);
  EXPECT_EQ(b.imagdouble(0), -8.0);
  EXPECT_TRUE(b.getNumericType().isequal(a.getNumericType()));
  fi r(3, 1, NumericType(), fimath(), false);
  r.setIndex(2);
  EXPECT_TRUE(fi(r, fi::CurrentElement).isreal());
}

TEST_F(FiConstruction, AliasSharesDataWithItsRoot) {
  const double re[] = {0.5, 0.25, -0.5};
  const int dims[] = {1, 3};
  auto root = std::make_unique<fi>(re, nullptr, dims, 2, NumericType(), fimath());
  root->setIndex(2);
  auto alias = std::make_unique<AliasOf>(*root);
  EXPECT_EQ(alias->getIndex(), 2);
  EXPECT_EQ(alias->real().todouble(), -0.5);
  EXPECT_TRUE(alias->isSameSize(*root));
  root->realRef(1).setvalue(0.75);
  EXPECT_EQ(alias->realdouble(1), 0.75);
  // The root becomes complex; the alias, told to follow, finds the root's imaginary data.
  root->coordinateComplexity(true);
  root->imagRef(2).setvalue(0.125);
  alias->coordinateComplexity(true);
  EXPECT_TRUE(alias->iscomplex());
  EXPECT_EQ(alias->imagdouble(2), 0.125);
  alias->imagRef(0).setvalue(-0.25);
  EXPECT_EQ(root->imagdouble(0), -0.25);

  root.reset();  // the root goes first: the data live on in the alias
  EXPECT_EQ(reals(*alias), (std::vector<double>{0.5, 0.75, -0.5}));
  EXPECT_EQ(alias->imagdouble(2), 0.125);
  alias.reset();

  // The alias goes first; a root that drops its zero imaginary part while an alias still
  // reads it as complex leaves the alias a zero array.
  fi other(re, nullptr, dims, 2, NumericType(), fimath());
  other.coordinateComplexity(true);
  {
    AliasOf a(other);
    a.coordinateComplexity(true);
    other.freeImagIfZero();
    EXPECT_TRUE(other.isreal());
    EXPECT_TRUE(a.iscomplex() && a.imag(2).iszero());
  }
  EXPECT_EQ(reals(other), (std::vector<double>{0.5, 0.25, -0.5}));
  other.coordinateComplexity(true);
  EXPECT_TRUE(other.imag(0).iszero());
}

TEST_F(FiConstruction, ResizeAndZeroRemakesTheObject) {
  fi x(0.5, NumericType(), fimath());
  AliasOf alias(x);
  const int dims[] = {2, 3, 4};
  const fimath floorWrap = math(RoundModeEnum::Floor, OverflowModeEnum::Wrap);
  x.resizeAndZero(dims, 3, NumericType(false, 8, 2), floorWrap, true);
  EXPECT_EQ(x.numel(), 24);
  EXPECT_EQ(x.ndims(), 3);
  EXPECT_TRUE(x.iscomplex());
  EXPECT_TRUE(x.real(23).iszero() && x.imag(23).iszero());
  EXPECT_FALSE(x.getSigned());
  EXPECT_EQ(x.getAssignmentQuantizer().getRoundMode(), RoundModeEnum::Floor);
  EXPECT_EQ(x.getAssignmentQuantizer().getFractionlength(), 2);
  EXPECT_EQ(alias.realdouble(0), 0.5);  // the old data stay with the alias
  x.setIndex(20);
  x.resizeAndZero(1, 2, NumericType(), fimath(), false);
  EXPECT_EQ(x.getIndex(), 0);
  EXPECT_EQ(x.numel(), 2);
  EXPECT_EQ(x.ndims(), 2);
  EXPECT_TRUE(x.isreal());
}

TEST_F(FiConstruction, ShapeQueries) {
  struct Case {
    std::vector<int> dims;
    int numel, length, m, n, dim3;
    bool vector, row, column, scalar;
  } cases[] = {
      {{3, 4}, 12, 4, 3, 4, 1, false, false, false, false},
      {{2, 3, 4}, 24, 4, 2, 12, 4, false, false, false, false},
      {{1, 5}, 5, 5, 1, 5, 1, true, true, false, false},
      {{5, 1}, 5, 5, 5, 1, 1, true, false, true, false},
      {{1, 1}, 1, 1, 1, 1, 1, true, true, true, true},
  };
  for (const Case& c : cases) {
    const fi x(c.dims.data(), static_cast<int>(c.dims.size()), NumericType(), fimath(), false);
    SCOPED_TRACE(std::to_string(c.m) + "x" + std::to_string(c.n));
    EXPECT_EQ(x.numel(), c.numel);
    EXPECT_EQ(x.length(), c.length);
    EXPECT_EQ(x.getM(), c.m);
    EXPECT_EQ(x.getN(), c.n);
    EXPECT_EQ(x.getDimension(3), c.dim3);
    EXPECT_EQ(x.getDimension(4), 1);
    EXPECT_EQ((std::vector<bool>{x.isvector(), x.isrow(), x.iscolumn(), x.isscalar(), x.isempty()}),
              (std::vector<bool>{c.vector, c.row, c.column, c.scalar, false}));
  }
  const fi none(0, 3, NumericType(), fimath(), false);
  EXPECT_TRUE(none.isempty() && !none.isvector());
  fi m(3, 4, NumericType(), fimath(), false);
  for (int d : {0, -1})
    expect_error([&] { m.getDimension(d); }, "velkora:fi:getDimension:badDimension",
                 "Dimension number must be a non-negative integer in the range 1 to 2^31.");
  m.checkIndex(11);
  for (int i : {12, -1})
    expect_error([&] { m.setIndex(i); }, "velkora:fi:badindex", "Index exceeds matrix dimensions.");
  m(2, 3);
  EXPECT_EQ(m.getIndex(), 11);

  const int d231[] = {2, 3, 1};
  fi a(2, 3, NumericType(), fimath(), false), b(3, 2, NumericType(), fimath(), false);
  fi a1(d231, 3, NumericType(), fimath(), false), v6(6, 1, NumericType(), fimath(), false);
  fi one(1, 1, NumericType(), fimath(), false);
  EXPECT_TRUE(a.isSameSize(a1) && a1.isSameSize(a));
  EXPECT_FALSE(a.isSameSize(b) || a.isSameSize(v6));
  a.checkElementwiseSize(a1);
  a.checkElementwiseSize(one);
  one.checkElementwiseSize(m);
  for (const fi* other : {&b, &v6})
    expect_error([&] { a.checkElementwiseSize(*other); }, "velkora:fi:dimagree",
                 "Matrix dimensions must agree.");
}

TEST_F(FiConstruction, TypeSettersRequantizeEveryElement) {
  const double re[] = {0.3, -0.7, 0.9};
  const double im[] = {0.0, 0.0, -0.1};
  const int dims[] = {1, 3};
  fi x(re, im, dims, 2, NumericType(), fimath());
  x.setFractionLength(4);
  EXPECT_EQ(reals(x), (std::vector<double>{0.3125, -0.6875, 0.875}));
  EXPECT_EQ(x.imagdouble(2), -0.125);
  EXPECT_EQ(x.getAssignmentQuantizer().getFractionlength(), 4);
  x.setWordLength(4);  // saturates to [-0.5, 0.4375]
  EXPECT_EQ(reals(x), (std::vector<double>{0.3125, -0.5, 0.4375}));
  x.setSigned(false);
  EXPECT_EQ(reals(x), (std::vector<double>{0.3125, 0.0, 0.4375}));
  EXPECT_EQ(x.imagdouble(2), 0.0);

  // Math set later rounds the next re-quantization: 7/16 floors to 1/4 at two bits.
  x.setFimath(math(RoundModeEnum::Floor, OverflowModeEnum::Wrap));
  EXPECT_EQ(x.getRoundMode(), RoundModeEnum::Floor);
  EXPECT_EQ(x.realdouble(2), 0.4375);
  x.setFractionLength(2);
  EXPECT_EQ(reals(x), (std::vector<double>{0.25, 0.0, 0.25}));

  const double dv[] = {0.3, 1.7, -2.5};
  fi d(dv, nullptr, dims, 2, of_mode(Mode::Double), fimath());
  EXPECT_EQ(d.realdouble(0), 0.3);
  d.setDataType(DataTypeEnum::Fixed);  // a double turns into a signed 16-bit integer
  EXPECT_TRUE(d.isFixed());
  EXPECT_EQ(reals(d), (std::vector<double>{0.0, 2.0, -2.0}));
}

TEST_F(FiConstruction, RefusedSettersLeaveTheObjectAlone) {
  const std::string id = "Velkora:numerictype:InvalidSetting";
  fi x(0.3, NumericType(), fimath());
  const NumericType before = x.getNumericType();
  const std::string value = exact(x.real(0));
  x.setBias(3.0);
  x.setWordLength(0);
  x.setSlope(0.3);
  x.setSlopeAdjustmentFactor(1.5);
  EXPECT_EQ(host.take_warnings(),
            (Warnings{{id,
                       "Cannot change the Bias property when the data type mode is Double, "
                       "Single, Boolean, Scaled double or Fixed-point: unspecified scaling or "
                       "binary point scaling.  That property has not been changed."},
                      {id, "Invalid WordLength specified; the WordLength must be greater than 0"},
                      {id,
                       "Invalid total slope specified; for binary point scaling, the total slope "
                       "must be an exact power of two"},
                      {id,
                       "Cannot change the SlopeAdjustmentFactor property when the data type mode "
                       "is Double, Single, Boolean, Scaled double or Fixed-point: unspecified "
                       "scaling or binary point scaling.  That property has not been changed."}}));
  EXPECT_TRUE(x.getNumericType().isequal(before));
  EXPECT_EQ(x.getNumericType().getDataTypeMode(), Mode::FixedBinaryPoint);
  EXPECT_EQ(x.getAssignmentQuantizer().getWordlength(), 16);
  EXPECT_EQ(exact(x.real(0)), value);
}

TEST_F(FiConstruction, ImaginaryPartComesAndGoes) {
  fi x(2, 2, NumericType(), fimath(), true);
  x.coordinateComplexity(false);  // a complex value stays complex
  x.imagRef(3).setvalue(0.5);
  x.freeImagIfZero();
  EXPECT_TRUE(x.iscomplex());
  x.imagRef(3).setvalue(0.0);
  x.freeImagIfZero();
  EXPECT_TRUE(x.isreal() && x.imag(3).iszero());
  x.coordinateComplexity(true);  // a fresh imaginary part is zero
  EXPECT_TRUE(x.iscomplex() && x.imag(0).iszero() && x.imag(3).iszero());
}

// The data type, the math and the refusals of the operations' operand checks (the
// operations themselves check through them, see the arithmetic tests).
TEST_F(FiConstruction, OperandChecks) {
  const fimath other = math(RoundModeEnum::Floor, OverflowModeEnum::Wrap);
  const fi fixed(0.5, NumericType(), fimath()), fixed2(0.5, NumericType(), other);
  const fi scaled(0.5, of_mode(Mode::ScaledDoubleBinaryPoint, 1.0, -8), other);
  const fi scaled2(0.5, of_mode(Mode::ScaledDoubleBinaryPoint, 1.0, -8), fimath());
  const fi dbl(0.5, of_mode(Mode::Double), fimath()), sgl(0.5, of_mode(Mode::Single), fimath());
  const fi boolean(1.0, of_mode(Mode::Boolean), fimath());
  const fi slopeBias(0.5, of_mode(Mode::FixedSlopeBias, 1.5, -4, 1.0), fimath());
  const fi sdSlopeBias(0.5, of_mode(Mode::ScaledDoubleSlopeBias, 1.5, -4, 1.0), fimath());
  const std::map<std::string, std::string> texts = {
      {"", ""},
      {"mixedmath", "Math operations are not allowed on FI objects with different data types."},
      {"nobooleanmath", "Math operations are not allowed on FI objects with boolean data type."},
      {"fimathmismatch", "FIMATH of both operands must be equal."}};
  // Data types are compared before the math; boolean operands are refused before the data
  // types are compared, on either side. Scaled doubles compare no math.
  const struct {
    const fi &a, &b;
    std::string id;
  } cases[] = {{fixed, scaled, ""},
               {scaled, fixed, ""},
               {scaled, scaled2, ""},
               {dbl, dbl, ""},
               {fixed, slopeBias, ""},
               {fixed, fixed2, "fimathmismatch"},
               {fixed2, dbl, "mixedmath"},
               {dbl, sgl, "mixedmath"},
               {boolean, dbl, "nobooleanmath"},
               {fixed, boolean, "nobooleanmath"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.id);
    if (c.id.empty()) fi::errorIfMathMismatch(c.a, c.b);
    if (!c.id.empty())
      expect_error([&] { fi::errorIfMathMismatch(c.a, c.b); }, "velkora:fi:" + c.id,
                   texts.at(c.id));
  }
  expect_error([&] { fi::errorIfFimathMismatch(scaled, scaled2); }, "velkora:fi:fimathmismatch",
               texts.at("fimathmismatch"));
  fi::errorIfMixedMath(boolean, boolean);

  fi::errorIfSlopeBiasMath(fixed);
  expect_error([&] { fi::errorIfSlopeBiasMath(slopeBias); }, "velkora:fi:onlybinarypointmath",
               "Math is supported only for binary-point scaling.");
  fi::errorIfScaledDoubleSlopeBiasMath(slopeBias, scaled);
  for (auto [a, b] : {std::pair{&sdSlopeBias, &fixed}, std::pair{&fixed, &sdSlopeBias}})
    expect_error([&] { fi::errorIfScaledDoubleSlopeBiasMath(*a, *b); },
                 "velkora:fi:scaleddoubleslopebiasmathnotdefined",
                 "Math is not supported for slope-bias FIs when DataTypeMode is 'Scaled double: "
                 "slope and bias scaling'");
  fixed.errorIfScaledDouble("bin");
  expect_error([&] { scaled.errorIfScaledDouble("bin"); }, "velkora:fi:ScaledDoubleOn",
               "bin is not supported when the DataType is 'ScaledDouble'.");
}

}  // namespace
}  // namespace corbel
