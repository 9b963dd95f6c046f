// NotesRichTextRange: the whole of a rich text item, to search and replace in.
#pragma once

#include "embedded/model/member_table.h"
#include "embedded/model/open_item.h"

namespace lens {

class RichTextRangeObject : public ModelObject {
 public:
  explicit RichTextRangeObject(OpenItem open) : open_(std::move(open)) {}

 protected:
  const MemberTable& members() const override;

 private:
  OpenItem open_;
};

}  // namespace lens
