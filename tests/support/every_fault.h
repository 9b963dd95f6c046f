// A piece of work with a failure in every place: its first call fails, then its second, and so on, until a
// run has no call left to fail.
#pragma once

#include <gtest/gtest.h>

namespace lens {

// Runs the work with the n-th call through the door failing, counted from here. False when the work has no
// n-th call.
template <class Door, class Work>
bool reachesFault(Door& door, int n, Work&& work) {
  const int before = door.calls();
  door.failAt = before + n;
  work();
  door.failAt = 0;
  return door.calls() - before >= n;
}

inline int everyPlace(int n) {
  return n + 1;
}

// Asks for n = 1, 2, ... until `run` says that its n-th place was not reached; `check` looks at what each run
// that failed has left. Gives the number of those runs. Work of very many places is not stopped at each:
// `next` tells which place comes behind one.
template <class Run, class Check, class Next = int (*)(int)>
int withEveryFault(Run&& run, Check&& check, Next&& next = everyPlace) {
  constexpr int kEndless = 2'000;
  int n = 1;
  for (int runs = 0; runs < kEndless; ++runs, n = next(n)) {
    SCOPED_TRACE(testing::Message() << "failure in place " << n);
    if (!run(n)) return runs;
    check(n);
    // One broken place is enough to know of.
    if (testing::Test::HasFatalFailure()) return runs;
  }
  ADD_FAILURE() << "does not end";
  return kEndless;
}

}  // namespace lens
