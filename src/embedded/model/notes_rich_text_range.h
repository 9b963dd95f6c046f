// NotesRichTextRange: the whole of a rich text item, to search and replace in.
#pragma once

#include "embedded/model/notes_rich_text_item.h"

namespace lens {

class NotesRichTextRange : public ModelObject {
 public:
  explicit NotesRichTextRange(std::shared_ptr<NotesRichTextItem> item) : item_(std::move(item)) {}

 protected:
  const MemberTable& members() const override;

 private:
  Value findAndReplace(const Arguments& arguments);

  std::shared_ptr<NotesRichTextItem> item_;
};

}  // namespace lens
