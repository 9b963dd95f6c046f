// What an open document does to its database.
#include <utility>

#include "embedded/model/open_note.h"
#include "embedded/replication/conflict.h"
#include "notes/literals.h"

namespace lens {
namespace {

quint32 objectOf(const Item& item) {
  FileObject file;
  return readAttachedFile(item, file) ? file.objectId : 0;
}

[[noreturn]] void raiseGone(const Database& store, const NoteHeader& header) {
  throw RuntimeError(modelfault::NoSuchDocument,
                     u"%1: document %2 is no longer there"_s.arg(store.path(), header.id.hexText()));
}

// Whether the stored note is another state than the one that the header tells; raises when it is gone.
bool changedSince(const Database& store, const NoteHeader& header) {
  Note stored;
  if (!store.notes().read(header.id, stored)) raiseGone(store, header);
  return stored.header.sequence != header.sequence ||
         !sameTimeDate(stored.header.sequenceTime, header.sequenceTime);
}

[[noreturn]] void raiseChanged(const Database& store, const NoteHeader& header) {
  throw RuntimeError(modelfault::ChangedMeanwhile,
                     u"%1: document %2 was changed by somebody else since it was read"_s.arg(
                         store.path(), header.id.hexText()));
}

// A new note that answers the one it came from.
void makeConflict(Note& note) {
  NoteHeader fresh;
  fresh.noteClass = note.header.noteClass;
  const Unid staying = std::exchange(note.header, fresh).unid;
  answerAsConflict(note, staying);
}

}  // namespace

OpenNote::~OpenNote() {
  if (!database || !database->store) return;
  for (const quint32 object : std::as_const(unsaved_)) {
    try {
      database->store->objects().remove(object);
    } catch (const RuntimeError&) {
      // Nothing refers to it; whoever compacts the database finds it.
    }
  }
}

StoredObject OpenNote::storeObject(QIODevice& source) {
  const StoredObject object = requireStore(*database).objects().add(source);
  unsaved_.push_back(object.id);
  return object;
}

// A compaction between attaching and saving takes what no document refers to yet.
void OpenNote::requireObjects() const {
  if (unsaved_.isEmpty()) return;
  const Database& store = requireStore(*database);
  for (const Item& item : note.items) {
    const quint32 object = objectOf(item);
    if (unsaved_.contains(object) && store.objects().size(object) < 0)
      throw RuntimeError(
          enginefault::NotSaved,
          u"%1: the document was not saved (an attached file is gone from the database)"_s.arg(store.path()));
  }
}

void OpenNote::forgetSavedObjects() {
  if (unsaved_.isEmpty()) return;
  for (const Item& item : std::as_const(note).items) unsaved_.removeAll(objectOf(item));
}

void OpenNote::save(bool force, bool asResponse) {
  Database& store = requireStore(*database);
  Note written = note;
  {
    Database::Transaction transaction(store);
    requireObjects();
    if (!force && written.header.id && changedSince(store, written.header)) {
      if (!asResponse) raiseChanged(store, written.header);
      makeConflict(written);
    }
    store.notes().save(written);
    transaction.commit();
  }
  count();
  note = std::move(written);
  shown_.reset();
  // A conflict may have two more items, at the end.
  if (numbers_.size() < note.items.size()) names_.clear();
  count();
  forgetSavedObjects();
  tellChanged(*database);
}

void OpenNote::erase(bool force, bool leaveStub) {
  Database& store = requireStore(*database);
  {
    Database::Transaction transaction(store);
    if (!force && changedSince(store, note.header)) raiseChanged(store, note.header);
    if (!store.notes().remove(note.header.id, leaveStub)) raiseGone(store, note.header);
    transaction.commit();
  }
  removed = true;
  tellChanged(*database);
}

}  // namespace lens
