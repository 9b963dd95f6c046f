// Commands that look after databases: compact, updall.
#include "embedded/console/console_call.h"
#include "embedded/search/full_text.h"
#include "embedded/store/compaction.h"
#include "notes/literals.h"

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
      lines.append(u"%1: %2: %3"_s.arg(task, place.path, action(*database)));
    } catch (const RuntimeError& error) {
      lines.append(u"%1: %2"_s.arg(task, error.description()));
    }
  }
  if (lines.isEmpty()) lines.append(u"%1: this server has no databases"_s.arg(task));
  return lines;
}

// Options that other servers know and that change nothing here.
void addPassedOver(const ConsoleCall& call, const QStringList& known, Lines& lines) {
  for (const QString& word : call.words)
    if (isOption(word) && !known.contains(word, Qt::CaseInsensitive))
      lines.append(u"Option %1 has no meaning here and was passed over"_s.arg(repeated(word)));
}

// Views look at the changes themselves when they are asked for; a full-text index is made only on demand.
QString updateFullText(Database& database, bool makeAnew) {
  if (makeAnew) {
    dropFullTextIndex(database);
    createFullTextIndex(database);
    return u"the full-text index was made anew"_s;
  }
  if (!hasFullTextIndex(database)) return u"there is no full-text index"_s;
  refreshFullTextIndex(database);
  return u"the full-text index is up to date"_s;
}

}  // namespace

Lines compactCommand(const ConsoleCall& call) {
  Lines lines = onDatabases(call, u"Compact"_s, [](Database& database) {
    const qint64 saved = compact(database);
    return u"%1 bytes recovered, %2 bytes left"_s.arg(saved).arg(database.size());
  });
  addPassedOver(call, {}, lines);
  return lines;
}

Lines updateCommand(const ConsoleCall& call) {
  const QStringList known{u"-x"_s};
  const bool makeFullText = call.words.contains(known.first(), Qt::CaseInsensitive);
  Lines lines = onDatabases(call, u"Updall"_s,
                            [&](Database& database) { return updateFullText(database, makeFullText); });
  addPassedOver(call, known, lines);
  return lines;
}

}  // namespace lens
