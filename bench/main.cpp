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

struct Group {
  std::string name;
  std::vector<std::string> ratios;
  double target;
};

std::vector<Group>& groups() {
  static std::vector<Group> instance;
  return instance;
}

// Of an even number of values the mean of the two in the middle.
double medianOf(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const size_t half = values.size() / 2;
  return values.size() % 2 ? values[half] : (values[half - 1] + values[half]) / 2;
}

// Prints as usual and keeps the time of every repetition.
class Reporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      failed_ |= run.error_occurred;
      if (run.run_type == Run::RT_Iteration && !run.error_occurred) keep(times_[nameOf(run)], run);
    }
  }

  // A benchmark that did not do what it measures has no ratio, and must not pass unseen.
  bool hasFailed() const { return failed_; }

  // 0 when the benchmark did not run.
  double timeOf(const std::string& name) {
    const Times& times = times_[name];
    if (times.repetitions.empty()) return 0;
    if (times.ofThread) return *std::min_element(times.repetitions.begin(), times.repetitions.end());
    return medianOf(times.repetitions);
  }

 private:
  struct Times {
    std::vector<double> repetitions;
    bool ofThread = false;
  };

  // What waits for nothing asks for no real time: the time that others have the processor is not counted.
  static void keep(Times& times, const Run& run) {
    times.ofThread = run.run_name.time_type.empty();
    times.repetitions.push_back((times.ofThread ? run.cpu_accumulated_time : run.real_accumulated_time) /
                                double(run.iterations));
  }

  static std::string nameOf(const Run& run) {
    const std::string& arguments = run.run_name.args;
    return arguments.empty() ? run.run_name.function_name : run.run_name.function_name + "/" + arguments;
  }

  std::map<std::string, Times> times_;
  bool failed_ = false;
};

void printRatio(const std::string& name, double ratio, double target) {
  std::printf("ratio %s: %.2f", name.c_str(), ratio);
  if (target > 0) std::printf(" (target <= %.2f)", target);
  std::printf("\n");
}

void printRatios(Reporter& reporter) {
  std::printf("\n");
  std::map<std::string, double> ratios;
  for (const Pair& pair : pairs()) {
    const double ours = reporter.timeOf(pair.ours), peer = reporter.timeOf(pair.peer);
    if (ours <= 0 || peer <= 0) continue;
    ratios[pair.name] = ours / peer;
    printRatio(pair.name, ours / peer, pair.target);
  }
  for (const Group& group : groups()) {
    std::vector<double> members;
    for (const std::string& name : group.ratios)
      if (ratios.count(name)) members.push_back(ratios[name]);
    // A median of some of them only would say something else.
    if (members.size() == group.ratios.size())
      printRatio("median of " + group.name, medianOf(members), group.target);
  }
}

}  // namespace

Ratio::Ratio(std::string name, std::string ours, std::string peer, double target) {
  pairs().push_back({std::move(name), std::move(ours), std::move(peer), target});
}

Median::Median(std::string name, std::vector<std::string> ratios, double target) {
  groups().push_back({std::move(name), std::move(ratios), target});
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
  return reporter.hasFailed() ? 1 : 0;
}
