// quantizer: grid constants per mode and format, routine selection, and the routines.
#include "quantize/quantizer.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "host/messages.h"
#include "host/services.h"
#include "types/embedded.h"
#include "types/numeric_type.h"

namespace corbel {
namespace {

// Fraction lengths are kept in a long and used as powers of two: the format's second number
// must be finite and below 2^31 in magnitude.
constexpr double kFractionLengthLimit = 2147483648.0;

// 2^e at the given precision; exact for every e in the multiprecision exponent range.
number power_of_two(long e, unsigned long precision, bool force) {
  number x(1.0, precision, force);
  return x.pow2(e);
}

}  // namespace

quantizer::quantizer(ModeEnum mode, RoundModeEnum roundmode, OverflowModeEnum overflowmode,
                     int first, int second)
    : mode_(mode),
      roundmode_(roundmode),
      overflowmode_(overflowmode),
      format_{static_cast<double>(first), static_cast<double>(second)} {
  updateparameters();
}

void quantizer::set(const quantizer& other, bool /*keepLog*/) {
  // Only the settings: the grid's constants follow from them.
  mode_ = other.mode_;
  roundmode_ = other.roundmode_;
  overflowmode_ = other.overflowmode_;
  format_ = other.format_;
  updateparameters();
}

void quantizer::set(const NumericType& type, RoundModeEnum roundmode, OverflowModeEnum overflowmode,
                    bool /*keepLog*/) {
  ModeEnum mode = Double;
  if (type.isFixed())
    mode = type.getSigned() ? Fixed : Ufixed;
  else if (type.isScaledDouble())
    mode = type.getSigned() ? ScaledDouble : UnsignedScaledDouble;
  else if (type.isSingle())
    mode = Single;
  else if (type.isBoolean())
    mode = Boolean;
  // Work on a copy so that a refused format leaves this quantizer as it was.
  quantizer next(*this);
  next.mode_ = mode;
  next.roundmode_ = roundmode;
  next.overflowmode_ = overflowmode;
  next.format_ = {static_cast<double>(type.getWordLength()),
                  static_cast<double>(type.getFractionLength())};
  next.updateparameters();
  *this = next;
}

// --- Settings ----------------------------------------------------------------------------

void quantizer::setMode(ModeEnum mode) {
  if (mode == Float && mode_ != Float) {
    if (format_.second > 31) raise(Msg::QuantizerExponentTooBig);
    if (!(format_.second >= 0)) raise(Msg::QuantizerExponentTooSmall);
  }
  const ModeEnum previous = mode_;
  mode_ = mode;
  try {
    updateparameters();
  } catch (...) {
    mode_ = previous;
    updateparameters();
    throw;
  }
}

void quantizer::setRoundMode(RoundModeEnum roundmode) {
  roundmode_ = roundmode;
  updateparameters();
}

void quantizer::setOverflowMode(OverflowModeEnum overflowmode) {
  overflowmode_ = overflowmode;
  updateparameters();
}

void quantizer::setFormat(RealPoint format) {
  const RealPoint previous = format_;
  format_ = format;
  try {
    updateparameters();
  } catch (...) {
    format_ = previous;
    updateparameters();
    throw;
  }
}

void quantizer::setWordlength(long wordlength) {
  if (wordlength >= 65536) raise(Msg::QuantizerWordLengthTooBig);
  if (wordlength < 1) raise(Msg::QuantizerWordLengthTooSmall);
  if (isFloatMode() && wordlength <= exponentlength_)
    raise(Msg::QuantizerWordLengthLargerThanExponent);
  setFormat({static_cast<double>(wordlength), format_.second});
}

void quantizer::setFractionlength(long fractionlength) {
  setFormat({format_.first, static_cast<double>(fractionlength)});
}

void quantizer::setExponentlength(long exponentlength) {
  if (exponentlength > 31) raise(Msg::QuantizerExponentTooBig);
  if (exponentlength < 0) raise(Msg::QuantizerExponentTooSmall);
  if (wordlength_ <= exponentlength) raise(Msg::QuantizerExponentLargerThanWordLength);
  setFormat({format_.first, static_cast<double>(exponentlength)});
}

bool quantizer::isScaledType() const {
  return mode_ == Fixed || mode_ == Ufixed || mode_ == ScaledDouble ||
         mode_ == UnsignedScaledDouble;
}

bool quantizer::isFloatMode() const {
  return mode_ == Double || mode_ == Float || mode_ == Single || mode_ == None;
}

number quantizer::getDenormalmax() const {
  if (isFloatMode()) return realmin_ - denormalmin_;
  return eps_;
}

bool quantizer::isequal(const quantizer& other) const {
  return mode_ == other.mode_ && roundmode_ == other.roundmode_ &&
         overflowmode_ == other.overflowmode_ && wordlength_ == other.wordlength_ &&
         fractionlength_ == other.fractionlength_;
}

// --- Grid constants ----------------------------------------------------------------------

// The grid constants follow from the mode and the format alone, and building them takes
// far longer than copying them; every fi builds two quantizers, so the grids of the last
// few settings are kept and copied. The cache lives until the process ends (it is never
// destroyed, so that no number outlives the number pools at exit).
namespace {
struct RememberedGrid {
  quantizer::ModeEnum mode;
  quantizer::RealPoint format;
  const quantizer* grid = nullptr;
};
constexpr std::size_t kRememberedGrids = 16;
RememberedGrid* rememberedGrids() {
  static RememberedGrid* const grids = [] {
    auto* made = new RememberedGrid[kRememberedGrids];
#ifdef CORBEL_NO_POOL
    // Without the pools nothing needs to outlive them, so the grids go at exit: leak
    // checkers cannot follow the boxed handle of a multiprecision number.
    std::atexit([] {
      for (std::size_t i = 0; i < kRememberedGrids; ++i) delete rememberedGrids()[i].grid;
      delete[] rememberedGrids();
    });
#endif
    return made;
  }();
  return grids;
}
std::size_t nextGridSlot = 0;
}  // namespace

bool quantizer::reuseGrid() {
  const RememberedGrid* grids = rememberedGrids();
  for (std::size_t i = 0; i < kRememberedGrids; ++i) {
    if (grids[i].grid != nullptr && grids[i].mode == mode_ && grids[i].format == format_) {
      copyGrid(*grids[i].grid);
      return true;
    }
  }
  return false;
}

void quantizer::rememberGrid(RealPoint format) {
  RememberedGrid& slot = rememberedGrids()[nextGridSlot];
  nextGridSlot = (nextGridSlot + 1) % kRememberedGrids;
  auto* grid = new quantizer(*this);
  delete slot.grid;
  slot = {mode_, format, grid};
}

void quantizer::copyGrid(const quantizer& from) {
  format_ = from.format_;
  wordlength_ = from.wordlength_;
  fractionlength_ = from.fractionlength_;
  precision_ = from.precision_;
  max_ = from.max_;
  lowerbound_ = from.lowerbound_;
  realmax_ = from.realmax_;
  negativerealmax_ = from.negativerealmax_;
  realmin_ = from.realmin_;
  eps_ = from.eps_;
  negativeeps_ = from.negativeeps_;
  wraparound_ = from.wraparound_;
  exponentlength_ = from.exponentlength_;
  exponentmax_ = from.exponentmax_;
  exponentmin_ = from.exponentmin_;
  denormalmin_ = from.denormalmin_;
}

void quantizer::updateparameters() {
  if (!reuseGrid()) {
    const RealPoint asked = format_;
    computeGrid();
    rememberGrid(asked);
  }
  updatequantizer();
}

void quantizer::computeGrid() {
  switch (mode_) {
    case Double:
    case None:
      format_ = {64, 11};
      floatRule();
      break;
    case Float:
      floatRule();
      break;
    case Single:
      format_ = {32, 8};
      floatRule();
      break;
    case Fixed:
    case ScaledDouble:
      signedFixedRule();
      break;
    case Ufixed:
    case UnsignedScaledDouble:
      unsignedFixedRule();
      break;
    case Boolean:
      format_ = {1, 0};
      unsignedFixedRule();
      break;
  }
}

void quantizer::fixedBounds(double w, double f) {
  if (w > 65535) raise(Msg::QuantizerWordLengthTooBig);
  if (!(w > 0)) raise(Msg::QuantizerWordLengthTooSmall);  // NaN too
  if (!(std::abs(f) < kFractionLengthLimit)) raise(Msg::QuantizerFractionLengthBad);
  wordlength_ = static_cast<long>(w);
  fractionlength_ = static_cast<long>(f);
  exponentlength_ = exponentmax_ = exponentmin_ = 0;
  eps_ = power_of_two(-fractionlength_, precision_, false);
  realmin_ = denormalmin_ = eps_;
  negativeeps_ = -eps_;
}

// The precision of a fixed-point format's bounds: the word's bits (one more for an unsigned
// word, whose wraparound needs it), or a multiprecision one when the grid lies beyond a
// double's exponent range. A format the bounds refuse keeps the previous precision.
unsigned long quantizer::fixedPrecision(double w, double f, int extra) const {
  if (!(w > 0 && w <= 65535 && std::abs(f) < kFractionLengthLimit)) return precision_;
  return number::gridPrecision(static_cast<unsigned long>(w) + static_cast<unsigned long>(extra),
                               -static_cast<long>(f));
}

void quantizer::signedFixedRule() {
  const double w = format_.first;
  precision_ = fixedPrecision(w, format_.second, 0);
  fixedBounds(w, format_.second);
  const long integerBits = wordlength_ - fractionlength_ - 1;
  max_ = power_of_two(integerBits, precision_, false) - eps_;
  realmax_ = max_;
  lowerbound_ = -power_of_two(integerBits, precision_, false);
  wraparound_ = power_of_two(integerBits + 1, precision_, false);
}

void quantizer::unsignedFixedRule() {
  const double w = format_.first;
  precision_ = fixedPrecision(w, format_.second, 1);
  fixedBounds(w, format_.second);
  const long integerBits = wordlength_ - fractionlength_;
  max_ = power_of_two(integerBits, precision_, false) - eps_;
  realmax_ = max_;
  lowerbound_ = number(0.0, precision_, false);
  wraparound_ = power_of_two(integerBits, precision_, false);
}

void quantizer::floatRule() {
  const double w = format_.first, e = format_.second;
  if (w > 65535) raise(Msg::QuantizerWordLengthTooBig);
  if (!(w > 0)) raise(Msg::QuantizerWordLengthTooSmall);  // NaN too
  if (e > 31) raise(Msg::QuantizerExponentTooBig);
  if (!(e >= 0)) raise(Msg::QuantizerExponentTooSmall);
  format_ = {std::trunc(w), std::trunc(e)};
  wordlength_ = static_cast<long>(w);
  exponentlength_ = static_cast<long>(e);
  fractionlength_ = wordlength_ - exponentlength_ - 1;
  precision_ = static_cast<unsigned long>(fractionlength_ > 0 ? fractionlength_ : 0);
  // A float wider than a double in either field computes in multiprecision.
  const bool force = exponentlength_ > 11 || fractionlength_ > 52;
  exponentmax_ = (1L << (exponentlength_ > 0 ? exponentlength_ - 1 : 0)) - 1;
  exponentmin_ = 1 - exponentmax_;
  denormalmin_ = power_of_two(exponentmin_ - fractionlength_, precision_, force);
  eps_ = power_of_two(-fractionlength_, precision_, force);
  negativeeps_ = -eps_;
  // (2 - eps) * 2^exponentmax. The difference is formed below 2 and then scaled, so that
  // the largest double of a 64-bit format is not built from 2^1024, which a double lacks.
  max_ = power_of_two(1, precision_, force) - power_of_two(-fractionlength_, precision_, force);
  max_.pow2(exponentmax_);
  lowerbound_ = -max_;
  realmin_ = power_of_two(exponentmin_, precision_, force);
  realmax_ = max_;
  negativerealmax_ = -realmax_;
}

// --- Routine selection -------------------------------------------------------------------

void quantizer::updatequantizer() {
  using RoutineRow = Routine[2];
  static constexpr RoutineRow kSigned[] = {
#define CORBEL_FIXED_ROW(R, S)                                                 \
  {&quantizer::quantizeFixed<RoundModeEnum::R, OverflowModeEnum::Saturate, S>, \
   &quantizer::quantizeFixed<RoundModeEnum::R, OverflowModeEnum::Wrap, S>}
      CORBEL_FIXED_ROW(Ceil, true),    CORBEL_FIXED_ROW(Convergent, true),
      CORBEL_FIXED_ROW(Fix, true),     CORBEL_FIXED_ROW(Floor, true),
      CORBEL_FIXED_ROW(Nearest, true), CORBEL_FIXED_ROW(Round, true),
  };
  static constexpr RoutineRow kUnsigned[] = {
      CORBEL_FIXED_ROW(Ceil, false),    CORBEL_FIXED_ROW(Convergent, false),
      CORBEL_FIXED_ROW(Fix, false),     CORBEL_FIXED_ROW(Floor, false),
      CORBEL_FIXED_ROW(Nearest, false), CORBEL_FIXED_ROW(Round, false),
#undef CORBEL_FIXED_ROW
  };
  static constexpr Routine kFloat[] = {
      &quantizer::quantizeFloat<RoundModeEnum::Ceil>,
      &quantizer::quantizeFloat<RoundModeEnum::Convergent>,
      &quantizer::quantizeFloat<RoundModeEnum::Fix>,
      &quantizer::quantizeFloat<RoundModeEnum::Floor>,
      &quantizer::quantizeFloat<RoundModeEnum::Nearest>,
      &quantizer::quantizeFloat<RoundModeEnum::Round>,
  };
  const auto r = static_cast<int>(roundmode_);
  const auto o = static_cast<int>(overflowmode_);
  switch (mode_) {
    case Double:
      routine_ = &quantizer::quantizeDouble;
      break;
    case Float:
      routine_ = kFloat[r];
      break;
    // Single always rounds with the "round" rule, whatever the round mode says.
    case Single:
      routine_ = &quantizer::quantizeFloat<RoundModeEnum::Round>;
      break;
    case Fixed:
      routine_ = kSigned[r][o];
      break;
    case Ufixed:
      routine_ = kUnsigned[r][o];
      break;
    case None:
      routine_ = &quantizer::quantizeNone;
      break;
    case Boolean:
      routine_ = &quantizer::quantizeBoolean;
      break;
    case ScaledDouble:
    case UnsignedScaledDouble:
      routine_ = &quantizer::quantizeScaledDouble;
      break;
  }
}

// --- Steps -------------------------------------------------------------------------------

void quantizer::checkunderflow(const number&, const qlogger&) const {}
void quantizer::checkoverflow(const number&, const qlogger&) const {}
void quantizer::checkScaledDoubleUnderflow(const number&, const qlogger&) const {}
void quantizer::updatestates(const number&, const qlogger&) const {}

// A value that overflows may be held at fewer bits than the word has (a narrow sum stored
// into a wide register): before a bound or a wrapped value is stored, it is widened to the
// word length, which holds every value of the type, and never narrowed.
void quantizer::holdWholeWord(number& x) const {
  if (x.getprecision() < static_cast<unsigned long>(wordlength_))
    x.setprecision(static_cast<unsigned long>(wordlength_), false);
}

number& quantizer::saturate(number& x, const qlogger&) const {
  if (x > max_) {
    holdWholeWord(x);
    x.setvalue(max_);
  } else if (x < lowerbound_) {
    holdWholeWord(x);
    x.setvalue(lowerbound_);
  }
  return x;
}

number& quantizer::wrap(number& x, const qlogger&) const {
  // The representative of x modulo W in [L, L + W), L = -W/2. Stepping through
  // t = mod(x, W) + L, which lies in [L, -L), keeps every intermediate on the type's grid
  // and within the word's magnitude, so the word's precision holds each one exactly.
  if (x > max_ || x < lowerbound_) {
    holdWholeWord(x);
    x.mod(wraparound_);
    x += lowerbound_;
    if (x.isnegative())
      x -= lowerbound_;
    else
      x += lowerbound_;
  }
  return x;
}

number& quantizer::uwrap(number& x, const qlogger&) const {
  if (x > max_ || x < lowerbound_) {
    holdWholeWord(x);
    x.mod(wraparound_);
  }
  return x;
}

number& quantizer::ceil(number& x, long n, const qlogger&) const {
  return x.ceil(n);
}
number& quantizer::convergent(number& x, long n, const qlogger&) const {
  return x.convergent(n);
}
number& quantizer::fix(number& x, long n, const qlogger&) const {
  return x.fix(n);
}
number& quantizer::floor(number& x, long n, const qlogger&) const {
  return x.floor(n);
}
number& quantizer::round(number& x, long n, const qlogger&) const {
  return x.round(n);
}
number& quantizer::nearest(number& x, long n, const qlogger&) const {
  return x.nearest(n);
}

template <RoundModeEnum R>
number& quantizer::roundAt(number& x, long n, const qlogger& log) const {
  if constexpr (R == RoundModeEnum::Ceil) return ceil(x, n, log);
  if constexpr (R == RoundModeEnum::Convergent) return convergent(x, n, log);
  if constexpr (R == RoundModeEnum::Fix) return fix(x, n, log);
  if constexpr (R == RoundModeEnum::Floor) return floor(x, n, log);
  if constexpr (R == RoundModeEnum::Nearest) return nearest(x, n, log);
  if constexpr (R == RoundModeEnum::Round) return round(x, n, log);
}

// --- Routines ----------------------------------------------------------------------------

template <RoundModeEnum R, OverflowModeEnum O, bool Signed>
number& quantizer::quantizeFixed(number& x, const qlogger& log) const {
  // A zero is never rounded, so its sign survives and underflow counts only values that
  // rounded to zero.
  if (!x.iszero()) {
    roundAt<R>(x, fractionlength_, log);
    if constexpr (O == OverflowModeEnum::Saturate)
      saturate(x, log);
    else if constexpr (Signed)
      wrap(x, log);
    else
      uwrap(x, log);
  }
  updatestates(x, log);
  return x;
}

template <RoundModeEnum R>
number& quantizer::quantizeFloat(number& x, const qlogger& log) const {
  if (!x.iszero()) {
    if (!x.myisfinite()) {
      log.nOverflowsPlusOne();
    } else if (x > realmax_) {
      x.setvalue(std::numeric_limits<double>::infinity());
      log.nOverflowsPlusOne();
    } else if (x < negativerealmax_) {
      x.setvalue(-std::numeric_limits<double>::infinity());
      log.nOverflowsPlusOne();
    } else {
      // Denormals share the fixed spacing 2^(exponentmin - fractionlength); normal values
      // the spacing of their binade. A value that rounds up past realmax is kept.
      const long e = x.unbiasedexponent();
      roundAt<R>(x, fractionlength_ - (e < exponentmin_ ? exponentmin_ : e), log);
    }
  }
  updatestates(x, log);
  return x;
}

number& quantizer::quantizeDouble(number& x, const qlogger& log) const {
  if (x.myisinf()) log.nOverflowsPlusOne();
  updatestates(x, log);
  return x;
}

number& quantizer::quantizeNone(number& x, const qlogger& log) const {
  checkoverflow(x, log);
  updatestates(x, log);
  return x;
}

number& quantizer::quantizeScaledDouble(number& x, const qlogger& log) const {
  checkoverflow(x, log);
  checkScaledDoubleUnderflow(x, log);
  updatestates(x, log);
  return x;
}

number& quantizer::quantizeBoolean(number& x, const qlogger& log) const {
  if (!x.iszero()) x.setvalue(1.0);
  updatestates(x, log);
  return x;
}

// Rounds through the single type; selected by no mode, kept for callers that want it.
number& quantizer::quantizeSingle(number& x, const qlogger& log) const {
  x.setvalue(x.tosingle());
  if (x.myisinf())
    log.nOverflowsPlusOne();
  else
    checkunderflow(x, log);
  if (x.iszero()) x.setvalue(0.0);
  updatestates(x, log);
  return x;
}

void quantizer::disp() const {
  std::string text = "\n          mode: ";
  text += mode_string(mode_);
  text += "\n     roundmode: ";
  text += enum_to_string(roundmode_).value_or("");
  text += "\n  overflowmode: ";
  text += enum_to_string(overflowmode_).value_or("");
  char format[80];
  std::snprintf(format, sizeof format, "\n        format: [%g %g]\n", format_.first,
                format_.second);
  text += format;
  host_services().print(text);
}

XoEnumStringType* quantizer::getModeEnum() {
  static constexpr EnumRow kRows[] = {
#define CORBEL_QUANTIZER_MODE(enumerator, code, text, fi) {code, text},
#include "quantize/quantizer_modes.def"
#undef CORBEL_QUANTIZER_MODE
  };
  static XoEnumStringType* const type = embedded::registerEnumType("quantizer Mode", kRows);
  return type;
}

XoEnumStringType* quantizer::getFiModeEnum() {
  static const std::vector<EnumRow> kRows = [] {
    std::vector<EnumRow> rows;
#define CORBEL_QUANTIZER_MODE(enumerator, code, text, fi) \
  if (fi) rows.push_back({code, text});
#include "quantize/quantizer_modes.def"
#undef CORBEL_QUANTIZER_MODE
    return rows;
  }();
  static XoEnumStringType* const type = embedded::registerEnumType("fiquantizer Mode", kRows);
  return type;
}

std::string_view quantizer::mode_string(ModeEnum mode) {
  switch (mode) {
#define CORBEL_QUANTIZER_MODE(enumerator, code, text, fi) \
  case enumerator:                                        \
    return text;
#include "quantize/quantizer_modes.def"
#undef CORBEL_QUANTIZER_MODE
  }
  return "";
}

}  // namespace corbel
