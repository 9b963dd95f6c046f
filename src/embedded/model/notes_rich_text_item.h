// NotesRichTextItem: an item of rich text; it has all members of an item too.
#pragma once

#include "embedded/model/notes_item.h"

namespace lens {

class NotesRichTextItem : public NotesItem {
 public:
  using NotesItem::NotesItem;

 protected:
  const MemberTable& members() const override;

 private:
  Value formattedText(const Arguments& arguments);
};

}  // namespace lens
