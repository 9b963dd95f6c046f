// NotesItem: one item, by its place in the document, so that two items of one name are two objects.
#pragma once

#include "embedded/model/member_table.h"
#include "embedded/model/notes_document.h"

namespace lens {

class NotesItem : public ModelObject {
 public:
  // An object for the item at that place: a rich text item where its type says so.
  static Value at(const std::shared_ptr<OpenNote>& note, qsizetype place);
  NotesItem(std::shared_ptr<OpenNote> note, qsizetype place) : open_(std::move(note)), place_(place) {}

  // The values of an item as the model gives them: rich text is an array with its plain text.
  static Value valuesOf(const Item& item);
  // All values as text, parted by ";": dates by the region, rich text as plain text, "$FILE" as the
  // file name, a formula as its source. "" for types that have no text.
  static QString textOf(const Item& item, const Regional& regional);

 protected:
  const MemberTable& members() const override;
  static const MemberTable& itemMembers();
  const Item& item() const { return open_->note.items[place_]; }

 private:
  Value name();
  Value text();
  Value type();
  Value values();
  Value isSummary();
  Value isEncrypted();
  Value isSigned();
  Value isProtected();
  Value flag(quint16 bit) const { return bool(item().flags & bit); }

  std::shared_ptr<OpenNote> open_;
  qsizetype place_;
};

}  // namespace lens
