// Runs an agent of the source database by a double click on its row, after a question.
#pragma once

#include "bulk/replic_desk.h"

namespace lens {

class ReplicAgents {
 public:
  explicit ReplicAgents(ReplicDesk& desk);

  // On a server a database that cannot be opened is told, and what fails behind that is passed over; on this
  // machine each failure is the caller's.
  void lstAgentNames_DblClick();

 private:
  ReplicDesk& desk_;
};

}  // namespace lens
