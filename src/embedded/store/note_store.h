// The notes of a database: reading, listing, walking over many, writing.
#pragma once

#include <QString>
#include <QVector>
#include <functional>
#include <memory>

#include "embedded/format/note.h"

namespace lens {

struct NoteStatements;  // note_statements.h
class ObjectStore;
class StoreSession;
class VersionTable;
struct PackedNote;  // packed_note.h

enum class NoteState { Live, Stub, Gone, Damaged, NeverIssued };

// A row of a listing, without the items.
struct NoteSummary {
  NoteId id;
  Unid unid;
  quint16 noteClass = 0;
  Unid parent;
};

class NoteStore {
 public:
  // Made by Database, which owns all of them.
  NoteStore(StoreSession& session, VersionTable& versions, ObjectStore& objects);
  ~NoteStore();
  NoteStore(const NoteStore&) = delete;
  NoteStore& operator=(const NoteStore&) = delete;

  // The state of a note ID. Gone is every ID up to the highest issued one without a row, those between
  // the steps included. Items are not read except to tell Damaged from Live.
  NoteState state(NoteId noteId) const;
  NoteId highestIssuedId() const;
  // Reads a live note. False when there is none of that ID; raises when its row is damaged.
  bool read(NoteId noteId, Note& note) const;
  bool read(const Unid& unid, Note& note) const;
  // One item of a note without the rest; false when the note or the item is missing.
  bool readItem(NoteId noteId, QStringView name, Item& item) const;
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
  NoteId specialNote(quint16 noteClass) const;
  int noteCount(quint16 classMask) const;

  // Writes a note: a new one gets an ID, and a UNID and times where they lack; an existing one gets
  // the next sequence number and new times. The header is brought up to date, on failure it stays as
  // it was. Raises UnknownNote for an ID without a live note, NotSaved for everything else. A stub of
  // the same UNID makes way for a new note.
  void save(Note& note);
  // Writes a note as it is given, times and sequence included (import, replication). A live note of
  // the same UNID is replaced and keeps its ID; returns true then. Any other note gets the next ID,
  // whatever its header says. Raises, as save() does, where a note of that UNID is being imported.
  bool saveAsGiven(Note& note);
  // Leaves a stub, or nothing at all. False when there was no live note. A damaged note can be removed.
  // Objects of the note stay: other notes may refer to them.
  bool remove(NoteId noteId, bool leaveStub = true);

 private:
  friend class VersionStore;  // gives IDs to stubs of other replicas
  enum class Scan { Whole, Enough, Damaged };
  NoteId nextId() const;
  void requireNotArriving(const Unid& unid);
  void eraseRow(NoteId noteId, const Unid& unid, qint64 change);
  void takeOutOfFolders(const Unid& unid);
  // What is stored of a live note before it changes; false when there is none.
  bool readIdentity(NoteId noteId, NoteHeader& header);
  QVector<quint16> classesIn(quint16 classMask) const;
  Scan scanRows(quint16 mask, qint64& last, const PackedVisitor& visit) const;
  void scanOneByOne(quint16 mask, qint64 after, const PackedVisitor& visit) const;
  void insertNote(NoteHeader& header, const QByteArray& items);
  void updateNote(const NoteHeader& header, const QByteArray& items, const NoteHeader& before);

  StoreSession& session_;
  VersionTable& versions_;
  ObjectStore& objects_;
  std::unique_ptr<NoteStatements> statements_;
};

}  // namespace lens
