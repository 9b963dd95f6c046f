// What a fuzz target holds to be true: anything else ends it, with the reason and the input.
#pragma once

#include <QString>
#include <cstdio>
#include <cstdlib>

namespace lens {

inline void check(bool holds, const char* what, QStringView input = {}) {
  if (holds) return;
  std::fprintf(stderr, "%s\n%s\n", what, input.toUtf8().constData());
  std::abort();
}

}  // namespace lens
