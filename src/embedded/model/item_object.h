// NotesItem: one item, by its place in the document, so that two items of one name are two objects and an
// item whose value is replaced stays the same one.
#pragma once

#include "embedded/model/member_table.h"
#include "embedded/model/open_item.h"

namespace lens {

class ItemObject : public ModelObject {
 public:
  explicit ItemObject(OpenItem open) : open_(std::move(open)) {}

 protected:
  const MemberTable& members() const override;
  // An item that was removed, or whose document was, has no members any more.
  void allow(const Member&) override { open_.item(); }
  static Members itemMembers();

  OpenItem open_;

 private:
  static Members flagMembers();
};

}  // namespace lens
