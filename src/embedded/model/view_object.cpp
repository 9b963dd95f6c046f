#include "embedded/model/view_object.h"

#include "embedded/model/document_object.h"
#include "embedded/model/open_note.h"
#include "embedded/model/view_entry_collection_object.h"
#include "embedded/model/view_entry_object.h"
#include "embedded/views/view_index.h"
#include "embedded/views/view_lookup.h"
#include "notes/literals.h"

namespace lens {

ViewObject::ViewObject(std::shared_ptr<OpenDatabase> database, Note note)
    : database_(std::move(database)), note_(std::move(note)) {}

ViewObject::~ViewObject() = default;

Value ViewObject::read(const std::shared_ptr<OpenDatabase>& database, NoteId noteId) {
  Note note;
  if (!readableNote(*database->store, noteId, note)) return nothing();
  return newObject<ViewObject>(database, std::move(note));
}

ViewIndex& ViewObject::refreshed() {
  if (!index_)
    index_ = std::make_unique<ViewIndex>(
        *database_->store, note_.header.id,
        [workspace = database_->context->workspace] { return workspace->isInterrupted(); });
  index_->refresh();
  return *index_;
}

void ViewObject::readDocuments() {
  documents_ = refreshed().documents();
  places_.clear();
  places_.reserve(documents_.size());
  for (qsizetype i = 0; i < documents_.size(); ++i) places_.insert(documents_[i], i);
}

// Documents that went away since then are passed over.
Value ViewObject::readableFrom(qsizetype place) const {
  return DocumentObject::firstReadable(database_, documents_, place);
}

const MemberTable& ViewObject::members() const {
  static const MemberTable table{ownMembers(), documentMembers()};
  return table;
}

Members ViewObject::ownMembers() {
  return {
      {u"Name", [](ViewObject& self) { return self.note_.text(u"$TITLE").section(u'|', 0, 0); }},
      // Who looks at a view wants to see the rest of it too, so a formula without a source says so in its
      // place.
      {u"SELECTIONFORMULA",
       [](ViewObject& self) {
         using State = formula::CompiledReading::State;
         const formula::CompiledReading reading = readSelection(self.note_);
         if (reading.state == State::Source) return reading.source;
         if (!self.note_.has(u"$Formula")) return QString();
         if (reading.state == State::Hidden) return u"REM {%1}"_s.arg(reading.problem);
         return u"REM {The selection formula of this view is there in compiled form only.}"_s;
       }},
      {u"ALLENTRIES",
       [](ViewObject& self) {
         return newObject<ViewEntryCollectionObject>(self.database_, self.refreshed().notes());
       }},
      {u"ENTRYCOUNT", [](ViewObject& self) { return self.refreshed().count(); }},
  };
}

Members ViewObject::documentMembers() {
  return {
      {u"GETFIRSTDOCUMENT",
       [](ViewObject& self) {
         self.readDocuments();
         return self.readableFrom(0);
       }},
      // A walk goes on over the documents as they were at its start, so that it ends although it changes
      // them.
      {u"GETNEXTDOCUMENT",
       [](ViewObject& self, const Value& document) {
         const auto current = argumentAs<DocumentObject>(document);
         if (current && !self.places_.contains(current->noteNumber())) self.readDocuments();
         if (!current || !self.places_.contains(current->noteNumber()))
           throw RuntimeError(modelfault::WrongKind,
                              u"%1: GETNEXTDOCUMENT expects a document of the view \"%2\""_s.arg(
                                  self.database_->place.path, self.note_.text(u"$TITLE")));
         return self.readableFrom(self.places_.value(current->noteNumber()) + 1);
       }},
      // Key, and whether a value has to be the key as a whole.
      {u"GETENTRYBYKEY",
       [](ViewObject& self, const Value& keyText, const Value* exact) {
         const Regional& regional = self.database_->context->workspace->regional();
         const ViewKey key{textOf(keyText, regional), exact && exact->boolean()};
         const NoteId found = findByKey(self.refreshed(), key, regional);
         return found.isNull() ? nothing() : newObject<ViewEntryObject>(self.database_, found, -1);
       }},
  };
}

}  // namespace lens
