// fi: the bit operations on stored integers. The number layer does the work on each element
// (the element form is the stored integer times 2^FixedExponent); this file checks the
// operands, picks the representation and walks the elements. The representation is the
// first element's: its 64-bit forms for a double body, the multiprecision forms otherwise; a
// word of more than 52 bits, whose patterns the 64-bit forms would pass through a double
// inexactly, or a grid beyond a double's exponent range, always takes the multiprecision
// forms. Under the multiprecision forms a double-backed element is first made
// multiprecision, and under the 64-bit forms a multiprecision element takes the 64-bit forms
// of its own body.
#include <cmath>
#include <cstdint>

#include "fi/exact_values.h"
#include "fi/fi.h"
#include "host/messages.h"
#include "host/services.h"
#include "number/doublenumber.h"
#include "number/mpnumber.h"

namespace corbel {
namespace {

class BitWord {
 public:
  explicit BitWord(const fi& x)
      : issigned_(x.getSigned()),
        w_(x.getWordLength()),
        factor_(x.getNumericType().getSlopeAdjustmentFactor()),
        e_(x.getNumericType().getFixedExponent()),
        bias_(x.getBias()),
        mp_(number::gridPrecision(static_cast<unsigned long>(w_), e_) > 52 ||
            (x.numel() > 0 && !x.real(0).isdouble())) {
    if (mp_) {
      mpz_init(mask_);
      mpnumber::bitcmpXorMask(mask_, w_);
      mpnumber::twoToTheN(two_, w_);
    } else {
      mask64_ = doublenumber::bitcmpXorMask(w_);
      two64_ = std::uint64_t{1} << w_;
    }
  }
  BitWord(const BitWord&) = delete;
  BitWord& operator=(const BitWord&) = delete;
  ~BitWord() {
    if (mp_) {
      mpz_clear(mask_);
      mpfr_clear(two_);
    }
  }

  void complement(number& x) const {
    if (mp_)
      fit(x).bitcmp(issigned_, w_, factor_, e_, bias_, mask_, two_);
    else
      x.bitcmp(issigned_, w_, factor_, e_, bias_, mask64_, two64_);
  }
  void combine(number& x, const number& y, fi::BitOp op) const {
    number other = y;
    if (mp_) {
      fit(x);
      fit(other);
    }
    switch (op) {
      case fi::BitOp::And:
        mp_ ? x.mpbitand(other, issigned_, w_, factor_, e_, bias_, two_)
            : x.doublebitand(other, issigned_, w_, factor_, e_, bias_, two64_);
        return;
      case fi::BitOp::Or:
        mp_ ? x.mpbitor(other, issigned_, w_, factor_, e_, bias_, two_)
            : x.doublebitor(other, issigned_, w_, factor_, e_, bias_, two64_);
        return;
      case fi::BitOp::Xor:
        mp_ ? x.mpbitxor(other, issigned_, w_, factor_, e_, bias_, two_)
            : x.doublebitxor(other, issigned_, w_, factor_, e_, bias_, two64_);
        return;
    }
  }
  unsigned char get(const number& x, long position) const {
    if (!mp_) return x.bitget(position, issigned_, w_, factor_, e_, bias_, two64_);
    number y = x;
    return fit(y).bitget(position, issigned_, w_, factor_, e_, bias_, two_);
  }
  void set(number& x, long position, bool bit) const {
    if (mp_)
      fit(x).bitset(position, bit, issigned_, w_, factor_, e_, bias_, two_);
    else
      x.bitset(position, bit, issigned_, w_, factor_, e_, bias_, two64_);
  }

 private:
  number& fit(number& x) const {
    if (x.isdouble()) x.setprecision(static_cast<unsigned long>(std::max(w_, 53)), true);
    return x;
  }

