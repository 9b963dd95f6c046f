// A database: one SQLite file, one row per note, attachments in chunks beside them.
//
// A save that returned is on disk (WAL, synchronous=FULL). Note IDs are steps of 4 and never reused;
// deletion leaves a stub unless told otherwise. A file of a newer schema, a file that is no database
// and a damaged row give a RuntimeError with the file's name; nothing is changed then. A file without
// write permission can be read; every change of it raises NotSaved.
//
// A Database belongs to the thread that opened it. Another thread opens the file for itself.
#pragma once

#include <QIODevice>
#include <QString>
#include <QVector>
#include <functional>
#include <memory>

#include "embedded/format/engine_fault.h"
#include "embedded/store/note_version.h"

struct sqlite3;

namespace lens {

class Connection;   // sqlite_statement.h
struct PackedNote;  // packed_note.h

// Properties of a database that are no notes.
struct DatabaseInfo {
  QString title;
  QString replicaId;     // 16 hexadecimal digits
  QString templateName;  // its own name as a template
  QString inheritsFrom;  // the template it takes its design from
  QString categories;
  bool publicAddressBook = false;
};

enum class NoteState { Live, Stub, Gone, Damaged, NeverIssued };

// A row of a listing, without the items.
struct NoteSummary {
  quint32 id = 0;
  Unid unid;
  quint16 noteClass = 0;
  Unid parent;
};

// A note that is not as it was: saved (Live), deleted (Stub) or erased without a stub (Gone).
struct NoteChange {
  qint64 change = 0;
  quint32 id = 0;
  NoteState state = NoteState::Live;
};

class Database {
 public:
  // Creates a new, empty database; raises 58 when the file exists.
  static std::shared_ptr<Database> create(const QString& path, const DatabaseInfo& info);
  // Raises 53 without such a file, 70 when it cannot be read. A database that this thread has open
  // already is shared: its transactions are then those of all who hold it.
  static std::shared_ptr<Database> open(const QString& path);
  // Whether the file's head is that of one of our databases; reads the file, opens nothing.
  static bool looksLikeDatabase(const QString& path);
  // The properties of a database that may not be open: read without changing or migrating the file.
  // Raises what open() raises.
  static DatabaseInfo infoOf(const QString& path);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  const QString& path() const { return path_; }
  // False for a file that can only be read; every change of it raises.
  bool isWritable() const;
  // Bytes on disk, once everything saved has found its place in the file.
  qint64 size() const;

  DatabaseInfo info() const;
  void setInfo(const DatabaseInfo& info);

  // The state of a note ID. Gone is every ID up to the highest issued one without a row, those between
  // the steps included. Items are not read except to tell Damaged from Live.
  NoteState state(quint32 noteId) const;
  quint32 highestIssuedId() const;
  // Reads a live note. False when there is none of that ID; raises when its row is damaged.
  bool read(quint32 noteId, Note& note) const;
  bool read(const Unid& unid, Note& note) const;
  // One item of a note without the rest; false when the note or the item is missing.
  bool readItem(quint32 noteId, QStringView name, Item& item) const;
  // Live notes whose class, without its marks, is among the bits of the mask; in order of note ID.
  QVector<NoteSummary> list(quint16 classMask) const;
  // Each live note of the mask in order of note ID, items included, until the visitor returns false.
  // A damaged note is passed over.
  void scan(quint16 classMask, const std::function<bool(const Note&)>& visit) const;
  // The same with the items still packed, for what looks at a few items of many notes. What the visitor
  // gets is valid during its call. It may change the database: notes are read some at a time, and what is
  // saved or removed meanwhile may still be shown as it was.
  using PackedVisitor = std::function<bool(const PackedNote&)>;
  void scanPacked(quint16 classMask, const PackedVisitor& visit) const;
  // The single note of a special class (icon, ACL, About, ...); 0 when there is none. With a mark in
  // the class only a note with that mark counts (the default form, the default view).
  quint32 specialNote(quint16 noteClass) const;
  int noteCount(quint16 classMask) const;

