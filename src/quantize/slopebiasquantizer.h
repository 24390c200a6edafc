// slopebiasquantizer: a logging quantizer for slope-bias scaled types. Values move from
// real-world scale to binary-point scale for quantization and back afterwards.
#pragma once

#include "quantize/loggingquantizer.h"

namespace corbel {

// Invariant: inverse_ == 1 / factor_. The bounds it reports are the base quantizer's
// bounds times the factor plus the bias, eps included.
class slopebiasquantizer : public loggingquantizer {
 public:
  // Mode "fixed" when signed and "ufixed" otherwise, format [word length, -fixed exponent].
  slopebiasquantizer(bool issigned, int wordlength, double slopeAdjustmentFactor, int fixedExponent,
                     double bias, RoundModeEnum roundmode, OverflowModeEnum overflowmode);
  // Any mode with its format pair; factor 1 and bias 0.
  slopebiasquantizer(ModeEnum mode, RoundModeEnum roundmode, OverflowModeEnum overflowmode,
                     int first = 16, int second = 15);

  void set(const NumericType& type, RoundModeEnum roundmode, OverflowModeEnum overflowmode,
           bool keepLog) override;
  void set(const loggingquantizer& other, bool keepLog);
  void set(const slopebiasquantizer& other, bool keepLog);

  // Each answers whether it changed anything.
  bool setSlopeAdjustmentFactor(double factor);
  bool setBias(double bias);
  double getSlopeAdjustmentFactor() const { return factor_; }
  double getInverseSlopeAdjustmentFactor() const { return inverse_; }
  double getBias() const { return bias_; }
  bool isSlopeBiasScaled() const { return !(factor_ == 1.0 && bias_ == 0.0); }

  // x = (x - bias) / factor, and back: x = x * factor + bias (no-ops when unscaled).
  void convertNumberToBinaryPoint(number& x) const;
  void convertNumberToSlopeBias(number& x) const;

  number& quantize(number& x) const;

  number getEps() const { return scaled(loggingquantizer::getEps()); }
  number getNegativeEps() const { return scaled(loggingquantizer::getNegativeEps()); }
  number getRealmin() const { return scaled(loggingquantizer::getRealmin()); }
  number getRealmax() const { return scaled(loggingquantizer::getRealmax()); }
  number getUpperBound() const { return scaled(loggingquantizer::getUpperBound()); }
  number getLowerBound() const { return scaled(loggingquantizer::getLowerBound()); }

  bool isequal(const slopebiasquantizer& other) const;
  bool isequal(const loggingquantizer& other) const { return quantizer::isequal(other); }

 private:
  number scaled(const number& x) const;

  double factor_ = 1.0;
  double inverse_ = 1.0;
  double bias_ = 0.0;
};

}  // namespace corbel
