// fi: the relations ==, ~=, <, <=, >, >= and isequal, on exact values. A fi element is its
// real-world value (bias + factor * element, exactly); a built-in element is its own value
// (64-bit integers exactly, doubles and singles as the binary fractions they are); NaN is
// unordered and infinities lie beyond every finite value. Real operands compare by value;
// when either is complex, == and ~= compare both parts, and the orderings compare magnitudes,
// then angles in (-pi, pi], an element of a real operand having the angle 0, as Octave orders
// complex doubles. Where both operands are real
// and every element is a double the comparison runs on the doubles, which hold the values
// exactly.
#include <gmp.h>

#include <cmath>
#include <complex>
#include <vector>

#include "fi/exact_values.h"
#include "fi/fi.h"
#include "host/messages.h"
#include "host/services.h"

namespace corbel {
namespace {

constexpr int kUnordered = 2;

// One part of one element: a finite rational, an infinity or NaN.
struct Exact {
  enum Kind { Finite, PlusInf, MinusInf, NaN } kind = Finite;
  Rational q;
  double approx = 0.0;  // the value as a double, for non-finite parts
};

void setNonFinite(Exact& out, double v) {
  out.approx = v;
  out.kind = std::isnan(v) ? Exact::NaN : (v > 0 ? Exact::PlusInf : Exact::MinusInf);
}

void read(Exact& out, const fi::ValueSource& s, std::size_t k, bool imagPart) {
  out.kind = Exact::Finite;
  if (s.array) {
    const fi& a = *s.array;
    const int i = static_cast<int>(k);
    const number& v = imagPart ? a.imag(i) : a.real(i);
    if (!v.myisfinite()) return setNonFinite(out, v.todouble());
    realWorld(out.q.v, v, a.getNumericType());
    return;
  }
  const HostArray& h = *s.host;
  if (h.element_class() == HostClass::Int64 || h.element_class() == HostClass::UInt64) {
    Integer z;
    if (h.element_class() == HostClass::Int64)
      mpz_set_si(z.v, (imagPart ? h.imag<std::int64_t>() : h.real<std::int64_t>())[k]);
    else
      mpz_set_ui(z.v, (imagPart ? h.imag<std::uint64_t>() : h.real<std::uint64_t>())[k]);
    mpq_set_z(out.q.v, z.v);
    return;
  }
  const double v = imagPart ? h.imag_as_double(k) : h.real_as_double(k);
  if (!std::isfinite(v)) return setNonFinite(out, v);
  mpq_set_d(out.q.v, v);
}

int rank(Exact::Kind k) {
  return k == Exact::MinusInf ? -1 : (k == Exact::PlusInf ? 1 : 0);
}

// -1, 0 or 1 as x is below, equal to or above y; kUnordered with a NaN.
int order(const Exact& x, const Exact& y) {
  if (x.kind == Exact::NaN || y.kind == Exact::NaN) return kUnordered;
  if (x.kind != Exact::Finite || y.kind != Exact::Finite) {
    const int d = rank(x.kind) - rank(y.kind);
    return d < 0 ? -1 : (d > 0 ? 1 : 0);
  }
  const int c = mpq_cmp(x.q.v, y.q.v);
  return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

// The half of the plane of an angle in (-pi, pi]: below the axis, on the positive axis (and
// zero), above it, on the negative axis.
int half(const Rational& re, const Rational& im) {
  const int s = mpq_sgn(im.v);
  if (s < 0) return 0;
  if (s > 0) return 2;
  return mpq_sgn(re.v) >= 0 ? 1 : 3;
}

// Octave's order of complex values: by magnitude, then by angle; an operand of a real array
// (xReal, yReal) has the angle 0 whatever its sign.
int complexOrder(const Exact& xr, const Exact& xi, const Exact& yr, const Exact& yi, bool xReal,
                 bool yReal) {
  for (const Exact* e : {&xr, &xi, &yr, &yi})
    if (e->kind == Exact::NaN) return kUnordered;
  const auto value = [](const Exact& e) {
    return e.kind == Exact::Finite ? mpq_get_d(e.q.v) : e.approx;
  };
  if (xr.kind != Exact::Finite || xi.kind != Exact::Finite || yr.kind != Exact::Finite ||
      yi.kind != Exact::Finite) {
    // An infinite part: magnitudes in doubles (infinite ones equal), then angles.
    const std::complex<double> x(value(xr), value(xi)), y(value(yr), value(yi));
    const double ax = std::abs(x), ay = std::abs(y);
    if (ax != ay) return ax < ay ? -1 : 1;
    const auto angle = [](std::complex<double> z, bool real) {
      const double p = std::arg(z);
      return real ? 0.0 : (p == -M_PI ? M_PI : p);
    };
    const double px = angle(x, xReal), py = angle(y, yReal);
    return px < py ? -1 : (px > py ? 1 : 0);
  }
  Rational mx, my, t;
  mpq_mul(mx.v, xr.q.v, xr.q.v);
  mpq_mul(t.v, xi.q.v, xi.q.v);
  mpq_add(mx.v, mx.v, t.v);
  mpq_mul(my.v, yr.q.v, yr.q.v);
  mpq_mul(t.v, yi.q.v, yi.q.v);
  mpq_add(my.v, my.v, t.v);
  if (const int c = mpq_cmp(mx.v, my.v); c != 0) return c < 0 ? -1 : 1;
  const int hx = xReal ? 1 : half(xr.q, xi.q), hy = yReal ? 1 : half(yr.q, yi.q);
  if (hx != hy) return hx < hy ? -1 : 1;
  if (hx == 1 || hx == 3) return 0;
  // In one open half plane the angle grows with the cross product's sign.
  Rational cross;
  mpq_mul(cross.v, xr.q.v, yi.q.v);
  mpq_mul(t.v, xi.q.v, yr.q.v);
  mpq_sub(cross.v, cross.v, t.v);
  const int c = mpq_sgn(cross.v);
  return c > 0 ? -1 : (c < 0 ? 1 : 0);
}

bool holds(fi::Relation r, int c) {
  if (c == kUnordered) return r == fi::Relation::Ne;
  switch (r) {
    case fi::Relation::Eq:
      return c == 0;
    case fi::Relation::Ne:
      return c != 0;
    case fi::Relation::Lt:
      return c < 0;
    case fi::Relation::Le:
      return c <= 0;
    case fi::Relation::Gt:
      return c > 0;
    case fi::Relation::Ge:
      return c >= 0;
  }
  return false;
}

std::vector<std::size_t> dimsOf(const fi::ValueSource& s) {
  if (s.array) return std::vector<std::size_t>(s.array->dims(), s.array->dims() + s.array->ndims());
  return s.host->dims();
}

// The element k of a real source as a double holding its value exactly, when there is one.
bool exactDouble(const fi::ValueSource& s, std::size_t k, double& out) {
  if (s.array) {
    const number& v = s.array->real(static_cast<int>(k));
    if (!v.isdouble() || s.array->isSlopeBiasScaled()) return false;
    out = v.inlinedouble();
    return true;
  }
  if (s.host->element_class() == HostClass::Int64 || s.host->element_class() == HostClass::UInt64)
    return false;
  out = s.host->real_as_double(k);
  return true;
}

}  // namespace

HostArray fi::compare(const ValueSource& b, Relation r) const {
  b.check(Msg::FiOperandNotNumeric);
  const ValueSource a{this, nullptr};
  const std::size_t na = static_cast<std::size_t>(numel_), nb = b.count();
  if (na != 1 && nb != 1 && dimsOf(a) != dimsOf(b)) raise(Msg::FiDimAgree);
  const std::vector<std::size_t> dims = na == 1 ? dimsOf(b) : dimsOf(a);
  HostArray out(HostClass::Logical, dims);
  bool* result = out.real<bool>();
  const std::size_t n = out.numel();
  const bool complex = iscomplex() || b.complex();
  Exact xr, xi, yr, yi;
  for (std::size_t k = 0; k < n; ++k) {
    const std::size_t i = na == 1 ? 0 : k, j = nb == 1 ? 0 : k;
    double x, y;
    if (!complex && exactDouble(a, i, x) && exactDouble(b, j, y)) {
      result[k] =
          holds(r, std::isnan(x) || std::isnan(y) ? kUnordered : (x < y ? -1 : (x > y ? 1 : 0)));
      continue;
    }
    poll_interrupt();  // only where the elements are read exactly: the double case is quick
    read(xr, a, i, false);
    read(yr, b, j, false);
    if (!complex) {
      result[k] = holds(r, order(xr, yr));
      continue;
    }
    read(xi, a, i, true);
    read(yi, b, j, true);
    if (r == Relation::Eq || r == Relation::Ne) {
      const int re = order(xr, yr), im = order(xi, yi);
      result[k] = (re == 0 && im == 0) == (r == Relation::Eq);
    } else {
      result[k] = holds(r, complexOrder(xr, xi, yr, yi, isreal_, !b.complex()));
    }
  }
  return out;
}

bool fi::isequalTo(const ValueSource& b) const {
  b.check(Msg::FiOperandNotNumeric);
  const ValueSource a{this, nullptr};
  if (dimsOf(a) != dimsOf(b)) return false;
  const HostArray equal = compare(b, Relation::Eq);
  const bool* e = equal.real<bool>();
  for (std::size_t k = 0; k < equal.numel(); ++k)
    if (!e[k]) return false;
  return true;
}

}  // namespace corbel
