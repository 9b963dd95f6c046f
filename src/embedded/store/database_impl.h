// What stands behind a Database: the connection, its statements and what is known of the file.
#pragma once

#include <QCryptographicHash>
#include <QHash>
#include <QSet>

#include "embedded/store/database.h"
#include "embedded/store/sqlite_statement.h"

namespace lens {

inline constexpr qsizetype kChunkSize = 256 * 1024;
inline constexpr int kStateLive = 0;
inline constexpr int kStateStub = 1;

// How times and parents stand in the tables.
inline qint64 stored(const TimeDate& time) {
  return qint64(quint64(time.innards[1]) << 32 | time.innards[0]);
}
inline TimeDate fromStored(qint64 number) {
  return {{quint32(quint64(number)), quint32(quint64(number) >> 32)}};
}
inline QByteArray parentBytes(const Unid& parent) {
  return parent.isNull() ? QByteArray() : parent.bytes();
}

struct Database::Impl {
  Impl(const QString& path, int flags, bool constant)
      : connection(path, flags | SQLITE_OPEN_NOMUTEX, constant) {}
  // Of a database whose file was removed.
  explicit Impl(const QString& path) : connection(path), removed(true) {}

  // An object between its begin and its end.
  struct Pending {
    QCryptographicHash hash{QCryptographicHash::Sha256};
    QByteArray rest;  // less than a chunk
    qint64 size = 0;
    int chunks = 0;
    int depth = 0;  // of the transaction in which it began
  };

  // Header columns in the order that readHeader expects, behind them the items.
  static constexpr int kItemsColumn = 10;
  // False when the UNID is cut or the row's number is no note ID.
  static bool readHeader(const Statement::Run& row, NoteHeader& header);
  bool readRow(Statement::Run& row, Note& note) const;
  qint64 nextChange();
  quint32 nextId();
  void eraseRow(quint32 noteId, qint64 change);
  // What is stored of a live note before it changes; false when there is none.
  bool readIdentity(quint32 noteId, NoteHeader& header);
  static NoteVersion readVersion(Statement::Run& row);
  VersionVector versionVectorOf(quint32 noteId, const VersionStamp& original);
  void putVersionVector(quint32 noteId, const VersionVector& versionVector);
  // The version vector of the version that comes after what is stored.
  VersionVector nextVersionVector(const NoteHeader& before);
  VersionStamp nextStamp();
  // A note that was erased here without a stub may come back as it was before our last changes of it. What
  // is written from then on must not seem to have come out of those.
  void renewWriter() { writer = {}; }
  void checkWritable() const;
  void noteSaved(const Note& note);
  Pending& pending(quint32 objectId);
  void storeChunk(quint32 objectId, Pending& object, QByteArrayView bytes);

  Connection connection;
  int depth = 0;
  const bool removed = false;
  VersionStamp writer;  // of the last version that was written through this connection
  QHash<quint32, std::shared_ptr<Pending>> objects;
  // Objects that were written here and are in no saved note yet: a document may still be open with them.
  QSet<quint32> unsavedObjects;

  static constexpr int kRead = enginefault::CannotOpen;
  static constexpr int kWrite = enginefault::NotSaved;
#define LENS_NOTE_COLUMNS \
  "id, class, unid, parent, sequence, sequence_time, created, modified, added, accessed, items"
  Statement begin{connection, "BEGIN IMMEDIATE", kWrite};
  Statement commit{connection, "COMMIT", kWrite};
  Statement rollback{connection, "ROLLBACK", kWrite};
  Statement savepoint{connection, "SAVEPOINT nested", kWrite};
  Statement release{connection, "RELEASE nested", kWrite};
  Statement rollbackTo{connection, "ROLLBACK TO nested", kWrite};

  Statement readById{connection, "SELECT " LENS_NOTE_COLUMNS " FROM note WHERE id = ? AND state = 0", kRead};
  Statement readByUnid{connection, "SELECT " LENS_NOTE_COLUMNS " FROM note WHERE unid = ? AND state = 0",
                       kRead};
  // Walks over the rows as they lie: an index would send it from page to page.
  Statement scanRows{connection,
                     "SELECT " LENS_NOTE_COLUMNS
                     " FROM note NOT INDEXED WHERE id > ? AND state = 0 AND class & ? ORDER BY id",
                     kRead};
  Statement readItems{connection, "SELECT items FROM note WHERE id = ? AND state = 0", kRead};
  Statement readState{connection, "SELECT state, items FROM note WHERE id = ?", kRead};
  Statement highestId{connection,
                      "SELECT max(coalesce((SELECT max(id) FROM note), 0),"
                      " coalesce((SELECT value FROM info WHERE key = 'highest id'), 0))",
                      kRead};
  Statement highestChange{connection,
                          "SELECT max(coalesce((SELECT max(change) FROM note), 0),"
                          " coalesce((SELECT value FROM info WHERE key = 'highest change'), 0))",
                          kRead};
  Statement nextClass{connection, "SELECT min(class) FROM note WHERE state = 0 AND class > ?", kRead};
  Statement listClass{connection,
                      "SELECT id, unid, parent FROM note WHERE state = 0 AND class = ? ORDER BY id", kRead};
  Statement firstOfClass{connection, "SELECT min(id) FROM note WHERE state = 0 AND class = ?", kRead};
  Statement countClass{connection, "SELECT count(*) FROM note WHERE state = 0 AND class = ?", kRead};

