// Commands that bring data from one database to another: dbcopy, replicate.
#include "embedded/console/console_call.h"
#include "embedded/replication/replication.h"

namespace lens {
namespace {

QString reportText(const ReplicationReport& report) {
  QString text = QStringLiteral("%1 added, %2 updated, %3 deleted, %4 conflicts")
                     .arg(report.added)
                     .arg(report.updated)
                     .arg(report.deleted)
                     .arg(report.conflicts);
  if (!report.leftOut.isEmpty())
    text += QStringLiteral("; left out: ") + report.leftOut.join(QStringLiteral(", "));
  return text;
}

QString replicateOne(const ConsoleCall& call, const DatabasePlace& here, const DatabasePlace& there) {
  const QString names =
      QStringLiteral("%1 with %2!!%3").arg(here.path, abbreviatedName(there.server), there.path);
  try {
    const std::shared_ptr<Database> mine = call.workspace.database(here.server, here.path);
    const std::shared_ptr<Database> other = call.workspace.database(there.server, there.path);
    const ReplicationReport report = replicate(*mine, *other);
    call.workspace.notifyChanged(here);
    call.workspace.notifyChanged(there);
    return QStringLiteral("Replicate: %1: %2").arg(names, reportText(report));
  } catch (const RuntimeError& error) {
    return QStringLiteral("Replicate: %1: %2").arg(names, error.description());
  }
}

// One line for each pair of replicas, or for a database that cannot take part.
Lines replicateAll(const ConsoleCall& call, const QStringList& paths, const QString& other) {
  Lines lines;
  for (const QString& path : paths) {
    try {
      const DatabasePlace here = call.workspace.place(call.server, path);
      const QString id = call.workspace.database(here.server, here.path)->info().replicaId;
      for (const DatabasePlace& there : call.workspace.replicas(other, id))
        lines.append(replicateOne(call, here, there));
    } catch (const RuntimeError& error) {
      lines.append(QStringLiteral("Replicate: %1").arg(error.description()));
    }
  }
  return lines;
}

}  // namespace

Lines copyCommand(const ConsoleCall& call) {
  if (call.words.size() != 2) return {QStringLiteral("Dbcopy needs two names: the database and its copy")};
  const DatabasePlace from = call.workspace.place(call.server, call.words[0]);
  const DatabasePlace to = call.workspace.place(call.server, call.words[1]);
  call.workspace.copyDatabase(from, to);
  return {QStringLiteral("Dbcopy: %1 was copied to %2").arg(from.path, to.path)};
}

Lines replicateCommand(const ConsoleCall& call) {
  if (call.words.isEmpty() || call.words.size() > 2 || call.words.first().trimmed().isEmpty())
    return {QStringLiteral("Replicate needs the name of a server, and perhaps of a database")};
  const QString other = call.workspace.canonicalServer(call.words.first());
  if (other == call.server) return {QStringLiteral("Replicate needs another server than this one")};
  const QStringList paths =
      call.words.size() > 1 ? QStringList{call.words[1]} : call.workspace.databases(call.server);
  Lines lines = replicateAll(call, paths, other);
  if (lines.isEmpty())
    lines.append(QStringLiteral("Replicate: there is no replica on %1").arg(abbreviatedName(other)));
  return lines;
}

}  // namespace lens
