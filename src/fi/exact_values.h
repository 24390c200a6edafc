// Exact values for the element paths that work on rationals (slope-bias sums and products,
// quotients): RAII GMP rationals and integers, and the real-world value of an element.
#pragma once

#include <gmp.h>

#include "number/number.h"
#include "types/numeric_type.h"

namespace corbel {

struct Rational {
  mpq_t v;
  Rational() { mpq_init(v); }
  explicit Rational(double d) {
    mpq_init(v);
    mpq_set_d(v, d);
  }
  ~Rational() { mpq_clear(v); }
  Rational(const Rational&) = delete;
  Rational& operator=(const Rational&) = delete;
};
struct Integer {
  mpz_t v;
  Integer() { mpz_init(v); }
  ~Integer() { mpz_clear(v); }
  Integer(const Integer&) = delete;
  Integer& operator=(const Integer&) = delete;
};

// The real-world value of an element of a fi of type t, exactly: bias + factor * element.
inline void realWorld(mpq_ptr out, const number& element, const NumericType& t) {
  element.getvalue(out);
  const Rational factor(t.getSlopeAdjustmentFactor());
  const Rational bias(t.getBias());
  mpq_mul(out, out, factor.v);
  mpq_add(out, out, bias.v);
}

}  // namespace corbel
