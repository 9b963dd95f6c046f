#include "embedded/model/view_entry_object.h"

#include "embedded/model/document_object.h"

namespace lens {

const MemberTable& ViewEntryObject::members() const {
  static const MemberTable table{
      property<&ViewEntryObject::isDocument>(u"ISDOCUMENT"),
      property<&ViewEntryObject::document>(u"DOCUMENT"),
  };
  return table;
}

// A document that has gone since is none any more.
Value ViewEntryObject::isDocument() {
  return note_ != 0 && database_->store->notes().state(note_) == NoteState::Live;
}

Value ViewEntryObject::document() {
  return note_ == 0 ? nothing() : DocumentObject::read(database_, note_);
}

}  // namespace lens
