#include "embedded/store/change_record.h"

#include <QFile>
#include <QSet>

#include "embedded/format/single_notes.h"
#include "embedded/format/stored_object.h"
#include "embedded/store/note_statements.h"
#include "embedded/store/object_copy.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kBrought = -1;  // in place of a state: there was no such row before

// "was" is the state before and "since" the number of the change that had made it, "after" the number of the
// last change of the recording, NULL where it removed the row. Triggers of a connection's own are the only
// ones that run, and see what it does alone.
constexpr char kBeginRecording[] =
    "PRAGMA temp_store = FILE;"
    "CREATE TEMP TABLE recorded_note (id INTEGER PRIMARY KEY, was INTEGER NOT NULL, since INTEGER,"
    " after INTEGER, class INTEGER, unid BLOB, parent BLOB, sequence INTEGER, sequence_time INTEGER,"
    " created INTEGER, modified INTEGER, added INTEGER, accessed INTEGER, items BLOB);"
    "CREATE TEMP TRIGGER record_brought AFTER INSERT ON main.note BEGIN"
    "  INSERT INTO recorded_note (id, was, after) VALUES (NEW.id, -1, NEW.change)"
    "   ON CONFLICT (id) DO UPDATE SET after = excluded.after;"
    " END;"
    "CREATE TEMP TRIGGER record_changed AFTER UPDATE ON main.note BEGIN"
    "  INSERT OR IGNORE INTO recorded_note VALUES (OLD.id, OLD.state, OLD.change, NULL, OLD.class, OLD.unid,"
    "   OLD.parent, OLD.sequence, OLD.sequence_time, OLD.created, OLD.modified, OLD.added, OLD.accessed,"
    "   OLD.items);"
    "  UPDATE recorded_note SET after = NEW.change WHERE id = NEW.id;"
    " END;"
    "CREATE TEMP TRIGGER record_removed AFTER DELETE ON main.note BEGIN"
    "  INSERT OR IGNORE INTO recorded_note VALUES (OLD.id, OLD.state, OLD.change, NULL, OLD.class, OLD.unid,"
    "   OLD.parent, OLD.sequence, OLD.sequence_time, OLD.created, OLD.modified, OLD.added, OLD.accessed,"
    "   OLD.items);"
    "  UPDATE recorded_note SET after = NULL WHERE id = OLD.id;"
    " END;";
constexpr char kEndTriggers[] =
    "DROP TRIGGER IF EXISTS temp.record_brought; DROP TRIGGER IF EXISTS temp.record_changed;"
    "DROP TRIGGER IF EXISTS temp.record_removed;";
constexpr char kEndRecording[] =
    "DROP TRIGGER IF EXISTS temp.record_brought; DROP TRIGGER IF EXISTS temp.record_changed;"
    "DROP TRIGGER IF EXISTS temp.record_removed; DROP TABLE IF EXISTS temp.recorded_note;";

void copyRecord(sqlite3* source, const QString& path) {
  int status = SQLITE_NOMEM;
  {
    const Connection target(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX);
    if (sqlite3_backup* const backup = sqlite3_backup_init(target.handle(), "main", source, "temp")) {
      sqlite3_backup_step(backup, -1);
      status = sqlite3_backup_finish(backup);
    }
  }
  if (status == SQLITE_OK) return;
  QFile::remove(path);
  throw RuntimeError(enginefault::NotSaved, u"%1: what was changed cannot be written down (%2)"_s.arg(
                                                path, QString::fromUtf8(sqlite3_errstr(status))));
}

// A row of the record, and what has become of the note since.
class RecordReader {
 public:
  RecordReader(Database& database, const QString& path)
      : database_(database), record_(path, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX), rows_(record_) {
    Statement list(record_, "SELECT id, was, after, since FROM recorded_note ORDER BY was, id", kFault);
    Statement::Run row(list);
    while (row.step())
      entries_.push_back({row.noteId(0), int(row.integer(1)), row.isNull(2) ? 0 : row.integer(2),
                          row.isNull(3) ? 0 : row.integer(3)});
    Statement stubs(record_, "SELECT unid FROM recorded_note WHERE was = 1", kFault);
    Statement::Run stub(stubs);
    while (stub.step()) stubs_.insert(stub.blob(0).toByteArray());
  }

