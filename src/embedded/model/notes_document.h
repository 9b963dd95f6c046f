// NotesDocument: a note with its items, as it was stored when the object was made.
#pragma once

#include <QHash>

#include "embedded/model/member_table.h"
#include "embedded/model/model_context.h"

namespace lens {

// What a document and the objects of its items share. An item object means a place in it.
struct OpenNote {
  std::shared_ptr<OpenDatabase> database;
  Note note;

  // First item of that name, null for none and for an empty name. A note of many items is indexed by
  // name at the first call, so that a walk over all of them by name stays linear; whoever changes the
  // items has to drop that index.
  const Item* find(const QString& name) const;

 private:
  mutable QHash<QString, qsizetype> places_;  // by folded name
};

// Reads a live note; false when there is none of that ID, or when it is damaged.
bool readableNote(const Database& store, quint32 noteId, Note& note);

class NotesDocument : public ModelObject {
 public:
  // Reads the stored state; nothing when there is no readable note.
  static Value read(const std::shared_ptr<OpenDatabase>& database, quint32 noteId);
  static Value read(const std::shared_ptr<OpenDatabase>& database, const Unid& unid);

  explicit NotesDocument(std::shared_ptr<OpenNote> note) : open_(std::move(note)) {}
  quint32 noteNumber() const { return open_->note.header.id; }

 protected:
  const MemberTable& members() const override;

 private:
  Value noteId();
  Value universalId();
  Value items();
  Value parentDatabase();
  Value hasEmbedded();
  Value hasItem(const Arguments& arguments);
  Value firstItem(const Arguments& arguments);
  Value itemValue(const Arguments& arguments);
  Value attachment(const Arguments& arguments);
  Value mimeEntity(const Arguments& arguments);

  std::shared_ptr<OpenNote> open_;
};

}  // namespace lens
