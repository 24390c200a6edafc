// Benchmarks of quantization: 10^6 doubles to signed 16-bit fraction 15 (nearest,
// saturate) and to a 100-bit format, beside a plain loop (scale, floor(x + 0.5), clamp)
// in the same run; ratios to that loop follow the table.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>
#include <vector>

#include "quantize/loggingquantizer.h"
#include "quantize/quantizer.h"
#include "ratio_reporter.h"

using namespace corbel;

namespace {

constexpr int kN = 1000000;

const std::vector<double>& inputs() {
  static const std::vector<double> v = [] {
    std::mt19937_64 rng(1);
    std::uniform_real_distribution<double> d(-1.2, 1.2);  // some values saturate
    std::vector<double> out(kN);
    for (double& x : out) x = d(rng);
    return out;
  }();
  return v;
}

void BM_baseline_plain_loop(benchmark::State& state) {
  const std::vector<double>& in = inputs();
  std::vector<double> out(kN);
  const double lo = -1.0, hi = 1.0 - std::ldexp(1.0, -15);
  for (auto _ : state) {
    for (int i = 0; i < kN; ++i) {
      const double s = std::floor(in[i] * 32768.0 + 0.5) / 32768.0;
      out[i] = std::clamp(s, lo, hi);
    }
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kN);
}

// Quantize into numbers that already exist (the steady state of an array assignment).
void quantize_into(benchmark::State& state, quantizer::ModeEnum mode, int w, int f, bool logging) {
  const std::vector<double>& in = inputs();
  std::vector<number> out(kN, number(0.0, static_cast<unsigned long>(w), false));
  const loggingquantizer q(mode, RoundModeEnum::Nearest, OverflowModeEnum::Saturate, w, f);
  const qlogger log;
  for (auto _ : state) {
    for (int i = 0; i < kN; ++i) {
      out[i].setvalue(in[i]);
      if (logging)
        q.quantize(out[i]);
      else
        q.quantize(out[i], log);
    }
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kN);
}

void BM_quantizer_s16f15(benchmark::State& s) {
  quantize_into(s, quantizer::Fixed, 16, 15, false);
}
void BM_loggingquantizer_s16f15(benchmark::State& s) {
  quantize_into(s, quantizer::Fixed, 16, 15, true);
}
void BM_quantizer_s100f98(benchmark::State& s) {
  quantize_into(s, quantizer::Fixed, 100, 98, false);
}

BENCHMARK(BM_baseline_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_quantizer_s16f15)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_loggingquantizer_s16f15)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_quantizer_s100f98)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  bench::RatioReporter reporter("value", [](const std::string& name) {
    return bench::Placement{name, "all", name == "BM_baseline_plain_loop", double(kN)};
  });
  return bench::runWithRatios(argc, argv, reporter);
}
