// Notes and stubs put into a new database under the IDs that they have elsewhere.
#pragma once

#include <memory>

#include "embedded/store/database.h"

namespace lens {

// For a database that was just made and that nobody else has open, within a transaction of the caller.
class ExactNotes {
 public:
  explicit ExactNotes(Database& database);
  ~ExactNotes();
  ExactNotes(const ExactNotes&) = delete;
  ExactNotes& operator=(const ExactNotes&) = delete;

  // Everything of the header is kept as it is. False, and nothing is written, where the ID is none or is
  // taken, or a note has the UNID already. Raises NotSaved when it cannot be written.
  bool add(const Note& note);
  bool addStub(const NoteHeader& header);

 private:
  struct Statements;
  bool wasWritten() const;
  Database& database_;
  std::unique_ptr<Statements> statements_;
  qint64 change_ = 0;
};

}  // namespace lens
