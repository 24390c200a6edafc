// Octave values to host arrays and back.
#include "host_values.h"

#include <cstdint>
#include <string>

#include "corbel_object.h"
#include "host/messages.h"

namespace corbel::octave_host {
namespace {

std::vector<std::size_t> to_dims(const dim_vector& dv) {
  std::vector<std::size_t> dims(static_cast<std::size_t>(dv.ndims()));
  for (std::size_t i = 0; i < dims.size(); ++i) dims[i] = static_cast<std::size_t>(dv(i));
  return dims;
}

// Copies elements between buffers of the same layout, converting each one.
template <class To, class From, class Convert>
void copy_elements(To* to, const From* from, std::size_t n, Convert convert) {
  for (std::size_t k = 0; k < n; ++k) to[k] = convert(from[k]);
}

template <class T, class OctaveArray>
HostArray integers_to_host(const OctaveArray& a, HostClass cls) {
  HostArray out(cls, to_dims(a.dims()));
  copy_elements(out.real<T>(), a.data(), out.numel(), [](const auto& v) { return v.value(); });
  return out;
}

template <class T, class Real, class Cplx>
HostArray floats_to_host(const octave_value& v, HostClass cls, const Real& real_part,
                         const Cplx& complex_part) {
  if (!v.iscomplex()) {
    const auto a = real_part(v);
    HostArray out(cls, to_dims(a.dims()));
    copy_elements(out.real<T>(), a.data(), out.numel(), [](T x) { return x; });
    return out;
  }
  const auto a = complex_part(v);
  HostArray out(cls, to_dims(a.dims()), Complexity::Complex);
  copy_elements(out.real<T>(), a.data(), out.numel(), [](const auto& z) { return z.real(); });
  copy_elements(out.imag<T>(), a.data(), out.numel(), [](const auto& z) { return z.imag(); });
  return out;
}

template <class OctaveArray, class T>
octave_value integers_to_octave(const HostArray& h) {
  OctaveArray a(to_dim_vector(h.dims()));
  copy_elements(a.fortran_vec(), h.real<T>(), h.numel(),
                [](T x) { return typename OctaveArray::element_type(x); });
  return octave_value(a);
}

template <class RealArray, class ComplexArray, class T>
octave_value floats_to_octave(const HostArray& h) {
  const dim_vector dv = to_dim_vector(h.dims());
  if (!h.is_complex()) {
    RealArray a(dv);
    copy_elements(a.fortran_vec(), h.real<T>(), h.numel(), [](T x) { return x; });
    return octave_value(a);
  }
  ComplexArray a(dv);
  const T* im = h.imag<T>();
  const T* re = h.real<T>();
  for (std::size_t k = 0; k < h.numel(); ++k)
    a.xelem(k) = typename ComplexArray::element_type(re[k], im[k]);
  return octave_value(a);
}

}  // namespace

dim_vector to_dim_vector(const std::vector<std::size_t>& dims) {
  dim_vector dv;
  dv.resize(static_cast<int>(dims.size() < 2 ? 2 : dims.size()), 1);
  for (std::size_t i = 0; i < dims.size(); ++i) dv(i) = static_cast<octave_idx_type>(dims[i]);
  return dv;
}

HostArray to_host(const octave_value& v) {
  if (XoInterface* object = octave_corbel_object::object_of(v)) {
    return HostArray::make_object(object);
  }
  // The common case first: a real double scalar.
  if (v.is_real_scalar() && v.is_double_type()) return HostArray::make_double(v.double_value());
  if (v.is_double_type()) {
    return floats_to_host<double>(
        v, HostClass::Double, [](const octave_value& x) { return x.array_value(); },
        [](const octave_value& x) { return x.complex_array_value(); });
  }
  if (v.is_single_type()) {
    return floats_to_host<float>(
        v, HostClass::Single, [](const octave_value& x) { return x.float_array_value(); },
        [](const octave_value& x) { return x.float_complex_array_value(); });
  }
  if (v.is_int8_type()) return integers_to_host<std::int8_t>(v.int8_array_value(), HostClass::Int8);
  if (v.is_uint8_type())
    return integers_to_host<std::uint8_t>(v.uint8_array_value(), HostClass::UInt8);
  if (v.is_int16_type())
    return integers_to_host<std::int16_t>(v.int16_array_value(), HostClass::Int16);
  if (v.is_uint16_type())
    return integers_to_host<std::uint16_t>(v.uint16_array_value(), HostClass::UInt16);
  if (v.is_int32_type())
    return integers_to_host<std::int32_t>(v.int32_array_value(), HostClass::Int32);
  if (v.is_uint32_type())
    return integers_to_host<std::uint32_t>(v.uint32_array_value(), HostClass::UInt32);
  if (v.is_int64_type())
    return integers_to_host<std::int64_t>(v.int64_array_value(), HostClass::Int64);
  if (v.is_uint64_type())
    return integers_to_host<std::uint64_t>(v.uint64_array_value(), HostClass::UInt64);
  if (v.islogical()) {
    const boolNDArray a = v.bool_array_value();
    HostArray out(HostClass::Logical, to_dims(a.dims()));
    copy_elements(out.real<bool>(), a.data(), out.numel(), [](bool x) { return x; });
    return out;
  }
  if (v.is_string()) {
    const charNDArray a = v.char_array_value();
    HostArray out(HostClass::Char, to_dims(a.dims()));
    // Octave keeps text as bytes; each byte is one code unit.
    copy_elements(out.real<char16_t>(), a.data(), out.numel(),
                  [](char c) { return static_cast<char16_t>(static_cast<unsigned char>(c)); });
    return out;
  }
  const std::vector<std::size_t> dims = to_dims(v.dims());
  if (v.isstruct()) return HostArray(HostClass::Struct, dims);
  if (v.iscell()) return HostArray(HostClass::Cell, dims);
  if (v.is_function_handle()) return HostArray(HostClass::FunctionHandle, {1, 1});
  return HostArray(HostClass::Unknown, {1, 1});
}

std::vector<HostArray> to_host(const octave_value_list& values, int first) {
  std::vector<HostArray> out;
  out.reserve(static_cast<std::size_t>(values.length() > first ? values.length() - first : 0));
  for (int i = first; i < values.length(); ++i) out.push_back(to_host(values(i)));
  return out;
}

octave_value to_octave(HostArray&& h) {
  switch (h.element_class()) {
    case HostClass::Object:
      return octave_value(new octave_corbel_object(h.detach_object()));
    case HostClass::Double:
      if (h.is_scalar() && !h.is_complex()) return octave_value(h.real<double>()[0]);
      return floats_to_octave<NDArray, ComplexNDArray, double>(h);
    case HostClass::Single:
      return floats_to_octave<FloatNDArray, FloatComplexNDArray, float>(h);
    case HostClass::Int8:
      return integers_to_octave<int8NDArray, std::int8_t>(h);
    case HostClass::UInt8:
      return integers_to_octave<uint8NDArray, std::uint8_t>(h);
    case HostClass::Int16:
      return integers_to_octave<int16NDArray, std::int16_t>(h);
    case HostClass::UInt16:
      return integers_to_octave<uint16NDArray, std::uint16_t>(h);
    case HostClass::Int32:
      return integers_to_octave<int32NDArray, std::int32_t>(h);
    case HostClass::UInt32:
      return integers_to_octave<uint32NDArray, std::uint32_t>(h);
    case HostClass::Int64:
      return integers_to_octave<int64NDArray, std::int64_t>(h);
    case HostClass::UInt64:
      return integers_to_octave<uint64NDArray, std::uint64_t>(h);
    case HostClass::Logical: {
      if (h.is_scalar()) return octave_value(h.real<bool>()[0]);
      boolNDArray a(to_dim_vector(h.dims()));
      copy_elements(a.fortran_vec(), h.real<bool>(), h.numel(), [](bool x) { return x; });
      return octave_value(a);
    }
    case HostClass::Char: {
      if (h.dims().size() == 2 && h.rows() == 1) return octave_value(h.text());
      charNDArray a(to_dim_vector(h.dims()));
      copy_elements(a.fortran_vec(), h.real<char16_t>(), h.numel(),
                    [](char16_t c) { return static_cast<char>(c < 256 ? c : u'?'); });
      return octave_value(a);
    }
    default:
      raise(Msg::OctaveResultClass, std::string(h.class_name()).c_str());
  }
}

octave_value_list to_octave(std::vector<HostArray>&& values) {
  octave_value_list out(static_cast<octave_idx_type>(values.size()));
  for (std::size_t i = 0; i < values.size(); ++i) {
    out(static_cast<octave_idx_type>(i)) = to_octave(std::move(values[i]));
  }
  return out;
}

}  // namespace corbel::octave_host
