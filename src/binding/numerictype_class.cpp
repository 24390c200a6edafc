// The "numerictype" class: its properties, their text twins, and its methods.
#include "binding/class_objects.h"
#include "binding/table_templates.h"

namespace corbel {
namespace {

using namespace binding;
using T = NumericType;
using Cls = NumericTypeXoClass;

template <auto Get, auto Set = nullptr>
using Prop = TableProp<T, Int32, Get, Set>;
template <auto Get, auto Set>
using DoubleProp = TableProp<T, Double, Get, Set>;

void setDataTypeModeFromHost(T& t, DataTypeModeEnum mode) {
  t.setDataTypeMode(mode, true);
}
void setFractionLengthFromText(T& t, int v) {
  t.setFixedExponent(-v);
}
// The host object's path: the class's name in its package.
std::string pathOf(const T&) {
  return T::getNorvakPackageClassName();
}
HostArray tostringOf(const T& t) {
  return HostArray::make_text(t.tostring("numerictype"));
}

using NumericTypeDataTypeModePropInfo =
    TableProp<T, Enum<DataTypeModeEnum>, &T::getDataTypeMode, &setDataTypeModeFromHost>;
using NumericTypeDataTypePropInfo =
    TableProp<T, Enum<DataTypeEnum>, &T::getDataType, &T::setDataType>;
using NumericTypeScalingPropInfo = TableProp<T, Enum<ScalingEnum>, &T::getScaling, &T::setScaling>;
using NumericTypeSignedPropInfo = TableProp<T, Bool, &T::getSigned, &T::setSigned>;
using NumericTypeWordLengthPropInfo = Prop<&T::getWordLength, &T::setWordLength>;
using NumericTypeFractionLengthPropInfo = Prop<&T::getFractionLength, &T::setFractionLength>;
using NumericTypeBinaryPointPropInfo = Prop<&T::getFractionLength, &T::setFractionLength>;
using NumericTypeFixedExponentPropInfo = Prop<&T::getFixedExponent, &T::setFixedExponent>;
using NumericTypeSlopePropInfo = DoubleProp<&T::getSlope, &T::setSlope>;
using NumericTypeSlopeAdjustmentFactorPropInfo =
    DoubleProp<&T::getSlopeAdjustmentFactor, &T::setSlopeAdjustmentFactor>;
using NumericTypeBiasPropInfo = DoubleProp<&T::getBias, &T::setBias>;
using NumericTypePathNamePI = TableProp<T, String, &pathOf>;
using NumericTypeWordLengthStringPropInfo =
    TextProp<T, &T::getWordLengthString, &T::setWordLength, int>;
using NumericTypeFractionLengthStringPropInfo =
    TextProp<T, &T::getFractionLengthString, &setFractionLengthFromText, int>;
using NumericTypeSlopeStringPropInfo = TextProp<T, &T::getSlopeString, &T::setSlope, double>;
using NumericTypeBiasStringPropInfo = TextProp<T, &T::getBiasString, &T::setBias, double>;

using NumericTypeDispMethodInfo = ActionMethod<Cls, &T::disp>;
using NumericTypeTostringMethodInfo = QueryMethod<Cls, &tostringOf>;
using NumericTypeIsnumerictypeMethodInfo = QueryMethod<Cls, &always_true<T>>;
template <bool (T::*Pred)() const>
using Predicate = QueryMethod<Cls, &logical_of<Pred, T>>;

// An operand of divide as a fi: the fi it refers to, or a fi holding a built-in value exactly
// (floating and logical values in a double fi, integers in their own integer type).
const fi& divideOperand(const HostArray& x, std::unique_ptr<fi>& made) {
  if (XoInterface* object = x.object(); object && object->getClass() == FiXoClass::getInstance())
    return object_of<fi>(object);
  NumericType type(DataTypeModeEnum::Double, true, 64, 1.0, 0, 0.0);
  const HostClass c = x.element_class();
  if (c != HostClass::Double && c != HostClass::Single && c != HostClass::Logical)
    type.setBestPrecision(x);
  made = std::make_unique<fi>(x, type, fimath());
  return *made;
}

// divide(T, a, b): the quotient a ./ b in type T, with the fimath of the first fi operand.
// Two built-in operands need a double dividend.
class NumericTypeDivideMethodInfo : public XoMethodInfo {
 public:
  NumericTypeDivideMethodInfo() : XoMethodInfo("divide") {
    addSignature()
        .addArgType(self_type<Cls>())
        .addArgType(AnyArray::type())
        .addArgType(AnyArray::type())
        .addResultType(AnyArray::type());
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int, void** inputs) override {
    const T& type = object_of<T>(static_cast<XoInterface*>(inputs[0]));
    const HostArray& a = AnyArray::unbox(inputs[1]);
    const HostArray& b = AnyArray::unbox(inputs[2]);
    if (!a.object() && !b.object() && a.element_class() != HostClass::Double)
      raise(Msg::DivideNonDouble);
    std::unique_ptr<fi> madeA, madeB;
    const fi& x = divideOperand(a, madeA);
    const fi& y = divideOperand(b, madeB);
    // A built-in dividend divides with the divisor's fimath.
    std::unique_ptr<fi> q;
    if (madeA && !madeB) {
      const fi dividend(a, x.getNumericType(), y.getFimath());
      q = dividend.over(y, type);
    } else {
      q = x.over(y, type);
    }
    XoInterface* instance = XoInterface::create(FiXoClass::getInstance(), q.release());
    HostArray result = HostArray::make_object(instance);
    instance->release();  // the array holds its own reference
    outputs[0] = AnyArray::box(std::move(result));
    *nout = 1;
  }
};

}  // namespace

void NumericTypeXoClass::fill() {
  addConstructorSignature();
  addProperty(std::make_unique<NumericTypeDataTypeModePropInfo>("DataTypeMode"));
  addProperty(std::make_unique<NumericTypeDataTypePropInfo>("DataType"));
  addProperty(std::make_unique<NumericTypeScalingPropInfo>("Scaling"));
  addProperty(std::make_unique<NumericTypeSignedPropInfo>("Signed"));
  addProperty(std::make_unique<NumericTypeWordLengthPropInfo>("WordLength"));
  addProperty(std::make_unique<NumericTypeFractionLengthPropInfo>("FractionLength"));
  addProperty(std::make_unique<NumericTypeBinaryPointPropInfo>("BinaryPoint"));
  addProperty(std::make_unique<NumericTypeFixedExponentPropInfo>("FixedExponent"));
  addProperty(std::make_unique<NumericTypeSlopePropInfo>("Slope"));
  addProperty(std::make_unique<NumericTypeSlopeAdjustmentFactorPropInfo>("SlopeAdjustmentFactor"));
  addProperty(std::make_unique<NumericTypeBiasPropInfo>("Bias"));
  addProperty(std::make_unique<NumericTypePathNamePI>("Path"));
  addProperty(std::make_unique<NumericTypeWordLengthStringPropInfo>("WordLengthString"));
  addProperty(std::make_unique<NumericTypeFractionLengthStringPropInfo>("FractionLengthString"));
  addProperty(std::make_unique<NumericTypeSlopeStringPropInfo>("SlopeString"));
  addProperty(std::make_unique<NumericTypeBiasStringPropInfo>("BiasString"));

  addMethod(std::make_unique<NumericTypeDispMethodInfo>("disp"));
  addMethod(std::make_unique<NumericTypeTostringMethodInfo>("tostring"));
  addMethod(std::make_unique<NumericTypeIsnumerictypeMethodInfo>("isnumerictype"));
  addMethod(std::make_unique<Predicate<&T::isBinaryPointScalingSet>>("isbinarypointscalingset"));
  addMethod(std::make_unique<Predicate<&T::isSlopeBiasScalingSet>>("isslopebiasscalingset"));
  addMethod(std::make_unique<Predicate<&T::isSlopeBiasScaled>>("isslopebiasscaled"));
  addMethod(std::make_unique<Predicate<&T::isFixed>>("isfixed"));
  addMethod(std::make_unique<Predicate<&T::isScaledType>>("isscaledtype"));
  addMethod(std::make_unique<Predicate<&T::isScaledDouble>>("isscaleddouble"));
  addMethod(std::make_unique<Predicate<&T::isFloat>>("isfloat"));
  addMethod(std::make_unique<Predicate<&T::isDouble>>("isdouble"));
  addMethod(std::make_unique<Predicate<&T::isSingle>>("issingle"));
  addMethod(std::make_unique<Predicate<&T::isBoolean>>("isboolean"));
  addMethod(make_set_method<Cls>("NUMERICTYPE"));
}

void NumericTypeXoClass::init_fi_methods() {
  addMethod(std::make_unique<NumericTypeDivideMethodInfo>());
}

std::unique_ptr<NumericType> NumericTypeXoClass::build(void**, int) {
  return std::make_unique<NumericType>();
}

}  // namespace corbel
