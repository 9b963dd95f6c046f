// A list of note IDs, kept as runs: IDs are steps of 4 apart.
#pragma once

#include <QByteArray>
#include <QVector>

#include "embedded/format/note_id.h"

namespace lens {

class NsfIdTable {
 public:
  // What can be read of it; isWhole() tells whether that is all.
  explicit NsfIdTable(QByteArrayView bytes = {});

  // The counts agree with what is there.
  bool isWhole() const { return whole_; }
  qint64 count() const { return count_; }
  // In ascending order, as the runs are.
  bool contains(NoteId id) const;
  template <class Visit>
  void forEach(Visit&& visit) const {
    for (const Run& run : runs_)
      for (quint32 i = 0; i < run.count; ++i) visit(NoteId(run.first + 4 * i));
  }

 private:
  struct Run {
    quint32 first, count;
  };
  QVector<Run> runs_;
  qint64 count_ = 0;
  bool whole_ = false;
};

}  // namespace lens
