#include "embedded/model/view_entry_collection_object.h"

#include "embedded/model/open_note.h"
#include "embedded/model/view_entry_object.h"
#include "notes/literals.h"

namespace lens {

Value ViewEntryCollectionObject::entryAt(qsizetype place) const {
  if (place >= notes_.size()) return nothing();
  return newObject<ViewEntryObject>(database_, notes_[place], place);
}

const MemberTable& ViewEntryCollectionObject::members() const {
  static constexpr auto count = [](ViewEntryCollectionObject& self) { return qint64(self.notes_.size()); };
  static const MemberTable table{Members{
      {u"count", count},
      {u"ENTRYCOUNT", count},
      {u"GETFIRSTENTRY", [](ViewEntryCollectionObject& self) { return self.entryAt(0); }},
      // By place, since a document may stand in several rows. An entry that was found by its key has no
      // place: the first row of its document counts.
      {u"GETNEXTENTRY",
       [](ViewEntryCollectionObject& self, const Value& entry) {
         const auto current = argumentAs<ViewEntryObject>(entry);
         const qsizetype place = !current                ? -1
                                 : current->place() >= 0 ? current->place()
                                                         : self.notes_.indexOf(current->noteNumber());
         if (place < 0)
           throw RuntimeError(modelfault::WrongKind, u"%1: GETNEXTENTRY expects an entry of the view"_s.arg(
                                                         self.database_->place.path));
         return self.entryAt(place + 1);
       }},
      // A document in several rows goes once.
      {u"REMOVEALL",
       [](ViewEntryCollectionObject& self, bool) {
         removeNotes(*self.database_, self.notes_);
         self.notes_.clear();
       }},
  }};
  return table;
}

}  // namespace lens
