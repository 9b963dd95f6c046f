// What a run of replication did, and the ways in which it can fail.
#pragma once

#include <QStringList>

namespace lens {

namespace replicationfault {
inline constexpr int NotReplicas = 4114;  // other replica IDs, or twice the same file
inline constexpr int NoReplica = 4115;    // none on that server
inline constexpr int NotesLeftOut = 4116;
}  // namespace replicationfault

struct ReplicationReport {
  int added = 0;
  int updated = 0;
  int deleted = 0;
  int conflicts = 0;
  QStringList leftOut;  // damaged notes: which, and why; they stay on their side
};

}  // namespace lens
