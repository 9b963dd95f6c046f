#include "embedded/model/uidocument_object.h"

#include "embedded/model/database_object.h"
#include "embedded/model/document_object.h"

namespace lens {

const MemberTable& UiDocumentObject::members() const {
  static const MemberTable table{Members{
      {u"DOCUMENT",
       [](UiDocumentObject& self) {
         return DocumentObject::read(DatabaseObject::openStore(self.context_, self.place_, true),
                                     self.noteId_);
       }},
      // A window that shows something else by now is left alone.
      {u"Close",
       [](UiDocumentObject& self) {
         ClientState& client = self.context_->workspace->client();
         if (client.isOnTop(self.place_) && client.document() == self.noteId_) client.closeDocument();
       }},
  }};
  return table;
}

}  // namespace lens
