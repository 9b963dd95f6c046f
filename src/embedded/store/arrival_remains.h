// What the file says of a large import that is under way, and how its notes go again when it has not come to
// its end.
#pragma once

#include <QVector>

#include "embedded/store/store_session.h"

namespace lens {

// How long one transaction of many keeps others waiting, and how long they have in between.
struct ArrivalPace {
  int turnMs = 700;
  // Others look again after 100 ms at the most when they wait to write, so that they meet the gap.
  int gapMs = 110;
};

// Among the properties of the database: the block of the notes, and the objects that came with them. What
// writes needs a transaction.
class ArrivalEntry {
 public:
  struct Range {
    qint64 first = 0, last = -1;
  };
  explicit ArrivalEntry(StoreSession& session) : session_(session) {}

  bool exists();
  ArrivingBlock block();
  QVector<Range> objects();
  // While the entry is there, the file has the schema that earlier programs do not open.
  void write(const ArrivingBlock& block);
  void addObjects(const Range& more);
  void remove();

 private:
  void setSchema(int schema);
  StoreSession& session_;
};

// For FileLock: held by who imports, or removes what an import left. Raises when the file has gone.
QString arrivalLockName(StoreSession& session);
// Removes the notes and objects of the entry and then itself, in turns; they stay unseen meanwhile. The lock
// must be held.
void removeArrived(StoreSession& session, const ArrivalPace& pace);
// The same for what an import has left whose process is gone, as far as that is possible now.
void removeAbandoned(StoreSession& session);

}  // namespace lens
