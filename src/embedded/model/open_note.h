// A document in memory, as all objects that come from one document object share it: its items change here,
// and nothing of that is in the database before save().
#pragma once

#include <QHash>
#include <optional>

#include "embedded/model/model_context.h"
#include "embedded/model/shown_files.h"

namespace lens {

// The store of a database; raises when the database was closed or removed.
Database& requireStore(const OpenDatabase& database);
// Runs a read of the store. A damaged note counts as none, so that one bad row does not end a walk.
template <class Read>
bool readable(const Read& read) {
  try {
    return read();
  } catch (const RuntimeError& error) {
    if (error.number() == enginefault::Damaged) return false;
    throw;
  }
}
// Reads a live note; false when there is none of that ID, or when it is damaged.
bool readableNote(const Database& store, NoteId noteId, Note& note);
// Deletes the notes, all of them or, after a failure, none: a list that is half done would be worse than one
// that is whole. What somebody else deleted already is no failure, nor is a null ID, which stands for no
// note.
void removeNotes(const OpenDatabase& database, const QVector<NoteId>& notes);
// Tells the client's window that documents of the database are no longer as it shows them.
void tellChanged(const OpenDatabase& database);

// An item is known by a number that it keeps while others come and go.
struct OpenNote {
  std::shared_ptr<OpenDatabase> database;
  Note note;
  bool removed = false;

  OpenNote() = default;
  // Files that were attached and never saved leave the database.
  ~OpenNote();
  OpenNote(const OpenNote&) = delete;
  OpenNote& operator=(const OpenNote&) = delete;

  // First item of that name, null for none and for an empty name. A note of many items is indexed by
  // name at the first call, so that a walk over all of them by name stays linear.
  const Item* find(const QString& name) const;

  // The attached files that the rich text item shows, in the order in which they stand there.
  QVector<FileObject> shownFiles(quint32 number) const;
  // For whoever changes the value of a rich text item.
  void richTextChanged() { shown_.reset(); }

  // Raises NoSuchDocument once the document was removed.
  void requirePresent() const;

  quint32 numberAt(qsizetype place) const;
  // Where the item stands; -1 once it is removed.
  qsizetype placeOf(quint32 number) const;
  // Raises ItemRemoved.
  Item& item(quint32 number);

  // All raise 5 for an empty name, and give the number of the item.
  quint32 add(Item item);
  // The item of the name takes the value and keeps place, name and what a form sets on it; what told the kind
  // of its names is gone. A new item is a summary item at the end. Raises ItemRefused, and changes nothing,
  // where several items have the name, since one value cannot stand for all of them (the hops of a mail, the
  // pieces of a long rich text), and where the item holds an attachment or refers to other documents.
  quint32 replace(const QString& name, QByteArray value);
  // The first item of the name, if there is one.
  void removeFirst(const QString& name);

  // Puts a file's bytes into the database; they count as attached once the document is saved with an item
  // that refers to them.
  StoredObject storeObject(QIODevice& source);

  // Who changed the document since it was read loses under force. Without it a changed document raises
  // ChangedMeanwhile, or this one becomes an answer to it, marked as a conflict. Raises whenever the
  // document is not on disk afterwards; it stays in memory as it was then.
  void save(bool force, bool asResponse);
  // Deletes the stored document; raises when there is none, or it was changed and force is not given.
  void erase(bool force, bool leaveStub);

 private:
  struct Named {
    quint32 first = 0;
    qsizetype count = 0;
  };
  void count() const;
  void index() const;
  void requireObjects() const;
  void forgetSavedObjects();

  mutable QVector<quint32> numbers_;  // one per item, rising
  mutable quint32 next_ = 0;
  mutable QHash<QString, Named> names_;  // by folded name; empty until it is needed
  mutable std::optional<ShownFiles> shown_;
  QVector<quint32> unsaved_;  // objects
};

}  // namespace lens
