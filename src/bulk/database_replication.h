// Replicates the marked databases of the source list with their replicas on the target server; where there is
// none, one is made first, under the same file path. A replica is found by its ID, whatever its path. No
// control is wired to it.
#pragma once

#include "bulk/replic_desk.h"

namespace lens {

class DatabaseReplication {
 public:
  explicit DatabaseReplication(ReplicDesk& desk) : desk_(desk) {}

  // A failure ends the run at its row and is told; rows that were done are unmarked.
  void replicateDatabases();

 private:
  void replicateMarkedRows();
  void makeReplicaWhereNoneIs(const NotesDatabase& source, const NotesDbDirectory& directory,
                              const QString& targetServer);

  ReplicDesk& desk_;
};

}  // namespace lens
