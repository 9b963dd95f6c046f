#include "embedded/model/notes_view_entry.h"

#include "embedded/model/notes_document.h"

namespace lens {

const MemberTable& NotesViewEntry::members() const {
  static const MemberTable table{
      property<&NotesViewEntry::isDocument>(u"ISDOCUMENT"),
      property<&NotesViewEntry::document>(u"DOCUMENT"),
  };
  return table;
}

// A document that has gone since is none any more.
Value NotesViewEntry::isDocument() {
  return note_ != 0 && database_->store->state(note_) == NoteState::Live;
}

Value NotesViewEntry::document() {
  return note_ == 0 ? nothing() : NotesDocument::read(database_, note_);
}

}  // namespace lens
