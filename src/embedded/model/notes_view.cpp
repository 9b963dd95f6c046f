#include "embedded/model/notes_view.h"

#include <algorithm>

#include "embedded/model/notes_document.h"
#include "embedded/views/view_documents.h"

namespace lens {
namespace {

// Documents that went away since the refresh are passed over.
Value firstReadable(const std::shared_ptr<OpenDatabase>& database, QVector<quint32>::const_iterator from,
                    QVector<quint32>::const_iterator end) {
  for (; from != end; ++from)
    if (const Value found = NotesDocument::read(database, *from); found.object()) return found;
  return nothing();
}

}  // namespace

Value NotesView::read(const std::shared_ptr<OpenDatabase>& database, quint32 noteId) {
  Note note;
  if (!readableNote(*database->store, noteId, note)) return nothing();
  return newObject<NotesView>(database, std::move(note));
}

const MemberTable& NotesView::members() const {
  static const MemberTable table{
      property<&NotesView::name>(u"Name"),
      property<&NotesView::selectionFormula>(u"SELECTIONFORMULA"),
      property<&NotesView::entryCount>(u"ENTRYCOUNT"),
      property<&NotesView::firstDocument>(u"GETFIRSTDOCUMENT"),
      method<&NotesView::nextDocument>(u"GETNEXTDOCUMENT", 1, 1),
  };
  return table;
}

Value NotesView::name() {
  return note_.text(u"$TITLE").section(u'|', 0, 0);
}

Value NotesView::selectionFormula() {
  QString source;
  if (selectionSource(note_, source)) return source;
  if (!note_.has(u"$Formula")) return QString();
  throw RuntimeError(
      modelfault::NoFormulaSource,
      QStringLiteral("%1: the selection formula of the view \"%2\" is there in compiled form only")
          .arg(database_->store->path(), note_.text(u"$TITLE")));
}

void NotesView::refresh() {
  documents_ = viewDocuments(*database_->store, note_);
  fresh_ = true;
}

Value NotesView::entryCount() {
  refresh();
  return Value(qint64(documents_.size()));
}

Value NotesView::firstDocument() {
  refresh();
  return firstReadable(database_, documents_.cbegin(), documents_.cend());
}

Value NotesView::nextDocument(const Arguments& arguments) {
  const auto current = argumentAs<NotesDocument>(arguments[0]);
  if (!current)
    throw RuntimeError(modelfault::WrongKind,
                       QStringLiteral("GETNEXTDOCUMENT expects a document of the view"));
  if (!fresh_) refresh();
  const auto behind = std::upper_bound(documents_.cbegin(), documents_.cend(), current->noteNumber());
  return firstReadable(database_, behind, documents_.cend());
}

}  // namespace lens
