// NotesRichTextItem: an item of rich text; it has all members of an item too.
#pragma once

#include "embedded/model/item_object.h"

namespace lens {

// An object for an item: a rich text item where its type says so.
Value newItemObject(OpenItem open);

class RichTextItemObject : public ItemObject {
 public:
  using ItemObject::ItemObject;

 protected:
  const MemberTable& members() const override;

 private:
  static Members textMembers();
};

}  // namespace lens
