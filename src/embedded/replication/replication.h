// Replication: two copies of a database, known by the same replica ID, exchange what each has not seen.
//
// Notes are told apart by UNID, their versions by sequence number and sequence time: the higher one goes
// to the other side, a deletion stub counts as a version. Of two versions that were changed on both sides
// since they were the same, the one changed more often (then: later) stays, and the other is kept beside
// it as a conflict document, a response of it with the item $Conflict.
#pragma once

#include "embedded/store/database.h"

namespace lens {

struct ReplicationReport {
  int added = 0;
  int updated = 0;
  int deleted = 0;
  int conflicts = 0;
};

// Both ways. Raises when the replica IDs differ or a side cannot be read or written; each side then
// holds what had arrived until there, note by note, and nothing half.
ReplicationReport replicate(Database& here, Database& there);

}  // namespace lens
