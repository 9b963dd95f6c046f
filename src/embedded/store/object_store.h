// The objects of a database: attachments, run data of agents, whatever an item of type Object refers to. Each
// is bytes in chunks under a number of its own, with a checksum. Numbers are never reused.
#pragma once

#include <QByteArrayView>
#include <QHash>
#include <QIODevice>
#include <QSet>
#include <memory>

#include "embedded/format/note.h"
#include "embedded/store/outside_objects.h"

namespace lens {

class StoreSession;

struct StoredObject {
  quint32 id = 0;
  qint64 size = 0;
};

class ObjectStore {
 public:
  // Made by Database, which owns both.
  explicit ObjectStore(StoreSession& session);
  ~ObjectStore();
  ObjectStore(const ObjectStore&) = delete;
  ObjectStore& operator=(const ObjectStore&) = delete;

  // Stores the bytes of a source, which is read to its end and never held whole.
  StoredObject add(QIODevice& source);
  // For a source that arrives in pieces: begin, append any number of times, finish. Undoing the
  // transaction in which it began ends it: the next piece raises 5.
  quint32 begin();
  void append(quint32 objectId, QByteArrayView piece);
  StoredObject finish(quint32 objectId);

  qint64 size(quint32 objectId) const;  // -1 when there is none
  // Writes the bytes to the target chunk by chunk; raises when the object is missing or its checksum
  // does not hold.
  void read(quint32 objectId, QIODevice& target) const;
  // Extracts to a file: staged and renamed when it is whole and verified. Raises 70 for the file of a
  // database that is open.
  void extract(quint32 objectId, const QString& filePath) const;
  void remove(quint32 objectId);
  // Size and checksum of an object, empty when there is none: equal ones hold equal bytes.
  QByteArray digest(quint32 objectId) const;

  // Objects that the file does not hold are looked for there from now on.
  void setOutside(std::unique_ptr<OutsideObjects> outside) { outside_ = std::move(outside); }
  bool hasOutside() const { return outside_ != nullptr; }

  // What the note refers to is wanted from now on.
  void noteSaved(const Note& note);
  // Removes what no live note refers to, unless it was written here and its note may still be unsaved. Does
  // nothing when a note is damaged: what it refers to cannot be told.
  void removeUnreferenced();

 private:
  struct Statements;
  struct Pending;
  Pending& pending(quint32 objectId);
  void storeChunk(quint32 objectId, Pending& object, QByteArrayView bytes);
  bool addReferences(QSet<quint32>& objects) const;
  bool holds(quint32 objectId) const;

  StoreSession& session_;
  std::unique_ptr<Statements> statements_;
  QHash<quint32, std::shared_ptr<Pending>> pending_;
  // Objects that were written here and are in no saved note yet: a document may still be open with them.
  QSet<quint32> unsaved_;
  std::unique_ptr<OutsideObjects> outside_;
};

}  // namespace lens
