#include <QDir>
#include <QStorageInfo>

#include "embedded/console/console_call.h"
#include "notes/literals.h"

namespace lens {
namespace {

Lines showServer(const ConsoleCall& call);
Lines showDirectory(const ConsoleCall& call);
Lines showTasks(const ConsoleCall& call);
Lines showUsers(const ConsoleCall& call);
Lines showPorts(const ConsoleCall& call);
Lines showDiskSpace(const ConsoleCall& call);

const ConsoleCommand kShown[] = {
    {"server", "show server", "name, directory, time", showServer},
    {"directory", "show directory [part of path]", "the databases", showDirectory},
    {"tasks", "show tasks", "what the server runs", showTasks},
    {"users", "show users", "who works with the server", showUsers},
    {"ports", "show ports", "how the server is reached", showPorts},
    {"diskspace", "show diskspace", "room on its disk", showDiskSpace},
};

QString directoryOf(const ConsoleCall& call) {
  return QDir::toNativeSeparators(QDir::cleanPath(call.workspace.absolutePath({call.server, {}})));
}

QString row(const char* what, const QString& value) {
  return u"%1 %2"_s.arg(QLatin1String(what), -18).arg(value);
}

QString sizeText(qint64 bytes) {
  constexpr qint64 kMega = 1024 * 1024;
  if (bytes < 10 * kMega) return u"%1 KB"_s.arg((bytes + 1023) / 1024);
  return u"%1 MB"_s.arg(bytes / kMega);
}

Lines showServer(const ConsoleCall& call) {
  return {
      row("Server name:", call.server),
      row("Server directory:", directoryOf(call)),
      row("Databases:", QString::number(call.workspace.databases(call.server).size())),
      row("Server time:", call.workspace.regional().stampText(QDateTime::currentDateTime())),
  };
}

QString directoryRow(const ConsoleCall& call, const QString& path) {
  const QString name = u"  %1"_s.arg(path, -36);
  try {
    const std::shared_ptr<Database> database = call.workspace.database(call.server, path);
    const QString documents = QString::number(database->notes().noteCount(noteclass::Document));
    return u"%1 %2 %3 documents  %4"_s.arg(name, sizeText(database->size()).rightJustified(9),
                                           documents.rightJustified(8), database->info().title);
  } catch (const RuntimeError& error) {
    return u"%1 cannot be opened (%2)"_s.arg(name, error.description());
  }
}

Lines showDirectory(const ConsoleCall& call) {
  Lines lines{u"Databases in %1:"_s.arg(directoryOf(call))};
  const QString part = call.words.value(0);
  for (const QString& path : call.workspace.databases(call.server))
    if (path.contains(part, Qt::CaseInsensitive)) lines.append(directoryRow(call, path));
  lines.append(u"%1 databases"_s.arg(lines.size() - 1));
  return lines;
}

// Everything is done before the reply is there, so the tasks that can be loaded have nothing to do now.
Lines showTasks(const ConsoleCall& call) {
  const QString idle = u"idle"_s;
  const qsizetype count = call.workspace.databases(call.server).size();
  return {
      u"Tasks of %1:"_s.arg(call.serverName()),
      row("  Database server", u"serves %1 databases"_s.arg(count)),
      row("  Console", u"replies to show tasks"_s),
      row("  Compact", idle),
      row("  Updall", idle),
      row("  Replicate", idle),
  };
}

Lines showUsers(const ConsoleCall& call) {
  QString shown;
  if (const DatabasePlace* top = call.workspace.client().database(); top && top->server == call.server)
    shown = top->path;
  return {
      u"Users of %1:"_s.arg(call.serverName()),
      u"  %1 %2"_s.arg(nameWithoutLabels(call.workspace.userName()).leftJustified(36), shown),
  };
}

Lines showPorts(const ConsoleCall& call) {
  return {u"Ports are not in use: %1 is reached through the directory %2"_s.arg(call.serverName(),
                                                                                directoryOf(call))};
}

Lines showDiskSpace(const ConsoleCall& call) {
  const QStorageInfo disk(directoryOf(call));
  return {u"Disk space: %1 of %2 are free below %3"_s.arg(sizeText(disk.bytesAvailable()),
                                                          sizeText(disk.bytesTotal()), directoryOf(call))};
}

}  // namespace

Lines showCommand(const ConsoleCall& call) {
  const ConsoleCommand* shown = call.words.isEmpty() ? nullptr : findCommand(kShown, call.words.first());
  if (shown) return shown->run(call.behindFirstWord());
  Lines lines;
  if (call.words.isEmpty())
    lines.append(u"Show needs to know what:"_s);
  else
    lines.append(u"Unknown to show: %1. It shows:"_s.arg(repeated(call.words.first())));
  return lines + helpOn(kShown);
}

}  // namespace lens
