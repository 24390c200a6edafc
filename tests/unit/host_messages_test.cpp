// The message catalogue's raise and warn paths and the in-process host.
#include <gtest/gtest.h>

#include "host/host_error.h"
#include "host/inprocess_host.h"
#include "host/messages.h"

namespace corbel {
namespace {

// Plain errors are raised with their identifier and text throughout the other tests; the
// internal ones carry the full report.
TEST(HostMessages, InternalErrorsEndWithTheReportTrailer) {
  try {
    raise(Msg::MpBitsetDoubleParams);
    FAIL() << "no error raised";
  } catch (const HostError& e) {
    EXPECT_EQ(e.identifier(), "velkora:fi:mpnumber:bitset:doublenumberparameter");
    const std::string first = "mpnumber::bitset has been called with doublenumber parameters";
    const std::string trailer =
        "\nPlease report this problem to The Quillon so\n"
        "that we have the best chance of correcting it:\n\n"
        "  If the problem is reproducible, send this message to\n";
    const std::string closing = "Thank you for your assistance.  \n";
    EXPECT_EQ(e.text().substr(0, first.size()), first);
    EXPECT_EQ(e.text().substr(first.size(), trailer.size()), trailer);
    ASSERT_GT(e.text().size(), closing.size());
    EXPECT_EQ(e.text().substr(e.text().size() - closing.size()), closing);
  }
}

TEST(HostMessages, InProcessHostRecordsConsoleAndWarningsInOrder) {
  InProcessHost host;
  ScopedHost scope(host);
  host_services().print("a = ");
  host_services().print("1\n");
  host_services().warning("x:y:z", "first");
  host_services().warning("x:y:w", "second");
  EXPECT_EQ(host.take_console(), "a = 1\n");
  EXPECT_EQ(host.take_console(), "");
  auto w = host.take_warnings();
  ASSERT_EQ(w.size(), 2u);
  EXPECT_EQ(w[0], (InProcessHost::Warning{"x:y:z", "first"}));
  EXPECT_EQ(w[1], (InProcessHost::Warning{"x:y:w", "second"}));
}

TEST(HostMessages, ScopedHostRestoresThePreviousHost) {
  InProcessHost outer, inner;
  ScopedHost a(outer);
  {
    ScopedHost b(inner);
    host_services().print("in");
  }
  host_services().print("out");
  EXPECT_EQ(inner.take_console(), "in");
  EXPECT_EQ(outer.take_console(), "out");
}

}  // namespace
}  // namespace corbel
