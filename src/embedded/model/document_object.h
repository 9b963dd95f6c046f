// NotesDocument: a note with its items, as it was stored when the object was made, and what a program has
// changed since then.
#pragma once

#include "embedded/model/member_table.h"
#include "embedded/model/open_note.h"

namespace lens {

// Reads a live note; false when there is none of that ID, or when it is damaged.
bool readableNote(const Database& store, quint32 noteId, Note& note);

class DocumentObject : public ModelObject {
 public:
  // Reads the stored state; nothing when there is no readable note.
  static Value read(const std::shared_ptr<OpenDatabase>& database, quint32 noteId);
  static Value read(const std::shared_ptr<OpenDatabase>& database, const Unid& unid);
  // An object for a note that was just read or saved.
  static Value of(const std::shared_ptr<OpenDatabase>& database, Note note);

  explicit DocumentObject(std::shared_ptr<OpenNote> note) : open_(std::move(note)) {}
  quint32 noteNumber() const { return open_->note.header.id; }

 protected:
  const MemberTable& members() const override;
  // A document that was removed has no members any more.
  void allow(const Member& member) override;

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
  Value replaceItemValue(const Arguments& arguments);
  Value createRichTextItem(const Arguments& arguments);
  Value removeItem(const Arguments& arguments);
  Value save(const Arguments& arguments);
  Value copyToDatabase(const Arguments& arguments);
  Value remove(const Arguments& arguments);
  Value removePermanently(const Arguments& arguments);

  std::shared_ptr<OpenNote> open_;
};

}  // namespace lens
