// Exact rationals for the reference models of the tests: the value of a number, and a value
// rounded onto a power-of-two grid and saturated or wrapped into a word, worked out with GMP
// independently of the library's quantizers.
#pragma once

#include <gmp.h>

#include <string>
#include <vector>

#include "number/number.h"
#include "types/enumerations.h"

namespace corbel {

// An exact rational with value semantics.
struct Q {
  mpq_t v;
  Q() { mpq_init(v); }
  explicit Q(double d) : Q() { mpq_set_d(v, d); }
  explicit Q(const number& x) : Q() { x.getvalue(v); }
  Q(const Q& o) : Q() { mpq_set(v, o.v); }
  Q& operator=(const Q& o) { return mpq_set(v, o.v), *this; }
  ~Q() { mpq_clear(v); }
  // f(a, b), for the rational operations and the shifts.
  Q(void (*f)(mpq_ptr, mpq_srcptr, mpq_srcptr), const Q& a, const Q& b) : Q() { f(v, a.v, b.v); }
  Q(void (*f)(mpq_ptr, mpq_srcptr, mp_bitcnt_t), const Q& a, long n) : Q() { f(v, a.v, n); }
  Q operator+(const Q& o) const { return Q(mpq_add, *this, o); }
  Q operator-(const Q& o) const { return Q(mpq_sub, *this, o); }
  Q operator*(const Q& o) const { return Q(mpq_mul, *this, o); }
  bool operator==(const Q& o) const { return mpq_equal(v, o.v) != 0; }
  Q scaled(long e) const { return Q(e >= 0 ? mpq_mul_2exp : mpq_div_2exp, *this, e >= 0 ? e : -e); }
  std::string str() const {
    std::vector<char> s(mpz_sizeinbase(mpq_numref(v), 10) + mpz_sizeinbase(mpq_denref(v), 10) + 3);
    return mpq_get_str(s.data(), 10, v);
  }
};

// v rounded to a multiple of 2^exponent by the mode's rule (ties: nearest goes up, round away
// from zero, convergent to the even neighbour), then saturated or wrapped modulo 2^w into the
// stored-integer range of a w-bit word.
inline Q cast(const Q& v, bool issigned, long w, long exponent, RoundModeEnum rm,
              OverflowModeEnum om) {
  using RM = RoundModeEnum;
  const Q x = v.scaled(-exponent);
  mpz_t n, r, lo, hi;
  mpz_inits(n, r, lo, hi, nullptr);
  mpz_fdiv_qr(n, r, mpq_numref(x.v), mpq_denref(x.v));
  mpz_mul_2exp(r, r, 1);
  const int half = mpz_cmp(r, mpq_denref(x.v)), sign = mpq_sgn(x.v);  // remainder vs half a step
  const bool tieUp =
      rm == RM::Nearest || (rm == RM::Round && sign > 0) || (rm == RM::Convergent && mpz_odd_p(n));
  const bool toNearest = rm == RM::Nearest || rm == RM::Round || rm == RM::Convergent;
  if (mpz_sgn(r) != 0 && (rm == RM::Ceil || (rm == RM::Fix && sign < 0) ||
                          (toNearest && (half > 0 || (half == 0 && tieUp)))))
    mpz_add_ui(n, n, 1);
  mpz_setbit(hi, static_cast<mp_bitcnt_t>(issigned ? w - 1 : w));
  if (issigned) mpz_neg(lo, hi);
  mpz_sub_ui(hi, hi, 1);
  if (om == OverflowModeEnum::Saturate) {
    if (mpz_cmp(n, hi) > 0) mpz_set(n, hi);
    if (mpz_cmp(n, lo) < 0) mpz_set(n, lo);
  } else {
    mpz_fdiv_r_2exp(n, n, static_cast<mp_bitcnt_t>(w));
    if (mpz_cmp(n, hi) > 0) mpz_addmul_ui(n, lo, 2);  // n - 2^w
  }
  Q out;
  mpq_set_z(out.v, n);
  mpz_clears(n, r, lo, hi, nullptr);
  return out.scaled(exponent);
}

}  // namespace corbel
