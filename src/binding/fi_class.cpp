// The fi class ("CoreFi"): constructor signatures, instance creation from host values, and
// the property and method tables of fi_properties.def and fi_methods.def.
#include "binding/fi_class.h"

#include <climits>
#include <cmath>
#include <optional>

#include "binding/class_objects.h"
#include "binding/table_templates.h"

namespace corbel {
namespace {

using namespace binding;

// ---- Property accessors -----------------------------------------------------------------

template <auto Get>
auto viaType(const fi& f) {
  return std::invoke(Get, f.getNumericType());
}
template <auto Get>
auto viaFimath(const fi& f) {
  return std::invoke(Get, f.getFimath());
}
// A fimath setting of the fi: the fi takes a changed copy of its fimath (its elements are
// not quantized again).
template <class Arg, void (fimath::*Set)(Arg)>
void setViaFimath(fi& f, Arg v) {
  fimath math = f.getFimath();
  (math.*Set)(v);
  f.setFimath(math);
}

bool loggingOf(const fi&) {
  return fi::getLogging();
}
void setLoggingOf(fi&, bool on) {
  fi::setLogging(on);
}
// The log's count and the count already reported move together.
void setNoverflowsOf(fi& f, std::int32_t n) {
  f.getfilog().setNoverflows(n);
  f.getfilog().setOldOverflows(n);
}
void setNunderflowsOf(fi& f, std::int32_t n) {
  f.getfilog().setNunderflows(n);
  f.getfilog().setOldUnderflows(n);
}
double maxlogOf(const fi& f) {
  return f.getMaxLogAsRealWorldValue();
}
double minlogOf(const fi& f) {
  return f.getMinLogAsRealWorldValue();
}
void setMaxlogOf(fi& f, double v) {
  f.getfilog().setMax(number(v));
}
void setMinlogOf(fi& f, double v) {
  f.getfilog().setMin(number(v));
}

// The radix text properties and methods: "bin", "oct", "dec" and "hex" by their radix.
constexpr const char* radixName(int radix) {
  return radix == 2 ? "bin" : radix == 8 ? "oct" : radix == 10 ? "dec" : "hex";
}
template <int Radix>
HostArray radixTextOf(const fi& f) {
  f.errorIfScaledDouble(radixName(Radix));
  return f.radixText(Radix);
}
template <int Radix>
void setRadixText(fi& f, const HostArray& text) {
  f.errorIfScaledDouble(radixName(Radix));
  f.base2num(text, Radix);
}
HostArray signedDecimalOf(const fi& f) {
  f.errorIfScaledDouble("sdec");
  return f.radixText(10, true);
}

// ---- Method operations ------------------------------------------------------------------

template <bool (NumericType::*Pred)() const>
HostArray typePredicate(const fi& f) {
  return HostArray::make_logical((f.getNumericType().*Pred)());
}
// A logged extreme, or an empty array when the logging state gives none (after its
// warning).
HostArray loggedMax(const fi& f) {
  return f.reportLoggingState("maxlog") ? HostArray::make_double(f.getMaxLogAsRealWorldValue())
                                        : HostArray();
}
HostArray loggedMin(const fi& f) {
  return f.reportLoggingState("minlog") ? HostArray::make_double(f.getMinLogAsRealWorldValue())
                                        : HostArray();
}
void displayGlobalLog(const fi&) {
  fi::displayGlobalLog();
}
void resetGlobalLog(const fi&) {
  fi::resetGlobalLog();
}
void resetLog(const fi& f) {
  f.getfilog().reset();
}

// (fi) -> object of another class: Get(fi) wrapped in a new instance.
template <class Kind, auto Get>
class ObjectMethod : public XoMethodInfo {
 public:
  explicit ObjectMethod(std::string name) : XoMethodInfo(std::move(name)) {
    addSignature().addArgType(self_type<FiXoClass>()).addResultType(Kind::type());
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int, void** inputs) override {
    outputs[0] = Kind::box(std::invoke(Get, object_of<fi>(static_cast<XoInterface*>(inputs[0]))));
    *nout = 1;
  }
};

// Which logs a binary operation reports into afterwards: the left operand's sum register
// and the global sum log, its product register and the global product log, or none (the
// operation reports itself).
enum class Report { Sum, Product, Itself };

// (fi, fi) -> fi, then the operation's report under the operator's name.
template <std::unique_ptr<fi> (fi::*Op)(const fi&) const, Report R, FixedString Name>
class FiBinaryMethod : public XoMethodInfo {
 public:
  explicit FiBinaryMethod(std::string name) : XoMethodInfo(std::move(name)) {
    XoDataType* self = self_type<FiXoClass>();
    addSignature().addArgType(self).addArgType(self).addResultType(self);
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int, void** inputs) override {
    const fi& a = object_of<fi>(static_cast<XoInterface*>(inputs[0]));
    const fi& b = object_of<fi>(static_cast<XoInterface*>(inputs[1]));
    std::unique_ptr<fi> result = (a.*Op)(b);
    if constexpr (R != Report::Itself) {
      if (fi::getLogging()) {
        const int n = result->numel() * (result->iscomplex() ? 2 : 1);
        if constexpr (R == Report::Sum) {
          // Two casts and a sum per element when operands are cast first.
          const int operations = a.getCastBeforeSum() ? 3 * n : n;
          fi::reportOperation(a.getsumfilog(), fi::getSumlog(), result->getfilog(), operations, n,
                              Name.c_str());
        } else {
          fi::reportOperation(a.getproductfilog(), fi::getProductlog(), result->getfilog(), n, n,
                              Name.c_str());
        }
      }
    }
    outputs[0] = XoInterface::create(FiXoClass::getInstance(), result.release());
    *nout = 1;
  }
};

// An integer of the int32 range held in a real numeric scalar host array, or nothing.
std::optional<long> integerScalar(const HostArray& k) {
  if (!k.is_numeric() || k.is_complex() || k.numel() != 1) return std::nullopt;
  const double v = k.real_as_double(0);
  if (!(v == std::trunc(v)) || std::fabs(v) > 2147483647.0) return std::nullopt;
  return static_cast<long>(v);
}

// A method's optional second argument: 0 when not given, else an integer scalar of at least
// `lowest`; `error` for anything else.
long optionalInteger(int nargs, void** inputs, long lowest, Msg error) {
  if (nargs < 2) return 0;
  const std::optional<long> k = integerScalar(AnyArray::unbox(inputs[1]));
  if (!k || *k < lowest) raise(error);
  return *k;
}

XoInterface* wrapFi(std::unique_ptr<fi> f) {
  return XoInterface::create(FiXoClass::getInstance(), f.release());
}

// The data-type restriction a method checks first, if any.
enum class Restriction { None, NotBoolean, FixedOnly };
template <Restriction R>
void checkRestriction(const XoMethodInfo& method, const fi& f) {
  if constexpr (R != Restriction::None)
    checkDataTypeRule(
        method.getName().c_str(), f,
        R == Restriction::FixedOnly ? DataTypeRule::FixedOnly : DataTypeRule::NotBoolean);
}

// (fi) -> fi.
// A member operation of fi that makes a new array (to pick one of overloads).
using FiArrayOp = std::unique_ptr<fi> (fi::*)() const;

template <auto Op, Restriction R = Restriction::None>
class FiUnaryMethod : public XoMethodInfo {
 public:
  explicit FiUnaryMethod(std::string name) : XoMethodInfo(std::move(name)) {
    addSignature().addArgType(self_type<FiXoClass>()).addResultType(self_type<FiXoClass>());
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int, void** inputs) override {
    const fi& a = object_of<fi>(static_cast<XoInterface*>(inputs[0]));
    checkRestriction<R>(*this, a);
    outputs[0] = wrapFi(std::invoke(Op, a));
    *nout = 1;
  }
};

// range(A): the bounds as one 1x2 array, or, asked for two results, as two 1x1 arrays. The
// two forms take the same argument, so the form with two declared results comes first: the
// dispatcher picks it for either count, and every result it fills has a declared type.
class FiRangeMethod : public XoMethodInfo {
 public:
  explicit FiRangeMethod(std::string name) : XoMethodInfo(std::move(name)) {
    XoDataType* self = self_type<FiXoClass>();
    addSignature().addArgType(self).addResultType(self).addResultType(self);
    addSignature().addArgType(self).addResultType(self);
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int, void** inputs) override {
    const fi& a = object_of<fi>(static_cast<XoInterface*>(inputs[0]));
    if (*nout < 2) {
      outputs[0] = wrapFi(a.range());
      *nout = 1;
      return;
    }
    outputs[0] = wrapFi(a.lowerbound());
    outputs[1] = wrapFi(a.upperbound());
    *nout = 2;
  }
};

// pow2(A, K); the one-argument form is refused.
class FiPow2Method : public XoMethodInfo {
 public:
  explicit FiPow2Method(std::string name) : XoMethodInfo(std::move(name)) {
    XoDataType* self = self_type<FiXoClass>();
    addSignature().addArgType(self).addResultType(self);
    addSignature().addArgType(self).addArgType(AnyArray::type()).addResultType(self);
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int nargs,
                    void** inputs) override {
    const fi& a = object_of<fi>(static_cast<XoInterface*>(inputs[0]));
    checkRestriction<Restriction::NotBoolean>(*this, a);
    if (nargs < 2) raise(Msg::FiPow2NotSupported);
    const std::optional<long> k = integerScalar(AnyArray::unbox(inputs[1]));
    if (!k) raise(Msg::FiPow2IntegerK);
    outputs[0] = wrapFi(a.pow2(*k));
    *nout = 1;
  }
};

// (fi, fi) -> fi of the operands' own type, both operands restricted.
template <std::unique_ptr<fi> (fi::*Op)(const fi&) const, Restriction R>
class FiStrictBinaryMethod : public XoMethodInfo {
 public:
  explicit FiStrictBinaryMethod(std::string name) : XoMethodInfo(std::move(name)) {
    XoDataType* self = self_type<FiXoClass>();
    addSignature().addArgType(self).addArgType(self).addResultType(self);
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int, void** inputs) override {
    const fi& a = object_of<fi>(static_cast<XoInterface*>(inputs[0]));
    const fi& b = object_of<fi>(static_cast<XoInterface*>(inputs[1]));
    checkRestriction<R>(*this, a);
    checkRestriction<R>(*this, b);
    outputs[0] = wrapFi((a.*Op)(b));
    *nout = 1;
  }
};

// bitshift(A, K), K checked in order: built-in numeric, scalar, real, integer.
class FiBitshiftMethod : public XoMethodInfo {
 public:
  explicit FiBitshiftMethod(std::string name) : XoMethodInfo(std::move(name)) {
    XoDataType* self = self_type<FiXoClass>();
    addSignature().addArgType(self).addArgType(AnyArray::type()).addResultType(self);
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int, void** inputs) override {
    const fi& a = object_of<fi>(static_cast<XoInterface*>(inputs[0]));
    checkRestriction<Restriction::FixedOnly>(*this, a);
    const HostArray& k = AnyArray::unbox(inputs[1]);
    if (!k.is_numeric()) raise(Msg::FiBitshiftNotBuiltinNumeric);
    if (k.numel() != 1) raise(Msg::FiBitshiftNotScalar);
    if (k.is_complex()) raise(Msg::FiBitshiftNotReal);
    const std::optional<long> shift = integerScalar(k);
    if (!shift) raise(Msg::FiBitshiftNotInteger);
    outputs[0] = wrapFi(a.bitshift(*shift));
    *nout = 1;
  }
};

// bitset(A, positions) and bitset(A, positions, values).
class FiBitsetMethod : public XoMethodInfo {
 public:
  explicit FiBitsetMethod(std::string name) : XoMethodInfo(std::move(name)) {
    XoDataType* self = self_type<FiXoClass>();
    XoDataType* any = AnyArray::type();
    addSignature().addArgType(self).addArgType(any).addResultType(self);
    addSignature().addArgType(self).addArgType(any).addArgType(any).addResultType(self);
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int nargs,
                    void** inputs) override {
    const fi& a = object_of<fi>(static_cast<XoInterface*>(inputs[0]));
    checkRestriction<Restriction::FixedOnly>(*this, a);
    const HostArray& positions = AnyArray::unbox(inputs[1]);
    outputs[0] =
        wrapFi(nargs > 2 ? a.bitset(positions, AnyArray::unbox(inputs[2])) : a.bitset(positions));
    *nout = 1;
  }
};

// base2num(A, text, radix) -> a fi of A's type and shape holding the text's stored integers.
class FiBase2NumMethod : public XoMethodInfo {
 public:
  explicit FiBase2NumMethod(std::string name) : XoMethodInfo(std::move(name)) {
    XoDataType* any = AnyArray::type();
    addSignature()
        .addArgType(self_type<FiXoClass>())
        .addArgType(any)
        .addArgType(any)
        .addResultType(self_type<FiXoClass>());
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int, void** inputs) override {
    const fi& a = object_of<fi>(static_cast<XoInterface*>(inputs[0]));
    checkRestriction<Restriction::FixedOnly>(*this, a);
    const int radix = radix_argument(AnyArray::unbox(inputs[2]));
    auto r = std::make_unique<fi>(a, fi::WholeCopy);
    r->base2num(AnyArray::unbox(inputs[1]), radix);
    outputs[0] = wrapFi(std::move(r));
    *nout = 1;
  }
};

// [values, indices] = unary_max(A) or unary_max(A, DIM), and the same for the minimum.
template <bool Larger>
class FiExtremumMethod : public XoMethodInfo {
 public:
  explicit FiExtremumMethod(std::string name) : XoMethodInfo(std::move(name)) {
    XoDataType* self = self_type<FiXoClass>();
    addSignature().addArgType(self).addResultType(self).addResultType(AnyArray::type());
    addSignature()
        .addArgType(self)
        .addArgType(AnyArray::type())
        .addResultType(self)
        .addResultType(AnyArray::type());
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int nargs,
                    void** inputs) override {
    const fi& a = object_of<fi>(static_cast<XoInterface*>(inputs[0]));
    const int dim = static_cast<int>(optionalInteger(
        nargs, inputs, 1, Larger ? Msg::FiMaxBadDimension : Msg::FiMinBadDimension));
    std::unique_ptr<fi> values;
    HostArray indices;
    Larger ? a.unary_max(values, indices, dim) : a.unary_min(values, indices, dim);
    outputs[0] = wrapFi(std::move(values));
    outputs[1] = AnyArray::box(std::move(indices));
    *nout = 2;
  }
};

// Elements by position, with positions and layouts as real double arrays (see fi.h):
// subsref(A, P) gives the values there as doubles, subscriptedreference(A, P) as a new fi,
// subsasgn(A, P, V) assigns in place, subscriptedgrowassignment(A, L[, V]) makes a new fi.
enum class ByPosition { Values, Reference, Assign, Layout };

// The values of an operand or an assignment: a fi, or a built-in numeric or logical array;
// any other object raises `error`.
fi::ValueSource valueSource(const HostArray& v, Msg error = Msg::FiAssignedNotNumeric) {
  fi::ValueSource out;
  if (XoInterface* object = v.object()) {
    if (object->getClass() != FiXoClass::getInstance()) raise(error);
    out.array = &object_of<fi>(object);
  } else {
    out.host = &v;
  }
  return out;
}

template <ByPosition K>
class FiByPositionMethod : public XoMethodInfo {
 public:
  explicit FiByPositionMethod(std::string name) : XoMethodInfo(std::move(name)) {
    XoDataType* self = self_type<FiXoClass>();
    XoDataType* any = AnyArray::type();
    auto& sig = addSignature().addArgType(self).addArgType(any);
    if constexpr (K == ByPosition::Values) sig.addResultType(any);
    if constexpr (K == ByPosition::Reference) sig.addResultType(self);
    if constexpr (K == ByPosition::Assign) {
      // A fourth argument names the operation the quantizations are reported under.
      sig.addArgType(any);
      addSignature().addArgType(self).addArgType(any).addArgType(any).addArgType(any);
    }
    if constexpr (K == ByPosition::Layout) {
      sig.addResultType(self);
      addSignature().addArgType(self).addArgType(any).addArgType(any).addResultType(self);
    }
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int nargs,
                    void** inputs) override {
    fi& a = object_of<fi>(static_cast<XoInterface*>(inputs[0]));
    const HostArray& positions = AnyArray::unbox(inputs[1]);
    *nout = 1;
    if constexpr (K == ByPosition::Values) {
      outputs[0] = AnyArray::box(a.elementsAt(positions)->toHostDouble());
    } else if constexpr (K == ByPosition::Reference) {
      outputs[0] = wrapFi(a.elementsAt(positions));
    } else if constexpr (K == ByPosition::Assign) {
      const std::string operation = nargs > 3 ? AnyArray::unbox(inputs[3]).text() : "";
      a.assignAt(positions, valueSource(AnyArray::unbox(inputs[2])),
                 operation.empty() ? nullptr : operation.c_str());
      *nout = 0;
    } else {
      const fi::ValueSource none;
      outputs[0] = wrapFi(
          a.rearranged(positions, nargs > 2 ? valueSource(AnyArray::unbox(inputs[2])) : none));
    }
  }
};

// (A, X) -> host array: F of the fi and the host value X, after the data-type check.
template <HostArray (*F)(const fi&, const HostArray&), Restriction R = Restriction::None>
class FiHostArgumentMethod : public XoMethodInfo {
 public:
  explicit FiHostArgumentMethod(std::string name) : XoMethodInfo(std::move(name)) {
    addSignature()
        .addArgType(self_type<FiXoClass>())
        .addArgType(AnyArray::type())
        .addResultType(AnyArray::type());
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int, void** inputs) override {
    const fi& a = object_of<fi>(static_cast<XoInterface*>(inputs[0]));
    checkRestriction<R>(*this, a);
    outputs[0] = AnyArray::box(F(a, AnyArray::unbox(inputs[1])));
    *nout = 1;
  }
};

// bitget(A, positions): a uint8 array. num2base(A, radix): text.
HostArray bitgetOf(const fi& a, const HostArray& positions) {
  return a.bitget(positions);
}
HostArray num2baseOf(const fi& a, const HostArray& radix) {
  return a.radixText(radix_argument(radix));
}

// eq, ne, lt, le, gt, ge (A, B): a host logical array; binaryop_isequal (A, B): a logical
// scalar. B is a fi or a built-in numeric or logical array.
template <fi::Relation R>
HostArray relation(const fi& a, const HostArray& b) {
  return a.compare(valueSource(b, Msg::FiOperandNotNumeric), R);
}
HostArray isequalOf(const fi& a, const HostArray& b) {
  return HostArray::make_logical(a.isequalTo(valueSource(b, Msg::FiOperandNotNumeric)));
}

// fi_reshape(A, S): A's elements under the dimensions in the real vector S.
class FiReshapeMethod : public XoMethodInfo {
 public:
  explicit FiReshapeMethod(std::string name) : XoMethodInfo(std::move(name)) {
    XoDataType* self = self_type<FiXoClass>();
    addSignature().addArgType(self).addArgType(AnyArray::type()).addResultType(self);
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int, void** inputs) override {
    const fi& a = object_of<fi>(static_cast<XoInterface*>(inputs[0]));
    const HostArray& sizes = AnyArray::unbox(inputs[1]);
    if (!sizes.is_numeric() || sizes.is_complex()) raise(Msg::FiReshapeCount);
    std::vector<int> dims(sizes.numel());
    for (std::size_t k = 0; k < dims.size(); ++k) {
      const double d = sizes.real_as_double(k);
      if (!(d >= 0 && d <= 2147483647.0) || d != std::trunc(d)) raise(Msg::FiReshapeCount);
      dims[k] = static_cast<int>(d);
    }
    outputs[0] = wrapFi(a.reshaped(dims));
    *nout = 1;
  }
};

// length, size and ndims as Octave gives them: a double scalar, or the row of dimensions; an
// empty array has length 0.
HostArray lengthOf(const fi& a) {
  int longest = 0;
  for (int d = 0; d < a.ndims(); ++d) longest = std::max(longest, a.dims()[d]);
  return HostArray::make_double(a.isempty() ? 0.0 : longest);
}
HostArray ndimsOf(const fi& a) {
  return HostArray::make_double(a.ndims());
}

// size(A) and size(A, DIM).
class FiSizeMethod : public XoMethodInfo {
 public:
  explicit FiSizeMethod(std::string name) : XoMethodInfo(std::move(name)) {
    XoDataType* self = self_type<FiXoClass>();
    XoDataType* any = AnyArray::type();
    addSignature().addArgType(self).addArgType(any).addResultType(any);
    addSignature().addArgType(self).addResultType(any);
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int nargs,
                    void** inputs) override {
    const fi& a = object_of<fi>(static_cast<XoInterface*>(inputs[0]));
    *nout = 1;
    if (nargs > 1) {
      const std::optional<long> d = integerScalar(AnyArray::unbox(inputs[1]));
      outputs[0] =
          AnyArray::box(HostArray::make_double(a.getDimension(d ? static_cast<int>(*d) : 0)));
      return;
    }
    std::vector<double> dims(a.dims(), a.dims() + a.ndims());
    outputs[0] = AnyArray::box(HostArray::make_double_matrix(1, dims.size(), dims));
  }
};

// copy(A): a new fi with A's elements, type, fimath and log.
std::unique_ptr<fi> copyOf(const fi& a) {
  return std::make_unique<fi>(a, fi::WholeCopy);
}

// copydata(A, B): B's values into A's elements, in place, as an assignment.
class FiCopydataMethod : public XoMethodInfo {
 public:
  explicit FiCopydataMethod(std::string name) : XoMethodInfo(std::move(name)) {
    XoDataType* self = self_type<FiXoClass>();
    addSignature().addArgType(self).addArgType(self);
  }
  void invokeMethod(XoMethodSignature*, int* nout, void**, int, void** inputs) override {
    fi& a = object_of<fi>(static_cast<XoInterface*>(inputs[0]));
    const fi& b = object_of<fi>(static_cast<XoInterface*>(inputs[1]));
    a.copydata(b);
    *nout = 0;
  }
};

// A method taking an optional integer scalar (0 when not given, else at least `Lowest`,
// `Error` otherwise): diag, tril and triu (A[, K]) and leadingdimension_sum (A[, DIM]).
template <std::unique_ptr<fi> (fi::*Op)(int) const, long Lowest, Msg Error,
          Restriction R = Restriction::None>
class FiIntegerArgumentMethod : public XoMethodInfo {
 public:
  explicit FiIntegerArgumentMethod(std::string name) : XoMethodInfo(std::move(name)) {
    XoDataType* self = self_type<FiXoClass>();
    addSignature().addArgType(self).addResultType(self);
    addSignature().addArgType(self).addArgType(AnyArray::type()).addResultType(self);
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int nargs,
                    void** inputs) override {
    const fi& a = object_of<fi>(static_cast<XoInterface*>(inputs[0]));
    checkRestriction<R>(*this, a);
    const long k = optionalInteger(nargs, inputs, Lowest, Error);
    outputs[0] = wrapFi((a.*Op)(static_cast<int>(k)));
    *nout = 1;
  }
};

// The property and method classes, one per row.
#define CORBEL_FI_PROPERTY(Part, name, ...) using Fi##Part##PropInfo = __VA_ARGS__;
#include "binding/fi_properties.def"
#undef CORBEL_FI_PROPERTY
using FimathPropInfo = FiFimathPropInfo;
#define CORBEL_FI_METHOD(Part, name, ...) using Fi##Part##MethodInfo = __VA_ARGS__;
#include "binding/fi_methods.def"
#undef CORBEL_FI_METHOD

// The default fimath and numeric type of a fi made from a value alone.
const fimath& defaultFimath() {
  static const fimath math(RoundModeEnum::Nearest, OverflowModeEnum::Saturate,
                           PrecisionModeEnum::Arbitrary, ArithmeticModeEnum::FullPrecision, 32, 128,
                           30, ArithmeticModeEnum::FullPrecision, 32, 128, 30, true);
  return math;
}
const NumericType& defaultNumericType() {
  static const NumericType type(DataTypeModeEnum::FixedBinaryPoint, true, 16, 1.0, -15, 0.0);
  return type;
}

}  // namespace

void FiXoClass::fill() {
  XoDataType* any = AnyArray::type();
  // No argument, then one, two and three host values (value, numeric type, fimath).
  addConstructorSignature();
  addConstructorSignature().addArgType(any);
  addConstructorSignature().addArgType(any).addArgType(any);
  addConstructorSignature().addArgType(any).addArgType(any).addArgType(any);
#define CORBEL_FI_PROPERTY(Part, name, ...) addProperty(std::make_unique<Fi##Part##PropInfo>(name));
#include "binding/fi_properties.def"
#undef CORBEL_FI_PROPERTY
#define CORBEL_FI_METHOD(Part, name, ...) addMethod(std::make_unique<Fi##Part##MethodInfo>(name));
#include "binding/fi_methods.def"
#undef CORBEL_FI_METHOD
  addMethod(make_set_method<FiXoClass>("FI"));
}

std::unique_ptr<fi> FiXoClass::build(void** args, int nargs) {
  if (nargs > 3) raise(Msg::FiTooManyInputs);
  if (nargs == 0) return std::make_unique<fi>();
  const HostArray& value = AnyArray::unbox(args[0]);
  NumericType type = defaultNumericType();
  if (nargs >= 2) {
    type = NumericType::convertFromNorvakArray(AnyArray::unbox(args[1]));
    if (type.getScaling() == ScalingEnum::Unspecified) type.setBestPrecision(value);
  }
  const fimath math =
      nargs == 3 ? fimath::convertFromNorvakArray(AnyArray::unbox(args[2])) : defaultFimath();
  return std::make_unique<fi>(value, type, math);
}

std::vector<std::size_t> FiXoClass::getInstanceDims(XoInterface* instance) const {
  const fi& f = object_of<fi>(instance);
  return std::vector<std::size_t>(f.dims(), f.dims() + f.ndims());
}

void checkDataTypeRule(const char* method, const fi& f, DataTypeRule rule) {
  const DataTypeEnum type = f.getNumericType().getDataType();
  const bool allowed =
      rule == DataTypeRule::FixedOnly ? type == DataTypeEnum::Fixed : type != DataTypeEnum::Boolean;
  if (allowed) return;
  const std::string name(enum_to_string(type).value_or(""));
  raise_patterned(Msg::FiDataTypeNotAllowed, method, name.c_str());
}

}  // namespace corbel
