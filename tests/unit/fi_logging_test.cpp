// fi logging and display: new counts moving into the global and result logs with their
// warnings, the global report, assignment reports, logging-state warnings, real-world
// values and disp.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "fi/fi.h"
#include "host/host_error.h"
#include "test_host.h"

namespace corbel {
namespace {

using Warnings = std::vector<InProcessHost::Warning>;

// Every test starts with logging off and clean global logs, and leaves logging off.
class FiLogging : public WithHost {
 protected:
  void SetUp() override {
    fi::setLogging(true);
    fi::resetGlobalLog();
    fi::setLogging(false);
  }
  void TearDown() override { fi::setLogging(false); }
};

TEST_F(FiLogging, ReportOperationMovesOnlyNewCounts) {
  fi::setLogging(true);
  const qlogger& global = fi::getSumlog();
  qlogger reg, result;
  reg.addtoOverflows(1);
  fi::reportOperation(reg, global, result, 6, 2, "+");
  fi::reportOperation(reg, global, result, 6, 2, "+");  // nothing new: no second warning
  EXPECT_EQ(host.take_warnings(),
            (Warnings{{"fi:overflow", "1 overflow occurred in the fi + operation."}}));
  EXPECT_EQ(global.getNoverflows(), 1);
  EXPECT_EQ(result.getNoperations(), 6);
  EXPECT_EQ(result.getNMathoperations(), 2);
  EXPECT_EQ(result.getNoverflows(), 0);

  reg.addtoOverflows(3);
  reg.addtoUnderflows(1);
  fi::reportOperation(reg, global, result, 3, 3, "-");
  EXPECT_EQ(host.take_warnings(),
            (Warnings{{"fi:overflow", "3 overflows occurred in the fi - operation."},
                      {"fi:underflow", "1 underflow occurred in the fi - operation."}}));
  EXPECT_EQ(global.getNoverflows(), 4);
  EXPECT_EQ(global.getNunderflows(), 1);
  EXPECT_EQ(result.getNoverflows(), 3);
  EXPECT_EQ(result.getOldOverflows(), 3);
  EXPECT_EQ(result.getOldUnderflows(), 1);

  // With logging off the register keeps its new counts for a later report.
  fi::setLogging(false);
  reg.addtoOverflows(2);
  fi::reportOperation(reg, global, result, 1, 1, "+");
  EXPECT_TRUE(host.take_warnings().empty());
  EXPECT_EQ(reg.getOldOverflows(), 4);
  EXPECT_EQ(global.getNoverflows(), 4);
}

// Real operations fill the register logs; reporting them, as the host's plus and times
// do, warns once with the operator's name and moves the counts into the global and result
// logs.
TEST_F(FiLogging, OverflowingSumsAndUnderflowingProductsAreReportedOnce) {
  fimath m;
  m.setSumMode(ArithmeticModeEnum::SpecifyPrecision);
  m.setSumWordLength(16);
  m.setSumFractionLength(13);
  m.setProductMode(ArithmeticModeEnum::SpecifyPrecision);
  m.setProductWordLength(16);
  m.setProductFractionLength(13);
  const double v[] = {3.0, -3.5, 0.5, 2.0 / 8192};
  const int dims[] = {1, 4};
  const fi x(v, nullptr, dims, 2, NumericType(true, 16, 13), m);
  fi::setLogging(true);
  auto sum = x.plus(x);  // 6 and -7 saturate
  EXPECT_EQ(sum->realdouble(0), 32767.0 / 8192);
  EXPECT_EQ(sum->realdouble(1), -4.0);
  fi::reportOperation(x.getsumfilog(), fi::getSumlog(), sum->getfilog(), 12, 4, "+");
  EXPECT_EQ(host.take_warnings(),
            (Warnings{{"fi:overflow", "2 overflows occurred in the fi + operation."}}));
  EXPECT_EQ(fi::getSumlog().getNoverflows(), 2);
  EXPECT_EQ(sum->getNoverflows(), 2);
  EXPECT_EQ(sum->getNoperations(), 12);
  // Reported counts are not reported again.
  fi::reportOperation(x.getsumfilog(), fi::getSumlog(), sum->getfilog(), 12, 4, "+");
  EXPECT_TRUE(host.take_warnings().empty());
  EXPECT_EQ(fi::getSumlog().getNoverflows(), 2);

  auto product = x.times(x);  // 2^-24 rounds to zero; 9 and 12.25 saturate
  fi::reportOperation(x.getproductfilog(), fi::getProductlog(), product->getfilog(), 4, 4, ".*");
  EXPECT_EQ(host.take_warnings(),
            (Warnings{{"fi:overflow", "2 overflows occurred in the fi .* operation."},
                      {"fi:underflow", "1 underflow occurred in the fi .* operation."}}));
  EXPECT_EQ(fi::getProductlog().getNunderflows(), 1);
  EXPECT_EQ(product->realdouble(3), 0.0);
}

TEST_F(FiLogging, GlobalLogIsShownAndResetOnlyWithLoggingOn) {
  fi::getAssignlog().addtoOverflows(12);
  fi::getAssignlog().addtoUnderflows(3);
  fi::getSumlog().addtoOverflows(1);
  fi::getProductlog().addtoUnderflows(40);
  fi::displayGlobalLog();
  fi::resetGlobalLog();
  EXPECT_EQ(host.take_console(), "");
  EXPECT_EQ(fi::getAssignlog().getNoverflows(), 12);

  fi::setLogging(true);
  fi::displayGlobalLog();
  EXPECT_EQ(host.take_console(),
            "FI assignment overflows : 12\n"
            "FI assignment underflows: 3\n"
            "FI sum overflows        : 1\n"
            "FI sum underflows       : 0\n"
            "FI product overflows    : 0\n"
            "FI product underflows   : 40\n");
  fi::resetGlobalLog();
  EXPECT_EQ(fi::getAssignlog().getNoverflows(), 0);
  EXPECT_EQ(fi::getProductlog().getNunderflows(), 0);
}

TEST_F(FiLogging, AssignmentAndGeneralWarnings) {
  fi::setLogging(true);
  const double values[] = {2.0, -3.0, 0.5, 0.001};  // two saturate, one rounds to zero
  const int dims[] = {1, 4};
  fi x(values, nullptr, dims, 2, NumericType(true, 8, 6), fimath());
  // The report does not look at the switch; each count is reported once.
  fi::setLogging(false);
  x.displaySubsasgnLogging(x.getfilog());
  x.displaySubsasgnLogging(x.getfilog());
  fi::warnQuantizationEvent("fi:overflow", 2, "product", "overflow", "*");
  fi::warnQuantizationEvent("fi:overflow", 0, "sum", "overflow", "+");
  EXPECT_EQ(host.take_warnings(),
            (Warnings{{"fi:overflow", "2 overflows occurred in the fi assignment operation."},
                      {"fi:underflow", "1 underflow occurred in the fi assignment operation."},
                      {"fi:overflow", "2 product overflows occurred in the fi * operation."}}));

  // An assignment refused part way (a NaN after an overflowing value) leaves the log as it
  // was, as it leaves the elements.
  fi::setLogging(true);
  const int overflows = x.getNoverflows();
  const HostArray bad = HostArray::make_double_matrix(1, 4, {9.0, 9.0, 0.0, std::nan("")});
  EXPECT_THROW(x.setValues(bad), HostError);
  EXPECT_EQ(x.getNoverflows(), overflows);
  EXPECT_EQ(x.real(0).todouble(), 127.0 / 64);
}

TEST_F(FiLogging, LoggingStatesWarnUnlessSomethingIsLogged) {
  fi x(0.25, NumericType(), fimath());
  EXPECT_FALSE(x.reportLoggingState("maxlog"));
  fi::setLogging(true);
  EXPECT_FALSE(x.reportLoggingState("minlog"));
  fi y(0.25, NumericType(), fimath());
  EXPECT_TRUE(y.reportLoggingState("maxlog"));
  fi::setLogging(false);
  EXPECT_FALSE(y.reportLoggingState("minlog"));
  // Resetting reaches the registers' logs, and creates no register.
  x.resetLogging();
  EXPECT_FALSE(x.isSumRegisterInitialized() || x.isProductRegisterInitialized());
  y.initializeSumRegister(fimath());
  y.initializeProductRegister(fimath());
  for (const qlogger* log : {&y.getsumfilog(), &y.getproductfilog(), &y.getproductregsumfilog()})
    log->updateminmax(number(0.5));
  y.resetLogging();
  EXPECT_EQ(y.loggingState(), fi::LoggingState::OffNothingLogged);
  EXPECT_TRUE(y.getsumfilog().isreset() && y.getproductfilog().isreset() &&
              y.getproductregsumfilog().isreset());
  EXPECT_EQ(host.take_warnings(),
            (Warnings{{"velkora:fi:maxlog:loggingoffandreset",
                       "Logging is turned off, and no values have been previously logged for "
                       "this variable.  To turn on logging, type fipref('LoggingMode','On')"},
                      {"velkora:fi:minlog:reset",
                       "Logging is turned on, however, no values have been logged for this "
                       "variable yet."},
                      {"velkora:fi:minlog:loggingoff",
                       "Logging is turned off.  However, values have been previously logged "
                       "for this variable.  To turn on logging, type "
                       "fipref('LoggingMode','On')"}}));
}

TEST_F(FiLogging, SlopeBiasValuesComeBackAsRealWorld) {
  fi::setLogging(true);
  const double values[] = {0.125, -1.75, 1.0625, -0.5};  // on the grid -0.5 + k * 1.25/8
  const int dims[] = {2, 1, 2};
  fi x(values, nullptr, dims, 3,
       NumericType(DataTypeModeEnum::FixedSlopeBias, true, 8, 1.25, -3, -0.5), fimath());
  const HostArray a = x.toHostDouble();
  EXPECT_EQ(a.dims(), (std::vector<std::size_t>{2, 1, 2}));
  EXPECT_EQ(std::vector<double>(a.real<double>(), a.real<double>() + 4),
            std::vector<double>(values, values + 4));
  EXPECT_EQ(x.getMaxLogAsRealWorldValue(), 1.0625);
  EXPECT_EQ(x.getMinLogAsRealWorldValue(), -1.75);
}

TEST_F(FiLogging, DispPrintsValuesThenTypeThenMath) {
  const double re[] = {0.5, 0.75, -0.25, 0.125};
  const double im[] = {0.25, -0.5};
  const int square[] = {2, 2}, row[] = {1, 2}, empty[] = {0, 3};
  // The type's and the math's own display blocks (byte for byte in their tests) follow.
  NumericType().disp();
  const std::string type = host.take_console();
  fimath().disp();
  const std::string rest = "\n" + type + "\n" + host.take_console();
  fi(re, nullptr, square, 2, NumericType(), fimath()).disp();
  EXPECT_EQ(host.take_console(), "   0.5000  -0.2500\n   0.7500   0.1250\n" + rest);
  fi(re + 2, im, row, 2, NumericType(), fimath()).disp();
  EXPECT_EQ(host.take_console(), "  -0.2500 + 0.2500i   0.1250 - 0.5000i\n" + rest);
  fi(empty, 2, NumericType(), fimath(), false).disp();
  EXPECT_EQ(host.take_console(), "     []\n" + rest);
}

}  // namespace
}  // namespace corbel
