// What becomes of a database as a whole: replicas, replication, removal.
#include "embedded/model/database_object.h"
#include "embedded/replication/replication.h"
#include "notes/literals.h"

namespace lens {
namespace {

// All replicas of the server get their turn; what failed first is told at the end.
void replicateWithAll(const OpenDatabase& database, Database& here, const QString& server) {
  Workspace& workspace = *database.context->workspace;
  QVector<DatabasePlace> others = workspace.replicas(server, here.info().replicaId);
  others.removeAll(database.place);
  if (others.isEmpty())
    throw RuntimeError(replicationfault::NoReplica,
                       u"%1: there is no other replica on %2"_s.arg(
                           here.path(), server.isEmpty() ? u"this machine"_s : server));
  std::optional<RuntimeError> failure;
  QStringList damaged;
  for (const DatabasePlace& other : std::as_const(others)) {
    try {
      damaged += replicate(here, *workspace.database(other.server, other.path)).leftOut;
    } catch (const RuntimeError& error) {
      if (!failure) failure = error;
    }
    workspace.notifyChanged(other);
  }
  workspace.notifyChanged(database.place);
  if (failure) throw *failure;
  requireNothingLeftOut(here.path(), damaged);
}

}  // namespace

Members DatabaseObject::replicaMembers() {
  return {
      {u"CREATEREPLICA",
       [](DatabaseObject& self, const QString& server, const QString& path) {
         Workspace& workspace = *self.database_->context->workspace;
         const DatabasePlace place = workspace.createReplica(self.store(), server, path);
         return open(self.database_->context, place, self.source_);
       }},
      {u"REPLICATE",
       [](DatabaseObject& self, const Value& server) {
         Database& here = self.store();
         replicateWithAll(*self.database_, here, server.text());
         return true;
       }},
      {u"Remove",
       [](DatabaseObject& self) {
         self.store();
         self.database_->context->workspace->removeDatabase(self.database_->place);
       }},
  };
}

}  // namespace lens
