#include "embedded/model/agent_object.h"

#include "embedded/evaluation/agent_run.h"
#include "embedded/model/document_object.h"

namespace lens {

Value AgentObject::read(const std::shared_ptr<OpenDatabase>& database, quint32 noteId) {
  Note note;
  if (!readableNote(*database->store, noteId, note)) return nothing();
  return newObject<AgentObject>(database, noteId, note.text(u"$TITLE"));
}

const MemberTable& AgentObject::members() const {
  static const MemberTable table{
      property<&AgentObject::name>(u"Name"),
      property<&AgentObject::run>(u"RUN"),
  };
  return table;
}

// With the aliases behind it, unlike the name of a view.
Value AgentObject::name() {
  return title_;
}

Value AgentObject::run() {
  runAgent({*database_->context->workspace, database_->place, database_->store, database_->withUi}, noteId_);
  return {};
}

}  // namespace lens
