// numberrephandle: reference counting, copy-on-write and body adoption.
#include "number/numberrephandle.h"

#include <new>

#include "number/numberfactory.h"

namespace corbel {

numberrephandle::numberrephandle(numberrepbody& body) : body_(&body) {
  body_->incrcount();
}

numberrephandle::numberrephandle(double v, unsigned long precision, bool force)
    : body_(checked(numberfactory::createnumber(v, precision, force))) {}

numberrephandle::numberrephandle(const numberrephandle& other) : body_(other.body_) {
  body_->incrcount();
}

numberrephandle& numberrephandle::operator=(const numberrephandle& other) {
  if (other.body_ != body_) changebody(other.body_);
  return *this;
}

void numberrephandle::changebody(numberrepbody* b) {
  if (b == body_) return;
  b->incrcount();
  if (body_->decrcount() == 0) delete body_;
  body_ = b;
}

void numberrephandle::unshare() {
  numberrepbody* copy = checked(body_->clone());
  body_->decrcount();
  body_ = copy;
}

}  // namespace corbel
