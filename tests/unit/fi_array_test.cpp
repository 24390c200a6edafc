// fi as an array: what the host layer's positions and layouts do to a fi, the values
// carried across types by their real-world values, and refusals that change nothing; and
// the relations and full-precision sums against exact rationals past the doubles' widths.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "expect_error.h"
#include "fi/fi.h"
#include "fi/fi_column_reference.h"
#include "fi_sweep.h"
#include "random_formats.h"

namespace corbel {
namespace {

HostArray row(std::vector<double> v) {
  return HostArray::make_double_matrix(1, v.size(), v);
}

fi array(std::vector<double> v, const NumericType& t, const fimath& m = fimath()) {
  const int dims[] = {1, static_cast<int>(v.size())};
  return fi(v.data(), nullptr, dims, 2, t, m);
}

TEST(FiIndexing, PositionsLayoutsAndValuesAcrossTypes) {
  const fi a = array({0.5, -0.25, 1.75}, NumericType(true, 8, 4));
  const auto r = a.elementsAt(row({3, 1, 3}));
  EXPECT_EQ(exactParts(*r), (std::vector<std::string>{"7/4", "+0", "1/2", "+0", "7/4", "+0"}));

  // A slope-bias value enters a binary-point array by its real-world value, and back.
  const NumericType sb(DataTypeModeEnum::FixedSlopeBias, true, 8, 1.5, -2, 0.25);
  const fi s(0.25 + 1.5 * 0.25 * 3, sb, fimath());
  fi b(a, fi::WholeCopy);
  b.assignAt(row({2}), {&s, nullptr});
  EXPECT_EQ(b.realdouble(1), 1.375);
  fi c(s, fi::WholeCopy);
  const auto first = a.elementsAt(row({1}));
  c.assignAt(row({1}), {first.get(), nullptr});
  EXPECT_EQ(c.realdouble(0) * 1.5 + 0.25, 0.25 + 1.5 * 0.25);  // 0.5 rounds to 0.25 + 1.5/4

  // Layout: keep element 3, a zero, value 2, keep element 1; a wide type keeps every bit.
  const fi w = array({0.5, -0.25, 1.75}, NumericType(true, 100, 90));
  const HostArray values = row({0.125, 0x1p-80});
  const auto g = w.rearranged(row({-3, 0, 2, -1}), {nullptr, &values});
  EXPECT_EQ(exactParts(*g),
            (std::vector<std::string>{"7/4", "+0", "+0", "+0", "1/1208925819614629174706176", "+0",
                                      "1/2", "+0"}));
}

TEST(FiIndexing, RefusalsChangeNothing) {
  fi a = array({0.5, -0.25, 1.75}, NumericType(true, 8, 4));
  const std::vector<std::string> before = exactParts(a);
  const std::string range = "Positions must be integers from 1 to the number of elements.";
  expect_error([&] { a.elementsAt(row({4})); }, "velkora:fi:index:outOfRange", range);
  expect_error([&] { a.elementsAt(row({1.5})); }, "velkora:fi:index:outOfRange", range);
  const HostArray two = row({1, 2});
  expect_error(
      [&] {
        a.assignAt(row({1, 2, 3}), {nullptr, &two});
      },
      "velkora:fi:subsasgn:sizeMismatch",
      "There must be one assigned value, or one for each position.");
  const HostArray nan = row({0.25, std::nan("")});
  EXPECT_THROW(a.assignAt(row({1, 2}), {nullptr, &nan}), HostError);
  const HostArray text = HostArray::make_text("x");
  expect_error(
      [&] {
        a.assignAt(row({1}), {nullptr, &text});
      },
      "velkora:fi:subsasgn:notNumeric",
      "Values assigned into a fi must be numeric, logical or fi.");
  expect_error([&] { a.rearranged(row({-4}), {}); }, "velkora:fi:index:badLayout",
               "A layout entry must name an element of the array or of the assigned values.");
  EXPECT_EQ(exactParts(a), before);
  // An array beyond the memory one array may use is refused before it is made (the
  // sanitizer build sees that nothing leaks).
  const int huge[] = {1 << 30, 2};
  EXPECT_THROW(fi(huge, 2, NumericType(true, 65535, 0), fimath(), false), HostError);
  EXPECT_THROW(fi(huge, 2, NumericType(true, 100, 0), fimath(), true), HostError);
}

TEST(FiComparison, RelationsFollowExactValues) {
  std::mt19937_64 rng(51);
  GmpRandom random(51);
  const fi::Relation relations[] = {fi::Relation::Eq, fi::Relation::Ne, fi::Relation::Lt,
                                    fi::Relation::Le, fi::Relation::Gt, fi::Relation::Ge};
  for (int trial = 0; trial < 100; ++trial) {
    const int wl = std::vector<int>{8, 32, 53, 64, 100}[trial % 5];
    const int fa = static_cast<int>(rng() % 20) - 4, fb = static_cast<int>(rng() % 20) - 4;
    const bool signedA = rng() % 2, signedB = rng() % 2;
    const auto a = randomNumbers(rng, random.state, {2, 3}, signedA, wl, fa, fimath(), false);
    auto b = randomNumbers(rng, random.state, {2, 3}, signedB, wl, fb, fimath(), false);
    // Equal values now and then, in b's own type.
    for (int i = 0; i < 6; i += 2)
      b->assignAt(row({i + 1.0}), {a->elementsAt(row({i + 1.0})).get(), nullptr});
    for (fi::Relation r : relations) {
      const HostArray got = a->compare({b.get(), nullptr}, r);
      for (int i = 0; i < 6; ++i) {
        const int c = mpq_cmp(Q(a->real(i)).v, Q(b->real(i)).v);
        const bool want = r == fi::Relation::Eq   ? c == 0
                          : r == fi::Relation::Ne ? c != 0
                          : r == fi::Relation::Lt ? c < 0
                          : r == fi::Relation::Le ? c <= 0
                          : r == fi::Relation::Gt ? c > 0
                                                  : c >= 0;
        ASSERT_EQ(got.real<bool>()[i], want) << wl << " " << i;
      }
    }
  }
}

// A column view reads and writes its source's elements and checks its ranges.
TEST(FiColumnReference, ViewsAColumnOfItsSource) {
  const double v[] = {1, 2, 3, 4, 5, 6};
  const int dims[] = {2, 3};
  fi a(v, nullptr, dims, 2, NumericType(true, 8, 0), fimath());
  FiColumnReference column(a, 1);
  EXPECT_EQ(column.numel(), 2);
  column.setIndex(1);
  EXPECT_EQ(column.real().todouble(), 4);
  const fi seven(7.0, NumericType(true, 8, 0), fimath());
  column = seven;  // through the view into a(1, 1)
  EXPECT_EQ(a.realdouble(3), 7);
  column.setColumn(2);
  column.setIndex(0);
  EXPECT_EQ(column.real().todouble(), 5);
  const FiColumnReference run(a, 4, 2);
  run.setIndex(1);
  EXPECT_EQ(run.real().todouble(), 6);
  expect_error([&] { FiColumnReference(a, 3); },
               "velkora:fi:FiColumnReference:ColumnNumberOutOfRange",
               "FiColumnReference::Column number out of range in FiColumnReference constructor");
  expect_error([&] { FiColumnReference(a, 5, 2); }, "velkora:fi:FiColumnReference:IndexOutOfRange",
               "FiColumnReference::StartIndex + Length exceeds original matrix size in "
               "FiColumnReference constructor");
  expect_error([&] { column.setColumn(-1); }, "velkora:fi:FiColumnReference:setColumn",
               "Column number out of range.");
  expect_error([&] { column.setIndex(2); }, "velkora:fi:badindex",
               "Index exceeds matrix dimensions.");
}

// Full-precision sums are exact at any width, in a type grown by ceil(log2 n) bits.
TEST(FiSums, FullPrecisionSumsAreExact) {
  std::mt19937_64 rng(52);
  GmpRandom random(52);
  fimath wide;
  wide.setMaxSumWordLength(300);
  for (int trial = 0; trial < 40; ++trial) {
    const int wl = std::vector<int>{8, 53, 100, 200}[trial % 4];
    const int rows = 2 + static_cast<int>(rng() % 8);
    const auto a =
        randomNumbers(rng, random.state, {rows, 3}, true, wl, wl / 2, wide, trial % 3 == 0);
    const auto s = a->leadingdimension_sum(0);
    const int growth = static_cast<int>(std::ceil(std::log2(rows)));
    ASSERT_EQ(s->getWordLength(), wl + growth);
    for (int c = 0; c < 3; ++c)
      for (bool imagPart : {false, true}) {
        Q want;
        for (int r = 0; r < rows; ++r) {
          const Q term(imagPart ? a->imag(r + c * rows) : a->real(r + c * rows));
          mpq_add(want.v, want.v, term.v);
        }
        ASSERT_EQ(Q(imagPart ? s->imag(c) : s->real(c)).str(), want.str()) << wl;
      }
  }
}

}  // namespace
}  // namespace corbel
