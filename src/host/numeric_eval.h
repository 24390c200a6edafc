// Evaluation of numeric text, as the in-process host's "eval" does it: scalars, vectors and
// matrices of numbers written with brackets, commas, semicolons, signs, exponents, + - * / ^,
// parentheses and the names pi, Inf, NaN, true and false.
#pragma once

#include <string_view>

#include "host/host_array.h"

namespace corbel {

// The value of `text` as a real double array, or a logical array when every element is a
// bare true or false. Text this grammar does not cover raises Msg::HostEvalSyntax;
// rows of unequal length raise Msg::HostEvalRows.
HostArray evaluate_numeric_text(std::string_view text);

}  // namespace corbel
