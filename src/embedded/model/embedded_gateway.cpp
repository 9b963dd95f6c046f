#include "embedded/model/embedded_gateway.h"

#include "embedded/model/model_context.h"
#include "embedded/model/session_object.h"
#include "embedded/model/uiworkspace_object.h"

namespace lens {
namespace {

bool is(const QString& classId, QStringView name) {
  return classId.compare(name, Qt::CaseInsensitive) == 0;
}

}  // namespace

EmbeddedGateway::EmbeddedGateway(std::shared_ptr<Workspace> workspace)
    : context_(std::make_shared<ModelContext>()) {
  context_->workspace = std::move(workspace);
}

EmbeddedGateway::~EmbeddedGateway() = default;

Object EmbeddedGateway::create(const QString& classId) {
  if (is(classId, u"Notes.NotesSession"))
    return Object(std::make_shared<SessionObject>(context_, SessionObject::Kind::Client));
  if (is(classId, u"Lotus.NotesSession"))
    return Object(std::make_shared<SessionObject>(context_, SessionObject::Kind::BackEnd));
  if (is(classId, u"Notes.NotesUIWorkSpace")) return Object(std::make_shared<UiWorkspaceObject>(context_));
  throw RuntimeError(err::CannotCreateObject);
}

}  // namespace lens
