#include "embedded/model/notes_ui_document.h"

#include "embedded/model/notes_database.h"
#include "embedded/model/notes_document.h"

namespace lens {

const MemberTable& NotesUiDocument::members() const {
  static const MemberTable table{
      property<&NotesUiDocument::document>(u"DOCUMENT"),
      property<&NotesUiDocument::close>(u"Close"),
  };
  return table;
}

Value NotesUiDocument::document() {
  return NotesDocument::read(NotesDatabase::openStore(context_, place_, true), noteId_);
}

// A window that shows something else by now is left alone.
Value NotesUiDocument::close() {
  ClientState& client = context_->workspace->client();
  if (client.isOnTop(place_) && client.document() == noteId_) client.closeDocument();
  return {};
}

}  // namespace lens
