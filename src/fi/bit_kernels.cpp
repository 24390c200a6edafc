// Loops of the bit operations over inline doubles, built per x86-64 level.
#include "fi/bit_kernels.h"

#include <bit>
#include <cmath>

#include "fi/pairwise_loop.h"
#include "quantize/cpu_clones.h"

namespace corbel::kernels {
namespace {

// q + magic lies in [2^52, 2^53), where doubles are the integers, so the low bits of its
// encoding are q's two's-complement bits: the conversions vectorise with no integer-double
// instruction. (The difference of encodings is taken unsigned, so that any input, even one
// whose output is discarded, is well defined.)
CORBEL_INLINE std::int64_t bitsOf(double v) {
  return std::bit_cast<std::int64_t>(v);
}

// The pattern of q = x 2^-e (exact), taken modulo 2^W.
CORBEL_INLINE std::uint64_t pattern(double x, const BitFormat& f) {
  const double shifted = x * f.down + f.magic;
  return (std::bit_cast<std::uint64_t>(shifted) - std::bit_cast<std::uint64_t>(f.magic)) & f.mask;
}

// The signed or unsigned reading of a pattern, times 2^e; a zero pattern is +0.
CORBEL_INLINE double reading(std::uint64_t u, const BitFormat& f) {
  const auto q = static_cast<std::int64_t>(u << f.extend) >> f.extend;
  return (std::bit_cast<double>(q + bitsOf(f.magic)) - f.magic) * f.up;
}

}  // namespace

BitFormat::BitFormat(bool issigned, int wordLength, int e)
    : mask((std::uint64_t{1} << wordLength) - 1),
      extend(issigned ? 64 - wordLength : 0),
      down(std::ldexp(1.0, -e)),
      up(std::ldexp(1.0, e)),
      magic(issigned ? 0x1.8p52 : 0x1p52) {}

CORBEL_CPU_CLONES bool bitwise(Bitwise op, const BitFormat& f, const number* a, std::size_t sa,
                               const number* b, std::size_t sb, number* out, std::size_t n) {
  const auto on = [&f](auto combine) {
    return [&f, combine](double x, double y) {
      return reading(combine(pattern(x, f), pattern(y, f)), f);
    };
  };
  switch (op) {
    case Bitwise::And:
      return pairwise(a, sa, b, sb, out, n, on([](auto x, auto y) { return x & y; }));
    case Bitwise::Or:
      return pairwise(a, sa, b, sb, out, n, on([](auto x, auto y) { return x | y; }));
    case Bitwise::Xor:
      return pairwise(a, sa, b, sb, out, n, on([](auto x, auto y) { return x ^ y; }));
  }
  return false;
}

namespace {

template <class Op>
CORBEL_INLINE void wordwiseRun(const std::uint64_t* a, std::size_t sa, const std::uint64_t* b,
                               std::size_t sb, std::uint64_t* out, std::size_t n, int limbs,
                               Op op) {
  const auto l = static_cast<std::size_t>(limbs);
  for (std::size_t i = 0; i < n; ++i)
    for (std::size_t j = 0; j < l; ++j) out[i * l + j] = op(a[i * sa * l + j], b[i * sb * l + j]);
}

}  // namespace

CORBEL_CPU_CLONES void wordwise(Bitwise op, const std::uint64_t* a, std::size_t sa,
                                const std::uint64_t* b, std::size_t sb, std::uint64_t* out,
                                std::size_t n, int limbs) {
  switch (op) {
    case Bitwise::And:
      return wordwiseRun(a, sa, b, sb, out, n, limbs, [](auto x, auto y) { return x & y; });
    case Bitwise::Or:
      return wordwiseRun(a, sa, b, sb, out, n, limbs, [](auto x, auto y) { return x | y; });
    case Bitwise::Xor:
      return wordwiseRun(a, sa, b, sb, out, n, limbs, [](auto x, auto y) { return x ^ y; });
  }
}

CORBEL_CPU_CLONES void getBits(const BitFormat& f, const number* a, std::size_t sa,
                               const long* positions, std::size_t sp, std::uint8_t* bits,
                               std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) {
    const std::uint64_t x = pattern(a[i * sa].inlinedouble(), f);
    bits[i] = static_cast<std::uint8_t>((x >> (positions[i * sp] - 1)) & 1u);
  }
}

CORBEL_CPU_CLONES void setBits(const BitFormat& f, const number* a, std::size_t sa,
                               const long* positions, std::size_t sp, const std::uint8_t* values,
                               std::size_t sv, number* out, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) {
    const std::uint64_t bit = std::uint64_t{1} << (positions[i * sp] - 1);
    const std::uint64_t x = pattern(a[i * sa].inlinedouble(), f);
    const std::uint64_t set = values[i * sv] != 0 ? bit : 0;
    number::placedouble(out + i, reading((x & ~bit) | set, f));
  }
}

}  // namespace corbel::kernels
