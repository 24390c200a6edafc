// fi: the limits of an array's type as 1x1 arrays of that type and fimath. Fixed-point and
// scaled-double types read them from the assignment quantizer (on the element form, so a
// slope-bias type's limits come out in its real-world scaling); double, single and boolean
// types have their own.
#include <gmp.h>

#include <cfloat>

#include "fi/fi.h"
#include "host/messages.h"

namespace corbel {
namespace {

enum class Limit { Realmax, Realmin, Eps, Lower, Upper };

double floatingLimit(const NumericType& t, Limit which) {
  if (t.isBoolean()) return which == Limit::Lower ? 0.0 : 1.0;
  const bool single = t.isSingle();
  switch (which) {
    case Limit::Realmax:
    case Limit::Upper:
      return single ? FLT_MAX : DBL_MAX;
    case Limit::Lower:
      return single ? -FLT_MAX : -DBL_MAX;
    case Limit::Realmin:
      return single ? FLT_MIN : DBL_MIN;
    case Limit::Eps:
      return single ? FLT_EPSILON : DBL_EPSILON;
  }
  return 0.0;
}

}  // namespace

std::unique_ptr<fi> fi::limit(int which) const {
  const auto w = static_cast<Limit>(which);
  auto r = std::make_unique<fi>(1, 1, type_, math_, false);
  if (!type_.isFixed() && !type_.isScaledDouble()) {
    r->realRef(0) = floatingLimit(type_, w);
    return r;
  }
  const quantizer& q = assignQuantizer_;
  switch (w) {
    case Limit::Realmax:
      r->realRef(0) = q.getRealmax();
      break;
    case Limit::Realmin:
      r->realRef(0) = q.getRealmin();
      break;
    case Limit::Eps:
      r->realRef(0) = q.getEps();
      break;
    case Limit::Lower:
      r->realRef(0) = q.getLowerBound();
      break;
    case Limit::Upper:
      r->realRef(0) = q.getUpperBound();
      break;
  }
  return r;
}

std::unique_ptr<fi> fi::realmax() const {
  return limit(static_cast<int>(Limit::Realmax));
}
std::unique_ptr<fi> fi::realmin() const {
  return limit(static_cast<int>(Limit::Realmin));
}
std::unique_ptr<fi> fi::fieps() const {
  return limit(static_cast<int>(Limit::Eps));
}
std::unique_ptr<fi> fi::lowerbound() const {
  return limit(static_cast<int>(Limit::Lower));
}
std::unique_ptr<fi> fi::upperbound() const {
  return limit(static_cast<int>(Limit::Upper));
}

std::unique_ptr<fi> fi::range() const {
  auto r = std::make_unique<fi>(1, 2, type_, math_, false);
  r->realRef(0).setvalue(lowerbound()->real(0));
  r->realRef(1).setvalue(upperbound()->real(0));
  return r;
}

std::unique_ptr<fi> fi::intlimit(bool largest) const {
  if (!type_.isFixed()) raise(Msg::FiFixedOnly);
  const int w = getWordLength();
  mpz_t v;
  mpz_init(v);
  if (largest) {
    mpz_setbit(v, static_cast<mp_bitcnt_t>(getSigned() ? w - 1 : w));
    mpz_sub_ui(v, v, 1);
  } else if (getSigned()) {
    mpz_setbit(v, static_cast<mp_bitcnt_t>(w - 1));
    mpz_neg(v, v);
  }
  auto r = std::make_unique<fi>(1, 1, NumericType(getSigned(), w, 0), math_, false);
  r->realRef(0).setvalue(v, 0);
  mpz_clear(v);
  return r;
}

std::unique_ptr<fi> fi::intmax() const {
  return intlimit(true);
}
std::unique_ptr<fi> fi::intmin() const {
  return intlimit(false);
}

}  // namespace corbel
