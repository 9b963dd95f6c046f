#include "embedded/model/uidocument_object.h"

#include "embedded/model/database_object.h"
#include "embedded/model/document_object.h"

namespace lens {

const MemberTable& UiDocumentObject::members() const {
  static const MemberTable table{
      property<&UiDocumentObject::document>(u"DOCUMENT"),
      property<&UiDocumentObject::close>(u"Close"),
  };
  return table;
}

Value UiDocumentObject::document() {
  return DocumentObject::read(DatabaseObject::openStore(context_, place_, true), noteId_);
}

// A window that shows something else by now is left alone.
Value UiDocumentObject::close() {
  ClientState& client = context_->workspace->client();
  if (client.isOnTop(place_) && client.document() == noteId_) client.closeDocument();
  return {};
}

}  // namespace lens
