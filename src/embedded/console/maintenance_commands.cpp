// Commands that look after databases: compact, updall.
#include "embedded/console/console_call.h"
#include "embedded/search/full_text.h"

namespace lens {
namespace {

bool isOption(const QString& word) {
  return word.startsWith(u'-');
}

// The databases that the words name, or all of the server.
QStringList namedDatabases(const ConsoleCall& call) {
  QStringList paths;
  for (const QString& word : call.words)
    if (!isOption(word)) paths.append(word);
  return paths.isEmpty() ? call.workspace.databases(call.server) : paths;
}

// One line for each database; one that fails does not keep the others from their turn.
template <class Action>
Lines onDatabases(const ConsoleCall& call, const QString& task, const Action& action) {
  Lines lines;
  for (const QString& path : namedDatabases(call)) {
    try {
      const DatabasePlace place = call.workspace.place(call.server, path);
      const std::shared_ptr<Database> database = call.workspace.database(place.server, place.path);
      lines.append(QStringLiteral("%1: %2: %3").arg(task, place.path, action(*database)));
    } catch (const RuntimeError& error) {
      lines.append(QStringLiteral("%1: %2").arg(task, error.description()));
    }
  }
  if (lines.isEmpty()) lines.append(QStringLiteral("%1: this server has no databases").arg(task));
  return lines;
}

// Options that other servers know and that change nothing here.
void addPassedOver(const ConsoleCall& call, const QStringList& known, Lines& lines) {
  for (const QString& word : call.words)
    if (isOption(word) && !known.contains(word, Qt::CaseInsensitive))
      lines.append(QStringLiteral("Option %1 has no meaning here and was passed over").arg(repeated(word)));
}

// Views look at the changes themselves when they are asked for; a full-text index is made only on demand.
QString updateFullText(Database& database, bool makeAnew) {
  if (makeAnew) {
    dropFullTextIndex(database);
    createFullTextIndex(database);
    return QStringLiteral("the full-text index was made anew");
  }
  if (!hasFullTextIndex(database)) return QStringLiteral("there is no full-text index");
  refreshFullTextIndex(database);
  return QStringLiteral("the full-text index is up to date");
}

}  // namespace

Lines compactCommand(const ConsoleCall& call) {
  Lines lines = onDatabases(call, QStringLiteral("Compact"), [](Database& database) {
    const qint64 saved = database.compact();
    return QStringLiteral("%1 bytes recovered, %2 bytes left").arg(saved).arg(database.size());
  });
  addPassedOver(call, {}, lines);
  return lines;
}

Lines updateCommand(const ConsoleCall& call) {
  const QStringList known{QStringLiteral("-x")};
  const bool makeFullText = call.words.contains(known.first(), Qt::CaseInsensitive);
  Lines lines = onDatabases(call, QStringLiteral("Updall"),
                            [&](Database& database) { return updateFullText(database, makeFullText); });
  addPassedOver(call, known, lines);
  return lines;
}

}  // namespace lens
