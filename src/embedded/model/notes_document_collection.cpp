#include "embedded/model/notes_document_collection.h"

#include "embedded/model/notes_document.h"
#include "notes/numbers.h"

namespace lens {

NotesDocumentCollection::NotesDocumentCollection(std::shared_ptr<OpenDatabase> database,
                                                 QVector<quint32> noteIds)
    : database_(std::move(database)) {
  // Each document once: its place leads to the next one.
  for (const quint32 id : noteIds) {
    if (places_.contains(id)) continue;
    places_.insert(id, noteIds_.size());
    noteIds_.push_back(id);
  }
}

const MemberTable& NotesDocumentCollection::members() const {
  static const MemberTable table{
      property<&NotesDocumentCollection::count>(u"count"),
      property<&NotesDocumentCollection::firstDocument>(u"GETFIRSTDOCUMENT"),
      method<&NotesDocumentCollection::nextDocument>(u"GETNEXTDOCUMENT", 1, 1),
      method<&NotesDocumentCollection::nthDocument>(u"GETNTHDOCUMENT", 1, 1),
      method<&NotesDocumentCollection::removeAll>(u"REMOVEALL", 1, 1),
  };
  return table;
}

Value NotesDocumentCollection::count() {
  return Value(qint64(noteIds_.size()));
}

// Documents that went away since then are passed over.
Value NotesDocumentCollection::readableFrom(qsizetype place) const {
  for (; place < noteIds_.size(); ++place)
    if (const Value found = NotesDocument::read(database_, noteIds_[place]); found.object()) return found;
  return nothing();
}

Value NotesDocumentCollection::firstDocument() {
  return readableFrom(0);
}

Value NotesDocumentCollection::nextDocument(const Arguments& arguments) {
  const auto current = argumentAs<NotesDocument>(arguments[0]);
  if (!current || !places_.contains(current->noteNumber()))
    throw RuntimeError(modelfault::WrongKind,
                       QStringLiteral("%1: GETNEXTDOCUMENT expects a document of the collection")
                           .arg(database_->place.path));
  return readableFrom(places_.value(current->noteNumber()) + 1);
}

Value NotesDocumentCollection::nthDocument(const Arguments& arguments) {
  const qint32 position = roundToInt32(arguments[0].number());
  if (position < 1 || position > noteIds_.size()) return nothing();
  const Value found = NotesDocument::read(database_, noteIds_[position - 1]);
  if (!found.object())
    throw RuntimeError(modelfault::NoSuchDocument,
                       QStringLiteral("%1: document %2 of the collection is gone")
                           .arg(database_->place.path, QString::number(position)));
  return found;
}

Value NotesDocumentCollection::removeAll(const Arguments& arguments) {
  arguments[0].boolean();
  removeNotes(*database_, noteIds_);
  noteIds_.clear();
  places_.clear();
  return {};
}

}  // namespace lens
