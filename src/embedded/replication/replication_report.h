// What a run of replication did, and the ways in which it can fail.
#pragma once

#include <QStringList>

#include "embedded/format/engine_fault.h"

namespace lens {

struct ReplicationReport {
  int added = 0;
  int updated = 0;
  int deleted = 0;
  int conflicts = 0;
  QStringList leftOut;  // damaged notes: which, and why; they stay on their side
  bool ended = false;   // by whoever watched it, before all was done
};

}  // namespace lens
