// All versions of a database in order of UNID, read in pieces so that a large database takes no room.
#pragma once

#include "embedded/store/database.h"

namespace lens {

class VersionWalk {
 public:
  explicit VersionWalk(const Database& database) : database_(database) { read({}); }
  // Null behind the last one. Valid until the next step.
  const NoteVersion* current() const { return at_ < versions_.size() ? &versions_[at_] : nullptr; }
  void next() {
    if (++at_ == versions_.size() && at_ == kPiece) read(Unid(versions_.last().unid));
  }

 private:
  static constexpr int kPiece = 500;
  void read(const Unid& after) {
    versions_ = database_.versions().versionsAfter(after, kPiece);
    at_ = 0;
  }
  const Database& database_;
  QVector<NoteVersion> versions_;
  qsizetype at_ = 0;
};

}  // namespace lens
