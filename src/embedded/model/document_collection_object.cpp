#include "embedded/model/document_collection_object.h"

#include "embedded/model/document_object.h"
#include "embedded/model/open_note.h"
#include "notes/literals.h"

namespace lens {

DocumentCollectionObject::DocumentCollectionObject(std::shared_ptr<OpenDatabase> database,
                                                   const QVector<NoteId>& noteIds)
    : database_(std::move(database)) {
  // Each document once: its place leads to the next one.
  for (const NoteId id : noteIds) {
    if (places_.contains(id)) continue;
    places_.insert(id, noteIds_.size());
    noteIds_.push_back(id);
  }
}

// Documents that went away since then are passed over.
Value DocumentCollectionObject::readableFrom(qsizetype place) const {
  return DocumentObject::firstReadable(database_, noteIds_, place);
}

const MemberTable& DocumentCollectionObject::members() const {
  static const MemberTable table{Members{
      {u"count", [](DocumentCollectionObject& self) { return qint64(self.noteIds_.size()); }},
      {u"GETFIRSTDOCUMENT", [](DocumentCollectionObject& self) { return self.readableFrom(0); }},
      {u"GETNEXTDOCUMENT",
       [](DocumentCollectionObject& self, const Value& document) {
         const auto current = argumentAs<DocumentObject>(document);
         if (!current || !self.places_.contains(current->noteNumber()))
           throw RuntimeError(
               modelfault::WrongKind,
               u"%1: GETNEXTDOCUMENT expects a document of the collection"_s.arg(self.database_->place.path));
         return self.readableFrom(self.places_.value(current->noteNumber()) + 1);
       }},
      {u"GETNTHDOCUMENT",
       [](DocumentCollectionObject& self, qint32 position) {
         if (position < 1 || position > self.noteIds_.size()) return nothing();
         const Value found = DocumentObject::read(self.database_, self.noteIds_[position - 1]);
         if (!found.object())
           throw RuntimeError(modelfault::NoSuchDocument,
                              u"%1: document %2 of the collection is gone"_s.arg(self.database_->place.path,
                                                                                 QString::number(position)));
         return found;
       }},
      {u"REMOVEALL",
       [](DocumentCollectionObject& self, bool) {
         removeNotes(*self.database_, self.noteIds_);
         self.noteIds_.clear();
         self.places_.clear();
       }},
  }};
  return table;
}

}  // namespace lens
