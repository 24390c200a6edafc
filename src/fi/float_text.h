// Radix text of values on a floating-point grid [w, e] (the quantizer's float, double and
// single modes): each value as its w-bit pattern of a sign bit, an e-bit exponent biased by
// 2^(e-1) - 1 and w - e - 1 fraction bits, with subnormals below 2^(1 - bias), and an
// all-ones exponent for infinities (fraction zero) and NaN (top fraction bit set). The
// patterns take the layout of unsigned w-bit stored integers (fi_text.cpp).
#pragma once

#include "host/host_array.h"
#include "quantize/quantizer.h"

namespace corbel {

// The values quantized onto q's grid (no log is kept), as pattern text in the radix.
HostArray floatRadixText(const quantizer& q, const HostArray& values, int radix);
// The values whose patterns the text holds, a column of doubles in the order of the text.
HostArray floatValuesFromText(const quantizer& q, const HostArray& text, int radix);

}  // namespace corbel
