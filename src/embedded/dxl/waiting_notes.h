// Notes of an import that cannot be saved before its end. They wait in a temporary file, since they may be as
// many as the database has.
#pragma once

#include <QTemporaryFile>
#include <functional>
#include <memory>

#include "embedded/format/note.h"
#include "embedded/store/value_spool.h"

namespace lens {

// Where a note has its UNID from: the file, or the note of its class in the database, if there is one.
enum class UnidOf { File, Present };

class WaitingNotes {
 public:
  // Raises DeviceFault when the disk does not take it.
  void add(const Note& note, const ValueSpool& spool, UnidOf unid);
  // In their order; large values are aside again.
  using Visitor = std::function<void(Note& note, const ValueSpool& spool, UnidOf unid)>;
  void each(const Visitor& visit);

 private:
  std::unique_ptr<QTemporaryFile> file_;
  qint64 count_ = 0;
};

}  // namespace lens
