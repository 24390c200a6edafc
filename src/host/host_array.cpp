// HostArray: creation, copies, element reads and release.
#include "host/host_array.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "host/messages.h"
#include "host/xo_class.h"

namespace corbel {
namespace {

const std::vector<std::size_t> kEmptyDims{0, 0};

// Reads one element of a buffer of class c as T.
template <class T>
T load(const std::byte* buffer, std::size_t k) {
  T v;
  std::memcpy(&v, buffer + k * sizeof(T), sizeof(T));
  return v;
}

std::unique_ptr<std::byte[]> allocate(std::size_t bytes) {
  return std::unique_ptr<std::byte[]>(new std::byte[bytes]());
}

std::unique_ptr<std::byte[]> duplicate(const std::unique_ptr<std::byte[]>& from,
                                       std::size_t bytes) {
  if (!from) return nullptr;
  auto to = allocate(bytes);
  if (bytes != 0) std::memcpy(to.get(), from.get(), bytes);
  return to;
}

}  // namespace

std::string_view host_class_name(HostClass c) {
  switch (c) {
    case HostClass::Unknown:
      return "unknown";
    case HostClass::Cell:
      return "cell";
    case HostClass::Struct:
      return "struct";
    case HostClass::Logical:
      return "logical";
    case HostClass::Char:
      return "char";
    case HostClass::Double:
      return "double";
    case HostClass::Single:
      return "single";
    case HostClass::Int8:
      return "int8";
    case HostClass::UInt8:
      return "uint8";
    case HostClass::Int16:
      return "int16";
    case HostClass::UInt16:
      return "uint16";
    case HostClass::Int32:
      return "int32";
    case HostClass::UInt32:
      return "uint32";
    case HostClass::Int64:
      return "int64";
    case HostClass::UInt64:
      return "uint64";
    case HostClass::FunctionHandle:
      return "function_handle";
    case HostClass::Object:
      return "object";
  }
  return "unknown";
}

std::size_t host_element_size(HostClass c) {
  switch (c) {
    case HostClass::Logical:
    case HostClass::Int8:
    case HostClass::UInt8:
      return 1;
    case HostClass::Char:
    case HostClass::Int16:
    case HostClass::UInt16:
      return 2;
    case HostClass::Single:
    case HostClass::Int32:
    case HostClass::UInt32:
      return 4;
    case HostClass::Double:
    case HostClass::Int64:
    case HostClass::UInt64:
      return 8;
    default:
      return 0;
  }
}

bool host_class_is_numeric(HostClass c) {
  switch (c) {
    case HostClass::Double:
    case HostClass::Single:
    case HostClass::Int8:
    case HostClass::UInt8:
    case HostClass::Int16:
    case HostClass::UInt16:
    case HostClass::Int32:
    case HostClass::UInt32:
    case HostClass::Int64:
    case HostClass::UInt64:
      return true;
    default:
      return false;
  }
}

HostArray::HostArray() noexcept = default;

HostArray::HostArray(HostClass cls, std::vector<std::size_t> dims, Complexity complexity)
    : cls_(cls), dims_(std::move(dims)), complex_(complexity == Complexity::Complex) {
  while (dims_.size() < 2) dims_.push_back(1);
  while (dims_.size() > 2 && dims_.back() == 1) dims_.pop_back();
  const std::size_t size = host_element_size(cls_);
  if (size != 0) {
    real_ = allocate(numel() * size);
    if (complex_) imag_ = allocate(numel() * size);
  }
}

HostArray::HostArray(const HostArray& other)
    : cls_(other.cls_),
      dims_(other.dims_),
      complex_(other.complex_),
      real_(duplicate(other.real_, other.numel() * host_element_size(other.cls_))),
      imag_(duplicate(other.imag_, other.numel() * host_element_size(other.cls_))) {
  take_reference(other.object_);
}

HostArray& HostArray::operator=(const HostArray& other) {
  if (this != &other) *this = HostArray(other);
  return *this;
}

HostArray::HostArray(HostArray&& other) noexcept
    : cls_(std::exchange(other.cls_, HostClass::Double)),
      dims_(std::move(other.dims_)),
      complex_(std::exchange(other.complex_, false)),
      real_(std::move(other.real_)),
      imag_(std::move(other.imag_)),
      object_(std::exchange(other.object_, nullptr)) {
  other.dims_.clear();
}

HostArray& HostArray::operator=(HostArray&& other) noexcept {
  if (this != &other) {
    release();
    cls_ = std::exchange(other.cls_, HostClass::Double);
    dims_ = std::move(other.dims_);
    other.dims_.clear();
    complex_ = std::exchange(other.complex_, false);
    real_ = std::move(other.real_);
    imag_ = std::move(other.imag_);
    object_ = std::exchange(other.object_, nullptr);
  }
  return *this;
}

HostArray::~HostArray() {
  if (object_) object_->release();
}

HostArray HostArray::make_double(double v) {
  HostArray a(HostClass::Double, {1, 1});
  a.real<double>()[0] = v;
  return a;
}

HostArray HostArray::make_complex(double re, double im) {
  HostArray a(HostClass::Double, {1, 1}, Complexity::Complex);
  a.real<double>()[0] = re;
  a.imag<double>()[0] = im;
  return a;
}

HostArray HostArray::make_double_matrix(std::size_t rows, std::size_t cols, Complexity complexity) {
  return HostArray(HostClass::Double, {rows, cols}, complexity);
}

HostArray HostArray::make_double_matrix(std::size_t rows, std::size_t cols,
                                        const std::vector<double>& values) {
  HostArray a(HostClass::Double, {rows, cols});
  if (values.size() != a.numel()) raise(Msg::HostArrayIndexOutOfRange, values.size(), a.numel());
  std::copy(values.begin(), values.end(), a.real<double>());
  return a;
}

HostArray HostArray::make_logical(bool v) {
  HostArray a(HostClass::Logical, {1, 1});
  a.real<bool>()[0] = v;
  return a;
}

HostArray HostArray::make_logical_matrix(std::size_t rows, std::size_t cols) {
  return HostArray(HostClass::Logical, {rows, cols});
}

HostArray HostArray::make_text(std::string_view s) {
  HostArray a(HostClass::Char, {s.empty() ? 0u : 1u, s.size()});
  char16_t* units = a.real<char16_t>();
  for (std::size_t i = 0; i < s.size(); ++i) units[i] = static_cast<unsigned char>(s[i]);
  return a;
}

HostArray HostArray::make_uint8_matrix(std::size_t rows, std::size_t cols) {
  return HostArray(HostClass::UInt8, {rows, cols});
}

HostArray HostArray::make_numeric(HostClass cls, std::vector<std::size_t> dims,
                                  Complexity complexity) {
  if (!host_class_is_numeric(cls)) {
    raise(Msg::HostArrayNotNumericClass, std::string(host_class_name(cls)).c_str());
  }
  return HostArray(cls, std::move(dims), complexity);
}

HostArray HostArray::make_object(XoInterface* object) {
  if (!object) raise(Msg::HostArrayNullObject);
  HostArray a(HostClass::Object, {1, 1});
  a.take_reference(object);
  return a;
}

const std::vector<std::size_t>& HostArray::dims() const {
  return dims_.empty() ? kEmptyDims : dims_;
}

std::size_t HostArray::numel() const {
  if (dims_.empty()) return 0;
  std::size_t n = 1;
  for (std::size_t d : dims_) n *= d;
  return n;
}

double HostArray::real_as_double(std::size_t k) const {
  return read_as_double(real_.get(), k);
}

double HostArray::imag_as_double(std::size_t k) const {
  if (!imag_) {
    read_as_double(real_.get(), k);  // the same class and index checks as a complex array
    return 0.0;
  }
  return read_as_double(imag_.get(), k);
}

double HostArray::read_as_double(const std::byte* buffer, std::size_t k) const {
  if (!is_numeric() && cls_ != HostClass::Logical && cls_ != HostClass::Char) {
    raise(Msg::HostArrayNotNumeric, std::string(class_name()).c_str());
  }
  if (k >= numel()) raise(Msg::HostArrayIndexOutOfRange, k, numel());
  switch (cls_) {
    case HostClass::Logical:
      return load<std::uint8_t>(buffer, k);
    case HostClass::Char:
      return load<char16_t>(buffer, k);
    case HostClass::Double:
      return load<double>(buffer, k);
    case HostClass::Single:
      return load<float>(buffer, k);
    case HostClass::Int8:
      return load<std::int8_t>(buffer, k);
    case HostClass::UInt8:
      return load<std::uint8_t>(buffer, k);
    case HostClass::Int16:
      return load<std::int16_t>(buffer, k);
    case HostClass::UInt16:
      return load<std::uint16_t>(buffer, k);
    case HostClass::Int32:
      return load<std::int32_t>(buffer, k);
    case HostClass::UInt32:
      return load<std::uint32_t>(buffer, k);
    case HostClass::Int64:
      return static_cast<double>(load<std::int64_t>(buffer, k));
    case HostClass::UInt64:
      return static_cast<double>(load<std::uint64_t>(buffer, k));
    default:
      return 0.0;
  }
}

std::string HostArray::text() const {
  if (cls_ != HostClass::Char) raise(Msg::HostArrayNotText, std::string(class_name()).c_str());
  std::string s(numel(), '\0');
  const std::byte* buffer = real_.get();
  for (std::size_t i = 0; i < s.size(); ++i) {
    char16_t unit = load<char16_t>(buffer, i);
    s[i] = unit <= 0xFF ? static_cast<char>(unit) : '?';
  }
  return s;
}

XoInterface* HostArray::detach_object() {
  XoInterface* object = std::exchange(object_, nullptr);
  release();
  return object;
}

void HostArray::release() {
  XoInterface* object = std::exchange(object_, nullptr);
  cls_ = HostClass::Double;
  dims_.clear();
  complex_ = false;
  real_.reset();
  imag_.reset();
  if (object) object->release();
}

void HostArray::check_element_type(bool ok, const char* type_name) const {
  if (!ok) raise(Msg::HostArrayElementType, std::string(class_name()).c_str(), type_name);
}

void HostArray::take_reference(XoInterface* object) {
  object_ = object;
  if (object_) object_->addRef();
}

}  // namespace corbel
