// qlogger: extremes and counts of quantization.
#include "quantize/qlogger.h"

#include "host/utilities.h"

namespace corbel {

qlogger::qlogger() : max_(-host_largest_double()), min_(host_largest_double()) {}

void qlogger::reset() const {
  max_ = number(-host_largest_double());
  min_ = number(host_largest_double());
  noverflows_ = nunderflows_ = noperations_ = 0;
  oldoverflows_ = oldunderflows_ = 0;
}

bool qlogger::isreset() const {
  return max_ == number(-host_largest_double());
}

void qlogger::updateminmax(const number& x) const {
  if (max_ < x) max_ = x;
  if (min_ > x) min_ = x;
  ++noperations_;
}

int qlogger::changeInOverflows() const {
  const int change = noverflows_ - oldoverflows_;
  oldoverflows_ = noverflows_;
  return change;
}

int qlogger::changeInUnderflows() const {
  const int change = nunderflows_ - oldunderflows_;
  oldunderflows_ = nunderflows_;
  return change;
}

qloggerstruct qlogger::getstruct() const {
  return {max_.todouble(), min_.todouble(), noverflows_,
          nunderflows_,    noperations_,    nmathoperations_};
}

}  // namespace corbel
