// What the fi class's methods share with the methods still to come: the data-type
// restriction of methods defined for some data types only.
#pragma once

#include "fi/fi.h"

namespace corbel {

// Fixed-point operands only, or any operand but a boolean one.
enum class DataTypeRule { FixedOnly, NotBoolean };

// Refuses a fi whose data type the rule excludes, naming the method (its registered name)
// and the data type.
void checkDataTypeRule(const char* method, const fi& f, DataTypeRule rule);

}  // namespace corbel