  struct Entry {
    NoteId id;
    int was = 0;
    qint64 after = 0;  // 0 where the recording removed the row
    qint64 since = 0;  // 0 where there was none before
  };
  // Those that were brought first: they may have the place of one that was removed.
  const QVector<Entry>& entries() const { return entries_; }

  enum class Now { AsLeft, Changed, NotThere };
  Now now(const Entry& entry) {
    Statement::Run row(now_, entry.id);
    if (!row.step()) return Now::NotThere;
    tookStub_ = stubs_.contains(row.blob(2).toByteArray());
    if (row.integer(0) == entry.after) return Now::AsLeft;
    return row.integer(1) == kStateLive ? Now::Changed : Now::NotThere;
  }
  // The number of a note's last change.
  qint64 changeOf(NoteId id) {
    Statement::Run row(now_, id);
    return row.step() ? row.integer(0) : 0;
  }
  // Of the note that now() was asked for: whether a stub with its UNID had to make way for it.
  bool tookStub() const { return tookStub_; }
  // The note as it was; false when it cannot be read.
  bool before(NoteId id, Note& note) {
    try {
      Statement::Run row(before_, id);
      return rows_.readRow(row, note);
    } catch (const RuntimeError& error) {
      if (error.number() != enginefault::Damaged) throw;
      return false;
    }
  }

 private:
  static constexpr int kFault = enginefault::Damaged;
  Database& database_;
  Connection record_;
  NoteStatements rows_;
  Statement now_{database_.connection(),
                 "SELECT change, state, unid FROM note WHERE id = ? AND " LENS_HAS_ARRIVED,
                 StoreSession::kRead};
  Statement before_{record_,
                    "SELECT id, class, unid, parent, sequence, sequence_time, created, modified, added,"
                    " accessed, items FROM recorded_note WHERE id = ?",
                    kFault};
  QVector<Entry> entries_;
  QSet<QByteArray> stubs_;
  bool tookStub_ = false;
};

bool hasItsObjects(const Database& database, const Note& note) {
  for (const Item& item : note.items)
    if (mayReferToObject(item) && isFileKind(item.data()) &&
        database.objects().size(objectIdOf(item.data())) < 0)
      return false;
  return true;
}

// A note that is again as it was, under another number and perhaps another ID.
struct PutBack {
  NoteId oldId;
  qint64 oldChange = 0;
  NoteId id;
  qint64 change = 0;
};

void handOn(const QString& record, const QVector<PutBack>& notes) {
  if (notes.isEmpty() || !QFile::exists(record)) return;
  Connection connection(record, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX);
  Statement move(connection, "UPDATE recorded_note SET id = ? WHERE id = ?", enginefault::NotSaved);
  Statement follow(connection, "UPDATE recorded_note SET after = ? WHERE id = ? AND after = ?",
                   enginefault::NotSaved);
  connection.execute("BEGIN", enginefault::NotSaved);
  for (const PutBack& note : notes) {
    if (note.id != note.oldId) Statement::Run(move, note.id, note.oldId).step();
    Statement::Run(follow, note.change, note.id, note.oldChange).step();
  }
  connection.execute("COMMIT", enginefault::NotSaved);
}

// Another note of a class that a database has once only.
bool isDisplaced(const Database& database, const Note& note) {
  Note there;
  if (database.notes().read(note.header.unid, there)) return true;
  return isSingleInstance(note.header.noteClass) &&
         !database.notes().specialNote(noteclass::base(note.header.noteClass)).isNull();
}

class TakingBack {
 public:
  TakingBack(Database& database, const QString& path) : database_(database), record_(database, path) {}

