// Pairs of benchmarks, ours and a peer's, whose ratio is what counts: it says the same on every machine.
#pragma once

#include <string>
#include <vector>

namespace lens::bench {

// At the end of the run the time of ours is divided by that of the peer: the median of the repetitions in
// real time where a benchmark asks for it (UseRealTime), otherwise the best in time of its own thread, which
// swings little even on a machine that has other work. Both of a pair ask for the same. Names are those of
// the registered benchmarks. Use at namespace scope beside the pair:
//   const Ratio saving("save", "BM_Save", "BM_SaveRaw", 1.5);
// Without a target the ratio is printed all the same; it counts in a median.
struct Ratio {
  Ratio(std::string name, std::string ours, std::string peer, double target = 0);
};

// The median of several ratios, by their names, for work that comes in many kinds.
struct Median {
  Median(std::string name, std::vector<std::string> ratios, double target);
};

}  // namespace lens::bench
