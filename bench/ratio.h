// Pairs of benchmarks, ours and a peer's, whose ratio is what counts: it says the same on every machine.
#pragma once

#include <string>

namespace lens::bench {

// At the end of the run the median time of ours is divided by that of the peer. Names are those of
// the registered benchmarks. Use at namespace scope beside the pair:
//   const Ratio saving("save", "BM_Save", "BM_SaveRaw", 1.5);
struct Ratio {
  Ratio(std::string name, std::string ours, std::string peer, double target);
};

}  // namespace lens::bench
