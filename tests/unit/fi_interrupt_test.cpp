// The user's interrupt inside long operations: the host's interrupt, thrown at any poll of an
// operation's loops, leaves the operands exactly as they were and frees what the operation
// had made (the sanitizer build reports a leak), and an operation interrupted nowhere polls.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "fi/fi.h"
#include "fi_sweep.h"
#include "test_host.h"

namespace corbel {
namespace {

using AM = ArithmeticModeEnum;

// Everything an operation could disturb in an operand.
struct Snapshot {
  std::vector<std::string> parts;
  std::vector<int> dims;
  NumericType type;
  fimath math;
  explicit Snapshot(const fi& x)
      : parts(exactParts(x)),
        dims(x.dims(), x.dims() + x.ndims()),
        type(x.getNumericType()),
        math(x.getFimath()) {}
  bool same(const fi& x) const {
    const Snapshot now(x);
    return parts == now.parts && dims == now.dims && type.isequal(now.type) &&
           math.isequal(now.math);
  }
};

// Products and sums kept at the operands' own 300 bits, so that every operation takes the
// general element path.
fimath wideMath() {
  fimath m;
  m.setProductMode(AM::SpecifyPrecision);
  m.setSumMode(AM::SpecifyPrecision);
  m.setMaxProductWordLength(65535);
  m.setMaxSumWordLength(65535);
  m.setProductWordLength(300);
  m.setSumWordLength(300);
  m.setProductFractionLength(150);
  m.setSumFractionLength(150);
  return m;
}

// A 3x3 array of values i/7 - 0.6 (a negative, a zero and positives).
std::unique_ptr<fi> operand(int wordLength, bool complex, const fimath& math) {
  const int dims[] = {3, 3};
  std::vector<double> re(9), im(9);
  for (int i = 0; i < 9; ++i) re[i] = i / 7.0 - 0.6, im[i] = 0.25 - i / 11.0;
  return std::make_unique<fi>(re.data(), complex ? im.data() : nullptr, dims, 2,
                              NumericType(true, wordLength, wordLength / 2), math);
}

class InterruptTest : public WithHost {};

TEST_F(InterruptTest, EveryPollLeavesTheOperandsAsTheyWere) {
  const std::vector<std::pair<const char*, std::function<void(const fi&, const fi&)>>> ops = {
      {"plus", [](const fi& a, const fi& b) { a.plus(b); }},
      {"times", [](const fi& a, const fi& b) { a.times(b); }},
      {"mtimes", [](const fi& a, const fi& b) { a.mtimes(b); }},
      {"divide", [](const fi& a, const fi& b) { a.over(b, a.getNumericType()); }},
      {"sum", [](const fi& a, const fi&) { a.leadingdimension_sum(1); }},
      {"uminus", [](const fi& a, const fi&) { a.uminus(); }},
      {"max", [](const fi& a, const fi& b) { a.max(b); }},
      {"bitand", [](const fi& a, const fi& b) { a.fibitand(b); }},
      {"compare", [](const fi& a, const fi& b) { a.compare({&b}, fi::Relation::Lt); }},
      {"dec", [](const fi& a, const fi&) { a.radixText(10); }},
  };
  for (const int w : {300, 16})
    for (const bool complex : {false, true})
      for (const auto& [name, op] : ops) {
        SCOPED_TRACE(std::string(name) + " at " + std::to_string(w) + " bits" +
                     (complex ? ", complex" : ""));
        const std::string op_name = name;
        const bool bits = op_name == "bitand" || op_name == "max";
        const auto a = operand(w, complex && !bits, wideMath());
        const auto b = operand(w, complex && !bits, wideMath());
        const Snapshot sa(*a), sb(*b);
        const long before = host.polls_seen();
        op(*a, *b);
        const long polls = host.polls_seen() - before;
        // The narrow arrays take whole-array loops that are not long enough to poll, except
        // the matrix product, which polls once per result column.
        if (w == 300 || op_name == "mtimes") {
          EXPECT_GT(polls, 0);
        }
        for (long at = 0; at < polls; ++at) {
          host.interrupt_after(at);
          EXPECT_THROW(op(*a, *b), InProcessHost::Interrupt) << "poll " << at;
          EXPECT_TRUE(sa.same(*a) && sb.same(*b)) << "poll " << at;
        }
        host.interrupt_after(-1);
      }
}

TEST_F(InterruptTest, ConstructionFreesWhatItMade) {
  const int dims[] = {2, 50};
  const std::vector<double> values(100, 0.375);
  for (long at : {0L, 1L, 57L}) {
    host.interrupt_after(at);
    EXPECT_THROW(fi(values.data(), nullptr, dims, 2, NumericType(true, 300, 150), fimath()),
                 InProcessHost::Interrupt);
  }
  host.interrupt_after(-1);
}

}  // namespace
}  // namespace corbel
