// fi: sums, differences and products, element by element through the sum and product
// registers, and as whole arrays (element-wise with scalar expansion, and the matrix
// product).
//
// Exactness: every sum or product of two elements is formed exactly (the working number
// is widened to hold it) before the register's quantizer rounds it, so the only roundings
// are the ones the registers' and the result's types call for. Slope-bias operands are
// combined as exact rationals of their real-world values (see slopeBiasInto).
#include <gmp.h>

#include <algorithm>
#include <cmath>

#include "fi/exact_values.h"
#include "fi/fi.h"
#include "host/messages.h"
#include "host/services.h"

namespace corbel {
namespace {

// The bits that hold, exactly, any sum or difference of a value of type x and one of
// type y (both on their own 2^FixedExponent grids): from the lower grid to one bit above
// the larger magnitude.
unsigned long sumPrecision(const NumericType& x, const NumericType& y) {
  const long top = std::max<long>(x.getWordLength() + x.getFixedExponent(),
                                  y.getWordLength() + y.getFixedExponent());
  const long bottom = std::min<long>(x.getFixedExponent(), y.getFixedExponent());
  return number::gridPrecision(static_cast<unsigned long>(top + 1 - bottom), bottom);
}

// The bits that hold any product of a value of type x and one of type y.
unsigned long productPrecision(const NumericType& x, const NumericType& y) {
  return number::gridPrecision(static_cast<unsigned long>(x.getWordLength() + y.getWordLength()),
                               static_cast<long>(x.getFixedExponent()) + y.getFixedExponent());
}

// Only fixed-point values are widened: double, single and scaled-double arithmetic is
// double arithmetic by definition.
void widenFor(number& x, unsigned long bits, const NumericType& tx, const NumericType& ty) {
  if (tx.isFixed() && ty.isFixed()) x.setprecision(bits, false);
}

// Sets x to a stand-in for the rational q that every rounding to the grid 2^exponent
// treats exactly as it treats q: the grid point below q plus 0, 1/4, 1/2 or 3/4 of a step
// as q is on the point, below, on or above the midpoint. Ties, directions, overflow and
// underflow all come out as they would for q itself.
void setStandIn(number& x, mpq_srcptr q, int exponent) {
  Rational scaled;
  if (exponent > 0)
    mpq_div_2exp(scaled.v, q, static_cast<mp_bitcnt_t>(exponent));
  else
    mpq_mul_2exp(scaled.v, q, static_cast<mp_bitcnt_t>(-exponent));
  Integer below, rem, twice;
  mpz_fdiv_qr(below.v, rem.v, mpq_numref(scaled.v), mpq_denref(scaled.v));
  long quarter = 0;
  if (mpz_sgn(rem.v) != 0) {
    mpz_mul_2exp(twice.v, rem.v, 1);
    const int c = mpz_cmp(twice.v, mpq_denref(scaled.v));
    quarter = c < 0 ? 1 : (c == 0 ? 2 : 3);
  }
  mpz_mul_2exp(below.v, below.v, 2);
  mpz_add_ui(below.v, below.v, static_cast<unsigned long>(quarter));
  x.setvalue(below.v, exponent - 2);
}

}  // namespace

// ---- Registers --------------------------------------------------------------------------

namespace {

// A register's type from the fimath's sum or product settings, for an owner of type t.
NumericType registerType(const NumericType& t, bool slopeBias, int wordLength,
                         double slopeAdjustmentFactor, int fixedExponent, double bias) {
  ScalingEnum scaling = t.getScaling();
  if ((t.isFixed() || t.isScaledDouble()) && slopeBias) scaling = ScalingEnum::SlopeBias;
  return NumericType(t.getDataType(), scaling, true, wordLength, slopeAdjustmentFactor,
                     fixedExponent, bias);
}

}  // namespace

void fi::initializeSumRegister(const NumericType& T, const fimath& m) const {
  sumRegister_ = std::make_unique<fi>(0.0, T, m, static_cast<unsigned long>(getWordLength()));
  sumRegister_->filog_.reset();
}

void fi::initializeSumRegister(const fimath& m) const {
  initializeSumRegister(
      registerType(type_, m.isSumSlopeBiasScaled(), m.getSumWordLength(),
                   m.getSumSlopeAdjustmentFactor(), m.getSumFixedExponent(), m.getSumBias()),
      m);
}

void fi::initializeSumRegister(const fi& other) const {
  initializeSumRegister(other.type_, math_);
}

void fi::initializeProductRegister(const NumericType& S, const NumericType& P,
                                   const fimath& m) const {
  productRegister_ = std::make_unique<fi>(0.0, P, m, static_cast<unsigned long>(getWordLength()));
  productRegister_->filog_.reset();
  productRegister_->initializeSumRegister(S, m);
}

void fi::initializeProductRegister(const fimath& m) const {
  const NumericType P = registerType(type_, m.isProductSlopeBiasScaled(), m.getProductWordLength(),
                                     m.getProductSlopeAdjustmentFactor(),
                                     m.getProductFixedExponent(), m.getProductBias());
  const NumericType S =
      registerType(type_, m.isSumSlopeBiasScaled(), m.getSumWordLength(),
                   m.getSumSlopeAdjustmentFactor(), m.getSumFixedExponent(), m.getSumBias());
  initializeProductRegister(S, P, m);
}

namespace {
// A register's single element back to zero (both parts when it is complex).
void clearRegister(fi& r) {
  r.setIndex(0);
  r.realRef(0) = 0.0;
  if (r.iscomplex()) r.imagRef(0) = 0.0;
}
}  // namespace

fi& fi::getSumRegister() const {
  if (!sumRegister_)
    initializeSumRegister(math_);
  else
    clearRegister(*sumRegister_);
  return *sumRegister_;
}

fi& fi::getProductRegister() const {
  if (!productRegister_)
    initializeProductRegister(math_);
  else
    clearRegister(*productRegister_);
  return *productRegister_;
}

const quantizer& fi::getSumQuantizer() const {
  const fi& r = getSumRegister();
  return getLogging() ? r.loggingQuantizer_ : r.assignQuantizer_;
}

const quantizer& fi::getProductQuantizer() const {
  const fi& r = getProductRegister();
  return getLogging() ? r.loggingQuantizer_ : r.assignQuantizer_;
}

std::unique_ptr<fi> fi::getAccumulatorCopy() const {
  if (!sumRegister_) initializeSumRegister(math_);
  return std::make_unique<fi>(*sumRegister_, WholeCopy);
}

const qlogger& fi::getsumfilog() const {
  if (!sumRegister_) initializeSumRegister(math_);
  return sumRegister_->filog_;
}

const qlogger& fi::getproductfilog() const {
  if (!productRegister_) initializeProductRegister(math_);
  return productRegister_->filog_;
}

const qlogger& fi::getproductregsumfilog() const {
  if (!productRegister_) initializeProductRegister(math_);
  return productRegister_->getsumfilog();
}

// ---- Element operators ------------------------------------------------------------------

fi& fi::operator=(const fi& b) {
  if (this == &b) return *this;
  // The number is shared, not re-rounded to this element's precision, so the quantizer
  // sees the exact value.
  realRef(index_) = b.real();
  quantizeElement(realRef(index_));
  if (b.iscomplex() && isreal_ && !b.imag().iszero()) coordinateComplexity(true);
  if (!isreal_) {
    imagRef(index_) = b.imag();
    quantizeElement(imagRef(index_));
  }
  return *this;
}

namespace {
// x = x + y or x - y, formed exactly for the two types, then quantized by q.
template <class Quantize>
void addInto(number& x, const number& y, bool subtract, const NumericType& tx,
             const NumericType& ty, Quantize q) {
  widenFor(x, sumPrecision(tx, ty), tx, ty);
  if (subtract)
    x -= y;
  else
    x += y;
  q(x);
}
}  // namespace

fi& fi::operator+=(const fi& b) {
  const auto q = [this](number& x) { quantizeElement(x); };
  if (b.iscomplex()) coordinateComplexity(true);
  addInto(realRef(index_), b.real(), false, type_, b.type_, q);
  if (!isreal_) addInto(imagRef(index_), b.imag(), false, type_, b.type_, q);
  return *this;
}

fi& fi::operator-=(const fi& b) {
  const auto q = [this](number& x) { quantizeElement(x); };
  if (b.iscomplex()) coordinateComplexity(true);
  addInto(realRef(index_), b.real(), true, type_, b.type_, q);
  if (!isreal_) addInto(imagRef(index_), b.imag(), true, type_, b.type_, q);
  return *this;
}

fi& fi::operator*=(const fi& b) {
  // The product lands in the product register, then comes back through this object's
  // assignment quantizer.
  const fi& p = *this * b;
  return *this = p;
}

namespace {
bool sumIsSlopeBias(const fi& a, const fi& b) {
  return a.isSlopeBiasScaled() || b.isSlopeBiasScaled() || a.getFimath().isSumSlopeBiasScaled();
}
}  // namespace

const fi& fi::operator+(const fi& b) const {
  return sumOrDifference(b, false);
}

const fi& fi::operator-(const fi& b) const {
  return sumOrDifference(b, true);
}

const fi& fi::sumOrDifference(const fi& b, bool subtract) const {
  fi& reg = getSumRegister();
  if (iscomplex() || b.iscomplex()) reg.coordinateComplexity(true);
  if (sumIsSlopeBias(*this, b)) {
    // The net bias the register's value carries for a sum and for a difference.
    const NumericType& T = reg.type_;
    reg.bnetForPlus_ = type_.getBias() + b.type_.getBias() - T.getBias();
    reg.bnetForMinus_ = type_.getBias() - b.type_.getBias() - T.getBias();
    Rational x, y;
    realWorld(x.v, real(), type_);
    realWorld(y.v, b.real(), b.type_);
    if (subtract)
      mpq_sub(x.v, x.v, y.v);
    else
      mpq_add(x.v, x.v, y.v);
    reg.storeRealWorld(reg.realRef(0), x.v);
    return reg;
  }
  const auto q = [&reg](number& x) { reg.quantizeElement(x); };
  const auto load = [&](number& r, const number& a) {
    r = a;
    if (math_.getCastBeforeSum()) q(r);
  };
  // With CastBeforeSum the left value is first quantized to the register's type;
  // without, it enters the register as it is.
  const NumericType& left = math_.getCastBeforeSum() ? reg.type_ : type_;
  load(reg.realRef(0), real());
  addInto(reg.realRef(0), b.real(), subtract, left, b.type_, q);
  if (reg.iscomplex()) {
    load(reg.imagRef(0), imag());
    addInto(reg.imagRef(0), b.imag(), subtract, left, b.type_, q);
  }
  return reg;
}

void fi::storeRealWorld(number& element, mpq_srcptr value) const {
  // The element is (value - bias) / factor, exactly, on this type's grid after rounding.
  Rational x, bias(type_.getBias()), factor(type_.getSlopeAdjustmentFactor());
  mpq_sub(x.v, value, bias.v);
  mpq_div(x.v, x.v, factor.v);
  setStandIn(element, x.v, type_.getFixedExponent());
  quantizeElement(element);
}

const fi& fi::operator*(const fi& b) const {
  if (!productRegister_) initializeProductRegister(math_);
  fi& reg = *productRegister_;
  clearRegister(reg);
  const bool slopeBias =
      isSlopeBiasScaled() || b.isSlopeBiasScaled() || math_.isProductSlopeBiasScaled();
  if (slopeBias) {
    fscForTimes_ = type_.getSlopeAdjustmentFactor() * b.type_.getSlopeAdjustmentFactor() /
                   reg.type_.getSlopeAdjustmentFactor();
    aForTimes_ = this;
    bForTimes_ = &b;
    Rational x, y;
    realWorld(x.v, real(), type_);
    realWorld(y.v, b.real(), b.type_);
    mpq_mul(x.v, x.v, y.v);
    reg.storeRealWorld(reg.realRef(0), x.v);
    return reg;
  }
  const auto q = [&reg](number& x) { reg.quantizeElement(x); };
  const unsigned long bits = productPrecision(type_, b.type_);
  // One product of parts, exact, quantized to the product type.
  const auto product = [&](number& out, const number& x, const number& y) {
    out = x;
    widenFor(out, bits, type_, b.type_);
    out *= y;
    q(out);
  };
  if (isreal_ && b.isreal_) {
    product(reg.realRef(0), real(), b.real());
    return reg;
  }
  // A complex product: the four part products in the product register's type, the two
  // two-term sums in its sum register's type.
  fi& acc = *reg.sumRegister_;
  clearRegister(acc);
  acc.coordinateComplexity(true);
  const auto qs = [&acc](number& x) { acc.quantizeElement(x); };
  number p;
  const auto twoTerm = [&](number& out, const number& x1, const number& y1, const number& x2,
                           const number& y2, bool subtract) {
    product(p, x1, y1);
    out = p;
    qs(out);
    product(p, x2, y2);
    addInto(out, p, subtract, acc.type_, reg.type_, qs);
  };
  twoTerm(acc.realRef(0), real(), b.real(), imag(), b.imag(), true);
  twoTerm(acc.imagRef(0), real(), b.imag(), imag(), b.real(), false);
  return acc;
}

// ---- Array operations -------------------------------------------------------------------

namespace {

// The slope-bias refusals of a sum or difference.
void refuseSlopeBiasSum(const fi& a, const fi& b, const char* name) {
  if (!sumIsSlopeBias(a, b)) return;
  if (a.iscomplex() || b.iscomplex()) raise(Msg::FiComplexSlopeBias, name);
  if (!a.getCastBeforeSum()) raise(Msg::FiCastBeforeSumFalseSlopeBias, name);
}

bool productIsSlopeBias(const fi& a, const fi& b) {
  return a.isSlopeBiasScaled() || b.isSlopeBiasScaled() || a.getFimath().isProductSlopeBiasScaled();
}

}  // namespace

template <class Op>
std::unique_ptr<fi> fi::elementwise(const fi& b, const NumericType& T, Op op) const {
  // Scalar expansion: a scalar operand stays at its element 0.
  const fi* shape = this;
  if (numel_ != 1 && b.numel_ != 1)
    checkElementwiseSize(b);
  else if (numel_ == 1)
    shape = &b;
  auto result =
      std::make_unique<fi>(shape->dims(), shape->ndims(), T, math_, iscomplex() || b.iscomplex());
  if (numel_ == 1) setIndex(0);
  if (b.numel_ == 1) b.setIndex(0);
  for (int i = 0; i < result->numel_; ++i) {
    poll_interrupt();
    if (numel_ != 1) setIndex(i);
    if (b.numel_ != 1) b.setIndex(i);
    result->index_ = i;
    *result = op(*this, b);
  }
  return result;
}

std::unique_ptr<fi> fi::plus(const fi& b) const {
  const NumericType T = getNumericTypeForAddOp(b);
  errorIfScaledDoubleSlopeBiasMath(*this, b);
  refuseSlopeBiasSum(*this, b, "plus");
  initializeSumRegister(T, math_);
  if (auto fast = bulkSum(b, T, false)) return fast;
  if (auto fast = wideSum(b, T, false)) return fast;
  return elementwise(b, T, [](const fi& x, const fi& y) -> const fi& { return x + y; });
}

std::unique_ptr<fi> fi::minus(const fi& b) const {
  const NumericType T = getNumericTypeForAddOp(b);
  errorIfScaledDoubleSlopeBiasMath(*this, b);
  refuseSlopeBiasSum(*this, b, "minus");
  initializeSumRegister(T, math_);
  if (auto fast = bulkSum(b, T, true)) return fast;
  if (auto fast = wideSum(b, T, true)) return fast;
  return elementwise(b, T, [](const fi& x, const fi& y) -> const fi& { return x - y; });
}

std::unique_ptr<fi> fi::times(const fi& b) const {
  const NumericType P = getProductTypeForMpyOp(b);
  errorIfScaledDoubleSlopeBiasMath(*this, b);
  const bool complex = iscomplex() || b.iscomplex();
  if (complex && productIsSlopeBias(*this, b)) raise(Msg::FiComplexSlopeBias, "times");
  if (complex)
    initializeProductRegister(getSumTypeForMpyOp(b, P), P, math_);
  else
    initializeProductRegister(P, P, math_);
  if (auto fast = bulkProduct(b, P)) return fast;
  if (auto fast = wideProduct(b, P)) return fast;
  return elementwise(b, P, [](const fi& x, const fi& y) -> const fi& { return x * y; });
}

std::unique_ptr<fi> fi::mtimes(const fi& b) const {
  errorIfScaledDoubleSlopeBiasMath(*this, b);
  if ((iscomplex() || b.iscomplex()) && productIsSlopeBias(*this, b))
    raise(Msg::FiComplexSlopeBias, "mtimes");
  if (numel_ == 1 || b.numel_ == 1) return times(b);
  if (ndims() > 2 || b.ndims() > 2) raise_patterned(Msg::FiMatrixOnly, "mtimes");
  if (n_ != b.m_) raise(Msg::FiInnerDim);
  const NumericType P = getProductTypeForMpyOp(b);
  const NumericType S = n_ == 1 ? P : NumericType(getSumNumericTypeForMatrixMultiply(b, P));
  const bool complex = iscomplex() || b.iscomplex();
  auto result = std::make_unique<fi>(m_, b.n_, S, math_, complex);
  initializeProductRegister(S, P, math_);
  if (bulkMatrixProduct(b, *result)) return result;
  // The loop moves each operand's cursor, so the right operand of an array's product with
  // itself is read through a copy.
  const std::unique_ptr<fi> copy = &b == this ? std::make_unique<fi>(b, WholeCopy) : nullptr;
  const fi& right = copy ? *copy : b;
  fi& reg = *productRegister_;
  fi& acc = *reg.sumRegister_;
  if (complex) acc.coordinateComplexity(true);
  const auto qs = [&acc](number& x) { acc.quantizeElement(x); };
  const bool slopeBias = productIsSlopeBias(*this, b) || acc.isSlopeBiasScaled();
  for (int i = 0; i < m_; ++i) {
    for (int j = 0; j < right.n_; ++j) {
      poll_interrupt();
      clearRegister(acc);
      for (int k = 0; k < n_; ++k) {
        setIndex(i + k * m_);
        right.setIndex(k + j * right.m_);
        if (!complex && slopeBias) {
          // Accumulated as exact real-world values, starting from the first product.
          const fi& p = *this * right;
          Rational sum, term;
          realWorld(term.v, p.real(), reg.type_);
          if (k > 0) realWorld(sum.v, acc.real(), acc.type_);
          mpq_add(sum.v, sum.v, term.v);
          acc.storeRealWorld(acc.realRef(0), sum.v);
          continue;
        }
        if (!complex) {
          const fi& p = *this * right;
          addInto(acc.realRef(0), p.real(), false, acc.type_, reg.type_, qs);
          continue;
        }
        // Each part product is quantized to the product type and accumulated on its own,
        // so the real part of every complex product is itself a two-term sum.
        const auto part = [&](number& out, const number& x, const number& y, bool subtract) {
          number p = x;
          widenFor(p, productPrecision(type_, right.type_), type_, right.type_);
          p *= y;
          reg.quantizeElement(p);
          addInto(out, p, subtract, acc.type_, reg.type_, qs);
        };
        part(acc.realRef(0), real(), right.real(), false);
        part(acc.realRef(0), imag(), right.imag(), true);
        part(acc.imagRef(0), real(), right.imag(), false);
        part(acc.imagRef(0), imag(), right.real(), false);
      }
      result->index_ = i + j * m_;
      *result = acc;
    }
  }
  if (getLogging()) {
    const qlogger scratch;
    const int n = result->numel_ * (complex ? 2 : 1);
    reportOperation(reg.filog_, getProductlog(), scratch, n, n, "*");
    reportOperation(acc.filog_, getSumlog(), scratch, n, n, "*");
  }
  return result;
}

}  // namespace corbel
