// NotesRichTextNavigator: looks for the elements of a rich text item.
#pragma once

#include "embedded/model/rich_text_item_object.h"

namespace lens {

class RichTextNavigatorObject : public ModelObject {
 public:
  explicit RichTextNavigatorObject(std::shared_ptr<RichTextItemObject> item) : item_(std::move(item)) {}

 protected:
  const MemberTable& members() const override;

 private:
  Value findFirstElement(const Arguments& arguments);

  std::shared_ptr<RichTextItemObject> item_;
};

}  // namespace lens
