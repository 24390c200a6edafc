// Random sequences of fi operations on three arrays: construct, set type, plus, minus,
// times, matrix product, divide, unary minus, index, assign, bitand/bitor/bitxor and
// bitcmp, at random binary-point types and arithmetic settings. Every result is checked
// element by element against the exact model of the tests (GMP rationals, rounded and
// overflowed by the model's own cast), and then takes a slot for the operations after it. A
// refusal is a HostError; any other exception, and any result the model disagrees with, is
// a finding.
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "../tests/unit/exact.h"
#include "fi/fi.h"
#include "fuzz_input.h"

namespace {

using namespace corbel;

Q castTo(const Q& v, const NumericType& t, const fimath& m) {
  return cast(v, t.getSigned(), t.getWordLength(), t.getFixedExponent(), m.getRoundMode(),
              m.getOverflowMode());
}

NumericType randomType(fuzz::Input& in) {
  const int w = static_cast<int>(in.bits(2) == 0 ? in.range(1, 200) : in.range(1, 40));
  return NumericType(in.bits(1) != 0, w, static_cast<int>(in.range(-12, w + 12)));
}

fimath randomMath(fuzz::Input& in) {
  constexpr RoundModeEnum kRound[] = {RoundModeEnum::Ceil,  RoundModeEnum::Convergent,
                                      RoundModeEnum::Floor, RoundModeEnum::Nearest,
                                      RoundModeEnum::Round, RoundModeEnum::Fix};
  constexpr ArithmeticModeEnum kModes[] = {ArithmeticModeEnum::FullPrecision,
                                           ArithmeticModeEnum::KeepLSB, ArithmeticModeEnum::KeepMSB,
                                           ArithmeticModeEnum::SpecifyPrecision};
  fimath m;
  m.setRoundMode(kRound[in.bits(3) % 6]);
  m.setOverflowMode(in.bits(1) ? OverflowModeEnum::Saturate : OverflowModeEnum::Wrap);
  m.setMaxProductWordLength(in.bits(1) ? 65535 : 128);
  m.setMaxSumWordLength(in.bits(1) ? 65535 : 128);
  m.setProductMode(kModes[in.bits(2)]);
  m.setSumMode(kModes[in.bits(2)]);
  m.setProductWordLength(static_cast<int>(in.range(1, 128)));
  m.setSumWordLength(static_cast<int>(in.range(1, 128)));
  m.setProductFractionLength(static_cast<int>(in.range(-10, 140)));
  m.setSumFractionLength(static_cast<int>(in.range(-10, 140)));
  m.setCastBeforeSum(in.bits(1) != 0);
  return m;
}

// Each part of each element, exactly.
std::vector<Q> parts(const fi& x, bool imag) {
  std::vector<Q> out;
  for (int i = 0; i < x.numel(); ++i) out.emplace_back(imag ? x.imag(i) : x.real(i));
  return out;
}

// The steps so far and the operands of the one under way, for the report of a disagreement.
std::string steps, operands;

std::string describe(const fi& x) {
  const NumericType& t = x.getNumericType();
  std::string s = (t.getSigned() ? "s" : "u") + std::to_string(t.getWordLength()) + "," +
                  std::to_string(t.getFractionLength()) + " [" + x.getFimath().convertToString() +
                  "]";
  for (int i = 0; i < x.numel(); ++i)
    s += " " + Q(x.real(i)).str() + (x.iscomplex() ? "+" + Q(x.imag(i)).str() + "i" : "");
  return s;
}

[[noreturn]] void disagree(const char* op, int element, const Q& want, const Q& got) {
  std::fprintf(stderr, "%s: element %d is %s, the model says %s\nsteps:%s\n%s\n", op, element,
               got.str().c_str(), want.str().c_str(), steps.c_str(), operands.c_str());
  std::abort();
}

void expectParts(const char* op, const fi& r, const std::vector<Q>& re, const std::vector<Q>& im) {
  if (r.numel() != static_cast<int>(re.size())) {
    std::fprintf(stderr, "%s: %d elements, the model has %zu\n", op, r.numel(), re.size());
    std::abort();
  }
  for (int i = 0; i < r.numel(); ++i) {
    if (!(Q(r.real(i)) == re[static_cast<std::size_t>(i)]))
      disagree(op, i, re[static_cast<std::size_t>(i)], Q(r.real(i)));
    const Q want = im.empty() ? Q() : im[static_cast<std::size_t>(i)];
    if (!(Q(r.imag(i)) == want)) disagree(op, i, want, Q(r.imag(i)));
  }
}

// Element k of an operand under scalar expansion.
const Q& at(const std::vector<Q>& v, std::size_t k) {
  return v.size() == 1 ? v[0] : v[k];
}

// The stored integer's w-bit pattern, and a pattern read back as a value of type t.
void pattern(mpz_t out, const Q& v, const NumericType& t) {
  const Q n = v.scaled(-t.getFixedExponent());
  mpz_fdiv_r_2exp(out, mpq_numref(n.v), static_cast<mp_bitcnt_t>(t.getWordLength()));
}
Q fromPattern(mpz_t p, const NumericType& t) {
  const long w = t.getWordLength();
  if (t.getSigned() && mpz_tstbit(p, static_cast<mp_bitcnt_t>(w - 1))) {
    mpz_t top;
    mpz_init(top);
    mpz_setbit(top, static_cast<mp_bitcnt_t>(w));
    mpz_sub(p, p, top);
    mpz_clear(top);
  }
  Q out;
  mpq_set_z(out.v, p);
  return out.scaled(t.getFixedExponent());
}

std::unique_ptr<fi> construct(fuzz::Input& in) {
  const int rows = static_cast<int>(in.range(1, 3)), cols = static_cast<int>(in.range(1, 3));
  const NumericType t = randomType(in);
  const fimath m = randomMath(in);
  const bool complex = in.bits(2) == 0;
  std::vector<double> re(static_cast<std::size_t>(rows * cols)), im(re.size());
  for (double* part : {re.data(), im.data()})
    for (std::size_t k = 0; k < re.size(); ++k) {
      const double mantissa = static_cast<double>(static_cast<std::int32_t>(in.bits(32)) >> 8);
      part[k] = std::ldexp(mantissa, static_cast<int>(in.range(-40, 30)));
    }
  const int dims[] = {rows, cols};
  auto x = std::make_unique<fi>(re.data(), complex ? im.data() : nullptr, dims, 2, t, m);
  std::vector<Q> wantRe, wantIm;
  for (std::size_t k = 0; k < re.size(); ++k) {
    wantRe.push_back(castTo(Q(re[k]), t, m));
    if (complex) wantIm.push_back(castTo(Q(im[k]), t, m));
  }
  expectParts("construct", *x, wantRe, wantIm);
  return x;
}

// Positions 1 .. n, one to four of them, as a real double row.
HostArray positions(fuzz::Input& in, int n) {
  const std::size_t count = static_cast<std::size_t>(in.range(1, 4));
  HostArray p = HostArray::make_double_matrix(1, count);
  for (std::size_t k = 0; k < count; ++k) p.real<double>()[k] = static_cast<double>(in.range(1, n));
  return p;
}

// One operation on the slots; the result (if any) goes to slot `out`.
void step(fuzz::Input& in, std::unique_ptr<fi> (&slot)[3]) {
  const std::size_t out = in.bits(2) % 3;
  const fi& a = *slot[in.bits(2) % 3];
  const fi& b = *slot[in.bits(2) % 3];
  const fimath& m = a.getFimath();
  operands = "a: " + describe(a) + "\nb: " + describe(b);
  const auto ra = parts(a, false), ia = parts(a, true), rb = parts(b, false), ib = parts(b, true);
  const std::size_t n = static_cast<std::size_t>(std::max(a.numel(), b.numel()));
  const bool complex = a.iscomplex() || b.iscomplex();
  std::unique_ptr<fi> r;
  std::vector<Q> re, im;
  const char* name = "";
  switch (in.bits(4) % 12) {
    case 0:
      slot[out] = construct(in);
      return;
    case 1: {
      name = "set type";
      r = std::make_unique<fi>(a, fi::WholeCopy);
      const NumericType t = randomType(in);
      r->setNumericType(t);
      for (std::size_t k = 0; k < ra.size(); ++k) {
        re.push_back(castTo(ra[k], t, m));
        if (a.iscomplex()) im.push_back(castTo(ia[k], t, m));
      }
      break;
    }
    case 2:
    case 3: {
      const bool subtract = in.bits(1) != 0;
      name = subtract ? "minus" : "plus";
      r = subtract ? a.minus(b) : a.plus(b);
      const NumericType& t = r->getNumericType();
      const auto part = [&](const Q& x, const Q& y) {
        const Q first = m.getCastBeforeSum() ? castTo(x, t, m) : x;
        return castTo(subtract ? first - y : first + y, t, m);
      };
      for (std::size_t k = 0; k < n; ++k) {
        re.push_back(part(at(ra, k), at(rb, k)));
        if (complex) im.push_back(part(at(ia, k), at(ib, k)));
      }
      break;
    }
    case 4: {
      if (complex) return;
      name = "times";
      r = a.times(b);
      for (std::size_t k = 0; k < n; ++k)
        re.push_back(castTo(at(ra, k) * at(rb, k), r->getNumericType(), m));
      break;
    }
    case 5: {
      if (complex || a.numel() == 1 || b.numel() == 1) return;
      name = "mtimes";
      const NumericType P = a.getProductTypeForMpyOp(b);
      r = a.mtimes(b);
      const NumericType& S = r->getNumericType();
      for (int j = 0; j < b.getN(); ++j)
        for (int i = 0; i < a.getM(); ++i) {
          Q acc;
          for (int k = 0; k < a.getN(); ++k) {
            const Q p = castTo(ra[static_cast<std::size_t>(i + k * a.getM())] *
                                   rb[static_cast<std::size_t>(k + j * b.getM())],
                               P, m);
            acc = castTo(acc + p, S, m);
          }
          re.push_back(acc);
        }
      break;
    }
    case 6: {
      if (complex) return;
      name = "divide";
      const NumericType t = randomType(in);
      r = a.over(b, t);
      for (std::size_t k = 0; k < n; ++k) {
        const Q& x = at(ra, k);
        const Q& y = at(rb, k);
        if (mpq_sgn(y.v) != 0) {
          re.push_back(castTo(Q(mpq_div, x, y), t, m));
          continue;
        }
        // A zero divisor saturates on the dividend's side.
        Q bound = Q(1.0).scaled(t.getSigned() ? t.getWordLength() - 1 : t.getWordLength());
        bound = mpq_sgn(x.v) < 0 ? (t.getSigned() ? Q(mpq_sub, Q(), bound) : Q()) : bound - Q(1.0);
        re.push_back(bound.scaled(t.getFixedExponent()));
      }
      break;
    }
    case 7: {
      name = "uminus";
      r = a.uminus();
      for (std::size_t k = 0; k < ra.size(); ++k) {
        re.push_back(castTo(Q(mpq_sub, Q(), ra[k]), a.getNumericType(), m));
        if (a.iscomplex()) im.push_back(castTo(Q(mpq_sub, Q(), ia[k]), a.getNumericType(), m));
      }
      break;
    }
    case 8: {
      name = "index";
      const HostArray p = positions(in, a.numel());
      r = a.elementsAt(p);
      for (std::size_t k = 0; k < p.numel(); ++k) {
        const auto i = static_cast<std::size_t>(p.real<double>()[k]) - 1;
        re.push_back(ra[i]);
        if (a.iscomplex()) im.push_back(ia[i]);
      }
      break;
    }
    case 9: {
      name = "assign";
      const HostArray p = positions(in, a.numel());
      if (b.numel() != 1 && static_cast<std::size_t>(b.numel()) != p.numel()) return;
      r = std::make_unique<fi>(a, fi::WholeCopy);
      r->assignAt(p, {&b, nullptr});
      re = ra;
      im = ia;
      for (std::size_t k = 0; k < p.numel(); ++k) {
        const auto i = static_cast<std::size_t>(p.real<double>()[k]) - 1;
        re[i] = castTo(at(rb, k), a.getNumericType(), m);
        im[i] = castTo(at(ib, k), a.getNumericType(), m);
      }
      break;
    }
    case 10: {
      // Both operands of one type: a and a rearrangement of its own elements.
      if (a.iscomplex()) return;
      name = "bitand/bitor/bitxor";
      const HostArray p = positions(in, a.numel());
      const auto c = a.elementsAt(p);
      const auto op = static_cast<fi::BitOp>(in.bits(2) % 3);
      r = a.numel() == 1 || c->numel() == 1 || c->numel() == a.numel()
              ? a.bitandorxor(*c, op, "bitand")
              : nullptr;
      if (!r) return;
      const auto rc = parts(*c, false);
      const std::size_t count = static_cast<std::size_t>(std::max(a.numel(), c->numel()));
      mpz_t x, y;
      mpz_inits(x, y, nullptr);
      for (std::size_t k = 0; k < count; ++k) {
        pattern(x, at(ra, k), a.getNumericType());
        pattern(y, at(rc, k), a.getNumericType());
        if (op == fi::BitOp::And) mpz_and(x, x, y);
        if (op == fi::BitOp::Or) mpz_ior(x, x, y);
        if (op == fi::BitOp::Xor) mpz_xor(x, x, y);
        re.push_back(fromPattern(x, a.getNumericType()));
      }
      mpz_clears(x, y, nullptr);
      break;
    }
    default: {
      if (a.iscomplex()) return;
      name = "bitcmp";
      r = a.bitcmp();
      mpz_t x, ones;
      mpz_inits(x, ones, nullptr);
      mpz_setbit(ones, static_cast<mp_bitcnt_t>(a.getWordLength()));
      mpz_sub_ui(ones, ones, 1);
      for (const Q& v : ra) {
        pattern(x, v, a.getNumericType());
        mpz_xor(x, x, ones);
        re.push_back(fromPattern(x, a.getNumericType()));
      }
      mpz_clears(x, ones, nullptr);
      break;
    }
  }
  steps += std::string(" ") + name;
  expectParts(name, *r, re, im);
  slot[out] = std::move(r);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::useHost();
  fuzz::Input in(data, size);
  std::unique_ptr<fi> slot[3];
  steps.clear();
  try {
    for (auto& s : slot) s = construct(in);
  } catch (const HostError&) {
    return 0;
  }
  for (int k = static_cast<int>(in.range(1, 8)); k > 0; --k)
    fuzz::expectOnlyHostErrors([&] { step(in, slot); });
  return 0;
}