  Statement identity{
      connection, "SELECT class, unid, parent, sequence, sequence_time FROM note WHERE id = ? AND state = 0",
      kWrite};
  Statement insert{
      connection,
      "INSERT INTO note (id, class, unid, parent, sequence, sequence_time, created, modified, added,"
      " accessed, items, state, change) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 0, ?)",
      kWrite};
  Statement updateContent{
      connection,
      "UPDATE note SET sequence = ?, sequence_time = ?, created = ?, modified = ?, added = ?,"
      " accessed = ?, items = ?, change = ? WHERE id = ?",
      kWrite};
  Statement updateIdentity{connection, "UPDATE note SET class = ?, unid = ?, parent = ? WHERE id = ?",
                           kWrite};
  Statement makeStub{connection,
                     "UPDATE note SET state = 1, items = NULL, sequence = sequence + 1, sequence_time = ?,"
                     " modified = ?, change = ? WHERE id = ?",
                     kWrite};
  Statement updateToStub{connection,
                         "UPDATE note SET state = 1, items = NULL, sequence = ?, sequence_time = ?,"
                         " modified = ?, change = ? WHERE id = ?",
                         kWrite};
  Statement insertStub{
      connection,
      "INSERT INTO note (id, class, unid, parent, sequence, sequence_time, created, modified, added,"
      " accessed, items, state, change) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, NULL, 1, ?)",
      kWrite};
  Statement erase{connection, "DELETE FROM note WHERE id = ?", kWrite};
  Statement eraseVersionVector{connection, "DELETE FROM lineage WHERE note = ?", kWrite};
  Statement readVersionVector{connection, "SELECT stamps FROM lineage WHERE note = ?", kRead};
  Statement writeVersionVector{connection, "INSERT OR REPLACE INTO lineage (note, stamps) VALUES (?, ?)",
                               kWrite};
#define LENS_VERSION_COLUMNS "id, unid, class, state, sequence, sequence_time, stamps"
#define LENS_VERSIONS "SELECT " LENS_VERSION_COLUMNS " FROM note LEFT JOIN lineage ON note.id = lineage.note"
  Statement listVersions{connection,
                         LENS_VERSIONS " WHERE unid > ? AND length(unid) = 16 ORDER BY unid LIMIT ?", kRead};
  Statement versionOfUnid{connection, LENS_VERSIONS " WHERE unid = ?", kRead};
#undef LENS_VERSIONS
#undef LENS_VERSION_COLUMNS
  Statement recordErased{connection, "INSERT INTO erased (change, note) VALUES (?, ?)", kWrite};
  Statement changedNotes{connection, "SELECT change, id, state FROM note WHERE change > ? ORDER BY change",
                         kRead};
  Statement erasedNotes{connection, "SELECT change, note FROM erased WHERE change > ? ORDER BY change",
                        kRead};

  Statement readInfo{connection, "SELECT value FROM info WHERE key = ?", kRead};
  Statement writeInfo{connection, "INSERT OR REPLACE INTO info (key, value) VALUES (?, ?)", kWrite};
  Statement leaveWal{connection, "PRAGMA journal_mode = DELETE", kWrite};
  Statement pageCount{connection, "PRAGMA page_count", kRead};
  Statement pageSize{connection, "PRAGMA page_size", kRead};

  Statement insertObject{connection, "INSERT INTO object (size, chunks, checksum) VALUES (0, 0, NULL)",
                         kWrite};
  Statement closeObject{connection, "UPDATE object SET size = ?, chunks = ?, checksum = ? WHERE id = ?",
                        kWrite};
  Statement readObject{
      connection, "SELECT size, chunks, checksum FROM object WHERE id = ? AND checksum IS NOT NULL", kRead};
  Statement insertChunk{connection, "INSERT INTO object_chunk (object, number, bytes) VALUES (?, ?, ?)",
                        kWrite};
  Statement readChunk{connection, "SELECT bytes FROM object_chunk WHERE object = ? AND number = ?", kRead};
  Statement eraseObject{connection, "DELETE FROM object WHERE id = ?", kWrite};
  Statement eraseChunks{connection, "DELETE FROM object_chunk WHERE object = ?", kWrite};
#undef LENS_NOTE_COLUMNS
};

}  // namespace lens
