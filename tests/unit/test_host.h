// Fixtures of the tests: a host that takes the console output and warnings of the code under
// test, and the process-wide default precision put back after a test that changed it.
#pragma once

#include <gtest/gtest.h>

#include "host/inprocess_host.h"
#include "number/number.h"

namespace corbel {

class WithHost : public ::testing::Test {
 protected:
  InProcessHost host;
  ScopedHost scope{host};
};

// fi constructors set the default precision; a member of this type restores it.
struct DefaultPrecisionGuard {
  unsigned long precision = number::getDefaultPrecision();
  bool force = number::getDefaultForceMultiplePrecision();
  ~DefaultPrecisionGuard() { number::setDefaultPrecision(precision, force); }
};

}  // namespace corbel
