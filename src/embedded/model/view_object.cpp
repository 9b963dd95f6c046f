#include "embedded/model/view_object.h"

#include "embedded/model/document_object.h"
#include "embedded/model/view_entry_collection_object.h"
#include "embedded/model/view_entry_object.h"
#include "embedded/views/view_index.h"
#include "embedded/views/view_lookup.h"
#include "notes/literals.h"

namespace lens {

ViewObject::ViewObject(std::shared_ptr<OpenDatabase> database, Note note)
    : database_(std::move(database)), note_(std::move(note)) {}

ViewObject::~ViewObject() = default;

Value ViewObject::read(const std::shared_ptr<OpenDatabase>& database, quint32 noteId) {
  Note note;
  if (!readableNote(*database->store, noteId, note)) return nothing();
  return newObject<ViewObject>(database, std::move(note));
}

const MemberTable& ViewObject::members() const {
  static const MemberTable table{
      property<&ViewObject::name>(u"Name"),
      property<&ViewObject::selectionFormula>(u"SELECTIONFORMULA"),
      property<&ViewObject::allEntries>(u"ALLENTRIES"),
      property<&ViewObject::entryCount>(u"ENTRYCOUNT"),
      property<&ViewObject::firstDocument>(u"GETFIRSTDOCUMENT"),
      method<&ViewObject::nextDocument>(u"GETNEXTDOCUMENT", 1, 1),
      method<&ViewObject::entryByKey>(u"GETENTRYBYKEY", 1, 2),
  };
  return table;
}

Value ViewObject::name() {
  return note_.text(u"$TITLE").section(u'|', 0, 0);
}

// Who looks at a view wants to see the rest of it too, so a formula without a source says so in its place.
Value ViewObject::selectionFormula() {
  QString source;
  if (selectionSource(note_, source)) return source;
  if (!note_.has(u"$Formula")) return QString();
  return u"REM {The selection formula of this view is there in compiled form only.}"_s;
}

ViewIndex& ViewObject::refreshed() {
  if (!index_) index_ = std::make_unique<ViewIndex>(*database_->store, note_.header.id);
  index_->refresh();
  return *index_;
}

Value ViewObject::allEntries() {
  return newObject<ViewEntryCollectionObject>(database_, refreshed().notes());
}

Value ViewObject::entryCount() {
  return Value(refreshed().count());
}

void ViewObject::readDocuments() {
  documents_ = refreshed().documents();
  places_.clear();
  places_.reserve(documents_.size());
  for (qsizetype i = 0; i < documents_.size(); ++i) places_.insert(documents_[i], i);
}

// Documents that went away since then are passed over.
Value ViewObject::readableFrom(qsizetype place) const {
  for (; place < documents_.size(); ++place)
    if (const Value found = DocumentObject::read(database_, documents_[place]); found.object()) return found;
  return nothing();
}

Value ViewObject::firstDocument() {
  readDocuments();
  return readableFrom(0);
}

// A walk goes on over the documents as they were at its start, so that it ends although it changes them.
Value ViewObject::nextDocument(const Arguments& arguments) {
  const auto current = argumentAs<DocumentObject>(arguments[0]);
  if (current && !places_.contains(current->noteNumber())) readDocuments();
  if (!current || !places_.contains(current->noteNumber()))
    throw RuntimeError(modelfault::WrongKind,
                       u"%1: GETNEXTDOCUMENT expects a document of the view \"%2\""_s.arg(
                           database_->place.path, note_.text(u"$TITLE")));
  return readableFrom(places_.value(current->noteNumber()) + 1);
}

// Key, and whether a value has to be the key as a whole.
Value ViewObject::entryByKey(const Arguments& arguments) {
  const Regional& regional = database_->context->workspace->regional();
  const ViewKey key{textOf(arguments[0], regional), arguments.size() > 1 && arguments[1].boolean()};
  const quint32 found = findByKey(refreshed(), key, regional);
  return found == 0 ? nothing() : newObject<ViewEntryObject>(database_, found, -1);
}

}  // namespace lens
