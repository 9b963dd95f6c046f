// NotesRichTextNavigator: looks for the elements of a rich text item.
#pragma once

#include "embedded/model/member_table.h"
#include "embedded/model/open_item.h"

namespace lens {

class RichTextNavigatorObject : public ModelObject {
 public:
  explicit RichTextNavigatorObject(OpenItem open) : open_(std::move(open)) {}

 protected:
  const MemberTable& members() const override;

 private:
  OpenItem open_;
};

}  // namespace lens
