// doublenumber: double arithmetic, roundings and the 64-bit stored-integer operations.
#include "number/doublenumber.h"

#include <bit>
#include <cmath>
#include <cstdio>

#include "host/messages.h"
#include "host/services.h"
#include "host/utilities.h"

namespace corbel {
namespace {

constexpr std::uint64_t kIndefinite = 0x8000000000000000ULL;

// Truncates toward zero into a signed 64-bit integer; out of range (NaN included)
// gives the integer-indefinite pattern.
std::uint64_t truncate_to_int64_bits(double s) {
  if (s >= -0x1p63 && s < 0x1p63) return static_cast<std::uint64_t>(static_cast<std::int64_t>(s));
  return kIndefinite;
}

std::uint64_t unsigned_integer(double value, int exponent, std::uint64_t twoToTheWordLength) {
  if (value == 0.0) return 0;
  double s = host_round(std::ldexp(value, -exponent));
  if (value < 0.0) s += static_cast<double>(twoToTheWordLength);
  return truncate_to_int64_bits(s);
}

// The signed reading of a pattern: subtract 2^wordlength when the sign bit is set.
double from_pattern(std::uint64_t r, bool issigned, int wordlength,
                    std::uint64_t twoToTheWordLength, int exponent) {
  double v = static_cast<double>(r);
  if (issigned && (r >> (wordlength - 1)) != 0) v -= static_cast<double>(twoToTheWordLength);
  return std::ldexp(v, exponent);
}

void check_position(long position, int wordlength, Msg error) {
  if (position < 1 || position > wordlength) raise(error);
}

}  // namespace

numberrepbody& doublenumber::setvalue(const unsigned int* words, int nwords, bool issigned,
                                      int wordlength, double /*slope*/, int exponent,
                                      double /*bias*/) {
  setvalue(words, nwords, issigned, wordlength, -exponent);
  return *this;
}

numberrepbody& doublenumber::setvalue(const unsigned int* words, int nwords, bool issigned,
                                      int wordlength, int fractionlength) {
  double x = 0.0;
  for (int i = nwords - 1; i >= 0; --i) x = x * 0x1p32 + static_cast<double>(words[i]);
  const int top = wordlength - 1;
  if (issigned && top / 32 < nwords && ((words[top / 32] >> (top % 32)) & 1u) != 0)
    x -= std::ldexp(1.0, wordlength);
  value_ = std::ldexp(x, -fractionlength);
  return *this;
}

double doublenumber::pow2OfExtreme(double x, long n) {
  const long lim = 1L << 20;  // beyond this every finite value is 0 or infinity anyway
  return std::ldexp(x, static_cast<int>(n > lim ? lim : (n < -lim ? -lim : n)));
}

numberrepbody& doublenumber::pow2(long n) {
  value_ = pow2Of(value_, n);
  return *this;
}

numberrepbody& doublenumber::abs() {
  value_ = std::fabs(value_);
  return *this;
}

numberrepbody& doublenumber::stripscaling(double /*slope*/, int exponent, double /*bias*/) {
  value_ = host_round(std::ldexp(value_, -exponent));
  return *this;
}

std::uint64_t doublenumber::convertToUnsignedInteger(double /*slope*/, int exponent,
                                                     double /*bias*/,
                                                     std::uint64_t twoToTheWordLength) const {
  return unsigned_integer(value_, exponent, twoToTheWordLength);
}

std::uint64_t doublenumber::bitcmpXorMask(int wordlength) {
  return wordlength >= 64 ? ~0ULL : (1ULL << wordlength) - 1;
}

numberrepbody& doublenumber::bitcmp(bool issigned, int /*wordlength*/, double /*slope*/,
                                    int exponent, double /*bias*/, std::uint64_t xormask,
                                    std::uint64_t twoToTheWordLength) {
  const bool wasNonNegative = value_ >= 0.0;
  double v = static_cast<double>(unsigned_integer(value_, exponent, twoToTheWordLength) ^ xormask);
  // The complement of a non-negative signed value is negative and the other way round,
  // so the sign of the input decides the signed reading.
  if (issigned && wasNonNegative) v -= static_cast<double>(twoToTheWordLength);
  value_ = std::ldexp(v, exponent);
  return *this;
}

numberrepbody& doublenumber::fibitand(const numberrepbody& other, bool issigned, int wordlength,
                                      double, int exponent, double,
                                      std::uint64_t twoToTheWordLength) {
  const std::uint64_t a = unsigned_integer(value_, exponent, twoToTheWordLength);
  const std::uint64_t b = unsigned_integer(other.todouble(), exponent, twoToTheWordLength);
  value_ = from_pattern(a & b, issigned, wordlength, twoToTheWordLength, exponent);
  return *this;
}

numberrepbody& doublenumber::fibitor(const numberrepbody& other, bool issigned, int wordlength,
                                     double, int exponent, double,
                                     std::uint64_t twoToTheWordLength) {
  const std::uint64_t a = unsigned_integer(value_, exponent, twoToTheWordLength);
  const std::uint64_t b = unsigned_integer(other.todouble(), exponent, twoToTheWordLength);
  value_ = from_pattern(a | b, issigned, wordlength, twoToTheWordLength, exponent);
  return *this;
}

numberrepbody& doublenumber::bitxor(const numberrepbody& other, bool issigned, int wordlength,
                                    double, int exponent, double,
                                    std::uint64_t twoToTheWordLength) {
  const std::uint64_t a = unsigned_integer(value_, exponent, twoToTheWordLength);
  const std::uint64_t b = unsigned_integer(other.todouble(), exponent, twoToTheWordLength);
  value_ = from_pattern(a ^ b, issigned, wordlength, twoToTheWordLength, exponent);
  return *this;
}

unsigned char doublenumber::bitget(long position, bool, int wordlength, double, int exponent,
                                   double, std::uint64_t twoToTheWordLength) const {
  check_position(position, wordlength, Msg::BitgetOutOfRange);
  return (unsigned_integer(value_, exponent, twoToTheWordLength) >> (position - 1)) & 1u;
}

numberrepbody& doublenumber::bitset(long position, bool bitvalue, bool issigned, int wordlength,
                                    double, int exponent, double,
                                    std::uint64_t twoToTheWordLength) {
  check_position(position, wordlength, Msg::BitsetOutOfRange);
  std::uint64_t u = unsigned_integer(value_, exponent, twoToTheWordLength);
  const std::uint64_t mask = 1ULL << (position - 1);
  u = bitvalue ? (u | mask) : (u & ~mask);
  value_ = from_pattern(u, issigned, wordlength, twoToTheWordLength, exponent);
  return *this;
}

// The multiprecision-mask forms belong to multiprecision bodies only.
numberrepbody& doublenumber::bitcmp(bool, int, double, int, double, mpz_srcptr, mpfr_srcptr) {
  raise(Msg::DoubleBitcmpMpParams);
}
numberrepbody& doublenumber::fibitand(const numberrepbody&, bool, int, double, int, double,
                                      mpfr_srcptr) {
  raise(Msg::DoubleFibitandMpParams);
}
numberrepbody& doublenumber::fibitor(const numberrepbody&, bool, int, double, int, double,
                                     mpfr_srcptr) {
  raise(Msg::DoubleFibitorMpParams);
}
numberrepbody& doublenumber::bitxor(const numberrepbody&, bool, int, double, int, double,
                                    mpfr_srcptr) {
  raise(Msg::DoubleBitxorMpParams);
}
unsigned char doublenumber::bitget(long, bool, int, double, int, double, mpfr_srcptr) const {
  raise(Msg::DoubleBitgetMpParams);
}
numberrepbody& doublenumber::bitset(long, bool, bool, int, double, int, double, mpfr_srcptr) {
  raise(Msg::DoubleBitsetMpParams);
}

bool doublenumber::myisfinite() const {
  return std::isfinite(value_);
}
bool doublenumber::myisinf() const {
  return std::isinf(value_);
}

long doublenumber::unbiasedexponent() const {
  int e = 0;
  std::frexp(value_, &e);
  return static_cast<long>(e) - 1;
}

// Integer roundings. Each is exact for every double: the distance to the floor is
// computed exactly (x - floor(x) never rounds), so no tie is decided by a rounded sum.
double doublenumber::roundOf(double x) {
  return host_round(x);
}

numberrepbody& doublenumber::floor() {
  value_ = floorOf(value_);
  return *this;
}
numberrepbody& doublenumber::ceil() {
  value_ = ceilOf(value_);
  return *this;
}
numberrepbody& doublenumber::fix() {
  value_ = fixOf(value_);
  return *this;
}
numberrepbody& doublenumber::nearest() {
  value_ = nearestOf(value_);
  return *this;
}
numberrepbody& doublenumber::round() {
  value_ = roundOf(value_);
  return *this;
}
numberrepbody& doublenumber::convergent() {
  value_ = convergentOf(value_);
  return *this;
}

#define CORBEL_SCALED_ROUNDING(name)          \
  numberrepbody& doublenumber::name(long n) { \
    pow2(n);                                  \
    name();                                   \
    return pow2(-n);                          \
  }
CORBEL_SCALED_ROUNDING(ceil)
CORBEL_SCALED_ROUNDING(convergent)
CORBEL_SCALED_ROUNDING(fix)
CORBEL_SCALED_ROUNDING(floor)
CORBEL_SCALED_ROUNDING(nearest)
CORBEL_SCALED_ROUNDING(round)
#undef CORBEL_SCALED_ROUNDING

void doublenumber::disp() const {
  char buf[64];
  std::snprintf(buf, sizeof buf, "\ndoublenumber = %g", value_);
  host_services().print(buf);
}

template <class T>
T doublenumber::fixed2int(long fractionlength) const {
  const double s = std::ldexp(value_, static_cast<int>(fractionlength));
  return static_cast<T>(truncate_to_int64_bits(s));
}
template std::int8_t doublenumber::fixed2int<std::int8_t>(long) const;
template std::int16_t doublenumber::fixed2int<std::int16_t>(long) const;
template std::int32_t doublenumber::fixed2int<std::int32_t>(long) const;
template std::int64_t doublenumber::fixed2int<std::int64_t>(long) const;
template std::uint8_t doublenumber::fixed2int<std::uint8_t>(long) const;
template std::uint16_t doublenumber::fixed2int<std::uint16_t>(long) const;
template std::uint32_t doublenumber::fixed2int<std::uint32_t>(long) const;
template std::uint64_t doublenumber::fixed2int<std::uint64_t>(long) const;

double doublenumber::mod(double x, double y) {
  if (y == 0.0) return x;
  if (y == std::floor(y)) return x - std::floor(x / y) * y;
  // A quotient within a hair of an integer counts as that integer, so that an exact
  // multiple of a non-integer divisor leaves no spurious remainder; the tolerance is the
  // smallest normal double times |q|.
  double q = x / y;
  const double r = std::floor(q + 0.5);
  if (std::fabs(q - r) <= std::fabs(q) * 2.2250738585072014e-308) q = r;
  return (q - std::floor(q)) * y;
}

}  // namespace corbel
