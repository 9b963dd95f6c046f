// NotesViewEntry: a row of a view, a document or a category.
#pragma once

#include "embedded/model/member_table.h"
#include "embedded/model/model_context.h"

namespace lens {

class ViewEntryObject : public ModelObject {
 public:
  // A note of 0 is a category; a place of -1 belongs to no collection.
  ViewEntryObject(std::shared_ptr<OpenDatabase> database, NoteId note, qsizetype place)
      : database_(std::move(database)), note_(note), place_(place) {}
  NoteId noteNumber() const { return note_; }
  qsizetype place() const { return place_; }

 protected:
  const MemberTable& members() const override;

 private:
  std::shared_ptr<OpenDatabase> database_;
  NoteId note_;
  qsizetype place_;
};

}  // namespace lens
