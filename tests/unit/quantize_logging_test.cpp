// Quantization logs, the counting quantizer and the slope-bias quantizer.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "host/utilities.h"
#include "quantize/loggingquantizer.h"
#include "quantize/qlogger.h"
#include "quantize/slopebiasquantizer.h"

namespace corbel {
namespace {

TEST(QuantizationLog, ExtremesCountsAndReset) {
  qlogger log;
  EXPECT_TRUE(log.isreset());
  EXPECT_EQ(log.getMax().todouble(), -host_largest_double());
  EXPECT_EQ(log.getMin().todouble(), host_largest_double());
  log.updateminmax(number(0.0));
  EXPECT_FALSE(log.isreset());
  EXPECT_EQ(log.getMax().todouble(), 0.0);
  EXPECT_EQ(log.getMin().todouble(), 0.0);
  EXPECT_EQ(log.getNoperations(), 1);
  log.updateminmax(number(-3.0));
  log.updateminmax(number(5.0));
  EXPECT_EQ(log.getstruct().max, 5.0);
  EXPECT_EQ(log.getstruct().min, -3.0);

  log.addtoOverflows(3);
  log.nUnderflowsPlusOne();
  log.nMathOperationsPlusOne();
  EXPECT_EQ(log.changeInOverflows(), 3);
  EXPECT_EQ(log.changeInOverflows(), 0);
  log.nOverflowsPlusOne();
  EXPECT_EQ(log.changeInOverflows(), 1);
  EXPECT_EQ(log.changeInUnderflows(), 1);

  log.reset();
  EXPECT_TRUE(log.isreset());
  const qloggerstruct s = log.getstruct();
  EXPECT_EQ(s.noverflows, 0);
  EXPECT_EQ(s.nunderflows, 0);
  EXPECT_EQ(s.noperations, 0);
  EXPECT_EQ(s.nmathoperations, 1);  // kept across resets
  EXPECT_EQ(log.getOldOverflows(), 0);
}

TEST(LoggingQuantizer, CountsOverflowsUnderflowsAndOperations) {
  loggingquantizer q(quantizer::Fixed, RoundModeEnum::Floor, OverflowModeEnum::Saturate, 8, 7);
  number big(2.0), tiny(std::ldexp(1.0, -9)), zero(0.0), fine(0.5);
  q.quantize(big);
  q.quantize(tiny);
  q.quantize(zero);  // a zero is not rounded, so not an underflow
  q.quantize(fine);
  EXPECT_EQ(big.todouble(), 127.0 / 128);
  EXPECT_EQ(tiny.todouble(), 0.0);
  EXPECT_EQ(q.getNoverflows(), 1);
  EXPECT_EQ(q.getNunderflows(), 1);
  EXPECT_EQ(q.getNoperations(), 4);
  EXPECT_EQ(q.getMax().todouble(), 127.0 / 128);
  EXPECT_EQ(q.getMin().todouble(), 0.0);

  // Wrap counts each value that wrapped; a given log receives the counts instead.
  loggingquantizer w(quantizer::Ufixed, RoundModeEnum::Nearest, OverflowModeEnum::Wrap, 4, 0);
  qlogger other;
  for (double v : {16.0, -1.0, 7.0, 15.4}) {
    number x(v);
    w.quantize(x, other);
  }
  EXPECT_EQ(other.getNoverflows(), 2);
  EXPECT_EQ(w.getNoverflows(), 0);
  w.initializestates();
  EXPECT_TRUE(w.getQLog().isreset());
}

TEST(SlopeBiasQuantizer, UnscaledBehavesLikeItsBase) {
  slopebiasquantizer s(true, 8, 1.0, -4, 0.0, RoundModeEnum::Nearest, OverflowModeEnum::Saturate);
  loggingquantizer base(quantizer::Fixed, RoundModeEnum::Nearest, OverflowModeEnum::Saturate, 8, 4);
  EXPECT_FALSE(s.isSlopeBiasScaled());
  EXPECT_FALSE(s.setSlopeAdjustmentFactor(1.0));
  EXPECT_FALSE(s.setBias(0.0));
  std::mt19937_64 rng(3);
  std::uniform_real_distribution<double> d(-10, 10);
  for (int i = 0; i < 200; ++i) {
    number a(d(rng));
    number b(a);
    s.quantize(a);
    base.quantize(b);
    ASSERT_TRUE(a == b);
  }
}

TEST(SlopeBiasQuantizer, ScaledBoundsAndRoundTrips) {
  slopebiasquantizer s(true, 8, 1.0, -7, 0.0, RoundModeEnum::Nearest, OverflowModeEnum::Saturate);
  EXPECT_TRUE(s.setSlopeAdjustmentFactor(2.0));
  EXPECT_TRUE(s.setBias(1.0));
  EXPECT_EQ(s.getInverseSlopeAdjustmentFactor(), 0.5);
  // The bounds carry the factor and the bias, eps included.
  EXPECT_EQ(s.getEps().todouble(), 2 * std::ldexp(1.0, -7) + 1);
  EXPECT_EQ(s.getRealmax().todouble(), 2 * (127.0 / 128) + 1);
  EXPECT_EQ(s.getLowerBound().todouble(), -1.0);
  // Real-world values on the grid 1 + 2k/128 come back unchanged; others round to it.
  for (int k = -128; k < 128; k += 7) {
    const double v = 1.0 + 2.0 * k / 128;
    number x(v);
    s.quantize(x);
    ASSERT_EQ(x.todouble(), v);
    number y(v);
    s.convertNumberToBinaryPoint(y);
    EXPECT_EQ(y.todouble(), k / 128.0);
    s.convertNumberToSlopeBias(y);
    EXPECT_EQ(y.todouble(), v);
  }
  number off(1.0 + 2.4 / 128);
  s.quantize(off);
  EXPECT_EQ(off.todouble(), 1.0 + 2.0 / 128);
  number over(10.0);
  s.quantize(over);
  EXPECT_EQ(over.todouble(), 2 * (127.0 / 128) + 1);
  EXPECT_EQ(s.getNoverflows(), 1);
}

}  // namespace
}  // namespace corbel
