// HostArray: the host's array value (element class, dimensions, real and imaginary element
// buffers, text, logical values, and a held reference to an object-system instance).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace corbel {

class XoInterface;

// The element classes a host value can have. Only the numeric ones (double, single and the
// eight integer classes) carry the numeric flag; logical and char have element buffers but
// are not numeric; cell, struct, function handle, object and unknown have no element buffers.
enum class HostClass : int {
  Unknown,
  Cell,
  Struct,
  Logical,
  Char,
  Double,
  Single,
  Int8,
  UInt8,
  Int16,
  UInt16,
  Int32,
  UInt32,
  Int64,
  UInt64,
  FunctionHandle,
  Object,
};

enum class Complexity { Real, Complex };

// The host's own name of an element class: "double", "uint8", "logical", "char", "cell",
// "struct", "function_handle", "object", "unknown".
std::string_view host_class_name(HostClass c);

// Bytes per element in a real or imaginary buffer: logical 1 (0 or 1), char 2 (one 16-bit
// code unit), the numeric classes their natural width; 0 for classes without element buffers.
std::size_t host_element_size(HostClass c);

bool host_class_is_numeric(HostClass c);

// A small value type with single ownership of its buffers and of one reference on its
// object. Copies are deep: a copy has its own buffers and takes its own reference on the
// object. A moved-from array is an empty 0x0 double array.
//
// Invariants: dims() has at least two entries and no trailing singleton beyond the second;
// each buffer holds numel() * host_element_size(element_class()) bytes, zero-initialised on
// creation; the imaginary buffer exists exactly when is_complex(); object() is non-null only
// for the Object class, which is always 1x1. Elements are in column-major order.
class HostArray {
 public:
  // An empty (0x0) real double array.
  HostArray() noexcept;
  // An array of the given class and dimensions with zero elements; dims with fewer than two
  // entries are padded with ones.
  HostArray(HostClass cls, std::vector<std::size_t> dims, Complexity complexity = Complexity::Real);
  HostArray(const HostArray& other);
  HostArray& operator=(const HostArray& other);
  HostArray(HostArray&& other) noexcept;
  HostArray& operator=(HostArray&& other) noexcept;
  ~HostArray();

  // Creation.
  static HostArray make_double(double v);
  static HostArray make_complex(double re, double im);
  static HostArray make_double_matrix(std::size_t rows, std::size_t cols,
                                      Complexity complexity = Complexity::Real);
  // A real double matrix from its elements in column-major order (values.size() == rows*cols).
  static HostArray make_double_matrix(std::size_t rows, std::size_t cols,
                                      const std::vector<double>& values);
  static HostArray make_logical(bool v);
  static HostArray make_logical_matrix(std::size_t rows, std::size_t cols);
  // A 1xN char row of the bytes of s (each byte one code unit); "" gives a 0x0 char array.
  static HostArray make_text(std::string_view s);
  static HostArray make_uint8_matrix(std::size_t rows, std::size_t cols);
  // Any numeric class, zero-filled.
  static HostArray make_numeric(HostClass cls, std::vector<std::size_t> dims,
                                Complexity complexity = Complexity::Real);
  // A 1x1 object reference; takes a new reference on `object` (which must not be null).
  static HostArray make_object(XoInterface* object);

  HostClass element_class() const { return cls_; }
  std::string_view class_name() const { return host_class_name(cls_); }
  const std::vector<std::size_t>& dims() const;
  std::size_t rows() const { return dims()[0]; }
  std::size_t cols() const { return dims()[1]; }
  std::size_t numel() const;
  bool is_numeric() const { return host_class_is_numeric(cls_); }
  bool is_complex() const { return complex_; }
  bool is_empty() const { return numel() == 0; }
  bool is_scalar() const { return numel() == 1; }
  bool is_text() const { return cls_ == HostClass::Char; }
  bool is_logical() const { return cls_ == HostClass::Logical; }

