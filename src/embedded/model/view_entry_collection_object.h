// NotesViewEntryCollection: the rows of a view, categories among them, as they were at one moment.
#pragma once

#include "embedded/model/member_table.h"
#include "embedded/model/model_context.h"

namespace lens {

class ViewEntryCollectionObject : public ModelObject {
 public:
  // 0 is a category.
  ViewEntryCollectionObject(std::shared_ptr<OpenDatabase> database, QVector<NoteId> notes)
      : database_(std::move(database)), notes_(std::move(notes)) {}

 protected:
  const MemberTable& members() const override;

 private:
  Value entryAt(qsizetype place) const;

  std::shared_ptr<OpenDatabase> database_;
  QVector<NoteId> notes_;
};

}  // namespace lens
