#include "embedded/model/document_collection_object.h"

#include "embedded/model/document_object.h"
#include "notes/literals.h"
#include "notes/numbers.h"

namespace lens {

DocumentCollectionObject::DocumentCollectionObject(std::shared_ptr<OpenDatabase> database,
                                                   QVector<quint32> noteIds)
    : database_(std::move(database)) {
  // Each document once: its place leads to the next one.
  for (const quint32 id : noteIds) {
    if (places_.contains(id)) continue;
    places_.insert(id, noteIds_.size());
    noteIds_.push_back(id);
  }
}

const MemberTable& DocumentCollectionObject::members() const {
  static const MemberTable table{
      property<&DocumentCollectionObject::count>(u"count"),
      property<&DocumentCollectionObject::firstDocument>(u"GETFIRSTDOCUMENT"),
      method<&DocumentCollectionObject::nextDocument>(u"GETNEXTDOCUMENT", 1, 1),
      method<&DocumentCollectionObject::nthDocument>(u"GETNTHDOCUMENT", 1, 1),
      method<&DocumentCollectionObject::removeAll>(u"REMOVEALL", 1, 1),
  };
  return table;
}

Value DocumentCollectionObject::count() {
  return Value(qint64(noteIds_.size()));
}

// Documents that went away since then are passed over.
Value DocumentCollectionObject::readableFrom(qsizetype place) const {
  for (; place < noteIds_.size(); ++place)
    if (const Value found = DocumentObject::read(database_, noteIds_[place]); found.object()) return found;
  return nothing();
}

Value DocumentCollectionObject::firstDocument() {
  return readableFrom(0);
}

Value DocumentCollectionObject::nextDocument(const Arguments& arguments) {
  const auto current = argumentAs<DocumentObject>(arguments[0]);
  if (!current || !places_.contains(current->noteNumber()))
    throw RuntimeError(
        modelfault::WrongKind,
        u"%1: GETNEXTDOCUMENT expects a document of the collection"_s.arg(database_->place.path));
  return readableFrom(places_.value(current->noteNumber()) + 1);
}

Value DocumentCollectionObject::nthDocument(const Arguments& arguments) {
  const qint32 position = roundToInt32(arguments[0].number());
  if (position < 1 || position > noteIds_.size()) return nothing();
  const Value found = DocumentObject::read(database_, noteIds_[position - 1]);
  if (!found.object())
    throw RuntimeError(modelfault::NoSuchDocument, u"%1: document %2 of the collection is gone"_s.arg(
                                                       database_->place.path, QString::number(position)));
  return found;
}

Value DocumentCollectionObject::removeAll(const Arguments& arguments) {
  arguments[0].boolean();
  removeNotes(*database_, noteIds_);
  noteIds_.clear();
  places_.clear();
  return {};
}

}  // namespace lens
