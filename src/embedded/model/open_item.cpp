#include "embedded/model/open_item.h"

#include "embedded/richtext/rich_text.h"
#include "notes/literals.h"

namespace lens {

Item& OpenItem::item() const {
  note_->requirePresent();
  return note_->item(number_);
}

const Item& OpenItem::richItem() const {
  const Item& present = item();
  if (present.type() != itemtype::RichText)
    throw RuntimeError(modelfault::WrongKind, u"%1: the item \"%2\" is no rich text any more"_s.arg(
                                                  databasePath(), present.name.left(64)));
  return present;
}

RichText OpenItem::richText() const {
  return RichText::fromBytes(richItem().data());
}

QVector<FileObject> OpenItem::shownFiles() const {
  richItem();
  return note_->shownFiles(number_);
}

void OpenItem::setRichText(const RichText& text) const {
  item().value = rawValue(itemtype::RichText, text.toBytes());
  note_->richTextChanged();
}

}  // namespace lens
