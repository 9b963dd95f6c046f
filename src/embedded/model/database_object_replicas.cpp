// What becomes of a database as a whole: replicas, replication, removal.
#include "embedded/model/database_object.h"
#include "embedded/replication/replication.h"
#include "notes/literals.h"

namespace lens {

Value DatabaseObject::createReplica(const Arguments& arguments) {
  Workspace& workspace = *database_->context->workspace;
  const DatabasePlace place = workspace.createReplica(store(), arguments[0].text(), arguments[1].text());
  return open(database_->context, place, source_);
}

// All replicas of the server get their turn; what failed first is told at the end.
Value DatabaseObject::replicate(const Arguments& arguments) {
  Database& here = store();
  Workspace& workspace = *database_->context->workspace;
  QVector<DatabasePlace> others = workspace.replicas(arguments[0].text(), here.info().replicaId);
  others.removeAll(database_->place);
  if (others.isEmpty())
    throw RuntimeError(
        replicationfault::NoReplica,
        u"%1: there is no other replica on %2"_s.arg(
            here.path(), arguments[0].text().isEmpty() ? u"this machine"_s : arguments[0].text()));
  std::optional<RuntimeError> failure;
  QStringList damaged;
  for (const DatabasePlace& other : std::as_const(others)) {
    try {
      damaged += lens::replicate(here, *workspace.database(other.server, other.path)).leftOut;
    } catch (const RuntimeError& error) {
      if (!failure) failure = error;
    }
    workspace.notifyChanged(other);
  }
  workspace.notifyChanged(database_->place);
  if (failure) throw *failure;
  requireNothingLeftOut(here.path(), damaged);
  return true;
}

Value DatabaseObject::remove() {
  store();
  database_->context->workspace->removeDatabase(database_->place);
  return {};
}

}  // namespace lens
