// NotesAgent: an agent of a database.
#pragma once

#include "embedded/model/member_table.h"
#include "embedded/model/model_context.h"

namespace lens {

class AgentObject : public ModelObject {
 public:
  // Nothing when the note cannot be read.
  static Value read(const std::shared_ptr<OpenDatabase>& database, NoteId noteId);
  AgentObject(std::shared_ptr<OpenDatabase> database, NoteId noteId, QString title)
      : database_(std::move(database)), noteId_(noteId), title_(std::move(title)) {}

 protected:
  const MemberTable& members() const override;

 private:
  std::shared_ptr<OpenDatabase> database_;
  NoteId noteId_;
  QString title_;
};

}  // namespace lens
