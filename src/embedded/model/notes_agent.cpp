#include "embedded/model/notes_agent.h"

#include "embedded/design/agent_run.h"
#include "embedded/model/notes_document.h"

namespace lens {

Value NotesAgent::read(const std::shared_ptr<OpenDatabase>& database, quint32 noteId) {
  Note note;
  if (!readableNote(*database->store, noteId, note)) return nothing();
  return newObject<NotesAgent>(database, noteId, note.text(u"$TITLE"));
}

const MemberTable& NotesAgent::members() const {
  static const MemberTable table{
      property<&NotesAgent::name>(u"Name"),
      property<&NotesAgent::run>(u"RUN"),
  };
  return table;
}

// With the aliases behind it, unlike the name of a view.
Value NotesAgent::name() {
  return title_;
}

Value NotesAgent::run() {
  runAgent({*database_->context->workspace, database_->place, database_->store, database_->withUi}, noteId_);
  return {};
}

}  // namespace lens
