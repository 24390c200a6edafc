// quantizer: maps a number onto the grid of one data type (signed or unsigned fixed
// point, a custom binary float, double, single, boolean, or scaled double), rounding and
// handling overflow as set, and reporting each value into a qlogger.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "number/number.h"
#include "quantize/qlogger.h"
#include "types/enumerations.h"

namespace corbel {

class NumericType;
class XoEnumStringType;

class quantizer {
 public:
  // Codes are fixed; the host registers the strings in the order of quantizer_modes.def.
  enum ModeEnum : std::int32_t {
#define CORBEL_QUANTIZER_MODE(enumerator, code, text, fi) enumerator = code,
#include "quantize/quantizer_modes.def"
#undef CORBEL_QUANTIZER_MODE
  };

  // A format pair: [word length, fraction length] for fixed modes, [word length,
  // exponent length] for float modes.
  struct RealPoint {
    double first;
    double second;
    bool operator==(const RealPoint&) const = default;
  };

  quantizer(ModeEnum mode, RoundModeEnum roundmode, OverflowModeEnum overflowmode, int first,
            int second);
  quantizer(const quantizer&) = default;
  quantizer& operator=(const quantizer&) = default;
  virtual ~quantizer() = default;

  // Copies the settings of another quantizer (mode, roundings, format).
  virtual void set(const quantizer& other, bool keepLog);
  // Fixed-point settings from a data type: signed or unsigned fixed (or the scaled-double
  // modes) at its word and fraction length.
  virtual void set(const NumericType& type, RoundModeEnum roundmode, OverflowModeEnum overflowmode,
                   bool keepLog);

  // Quantizes x in place through the routine selected for the current settings.
  number& quantize(number& x, const qlogger& log) const {
    return (this->*routine_)(x, log);
  }

  // Quantizes n doubles in place exactly as quantize does on double-backed numbers, for
  // the fixed modes whose bounds are doubles (word lengths up to 52). The hooks are not
  // called, so this serves quantization that keeps no log. Returns false, changing
  // nothing, when the settings don't qualify.
  bool quantizeDoubles(double* x, std::size_t n) const;
  // What the double kernels (double_kernels.cpp) read: the settings, the fraction length
  // and the bounds as doubles.
  struct DoubleBounds {
    RoundModeEnum round;
    OverflowModeEnum overflow;
    bool issigned;
    long f;
    double hi, lo, w;
    template <RoundModeEnum R, OverflowModeEnum O, bool Signed>
    double step(double v) const;
  };
  // The bounds for the current settings; false when they are not fixed-point with double
  // bounds.
  bool doubleBounds(DoubleBounds& bounds) const;
  // Adds the n terms into sum one at a time, quantizing after each addition as quantize
  // would; the same conditions and answer as quantizeDoubles.
  bool accumulateDoubles(double& sum, const double* terms, std::size_t n) const;

  virtual void disp() const;
  // The host types of the modes: all nine ("quantizer Mode"), and the three a fi offers
  // ("fiquantizer Mode"). Registered on first use.
  static XoEnumStringType* getModeEnum();
  static XoEnumStringType* getFiModeEnum();
  // The host string of a mode.
  static std::string_view mode_string(ModeEnum mode);
  virtual bool isequal(const quantizer& other) const;

  // Hooks through which quantization reports; they do nothing here.
  virtual void checkunderflow(const number& x, const qlogger& log) const;
  virtual void checkoverflow(const number& x, const qlogger& log) const;
  virtual void checkScaledDoubleUnderflow(const number& x, const qlogger& log) const;
  // Overflow steps.
  virtual number& saturate(number& x, const qlogger& log) const;
  virtual number& wrap(number& x, const qlogger& log) const;
  virtual number& uwrap(number& x, const qlogger& log) const;
  // Rounding steps at n fraction bits.
  virtual number& ceil(number& x, long n, const qlogger& log) const;
  virtual number& convergent(number& x, long n, const qlogger& log) const;
  virtual number& fix(number& x, long n, const qlogger& log) const;
  virtual number& floor(number& x, long n, const qlogger& log) const;
  virtual number& round(number& x, long n, const qlogger& log) const;
  virtual number& nearest(number& x, long n, const qlogger& log) const;
  virtual void updatestates(const number& x, const qlogger& log) const;

