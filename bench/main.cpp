#include <benchmark/benchmark.h>

#include <QApplication>
#include <algorithm>
#include <cstdio>
#include <map>
#include <vector>

#include "first_screen.h"
#include "ratio.h"

namespace lens::bench {
namespace {

struct Pair {
  std::string name, ours, peer;
  double target;
};

std::vector<Pair>& pairs() {
  static std::vector<Pair> instance;
  return instance;
}

// Prints as usual and keeps the time of every repetition.
class Reporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs)
      if (run.run_type == Run::RT_Iteration && !run.error_occurred)
        times_[nameOf(run)].push_back(run.real_accumulated_time / double(run.iterations));
  }

  // 0 when the benchmark did not run.
  double median(const std::string& name) {
    std::vector<double>& times = times_[name];
    if (times.empty()) return 0;
    const auto middle = times.begin() + long(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
  }

 private:
  static std::string nameOf(const Run& run) {
    const std::string& arguments = run.run_name.args;
    return arguments.empty() ? run.run_name.function_name : run.run_name.function_name + "/" + arguments;
  }

  std::map<std::string, std::vector<double>> times_;
};

void printRatios(Reporter& reporter) {
  for (const Pair& pair : pairs()) {
    const double ours = reporter.median(pair.ours), peer = reporter.median(pair.peer);
    if (ours > 0 && peer > 0)
      std::printf("ratio %s: %.2f (target <= %.2f)\n", pair.name.c_str(), ours / peer, pair.target);
  }
}

}  // namespace

Ratio::Ratio(std::string name, std::string ours, std::string peer, double target) {
  pairs().push_back({std::move(name), std::move(ours), std::move(peer), target});
}

}  // namespace lens::bench

int main(int argc, char** argv) {
  if (lens::bench::ranFirstScreen(argc, argv)) return 0;
  QApplication application(argc, argv);
  // Repetitions of both sides take turns, so that a slow moment of the machine hits both.
  std::vector<std::string> defaults{argv[0], "--benchmark_repetitions=9",
                                    "--benchmark_enable_random_interleaving=true",
                                    "--benchmark_min_time=0.1"};
  std::vector<char*> arguments;
  for (std::string& argument : defaults) arguments.push_back(argument.data());
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  int count = int(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
  lens::bench::Reporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  lens::bench::printRatios(reporter);
  benchmark::Shutdown();
  return 0;
}
