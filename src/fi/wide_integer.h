// Signed two's-complement integers of 128 and 256 bits: the stored integers of binary-point
// types wider than a double's mantissa, and the exact bounds of what such types can hold.
// int128 is the compiler's own; int256 gives the few operations the stored-integer loops and
// the bound computations use, with the same meaning as on int128.
#pragma once

#include <bit>
#include <cstdint>

namespace corbel {

__extension__ typedef __int128 int128;
__extension__ typedef unsigned __int128 uint128;

// hi:lo, the value hi * 2^128 + lo.
struct int256 {
  uint128 lo;
  int128 hi;
  int256() = default;
  constexpr int256(int128 v) : lo(static_cast<uint128>(v)), hi(v < 0 ? -1 : 0) {}
  constexpr int256(uint128 low, int128 high) : lo(low), hi(high) {}
};

constexpr bool operator==(int256 a, int256 b) {
  return a.lo == b.lo && a.hi == b.hi;
}
constexpr bool operator<(int256 a, int256 b) {
  return a.hi < b.hi || (a.hi == b.hi && a.lo < b.lo);
}
constexpr bool operator>(int256 a, int256 b) {
  return b < a;
}
constexpr bool operator<=(int256 a, int256 b) {
  return !(b < a);
}
constexpr bool operator>=(int256 a, int256 b) {
  return !(a < b);
}

constexpr int256 operator+(int256 a, int256 b) {
  const uint128 lo = a.lo + b.lo;
  const uint128 carry = lo < a.lo;
  return {lo, static_cast<int128>(static_cast<uint128>(a.hi) + static_cast<uint128>(b.hi) + carry)};
}
constexpr int256 operator-(int256 a, int256 b) {
  const uint128 borrow = a.lo < b.lo;
  return {a.lo - b.lo,
          static_cast<int128>(static_cast<uint128>(a.hi) - static_cast<uint128>(b.hi) - borrow)};
}
constexpr int256 operator-(int256 a) {
  return int256(0) - a;
}

// Arithmetic shift right by 0 <= s < 256 (rounds toward minus infinity).
constexpr int256 operator>>(int256 a, int s) {
  if (s == 0) return a;
  if (s < 128) return {(a.lo >> s) | (static_cast<uint128>(a.hi) << (128 - s)), a.hi >> s};
  return {static_cast<uint128>(a.hi >> (s - 128)), a.hi >> 127};
}
// Shift left by 0 <= s < 256, modulo 2^256.
constexpr int256 operator<<(int256 a, int s) {
  if (s == 0) return a;
  if (s < 128)
    return {a.lo << s,
            static_cast<int128>((static_cast<uint128>(a.hi) << s) | (a.lo >> (128 - s)))};
  return {0, static_cast<int128>(a.lo << (s - 128))};
}

constexpr bool isodd(int128 a) {
  return (a & 1) != 0;
}
constexpr bool isodd(int256 a) {
  return (a.lo & 1) != 0;
}

// Shift left by 0 <= s < the width, modulo 2^width (no signed overflow on the way).
constexpr int128 shiftLeft(int128 a, int s) {
  return static_cast<int128>(static_cast<uint128>(a) << s);
}
constexpr int256 shiftLeft(int256 a, int s) {
  return a << s;
}

// The exact product of two 128-bit integers.
constexpr int256 multiply(int128 a, int128 b) {
  const bool negative = (a < 0) != (b < 0);
  const uint128 x = a < 0 ? -static_cast<uint128>(a) : static_cast<uint128>(a);
  const uint128 y = b < 0 ? -static_cast<uint128>(b) : static_cast<uint128>(b);
  const std::uint64_t x0 = static_cast<std::uint64_t>(x), x1 = static_cast<std::uint64_t>(x >> 64);
  const std::uint64_t y0 = static_cast<std::uint64_t>(y), y1 = static_cast<std::uint64_t>(y >> 64);
  const uint128 p00 = static_cast<uint128>(x0) * y0, p01 = static_cast<uint128>(x0) * y1;
  const uint128 p10 = static_cast<uint128>(x1) * y0, p11 = static_cast<uint128>(x1) * y1;
  const uint128 mid =
      (p00 >> 64) + static_cast<std::uint64_t>(p01) + static_cast<std::uint64_t>(p10);
  const int256 m{(mid << 64) | static_cast<std::uint64_t>(p00),
                 static_cast<int128>(p11 + (p01 >> 64) + (p10 >> 64) + (mid >> 64))};
  return negative ? -m : m;
}

// The low 128 bits, for a value known to fit them.
constexpr int128 narrow(int256 a) {
  return static_cast<int128>(a.lo);
}
constexpr int128 narrow(int128 a) {
  return a;
}

// A finite double as m * 2^k with an integer m (|m| < 2^53, negative for a negative double);
// negativeZero tells -0.0 from +0.0, which both give m = 0.
struct SplitDouble {
  int128 m;
  long k;
  bool negativeZero;
};
inline SplitDouble splitDouble(double x) {
  const auto bits = std::bit_cast<std::uint64_t>(x);
  const long field = static_cast<long>((bits >> 52) & 0x7FF);
  const std::uint64_t fraction = bits & ((std::uint64_t{1} << 52) - 1);
  const int128 magnitude = field == 0 ? fraction : fraction | (std::uint64_t{1} << 52);
  const bool negative = (bits >> 63) != 0;
  return {negative ? -magnitude : magnitude, (field == 0 ? 1 : field) - 1075,
          negative && magnitude == 0};
}

// Widths the loops keep every value within, with room for a rounding increment and for the
// sum of two values: |v| < 2^(kHeadroom<T>).
template <class T>
constexpr int kHeadroom = 0;
template <>
inline constexpr int kHeadroom<int128> = 125;
template <>
inline constexpr int kHeadroom<int256> = 253;

}  // namespace corbel
