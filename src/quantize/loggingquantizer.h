// loggingquantizer: a quantizer with a log of its own whose steps count every overflow,
// underflow and operation.
#pragma once

#include "quantize/qlogger.h"
#include "quantize/quantizer.h"

namespace corbel {

class loggingquantizer : public quantizer {
 public:
  using quantizer::quantizer;
  loggingquantizer(const loggingquantizer&) = default;
  loggingquantizer& operator=(const loggingquantizer&) = default;

  // Quantizes with this quantizer's own log, or with the given one.
  number& quantize(number& x) const { return quantizer::quantize(x, log_); }
  number& quantize(number& x, const qlogger& log) const { return quantizer::quantize(x, log); }

  const qlogger& getQLog() const { return log_; }
  void initializestates() { log_.reset(); }
  const number& getMax() const { return log_.getMax(); }
  void setMax(const number& x) { log_.setMax(x); }
  const number& getMin() const { return log_.getMin(); }
  void setMin(const number& x) { log_.setMin(x); }
  int getNoverflows() const { return log_.getNoverflows(); }
  void setNoverflows(int n) { log_.setNoverflows(n); }
  int getNunderflows() const { return log_.getNunderflows(); }
  void setNunderflows(int n) { log_.setNunderflows(n); }
  int getNoperations() const { return log_.getNoperations(); }
  void setNoperations(int n) { log_.setNoperations(n); }

  void checkoverflow(const number& x, const qlogger& log) const override;
  void checkunderflow(const number& x, const qlogger& log) const override;
  void checkScaledDoubleUnderflow(const number& x, const qlogger& log) const override;
  number& saturate(number& x, const qlogger& log) const override;
  number& wrap(number& x, const qlogger& log) const override;
  number& uwrap(number& x, const qlogger& log) const override;
  number& ceil(number& x, long n, const qlogger& log) const override;
  number& convergent(number& x, long n, const qlogger& log) const override;
  number& fix(number& x, long n, const qlogger& log) const override;
  number& floor(number& x, long n, const qlogger& log) const override;
  number& round(number& x, long n, const qlogger& log) const override;
  number& nearest(number& x, long n, const qlogger& log) const override;
  void updatestates(const number& x, const qlogger& log) const override;

 protected:
  qlogger log_;
};

}  // namespace corbel
