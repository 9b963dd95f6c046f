// Commands that bring data from one database to another: dbcopy, replicate.
#include "embedded/console/console_call.h"
#include "embedded/replication/replication.h"
#include "notes/literals.h"

namespace lens {
namespace {

QString reportText(const ReplicationReport& report) {
  QString text = u"%1 added, %2 updated, %3 deleted, %4 conflicts"_s.arg(report.added)
                     .arg(report.updated)
                     .arg(report.deleted)
                     .arg(report.conflicts);
  if (!report.leftOut.isEmpty()) text += u"; left out: "_s + report.leftOut.join(u", "_s);
  return text;
}

QString replicateOne(const ConsoleCall& call, const DatabasePlace& here, const DatabasePlace& there) {
  const QString names = u"%1 with %2!!%3"_s.arg(here.path, nameWithoutLabels(there.server), there.path);
  try {
    const std::shared_ptr<Database> mine = call.workspace.database(here.server, here.path);
    const std::shared_ptr<Database> other = call.workspace.database(there.server, there.path);
    const ReplicationReport report = replicate(*mine, *other);
    call.workspace.notifyChanged(here);
    call.workspace.notifyChanged(there);
    return u"Replicate: %1: %2"_s.arg(names, reportText(report));
  } catch (const RuntimeError& error) {
    return u"Replicate: %1: %2"_s.arg(names, error.description());
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
      lines.append(u"Replicate: %1"_s.arg(error.description()));
    }
  }
  return lines;
}

}  // namespace

Lines copyCommand(const ConsoleCall& call) {
  if (call.words.size() != 2) return {u"Dbcopy needs two names: the database and its copy"_s};
  const DatabasePlace from = call.workspace.place(call.server, call.words[0]);
  const DatabasePlace to = call.workspace.place(call.server, call.words[1]);
  call.workspace.copyDatabase(from, to);
  return {u"Dbcopy: %1 was copied to %2"_s.arg(from.path, to.path)};
}

Lines replicateCommand(const ConsoleCall& call) {
  if (call.words.isEmpty() || call.words.size() > 2 || call.words.first().trimmed().isEmpty())
    return {u"Replicate needs the name of a server, and perhaps of a database"_s};
  const QString other = call.workspace.canonicalServer(call.words.first());
  if (other == call.server) return {u"Replicate needs another server than this one"_s};
  const QStringList paths =
      call.words.size() > 1 ? QStringList{call.words[1]} : call.workspace.databases(call.server);
  Lines lines = replicateAll(call, paths, other);
  if (lines.isEmpty()) lines.append(u"Replicate: there is no replica on %1"_s.arg(nameWithoutLabels(other)));
  return lines;
}

}  // namespace lens
