#include "embedded/model/view_entry_object.h"

#include "embedded/model/document_object.h"

namespace lens {

const MemberTable& ViewEntryObject::members() const {
  static const MemberTable table{Members{
      // A document that has gone since is none any more.
      {u"ISDOCUMENT",
       [](ViewEntryObject& self) {
         return self.note_ && self.database_->store->notes().state(self.note_) == NoteState::Live;
       }},
      {u"DOCUMENT",
       [](ViewEntryObject& self) {
         return self.note_.isNull() ? nothing() : DocumentObject::read(self.database_, self.note_);
       }},
  }};
  return table;
}

}  // namespace lens
