// Six fi tasks, each beside a plain C++ loop doing the same integer work on stored
// integers, in the same run:
//   a   quantize 10^6 doubles to s16,15 (the fi constructor; nearest, saturate)
//   b   add two 10^6-element s16,15 arrays at full precision
//   c   multiply two 10^6-element s16,15 arrays at full precision
//   d+  add two 10^5-element s100,96 arrays at full precision
//   dx  multiply two 10^5-element s100,96 arrays to 200 bits
//   e   64x64 by 64x64 matrix product of s16,15 (per multiply-add)
//   cb  the complex form of b
//   fir a 64-tap FIR over 10^5 s16,15 samples with s16,15 taps and a 40-bit accumulator
//       (per sample), as the Octave filter runs it: the delayed samples made from a layout,
//       then one matrix product
// and beside them bitshift, ./, bitand, max and the largest of each column.
// Inputs are uniform in (-1.1, 1.1). The plain loops are built with the project's flags,
// as any code that uses the library is; the "avx2" rows give the same loops built for
// AVX2 (as the library's kernels also are), for comparison. The table after the run gives
// ns per element and the ratio to the plain loop of the same task.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "fi/fi.h"
#include "ratio_reporter.h"

using namespace corbel;

namespace {

constexpr int kN = 1000000;
constexpr int kWideN = 100000;
constexpr int kM = 64;
__extension__ typedef __int128 int128;
__extension__ typedef unsigned __int128 u128;

std::vector<double> randomValues(int n, std::uint64_t seed) {
  std::mt19937_64 rng(seed);
  std::uniform_real_distribution<double> d(-1.1, 1.1);
  std::vector<double> v(static_cast<size_t>(n));
  for (double& x : v) x = d(rng);
  return v;
}

const std::vector<double>& va() {
  static const auto v = randomValues(kN, 1);
  return v;
}
const std::vector<double>& vb() {
  static const auto v = randomValues(kN, 2);
  return v;
}

template <class T>
T saturate(T x, T lo, T hi) {
  return x < lo ? lo : (x > hi ? hi : x);
}

#if defined(__x86_64__) && defined(__GNUC__)
#define CORBEL_AVX2 __attribute__((target("arch=x86-64-v3")))
#else
#define CORBEL_AVX2
#endif
// Each plain loop twice: with the project's flags, and for AVX2.
#define CORBEL_PLAIN_LOOP(name, params, ...) \
  void name params __VA_ARGS__ CORBEL_AVX2 void name##Avx2 params __VA_ARGS__

// Nearest (halves up) and saturation into s16,15.
CORBEL_PLAIN_LOOP(quantizeS16, (const double* x, std::int16_t* out, int n), {
  for (int i = 0; i < n; ++i)
    out[i] =
        static_cast<std::int16_t>(saturate(std::floor(x[i] * 32768.0 + 0.5), -32768.0, 32767.0));
})

std::vector<std::int16_t> storedIntegers(const std::vector<double>& v) {
  std::vector<std::int16_t> out(v.size());
  quantizeS16(v.data(), out.data(), static_cast<int>(v.size()));
  return out;
}

fi makeArray(const std::vector<double>& v, int m, int n, int wl, int fl,
             const fimath& math = fimath()) {
  const int dims[] = {m, n};
  return fi(v.data(), nullptr, dims, 2, NumericType(true, wl, fl), math);
}

// ---- a: quantize ----------------------------------------------------------------------------

void BM_a_plain_loop(benchmark::State& state) {
  std::vector<std::int16_t> out(kN);
  for (auto _ : state) {
    quantizeS16(va().data(), out.data(), kN);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void BM_a_plain_avx2(benchmark::State& state) {
  std::vector<std::int16_t> out(kN);
  for (auto _ : state) {
    quantizeS16Avx2(va().data(), out.data(), kN);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void BM_a_fi(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(makeArray(va(), 1, kN, 16, 15));
}

// ---- b, c: s16,15 ---------------------------------------------------------------------------

CORBEL_PLAIN_LOOP(addS16, (const std::int16_t* a, const std::int16_t* b, std::int32_t* out, int n),
                  {
                    for (int i = 0; i < n; ++i)
                      out[i] = saturate(a[i] + b[i], -(1 << 16), (1 << 16) - 1);
                  })

// The full product of two s16 needs 31 bits; the saturation is what a kernel pays.
CORBEL_PLAIN_LOOP(mulS16, (const std::int16_t* a, const std::int16_t* b, std::int32_t* out, int n),
                  {
                    for (int i = 0; i < n; ++i)
                      out[i] = saturate(std::int32_t{a[i]} * b[i], -(1 << 30),
                                        (1 << 30) - 1 + (1 << 30));
                  })

void BM_b_plain_loop(benchmark::State& state) {
  const auto a = storedIntegers(va()), b = storedIntegers(vb());
  std::vector<std::int32_t> out(kN);
  for (auto _ : state) {
    addS16(a.data(), b.data(), out.data(), kN);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void BM_b_plain_avx2(benchmark::State& state) {
  const auto a = storedIntegers(va()), b = storedIntegers(vb());
  std::vector<std::int32_t> out(kN);
  for (auto _ : state) {
    addS16Avx2(a.data(), b.data(), out.data(), kN);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void BM_b_fi(benchmark::State& state) {
  const fi a = makeArray(va(), 1, kN, 16, 15), b = makeArray(vb(), 1, kN, 16, 15);
  for (auto _ : state) benchmark::DoNotOptimize(a.plus(b));
}

void BM_c_plain_loop(benchmark::State& state) {
  const auto a = storedIntegers(va()), b = storedIntegers(vb());
  std::vector<std::int32_t> out(kN);
  for (auto _ : state) {
    mulS16(a.data(), b.data(), out.data(), kN);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void BM_c_plain_avx2(benchmark::State& state) {
  const auto a = storedIntegers(va()), b = storedIntegers(vb());
  std::vector<std::int32_t> out(kN);
  for (auto _ : state) {
    mulS16Avx2(a.data(), b.data(), out.data(), kN);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void BM_c_fi(benchmark::State& state) {
  const fi a = makeArray(va(), 1, kN, 16, 15), b = makeArray(vb(), 1, kN, 16, 15);
  for (auto _ : state) benchmark::DoNotOptimize(a.times(b));
}

void BM_cb_plain_loop(benchmark::State& state) {
  const auto ar = storedIntegers(va()), ai = storedIntegers(vb());
  std::vector<std::int32_t> re(kN), im(kN);
  for (auto _ : state) {
    addS16(ar.data(), ai.data(), re.data(), kN);
    addS16(ai.data(), ar.data(), im.data(), kN);
    benchmark::DoNotOptimize(re.data());
    benchmark::DoNotOptimize(im.data());
    benchmark::ClobberMemory();
  }
}

void BM_cb_fi(benchmark::State& state) {
  const int dims[] = {1, kN};
  const fi a(va().data(), vb().data(), dims, 2, NumericType(true, 16, 15), fimath());
  const fi b(vb().data(), va().data(), dims, 2, NumericType(true, 16, 15), fimath());
  for (auto _ : state) benchmark::DoNotOptimize(a.plus(b));
}

// ---- d+, dx: s100,96 ------------------------------------------------------------------------

std::vector<int128> wideIntegers(const std::vector<double>& v) {
  // The stored integers of s100,96 for the first kWideN values: x * 2^96, exact.
  std::vector<int128> out(kWideN);
  for (int i = 0; i < kWideN; ++i)
    out[static_cast<size_t>(i)] = static_cast<int128>(std::ldexp(v[static_cast<size_t>(i)], 52))
                                  << 44;
  return out;
}

std::vector<double> wideValues(const std::vector<double>& v) {
  return std::vector<double>(v.begin(), v.begin() + kWideN);
}

void BM_dplus_plain_loop(benchmark::State& state) {
  const auto a = wideIntegers(va()), b = wideIntegers(vb());
  std::vector<int128> out(kWideN);
  const int128 hi = (static_cast<int128>(1) << 100) - 1, lo = -hi - 1;
  for (auto _ : state) {
    for (int i = 0; i < kWideN; ++i) out[i] = saturate(a[i] + b[i], lo, hi);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void BM_dplus_fi(benchmark::State& state) {
  const fi a = makeArray(wideValues(va()), 1, kWideN, 100, 96);
  const fi b = makeArray(wideValues(vb()), 1, kWideN, 100, 96);
  for (auto _ : state) benchmark::DoNotOptimize(a.plus(b));
}

// The 200-bit products of 100-bit stored integers, as sign and magnitude in two 128-bit
// words: four 64 x 64-bit partial products per element.
void BM_dx_plain_loop(benchmark::State& state) {
  const auto a = wideIntegers(va()), b = wideIntegers(vb());
  std::vector<u128> lo(kWideN), hi(kWideN);
  std::vector<std::uint8_t> negative(kWideN);
  for (auto _ : state) {
    for (int i = 0; i < kWideN; ++i) {
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

void BM_dx_fi(benchmark::State& state) {
  // Full precision needs 200 bits, above the default maximum of 128.
  fimath wide;
  wide.setMaxProductWordLength(200);
  const fi a = makeArray(wideValues(va()), 1, kWideN, 100, 96, wide);
  const fi b = makeArray(wideValues(vb()), 1, kWideN, 100, 96, wide);
  for (auto _ : state) benchmark::DoNotOptimize(a.times(b));
}

// ---- shift, div: bitshift(a, -3) of s16,15 (10^6) and a ./ b in s16,15 (10^5) -------------

// floor(x / 8 + 1/2): nearest, halves up; a right shift cannot overflow.
void BM_shift_plain_loop(benchmark::State& state) {
  const auto a = storedIntegers(va());
  std::vector<std::int16_t> out(kN);
  for (auto _ : state) {
    for (int i = 0; i < kN; ++i) out[i] = static_cast<std::int16_t>((a[i] + 4) >> 3);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void BM_shift_fi(benchmark::State& state) {
  const fi a = makeArray(va(), 1, kN, 16, 15);
  for (auto _ : state) benchmark::DoNotOptimize(a.bitshift(-3));
}

// round(a * 2^15 / b), halves up, saturated into s16,15; a zero divisor saturates by sign.
void BM_div_plain_loop(benchmark::State& state) {
  const auto a = storedIntegers(va()), b = storedIntegers(vb());
  std::vector<std::int16_t> out(kWideN);
  for (auto _ : state) {
    for (int i = 0; i < kWideN; ++i) {
      // floor((2 a 2^15 + b) / (2 b)), the divisor made positive.
      std::int64_t n = 2 * (static_cast<std::int64_t>(a[i]) << 15) + b[i],
                   d = 2 * std::int64_t{b[i]};
      if (d == 0) {
        out[i] = a[i] < 0 ? -32768 : 32767;
        continue;
      }
      if (d < 0) n = -n, d = -d;
      const std::int64_t q = n >= 0 ? n / d : -((-n + d - 1) / d);
      out[i] = static_cast<std::int16_t>(saturate<std::int64_t>(q, -32768, 32767));
    }
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void BM_div_fi(benchmark::State& state) {
  const fi a = makeArray(wideValues(va()), 1, kWideN, 16, 15);
  const fi b = makeArray(wideValues(vb()), 1, kWideN, 16, 15);
  for (auto _ : state) benchmark::DoNotOptimize(a.over(b, a.getNumericType()));
}

// ---- band, max, colmax: bitand(a, b), max(a, b) and [m, i] = max(a) over the columns of a
// 1000x1000 s16,15 array (10^6 elements each) ---------------------------------------------

void BM_band_plain_loop(benchmark::State& state) {
  const auto a = storedIntegers(va()), b = storedIntegers(vb());
  std::vector<std::int16_t> out(kN);
  for (auto _ : state) {
    for (int i = 0; i < kN; ++i) out[i] = static_cast<std::int16_t>(a[i] & b[i]);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void BM_band_fi(benchmark::State& state) {
  const fi a = makeArray(va(), 1, kN, 16, 15);
  const fi b = makeArray(vb(), 1, kN, 16, 15);
  for (auto _ : state) benchmark::DoNotOptimize(a.fibitand(b));
}

void BM_max_plain_loop(benchmark::State& state) {
  const auto a = storedIntegers(va()), b = storedIntegers(vb());
  std::vector<std::int16_t> out(kN);
  for (auto _ : state) {
    for (int i = 0; i < kN; ++i) out[i] = b[i] > a[i] ? b[i] : a[i];
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void BM_max_fi(benchmark::State& state) {
  const fi a = makeArray(va(), 1, kN, 16, 15);
  const fi b = makeArray(vb(), 1, kN, 16, 15);
  for (auto _ : state) benchmark::DoNotOptimize(a.max(b));
}

// The largest of each column and its (one-based) row; the first of equals.
void BM_colmax_plain_loop(benchmark::State& state) {
  const auto a = storedIntegers(va());
  constexpr int kRows = 1000;
  std::vector<std::int16_t> best(kN / kRows);
  std::vector<double> row(kN / kRows);
  for (auto _ : state) {
    for (int c = 0; c < kN / kRows; ++c) {
      const std::int16_t* col = a.data() + c * kRows;
      int at = 0;
      for (int r = 1; r < kRows; ++r)
        if (col[r] > col[at]) at = r;
      best[c] = col[at];
      row[c] = at + 1;
    }
    benchmark::DoNotOptimize(best.data());
    benchmark::DoNotOptimize(row.data());
    benchmark::ClobberMemory();
  }
}

void BM_colmax_fi(benchmark::State& state) {
  const fi a = makeArray(va(), 1000, kN / 1000, 16, 15);
  for (auto _ : state) {
    std::unique_ptr<fi> values;
    HostArray index;
    a.unary_max(values, index, 0);
    benchmark::DoNotOptimize(values);
  }
}

// ---- e: 64x64 by 64x64 ----------------------------------------------------------------------

// Products of 31 bits accumulated in 38 (64 terms), saturated to the accumulator.
CORBEL_PLAIN_LOOP(matmulS16, (const std::int16_t* a, const std::int16_t* b, std::int64_t* c), {
  const std::int64_t hi = (1LL << 37) - 1, lo = -hi - 1;
  for (int i = 0; i < kM; ++i)
    for (int j = 0; j < kM; ++j) {
      std::int64_t acc = 0;
      for (int k = 0; k < kM; ++k)
        acc = saturate(acc + std::int64_t{a[i + k * kM]} * b[k + j * kM], lo, hi);
      c[i + j * kM] = acc;
    }
})

void BM_e_plain_loop(benchmark::State& state) {
  const auto a = storedIntegers(randomValues(kM * kM, 4));
  const auto b = storedIntegers(randomValues(kM * kM, 5));
  std::vector<std::int64_t> c(kM * kM);
  for (auto _ : state) {
    matmulS16(a.data(), b.data(), c.data());
    benchmark::DoNotOptimize(c.data());
    benchmark::ClobberMemory();
  }
}

void BM_e_plain_avx2(benchmark::State& state) {
  const auto a = storedIntegers(randomValues(kM * kM, 4));
  const auto b = storedIntegers(randomValues(kM * kM, 5));
  std::vector<std::int64_t> c(kM * kM);
  for (auto _ : state) {
    matmulS16Avx2(a.data(), b.data(), c.data());
    benchmark::DoNotOptimize(c.data());
    benchmark::ClobberMemory();
  }
}

void BM_e_fi(benchmark::State& state) {
  const fi a = makeArray(randomValues(kM * kM, 4), kM, kM, 16, 15);
  const fi b = makeArray(randomValues(kM * kM, 5), kM, kM, 16, 15);
  for (auto _ : state) benchmark::DoNotOptimize(a.mtimes(b));
}

// ---- fir: 64 taps, 10^5 samples, 40-bit accumulator --------------------------------------

constexpr int kTaps = 64;

void BM_fir_plain_loop(benchmark::State& state) {
  const auto x = storedIntegers(va()), b = storedIntegers(vb());
  std::vector<std::int64_t> y(kWideN);
  for (auto _ : state) {
    for (int i = 0; i < kWideN; ++i) {
      std::int64_t acc = 0;
      for (int k = 0; k < kTaps && k <= i; ++k) acc += std::int32_t{x[i - k]} * b[k];
      y[i] = acc;  // 38 bits at most: the 40-bit accumulator never wraps
    }
    benchmark::DoNotOptimize(y.data());
    benchmark::ClobberMemory();
  }
}

void BM_fir_fi(benchmark::State& state) {
  fimath math;
  math.setSumMode(ArithmeticModeEnum::SpecifyPrecision);
  math.setSumWordLength(40);
  math.setSumFractionLength(30);
  const fi x = makeArray(va(), kWideN, 1, 16, 15, math);
  const fi b = makeArray(vb(), kTaps, 1, 16, 15, math);
  for (auto _ : state) {
    // Element (i, k) of the delayed samples is x(i - k), or zero before the first sample.
    HostArray layout = HostArray::make_double_matrix(kWideN, kTaps);
    double* l = layout.real<double>();
    for (int k = 0; k < kTaps; ++k)
      for (int i = k; i < kWideN; ++i) l[i + std::size_t{kWideN} * k] = -(i - k + 1.0);
    benchmark::DoNotOptimize(x.rearranged(layout, {})->mtimes(b));
  }
}

BENCHMARK(BM_a_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_a_plain_avx2)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_a_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_b_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_b_plain_avx2)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_b_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_c_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_c_plain_avx2)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_c_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_dplus_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_dplus_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_dx_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_dx_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_shift_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_shift_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_div_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_div_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_band_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_band_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_max_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_max_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_colmax_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_colmax_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_e_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_e_plain_avx2)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_e_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_cb_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_cb_fi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_fir_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_fir_fi)->Unit(benchmark::kMillisecond);

// Heap bytes per element of a real 10^6-element array, as the allocator counts them. Run
// first, before any freed block waits in the element storage's cache.
void reportMemory() {
  const auto heap = [] {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
  };
  const auto perElement = [&](int wl, int fl, bool asNumbers) {
    va();
    const double before = heap();
    const fi x = makeArray(va(), 1, kN, wl, fl);
    if (asNumbers) x.real(0);  // stored integers become numbers
    return (heap() - before) / kN;
  };
  std::printf("memory, bytes per element of a 10^6-element real array\n");
  std::printf("  s16,15                         %6.1f\n", perElement(16, 15, false));
  std::printf("  s100,96 as stored integers     %6.1f\n", perElement(100, 96, false));
  std::printf("  s100,96 as numbers             %6.1f\n\n", perElement(100, 96, true));
}

}  // namespace

int main(int argc, char** argv) {
  reportMemory();
  // Grouped by the task after "BM_"; the plain loop of each task is its baseline.
  bench::RatioReporter reporter("element", [](const std::string& name) {
    const std::string task = name.substr(3, name.find('_', 3) - 3);
    const double items = task == "e" ? double(kM) * kM * kM
                         : (task == "dplus" || task == "dx" || task == "div" || task == "fir")
                             ? double(kWideN)
                             : double(kN);
    return bench::Placement{name, task, name.find("plain_loop") != std::string::npos, items};
  });
  return bench::runWithRatios(argc, argv, reporter);
}
