// fi: construction, copies and aliases, shape, element access, type setters and the
// operand checks every arithmetic operation makes.
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "fi/element_kernels.h"
#include "fi/element_storage.h"
#include "fi/fi.h"
#include "fi/wide_elements.h"
#include "host/messages.h"
#include "host/services.h"

namespace corbel {

namespace {

template <class Dim>
void checkCount(const Dim* dims, std::size_t ndims) {
  double count = 1;
  for (std::size_t d = 0; d < ndims; ++d) count *= static_cast<double>(dims[d]);
  fi::checkElementCount(count);
}

}  // namespace

const number& fi::zeroNumber() {
  // Always a double body, whatever precision is the default at the first call.
  static const number zero(0.0, 0, false);
  return zero;
}

// ---- Common members ---------------------------------------------------------------------

void fi::useTypePrecision(unsigned long precision) const {
  const int w = type_.getWordLength();
  const unsigned long fromType =
      w > 0 ? number::gridPrecision(static_cast<unsigned long>(w), type_.getFixedExponent())
            : number::getDefaultPrecision();
  number::setDefaultPrecision(std::max(fromType, precision),
                              number::getDefaultForceMultiplePrecision());
}

void fi::initCommon(const NumericType& type, const fimath& math) {
  type_ = type;
  math_ = math;
  updateAssignmentQuantizer();
  shared_ = new SharedData();
  imagSlot_ = &shared_->imag;
}

double fi::arrayMemoryLimit() {
  static const double limit = [] {
    double bytes = static_cast<double>(sysconf(_SC_PHYS_PAGES)) *
                   static_cast<double>(sysconf(_SC_PAGE_SIZE)) / 4;
    rlimit space{};
    if (getrlimit(RLIMIT_AS, &space) == 0 && space.rlim_cur != RLIM_INFINITY)
      bytes = std::min(bytes, static_cast<double>(space.rlim_cur) / 2);
    return bytes > 0 ? bytes : 1e9;
  }();
  return limit;
}

void fi::checkElementCount(double count) {
  const double bytes = count * static_cast<double>(sizeof(number));
  if (count > std::numeric_limits<int>::max() || bytes > arrayMemoryLimit())
    raise(Msg::FiTooLarge, bytes / 1e9, arrayMemoryLimit() / 1e9);
}

void fi::allocate(bool complex) {
  updateNumel();
  // A multiprecision element holds its handle and body (about 72 bytes) and its limbs
  // besides its slot; a double-backed one is its slot.
  const int w = getWordLength();
  const double perElement = w > 52 ? 80.0 + 8.0 * std::ceil(w / 64.0) : 8.0;
  const double bytes = perElement * numel_ * (complex ? 2 : 1);
  if (bytes > arrayMemoryLimit()) {
    delete shared_;
    shared_ = nullptr;
    imagSlot_ = nullptr;
    raise(Msg::FiTooLarge, bytes / 1e9, arrayMemoryLimit() / 1e9);
  }
  shared_->elements = static_cast<size_t>(numel_);
  realData_ = ElementStorage::makeZeros(shared_->elements);
  if (complex) allocateImag();
  isreal_ = !complex;
}

void fi::allocateImag() {
  *imagSlot_ = ElementStorage::makeZeros(shared_->elements);
}

void fi::releaseData() {
  if (shared_ == nullptr) return;
  wide_.reset();  // stored integers are never shared
  if (--shared_->shareCount == 0) {
    ElementStorage::destroy(realData_, shared_->elements);
    ElementStorage::destroy(shared_->imag, shared_->elements);
    delete shared_;
  }
  realData_ = nullptr;
  shared_ = nullptr;
  imagSlot_ = nullptr;
}

double fi::removeSlopeAdjustmentFactorBias(double v) const {
  // A multiplication by the reciprocal, not a division, so that results match bit for bit
  // wherever the same conversion is made.
  return (1.0 / type_.getSlopeAdjustmentFactor()) * (v - type_.getBias());
}

double fi::addSlopeAdjustmentFactorBias(double v) const {
  return type_.getBias() + type_.getSlopeAdjustmentFactor() * v;
}

number& fi::quantizeElement(number& x) const {
  return getLogging() ? loggingQuantizer_.quantize(x, filog_)
                      : assignQuantizer_.quantize(x, filog_);
}

void fi::storeDouble(number& element, double v) {
  if (std::isnan(v)) raise(Msg::FiNoNaN);
  NumericType::checkNaNInf(type_.getDataType(), v);
  element = number(type_.isSlopeBiasScaled() ? removeSlopeAdjustmentFactorBias(v) : v);
  quantizeElement(element);
}

// ---- Constructors -----------------------------------------------------------------------

fi::fi() : fi(0.0, NumericType(), fimath()) {}

fi::fi(double value, const NumericType& type, const fimath& math, unsigned long precision) {
  initCommon(type, math);
  useTypePrecision(precision);
  allocate(false);
  try {
    storeDouble(realData_[0], value);
  } catch (...) {
    releaseData();
    throw;
  }
}

fi::fi(double value, bool issigned, int wordLength, int fractionLength, const fimath& math,
       unsigned long precision)
    : fi(value, NumericType(issigned, wordLength, fractionLength), math, precision) {}

fi::fi(const HostArray& values, const NumericType& type, const fimath& math) {
  checkCount(values.dims().data(), values.dims().size());
  switch (values.element_class()) {
    case HostClass::Int64:
      raise(Msg::FiConstructorInt64);
    case HostClass::UInt64:
      raise(Msg::FiConstructorUint64);
    default:
      if (!values.is_numeric()) raise(Msg::FiConstructorNumeric);
  }
  initCommon(type, math);
  useTypePrecision();
  std::vector<int> dims(values.dims().begin(), values.dims().end());
  copyDimensions(dims.data(), static_cast<int>(dims.size()));
  if (values.element_class() == HostClass::Double &&
      storeWide(static_cast<const double*>(values.real_data()),
                values.is_complex() ? static_cast<const double*>(values.imag_data()) : nullptr))
    return;
  allocate(values.is_complex());
  try {
    if (values.element_class() == HostClass::Double &&
        storeDoubles(static_cast<const double*>(values.real_data()), false) &&
        (isreal_ || storeDoubles(static_cast<const double*>(values.imag_data()), true)))
      return;
    for (int i = 0; i < numel_; ++i) {
      poll_interrupt();
      storeDouble(realData_[i], values.real_as_double(static_cast<size_t>(i)));
      if (!isreal_) storeDouble((*imagSlot_)[i], values.imag_as_double(static_cast<size_t>(i)));
    }
  } catch (...) {
    releaseData();
    throw;
  }
}

fi::fi(const double* re, const double* im, const int* dims, int ndims, const NumericType& type,
       const fimath& math) {
  checkCount(dims, static_cast<std::size_t>(ndims));
  initCommon(type, math);
  useTypePrecision();
  copyDimensions(dims, ndims);
  if (storeWide(re, im)) return;
  allocate(im != nullptr);
  try {
    if (storeDoubles(re, false) && (im == nullptr || storeDoubles(im, true))) return;
    for (int i = 0; i < numel_; ++i) {
      poll_interrupt();
      storeDouble(realData_[i], re[i]);
      if (im) storeDouble((*imagSlot_)[i], im[i]);
    }
  } catch (...) {
    releaseData();
    throw;
  }
}

fi::fi(double re, double im, bool complex, const int* dims, int ndims, const NumericType& type,
       const fimath& math) {
  checkCount(dims, static_cast<std::size_t>(ndims));
  initCommon(type, math);
  useTypePrecision();
  copyDimensions(dims, ndims);
  allocate(complex);
  try {
    for (int i = 0; i < numel_; ++i) {
      poll_interrupt();
      storeDouble(realData_[i], re);
      if (complex) storeDouble((*imagSlot_)[i], im);
    }
  } catch (...) {
    releaseData();
    throw;
  }
}

fi::fi(const int* dims, int ndims, const NumericType& type, const fimath& math, bool complex) {
  checkCount(dims, static_cast<std::size_t>(ndims));
  initCommon(type, math);
  useTypePrecision();
  copyDimensions(dims, ndims);
  allocate(complex);
}

fi::fi(const int* dims, int ndims, const NumericType& type, const fimath& math, bool complex,
       const qlogger& log)
    : fi(dims, ndims, type, math, complex) {
  filog_ = log;
}

fi::fi(const int* dims, int ndims, const NumericType& type, const fimath& math, Unfilled) {
  checkCount(dims, static_cast<std::size_t>(ndims));
  initCommon(type, math);
  useTypePrecision();
  copyDimensions(dims, ndims);
  updateNumel();
  shared_->elements = static_cast<size_t>(numel_);
}

fi::fi(int m, int n, const NumericType& type, const fimath& math, bool complex) {
  const int dims[] = {m, n};
  checkCount(dims, 2);
  initCommon(type, math);
  useTypePrecision();
  copyDimensions(dims, 2);
  allocate(complex);
}

fi::fi(const fi& source, CopyMode mode) {
  initCommon(source.type_, source.math_);
  useTypePrecision();
  if (mode == CurrentElement) {
    dims_.assign(static_cast<size_t>(source.ndims()), 1);
    allocate(source.iscomplex());
    realData_[0] = source.real();
    if (!isreal_) (*imagSlot_)[0] = source.imag();
    return;
  }
  copyDimensions(source.dims(), source.ndims());
  filog_ = source.getfilog();
  if (source.wide_) {
    shared_->elements = static_cast<size_t>(numel_);
    isreal_ = source.isreal_;
    wide_ = std::make_unique<WideElements>(*source.wide_);
  } else {
    allocate(source.iscomplex());
    // Copies share the number bodies until either side changes an element; a part of
    // inline doubles is copied as the doubles it is.
    const auto copyPart = [&](number* to, const number* from) {
      const std::size_t n = shared_->elements;
      if (from == nullptr) return;  // an alias's dropped imaginary part: zeros
      if (kernels::alldoubles(from, n)) {
        std::memcpy(static_cast<void*>(to), from, n * sizeof(number));
        return;
      }
      for (std::size_t i = 0; i < n; ++i) to[i] = from[i];
    };
    copyPart(realData_, &source.real(0));
    if (!isreal_) copyPart(*imagSlot_, *source.imagSlot_);
  }
  if (source.sumRegister_) sumRegister_ = std::make_unique<fi>(*source.sumRegister_, WholeCopy);
  if (source.productRegister_)
    productRegister_ = std::make_unique<fi>(*source.productRegister_, WholeCopy);
}

fi::fi(const fi& source, CopyIndex)
    : realData_((source.materialize(), source.realData_)),
      shared_(source.shared_),
      imagSlot_(source.imagSlot_),
      isreal_(source.isreal_),
      dims_(source.dims_),
      index_(source.index_),
      type_(source.type_),
      math_(source.math_) {
  ++shared_->shareCount;
  updateAssignmentQuantizer();
  updateNumel();
}

fi::~fi() {
  releaseData();
}

void fi::resizeAndZero(const int* dims, int ndims, const NumericType& type, const fimath& math,
                       bool complex) {
  checkCount(dims, static_cast<std::size_t>(ndims));
  releaseData();
  sumRegister_.reset();
  productRegister_.reset();
  initCommon(type, math);
  useTypePrecision();
  copyDimensions(dims, ndims);
  index_ = 0;
  allocate(complex);
}

void fi::resizeAndZero(int m, int n, const NumericType& type, const fimath& math, bool complex) {
  const int dims[] = {m, n};
  resizeAndZero(dims, 2, type, math, complex);
}

// ---- Shape and elements -----------------------------------------------------------------

void fi::copyDimensions(const int* dims, int ndims) {
  dims_.assign(dims, dims + ndims);
  while (dims_.size() < 2) dims_.push_back(1);
  updateNumel();
}

int fi::getDimension(int d) const {
  if (d < 1) raise(Msg::FiBadDimension);
  return d <= ndims() ? dims_[static_cast<size_t>(d - 1)] : 1;
}

void fi::updateNumel() {
  m_ = getDimension(1);
  length_ = m_;
  n_ = 1;
  for (int d = 2; d <= ndims(); ++d) {
    length_ = std::max(length_, getDimension(d));
    n_ *= getDimension(d);
  }
  numel_ = n_ * m_;
}

void fi::checkIndex(int i) const {
  if (i < 0 || i >= numel_) raise(Msg::FiBadIndex);
}

void fi::setIndex(int i) const {
  checkIndex(i);
  index_ = i;
}

void fi::setIsReal(bool isreal) {
  materialize();
  isreal_ = isreal;
}

bool fi::isvector() const {
  if (ndims() != 2) return false;
  return (m_ == 1 || n_ == 1) && numel_ >= 1;
}

bool fi::isSameSize(const fi& other) const {
  if (numel_ != other.numel_) return false;
  const int n = std::max(ndims(), other.ndims());
  for (int d = 1; d <= n; ++d)
    if (getDimension(d) != other.getDimension(d)) return false;
  return true;
}

void fi::coordinateComplexity(bool complex) {
  if (!complex || !isreal_) return;
  materialize();
  if (*imagSlot_ == nullptr) allocateImag();
  isreal_ = false;
}

void fi::freeImagIfZero() {
  if (isreal_) return;
  materialize();
  for (int i = 0; i < numel_; ++i)
    if (!(*imagSlot_)[i].iszero()) return;
  ElementStorage::destroy(*imagSlot_, shared_->elements);
  *imagSlot_ = nullptr;
  isreal_ = true;
}

// ---- Type and math ----------------------------------------------------------------------

void fi::updateAssignmentQuantizer() {
  assignQuantizer_.set(type_, math_.getRoundMode(), math_.getOverflowMode(), false);
  loggingQuantizer_.set(type_, math_.getRoundMode(), math_.getOverflowMode(), false);
}

void fi::quantizeAll() {
  materialize();
  // Whole parts while their elements are doubles, then element by element from where that
  // stopped (quantizing twice changes nothing, and without a log nothing is counted).
  const int from = isreal_ ? quantizeDoublesInPlace(false)
                           : std::min(quantizeDoublesInPlace(false), quantizeDoublesInPlace(true));
  for (int i = from; i < numel_; ++i) {
    quantizeElement(realData_[i]);
    if (!isreal_) quantizeElement((*imagSlot_)[i]);
  }
}

void fi::setNumericType(const NumericType& type) {
  // The quantizers are built first: a type they refuse leaves this object as it was.
  quantizer plain = assignQuantizer_;
  loggingquantizer logging = loggingQuantizer_;
  plain.set(type, math_.getRoundMode(), math_.getOverflowMode(), false);
  logging.set(type, math_.getRoundMode(), math_.getOverflowMode(), false);
  type_ = type;
  assignQuantizer_ = plain;
  loggingQuantizer_ = logging;
  useTypePrecision();
  quantizeAll();
}

namespace {

// Applies one setter to a copy of the type; the fi changes only when the type did.
template <class F>
void change_type(fi& x, F set) {
  NumericType t = x.getNumericType();
  set(t);
  if (!t.isequal(x.getNumericType()) ||
      t.getDataTypeMode() != x.getNumericType().getDataTypeMode() ||
      t.getScaling() != x.getNumericType().getScaling())
    x.setNumericType(t);
}

}  // namespace

void fi::setSigned(bool v) {
  change_type(*this, [&](NumericType& t) { t.setSigned(v); });
}
void fi::setWordLength(int v) {
  change_type(*this, [&](NumericType& t) { t.setWordLength(v); });
}
void fi::setFractionLength(int v) {
  change_type(*this, [&](NumericType& t) { t.setFractionLength(v); });
}
void fi::setFixedExponent(int v) {
  change_type(*this, [&](NumericType& t) { t.setFixedExponent(v); });
}
void fi::setSlope(double v) {
  change_type(*this, [&](NumericType& t) { t.setSlope(v); });
}
void fi::setSlopeAdjustmentFactor(double v) {
  change_type(*this, [&](NumericType& t) { t.setSlopeAdjustmentFactor(v); });
}
void fi::setBias(double v) {
  change_type(*this, [&](NumericType& t) { t.setBias(v); });
}
void fi::setScaling(ScalingEnum v) {
  change_type(*this, [&](NumericType& t) { t.setScaling(v); });
}
void fi::setDataTypeMode(DataTypeModeEnum v) {
  change_type(*this, [&](NumericType& t) { t.setDataTypeMode(v, true); });
}
void fi::setDataType(DataTypeEnum v) {
  change_type(*this, [&](NumericType& t) { t.setDataType(v); });
}

void fi::setFimath(const fimath& math) {
  math_ = math;
  updateAssignmentQuantizer();
}

void fi::setLastPropertySet(PropertyEnum code) {
  if (code < kFirstProperty || code > kLastProperty)
    raise(Msg::FiBadPropertyEnum, kFirstProperty, kLastProperty, code);
  lastPropertySet_ = code;
}

// ---- Operand checks ---------------------------------------------------------------------

void fi::errorIfBooleanMath(const fi& a) {
  if (a.isBoolean()) raise(Msg::FiNoBooleanMath);
}

void fi::errorIfMixedMath(const fi& a, const fi& b) {
  // Fixed and scaled double combine freely; any other pair must agree.
  if (a.isScaledType() && b.isScaledType()) return;
  if (a.type_.getDataType() != b.type_.getDataType()) raise(Msg::FiMixedMath);
}

void fi::errorIfFimathMismatch(const fi& a, const fi& b) {
  if (!a.math_.isequal(b.math_)) raise(Msg::FiFimathMismatch);
}

void fi::errorIfMathMismatch(const fi& a, const fi& b) {
  errorIfBooleanMath(a);
  errorIfBooleanMath(b);
  errorIfMixedMath(a, b);
  // A scaled-double operand is exempt from the fimath comparison.
  if (a.isFixed() && b.isFixed()) errorIfFimathMismatch(a, b);
}

void fi::errorIfSlopeBiasMath(const fi& a) {
  if (a.isSlopeBiasScaled()) raise(Msg::FiOnlyBinaryPointMath);
}

void fi::errorIfScaledDoubleSlopeBiasMath(const fi& a, const fi& b) {
  const auto sdsb = [](const fi& x) {
    return x.type_.getDataTypeMode() == DataTypeModeEnum::ScaledDoubleSlopeBias &&
           x.isSlopeBiasScaled();
  };
  if (sdsb(a) || sdsb(b)) raise(Msg::FiScaledDoubleSlopeBiasMath);
}

void fi::errorIfScaledDouble(const char* functionName) const {
  if (isScaledDouble()) raise(Msg::FiScaledDoubleOn, functionName);
}

void fi::checkElementwiseSize(const fi& b) const {
  if (!isscalar() && !b.isscalar() && !isSameSize(b)) raise(Msg::FiDimAgree);
}

}  // namespace corbel
