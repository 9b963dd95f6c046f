// What a console command works on, and the tables that commands are found in.
#pragma once

#include <QStringList>
#include <iterator>

#include "embedded/workspace/workspace.h"
#include "notes/literals.h"

namespace lens {

using Lines = QStringList;

struct ConsoleCall {
  Workspace& workspace;
  const QString& server;  // canonical
  QStringList words;      // what follows the command

  QString serverName() const { return nameWithoutLabels(server); }
  ConsoleCall behindFirstWord() const { return {workspace, server, words.mid(1)}; }
};

struct ConsoleCommand {
  const char* name;
  const char* usage;
  const char* purpose;
  Lines (*run)(const ConsoleCall&);
};

// The command of that name, or the first that begins with at least two letters of it; null when none does.
template <size_t count>
const ConsoleCommand* findCommand(const ConsoleCommand (&table)[count], const QString& word) {
  for (const ConsoleCommand& command : table)
    if (word.compare(QLatin1String(command.name), Qt::CaseInsensitive) == 0) return &command;
  if (word.size() < 2) return nullptr;
  for (const ConsoleCommand& command : table)
    if (QLatin1String(command.name).startsWith(word, Qt::CaseInsensitive)) return &command;
  return nullptr;
}

template <size_t count>
Lines helpOn(const ConsoleCommand (&table)[count]) {
  Lines lines;
  for (const ConsoleCommand& command : table)
    lines.append(u"  %1 %2"_s.arg(QLatin1String(command.usage), -34).arg(command.purpose));
  return lines;
}

// A name that somebody typed, cut to what is worth repeating.
inline QString repeated(const QString& word) {
  return word.size() <= 64 ? word : word.left(64) + u"..."_s;
}

Lines showCommand(const ConsoleCall& call);
Lines compactCommand(const ConsoleCall& call);
Lines updateCommand(const ConsoleCall& call);
Lines copyCommand(const ConsoleCall& call);
Lines replicateCommand(const ConsoleCall& call);

}  // namespace lens
