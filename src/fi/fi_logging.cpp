// fi: the logging switch, the class-wide logs, the reporting of new overflows and
// underflows after each operation, the logging-state warnings and the display.
#include <cstdio>
#include <string>
#include <vector>

#include "fi/fi.h"
#include "host/messages.h"
#include "host/services.h"

namespace corbel {
namespace {

bool loggingOn = false;

// Function-local so that the logs (which hold numbers) are built on first use, after the
// number defaults exist.
const qlogger& assignLog() {
  static const qlogger log;
  return log;
}
const qlogger& sumLog() {
  static const qlogger log;
  return log;
}
const qlogger& productLog() {
  static const qlogger log;
  return log;
}

const char* plural(int count) {
  return count == 1 ? "" : "s";
}

// The overflow and underflow warnings of one operation; a count of 0 says nothing.
void warnOverflowsUnderflows(int overflows, int underflows, const char* name) {
  if (overflows > 0) warn(Msg::FiOverflow, overflows, plural(overflows), name);
  if (underflows > 0) warn(Msg::FiUnderflow, underflows, plural(underflows), name);
}

}  // namespace

// ---- Switch and global logs ---------------------------------------------------------------

bool fi::getLogging() {
  return loggingOn;
}

void fi::setLogging(bool on) {
  loggingOn = on;
}

const qlogger& fi::getAssignlog() {
  return assignLog();
}

const qlogger& fi::getSumlog() {
  return sumLog();
}

const qlogger& fi::getProductlog() {
  return productLog();
}

void fi::resetLogging() const {
  getfilog().reset();
  if (sumRegister_) sumRegister_->getfilog().reset();
  if (productRegister_) {
    productRegister_->getfilog().reset();
    if (productRegister_->sumRegister_) productRegister_->sumRegister_->getfilog().reset();
  }
}

void fi::displayGlobalLog() {
  if (!getLogging()) return;
  // The padding inside the labels lines the colons up.
  const struct {
    const char* format;
    long count;
  } lines[] = {
      {"FI assignment overflows : %ld\n", assignLog().getNoverflows()},
      {"FI assignment underflows: %ld\n", assignLog().getNunderflows()},
      {"FI sum overflows        : %ld\n", sumLog().getNoverflows()},
      {"FI sum underflows       : %ld\n", sumLog().getNunderflows()},
      {"FI product overflows    : %ld\n", productLog().getNoverflows()},
      {"FI product underflows   : %ld\n", productLog().getNunderflows()},
  };
  std::string out;
  char buf[64];
  for (const auto& line : lines) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    std::snprintf(buf, sizeof buf, line.format, line.count);
#pragma GCC diagnostic pop
    out += buf;
  }
  host_services().print(out);
}

void fi::resetGlobalLog() {
  if (!getLogging()) return;
  assignLog().reset();
  sumLog().reset();
  productLog().reset();
}

// ---- Reporting ----------------------------------------------------------------------------

void fi::reportOperation(const qlogger& registerLog, const qlogger& globalLog,
                         const qlogger& resultLog, int noperations, int nmathoperations,
                         const char* name) {
  if (!getLogging()) return;
  // Only what the register counted since its last report is new; moving the reported
  // counters up makes each overflow warned about once.
  const int overflows = registerLog.changeInOverflows();
  const int underflows = registerLog.changeInUnderflows();
  globalLog.addtoOverflows(overflows);
  globalLog.addtoUnderflows(underflows);
  // The result's log holds this operation's counts, all of them already reported.
  resultLog.setNoperations(noperations);
  resultLog.setNMathOperations(nmathoperations);
  resultLog.setNoverflows(overflows);
  resultLog.setOldOverflows(overflows);
  resultLog.setNunderflows(underflows);
  resultLog.setOldUnderflows(underflows);
  warnOverflowsUnderflows(overflows, underflows, name);
}

void fi::displaySubsasgnLogging(const qlogger& log) const {
  const int overflows = log.changeInOverflows();
  const int underflows = log.changeInUnderflows();
  warnOverflowsUnderflows(overflows, underflows, "assignment");
}

void fi::reportQuantizations(const char* operation) const {
  const int overflows = filog_.changeInOverflows();
  const int underflows = filog_.changeInUnderflows();
  warnOverflowsUnderflows(overflows, underflows, operation);
}

void fi::warnQuantizationEvent(const char* identifier, int count, const char* what,
                               const char* kind, const char* operation) {
  if (count > 0)
    warn_named(Msg::FiQuantizationEvent, identifier, count, what, kind, plural(count), operation);
}

// ---- Logged extremes ----------------------------------------------------------------------

double fi::getMaxLogAsRealWorldValue() const {
  const double v = getfilog().getMax().todouble();
  return isSlopeBiasScaled() ? addSlopeAdjustmentFactorBias(v) : v;
}

double fi::getMinLogAsRealWorldValue() const {
  const double v = getfilog().getMin().todouble();
  return isSlopeBiasScaled() ? addSlopeAdjustmentFactorBias(v) : v;
}

fi::LoggingState fi::loggingState() const {
  const bool logged = !getfilog().isreset();
  if (getLogging()) return logged ? LoggingState::OnLogged : LoggingState::OnNothingLogged;
  return logged ? LoggingState::OffLogged : LoggingState::OffNothingLogged;
}

bool fi::reportLoggingState(const char* method) const {
  switch (loggingState()) {
    case LoggingState::OnLogged:
      return true;
    case LoggingState::OnNothingLogged:
      warn_named(Msg::FiLoggingReset, method);
      break;
    case LoggingState::OffLogged:
      warn_named(Msg::FiLoggingOff, method);
      break;
    case LoggingState::OffNothingLogged:
      warn_named(Msg::FiLoggingOffAndReset, method);
      break;
  }
  return false;
}

// ---- Display ------------------------------------------------------------------------------

HostArray fi::toHostDouble() const {
  std::vector<std::size_t> dims(dims_.begin(), dims_.end());
  HostArray out = HostArray::make_numeric(HostClass::Double, std::move(dims),
                                          iscomplex() ? Complexity::Complex : Complexity::Real);
  const bool slopeBias = isSlopeBiasScaled();
  const auto realWorld = [&](const number& x) {
    const double v = x.todouble();
    return slopeBias ? addSlopeAdjustmentFactorBias(v) : v;
  };
  double* re = out.real<double>();
  for (int i = 0; i < numel_; ++i) re[i] = realWorld(real(i));
  if (iscomplex()) {
    double* im = out.imag<double>();
    for (int i = 0; i < numel_; ++i) im[i] = realWorld(imag(i));
  }
  return out;
}

void fi::disp() const {
  HostServices& host = host_services();
  if (isempty()) {
    host.print("     []\n");
  } else {
    HostArray values = toHostDouble();
    host.print_matrix(values);
    values.release();
  }
  host.print("\n");
  type_.disp();
  host.print("\n");
  math_.disp();
}

}  // namespace corbel