  bool issigned_;
  int w_;
  double factor_;
  int e_;
  double bias_;
  bool mp_;
  std::uint64_t mask64_ = 0, two64_ = 0;
  mpz_t mask_;
  mpfr_t two_;
};

// A position of a host array as an integer; a fraction, NaN or a position beyond the long
// range becomes one the number layer refuses.
long position(const HostArray& a, std::size_t k) {
  const double v = a.real_as_double(k);
  return std::fabs(v) < 1e18 && v == std::trunc(v) ? static_cast<long>(v) : -1;
}

std::size_t at(std::size_t n, std::size_t k) {
  return n == 1 ? 0 : k;
}

}  // namespace

std::unique_ptr<fi> fi::complementByLoop() const {
  // The complement is the exclusive or with the all-ones word: -1 or 2^W - 1 stored.
  if (getLogging()) return nullptr;
  Integer allOnes;
  if (getSigned()) {
    mpz_set_si(allOnes.v, -1);
  } else {
    mpz_setbit(allOnes.v, static_cast<mp_bitcnt_t>(getWordLength()));
    mpz_sub_ui(allOnes.v, allOnes.v, 1);
  }
  fi ones(1, 1, type_, math_, iscomplex());
  ones.realRef(0).setvalue(allOnes.v, type_.getFixedExponent());
  if (iscomplex()) ones.imagRef(0).setvalue(allOnes.v, type_.getFixedExponent());
  return wide_ ? wideBitwise(ones, BitOp::Xor) : bulkBitwise(ones, BitOp::Xor);
}

std::unique_ptr<fi> fi::bitcmp() const {
  errorIfScaledDouble("bitcmp");
  if (numel_ > 0)
    if (auto r = complementByLoop()) return r;
  auto r = std::make_unique<fi>(*this, WholeCopy);
  if (r->numel_ == 0) return r;
  const BitWord word(*this);
  for (int i = 0; i < r->numel_; ++i) word.complement(r->realRef(i));
  if (r->iscomplex())
    for (int i = 0; i < r->numel_; ++i) word.complement(r->imagRef(i));
  return r;
}

std::unique_ptr<fi> fi::bitandorxor(const fi& b, BitOp op, const char* name) const {
  errorIfScaledDouble(name);
  if (!type_.isequal(b.type_)) raise(Msg::FiBitMixedTypes);
  if (numel_ != 1 && b.numel_ != 1) checkElementwiseSize(b);
  const fi& shape = numel_ == 1 ? b : *this;
  if (shape.numel_ > 0)
    if (auto r = wide_ || b.wide_ ? wideBitwise(b, op) : bulkBitwise(b, op)) return r;
  const bool complex = iscomplex() || b.iscomplex();
  auto r = std::make_unique<fi>(shape.dims(), shape.ndims(), type_, math_, complex);
  if (r->numel_ == 0) return r;
  const BitWord word(*this);
  for (int k = 0; k < r->numel_; ++k) {
    poll_interrupt();
    const int i = numel_ == 1 ? 0 : k, j = b.numel_ == 1 ? 0 : k;
    word.combine(r->realRef(k) = real(i), b.real(j), op);
    if (complex) word.combine(r->imagRef(k) = imag(i), b.imag(j), op);
  }
  return r;
}

std::unique_ptr<fi> fi::fibitand(const fi& b) const {
  return bitandorxor(b, BitOp::And, "bitand");
}
std::unique_ptr<fi> fi::fibitor(const fi& b) const {
  return bitandorxor(b, BitOp::Or, "bitor");
}
std::unique_ptr<fi> fi::bitxor(const fi& b) const {
  return bitandorxor(b, BitOp::Xor, "bitxor");
}

HostArray fi::bitget(const HostArray& positions) const {
  errorIfScaledDouble("bitget");
  if (!positions.is_numeric()) raise(Msg::FiBitgetIndexNumeric);
  if (positions.is_complex()) raise(Msg::FiBitgetInputsReal);
  const std::size_t n = static_cast<std::size_t>(numel_), np = positions.numel();
  if (n == 0)
    return HostArray(HostClass::UInt8, std::vector<std::size_t>(dims_.begin(), dims_.end()));
  // A scalar on either side goes with every element of the other; no positions at all go
  // with a scalar only.
  if (n != 1 && np != 1 && n != np) raise(Msg::FiBitgetSizeMismatch);
  HostArray out(HostClass::UInt8, n == 1 && np != 1
                                      ? positions.dims()
                                      : std::vector<std::size_t>(dims_.begin(), dims_.end()));
  if (out.numel() == 0 || bulkBitget(positions, out)) return out;
  const BitWord word(*this);
  auto* bits = static_cast<std::uint8_t*>(out.real_data());
  for (std::size_t k = 0; k < out.numel(); ++k)
    bits[k] = word.get(real(static_cast<int>(at(n, k))), position(positions, at(np, k)));
  return out;
}

std::unique_ptr<fi> fi::bitset(const HostArray& positions) const {
  return bitset(positions, HostArray::make_double(1));
}

std::unique_ptr<fi> fi::bitset(const HostArray& positions, const HostArray& values) const {
  errorIfScaledDouble("bitset");
  if (!positions.is_numeric()) raise(Msg::FiBitsetIndexNumeric);
  if (positions.is_complex()) raise(Msg::FiBitsetInputsReal);
  if (!values.is_numeric() && values.element_class() != HostClass::Logical)
    raise(Msg::FiBitsetValuesNumeric);
  const std::size_t n = static_cast<std::size_t>(numel_), np = positions.numel();
  // A scalar bit value goes with every position.
  if (values.numel() != 1 && values.dims() != positions.dims()) raise(Msg::FiBitsetArgSizeMismatch);
  if (n != 1 && np != 1 && n != np) raise(Msg::FiBitsetSizeMismatch);
  const bool byPositions = n == 1 && np != 1;
  std::vector<int> dims(dims_);
  if (byPositions) dims.assign(positions.dims().begin(), positions.dims().end());
  if (n > 0 && (!byPositions || np > 0))
    if (auto r = bulkBitset(positions, values, dims)) return r;
  auto r =
      std::make_unique<fi>(dims.data(), static_cast<int>(dims.size()), type_, math_, iscomplex());
  if (r->numel_ == 0) return r;
  const BitWord word(*this);
  for (std::size_t k = 0; k < static_cast<std::size_t>(r->numel_); ++k) {
    const int i = static_cast<int>(at(n, k)), out = static_cast<int>(k);
    if (iscomplex()) r->imagRef(out) = imag(i);
    const bool bit = values.real_as_double(at(values.numel(), k)) != 0.0;
    word.set(r->realRef(out) = real(i), position(positions, at(np, k)), bit);
  }
  return r;
}

std::unique_ptr<fi> fi::bitshift(long k) const {
  // The element form is the stored integer times 2^FixedExponent whatever the scaling, so
  // scaling the elements by 2^k and quantizing them again shifts the stored integers; the
  // slope, bias and slope adjustment factor stay as they are.
  return scaledByPowerOfTwo(k);
}

}  // namespace corbel
