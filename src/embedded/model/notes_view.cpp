#include "embedded/model/notes_view.h"

#include "embedded/model/notes_document.h"
#include "embedded/model/notes_view_entry.h"
#include "embedded/model/notes_view_entry_collection.h"
#include "embedded/views/view_index.h"
#include "embedded/views/view_lookup.h"

namespace lens {

NotesView::NotesView(std::shared_ptr<OpenDatabase> database, Note note)
    : database_(std::move(database)), note_(std::move(note)) {}

NotesView::~NotesView() = default;

Value NotesView::read(const std::shared_ptr<OpenDatabase>& database, quint32 noteId) {
  Note note;
  if (!readableNote(*database->store, noteId, note)) return nothing();
  return newObject<NotesView>(database, std::move(note));
}

const MemberTable& NotesView::members() const {
  static const MemberTable table{
      property<&NotesView::name>(u"Name"),
      property<&NotesView::selectionFormula>(u"SELECTIONFORMULA"),
      property<&NotesView::allEntries>(u"ALLENTRIES"),
      property<&NotesView::entryCount>(u"ENTRYCOUNT"),
      property<&NotesView::firstDocument>(u"GETFIRSTDOCUMENT"),
      method<&NotesView::nextDocument>(u"GETNEXTDOCUMENT", 1, 1),
      method<&NotesView::entryByKey>(u"GETENTRYBYKEY", 1, 2),
  };
  return table;
}

Value NotesView::name() {
  return note_.text(u"$TITLE").section(u'|', 0, 0);
}

// Who looks at a view wants to see the rest of it too, so a formula without a source says so in its place.
Value NotesView::selectionFormula() {
  QString source;
  if (selectionSource(note_, source)) return source;
  if (!note_.has(u"$Formula")) return QString();
  return QStringLiteral("REM {The selection formula of this view is there in compiled form only.}");
}

ViewIndex& NotesView::refreshed() {
  if (!index_) index_ = std::make_unique<ViewIndex>(*database_->store, note_.header.id);
  index_->refresh();
  return *index_;
}

Value NotesView::allEntries() {
  return newObject<NotesViewEntryCollection>(database_, refreshed().notes());
}

Value NotesView::entryCount() {
  return Value(refreshed().count());
}

void NotesView::readDocuments() {
  documents_ = refreshed().documents();
  places_.clear();
  places_.reserve(documents_.size());
  for (qsizetype i = 0; i < documents_.size(); ++i) places_.insert(documents_[i], i);
}

// Documents that went away since then are passed over.
Value NotesView::readableFrom(qsizetype place) const {
  for (; place < documents_.size(); ++place)
    if (const Value found = NotesDocument::read(database_, documents_[place]); found.object()) return found;
  return nothing();
}

Value NotesView::firstDocument() {
  readDocuments();
  return readableFrom(0);
}

// A walk goes on over the documents as they were at its start, so that it ends although it changes them.
Value NotesView::nextDocument(const Arguments& arguments) {
  const auto current = argumentAs<NotesDocument>(arguments[0]);
  if (current && !places_.contains(current->noteNumber())) readDocuments();
  if (!current || !places_.contains(current->noteNumber()))
    throw RuntimeError(modelfault::WrongKind,
                       QStringLiteral("%1: GETNEXTDOCUMENT expects a document of the view \"%2\"")
                           .arg(database_->place.path, note_.text(u"$TITLE")));
  return readableFrom(places_.value(current->noteNumber()) + 1);
}

// Key, and whether a value has to be the key as a whole.
Value NotesView::entryByKey(const Arguments& arguments) {
  const Regional& regional = database_->context->workspace->regional();
  const ViewKey key{textOf(arguments[0], regional), arguments.size() > 1 && arguments[1].boolean()};
  const quint32 found = findByKey(refreshed(), key, regional);
  return found == 0 ? nothing() : newObject<NotesViewEntry>(database_, found, -1);
}

}  // namespace lens
