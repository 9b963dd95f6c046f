#include "embedded/model/notes_view_entry_collection.h"

#include "embedded/model/notes_view_entry.h"
#include "embedded/model/open_note.h"

namespace lens {

const MemberTable& NotesViewEntryCollection::members() const {
  static const MemberTable table{
      property<&NotesViewEntryCollection::count>(u"count"),
      property<&NotesViewEntryCollection::count>(u"ENTRYCOUNT"),
      property<&NotesViewEntryCollection::firstEntry>(u"GETFIRSTENTRY"),
      method<&NotesViewEntryCollection::nextEntry>(u"GETNEXTENTRY", 1, 1),
      method<&NotesViewEntryCollection::removeAll>(u"REMOVEALL", 1, 1),
  };
  return table;
}

Value NotesViewEntryCollection::count() {
  return Value(qint64(notes_.size()));
}

Value NotesViewEntryCollection::entryAt(qsizetype place) const {
  if (place >= notes_.size()) return nothing();
  return newObject<NotesViewEntry>(database_, notes_[place], place);
}

Value NotesViewEntryCollection::firstEntry() {
  return entryAt(0);
}

// By place, since a document may stand in several rows. An entry that was found by its key has no place:
// the first row of its document counts.
Value NotesViewEntryCollection::nextEntry(const Arguments& arguments) {
  const auto current = argumentAs<NotesViewEntry>(arguments[0]);
  const qsizetype place = !current                ? -1
                          : current->place() >= 0 ? current->place()
                                                  : notes_.indexOf(current->noteNumber());
  if (place < 0)
    throw RuntimeError(
        modelfault::WrongKind,
        QStringLiteral("%1: GETNEXTENTRY expects an entry of the view").arg(database_->place.path));
  return entryAt(place + 1);
}

// A document in several rows goes once.
Value NotesViewEntryCollection::removeAll(const Arguments& arguments) {
  arguments[0].boolean();
  removeNotes(*database_, notes_);
  notes_.clear();
  return {};
}

}  // namespace lens
