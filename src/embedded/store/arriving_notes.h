// The notes of a large import while it is under way. They are in the file already, brought by many
// transactions, and nobody else sees them before the last one, which takes their entry out of the file.
//
// Their note IDs are a block of their own, which others number behind. Their change numbers begin so far
// behind all others that no other change comes there meanwhile: once they are seen, theirs are the latest
// changes, so whoever follows the changes meets them then.
#pragma once

#include "embedded/format/engine_fault.h"
#include "embedded/store/sqlite_statement.h"

namespace lens {

// Every statement that reads notes passes over those that are arriving. SQLite asks once in a run of a
// statement.
#define LENS_HAS_ARRIVED "id NOT BETWEEN arriving_first() AND arriving_last()"
#define LENS_IS_ARRIVING "id BETWEEN arriving_first() AND arriving_last()"
#define LENS_CHANGE_HAS_ARRIVED "change < arriving_change()"

struct ArrivingBlock {
  qint64 first = kNoNumber, last = kNoNumber;  // note IDs
  qint64 change = kNoNumber;                   // the first of their changes

  bool exists() const { return first != kNoNumber; }
  bool holds(NoteId id) const { return id.value() >= first && id.value() <= last; }
  // As the file's entry says it. What is no such text gives none.
  static ArrivingBlock fromText(const QString& text);
  QString text() const;
};

class ArrivingNotes {
 public:
  // Makes the functions of the statements. The connection must outlive this.
  explicit ArrivingNotes(Connection& connection);
  ArrivingNotes(const ArrivingNotes&) = delete;
  ArrivingNotes& operator=(const ArrivingNotes&) = delete;

  // The entry of the file as the running statement or transaction finds it; outside both as the last one did.
  const ArrivingBlock& inFile();
  // The same, but none for the connection that the notes arrive by.
  const ArrivingBlock& hidden() { return isBringing() ? none_ : inFile(); }

  // From here on new notes of this connection have the numbers of the block.
  void bring(const ArrivingBlock& block);
  void stopBringing() { brought_ = {}; }
  bool isBringing() const { return brought_.exists(); }
  const ArrivingBlock& brought() const { return brought_; }
  // The next note ID of the block; null when all are taken.
  NoteId nextId() const;
  void idTaken(NoteId id);

 private:
  Connection& connection_;
  const ArrivingBlock none_;
  ArrivingBlock inFile_, brought_;
  qint64 nextId_ = 0;
  unsigned int version_ = 0;  // of the file's content, as SQLite counts it, when the entry was read
  bool known_ = false;
  Statement read_{connection_, "SELECT value FROM info WHERE key = 'arriving'", enginefault::CannotOpen};
};

}  // namespace lens
