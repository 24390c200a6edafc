// Benchmarks of number arithmetic on the double path and at 100 and 1000 bits, each
// beside a baseline loop (plain doubles, or raw MPFR values) measured in the same run.
// After the table, each benchmark's time is given as a ratio to its baseline.
#include <benchmark/benchmark.h>
#include <mpfr.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "number/number.h"
#include "ratio_reporter.h"

using corbel::number;

namespace {

constexpr int kN = 1024;

std::vector<double> random_values(unsigned seed) {
  std::mt19937_64 rng(seed);
  std::uniform_real_distribution<double> d(-1.0, 1.0);
  std::vector<double> v(kN);
  for (double& x : v) x = std::ldexp(std::nearbyint(std::ldexp(d(rng), 15)), -15);
  return v;
}

std::vector<number> numbers(const std::vector<double>& v, unsigned long precision) {
  std::vector<number> out;
  out.reserve(v.size());
  for (double x : v) out.emplace_back(x, precision, false);
  return out;
}

enum class Op { Add, Mul, Round };

// --- Baselines ---------------------------------------------------------------------------

void baseline_double(benchmark::State& state, Op op) {
  std::vector<double> a = random_values(1), b = random_values(2), c(kN);
  for (auto _ : state) {
    for (int i = 0; i < kN; ++i) {
      switch (op) {
        case Op::Add:
          c[i] = a[i] + b[i];
          break;
        case Op::Mul:
          c[i] = a[i] * b[i];
          break;
        case Op::Round:
          c[i] = std::ldexp(std::floor(std::ldexp(a[i] * b[i], 15) + 0.5), -15);
          break;
      }
    }
    benchmark::DoNotOptimize(c.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kN);
}

void baseline_mpfr(benchmark::State& state, Op op) {
  const auto precision = static_cast<mpfr_prec_t>(state.range(0));
  std::vector<double> da = random_values(1), db = random_values(2);
  std::vector<mpfr_t> a(kN), b(kN), c(kN);
  mpfr_t half;
  mpfr_init2(half, 32);
  mpfr_set_d(half, 0.5, MPFR_RNDN);
  for (int i = 0; i < kN; ++i) {
    mpfr_inits2(precision, a[i], b[i], c[i], static_cast<mpfr_ptr>(nullptr));
    mpfr_set_d(a[i], da[i], MPFR_RNDN);
    mpfr_set_d(b[i], db[i], MPFR_RNDN);
  }
  for (auto _ : state) {
    for (int i = 0; i < kN; ++i) {
      switch (op) {
        case Op::Add:
          mpfr_add(c[i], a[i], b[i], MPFR_RNDN);
          break;
        case Op::Mul:
          mpfr_mul(c[i], a[i], b[i], MPFR_RNDN);
          break;
        case Op::Round:
          mpfr_mul(c[i], a[i], b[i], MPFR_RNDN);
          mpfr_mul_2si(c[i], c[i], 15, MPFR_RNDN);
          mpfr_add(c[i], c[i], half, MPFR_RNDN);
          mpfr_floor(c[i], c[i]);
          mpfr_mul_2si(c[i], c[i], -15, MPFR_RNDN);
          break;
      }
    }
    benchmark::ClobberMemory();
  }
  for (int i = 0; i < kN; ++i) mpfr_clears(a[i], b[i], c[i], static_cast<mpfr_ptr>(nullptr));
  mpfr_clear(half);
  state.SetItemsProcessed(state.iterations() * kN);
}

// --- number ------------------------------------------------------------------------------

// In place: c = a; c op= b (c's body is unshared after the first pass, so the steady
// state reuses it), and for Round, c = a * b rounded to 15 fraction bits.
void number_inplace(benchmark::State& state, Op op) {
  const unsigned long precision = static_cast<unsigned long>(state.range(0));
  std::vector<number> a = numbers(random_values(1), precision);
  std::vector<number> b = numbers(random_values(2), precision);
  std::vector<number> c = numbers(random_values(3), precision);
  for (auto _ : state) {
    for (int i = 0; i < kN; ++i) {
      c[i].setvalue(a[i]);
      switch (op) {
        case Op::Add:
          c[i] += b[i];
          break;
        case Op::Mul:
          c[i] *= b[i];
          break;
        case Op::Round:
          (c[i] *= b[i]).nearest(15);
          break;
      }
    }
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kN);
}

// Value operators: every result is a new number (a handle and a body each).
void number_value(benchmark::State& state, Op op) {
  const unsigned long precision = static_cast<unsigned long>(state.range(0));
  std::vector<number> a = numbers(random_values(1), precision);
  std::vector<number> b = numbers(random_values(2), precision);
  for (auto _ : state) {
    for (int i = 0; i < kN; ++i) {
      switch (op) {
        case Op::Add:
          benchmark::DoNotOptimize(a[i] + b[i]);
          break;
        case Op::Mul:
          benchmark::DoNotOptimize(a[i] * b[i]);
          break;
        case Op::Round:
          benchmark::DoNotOptimize((a[i] * b[i]).nearest(15));
          break;
      }
    }
  }
  state.SetItemsProcessed(state.iterations() * kN);
}

void register_all() {
  const struct {
    const char* name;
    Op op;
  } ops[] = {{"add", Op::Add}, {"mul", Op::Mul}, {"round", Op::Round}};
  auto add = [](const std::string& kind, const std::string& op, const std::string& width, auto fn,
                Op o) {
    std::string name = kind;
    name.append("/").append(op).append("/").append(width);
    return benchmark::RegisterBenchmark(name.c_str(), fn, o);
  };
  for (const auto& o : ops) {
    add("baseline", o.name, "double", baseline_double, o.op);
    add("inplace", o.name, "double", number_inplace, o.op)->Arg(52);
    add("value", o.name, "double", number_value, o.op)->Arg(52);
    for (int bits : {100, 1000}) {
      const std::string w = std::to_string(bits);
      add("baseline", o.name, w, baseline_mpfr, o.op)->Arg(bits);
      add("inplace", o.name, w, number_inplace, o.op)->Arg(bits);
      add("value", o.name, w, number_value, o.op)->Arg(bits);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  register_all();
  // "kind/op/width[/arg]": grouped by op and width, "baseline/..." the baseline of each.
  corbel::bench::RatioReporter reporter("item", [](const std::string& full) {
    std::string name = full;
    const auto slash = name.rfind('/');
    if (name.find('/', name.find('/') + 1) != slash) name = name.substr(0, slash);  // drop /arg
    const std::string group = name.substr(name.find('/'));
    return corbel::bench::Placement{name, group, name.rfind("baseline/", 0) == 0, double(kN)};
  });
  return corbel::bench::runWithRatios(argc, argv, reporter);
}
