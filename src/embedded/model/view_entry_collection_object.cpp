#include "embedded/model/view_entry_collection_object.h"

#include "embedded/model/open_note.h"
#include "embedded/model/view_entry_object.h"
#include "notes/literals.h"

namespace lens {

const MemberTable& ViewEntryCollectionObject::members() const {
  static const MemberTable table{
      property<&ViewEntryCollectionObject::count>(u"count"),
      property<&ViewEntryCollectionObject::count>(u"ENTRYCOUNT"),
      property<&ViewEntryCollectionObject::firstEntry>(u"GETFIRSTENTRY"),
      method<&ViewEntryCollectionObject::nextEntry>(u"GETNEXTENTRY", 1, 1),
      method<&ViewEntryCollectionObject::removeAll>(u"REMOVEALL", 1, 1),
  };
  return table;
}

Value ViewEntryCollectionObject::count() {
  return Value(qint64(notes_.size()));
}

Value ViewEntryCollectionObject::entryAt(qsizetype place) const {
  if (place >= notes_.size()) return nothing();
  return newObject<ViewEntryObject>(database_, notes_[place], place);
}

Value ViewEntryCollectionObject::firstEntry() {
  return entryAt(0);
}

// By place, since a document may stand in several rows. An entry that was found by its key has no place:
// the first row of its document counts.
Value ViewEntryCollectionObject::nextEntry(const Arguments& arguments) {
  const auto current = argumentAs<ViewEntryObject>(arguments[0]);
  const qsizetype place = !current                ? -1
                          : current->place() >= 0 ? current->place()
                                                  : notes_.indexOf(current->noteNumber());
  if (place < 0)
    throw RuntimeError(modelfault::WrongKind,
                       u"%1: GETNEXTENTRY expects an entry of the view"_s.arg(database_->place.path));
  return entryAt(place + 1);
}

// A document in several rows goes once.
Value ViewEntryCollectionObject::removeAll(const Arguments& arguments) {
  arguments[0].boolean();
  removeNotes(*database_, notes_);
  notes_.clear();
  return {};
}

}  // namespace lens