  // Raw buffers (null when the class has no element buffer or, for imag, the array is real).
  void* real_data() { return real_.get(); }
  const void* real_data() const { return real_.get(); }
  void* imag_data() { return imag_.get(); }
  const void* imag_data() const { return imag_.get(); }

  // Typed buffers. T must be the element type of the class (double, float, std::int8_t ...
  // std::uint64_t, bool for logical, char16_t for char); anything else is an internal error.
  template <class T>
  T* real() {
    check_element_type(fits<T>(cls_), element_type_name<T>());
    return reinterpret_cast<T*>(real_.get());
  }
  template <class T>
  const T* real() const {
    check_element_type(fits<T>(cls_), element_type_name<T>());
    return reinterpret_cast<const T*>(real_.get());
  }
  template <class T>
  T* imag() {
    check_element_type(fits<T>(cls_), element_type_name<T>());
    return reinterpret_cast<T*>(imag_.get());
  }
  template <class T>
  const T* imag() const {
    check_element_type(fits<T>(cls_), element_type_name<T>());
    return reinterpret_cast<const T*>(imag_.get());
  }

  // Element k read by its class and converted to double (64-bit integers to the nearest
  // double). Numeric, logical and char arrays only. The imaginary part of a real array is 0.
  double real_as_double(std::size_t k) const;
  double imag_as_double(std::size_t k) const;

  // The char array's code units as bytes, in element order (units above 255 become '?').
  std::string text() const;

  // The held instance (borrowed), or null.
  XoInterface* object() const { return object_; }
  // Hands the held reference to the caller and leaves the array empty.
  XoInterface* detach_object();

  // Frees the buffers and releases the object reference; the array becomes empty 0x0 double.
  void release();

 private:
  using Buffer = std::unique_ptr<std::byte[]>;

  template <class T>
  static constexpr bool fits(HostClass c) {
    if constexpr (std::is_same_v<T, double>) return c == HostClass::Double;
    if constexpr (std::is_same_v<T, float>) return c == HostClass::Single;
    if constexpr (std::is_same_v<T, std::int8_t>) return c == HostClass::Int8;
    if constexpr (std::is_same_v<T, std::uint8_t>) return c == HostClass::UInt8;
    if constexpr (std::is_same_v<T, std::int16_t>) return c == HostClass::Int16;
    if constexpr (std::is_same_v<T, std::uint16_t>) return c == HostClass::UInt16;
    if constexpr (std::is_same_v<T, std::int32_t>) return c == HostClass::Int32;
    if constexpr (std::is_same_v<T, std::uint32_t>) return c == HostClass::UInt32;
    if constexpr (std::is_same_v<T, std::int64_t>) return c == HostClass::Int64;
    if constexpr (std::is_same_v<T, std::uint64_t>) return c == HostClass::UInt64;
    if constexpr (std::is_same_v<T, bool>) return c == HostClass::Logical;
    if constexpr (std::is_same_v<T, char16_t>) return c == HostClass::Char;
    return false;
  }
  template <class T>
  static constexpr const char* element_type_name() {
    if constexpr (std::is_same_v<T, double>) return "double";
    if constexpr (std::is_same_v<T, float>) return "float";
    if constexpr (std::is_same_v<T, bool>) return "bool";
    if constexpr (std::is_same_v<T, char16_t>) return "char16_t";
    if constexpr (std::is_integral_v<T>)
      return std::is_signed_v<T> ? "a signed integer" : "an unsigned integer";
    return "this type";
  }
  void check_element_type(bool ok, const char* type_name) const;
  double read_as_double(const std::byte* buffer, std::size_t k) const;
  void take_reference(XoInterface* object);

  HostClass cls_ = HostClass::Double;
  // Empty stands for 0x0, so that the empty state needs no allocation.
  std::vector<std::size_t> dims_;
  bool complex_ = false;
  Buffer real_;
  Buffer imag_;
  XoInterface* object_ = nullptr;
};

}  // namespace corbel
