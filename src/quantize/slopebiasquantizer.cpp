// slopebiasquantizer: slope-bias conversion around the base quantization.
#include "quantize/slopebiasquantizer.h"

#include "types/numeric_type.h"

namespace corbel {

slopebiasquantizer::slopebiasquantizer(bool issigned, int wordlength, double slopeAdjustmentFactor,
                                       int fixedExponent, double bias, RoundModeEnum roundmode,
                                       OverflowModeEnum overflowmode)
    : loggingquantizer(issigned ? Fixed : Ufixed, roundmode, overflowmode, wordlength,
                       -fixedExponent),
      factor_(slopeAdjustmentFactor),
      inverse_(1.0 / slopeAdjustmentFactor),
      bias_(bias) {}

slopebiasquantizer::slopebiasquantizer(ModeEnum mode, RoundModeEnum roundmode,
                                       OverflowModeEnum overflowmode, int first, int second)
    : loggingquantizer(mode, roundmode, overflowmode, first, second) {}

void slopebiasquantizer::set(const NumericType& type, RoundModeEnum roundmode,
                             OverflowModeEnum overflowmode, bool keepLog) {
  loggingquantizer::set(type, roundmode, overflowmode, keepLog);
  setSlopeAdjustmentFactor(type.getSlopeAdjustmentFactor());
  setBias(type.getBias());
}

void slopebiasquantizer::set(const loggingquantizer& other, bool keepLog) {
  quantizer::set(other, keepLog);
  if (!keepLog) log_.set(other.getQLog());
}

void slopebiasquantizer::set(const slopebiasquantizer& other, bool keepLog) {
  set(static_cast<const loggingquantizer&>(other), keepLog);
  factor_ = other.factor_;
  inverse_ = other.inverse_;
  bias_ = other.bias_;
}

bool slopebiasquantizer::setSlopeAdjustmentFactor(double factor) {
  if (factor == factor_) return false;
  factor_ = factor;
  inverse_ = 1.0 / factor;
  return true;
}

bool slopebiasquantizer::setBias(double bias) {
  if (bias == bias_) return false;
  bias_ = bias;
  return true;
}

void slopebiasquantizer::convertNumberToBinaryPoint(number& x) const {
  if (!isSlopeBiasScaled()) return;
  x -= number(bias_);
  x *= number(inverse_);
}

void slopebiasquantizer::convertNumberToSlopeBias(number& x) const {
  if (!isSlopeBiasScaled()) return;
  x *= number(factor_);
  x += number(bias_);
}

number& slopebiasquantizer::quantize(number& x) const {
  if (!isSlopeBiasScaled()) return loggingquantizer::quantize(x);
  x -= number(bias_);
  x *= number(inverse_);
  loggingquantizer::quantize(x);
  x *= number(factor_);
  x += number(bias_);
  return x;
}

number slopebiasquantizer::scaled(const number& x) const {
  number r(x);
  r *= number(factor_);
  r += number(bias_);
  return r;
}

bool slopebiasquantizer::isequal(const slopebiasquantizer& other) const {
  return quantizer::isequal(other) && factor_ == other.factor_ && bias_ == other.bias_;
}

}  // namespace corbel
