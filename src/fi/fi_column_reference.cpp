// FiColumnReference: the checks of its ranges and the mapping of its elements.
#include "fi/fi_column_reference.h"

#include "host/messages.h"

namespace corbel {

FiColumnReference::FiColumnReference(const fi& source, int column)
    : fi(source, Alias),
      start_(0),
      rows_(source.getM()),
      columns_(source.numel() / std::max(source.getM(), 1)) {
  if (column < 0 || column >= columns_) raise(Msg::FiColumnNumberOutOfRange);
  start_ = column * rows_;
  const int dims[] = {rows_, 1};
  copyDimensions(dims, 2);
  updateNumel();
  setIndex(0);
}

FiColumnReference::FiColumnReference(const fi& source, int startIndex, int length)
    : fi(source, Alias), start_(startIndex), rows_(length), columns_(1) {
  if (startIndex < 0 || length < 0 || startIndex + length > source.numel())
    raise(Msg::FiColumnIndexOutOfRange);
  const int dims[] = {length, 1};
  copyDimensions(dims, 2);
  updateNumel();
  if (length > 0) setIndex(0);
}

void FiColumnReference::setColumn(int column) {
  if (column < 0 || column >= columns_ || rows_ == 0) raise(Msg::FiColumnSetColumn);
  start_ = column * rows_;
  setIndex(0);
}

void FiColumnReference::setIndex(int i) const {
  checkIndex(i);
  setSharedIndex(start_ + i);
}

}  // namespace corbel
