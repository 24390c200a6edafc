// Benchmarks of fi arithmetic, each beside a plain loop doing the same integer arithmetic
// with rounding and saturation, in the same run: element-wise add and multiply of two
// 10^6-element signed 16-bit fraction 15 arrays (full precision), a complex add of the same
// size, add and multiply at 100 bits, and a 64x64 by 64x64 matrix product of 16-bit values.
// The table after the run gives ns per element (per multiply-add for the matrix product)
// and the ratio to the plain loop of the same group.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "fi/fi.h"
#include "ratio_reporter.h"

using namespace corbel;

namespace {

constexpr int kN = 1000000;
__extension__ typedef __int128 int128;
__extension__ typedef unsigned __int128 u128;
constexpr int kM = 64;

std::vector<double> randomValues(int n, double range, std::uint64_t seed) {
  std::mt19937_64 rng(seed);
  std::uniform_real_distribution<double> d(-range, range);
  std::vector<double> v(static_cast<size_t>(n));
  for (double& x : v) x = d(rng);
  return v;
}

// The stored integers of a signed fraction-15 array.
std::vector<std::int32_t> storedIntegers(const std::vector<double>& v) {
  std::vector<std::int32_t> out(v.size());
  for (size_t i = 0; i < v.size(); ++i)
    out[i] =
        static_cast<std::int32_t>(std::clamp(std::floor(v[i] * 32768.0 + 0.5), -32768.0, 32767.0));
  return out;
}

fi makeArray(const std::vector<double>& v, int m, int n, int wl, int fl,
             const fimath& math = fimath()) {
  const int dims[] = {m, n};
  return fi(v.data(), nullptr, dims, 2, NumericType(true, wl, fl), math);
}

// ---- s16 fraction 15, 10^6 elements -------------------------------------------------------

const std::vector<double>& va() {
  static const auto v = randomValues(kN, 1.0, 1);
  return v;
}
const std::vector<double>& vb() {
  static const auto v = randomValues(kN, 1.0, 2);
  return v;
}

// Saturates a full-precision result to its word length (a no-op on the values here, but
// the comparison is what a fixed-point kernel pays).
template <class T>
T saturate(T x, T lo, T hi) {
  return x < lo ? lo : (x > hi ? hi : x);
}

void BM_add_plain_loop(benchmark::State& state) {
  const auto a = storedIntegers(va()), b = storedIntegers(vb());
  std::vector<std::int32_t> out(kN);
  for (auto _ : state) {
    for (int i = 0; i < kN; ++i) out[i] = saturate(a[i] + b[i], -(1 << 16), (1 << 16) - 1);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void BM_add_fi(benchmark::State& state) {
  const fi a = makeArray(va(), 1, kN, 16, 15), b = makeArray(vb(), 1, kN, 16, 15);
  for (auto _ : state) benchmark::DoNotOptimize(a.plus(b));
}

// The element operators one by one: what plus costs without the bulk path.
void BM_add_fi_element_operators(benchmark::State& state) {
  const fi a = makeArray(va(), 1, kN, 16, 15), b = makeArray(vb(), 1, kN, 16, 15);
  const NumericType T = a.getNumericTypeForAddOp(b);
  for (auto _ : state) {
    fi r(1, kN, T, a.getFimath(), false);
    for (int i = 0; i < kN; ++i) {
      r.setIndex(i);
      r = a(i) + b(i);
    }
    benchmark::DoNotOptimize(r.real(0));
  }
}

void BM_mul_plain_loop(benchmark::State& state) {
  const auto a = storedIntegers(va()), b = storedIntegers(vb());
  std::vector<std::int64_t> out(kN);
  for (auto _ : state) {
    for (int i = 0; i < kN; ++i)
      out[i] = saturate<std::int64_t>(std::int64_t{a[i]} * b[i], -(1LL << 31), (1LL << 31) - 1);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void BM_mul_fi(benchmark::State& state) {
  const fi a = makeArray(va(), 1, kN, 16, 15), b = makeArray(vb(), 1, kN, 16, 15);
  for (auto _ : state) benchmark::DoNotOptimize(a.times(b));
}

// ---- complex s16 fraction 15, 10^6 elements ------------------------------------------------

void BM_cadd_plain_loop(benchmark::State& state) {
  const auto ar = storedIntegers(va()), ai = storedIntegers(vb());
  const auto br = storedIntegers(vb()), bi = storedIntegers(va());
  std::vector<std::int32_t> re(kN), im(kN);
  for (auto _ : state) {
    for (int i = 0; i < kN; ++i) {
      re[i] = saturate(ar[i] + br[i], -(1 << 16), (1 << 16) - 1);
      im[i] = saturate(ai[i] + bi[i], -(1 << 16), (1 << 16) - 1);
    }
    benchmark::DoNotOptimize(re.data());
    benchmark::DoNotOptimize(im.data());
    benchmark::ClobberMemory();
  }
}

void BM_cadd_fi(benchmark::State& state) {
  const int dims[] = {1, kN};
  const fi a(va().data(), vb().data(), dims, 2, NumericType(true, 16, 15), fimath());
  const fi b(vb().data(), va().data(), dims, 2, NumericType(true, 16, 15), fimath());
  for (auto _ : state) benchmark::DoNotOptimize(a.plus(b));
}

// ---- 100 bits, fraction 98 ---------------------------------------------------------------

void BM_add100_plain_loop(benchmark::State& state) {
  // 100-bit stored integers in 128-bit arithmetic, saturated to the 101-bit sum.
  std::mt19937_64 rng(3);
  std::vector<int128> a(kN), b(kN), out(kN);
  const int128 top = (static_cast<int128>(1) << 99) - 1;
  for (int i = 0; i < kN; ++i) {
    a[i] = (static_cast<int128>(rng()) << 36) % top;
    b[i] = (static_cast<int128>(rng()) << 36) % top;
  }
  const int128 hi = (static_cast<int128>(1) << 100) - 1, lo = -hi - 1;
  for (auto _ : state) {
    for (int i = 0; i < kN; ++i) out[i] = saturate(a[i] + b[i], lo, hi);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void BM_add100_fi(benchmark::State& state) {
  static const fi a = makeArray(va(), 1, kN, 100, 98), b = makeArray(vb(), 1, kN, 100, 98);
  for (auto _ : state) benchmark::DoNotOptimize(a.plus(b));
}

// The 200-bit full-precision products of 100-bit stored integers, as sign and magnitude
// in two 128-bit words: four 64 x 64-bit partial products per element.
void BM_mul100_plain_loop(benchmark::State& state) {
  std::mt19937_64 rng(6);
  const int128 top = (static_cast<int128>(1) << 99) - 1;
  std::vector<int128> a(kN), b(kN);
  for (int i = 0; i < kN; ++i) {
    a[i] = (static_cast<int128>(rng()) << 36) % top;
    b[i] = -((static_cast<int128>(rng()) << 36) % top);
  }
  std::vector<u128> lo(kN), hi(kN);
  std::vector<bool> negative(kN);
  for (auto _ : state) {
    for (int i = 0; i < kN; ++i) {
      const u128 x = static_cast<u128>(a[i] < 0 ? -a[i] : a[i]);
      const u128 y = static_cast<u128>(b[i] < 0 ? -b[i] : b[i]);
      const u128 x0 = static_cast<std::uint64_t>(x), x1 = x >> 64;
      const u128 y0 = static_cast<std::uint64_t>(y), y1 = y >> 64;
      const u128 p00 = x0 * y0, p01 = x0 * y1, p10 = x1 * y0, p11 = x1 * y1;
      const u128 mid =
          (p00 >> 64) + static_cast<std::uint64_t>(p01) + static_cast<std::uint64_t>(p10);
      lo[i] = static_cast<std::uint64_t>(p00) | (mid << 64);
      hi[i] = p11 + (p01 >> 64) + (p10 >> 64) + (mid >> 64);
      negative[i] = (a[i] < 0) != (b[i] < 0);
    }
    benchmark::DoNotOptimize(lo.data());
    benchmark::DoNotOptimize(hi.data());
    benchmark::ClobberMemory();
  }
}

void BM_mul100_fi(benchmark::State& state) {
  // Full precision needs 200 bits, above the default maximum of 128.
  fimath wide;
  wide.setMaxProductWordLength(200);
  static const fi a = makeArray(va(), 1, kN, 100, 98, wide),
                  b = makeArray(vb(), 1, kN, 100, 98, wide);
  for (auto _ : state) benchmark::DoNotOptimize(a.times(b));
}

// ---- 64x64 by 64x64, 16-bit values ---------------------------------------------------------

void BM_matmul_plain_loop(benchmark::State& state) {
  const auto a = storedIntegers(randomValues(kM * kM, 1.0, 4));
  const auto b = storedIntegers(randomValues(kM * kM, 1.0, 5));
  std::vector<std::int64_t> c(kM * kM);
  // Products of 32 bits, accumulated in 38 bits (64 terms), saturated to the accumulator.
  const std::int64_t hi = (1LL << 37) - 1, lo = -hi - 1;
  for (auto _ : state) {
    for (int i = 0; i < kM; ++i)
      for (int j = 0; j < kM; ++j) {
        std::int64_t acc = 0;
        for (int k = 0; k < kM; ++k)
          acc = saturate(acc + std::int64_t{a[i + k * kM]} * b[k + j * kM], lo, hi);
        c[i + j * kM] = acc;
      }
    benchmark::DoNotOptimize(c.data());
    benchmark::ClobberMemory();
  }
}

void BM_matmul_fi(benchmark::State& state) {
  const fi a = makeArray(randomValues(kM * kM, 1.0, 4), kM, kM, 16, 15);
  const fi b = makeArray(randomValues(kM * kM, 1.0, 5), kM, kM, 16, 15);
  for (auto _ : state) benchmark::DoNotOptimize(a.mtimes(b));
}

BENCHMARK(BM_add_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_add_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_add_fi_element_operators)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_mul_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_mul_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_cadd_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_cadd_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_add100_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_add100_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_mul100_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_mul100_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_matmul_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_matmul_fi)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  // Grouped by the word after "BM_"; the plain loop of each group is its baseline.
  bench::RatioReporter reporter("element", [](const std::string& name) {
    const std::string group = name.substr(3, name.find('_', 3) - 3);
    return bench::Placement{name, group, name.find("plain_loop") != std::string::npos,
                            group == "matmul" ? double(kM) * kM * kM : double(kN)};
  });
  return bench::runWithRatios(argc, argv, reporter);
}
