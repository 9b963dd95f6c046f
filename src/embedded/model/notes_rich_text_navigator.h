// NotesRichTextNavigator: looks for the elements of a rich text item.
#pragma once

#include "embedded/model/notes_rich_text_item.h"

namespace lens {

class NotesRichTextNavigator : public ModelObject {
 public:
  explicit NotesRichTextNavigator(std::shared_ptr<NotesRichTextItem> item) : item_(std::move(item)) {}

 protected:
  const MemberTable& members() const override;

 private:
  Value findFirstElement(const Arguments& arguments);

  std::shared_ptr<NotesRichTextItem> item_;
};

}  // namespace lens
