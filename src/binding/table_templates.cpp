// The out-of-line helpers of the table templates.
#include "binding/table_templates.h"

#include <cmath>
#include <cstdint>

#include "host/messages.h"

namespace corbel::binding {

XoDataType* repository_type(std::string_view name) {
  return XoTypeRepository::instance().getType(name);
}

double evaluate_text(const std::string& text) {
  HostArray input = HostArray::make_text(text);
  HostArray output;
  if (embedded::call_NORVAK_with_trap(1, &output, 1, &input, "eval") != 0)
    embedded::throw_last_error();
  const bool scalar = (output.is_numeric() || output.is_logical()) && output.is_scalar() &&
                      !output.is_complex();
  if (!scalar) raise(Msg::EvaluatedTextNotScalar, text.c_str());
  return output.real_as_double(0);
}

void refuse_unless_int32(double v, const std::string& textProperty, XoInterface* instance) {
  const bool fits = v == std::trunc(v) && v >= INT32_MIN && v <= INT32_MAX;
  if (fits) return;
  const std::string numeric = textProperty.substr(0, textProperty.size() - 6);  // no "String"
  raise(Msg::XoPropertyNeedsInt32, numeric.c_str(),
        instance->getClass()->getPackageClassName().c_str());
}

int radix_argument(const HostArray& r) {
  const double v = r.is_numeric() && r.numel() == 1 && !r.is_complex() ? r.real_as_double(0) : 0.0;
  if (v != 2 && v != 8 && v != 10 && v != 16) raise(Msg::FiBadRadix);
  return static_cast<int>(v);
}

}  // namespace corbel::binding