  // Writes a note: a new one gets an ID, and a UNID and times where they lack; an existing one gets
  // the next sequence number and new times. The header is brought up to date, on failure it stays as
  // it was. Raises UnknownNote for an ID without a live note, NotSaved for everything else. A stub of
  // the same UNID makes way for a new note.
  void save(Note& note);
  // Writes a note as it is given, times and sequence included (import, replication). A live note of
  // the same UNID is replaced and keeps its ID; returns true then. Any other note gets the next ID,
  // whatever its header says.
  bool saveAsGiven(Note& note);
  // Leaves a stub, or nothing at all. False when there was no live note. A damaged note can be removed.
  // Objects of the note stay: other notes may refer to them.
  bool remove(quint32 noteId, bool leaveStub = true);

  // Everything between is one transaction; without commit() it is undone. Transactions nest: an inner
  // one can be undone alone, and what it commits still hangs on the outer one.
  class Transaction {
   public:
    explicit Transaction(Database& database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

   private:
    Database& database_;
    bool open_ = true;
  };

  // Stores bytes as an object in chunks; the source is read to its end, never held whole. Returns
  // the object's ID and size.
  struct StoredObject {
    quint32 id = 0;
    qint64 size = 0;
  };
  StoredObject addObject(QIODevice& source);
  // For a source that arrives in pieces: begin, append any number of times, finish. Undoing the
  // transaction in which it began ends it: the next piece raises 5. IDs are never reused.
  quint32 beginObject();
  void appendObject(quint32 objectId, QByteArrayView piece);
  StoredObject finishObject(quint32 objectId);
  qint64 objectSize(quint32 objectId) const;  // -1 when there is none
  // Writes the bytes to the target chunk by chunk; raises when the object is missing or its checksum
  // does not hold.
  void readObject(quint32 objectId, QIODevice& target) const;
  // Extracts to a file: staged and renamed when it is whole and verified.
  void extractObject(quint32 objectId, const QString& filePath) const;
  void removeObject(quint32 objectId);

  // Gives room back: objects that no live note refers to go, and the file shrinks to what is in it. Returns
  // the bytes saved. Takes the file for itself meanwhile: raises InUse while another program or thread has
  // it open, or while this one is in the middle of a change or a listing, and nothing is changed then.
  // Stays whole if it is cut short at any moment. Temporary tables of the connection are lost.
  qint64 compact();

  // Number that grows with every change of a note.
  qint64 changeSequence() const;
  // What became of the notes that were changed since that number, each one once, in order of the changes:
  // what an index has to look at again. A note that was erased without a stub is told as Gone.
  QVector<NoteChange> changesSince(qint64 change) const;

  // What replication works on. Live notes and stubs behind that UNID, in order of the bytes of their
  // UNIDs, at most so many; a null UNID begins at the first.
  QVector<NoteVersion> versionsAfter(const Unid& unid, int most) const;
  bool findVersion(const Unid& unid, NoteVersion& version) const;
  VersionVector versionVector(const NoteVersion& version) const;
  // Writes a note or a stub as another replica has it, in place of whatever has its UNID here. A note that
  // was here keeps its ID.
  void saveVersion(Note& note, const VersionVector& versionVector);
  void saveStub(const NoteHeader& header, const VersionVector& versionVector);
  // A note that stays as it is has learnt of other versions.
  void setVersionVector(quint32 noteId, const VersionVector& versionVector);
  // Size and checksum of an object, empty when there is none: equal ones hold equal bytes.
  QByteArray objectDigest(quint32 objectId) const;

  // Deletes the file with its journals. Raises when another process or thread has it open, in the middle
  // of a transaction and without write permission; the file is then as it was. Afterwards everything
  // that is asked of this object raises.
  void removeFile();
  bool isRemoved() const;

  sqlite3* handle() const;
  // For what keeps tables of its own in the file (indexes), with statements of its own.
  const Connection& connection() const;

 private:
  struct Impl;
  explicit Database(const QString& path);
  static std::unique_ptr<Impl> openFile(const QString& path);
  bool isOnlyUser();
  bool removeOpenFile();
  QVector<quint16> classesIn(quint16 classMask) const;
  enum class Scan { Whole, Enough, Damaged };
  Scan scanRows(quint16 mask, qint64& last, const PackedVisitor& visit) const;
  void scanOneByOne(quint16 mask, qint64 after, const PackedVisitor& visit) const;
  void insertNote(NoteHeader& header, const QByteArray& items);
  void updateNote(const NoteHeader& header, const QByteArray& items, const NoteHeader& before);
  QString path_;
  std::unique_ptr<Impl> impl_;
};

}  // namespace lens
