// numberfactory: makes the bodies of numbers, choosing the representation by precision.
#pragma once

#include <new>

#include "number/doublenumber.h"
#include "number/numberrepbody.h"

namespace corbel {

// Bodies come back with count 0; the handle that adopts one counts it.
class numberfactory {
 public:
  // A double body holding 0.0.
  static numberrepbody* createnumber() { return createnumber(0.0); }
  // A double body holding v. Inline: every element of every array is made here.
  static numberrepbody* createnumber(double v) {
    try {
      return new doublenumber(v);
    } catch (const std::bad_alloc&) {
      return nullptr;
    }
  }
  // A double body when multiprecision is not forced and precision < 53; otherwise a
  // multiprecision body of that precision (at least 32 bits). Null on allocation failure.
  static numberrepbody* createnumber(double v, unsigned long precision, bool force);
};

}  // namespace corbel
