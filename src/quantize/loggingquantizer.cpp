// loggingquantizer: the counting steps.
#include "quantize/loggingquantizer.h"

namespace corbel {

// The upper bound is realmax, which in every mode is the max the base saturation uses.
void loggingquantizer::checkoverflow(const number& x, const qlogger& log) const {
  if (x > getUpperBound() || x < getLowerBound()) log.nOverflowsPlusOne();
}

// Every routine skips rounding for a zero input, so a zero here is a value that rounded
// to zero.
void loggingquantizer::checkunderflow(const number& x, const qlogger& log) const {
  if (x.iszero()) log.nUnderflowsPlusOne();
}

void loggingquantizer::checkScaledDoubleUnderflow(const number& x, const qlogger& log) const {
  if (!x.iszero() && getNegativeEps() < x && x < getEps()) log.nUnderflowsPlusOne();
}

number& loggingquantizer::saturate(number& x, const qlogger& log) const {
  if (x > getUpperBound() || x < getLowerBound()) {
    quantizer::saturate(x, log);
    log.nOverflowsPlusOne();
  }
  return x;
}

number& loggingquantizer::wrap(number& x, const qlogger& log) const {
  if (x > getUpperBound() || x < getLowerBound()) {
    quantizer::wrap(x, log);
    log.nOverflowsPlusOne();
  }
  return x;
}

number& loggingquantizer::uwrap(number& x, const qlogger& log) const {
  if (x > getUpperBound() || x < getLowerBound()) {
    quantizer::uwrap(x, log);
    log.nOverflowsPlusOne();
  }
  return x;
}

#define CORBEL_COUNTING_ROUNDING(name)                                          \
  number& loggingquantizer::name(number& x, long n, const qlogger& log) const { \
    x.name(n);                                                                  \
    checkunderflow(x, log);                                                     \
    return x;                                                                   \
  }
CORBEL_COUNTING_ROUNDING(ceil)
CORBEL_COUNTING_ROUNDING(convergent)
CORBEL_COUNTING_ROUNDING(fix)
CORBEL_COUNTING_ROUNDING(floor)
CORBEL_COUNTING_ROUNDING(round)
CORBEL_COUNTING_ROUNDING(nearest)
#undef CORBEL_COUNTING_ROUNDING

void loggingquantizer::updatestates(const number& x, const qlogger& log) const {
  log.updateminmax(x);
}

}  // namespace corbel
