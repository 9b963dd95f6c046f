// NotesRichTextRange: the whole of a rich text item, to search and replace in.
#pragma once

#include "embedded/model/rich_text_item_object.h"

namespace lens {

class RichTextRangeObject : public ModelObject {
 public:
  explicit RichTextRangeObject(std::shared_ptr<RichTextItemObject> item) : item_(std::move(item)) {}

 protected:
  const MemberTable& members() const override;

 private:
  Value findAndReplace(const Arguments& arguments);

  std::shared_ptr<RichTextItemObject> item_;
};

}  // namespace lens