  void setMode(ModeEnum mode);
  void setRoundMode(RoundModeEnum roundmode);
  void setOverflowMode(OverflowModeEnum overflowmode);
  void setFormat(RealPoint format);
  void setWordlength(long wordlength);
  void setFractionlength(long fractionlength);
  void setExponentlength(long exponentlength);

  ModeEnum getMode() const {
    return mode_;
  }
  RoundModeEnum getRoundMode() const {
    return roundmode_;
  }
  OverflowModeEnum getOverflowMode() const {
    return overflowmode_;
  }
  RealPoint getFormat() const {
    return format_;
  }
  long getWordlength() const {
    return wordlength_;
  }
  long getFractionlength() const {
    return fractionlength_;
  }
  unsigned long getPrecision() const {
    return precision_;
  }
  long getExponentlength() const {
    return exponentlength_;
  }
  long getExponentmax() const {
    return exponentmax_;
  }
  long getExponentbias() const {
    return exponentmax_;
  }
  long getExponentmin() const {
    return exponentmin_;
  }
  const number& getDenormalmin() const {
    return denormalmin_;
  }
  number getDenormalmax() const;
  const number& getRealmin() const {
    return realmin_;
  }
  const number& getRealmax() const {
    return realmax_;
  }
  const number& getUpperBound() const {
    return realmax_;
  }
  const number& getLowerBound() const {
    return lowerbound_;
  }
  const number& getMax() const {
    return max_;
  }
  const number& getEps() const {
    return eps_;
  }
  const number& getNegativeEps() const {
    return negativeeps_;
  }
  const number& getWrapAround() const {
    return wraparound_;
  }
  int getVersion() const {
    return version_;
  }
  bool isScaledType() const;
  bool isFloatMode() const;

 protected:
  using Routine = number& (quantizer::*)(number&, const qlogger&) const;

  // Recomputes the grid's constants for the mode and format, then selects the routine.
  void updateparameters();

 private:
  // Widens an overflowing value to the word length before a step stores into it.
  void holdWholeWord(number& x) const;
  // The grid constants of the mode and format: computed, or copied from a quantizer that
  // computed them for the same settings.
  void computeGrid();
  unsigned long fixedPrecision(double w, double f, int extra) const;
  bool reuseGrid();
  void rememberGrid(RealPoint askedFormat);
  void copyGrid(const quantizer& from);
  void signedFixedRule();
  void unsignedFixedRule();
  void floatRule();
  void fixedBounds(double w, double f);
  void updatequantizer();

  number& rounding(number& x, long n, const qlogger& log) const;
  template <RoundModeEnum R>
  number& roundAt(number& x, long n, const qlogger& log) const;
  template <RoundModeEnum R, OverflowModeEnum O, bool Signed>
  number& quantizeFixed(number& x, const qlogger& log) const;
  template <RoundModeEnum R>
  number& quantizeFloat(number& x, const qlogger& log) const;
  number& quantizeDouble(number& x, const qlogger& log) const;
  number& quantizeNone(number& x, const qlogger& log) const;
  number& quantizeScaledDouble(number& x, const qlogger& log) const;
  number& quantizeBoolean(number& x, const qlogger& log) const;
  number& quantizeSingle(number& x, const qlogger& log) const;

  int version_ = 2;
  ModeEnum mode_;
  RoundModeEnum roundmode_;
  OverflowModeEnum overflowmode_;
  RealPoint format_;
  long wordlength_ = 0;
  long fractionlength_ = 0;
  unsigned long precision_ = 52;  // the precision of every bound below
  number max_;                    // largest value saturation keeps
  number lowerbound_;             // smallest value saturation keeps
  number realmax_;
  number negativerealmax_;  // float modes only
  number realmin_;
  number eps_;
  number negativeeps_;
  number wraparound_;  // 2^(integer bits): the wrap modulus of the fixed modes
  long exponentlength_ = 0;
  long exponentmax_ = 0;  // also the exponent bias
  long exponentmin_ = 0;
  number denormalmin_;
  Routine routine_ = nullptr;
};

}  // namespace corbel
