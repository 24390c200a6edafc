// fi: the stored integers as radix text and back, at every word length.
//
// Layout: one text row per element row (the array taken as rows x the rest), the elements of
// a row in order separated by two spaces; a complex array gives the rows of its real parts,
// then the rows of its imaginary parts. Each element's text has one width:
// - radix 2, 8 and 16: the W-bit two's-complement pattern, zero-padded to the digits W bits
//   need (W, ceil(W/3), ceil(W/4));
// - radix 10: the pattern as an unsigned decimal, right-aligned to the digits of 2^W - 1;
// - signed decimal: the stored integer itself, right-aligned to the widest in the array.
// Reading text back takes the whitespace-separated numbers in the same order; each must be a
// pattern of at most W bits in the radix (a signed decimal may also be negative, within the
// type's range), and there must be exactly one per part of every element.
#include <gmp.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "fi/exact_values.h"
#include "fi/fi.h"
#include "host/messages.h"
#include "host/services.h"

namespace corbel {
namespace {

// The stored integer of an element (its value over 2^FixedExponent, an integer).
void storedInteger(mpz_ptr out, const number& x, const NumericType& t) {
  Rational q;
  x.getvalue(q.v);
  const long e = t.getFixedExponent();
  if (e > 0) mpq_div_2exp(q.v, q.v, static_cast<mp_bitcnt_t>(e));
  if (e < 0) mpq_mul_2exp(q.v, q.v, static_cast<mp_bitcnt_t>(-e));
  mpz_set(out, mpq_numref(q.v));
}

std::size_t digitsFor(int w, int radix) {
  switch (radix) {
    case 2:
      return static_cast<std::size_t>(w);
    case 8:
      return static_cast<std::size_t>((w + 2) / 3);
    case 16:
      return static_cast<std::size_t>((w + 3) / 4);
    default: {
      Integer all;
      mpz_setbit(all.v, static_cast<mp_bitcnt_t>(w));
      mpz_sub_ui(all.v, all.v, 1);
      return mpz_sizeinbase(all.v, 10);
    }
  }
}

std::string digits(mpz_srcptr v, int radix) {
  std::string s(mpz_sizeinbase(v, radix) + 2, '\0');
  mpz_get_str(s.data(), radix, v);
  s.resize(std::char_traits<char>::length(s.c_str()));
  return s;
}

// A char matrix of the given rows (all of one length).
HostArray charMatrix(const std::vector<std::string>& rows) {
  const std::size_t cols = rows.empty() ? 0 : rows[0].size();
  HostArray a(HostClass::Char, {rows.size(), cols});
  char16_t* units = a.real<char16_t>();
  for (std::size_t r = 0; r < rows.size(); ++r)
    for (std::size_t c = 0; c < cols; ++c)
      units[r + c * rows.size()] = static_cast<unsigned char>(rows[r][c]);
  return a;
}

// The whitespace-separated words of a char matrix, row by row.
std::vector<std::string> words(const HostArray& text) {
  const std::string all = text.text();  // column-major
  const std::size_t rows = text.numel() == 0 ? 0 : text.dims()[0];
  const std::size_t cols = rows == 0 ? 0 : all.size() / rows;
  std::vector<std::string> out;
  for (std::size_t r = 0; r < rows; ++r) {
    std::string word;
    for (std::size_t c = 0; c <= cols; ++c) {
      const char ch = c < cols ? all[r + c * rows] : ' ';
      if (std::isspace(static_cast<unsigned char>(ch))) {
        if (!word.empty()) out.push_back(word);
        word.clear();
      } else {
        word.push_back(ch);
      }
    }
  }
  return out;
}

}  // namespace

HostArray fi::radixText(int radix, bool isSigned) const {
  if (!type_.isFixed()) raise(Msg::FiFixedOnly);
  const int w = getWordLength();
  const int m = numel_ == 0 ? 0 : m_, perRow = m == 0 ? 0 : numel_ / m;
  std::vector<std::string> cells;
  Integer v;
  std::size_t width = isSigned ? 1 : digitsFor(w, radix);
  for (bool imagPart : {false, true}) {
    if (imagPart && isreal_) break;
    for (int i = 0; i < numel_; ++i) {
      poll_interrupt();
      storedInteger(v.v, imagPart ? imag(i) : real(i), type_);
      if (!isSigned) mpz_fdiv_r_2exp(v.v, v.v, static_cast<mp_bitcnt_t>(w));
      std::string s = digits(v.v, isSigned ? 10 : radix);
      width = std::max(width, s.size());
      cells.push_back(std::move(s));
    }
  }
  // Element i sits in row i % m (of its part), after the elements before it in that row.
  std::vector<std::string> rows(cells.size() / static_cast<std::size_t>(std::max(perRow, 1)));
  const char pad = radix == 10 || isSigned ? ' ' : '0';
  for (std::size_t k = 0; k < cells.size(); ++k) {
    const std::size_t part = k / static_cast<std::size_t>(std::max(numel_, 1));
    const std::size_t i = k % static_cast<std::size_t>(std::max(numel_, 1));
    const std::size_t row = part * static_cast<std::size_t>(m) + i % static_cast<std::size_t>(m);
    std::string& s = cells[k];
    s.insert(0, width - s.size(), pad);
    // Elements of a row follow one another in column order.
    rows[row] += (rows[row].empty() ? "" : "  ") + s;
  }
  return charMatrix(rows);
}

namespace {

// The smallest built-in integer class of a word, and its element type.
template <class F>
decltype(auto) withIntegerClass(bool issigned, int w, F f) {
  if (w <= 8)
    return issigned ? f(HostClass::Int8, std::int8_t{}) : f(HostClass::UInt8, std::uint8_t{});
  if (w <= 16)
    return issigned ? f(HostClass::Int16, std::int16_t{}) : f(HostClass::UInt16, std::uint16_t{});
  if (w <= 32)
    return issigned ? f(HostClass::Int32, std::int32_t{}) : f(HostClass::UInt32, std::uint32_t{});
  return issigned ? f(HostClass::Int64, std::int64_t{}) : f(HostClass::UInt64, std::uint64_t{});
}

}  // namespace

HostArray fi::storedIntegers() const {
  if (!type_.isFixed()) raise(Msg::FiFixedOnly);
  if (getWordLength() > 64) raise(Msg::FiIntTooWide);
  return withIntegerClass(getSigned(), getWordLength(), [&](HostClass cls, auto zero) {
    using T = decltype(zero);
    HostArray out =
        HostArray::make_numeric(cls, std::vector<std::size_t>(dims_.begin(), dims_.end()),
                                isreal_ ? Complexity::Real : Complexity::Complex);
    Integer v;
    for (bool imagPart : {false, true}) {
      if (imagPart && isreal_) break;
      T* data = imagPart ? out.imag<T>() : out.real<T>();
      for (int i = 0; i < numel_; ++i) {
        poll_interrupt();
        storedInteger(v.v, imagPart ? imag(i) : real(i), type_);
        data[i] =
            std::is_signed_v<T> ? static_cast<T>(mpz_get_si(v.v)) : static_cast<T>(mpz_get_ui(v.v));
      }
    }
    return out;
  });
}

void fi::setStoredIntegers(const HostArray& values) {
  if (!type_.isFixed()) raise(Msg::FiFixedOnly);
  if (!values.is_numeric()) raise(Msg::FiIntNotNumeric);
  if (values.numel() != static_cast<std::size_t>(numel_) || (values.is_complex() && isreal_))
    raise(Msg::FiIntSizeMismatch);
  // The range [lowest, top) of the stored integers.
  Integer top, lowest;
  mpz_setbit(top.v, static_cast<mp_bitcnt_t>(getSigned() ? getWordLength() - 1 : getWordLength()));
  if (getSigned()) mpz_neg(lowest.v, top.v);
  // Every value is checked before any element changes; 64-bit integers are read exactly.
  const std::size_t parts = values.is_complex() ? 2 : 1;
  std::vector<number> stored(parts * values.numel());
  Integer v;
  for (std::size_t k = 0; k < stored.size(); ++k) {
    const std::size_t i = k % values.numel();
    const bool imagPart = k >= values.numel();
    if (values.element_class() == HostClass::Int64) {
      mpz_set_si(v.v, (imagPart ? values.imag<std::int64_t>() : values.real<std::int64_t>())[i]);
    } else if (values.element_class() == HostClass::UInt64) {
      mpz_set_ui(v.v, (imagPart ? values.imag<std::uint64_t>() : values.real<std::uint64_t>())[i]);
    } else {
      const double x = imagPart ? values.imag_as_double(i) : values.real_as_double(i);
      if (!std::isfinite(x) || x != std::trunc(x)) raise(Msg::FiIntOutOfRange);
      mpz_set_d(v.v, x);
    }
    if (mpz_cmp(v.v, lowest.v) < 0 || mpz_cmp(v.v, top.v) >= 0) raise(Msg::FiIntOutOfRange);
    stored[k].setvalue(v.v, type_.getFixedExponent());
  }
  for (int i = 0; i < numel_; ++i) {
    realRef(i) = stored[static_cast<std::size_t>(i)];
    if (parts == 2) imagRef(i) = stored[values.numel() + static_cast<std::size_t>(i)];
  }
}

int fi::radixTextCount(const HostArray& text) {
  if (text.element_class() != HostClass::Char) raise(Msg::FiRadixTextNotText);
  return static_cast<int>(words(text).size());
}

void fi::base2num(const HostArray& text, int radix) {
  if (!type_.isFixed()) raise(Msg::FiFixedOnly);
  if (text.element_class() != HostClass::Char) raise(Msg::FiRadixTextNotText);
  const std::vector<std::string> numbers = words(text);
  const std::size_t parts = isreal_ ? 1 : 2;
  if (numbers.size() != parts * static_cast<std::size_t>(numel_)) raise(Msg::FiRadixTextCount);
  const int w = getWordLength();
  const int m = numel_ == 0 ? 1 : m_, perRow = numel_ / m;
  // Every number is read before any element changes.
  std::vector<number> values(numbers.size());
  Integer v, top;
  mpz_setbit(top.v, static_cast<mp_bitcnt_t>(w));
  for (std::size_t k = 0; k < numbers.size(); ++k) {
    const std::string& s = numbers[k];
    const bool negative = radix == 10 && !s.empty() && s[0] == '-';
    // The parser also takes a sign of its own, which only a negative decimal may have.
    const char* digits = s.c_str() + (negative ? 1 : 0);
    if (*digits == '-' || *digits == '+' || mpz_set_str(v.v, digits, radix) != 0 ||
        (negative && s.size() == 1))
      raise(Msg::FiRadixTextDigits, s.c_str());
    if (negative) mpz_neg(v.v, v.v);
    // A negative signed decimal must reach no lower than the type's lowest stored integer;
    // any other number is a pattern of at most W bits, and with its top bit set it is a
    // negative stored integer of a signed type.
    if (negative) {
      Integer lowest;
      mpz_setbit(lowest.v, static_cast<mp_bitcnt_t>(w - 1));
      mpz_neg(lowest.v, lowest.v);
      if (!getSigned() || mpz_cmp(v.v, lowest.v) < 0) raise(Msg::FiRadixTextRange, s.c_str());
    } else {
      if (mpz_cmp(v.v, top.v) >= 0) raise(Msg::FiRadixTextRange, s.c_str());
      if (getSigned() && mpz_tstbit(v.v, static_cast<mp_bitcnt_t>(w - 1))) mpz_sub(v.v, v.v, top.v);
    }
    // The k-th number is in row k / perRow, column k % perRow: element row + column * m.
    const std::size_t part = k / static_cast<std::size_t>(std::max(numel_, 1));
    const std::size_t local = k % static_cast<std::size_t>(std::max(numel_, 1));
    const std::size_t row = local / static_cast<std::size_t>(std::max(perRow, 1));
    const std::size_t col = local % static_cast<std::size_t>(std::max(perRow, 1));
    const std::size_t element = row + col * static_cast<std::size_t>(m);
    values[part * static_cast<std::size_t>(numel_) + element].setvalue(v.v,
                                                                       type_.getFixedExponent());
  }
  for (int i = 0; i < numel_; ++i) {
    realRef(i) = values[static_cast<std::size_t>(i)];
    if (!isreal_) imagRef(i) = values[static_cast<std::size_t>(numel_ + i)];
  }
}

}  // namespace corbel
