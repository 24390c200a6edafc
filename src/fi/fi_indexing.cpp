// fi: elements by position. The host layer turns its index forms (subscripts, ranges,
// logical masks, colons, growth and deletion) into one-based positions into this array's
// elements in column-major order, or into a layout of a new array; these functions take
// them as they come, check them, and copy or assign the elements. An assigned value is
// carried across types by its real-world value and quantized by the target's assignment
// quantizer (its logging twin when logging is on), reported as an "assignment". Every value
// is formed before the array changes, so a refused assignment leaves it as it was.
#include <cmath>
#include <optional>
#include <vector>

#include "fi/exact_values.h"
#include "fi/fi.h"
#include "host/messages.h"

namespace corbel {
namespace {

// The entries of a real double array, each an integer.
const double* integerEntries(const HostArray& a, Msg error) {
  if (a.element_class() != HostClass::Double || a.is_complex()) raise(error);
  const double* p = a.real<double>();
  const std::size_t n = a.numel();
  for (std::size_t k = 0; k < n; ++k)
    if (p[k] != std::trunc(p[k])) raise(error);
  return p;
}

// Zero-based positions, each checked against n elements.
std::vector<std::size_t> positionsOf(const HostArray& a, int n) {
  const double* p = integerEntries(a, Msg::FiPositionOutOfRange);
  std::vector<std::size_t> out(a.numel());
  const double last = n;
  for (std::size_t k = 0; k < out.size(); ++k) {
    if (!(p[k] >= 1 && p[k] <= last)) raise(Msg::FiPositionOutOfRange);
    out[k] = static_cast<std::size_t>(p[k]) - 1;
  }
  return out;
}

std::vector<int> dimsOf(const HostArray& a) {
  return std::vector<int>(a.dims().begin(), a.dims().end());
}

}  // namespace

std::size_t fi::ValueSource::count() const {
  return array ? static_cast<std::size_t>(array->numel()) : (host ? host->numel() : 0);
}

bool fi::ValueSource::complex() const {
  return array ? array->iscomplex() : host && host->is_complex();
}

void fi::ValueSource::check(Msg error) const {
  if (host && !host->is_numeric() && host->element_class() != HostClass::Logical) raise(error);
}

void fi::assignValue(number& element, const ValueSource& from, std::size_t q, bool imagPart) {
  if (from.array) {
    const fi& a = *from.array;
    const number& v = imagPart ? a.imag(static_cast<int>(q)) : a.real(static_cast<int>(q));
    if (!isSlopeBiasScaled() && !a.isSlopeBiasScaled()) {
      element = v;
      quantizeElement(element);
    } else {
      Rational x;
      realWorld(x.v, v, a.type_);
      storeRealWorld(element, x.v);
    }
    return;
  }
  storeDouble(element, imagPart ? from.host->imag_as_double(q) : from.host->real_as_double(q));
}

std::unique_ptr<fi> fi::elementsAt(const HostArray& positions) const {
  return gathered(positionsOf(positions, numel_), dimsOf(positions));
}

void fi::assignAt(const HostArray& positions, const ValueSource& from, const char* operation) {
  from.check(Msg::FiAssignedNotNumeric);
  const std::vector<std::size_t> at = positionsOf(positions, numel_);
  const std::size_t count = from.count();
  if (count != 1 && count != at.size()) raise(Msg::FiAssignedCount);
  const bool complex = from.complex();
  // The new values first, then the elements. Quantizing the values counts into the log; a
  // value refused part way (NaN) puts the log back as it was.
  std::vector<number> re(at.size()), im(complex ? at.size() : 0);
  const std::optional<qlogger> logBefore =
      getLogging() ? std::optional<qlogger>(filog_) : std::nullopt;
  try {
    for (std::size_t k = 0; k < at.size(); ++k) {
      const std::size_t q = count == 1 ? 0 : k;
      assignValue(re[k], from, q, false);
      if (complex) assignValue(im[k], from, q, true);
    }
  } catch (...) {
    if (logBefore) filog_ = *logBefore;
    throw;
  }
  if (complex) coordinateComplexity(true);
  for (std::size_t k = 0; k < at.size(); ++k) {
    const int i = static_cast<int>(at[k]);
    realRef(i) = re[k];
    if (!isreal_) imagRef(i) = complex ? im[k] : zeroNumber();
  }
  freeImagIfZero();
  if (!getLogging()) return;
  if (operation)
    reportQuantizations(operation);
  else
    displaySubsasgnLogging(filog_);
}

std::unique_ptr<fi> fi::rearranged(const HostArray& layout, const ValueSource& from) const {
  from.check(Msg::FiAssignedNotNumeric);
  const double* p = integerEntries(layout, Msg::FiLayoutBad);
  const std::size_t n = layout.numel();
  const double count = static_cast<double>(from.count()), kept = numel_;
  for (std::size_t k = 0; k < n; ++k)
    if (p[k] < -kept || p[k] > count) raise(Msg::FiLayoutBad);
  const std::vector<int> dims = dimsOf(layout);
  const bool complex = iscomplex() || from.complex();
  // The new array continues this array's log; its elements start at zero.
  auto r = std::make_unique<fi>(dims.data(), static_cast<int>(dims.size()), type_, math_, complex,
                                filog_);
  if (n > 0) {
    number* re = &r->realRef(0);
    number* im = complex ? &r->imagRef(0) : nullptr;
    const number* keptRe = numel_ > 0 ? &real(0) : nullptr;
    for (std::size_t k = 0; k < n; ++k) {
      if (p[k] < 0) {
        const auto i = static_cast<std::size_t>(-p[k]) - 1;
        re[k] = keptRe[i];
        if (complex) im[k] = imag(static_cast<int>(i));
      } else if (p[k] > 0) {
        const auto q = static_cast<std::size_t>(p[k]) - 1;
        r->assignValue(re[k], from, q, false);
        if (complex) r->assignValue(im[k], from, q, true);
      }
    }
  }
  r->freeImagIfZero();
  if (getLogging()) r->displaySubsasgnLogging(r->filog_);
  return r;
}

}  // namespace corbel
