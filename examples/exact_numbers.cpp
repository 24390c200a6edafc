// A first look at Corbel's exact numbers: the same sum at three precisions, the six
// roundings, and a bit complement wider than any machine integer.
#include <cstdio>

#include "host/services.h"
#include "number/mpnumber.h"
#include "number/number.h"

using corbel::mpnumber;
using corbel::number;

namespace {

void show(const char* label, const number& x) {
  std::printf("%-34s", label);
  if (x.gettype() == corbel::numbertype::doublenumber) {
    std::printf("%.60g  (double, 52 bits)\n", x.todouble());
  } else {
    const auto& body = static_cast<const mpnumber&>(x.gethandle().getbody());
    mpfr_printf("%.70Rg  (%lu bits)\n", body.getelement(), x.getprecision());
  }
}

}  // namespace

int main() {
  std::printf("0.1 + 0.2\n");
  // At 20 fraction bits: each operand quantized to a multiple of 2^-20 first.
  number a20(0.1), b20(0.2);
  a20.nearest(20);
  b20.nearest(20);
  show("  operands rounded to 20 bits:", a20 + b20);
  show("  as doubles (52 bits):", number(0.1) + number(0.2));
  show("  held exactly at 200 bits:", number(0.1, 200, false) + number(0.2, 200, false));

  std::printf("\nThe six roundings (52 bits and 200 bits agree)\n");
  std::printf("  %-11s %6s %6s %6s %6s\n", "", "-2.5", "2.5", "-3.5", "3.5");
  struct Rounding {
    const char* name;
    number& (number::*op)();
  } roundings[] = {{"ceil", &number::ceil},       {"convergent", &number::convergent},
                   {"fix", &number::fix},         {"floor", &number::floor},
                   {"nearest", &number::nearest}, {"round", &number::round}};
  for (const Rounding& r : roundings) {
    std::printf("  %-11s", r.name);
    for (double v : {-2.5, 2.5, -3.5, 3.5}) {
      number d(v), m(v, 200, false);
      (d.*r.op)();
      (m.*r.op)();
      std::printf(" %6g", d == m ? d.todouble() : 0.0 / 0.0);
    }
    std::printf("\n");
  }

  std::printf("\nA 100-bit two's-complement bit complement\n");
  mpz_t mask;
  mpz_init(mask);
  mpnumber::bitcmpXorMask(mask, 100);
  mpfr_t two;
  mpnumber::twoToTheN(two, 100);
  number x(12345.0, 100, false);
  show("  x:", x);
  x.bitcmp(true, 100, 1.0, 0, 0.0, mask, two);
  show("  bitcmp(x), signed 100-bit:", x);
  x.bitcmp(false, 100, 1.0, 0, 0.0, mask, two);
  show("  bitcmp of that, unsigned:", x);
  number y(0.0, 100, false);
  y.bitcmp(false, 100, 1.0, 0, 0.0, mask, two);
  show("  bitcmp(0), unsigned 100-bit:", y);
  std::printf("  bit 100 of that: %d\n",
              y.bitget(100, false, 100, 1.0, 0, 0.0, static_cast<mpfr_srcptr>(two)));
  mpz_clear(mask);
  mpfr_clear(two);
  return 0;
}
