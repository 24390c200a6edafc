// A first look at fixed-point arrays: pi in signed 16 bits with 13 fraction bits, its
// full-precision square, a saturating sum counted in the sum register's log, and a small
// matrix product, each shown as the host displays it.
#include <cstdio>

#include "fi/fi.h"
#include "host/inprocess_host.h"

using namespace corbel;

int main() {
  // Console text and warnings go straight to stdout.
  InProcessHost host(stdout, false);
  ScopedHost scope(host);

  std::printf("a = fi(pi, 1, 16, 13)\n");
  const fi a(3.14159265358979, true, 16, 13, fimath());
  a.disp();

  std::printf("\nb = a * a (full precision: 32 bits, fraction length 26)\n");
  auto b = a.times(a);
  b->disp();

  std::printf("\nc = a + a with SumMode SpecifyPrecision, 16 bits, fraction 13: saturates\n");
  fimath m;
  m.setSumMode(ArithmeticModeEnum::SpecifyPrecision);
  m.setSumWordLength(16);
  m.setSumFractionLength(13);
  const fi x(3.14159265358979, NumericType(true, 16, 13), m);
  fi::setLogging(true);
  auto c = x.plus(x);
  fi::setLogging(false);
  std::printf("%.10g  (overflows in the sum register's log: %d)\n", c->realdouble(0),
              x.getsumfilog().getNoverflows());

  std::printf("\nd = [0.5 -0.25; 0.75 1] * [1; -0.5] at signed 8 bits, fraction 6\n");
  const double left[] = {0.5, 0.75, -0.25, 1.0};  // column-major
  const double right[] = {1.0, -0.5};
  const int leftDims[] = {2, 2}, rightDims[] = {2, 1};
  const fi p(left, nullptr, leftDims, 2, NumericType(true, 8, 6), fimath());
  const fi q(right, nullptr, rightDims, 2, NumericType(true, 8, 6), fimath());
  auto d = p.mtimes(q);
  d->disp();
  return 0;
}
