#include "embedded/replication/replication.h"

#include "embedded/files/staged_file.h"
#include "embedded/replication/replicator.h"
#include "notes/literals.h"

namespace lens {

namespace {

ReplicationReport replicateWatched(Database& here, Database& there, const CopyProgress& go) {
  const auto refuse = [&](const QString& reason) {
    throw RuntimeError(replicationfault::NotReplicas,
                       u"%1: does not replicate with %2 (%3)"_s.arg(here.path(), there.path(), reason));
  };
  if (&here == &there) refuse(u"it is the same file"_s);
  if (here.info().replicaId.compare(there.info().replicaId, Qt::CaseInsensitive) != 0)
    refuse(u"their replica IDs differ"_s);
  return Replicator(here, there, go).run();
}

}  // namespace

ReplicationReport replicate(Database& here, Database& there) {
  return replicateWatched(here, there, {});
}

ReplicationReport createReplica(Database& source, const QString& path, const CopyProgress& go) {
  StagedFile file(path);
  ReplicationReport report;
  {
    const auto replica = Database::create(file.path(), source.info());
    report = replicateWatched(source, *replica, go);
  }
  if (!report.ended) file.putInPlace();
  return report;
}

void requireNothingLeftOut(const QString& path, const QStringList& leftOut) {
  if (leftOut.isEmpty()) return;
  throw RuntimeError(replicationfault::NotesLeftOut,
                     u"%1: everything was replicated but %2 damaged notes (%3)"_s.arg(
                         path, QString::number(leftOut.size()), leftOut.first()));
}

}  // namespace lens
