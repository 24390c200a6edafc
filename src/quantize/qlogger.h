// qlogger: the record every quantization reports into: the extremes seen and the counts
// of overflows, underflows and operations.
#pragma once

#include <cstdint>

#include "number/number.h"

namespace corbel {

// The plain form of a log, extremes as doubles.
struct qloggerstruct {
  double max;
  double min;
  std::int32_t noverflows;
  std::int32_t nunderflows;
  std::int32_t noperations;
  std::int32_t nmathoperations;
};

// Quantizers hold their log in const operations, so every field is mutable and every
// operation is const. The extremes start at the negated and the positive largest finite
// double (made at the number defaults), so the first value seen replaces both.
class qlogger {
 public:
  qlogger();
  qlogger(const qlogger&) = default;
  qlogger& operator=(const qlogger&) = default;
  void set(const qlogger& other) { *this = other; }
  // Every field back to a saved copy's, through a const reference as the other operations.
  void restore(const qlogger& saved) const { const_cast<qlogger&>(*this) = saved; }

  // Extremes back to their starting values and every count but nmathoperations to 0.
  void reset() const;
  bool isreset() const;
  // max = max(max, x), min = min(min, x), one more operation.
  void updateminmax(const number& x) const;

  void nOverflowsPlusOne() const { ++noverflows_; }
  void nUnderflowsPlusOne() const { ++nunderflows_; }
  void nOperationsPlusOne() const { ++noperations_; }
  void nMathOperationsPlusOne() const { ++nmathoperations_; }
  void addtoOverflows(int n) const { noverflows_ += n; }
  void addtoUnderflows(int n) const { nunderflows_ += n; }

  void setMax(const number& x) const { max_ = x; }
  void setMin(const number& x) const { min_ = x; }
  void setNoverflows(int n) const { noverflows_ = n; }
  void setNunderflows(int n) const { nunderflows_ = n; }
  void setNoperations(int n) const { noperations_ = n; }
  void setNMathOperations(int n) const { nmathoperations_ = n; }
  const number& getMax() const { return max_; }
  const number& getMin() const { return min_; }
  int getNoverflows() const { return noverflows_; }
  int getNunderflows() const { return nunderflows_; }
  int getNoperations() const { return noperations_; }
  int getNMathoperations() const { return nmathoperations_; }
  int getOldOverflows() const { return oldoverflows_; }
  int getOldUnderflows() const { return oldunderflows_; }
  // The counts already reported, against which the next change is measured.
  void setOldOverflows(int n) const { oldoverflows_ = n; }
  void setOldUnderflows(int n) const { oldunderflows_ = n; }

  // The counts added since the last call; that call's count becomes the new reference.
  int changeInOverflows() const;
  int changeInUnderflows() const;

  qloggerstruct getstruct() const;

 private:
  mutable number max_;
  mutable number min_;
  mutable std::int32_t noverflows_ = 0;
  mutable std::int32_t nunderflows_ = 0;
  mutable std::int32_t noperations_ = 0;
  mutable std::int32_t nmathoperations_ = 0;
  mutable std::int32_t oldoverflows_ = 0;
  mutable std::int32_t oldunderflows_ = 0;
};

}  // namespace corbel
