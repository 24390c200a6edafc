// fi: conversions to and from host arrays beyond the doubles and the stored integers of one
// built-in integer class: singles, whole-array value assignment, and the stored integers in
// words of 32 bits for words wider than 64 bits.
//
// Word layout: an array of W > 64 bits gives a uint32 matrix of ceil(W/32) rows, one column
// per element (the real parts' columns, then the imaginary parts'), each column the W-bit
// two's-complement pattern of the stored integer, least significant word first. Up to 64
// bits the layout is the stored integers in the smallest built-in integer class.
#include <gmp.h>

#include <cstdint>
#include <vector>

#include "fi/exact_values.h"
#include "fi/fi.h"
#include "host/messages.h"

namespace corbel {
namespace {

std::size_t wordsFor(int w) {
  return static_cast<std::size_t>((w + 31) / 32);
}

}  // namespace

HostArray fi::toHostSingle() const {
  const HostArray values = toHostDouble();
  HostArray out = HostArray::make_numeric(HostClass::Single, values.dims(),
                                          iscomplex() ? Complexity::Complex : Complexity::Real);
  for (std::size_t k = 0; k < values.numel(); ++k) {
    out.real<float>()[k] = static_cast<float>(values.real<double>()[k]);
    if (iscomplex()) out.imag<float>()[k] = static_cast<float>(values.imag<double>()[k]);
  }
  return out;
}

namespace {

// The positions of every element of an array of n.
HostArray allPositions(int n) {
  HostArray all(HostClass::Double, {1, static_cast<std::size_t>(n)});
  for (int i = 0; i < n; ++i) all.real<double>()[i] = i + 1.0;
  return all;
}

}  // namespace

void fi::setValues(const HostArray& values) {
  const ValueSource from{nullptr, &values};
  from.check(Msg::FiAssignedNotNumeric);
  if (values.numel() != static_cast<std::size_t>(numel_)) raise(Msg::FiAssignedCount);
  assignAt(allPositions(numel_), from);
}

void fi::copydata(const fi& b) {
  if (b.numel_ != numel_) raise(Msg::FiAssignedCount);
  assignAt(allPositions(numel_), {&b, nullptr});
}

HostArray fi::tessaronArray() const {
  const int w = getWordLength();
  if (!type_.isFixed()) raise(Msg::FiFixedOnly);
  if (w <= 64) return storedIntegers();
  const std::size_t words = wordsFor(w), parts = isreal_ ? 1 : 2;
  HostArray out(HostClass::UInt32, {words, parts * static_cast<std::size_t>(numel_)});
  std::uint32_t* data = out.real<std::uint32_t>();
  Rational q;
  Integer pattern;
  for (std::size_t c = 0; c < parts * static_cast<std::size_t>(numel_); ++c) {
    const int i = static_cast<int>(c % static_cast<std::size_t>(numel_));
    (c < static_cast<std::size_t>(numel_) ? real(i) : imag(i)).getvalue(q.v);
    // The stored integer, then its W-bit pattern.
    const long e = type_.getFixedExponent();
    if (e > 0) mpq_div_2exp(q.v, q.v, static_cast<mp_bitcnt_t>(e));
    if (e < 0) mpq_mul_2exp(q.v, q.v, static_cast<mp_bitcnt_t>(-e));
    mpz_fdiv_r_2exp(pattern.v, mpq_numref(q.v), static_cast<mp_bitcnt_t>(w));
    for (std::size_t k = 0; k < words; ++k) {
      Integer word;
      mpz_fdiv_q_2exp(word.v, pattern.v, static_cast<mp_bitcnt_t>(32 * k));
      data[c * words + k] = static_cast<std::uint32_t>(mpz_get_ui(word.v) & 0xFFFFFFFFu);
    }
  }
  return out;
}

void fi::setTessaronArray(const HostArray& values) {
  const int w = getWordLength();
  if (!type_.isFixed()) raise(Msg::FiFixedOnly);
  if (w <= 64) return setStoredIntegers(values);
  const std::size_t words = wordsFor(w), parts = isreal_ ? 1 : 2;
  const std::size_t columns = parts * static_cast<std::size_t>(numel_);
  if (values.element_class() != HostClass::UInt32 || values.is_complex() ||
      values.dims() != std::vector<std::size_t>{words, columns})
    raise(Msg::FiIntSizeMismatch);
  const std::uint32_t* data = values.real<std::uint32_t>();
  // Every column is read and checked before any element changes.
  std::vector<number> stored(columns);
  Integer pattern, top;
  mpz_setbit(top.v, static_cast<mp_bitcnt_t>(w));
  for (std::size_t c = 0; c < columns; ++c) {
    mpz_set_ui(pattern.v, 0);
    for (std::size_t k = words; k-- > 0;) {
      mpz_mul_2exp(pattern.v, pattern.v, 32);
      mpz_add_ui(pattern.v, pattern.v, data[c * words + k]);
    }
    if (mpz_cmp(pattern.v, top.v) >= 0) raise(Msg::FiIntOutOfRange);
    if (getSigned() && mpz_tstbit(pattern.v, static_cast<mp_bitcnt_t>(w - 1)))
      mpz_sub(pattern.v, pattern.v, top.v);
    stored[c].setvalue(pattern.v, type_.getFixedExponent());
  }
  for (std::size_t c = 0; c < columns; ++c) {
    const int i = static_cast<int>(c % static_cast<std::size_t>(numel_));
    (c < static_cast<std::size_t>(numel_) ? realRef(i) : imagRef(i)) = stored[c];
  }
}

}  // namespace corbel
