// FiColumnReference: a view on consecutive elements of another fi (one column, or a start
// and a length in column-major order) that shares its data. Element i of the view is element
// start + i of the source; the view is a column of that many elements, and element-level
// operations through it (setIndex, then real(), operator= ...) read and write the source.
#pragma once

#include "fi/fi.h"

namespace corbel {

class FiColumnReference : public fi {
 public:
  // Column `column` (0-based) of source.
  FiColumnReference(const fi& source, int column);
  // `length` elements of source from `startIndex` (0-based).
  FiColumnReference(const fi& source, int startIndex, int length);

  // Element assignment into the current element, as for any fi.
  using fi::operator=;
  FiColumnReference& operator=(const FiColumnReference&) = delete;

  // Moves the view to column `column` of the source.
  void setColumn(int column);
  void setIndex(int i) const override;
  int getStartIndex() const { return start_; }

 private:
  int start_, rows_, columns_;
};

}  // namespace corbel
