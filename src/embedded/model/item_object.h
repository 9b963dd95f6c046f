// NotesItem: one item, by its place in the document, so that two items of one name are two objects and an
// item whose value is replaced stays the same one.
#pragma once

#include "embedded/model/member_table.h"
#include "embedded/model/open_note.h"

namespace lens {

class ItemObject : public ModelObject {
 public:
  // An object for the item of that number: a rich text item where its type says so.
  static Value of(const std::shared_ptr<OpenNote>& note, quint32 number);
  ItemObject(std::shared_ptr<OpenNote> note, quint32 number) : open_(std::move(note)), number_(number) {}

  // The values of an item as the model gives them: rich text is an array with its plain text.
  static Value valuesOf(const Item& item);
  // All values as text, parted by ";": dates by the region, rich text as plain text, "$FILE" as the
  // file name, a formula as its source. "" for types that have no text.
  static QString textOf(const Item& item, const Regional& regional);

 protected:
  const MemberTable& members() const override;
  // An item that was removed, or whose document was, has no members any more.
  void allow(const Member& member) override;
  static const MemberTable& itemMembers();
  const std::shared_ptr<OpenNote>& open() const { return open_; }
  quint32 number() const { return number_; }
  Item& item() const { return open_->item(number_); }

 private:
  Value name();
  Value text();
  Value type();
  Value values();
  Value isSummary();
  Value isEncrypted();
  Value isSigned();
  Value isProtected();
  Value isReaders();
  void setSummary(const Value& on);
  void setEncrypted(const Value& on);
  void setSigned(const Value& on);
  void setProtected(const Value& on);
  void setReaders(const Value& on);
  Value flag(quint16 bit) const { return bool(item().flags & bit); }
  void setFlag(quint16 bit, bool on);

  std::shared_ptr<OpenNote> open_;
  quint32 number_;
};

}  // namespace lens
