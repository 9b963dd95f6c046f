#include "embedded/model/agent_object.h"

#include "embedded/evaluation/agent_run.h"
#include "embedded/model/open_note.h"

namespace lens {

Value AgentObject::read(const std::shared_ptr<OpenDatabase>& database, NoteId noteId) {
  Note note;
  if (!readableNote(*database->store, noteId, note)) return nothing();
  return newObject<AgentObject>(database, noteId, note.text(u"$TITLE"));
}

const MemberTable& AgentObject::members() const {
  static const MemberTable table{Members{
      // With the aliases behind it, unlike the name of a view.
      {u"Name", [](AgentObject& self) { return self.title_; }},
      {u"RUN",
       [](AgentObject& self) {
         const OpenDatabase& database = *self.database_;
         runAgent({*database.context->workspace, database.place, database.store, database.withUi},
                  self.noteId_);
       }},
  }};
  return table;
}

}  // namespace lens
