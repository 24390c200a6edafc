// The "fimath" class: its properties, their text twins, and its methods, among them the
// sums, products and differences of two fi computed under the object's settings.
#include "binding/class_objects.h"
#include "binding/table_templates.h"

namespace corbel {
namespace {

using namespace binding;
using F = fimath;
using Cls = FimathXoClass;

template <auto Get, auto Set>
using IntProp = TableProp<F, Int32, Get, Set>;
template <auto Get, auto Set>
using DoubleProp = TableProp<F, Double, Get, Set>;
template <auto Get, auto Set>
using IntText = TextProp<F, Get, Set, int>;
template <auto Get, auto Set>
using DoubleText = TextProp<F, Get, Set, double>;

HostArray cstyleOf(const F& f) {
  return f.getCStyle();
}
void setCStyleFromHost(F& f, const HostArray& v) {
  f.setCStyle(v);
}

using FimathRoundModePropInfo = TableProp<F, Enum<RoundModeEnum>, &F::getRoundMode, &F::setRoundMode>;
using FimathOverflowModePropInfo =
    TableProp<F, Enum<OverflowModeEnum>, &F::getOverflowMode, &F::setOverflowMode>;
using FimathPrecisionModePropInfo =
    TableProp<F, Enum<PrecisionModeEnum>, &F::getPrecisionMode, &F::setPrecisionMode>;
using FimathProductModePropInfo =
    TableProp<F, Enum<ArithmeticModeEnum>, &F::getProductMode, &F::setProductMode>;
using FimathSumModePropInfo = TableProp<F, Enum<ArithmeticModeEnum>, &F::getSumMode, &F::setSumMode>;
using FimathCastBeforeSumPropInfo = TableProp<F, Bool, &F::getCastBeforeSum, &F::setCastBeforeSum>;
using FimathCStylePropInfo = TableProp<F, AnyArray, &cstyleOf, &setCStyleFromHost>;

// (fimath, fi, fi) -> fi: the operation on copies of both operands that carry this
// object's settings.
template <std::unique_ptr<fi> (fi::*Op)(const fi&) const>
class FimathBinaryMethod : public XoMethodInfo {
 public:
  explicit FimathBinaryMethod(std::string name) : XoMethodInfo(std::move(name)) {
    XoDataType* a = self_type<FiXoClass>();
    addSignature().addArgType(self_type<Cls>()).addArgType(a).addArgType(a).addResultType(a);
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int, void** inputs) override {
    const F& math = object_of<F>(static_cast<XoInterface*>(inputs[0]));
    fi a(object_of<fi>(static_cast<XoInterface*>(inputs[1])), fi::WholeCopy);
    fi b(object_of<fi>(static_cast<XoInterface*>(inputs[2])), fi::WholeCopy);
    a.setFimath(math);
    b.setFimath(math);
    std::unique_ptr<fi> result = (a.*Op)(b);
    outputs[0] = XoInterface::create(FiXoClass::getInstance(), result.release());
    *nout = 1;
  }
};
using FimathAddMethodInfo = FimathBinaryMethod<&fi::plus>;
using FimathMpyMethodInfo = FimathBinaryMethod<&fi::times>;
using FimathSubMethodInfo = FimathBinaryMethod<&fi::minus>;

// isequal(F, G): a logical scalar.
class FimathIsequalMethodInfo : public XoMethodInfo {
 public:
  FimathIsequalMethodInfo() : XoMethodInfo("isequal") {
    addSignature().addArgType(self_type<Cls>()).addArgType(self_type<Cls>()).addResultType(
        AnyArray::type());
  }
  void invokeMethod(XoMethodSignature*, int* nout, void** outputs, int, void** inputs) override {
    const F& a = object_of<F>(static_cast<XoInterface*>(inputs[0]));
    const F& b = object_of<F>(static_cast<XoInterface*>(inputs[1]));
    outputs[0] = AnyArray::box(HostArray::make_logical(a.isequal(b)));
    *nout = 1;
  }
};

}  // namespace

void FimathXoClass::fill() {
  addConstructorSignature();
  addProperty(std::make_unique<FimathRoundModePropInfo>("RoundMode"));
  addProperty(std::make_unique<FimathOverflowModePropInfo>("OverflowMode"));
  addProperty(std::make_unique<FimathPrecisionModePropInfo>("PrecisionMode"));
  addProperty(std::make_unique<FimathProductModePropInfo>("ProductMode"));
  addProperty(std::make_unique<IntProp<&F::getProductWordLength, &F::setProductWordLength>>(
      "ProductWordLength"));
  addProperty(std::make_unique<IntProp<&F::getMaxProductWordLength, &F::setMaxProductWordLength>>(
      "MaxProductWordLength"));
  addProperty(std::make_unique<IntProp<&F::getProductFractionLength, &F::setProductFractionLength>>(
      "ProductFractionLength"));
  addProperty(std::make_unique<IntProp<&F::getProductFixedExponent, &F::setProductFixedExponent>>(
      "ProductFixedExponent"));
  addProperty(std::make_unique<DoubleProp<&F::getProductSlope, &F::setProductSlope>>("ProductSlope"));
  addProperty(std::make_unique<DoubleProp<&F::getProductSlopeAdjustmentFactor,
                                          &F::setProductSlopeAdjustmentFactor>>(
      "ProductSlopeAdjustmentFactor"));
  addProperty(std::make_unique<DoubleProp<&F::getProductBias, &F::setProductBias>>("ProductBias"));
  addProperty(std::make_unique<FimathSumModePropInfo>("SumMode"));
  addProperty(std::make_unique<IntProp<&F::getSumWordLength, &F::setSumWordLength>>("SumWordLength"));
  addProperty(std::make_unique<IntProp<&F::getMaxSumWordLength, &F::setMaxSumWordLength>>(
      "MaxSumWordLength"));
  addProperty(std::make_unique<IntProp<&F::getSumFractionLength, &F::setSumFractionLength>>(
      "SumFractionLength"));
  addProperty(std::make_unique<IntProp<&F::getSumFixedExponent, &F::setSumFixedExponent>>(
      "SumFixedExponent"));
  addProperty(std::make_unique<DoubleProp<&F::getSumSlope, &F::setSumSlope>>("SumSlope"));
  addProperty(std::make_unique<
              DoubleProp<&F::getSumSlopeAdjustmentFactor, &F::setSumSlopeAdjustmentFactor>>(
      "SumSlopeAdjustmentFactor"));
  addProperty(std::make_unique<DoubleProp<&F::getSumBias, &F::setSumBias>>("SumBias"));
  addProperty(std::make_unique<FimathCastBeforeSumPropInfo>("CastBeforeSum"));

  addProperty(std::make_unique<IntText<&F::getProductWordLengthString, &F::setProductWordLength>>(
      "ProductWordLengthString"));
  addProperty(
      std::make_unique<IntText<&F::getMaxProductWordLengthString, &F::setMaxProductWordLength>>(
          "MaxProductWordLengthString"));
  addProperty(
      std::make_unique<IntText<&F::getProductFractionLengthString, &F::setProductFractionLength>>(
          "ProductFractionLengthString"));
  addProperty(
      std::make_unique<IntText<&F::getProductFixedExponentString, &F::setProductFixedExponent>>(
          "ProductFixedExponentString"));
  addProperty(std::make_unique<DoubleText<&F::getProductSlopeString, &F::setProductSlope>>(
      "ProductSlopeString"));
  addProperty(std::make_unique<DoubleText<&F::getProductSlopeAdjustmentFactorString,
                                          &F::setProductSlopeAdjustmentFactor>>(
      "ProductSlopeAdjustmentFactorString"));
  addProperty(std::make_unique<DoubleText<&F::getProductBiasString, &F::setProductBias>>(
      "ProductBiasString"));
  addProperty(std::make_unique<IntText<&F::getSumWordLengthString, &F::setSumWordLength>>(
      "SumWordLengthString"));
  addProperty(std::make_unique<IntText<&F::getMaxSumWordLengthString, &F::setMaxSumWordLength>>(
      "MaxSumWordLengthString"));
  addProperty(std::make_unique<IntText<&F::getSumFractionLengthString, &F::setSumFractionLength>>(
      "SumFractionLengthString"));
  addProperty(std::make_unique<IntText<&F::getSumFixedExponentString, &F::setSumFixedExponent>>(
      "SumFixedExponentString"));
  addProperty(
      std::make_unique<DoubleText<&F::getSumSlopeString, &F::setSumSlope>>("SumSlopeString"));
  addProperty(std::make_unique<DoubleText<&F::getSumSlopeAdjustmentFactorString,
                                          &F::setSumSlopeAdjustmentFactor>>(
      "SumSlopeAdjustmentFactorString"));
  addProperty(std::make_unique<DoubleText<&F::getSumBiasString, &F::setSumBias>>("SumBiasString"));
  addProperty(std::make_unique<FimathCStylePropInfo>("CStyle"));

  addMethod(std::make_unique<ActionMethod<Cls, &F::disp>>("disp"));
  addMethod(std::make_unique<FimathIsequalMethodInfo>());
  addMethod(std::make_unique<QueryMethod<Cls, &always_true<F>>>("isfimath"));
  addMethod(make_set_method<Cls>("FIMATH"));
}

void FimathXoClass::init_fi_methods() {
  addMethod(std::make_unique<FimathAddMethodInfo>("add"));
  addMethod(std::make_unique<FimathMpyMethodInfo>("mpy"));
  addMethod(std::make_unique<FimathSubMethodInfo>("sub"));
}

std::unique_ptr<fimath> FimathXoClass::build(void**, int) {
  return std::make_unique<fimath>();
}

}  // namespace corbel