  TakenBack run(const std::function<bool(qint64, qint64)>& go, const QStringList& earlier) {
    Database::Transaction transaction(database_);
    qint64 done = 0;
    for (const RecordReader::Entry& entry : record_.entries()) {
      if (go && !go(done++, record_.entries().size())) return {0, 0, {}, true};
      if (entry.was == kBrought)
        removeBrought(entry);
      else if (entry.was == kStateLive)
        restore(entry);
    }
    for (const QString& record : earlier) handOn(record, putBack_);
    transaction.commit();
    return result_;
  }

 private:
  void leave(NoteId id, LeftNote::Reason reason) { result_.left.push_back({id, reason}); }

  // Where it had taken the place of a stub, other replicas are told of its end.
  void removeBrought(const RecordReader::Entry& entry) {
    if (entry.after == 0) return;
    switch (record_.now(entry)) {
      case RecordReader::Now::NotThere:
        return;
      case RecordReader::Now::Changed:
        return leave(entry.id, LeftNote::Reason::Changed);
      case RecordReader::Now::AsLeft:
        break;
    }
    if (database_.notes().remove(entry.id, record_.tookStub())) ++result_.removed;
  }

  void restore(const RecordReader::Entry& entry) {
    const RecordReader::Now now = record_.now(entry);
    const bool wasRemoved = entry.after == 0;
    if (!wasRemoved && now != RecordReader::Now::AsLeft)
      return leave(entry.id,
                   now == RecordReader::Now::Changed ? LeftNote::Reason::Changed : LeftNote::Reason::Deleted);
    Note note;
    if (!record_.before(entry.id, note)) return leave(entry.id, LeftNote::Reason::Damaged);
    if (wasRemoved && isDisplaced(database_, note)) return leave(entry.id, LeftNote::Reason::Displaced);
    if (!hasItsObjects(database_, note)) return leave(entry.id, LeftNote::Reason::WithoutFile);
    database_.notes().saveAsGiven(note);
    putBack_.push_back({entry.id, entry.since, note.header.id, record_.changeOf(note.header.id)});
    ++result_.restored;
  }

  Database& database_;
  RecordReader record_;
  QVector<PutBack> putBack_;
  TakenBack result_;
};

}  // namespace

ChangeRecording::ChangeRecording(Database& database) : database_(database) {
  database.connection().execute(kBeginRecording, enginefault::NotSaved);
  running_ = true;
}

ChangeRecording::~ChangeRecording() {
  stop();
}

void ChangeRecording::stop() noexcept {
  if (running_) sqlite3_exec(database_.handle(), kEndRecording, nullptr, nullptr, nullptr);
  running_ = false;
}

bool ChangeRecording::writeTo(const QString& path) {
  if (path.isEmpty())
    throw RuntimeError(enginefault::NotSaved,
                       u"%1: what was changed cannot be written down (there is no directory for temporary "
                       "files)"_s.arg(database_.path()));
  database_.connection().execute(kEndTriggers, enginefault::NotSaved);
  Connection& connection = database_.connection();
  connection.execute("DELETE FROM temp.recorded_note WHERE was = -1 AND after IS NULL",
                     enginefault::NotSaved);
  bool any = false;
  {
    Statement first(connection, "SELECT 1 FROM temp.recorded_note LIMIT 1", enginefault::NotSaved);
    any = Statement::Run(first).step();
  }
  if (any) copyRecord(database_.handle(), path);
  stop();
  return any;
}

QVector<Note> notesBefore(const QString& record, int most) {
  const Connection connection(record, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX);
  const NoteStatements rows(connection);
  Statement list(
      connection,
      "SELECT id, class, unid, parent, sequence, sequence_time, created, modified, added, accessed,"
      " items FROM recorded_note WHERE was = 0 ORDER BY id LIMIT ?",
      enginefault::Damaged);
  Statement::Run row(list, most);
  QVector<Note> notes;
  for (Note note; rows.readRow(row, note);) notes.push_back(note);
  return notes;
}

TakenBack takeBack(Database& database, const QString& record,
                   const std::function<bool(qint64 done, qint64 total)>& go, const QStringList& earlier) {
  return TakingBack(database, record).run(go, earlier);
}

}  // namespace lens
