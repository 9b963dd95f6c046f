// databases: what there is to look into.
#include "command/command_functions.h"
#include "command/command_text.h"
#include "command/text_output.h"
#include "notes/literals.h"
#include "records/json_output.h"

namespace lens {
namespace {

constexpr qsizetype kDatabaseWidth = 40;

QStringList serversOf(const CommandCall& call) {
  if (call.has(u"server")) return {call.value(u"server")};
  return QStringList(QString()) +
         (call.doors.workspace ? call.doors.workspace->serverNames() : QStringList());
}

// As the other commands take it: a path that has the mark behind servers in it stands behind an empty one.
QString nameOf(const NotesDatabase& database) {
  const QString server = database.server(), path = database.filePath();
  const bool isPlain = server.isEmpty() && !path.contains(u"!!");
  return isPlain ? path : nameWithoutLabels(server) + u"!!"_s + path;
}

void writeDatabase(CommandCall& call, const NotesDatabase& database) {
  const QString replicaId = database.replicaId(), title = database.title();
  if (call.json()) {
    JsonLine json;
    json.text("database", nameOf(database))
        .text("server", database.server())
        .text("path", database.filePath());
    json.text("title", title).text("replicaId", replicaId).text("template", database.templateName());
    return call.console.out().line(json.finish());
  }
  QByteArray line;
  appendColumn(line, nameOf(database), kDatabaseWidth);
  // Files of another kind may bear such a name; every database has a replica ID.
  appendPrintable(line, replicaId.isEmpty() ? CommandText::tr("(cannot be read)") : title);
  call.console.out().line(line);
}

}  // namespace

int listDatabases(CommandCall& call) {
  const NotesSession session = sessionOf(call.doors);
  for (const QString& server : serversOf(call)) {
    const NotesDbDirectory directory = session.dbDirectory(server);
    NotesDatabase database = directory.firstDatabase(NotesDbDirectory::kDatabasesAndTemplates);
    for (; database; database = directory.nextDatabase()) {
      call.console.requireGoingOn();
      writeDatabase(call, database);
    }
  }
  return exitcode::Done;
}

}  // namespace lens
