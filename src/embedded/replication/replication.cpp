#include "embedded/replication/replication.h"

#include "embedded/replication/replicator.h"
#include "embedded/store/aside_file.h"

namespace lens {

ReplicationReport replicate(Database& here, Database& there) {
  const auto refuse = [&](const QString& reason) {
    throw RuntimeError(
        replicationfault::NotReplicas,
        QStringLiteral("%1: does not replicate with %2 (%3)").arg(here.path(), there.path(), reason));
  };
  if (&here == &there) refuse(QStringLiteral("it is the same file"));
  if (here.info().replicaId.compare(there.info().replicaId, Qt::CaseInsensitive) != 0)
    refuse(QStringLiteral("their replica IDs differ"));
  return Replicator(here, there).run();
}

ReplicationReport createReplica(Database& source, const QString& path) {
  AsideFile file(path);
  ReplicationReport report;
  {
    const auto replica = Database::create(file.path(), source.info());
    report = replicate(source, *replica);
  }
  file.putInPlace();
  return report;
}

void requireNothingLeftOut(const QString& path, const QStringList& leftOut) {
  if (leftOut.isEmpty()) return;
  throw RuntimeError(replicationfault::NotesLeftOut,
                     QStringLiteral("%1: everything was replicated but %2 damaged notes (%3)")
                         .arg(path, QString::number(leftOut.size()), leftOut.first()));
}

}  // namespace lens
