// The bulk tool's search by words in growing numbers of indexed databases, beside the same search in a
// quarter of them, four times, and beside SQLite that opens each file and asks its index.
#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>

#include "bulk/database_searches.h"
#include "desk.h"
#include "embedded/search/full_text.h"
#include "ratio.h"
#include "raw_sqlite.h"

namespace lens::bench {
namespace {

const Ratio kSearching("search in 200 indexed databases beside 4 times 50", "BM_SearchDatabases/200",
                       "BM_SearchDatabasesFourTimes/50", 1.3);
const Ratio kAsking("search in 200 indexed databases beside their indexes asked raw",
                    "BM_SearchDatabases/200", "BM_AskIndexes/200");

constexpr int kLetters = 200;

// So many databases of the same letters, every other of which holds the word.
struct IndexedDatabases : Desk {
  explicit IndexedDatabases(int count) {
    const QString first = makeFirst();
    for (int i = 0; i < count; ++i) {
      names += QStringLiteral("base%1.nsf").arg(i);
      paths += QDir(workspace->dataDirectory()).filePath(names.last());
      if (!QFile::copy(first, paths.last())) std::abort();
    }
  }
  // Closed again, so that the file is all of it.
  QString makeFirst() {
    const auto store = workspace->createDatabase(QString(), QStringLiteral("first.nsf"), {});
    {
      Database::Transaction transaction(*store);
      for (int number = 0; number < kLetters; ++number) {
        Note note;
        note.add(QStringLiteral("Form"), itemflag::Summary, textValue(u"Memo"));
        note.add(
            QStringLiteral("Subject"), itemflag::Summary,
            textValue(QStringLiteral("letter %1 %2").arg(number % 2 ? u"harbour" : u"meadow").arg(number)));
        store->notes().save(note);
      }
      transaction.commit();
    }
    createFullTextIndex(*store);
    return store->path();
  }

  QStringList names, paths;
};

void searchDatabases(benchmark::State& state, int times) {
  IndexedDatabases databases{int(state.range(0))};
  databases.start(databases.save({}));
  databases.application->cmdCMRcoll_Click();
  ReplicTool& tool = databases.application->bulk();
  DatabaseSearches searches(tool.desk);
  tool.window.lstDBNames->clear();
  for (const QString& name : std::as_const(databases.names)) tool.window.lstDBNames->addItem(name);
  for (int row = 0; row < databases.names.size(); ++row) tool.window.lstDBNames->setSelected(row, true);
  tool.window.lstServer->setText(QStringLiteral("Local"));
  tool.window.txtTemplale->setText(QStringLiteral("harbour"));
  for (auto _ : state)
    for (int i = 0; i < times; ++i) searches.cmdSearch_Click();
  if (tool.window.lstDBNamesDest->listCount() != state.range(0)) state.SkipWithError("hits are missing");
}

void BM_SearchDatabases(benchmark::State& state) {
  searchDatabases(state, 1);
}
void BM_SearchDatabasesFourTimes(benchmark::State& state) {
  searchDatabases(state, 4);
}
BENCHMARK(BM_SearchDatabases)->Arg(50)->Arg(100)->Arg(200)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SearchDatabasesFourTimes)->Arg(50)->UseRealTime()->Unit(benchmark::kMillisecond);

void BM_AskIndexes(benchmark::State& state) {
  const IndexedDatabases databases{int(state.range(0))};
  for (auto _ : state)
    for (const QString& path : databases.paths) {
      const Raw raw(path,
                    "SELECT rowid FROM full_text WHERE full_text MATCH 'words : harbour' ORDER BY rank");
      int found = 0;
      while (sqlite3_step(raw.statement()) == SQLITE_ROW) ++found;
      if (found != kLetters / 2) state.SkipWithError("other documents were found");
    }
}
BENCHMARK(BM_AskIndexes)->Arg(200)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lens::bench
