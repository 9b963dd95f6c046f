// What one connection changes in the notes of a database, written down with the notes as they were before: an
// import can be taken back with it.
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>
#include <functional>

#include "embedded/store/database.h"

namespace lens {

// From here to its end every note that is changed, brought or removed through this database is written down,
// each once, as it was before the first change. What is undone with its transaction is forgotten with it, and
// what others change meanwhile is no part of it. The record waits in a temporary file.
class ChangeRecording {
 public:
  // Raises NotSaved where nothing can be written down. The database must outlive it.
  explicit ChangeRecording(Database& database);
  ~ChangeRecording();
  ChangeRecording(const ChangeRecording&) = delete;
  ChangeRecording& operator=(const ChangeRecording&) = delete;

  // Ends it and puts the record into a new file. False, and no file, where nothing was changed. Raises
  // NotSaved when the file finds no room or has no name, CannotOpen without its directory; the changes stay
  // then, and nothing takes them back.
  bool writeTo(const QString& path);

 private:
  void stop() noexcept;
  Database& database_;
  bool running_ = false;
};

// The notes of a record that were there before, as they were then; so many at most. Raises Damaged
// where one cannot be read.
QVector<Note> notesBefore(const QString& record, int most);

// A note that is not as the record left it, or could not be as it was before.
struct LeftNote {
  enum class Reason {
    Changed,      // somebody has changed it since
    Deleted,      // somebody has deleted it since
    Displaced,    // another note has its UNID or its place by now
    WithoutFile,  // an attachment that it had is in the database no more
    Damaged,      // as it was before it could not be read
  };
  NoteId id;
  Reason reason = Reason::Changed;
};

struct TakenBack {
  int removed = 0;   // notes that had been brought
  int restored = 0;  // notes that had been changed or removed
  QVector<LeftNote> left;
  bool cancelled = false;
};

// Takes the changes of a record back, all in one transaction: notes that it brought go, others are as they
// were before. What anybody has changed since stays as it is and is told. A note that had been removed comes
// back under another note ID. Earlier records of the same database, as far as they are there, take the notes
// that are put back for those that they left. Progress is counted in notes; false ends the work, and nothing
// was changed then. Raises NotSaved, and Damaged for a record that cannot be read; nothing was changed
// either.
TakenBack takeBack(Database& database, const QString& record,
                   const std::function<bool(qint64 done, qint64 total)>& go = {},
                   const QStringList& earlier = {});

}  // namespace lens
