// The import of a large file: what is new arrives unseen in many transactions, what replaces notes or
// properties of the database waits for the last one.
#pragma once

#include <functional>
#include <vector>

#include "embedded/dxl/waiting_notes.h"
#include "embedded/store/arrival.h"

namespace lens {

class LargeImport {
 public:
  // So many notes at most. Raises what Arrival raises.
  LargeImport(Database& target, qint64 mostNotes, const ArrivalPace& pace)
      : arrival_(target, mostNotes, pace) {}

  void pause() { arrival_.pause(); }
  bool mustWait(const Note& note) const { return arrival_.mustWait(note.header); }
  void wait(const Note& note, const ValueSpool& spool, UnidOf unid) { waiting_.add(note, spool, unid); }
  void atEnd(std::function<void()> change) { last_.push_back(std::move(change)); }
  // Saves what waits, then makes the other changes, both in their order; from then on everything is seen.
  void finish(const WaitingNotes::Visitor& save) {
    arrival_.finish([&] {
      waiting_.each(save);
      for (const auto& change : last_) change();
    });
  }

 private:
  Arrival arrival_;
  WaitingNotes waiting_;
  std::vector<std::function<void()>> last_;
};

}  // namespace lens
