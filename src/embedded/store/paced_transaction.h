// Long work on what is derived from the notes, an index for example: in transactions so short that others
// who want to write get their turn in between. What was written before a turn stays when the work fails
// later, so the work has to leave a mark that it is not finished.
#pragma once

#include <QElapsedTimer>
#include <optional>

#include "embedded/store/database.h"

namespace lens {

class PacedTransaction {
 public:
  // Waits so long for others that write; raises what Database::Transaction raises. Inside another
  // transaction there are no turns.
  PacedTransaction(Database& database, int waitMs);

  // Between two steps of the work. True when others had their turn: then nothing is sure of what was read
  // before.
  bool pause();
  void commit();

 private:
  // Others look again after 100 ms at the most, so that somebody who waits five seconds meets a gap.
  static constexpr int kHeldMs = 200, kGapMs = 20;
  Database& database_;
  const bool nested_;
  std::optional<Database::Transaction> transaction_;
  QElapsedTimer held_;
};

}  // namespace lens
