// mpnumber: multiprecision arithmetic, roundings and stored-integer bit operations.
#include "number/mpnumber.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>
#include <string>

#include "host/messages.h"
#include "host/services.h"

namespace corbel {
namespace {

constexpr mpfr_prec_t kMinPrecision = 32;

// Custom float grids reach exponents of +-2^30 and beyond (their largest values and
// smallest denormals), which MPFR's default exponent range does not hold; the widest
// range does, so that those bounds stay exact. Set once, before any value is made.
const bool kWideExponentRange = [] {
  mpfr_set_emin(mpfr_get_emin_min());
  mpfr_set_emax(mpfr_get_emax_max());
  return true;
}();

mpfr_ptr allocate_value(mpfr_prec_t precision) {
  auto* v = static_cast<mpfr_ptr>(std::malloc(sizeof(__mpfr_struct)));
  if (v == nullptr) throw std::bad_alloc();
  mpfr_init2(v, precision);
  return v;
}

// An MPFR temporary that frees itself.
struct MpfrTemp {
  explicit MpfrTemp(mpfr_prec_t p) { mpfr_init2(v, p); }
  ~MpfrTemp() { mpfr_clear(v); }
  MpfrTemp(const MpfrTemp&) = delete;
  MpfrTemp& operator=(const MpfrTemp&) = delete;
  mpfr_t v;
};

struct MpzTemp {
  MpzTemp() { mpz_init(v); }
  ~MpzTemp() { mpz_clear(v); }
  MpzTemp(const MpzTemp&) = delete;
  MpzTemp& operator=(const MpzTemp&) = delete;
  mpz_t v;
};

// The two's-complement pattern of any body's value (a double body's value is exact in
// a 53-bit float).
void pattern_of(const numberrepbody& b, mpz_ptr result, int exponent,
                mpfr_srcptr twoToTheWordLength) {
  if (b.gettype() == numbertype::mpnumber) {
    static_cast<const mpnumber&>(b).convertToUnsignedInteger(result, 1.0, exponent, 0.0,
                                                             twoToTheWordLength);
  } else {
    mpnumber tmp(b.todouble(), 53);
    tmp.convertToUnsignedInteger(result, 1.0, exponent, 0.0, twoToTheWordLength);
  }
}

void check_position(long position, int wordlength, Msg error) {
  if (position < 1 || position > wordlength) raise(error);
}

}  // namespace

mpnumber::mpnumber(double v, unsigned long precision)
    : numberrepbody(numbertype::mpnumber),
      value_(allocate_value(
          std::max<mpfr_prec_t>(static_cast<mpfr_prec_t>(precision), kMinPrecision))) {
  mpfr_set_d(value_, v, MPFR_RNDN);
}

mpnumber::mpnumber(const mpnumber& other)
    : numberrepbody(other), value_(allocate_value(mpfr_get_prec(other.value_))) {
  mpfr_set(value_, other.value_, MPFR_RNDN);
}

mpnumber::~mpnumber() {
  mpfr_clear(value_);
  std::free(value_);
}

void mpnumber::setprecision(unsigned long p) {
  mpfr_prec_round(value_, std::max<mpfr_prec_t>(static_cast<mpfr_prec_t>(p), kMinPrecision) + 1,
                  MPFR_RNDN);
}

void mpnumber::setFromInteger(mpz_srcptr integer, int exponent) {
  const auto bits = static_cast<mpfr_prec_t>(mpz_sizeinbase(integer, 2));
  if (bits > mpfr_get_prec(value_)) mpfr_set_prec(value_, bits);
  mpfr_set_z(value_, integer, MPFR_RNDN);
  mpfr_mul_2si(value_, value_, exponent, MPFR_RNDN);
}

void mpnumber::setFromPattern(mpz_srcptr pattern, bool issigned, int wordlength, int exponent) {
  MpzTemp x;
  mpz_set(x.v, pattern);
  if (issigned && mpz_tstbit(x.v, wordlength - 1)) {
    MpzTemp two;
    mpz_setbit(two.v, wordlength);
    mpz_sub(x.v, x.v, two.v);
  }
  setFromInteger(x.v, exponent);
}

numberrepbody& mpnumber::setvalue(const unsigned int* words, int nwords, bool issigned,
                                  int wordlength, int fractionlength) {
  MpzTemp x;
  mpz_import(x.v, static_cast<size_t>(nwords), -1, sizeof(unsigned int), 0, 0, words);
  setFromPattern(x.v, issigned, wordlength, -fractionlength);
  return *this;
}

numberrepbody& mpnumber::setvalue(const unsigned int* words, int nwords, bool issigned,
                                  int wordlength, double slope, int exponent, double bias) {
  setvalue(words, nwords, issigned, wordlength, -exponent);
  if (slope != 1.0) mpfr_mul_d(value_, value_, slope, MPFR_RNDN);
  if (bias != 0.0) mpfr_add_d(value_, value_, bias, MPFR_RNDN);
  return *this;
}

numberrepbody& mpnumber::setvalue(double v) {
  mpfr_set_d(value_, v, MPFR_RNDN);
  return *this;
}

char mpnumber::sign() const {
  if (mpfr_nan_p(value_)) return 0;
  const int s = mpfr_sgn(value_);
  return s < 0 ? -1 : (s > 0 ? 1 : 0);
}

numberrepbody& mpnumber::negate() {
  mpfr_neg(value_, value_, MPFR_RNDN);
  return *this;
}

numberrepbody& mpnumber::pow2(long n) {
  mpfr_mul_2si(value_, value_, n, MPFR_RNDN);
  return *this;
}

numberrepbody& mpnumber::abs() {
  mpfr_abs(value_, value_, MPFR_RNDN);
  return *this;
}

numberrepbody& mpnumber::stripscaling(double slope, int exponent, double bias) {
  if (bias != 0.0) mpfr_sub_d(value_, value_, bias, MPFR_RNDN);
  if (slope != 1.0) mpfr_div_d(value_, value_, slope, MPFR_RNDN);
  mpfr_mul_2si(value_, value_, -exponent, MPFR_RNDN);
  mpfr_round(value_, value_);
  return *this;
}

long mpnumber::unbiasedexponent() const {
  // MPFR keeps the significand in [1/2, 1); the exponent of [1, 2) is one less. Zero
  // answers -1, as the double body does.
  if (!mpfr_regular_p(value_)) return -1;
  return mpfr_get_exp(value_) - 1;
}

void mpnumber::convertToUnsignedInteger(mpz_ptr result, double /*slope*/, int exponent,
                                        double /*bias*/, mpfr_srcptr twoToTheWordLength) const {
  MpfrTemp scaled(mpfr_get_prec(value_));
  mpfr_mul_2si(scaled.v, value_, -exponent, MPFR_RNDN);
  mpfr_round(scaled.v, scaled.v);
  mpfr_get_z(result, scaled.v, MPFR_RNDN);
  if (mpz_sgn(result) < 0) {
    MpzTemp two;
    mpfr_get_z(two.v, twoToTheWordLength, MPFR_RNDN);
    mpz_add(result, result, two.v);
  }
}

void mpnumber::twoToTheN(mpfr_ptr x, long n) {
  mpfr_init2(x, kMinPrecision);
  mpfr_set_ui(x, 1, MPFR_RNDN);
  mpfr_mul_2si(x, x, n, MPFR_RNDN);
}

void mpnumber::bitcmpXorMask(mpz_ptr m, int wordlength) {
  mpz_set_ui(m, 1);
  mpz_mul_2exp(m, m, static_cast<mp_bitcnt_t>(wordlength));
  mpz_sub_ui(m, m, 1);
}

numberrepbody& mpnumber::bitcmp(bool issigned, int wordlength, double slope, int exponent,
                                double bias, mpz_srcptr xormask, mpfr_srcptr twoToTheWordLength) {
  MpzTemp u;
  convertToUnsignedInteger(u.v, slope, exponent, bias, twoToTheWordLength);
  mpz_xor(u.v, u.v, xormask);
  setFromPattern(u.v, issigned, wordlength, exponent);
  return *this;
}

numberrepbody& mpnumber::fibitand(const numberrepbody& other, bool issigned, int wordlength,
                                  double slope, int exponent, double bias,
                                  mpfr_srcptr twoToTheWordLength) {
  MpzTemp a, b;
  convertToUnsignedInteger(a.v, slope, exponent, bias, twoToTheWordLength);
  pattern_of(other, b.v, exponent, twoToTheWordLength);
  mpz_and(a.v, a.v, b.v);
  setFromPattern(a.v, issigned, wordlength, exponent);
  return *this;
}

numberrepbody& mpnumber::fibitor(const numberrepbody& other, bool issigned, int wordlength,
                                 double slope, int exponent, double bias,
                                 mpfr_srcptr twoToTheWordLength) {
  MpzTemp a, b;
  convertToUnsignedInteger(a.v, slope, exponent, bias, twoToTheWordLength);
  pattern_of(other, b.v, exponent, twoToTheWordLength);
  mpz_ior(a.v, a.v, b.v);
  setFromPattern(a.v, issigned, wordlength, exponent);
  return *this;
}

numberrepbody& mpnumber::bitxor(const numberrepbody& other, bool issigned, int wordlength,
                                double slope, int exponent, double bias,
                                mpfr_srcptr twoToTheWordLength) {
  MpzTemp a, b;
  convertToUnsignedInteger(a.v, slope, exponent, bias, twoToTheWordLength);
  pattern_of(other, b.v, exponent, twoToTheWordLength);
  mpz_xor(a.v, a.v, b.v);
  setFromPattern(a.v, issigned, wordlength, exponent);
  return *this;
}

unsigned char mpnumber::bitget(long position, bool, int wordlength, double slope, int exponent,
                               double bias, mpfr_srcptr twoToTheWordLength) const {
  check_position(position, wordlength, Msg::BitgetOutOfRange);
  MpzTemp u;
  convertToUnsignedInteger(u.v, slope, exponent, bias, twoToTheWordLength);
  return mpz_tstbit(u.v, static_cast<mp_bitcnt_t>(position - 1)) ? 1 : 0;
}

numberrepbody& mpnumber::bitset(long position, bool bitvalue, bool issigned, int wordlength,
                                double slope, int exponent, double bias,
                                mpfr_srcptr twoToTheWordLength) {
  check_position(position, wordlength, Msg::BitsetOutOfRange);
  MpzTemp u;
  convertToUnsignedInteger(u.v, slope, exponent, bias, twoToTheWordLength);
  if (bitvalue)
    mpz_setbit(u.v, static_cast<mp_bitcnt_t>(position - 1));
  else
    mpz_clrbit(u.v, static_cast<mp_bitcnt_t>(position - 1));
  setFromPattern(u.v, issigned, wordlength, exponent);
  return *this;
}

// The 64-bit-mask forms belong to double bodies only.
numberrepbody& mpnumber::bitcmp(bool, int, double, int, double, std::uint64_t, std::uint64_t) {
  raise(Msg::MpBitcmpDoubleParams);
}
numberrepbody& mpnumber::fibitand(const numberrepbody&, bool, int, double, int, double,
                                  std::uint64_t) {
  raise(Msg::MpFibitandDoubleParams);
}
numberrepbody& mpnumber::fibitor(const numberrepbody&, bool, int, double, int, double,
                                 std::uint64_t) {
  raise(Msg::MpFibitorDoubleParams);
}
numberrepbody& mpnumber::bitxor(const numberrepbody&, bool, int, double, int, double,
                                std::uint64_t) {
  raise(Msg::MpBitxorDoubleParams);
}
unsigned char mpnumber::bitget(long, bool, int, double, int, double, std::uint64_t) const {
  raise(Msg::MpBitgetDoubleParams);
}
numberrepbody& mpnumber::bitset(long, bool, bool, int, double, int, double, std::uint64_t) {
  raise(Msg::MpBitsetDoubleParams);
}

numberrepbody& mpnumber::floor() {
  mpfr_floor(value_, value_);
  return *this;
}

numberrepbody& mpnumber::ceil() {
  mpfr_ceil(value_, value_);
  return *this;
}

numberrepbody& mpnumber::fix() {
  mpfr_trunc(value_, value_);
  if (mpfr_zero_p(value_)) mpfr_set_zero(value_, 1);
  return *this;
}

numberrepbody& mpnumber::nearest() {
  // floor(x + 1/2): the same as rounding halves away from zero except at a negative half,
  // which goes up. Doubling and halving are exact, so the test for a half needs no
  // temporary, and the integer result never needs more bits than x has.
  if (!mpfr_number_p(value_) || mpfr_integer_p(value_)) return *this;
  if (mpfr_sgn(value_) < 0) {
    mpfr_mul_2ui(value_, value_, 1, MPFR_RNDN);
    const bool half = mpfr_integer_p(value_) != 0;
    mpfr_div_2ui(value_, value_, 1, MPFR_RNDN);
    if (half) {
      mpfr_ceil(value_, value_);
      if (mpfr_zero_p(value_)) mpfr_set_zero(value_, 1);
      return *this;
    }
  }
  mpfr_round(value_, value_);
  // floor(x + 1/2) of a value in [-1/2, 1/2) is +0, whichever side x came from.
  if (mpfr_zero_p(value_)) mpfr_set_zero(value_, 1);
  return *this;
}

numberrepbody& mpnumber::round() {
  mpfr_round(value_, value_);  // halves away from zero
  return *this;
}

numberrepbody& mpnumber::convergent() {
  // Halves to the even neighbour. A non-integer that rounds to zero gives +0, as on a
  // double body.
  if (!mpfr_number_p(value_) || mpfr_integer_p(value_)) return *this;
  mpfr_rint(value_, value_, MPFR_RNDN);
  if (mpfr_zero_p(value_)) mpfr_set_zero(value_, 1);
  return *this;
}

#define CORBEL_SCALED_ROUNDING(name)      \
  numberrepbody& mpnumber::name(long n) { \
    pow2(n);                              \
    name();                               \
    return pow2(-n);                      \
  }
CORBEL_SCALED_ROUNDING(ceil)
CORBEL_SCALED_ROUNDING(convergent)
CORBEL_SCALED_ROUNDING(fix)
CORBEL_SCALED_ROUNDING(floor)
CORBEL_SCALED_ROUNDING(nearest)
CORBEL_SCALED_ROUNDING(round)
#undef CORBEL_SCALED_ROUNDING

double mpnumber::tosingle() const {
  return static_cast<double>(mpfr_get_flt(value_, MPFR_RNDN));
}

mpnumber& mpnumber::mod(const mpnumber& divisor) {
  const mpfr_srcptr y = divisor.value_;
  if (mpfr_zero_p(y)) return *this;
  // The truncating remainder is exact; moving it into the divisor's sign gives the floor
  // remainder.
  mpfr_fmod(value_, value_, y, MPFR_RNDN);
  if (!mpfr_zero_p(value_) && mpfr_sgn(value_) != mpfr_sgn(y) && !mpfr_nan_p(value_))
    mpfr_add(value_, value_, y, MPFR_RNDN);
  return *this;
}

void mpnumber::disp() const {
  // Enough decimal digits to identify the value at its precision.
  const int digits = static_cast<int>(mpfr_get_prec(value_) * 0.30103) + 2;
  char* text = nullptr;
  mpfr_asprintf(&text, "\nmpnumber = %.*Rg\nPrecision = %d\n", digits, value_,
                static_cast<int>(mpfr_get_prec(value_)));
  std::string out(text ? text : "");
  mpfr_free_str(text);
  host_services().print(out);
}

template <class T>
T mpnumber::fixed2int(long fractionlength) const {
  if (!mpfr_number_p(value_)) return static_cast<T>(0x8000000000000000ULL);
  MpfrTemp scaled(mpfr_get_prec(value_));
  mpfr_mul_2si(scaled.v, value_, fractionlength, MPFR_RNDN);
  MpzTemp z;
  mpfr_get_z(z.v, scaled.v, MPFR_RNDZ);
  // In [-2^63, 2^64) the integer's low 64 bits are its pattern.
  const bool below = mpz_cmp_si(z.v, std::numeric_limits<long>::min()) < 0;
  const bool above = mpz_sgn(z.v) > 0 && mpz_sizeinbase(z.v, 2) > 64;
  if (below || above) return static_cast<T>(0x8000000000000000ULL);
  mpz_fdiv_r_2exp(z.v, z.v, 64);
  std::uint64_t bits = 0;
  mpz_export(&bits, nullptr, -1, sizeof bits, 0, 0, z.v);
  return static_cast<T>(bits);
}
template std::int8_t mpnumber::fixed2int<std::int8_t>(long) const;
template std::int16_t mpnumber::fixed2int<std::int16_t>(long) const;
template std::int32_t mpnumber::fixed2int<std::int32_t>(long) const;
template std::int64_t mpnumber::fixed2int<std::int64_t>(long) const;
template std::uint8_t mpnumber::fixed2int<std::uint8_t>(long) const;
template std::uint16_t mpnumber::fixed2int<std::uint16_t>(long) const;
template std::uint32_t mpnumber::fixed2int<std::uint32_t>(long) const;
template std::uint64_t mpnumber::fixed2int<std::uint64_t>(long) const;

}  // namespace corbel
