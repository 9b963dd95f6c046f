#include "embedded/replication/replication.h"

#include <QFileInfo>
#include <QLockFile>

#include "embedded/replication/replicator.h"
#include "embedded/store/database_file.h"

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

void createReplica(Database& source, const QString& path) {
  if (QFileInfo::exists(path))
    throw RuntimeError(58, QStringLiteral("%1: the file exists already").arg(path));
  // Two processes that make the same replica would write one into the other.
  QLockFile lock(path + QStringLiteral(".lock"));
  lock.setStaleLockTime(0);
  if (!lock.tryLock())
    throw RuntimeError(err::PathFileAccess, QStringLiteral("%1: the file cannot be created").arg(path));
  const QString aside = path + QStringLiteral(".replica");
  removeAside(aside);
  try {
    {
      const auto replica = Database::create(aside, source.info());
      replicate(source, *replica);
    }
    // What the disk had no room for is still in the journal.
    if (QFileInfo(aside + QStringLiteral("-wal")).size() > 0)
      throw RuntimeError(enginefault::NotSaved,
                         QStringLiteral("%1: the replica could not be written to its end").arg(path));
    putInPlace(aside, path);
  } catch (...) {
    removeAside(aside);
    throw;
  }
}

}  // namespace lens
