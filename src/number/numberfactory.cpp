// numberfactory: the representation choice for new bodies.
#include "number/numberfactory.h"

#include <new>

#include "number/doublenumber.h"
#include "number/mpnumber.h"

namespace corbel {

numberrepbody* numberfactory::createnumber(double v, unsigned long precision, bool force) {
  if (!force && precision < 53) return createnumber(v);
  try {
    return new mpnumber(v, precision);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace corbel
