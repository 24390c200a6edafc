// Radix text of values on a floating-point grid: the w-bit patterns of the values, written and
// read as the unsigned w-bit stored integers of a fi, so that they share its text layout.
#include "fi/float_text.h"

#include <gmp.h>
#include <mpfr.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "fi/exact_values.h"
#include "fi/fi.h"
#include "quantize/qlogger.h"

namespace corbel {
namespace {

struct Grid {
  explicit Grid(const quantizer& q)
      : w(q.getWordlength()),
        e(q.getExponentlength()),
        f(w - e - 1),
        bias(q.getExponentmax()),
        emin(q.getExponentmin()) {}
  long w, e, f, bias, emin;
};

// out = v 2^k, truncated toward minus infinity when k < 0.
void shifted(mpz_ptr out, mpz_srcptr v, long k) {
  if (k >= 0)
    mpz_mul_2exp(out, v, static_cast<mp_bitcnt_t>(k));
  else
    mpz_fdiv_q_2exp(out, v, static_cast<mp_bitcnt_t>(-k));
}

// The all-ones exponent field in place.
void allOnesExponent(mpz_ptr out, const Grid& g) {
  mpz_set_ui(out, 0);
  mpz_setbit(out, static_cast<mp_bitcnt_t>(g.e));
  mpz_sub_ui(out, out, 1);
  mpz_mul_2exp(out, out, static_cast<mp_bitcnt_t>(g.f));
}

// The pattern of a value on the grid; a value that rounded past the largest finite one is
// an infinity.
void patternOf(mpz_ptr out, const number& x, const Grid& g) {
  mpz_set_ui(out, 0);
  bool negative = false;
  if (!x.myisfinite()) {
    const bool nan = !x.myisinf();
    negative = !nan && x.isnegative();
    allOnesExponent(out, g);
    if (nan && g.f > 0) mpz_setbit(out, static_cast<mp_bitcnt_t>(g.f - 1));
  } else {
    negative = std::signbit(x.todouble());
    Rational v;
    x.getvalue(v.v);
    mpq_abs(v.v, v.v);
    if (mpq_sgn(v.v) != 0) {
      // A grid value is N 2^-d with d from its power-of-two denominator.
      mpz_srcptr n = mpq_numref(v.v);
      const long d = static_cast<long>(mpz_scan1(mpq_denref(v.v), 0));
      const long top = static_cast<long>(mpz_sizeinbase(n, 2)) - 1 - d;  // floor(log2 |v|)
      if (top > g.bias) {
        allOnesExponent(out, g);
      } else if (top < g.emin) {
        shifted(out, n, g.f - g.emin - d);
      } else {
        shifted(out, n, g.f - top - d);
        mpz_clrbit(out, static_cast<mp_bitcnt_t>(g.f));
        Integer field;
        mpz_set_si(field.v, top + g.bias);
        mpz_mul_2exp(field.v, field.v, static_cast<mp_bitcnt_t>(g.f));
        mpz_ior(out, out, field.v);
      }
    }
  }
  if (negative) mpz_setbit(out, static_cast<mp_bitcnt_t>(g.w - 1));
}

// The value of a pattern, rounded to the nearest double.
double valueOf(mpz_srcptr pattern, const Grid& g) {
  Integer field, fraction;
  mpz_fdiv_q_2exp(field.v, pattern, static_cast<mp_bitcnt_t>(g.f));
  mpz_fdiv_r_2exp(field.v, field.v, static_cast<mp_bitcnt_t>(g.e));
  mpz_fdiv_r_2exp(fraction.v, pattern, static_cast<mp_bitcnt_t>(g.f));
  const double sign = mpz_tstbit(pattern, static_cast<mp_bitcnt_t>(g.w - 1)) ? -1.0 : 1.0;
  Integer ones;
  mpz_setbit(ones.v, static_cast<mp_bitcnt_t>(g.e));
  mpz_sub_ui(ones.v, ones.v, 1);
  if (mpz_cmp(field.v, ones.v) == 0)
    return mpz_sgn(fraction.v) == 0 ? sign * HUGE_VAL : std::nan("");
  long exponent = g.emin - g.f;  // subnormal spacing
  if (mpz_sgn(field.v) != 0) {
    mpz_setbit(fraction.v, static_cast<mp_bitcnt_t>(g.f));  // the hidden bit
    exponent = static_cast<long>(mpz_get_si(field.v)) - g.bias - g.f;
  }
  mpfr_t v;
  mpfr_init2(v, static_cast<mpfr_prec_t>(std::max<long>(g.f + 2, 64)));
  mpfr_set_z(v, fraction.v, MPFR_RNDN);
  mpfr_mul_2si(v, v, exponent, MPFR_RNDN);
  const double out = sign * mpfr_get_d(v, MPFR_RNDN);
  mpfr_clear(v);
  return out;
}

// New numbers take at least the grid's precision while quantizing; the previous default
// comes back however the scope ends.
class PrecisionScope {
 public:
  explicit PrecisionScope(unsigned long precision)
      : previous_(number::getDefaultPrecision()),
        force_(number::getDefaultForceMultiplePrecision()) {
    number::setDefaultPrecision(std::max<unsigned long>(52, precision), force_);
  }
  ~PrecisionScope() { number::setDefaultPrecision(previous_, force_); }
  PrecisionScope(const PrecisionScope&) = delete;
  PrecisionScope& operator=(const PrecisionScope&) = delete;

 private:
  unsigned long previous_;
  bool force_;
};

NumericType patternType(const Grid& g) {
  return NumericType(false, static_cast<int>(g.w), 0);
}

}  // namespace

HostArray floatRadixText(const quantizer& q, const HostArray& values, int radix) {
  const Grid g(q);
  // A plain copy quantizes with hooks that log nothing.
  const quantizer plain(q);
  const qlogger log;
  std::vector<int> dims(values.dims().begin(), values.dims().end());
  fi patterns(dims.data(), static_cast<int>(dims.size()), patternType(g), fimath(),
              values.is_complex());
  Integer pattern;
  {
    const PrecisionScope scope(q.getPrecision());
    for (std::size_t k = 0; k < values.numel(); ++k)
      for (bool imagPart : {false, true}) {
        if (imagPart && !values.is_complex()) continue;
        number x(imagPart ? values.imag_as_double(k) : values.real_as_double(k));
        plain.quantize(x, log);
        patternOf(pattern.v, x, g);
        const int i = static_cast<int>(k);
        (imagPart ? patterns.imagRef(i) : patterns.realRef(i)).setvalue(pattern.v, 0);
      }
  }
  return patterns.radixText(radix);
}

HostArray floatValuesFromText(const quantizer& q, const HostArray& text, int radix) {
  const Grid g(q);
  const int count = fi::radixTextCount(text);
  fi patterns(count, 1, patternType(g), fimath(), false);
  patterns.base2num(text, radix);
  HostArray out(HostClass::Double, {static_cast<std::size_t>(count), 1});
  Rational v;
  for (int i = 0; i < count; ++i) {
    patterns.real(i).getvalue(v.v);
    static_cast<double*>(out.real_data())[i] = valueOf(mpq_numref(v.v), g);
  }
  return out;
}

}  // namespace corbel
