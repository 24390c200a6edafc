// The quantizer classes ("ModelessQuantizer", "CoreQuantizer", "slopebiasquantizer") and
// the quantization log class ("qloggerstruct"). "ModelessQuantizer" holds the shared
// properties and methods; the other two derive from it and add "mode" and "datamode".
#include <algorithm>
#include <cmath>
#include <limits>

#include "binding/class_objects.h"
#include "binding/table_templates.h"
#include "fi/float_text.h"
#include "host/services.h"
#include "quantize/slopebiasquantizer.h"

namespace corbel {
namespace {

using namespace binding;
using Q = loggingquantizer;

// ---- Reading the quantizer --------------------------------------------------------------

// A slope-bias quantizer reports its bounds on its own scale.
const slopebiasquantizer* slopeBias(const Q& q) {
  return dynamic_cast<const slopebiasquantizer*>(&q);
}
double epsOf(const Q& q) {
  return (slopeBias(q) ? slopeBias(q)->getEps() : q.getEps()).todouble();
}
double realmaxOf(const Q& q) {
  return (slopeBias(q) ? slopeBias(q)->getRealmax() : q.getRealmax()).todouble();
}
double realminOf(const Q& q) {
  return (slopeBias(q) ? slopeBias(q)->getRealmin() : q.getRealmin()).todouble();
}
double denormalmaxOf(const Q& q) {
  return q.getDenormalmax().todouble();
}
double denormalminOf(const Q& q) {
  return q.getDenormalmin().todouble();
}
double wordlengthOf(const Q& q) {
  return static_cast<double>(q.getWordlength());
}
double fractionlengthOf(const Q& q) {
  return static_cast<double>(q.getFractionlength());
}
double precisionOf(const Q& q) {
  return static_cast<double>(q.getPrecision());
}
double exponentlengthOf(const Q& q) {
  return static_cast<double>(q.getExponentlength());
}
double exponentbiasOf(const Q& q) {
  return static_cast<double>(q.getExponentbias());
}
double exponentmaxOf(const Q& q) {
  return static_cast<double>(q.getExponentmax());
}
double exponentminOf(const Q& q) {
  return static_cast<double>(q.getExponentmin());
}
double logMaxOf(const Q& q) {
  return q.getMax().todouble();
}
double logMinOf(const Q& q) {
  return q.getMin().todouble();
}
std::int32_t versionOf(const Q& q) {
  return q.getVersion();
}

// ---- Writing it -------------------------------------------------------------------------

// A host number as a length for the quantizer's own checks: truncated, and NaN or a value
// beyond every length (infinities included) held at the far end of long's range, where
// those checks refuse it.
long lengthFromHost(double v) {
  constexpr double kFar = 4611686018427387904.0;  // 2^62
  if (std::isnan(v)) return std::numeric_limits<long>::min();
  return static_cast<long>(std::clamp(std::trunc(v), -kFar, kFar));
}

void setWordlengthFromHost(Q& q, const double& v) {
  q.setWordlength(lengthFromHost(v));
}
void setFractionlengthFromHost(Q& q, const double& v) {
  q.setFractionlength(lengthFromHost(v));
}
void setExponentlengthFromHost(Q& q, const double& v) {
  q.setExponentlength(lengthFromHost(v));
}
void setLogMax(Q& q, const double& v) {
  q.setMax(number(v));
}
void setLogMin(Q& q, const double& v) {
  q.setMin(number(v));
}

// "format": a real vector [first second]; one number changes the first only.
HostArray formatOf(const Q& q) {
  return HostArray::make_double_matrix(1, 2, {q.getFormat().first, q.getFormat().second});
}
void setFormatFromHost(Q& q, const HostArray& v) {
  const std::size_t n = v.numel();
  if (!v.is_numeric() || v.is_complex() || n < 1 || n > 2) raise(Msg::QuantizerFormatBadValue);
  q.setFormat({v.real_as_double(0), n == 2 ? v.real_as_double(1) : q.getFormat().second});
}

// The host type of a format pair.
XoDataType* realPointType() {
  static XoDataType* const type = [] {
    XoTypeRepository& repo = XoTypeRepository::instance();
    if (XoDataType* found = repo.getType("real point")) return found;
    return repo.registerType(std::make_unique<XoDataType>("real point", XoTypeKind::HostArray));
  }();
  return type;
}
struct RealPoint {
  using value_type = HostArray;
  static XoDataType* type() { return realPointType(); }
  static void* box(HostArray v) { return new HostArray(std::move(v)); }
  static const HostArray& unbox(void* p) { return *static_cast<const HostArray*>(p); }
};

using Mode = EnumKind<quantizer::ModeEnum, &quantizer::getModeEnum>;

// A property that follows from the others: reading gives it, setting only warns.
template <class Kind, auto Get>
class DerivedProp : public XoPropInfoTemplate {
 public:
  explicit DerivedProp(std::string name) : XoPropInfoTemplate(std::move(name), Kind::type()) {}
  void* getValue(XoInterface* instance) override {
    return Kind::box(std::invoke(Get, object_of<Q>(instance)));
  }
  void setValue(XoInterface*, void* value) override {
    if (value == nullptr) return;
    if (getName() == "version") {
      warn(Msg::QuantizerVersionReadOnly);
    } else {
      warn(Msg::QuantizerDerivedProperty, getName().c_str());
    }
  }
};

using QuantizerModePropInfo = TableProp<Q, Mode, &Q::getMode, &Q::setMode>;
using QuantizerRoundModePropInfo =
    TableProp<Q, Enum<RoundModeEnum>, &Q::getRoundMode, &Q::setRoundMode>;
using QuantizerOverflowModePropInfo =
    TableProp<Q, Enum<OverflowModeEnum>, &Q::getOverflowMode, &Q::setOverflowMode>;
using QuantizerFormatPropInfo = TableProp<Q, RealPoint, &formatOf, &setFormatFromHost>;
using QuantizerWordlengthPropInfo = TableProp<Q, Double, &wordlengthOf, &setWordlengthFromHost>;
using QuantizerFractionlengthPropInfo =
    TableProp<Q, Double, &fractionlengthOf, &setFractionlengthFromHost>;
using QuantizerExponentlengthPropInfo =
    TableProp<Q, Double, &exponentlengthOf, &setExponentlengthFromHost>;
using QuantizerMaxPropInfo = TableProp<Q, Double, &logMaxOf, &setLogMax>;
using QuantizerMinPropInfo = TableProp<Q, Double, &logMinOf, &setLogMin>;
using QuantizerNoverflowsPropInfo = TableProp<Q, Int32, &Q::getNoverflows, &Q::setNoverflows>;
using QuantizerNunderflowsPropInfo = TableProp<Q, Int32, &Q::getNunderflows, &Q::setNunderflows>;
using QuantizerNoperationsPropInfo = TableProp<Q, Int32, &Q::getNoperations, &Q::setNoperations>;

// ---- Methods ----------------------------------------------------------------------------

// quantize(q, x): every element of a numeric array quantized with the quantizer's own log,
// as doubles of the same shape.
HostArray quantizeArray(const Q& q, const HostArray& x) {
  if (!x.is_numeric()) raise(Msg::QuantizeNotNumeric);
  if (x.element_class() == HostClass::Int64 || x.element_class() == HostClass::UInt64)
    raise(Msg::QuantizeNumericOnly);
  const unsigned long previous = number::getDefaultPrecision();
  const bool force = number::getDefaultForceMultiplePrecision();
  number::setDefaultPrecision(std::max<unsigned long>(52, q.getPrecision()), force);
  HostArray out(HostClass::Double, x.dims(),
                x.is_complex() ? Complexity::Complex : Complexity::Real);
  auto one = [&](double v) {
    number n(v);
    if (const slopebiasquantizer* sb = slopeBias(q)) {
      sb->quantize(n);
    } else {
      q.quantize(n);
    }
    return n.todouble();
  };
  // An interrupt part way puts the quantizer's log back as it was.
  const qlogger logBefore = q.getQLog();
  try {
    for (std::size_t k = 0; k < x.numel(); ++k) {
      poll_interrupt();
      out.real<double>()[k] = one(x.real_as_double(k));
      if (x.is_complex()) out.imag<double>()[k] = one(x.imag_as_double(k));
    }
  } catch (...) {
    q.getQLog().restore(logBefore);
    number::setDefaultPrecision(previous, force);
    throw;
  }
  number::setDefaultPrecision(previous, force);
  return out;
}

template <class Cls>
class QuantizeMethod : public XoMethodInfo {
 public:
  explicit QuantizeMethod(std::string name) : XoMethodInfo(std::move(name)) {
    addSignature()
        .addArgType(self_type<Cls>())
        .addArgType(AnyArray::type())
        .addResultType(AnyArray::type());
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int, void** inputs) override {
    const Q& q = object_of<Q>(static_cast<XoInterface*>(inputs[0]));
    outputs[0] = AnyArray::box(quantizeArray(q, AnyArray::unbox(inputs[1])));
    *nout = 1;
  }
};

// The fixed-point type and fimath of a fixed or ufixed quantizer, for its radix text; other
// modes have no stored integers to write.
std::pair<NumericType, fimath> textFormat(const Q& q, Msg notDefined) {
  if (q.getMode() != quantizer::Fixed && q.getMode() != quantizer::Ufixed) raise(notDefined);
  fimath math;
  math.setRoundMode(q.getRoundMode());
  math.setOverflowMode(q.getOverflowMode());
  return {NumericType(q.getMode() == quantizer::Fixed, static_cast<int>(q.getWordlength()),
                      static_cast<int>(q.getFractionlength())),
          math};
}

// Whether a quantizer's values are floating-point patterns for radix text: the double,
// single and float modes with an exponent field.
bool floatText(const Q& q) {
  const auto mode = q.getMode();
  return (mode == quantizer::Double || mode == quantizer::Single || mode == quantizer::Float) &&
         q.getExponentlength() > 0;
}

// num2base(q, x, radix): the values x quantized onto the grid (without logging), as the radix
// text of their stored integers, or of their floating-point patterns. base2num(q, text,
// radix): the values of the text's stored integers or patterns, a column of doubles in the
// order of the text.
template <class Cls, bool ToText>
class QuantizerTextMethod : public XoMethodInfo {
 public:
  QuantizerTextMethod() : XoMethodInfo(ToText ? "num2base" : "base2num") {
    addSignature()
        .addArgType(self_type<Cls>())
        .addArgType(AnyArray::type())
        .addArgType(AnyArray::type())
        .addResultType(AnyArray::type());
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int, void** inputs) override {
    const Q& q = object_of<Q>(static_cast<XoInterface*>(inputs[0]));
    const Msg notDefined =
        ToText ? Msg::QuantizerNum2baseNotDefined : Msg::QuantizerBase2numNotDefined;
    const HostArray& in = AnyArray::unbox(inputs[1]);
    if (floatText(q)) {
      const int radix = radix_argument(AnyArray::unbox(inputs[2]));
      outputs[0] =
          AnyArray::box(ToText ? floatRadixText(q, in, radix) : floatValuesFromText(q, in, radix));
      *nout = 1;
      return;
    }
    const auto [type, math] = textFormat(q, notDefined);
    const int radix = radix_argument(AnyArray::unbox(inputs[2]));
    if constexpr (ToText) {
      outputs[0] = AnyArray::box(fi(in, type, math).radixText(radix));
    } else {
      fi values(fi::radixTextCount(in), 1, type, math, false);
      values.base2num(in, radix);
      outputs[0] = AnyArray::box(values.toHostDouble());
    }
    *nout = 1;
  }
};

template <class Cls>
class QuantizerIsequalMethod : public XoMethodInfo {
 public:
  QuantizerIsequalMethod() : XoMethodInfo("isequal") {
    addSignature()
        .addArgType(self_type<Cls>())
        .addArgType(self_type<Cls>())
        .addResultType(AnyArray::type());
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int, void** inputs) override {
    const Q& a = object_of<Q>(static_cast<XoInterface*>(inputs[0]));
    const Q& b = object_of<Q>(static_cast<XoInterface*>(inputs[1]));
    const bool equal = slopeBias(a) && slopeBias(b) ? slopeBias(a)->isequal(*slopeBias(b))
                                                    : a.quantizer::isequal(b);
    outputs[0] = AnyArray::box(HostArray::make_logical(equal));
    *nout = 1;
  }
};

void resetLog(Q& q) {
  q.initializestates();
}
void display(const Q& q) {
  q.disp();
}

// The properties every quantizer class has, and "mode" and "datamode" for the two that
// add them.
void addModeProperties(XoClass& cls) {
  cls.addProperty(std::make_unique<QuantizerModePropInfo>("mode"));
  cls.addProperty(std::make_unique<QuantizerModePropInfo>("datamode"));
}

// The constructor's first argument, a mode, when there is one.
void applyMode(Q& q, void** args, int nargs) {
  if (nargs >= 1) q.setMode(Mode::unbox(args[0]));
}

// fixed, floor, saturate, [16 15]: the everyday quantizer.
std::unique_ptr<Q> defaultQuantizer() {
  return std::make_unique<Q>(quantizer::Fixed, RoundModeEnum::Floor, OverflowModeEnum::Saturate, 16,
                             15);
}

// ---- The quantization log ---------------------------------------------------------------

using L = qlogger;
double qlogMax(const L& l) {
  return l.getMax().todouble();
}
double qlogMin(const L& l) {
  return l.getMin().todouble();
}
void setQlogMax(L& l, const double& v) {
  l.setMax(number(v));
}
void setQlogMin(L& l, const double& v) {
  l.setMin(number(v));
}

}  // namespace

void ModelessQuantizerXoClass::fill() {
  addConstructorSignature();
  addConstructorSignature().addArgType(realPointType());
  addProperty(std::make_unique<QuantizerRoundModePropInfo>("roundmode"));
  addProperty(std::make_unique<QuantizerOverflowModePropInfo>("overflowmode"));
  addProperty(std::make_unique<QuantizerFormatPropInfo>("format"));
  addProperty(std::make_unique<QuantizerWordlengthPropInfo>("wordlength"));
  addProperty(std::make_unique<QuantizerFractionlengthPropInfo>("fractionlength"));
  addProperty(std::make_unique<DerivedProp<Double, &precisionOf>>("precision"));
  addProperty(std::make_unique<QuantizerExponentlengthPropInfo>("exponentlength"));
  addProperty(std::make_unique<QuantizerMaxPropInfo>("max"));
  addProperty(std::make_unique<QuantizerMinPropInfo>("min"));
  addProperty(std::make_unique<QuantizerMaxPropInfo>("maxlog"));
  addProperty(std::make_unique<QuantizerMinPropInfo>("minlog"));
  addProperty(std::make_unique<QuantizerNoverflowsPropInfo>("noverflows"));
  addProperty(std::make_unique<QuantizerNunderflowsPropInfo>("nunderflows"));
  addProperty(std::make_unique<QuantizerNoperationsPropInfo>("noperations"));
  addProperty(std::make_unique<DerivedProp<Double, &denormalmaxOf>>("denormalmax"));
  addProperty(std::make_unique<DerivedProp<Double, &denormalminOf>>("denormalmin"));
  addProperty(std::make_unique<DerivedProp<Double, &epsOf>>("eps"));
  addProperty(std::make_unique<DerivedProp<Double, &exponentbiasOf>>("exponentbias"));
  addProperty(std::make_unique<DerivedProp<Double, &exponentmaxOf>>("exponentmax"));
  addProperty(std::make_unique<DerivedProp<Double, &exponentminOf>>("exponentmin"));
  addProperty(std::make_unique<DerivedProp<Double, &realmaxOf>>("realmax"));
  addProperty(std::make_unique<DerivedProp<Double, &realminOf>>("realmin"));
  addProperty(std::make_unique<DerivedProp<Int32, &versionOf>>("version"));

  using Self = ModelessQuantizerXoClass;
  addMethod(std::make_unique<ActionMethod<Self, &display>>("disp"));
  addMethod(std::make_unique<ActionMethod<Self, &resetLog>>("initializestates"));
  addMethod(std::make_unique<ActionMethod<Self, &resetLog>>("resetlog"));
  addMethod(std::make_unique<ActionMethod<Self, &resetLog>>("resetlogging"));
  addMethod(std::make_unique<QuantizeMethod<Self>>("quantize"));
  addMethod(std::make_unique<QuantizeMethod<Self>>("quantizenumeric"));
  addMethod(std::make_unique<QuantizerTextMethod<Self, true>>());
  addMethod(std::make_unique<QuantizerTextMethod<Self, false>>());
  addMethod(std::make_unique<QueryMethod<Self, &always_true<Q>>>("isquantizer"));
  addMethod(std::make_unique<QuantizerIsequalMethod<Self>>());
}

std::unique_ptr<loggingquantizer> ModelessQuantizerXoClass::build(void** args, int nargs) {
  auto q = defaultQuantizer();
  if (nargs >= 1) setFormatFromHost(*q, RealPoint::unbox(args[0]));
  return q;
}

loggingquantizer* copy_of(const loggingquantizer& q) {
  if (const slopebiasquantizer* sb = slopeBias(q)) return new slopebiasquantizer(*sb);
  return new loggingquantizer(q);
}

void QuantizerXoClass::fill() {
  setSuperclass(ModelessQuantizerXoClass::getInstance());
  addConstructorSignature();
  addConstructorSignature().addArgType(Mode::type());
  addModeProperties(*this);
}

std::unique_ptr<loggingquantizer> QuantizerXoClass::build(void** args, int nargs) {
  auto q = defaultQuantizer();
  applyMode(*q, args, nargs);
  return q;
}

void SlopeBiasQuantizerXoClass::fill() {
  setSuperclass(ModelessQuantizerXoClass::getInstance());
  addConstructorSignature();
  addConstructorSignature().addArgType(Mode::type());
  addConstructorSignature().addArgType(Mode::type()).addArgType(realPointType());
  addModeProperties(*this);
}

std::unique_ptr<loggingquantizer> SlopeBiasQuantizerXoClass::build(void** args, int nargs) {
  auto q = std::make_unique<slopebiasquantizer>(quantizer::Fixed, RoundModeEnum::Floor,
                                                OverflowModeEnum::Saturate, 16, 15);
  applyMode(*q, args, nargs);
  if (nargs >= 2) setFormatFromHost(*q, RealPoint::unbox(args[1]));
  return q;
}

void QloggerXoClass::fill() {
  addConstructorSignature();
  addProperty(std::make_unique<TableProp<L, Double, &qlogMax, &setQlogMax>>("Max"));
  addProperty(std::make_unique<TableProp<L, Double, &qlogMin, &setQlogMin>>("Min"));
  addProperty(
      std::make_unique<TableProp<L, Int32, &L::getNoverflows, &L::setNoverflows>>("NOverflows"));
  addProperty(
      std::make_unique<TableProp<L, Int32, &L::getNunderflows, &L::setNunderflows>>("NUnderflows"));
  addProperty(
      std::make_unique<TableProp<L, Int32, &L::getNoperations, &L::setNoperations>>("NOperations"));
}

std::unique_ptr<qlogger> QloggerXoClass::build(void**, int) {
  return std::make_unique<qlogger>();
}

}  // namespace corbel
