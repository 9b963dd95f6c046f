#include "embedded/model/view_entry_object.h"

#include "embedded/model/document_object.h"
#include "embedded/model/open_note.h"

namespace lens {
namespace {

// Unlike a walk over documents, which passes over damaged ones: who copies the documents of all rows and
// removes them then must not take a damaged one for a category.
Value documentOfEntry(const std::shared_ptr<OpenDatabase>& database, NoteId noteId) {
  Note note;
  if (noteId.isNull() || !requireStore(*database).notes().read(noteId, note)) return nothing();
  return DocumentObject::of(database, std::move(note));
}

}  // namespace

const MemberTable& ViewEntryObject::members() const {
  static const MemberTable table{Members{
      // A document that has gone since is none any more. A damaged one is still there.
      {u"ISDOCUMENT",
       [](ViewEntryObject& self) {
         if (self.note_.isNull()) return false;
         const NoteState state = requireStore(*self.database_).notes().state(self.note_);
         return state == NoteState::Live || state == NoteState::Damaged;
       }},
      // Raises for a damaged one.
      {u"DOCUMENT", [](ViewEntryObject& self) { return documentOfEntry(self.database_, self.note_); }},
  }};
  return table;
}

}  // namespace lens
