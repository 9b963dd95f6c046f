// NotesRichTextItem: an item of rich text; it has all members of an item too.
#pragma once

#include "embedded/model/item_object.h"

namespace lens {

class RichText;

class RichTextItemObject : public ItemObject {
 public:
  using ItemObject::ItemObject;

  // What the item holds now; raises once it holds a plain value or is removed. Changes stay in memory until
  // the document is saved.
  RichText richText() const;
  void setRichText(const RichText& text);
  const QString& databasePath() const { return open()->database->place.path; }

 protected:
  const MemberTable& members() const override;

 private:
  Value formattedText(const Arguments& arguments);
  Value appendText(const Arguments& arguments);
  Value embedObject(const Arguments& arguments);
  Value embeddedObjects();
  Value compact();
  Value createNavigator();
  Value createRange();
  std::shared_ptr<RichTextItemObject> self();
};

}  // namespace lens
