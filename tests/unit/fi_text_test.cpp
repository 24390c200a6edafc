// Radix text of stored integers: round trips at the word lengths where representations change
// (1, 52, 53, 64, 65, 200 and random ones), real and complex, matrices; the layout; refusals.
#include <gmp.h>
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "expect_error.h"
#include "fi/fi.h"
#include "fi_sweep.h"

namespace corbel {
namespace {

std::string rowsOf(const HostArray& text) {
  const std::string all = text.text();
  const std::size_t rows = text.numel() == 0 ? 0 : text.dims()[0],
                    cols = all.size() / std::max<std::size_t>(rows, 1);
  std::string out;
  for (std::size_t r = 0; r < rows; ++r) {
    for (std::size_t c = 0; c < cols; ++c) out += all[r + c * rows];
    out += '|';
  }
  return out;
}

TEST(FiText, EveryRadixRoundTripsAtEveryWordLength) {
  std::mt19937_64 rng(49);
  GmpRandom random(49);
  auto& state = random.state;
  std::vector<int> lengths = {1, 52, 53, 64, 65, 200};
  for (int k = 0; k < 30; ++k) lengths.push_back(1 + static_cast<int>(rng() % 140));
  for (int w : lengths)
    for (int radix : {2, 8, 10, 16}) {
      const bool issigned = rng() % 2, complex = rng() % 3 == 0;
      const int fl = static_cast<int>(rng() % static_cast<unsigned>(w + 16)) - 8;
      const auto x = randomNumbers(rng, state, {2, 3}, issigned, w, fl, fimath(), complex);
      const std::vector<std::string> before = exactParts(*x);
      auto y = std::make_unique<fi>(*x, fi::WholeCopy);
      y->base2num(x->radixText(radix), radix);
      const auto same = [&](const fi& z) {
        std::vector<std::string> after = exactParts(z);
        for (size_t i = 0; i < after.size(); ++i)
          if (before[i] == "-0") after[i] = "-0";  // stored integers have no sign of zero
        return after == before;
      };
      ASSERT_TRUE(same(*y)) << w << " bits, radix " << radix;
      if (issigned) {  // signed decimals read back as well
        y->base2num(x->radixText(10, true), 10);
        ASSERT_TRUE(same(*y)) << w << " bits, signed decimal";
      }
    }
}

TEST(FiText, LayoutOneRowPerElementRowAndRefusals) {
  const double re[] = {1, -1, 5, -8}, im[] = {2, 0, 0, 0};
  const int dims[] = {2, 2};
  const fi a(re, nullptr, dims, 2, NumericType(true, 4, 0), fimath());
  EXPECT_EQ(rowsOf(a.radixText(2)), "0001  0101|1111  1000|");
  EXPECT_EQ(rowsOf(a.radixText(16)), "1  5|f  8|");
  EXPECT_EQ(rowsOf(a.radixText(10)), " 1   5|15   8|");
  EXPECT_EQ(rowsOf(a.radixText(10, true)), " 1   5|-1  -8|");
  const int one[] = {1, 1};
  const fi z(re, im, one, 2, NumericType(true, 4, 0), fimath());
  EXPECT_EQ(rowsOf(z.radixText(8)), "01|02|");  // the real parts' rows, then the imaginary
  fi b(a, fi::WholeCopy);
  b.base2num(HostArray::make_text("7 f 8 0"), 16);  // row by row: [7 f; 8 0]
  EXPECT_EQ(b.realdouble(0), 7);
  EXPECT_EQ(b.realdouble(2), -1);
  EXPECT_EQ(b.realdouble(1), -8);
  expect_error([&] { b.base2num(HostArray::make_text("1 2 3"), 16); },
               "velkora:fi:base2num:sizeMismatch",
               "The text must hold one number for each element, and for each part of a complex "
               "element.");
  expect_error([&] { b.base2num(HostArray::make_text("1 2 3 g"), 16); },
               "velkora:fi:base2num:badDigits", "'g' is not a number in the radix of the text.");
  // A sign the digits' parser would take is refused outside negative decimals (found by
  // the radix text fuzzer: "-1" in hex stored an integer below the type's range).
  for (const char* signed_text : {"1 2 3 -1", "1 2 3 +1", "1 2 3 --1"})
    expect_error_starting([&] { b.base2num(HostArray::make_text(signed_text), 16); },
                          "velkora:fi:base2num:badDigits", "'");
  expect_error([&] { b.base2num(HostArray::make_text("1 2 3 10"), 16); },
               "velkora:fi:base2num:outOfRange", "'10' does not fit the word length.");
  expect_error([&] { b.base2num(HostArray::make_text("1 2 3 -9"), 10); },
               "velkora:fi:base2num:outOfRange", "'-9' does not fit the word length.");
  expect_error([&] { b.base2num(HostArray::make_double(1), 2); }, "velkora:fi:base2num:notText",
               "The text of stored integers must be a character array.");
  EXPECT_EQ(b.realdouble(0), 7);  // unchanged by the refusals
}

}  // namespace
}  // namespace corbel
