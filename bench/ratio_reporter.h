// A console reporter for the benchmarks: after Google Benchmark's own table it prints each
// benchmark's time per item and its ratio to the baseline of its group, measured in the
// same run.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace corbel::bench {

// What the reporter needs to know of a benchmark, from its name.
struct Placement {
  std::string label;  // the name in the ratio table
  std::string group;  // benchmarks of a group share a baseline
  bool baseline;      // this one is its group's baseline
  double items;       // items per iteration (elements, multiply-adds, ...)
};

class RatioReporter : public benchmark::ConsoleReporter {
 public:
  RatioReporter(const char* itemName, std::function<Placement(const std::string&)> place)
      : itemName_(itemName), place_(std::move(place)) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& r : runs) {
      if (r.run_type != Run::RT_Iteration) continue;
      const Placement p = place_(r.benchmark_name());
      const double seconds =
          r.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(r.time_unit);
      const double ns = seconds * 1e9 / p.items;
      if (p.baseline) baselines_[p.group] = ns;
      rows_.push_back({p, ns});
    }
  }

  void Finalize() override {
    ConsoleReporter::Finalize();
    std::printf("\n%-32s %12s %10s %8s\n", "benchmark", ("ns/" + itemName_).c_str(), "baseline",
                "ratio");
    for (const auto& [p, ns] : rows_) {
      const auto base = baselines_.find(p.group);
      if (base == baselines_.end())
        std::printf("%-32s %12.2f %10s %8s\n", p.label.c_str(), ns, "-", "-");
      else
        std::printf("%-32s %12.2f %10.2f %8.1f\n", p.label.c_str(), ns, base->second,
                    ns / base->second);
    }
  }

 private:
  std::string itemName_;
  std::function<Placement(const std::string&)> place_;
  std::vector<std::pair<Placement, double>> rows_;
  std::map<std::string, double> baselines_;
};

// Runs the registered benchmarks with the reporter; the body of each benchmark's main.
inline int runWithRatios(int argc, char** argv, RatioReporter& reporter) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}

}  // namespace corbel::bench
