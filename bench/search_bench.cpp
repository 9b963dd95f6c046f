// Searches against raw SQLite on the same file: by formula against a scan that reads the same rows, by words
// against the query that SQLite's own index answers.
#include <benchmark/benchmark.h>

#include <QTemporaryDir>

#include "embedded/search/full_text.h"
#include "embedded/search/selection.h"
#include "ratio.h"
#include "raw_sqlite.h"

namespace lens::bench {
namespace {
using namespace Qt::StringLiterals;

constexpr int kDocuments = 100'000;

const Ratio kFormula("formula search over 100,000 documents", "BM_SearchByFormula", "BM_ScanRows", 2.5);

const Ratio kWords("full-text search over 100,000 documents", "BM_SearchByWords", "BM_MatchWords", 1.5);
const Ratio kField("full-text search in one field", "BM_SearchByWordsOfField", "BM_MatchWordsOfField", 1.5);

// About one kilobyte; one in a hundred is a memo on pumps.
Note document(int number) {
  static const QStringList subjects{u"Harbour dues"_s, u"Minutes of the board"_s, u"Travel to Oslo"_s,
                                    u"Spare parts"_s, u"Invoice overdue"_s};
  const bool aboutPumps = number % 50 == 7;
  Note note;
  note.add(u"Form"_s, itemflag::Summary, textValue(number % 2 ? u"Memo" : u"Task"));
  note.add(u"From"_s, itemflag::Summary | itemflag::Names,
           textValue(u"CN=Person %1/O=Acme"_s.arg(number % 977)));
  note.add(u"SendTo"_s, itemflag::Summary | itemflag::Names,
           textListValue({u"CN=Carl Dorn/O=Acme"_s, u"CN=Eva Falk/O=Acme"_s}));
  note.add(u"PostedDate"_s, itemflag::Summary, timeValue(timeDateNow()));
  note.add(u"Subject"_s, itemflag::Summary,
           textValue(u"%1, letter %2%3"_s.arg(subjects[number % subjects.size()])
                         .arg(number)
                         .arg(aboutPumps ? u" on the pump house"_s : QString())));
  note.add(u"Amount"_s, itemflag::Summary, numberValue(number));
  note.add(u"Categories"_s, itemflag::Summary, textListValue({u"Plant"_s, u"North"_s}));
  note.add(u"Remark"_s, 0, textValue(u"word%1 %2"_s.arg(number % 5003).arg(QString(80, u'x'))));
  note.add(u"Body"_s, 0, rawValue(itemtype::RichText, QByteArray(400, 'y')));
  return note;
}

// Made at the first use, and gone with the process.
const QString& path() {
  static const QTemporaryDir directory;
  static const QString file = [] {
    const QString path = directory.filePath(u"search.nsf"_s);
    const auto database = Database::create(path, {});
    Database::Transaction transaction(*database);
    for (int i = 0; i < kDocuments; ++i) {
      Note note = document(i);
      database->notes().save(note);
    }
    transaction.commit();
    return path;
  }();
  return file;
}

constexpr char kRows[] = "SELECT id, items FROM note WHERE state = 0 AND class = 1";

// The documents that hold both words, found in the raw bytes.
qsizetype expectedFinds() {
  const Raw raw(path(), kRows);
  qsizetype finds = 0;
  while (sqlite3_step(raw.statement()) == SQLITE_ROW) {
    const QByteArrayView items(static_cast<const char*>(sqlite3_column_blob(raw.statement(), 1)),
                               sqlite3_column_bytes(raw.statement(), 1));
    finds += items.contains("Memo") && items.contains("pump house");
  }
  return finds;
}

void BM_SearchByFormula(benchmark::State& state) {
  const auto database = Database::open(path());
  formula::MachineEnvironment environment;
  const auto formula = compiledFormula(u"Form = \"Memo\" & @Contains(Subject; \"pump house\")", environment);
  const qsizetype expected = expectedFinds();
  for (auto _ : state) {
    const QVector<NoteId> found = selectDocuments(*database, {formula, environment});
    if (found.isEmpty() || found.size() != expected) state.SkipWithError("other documents were found");
  }
}
BENCHMARK(BM_SearchByFormula)->UseRealTime()->Unit(benchmark::kMillisecond);

void BM_ScanRows(benchmark::State& state) {
  const Raw raw(path(), kRows);
  for (auto _ : state) {
    int rows = 0;
    unsigned touched = 0;
    while (sqlite3_step(raw.statement()) == SQLITE_ROW) {
      const auto* const items = static_cast<const unsigned char*>(sqlite3_column_blob(raw.statement(), 1));
      const int size = sqlite3_column_bytes(raw.statement(), 1);
      touched += unsigned(sqlite3_column_int64(raw.statement(), 0));
      for (int at = 0; at < size; at += 64) touched += items[at];
      ++rows;
    }
    sqlite3_reset(raw.statement());
    benchmark::DoNotOptimize(touched);
    if (rows != kDocuments) state.SkipWithError("rows are missing");
  }
}
BENCHMARK(BM_ScanRows)->UseRealTime()->Unit(benchmark::kMillisecond);

// The index of the same database, made once for all that asks it.
const std::shared_ptr<Database>& indexed() {
  static const std::shared_ptr<Database> database = [] {
    const auto opened = Database::open(path());
    createFullTextIndex(*opened);
    return opened;
  }();
  return database;
}

void searchByWords(benchmark::State& state, QStringView query, qsizetype expected) {
  const auto& database = indexed();
  for (auto _ : state) {
    const QVector<NoteId> found = fullTextSearch(*database, query, 0);
    if (found.size() != expected) state.SkipWithError("other documents were found");
  }
}

// The peer: the index that is there, asked in its own language.
void matchWords(benchmark::State& state, const char* expression, qsizetype expected) {
  indexed();
  const Raw raw(path(), "SELECT rowid FROM full_text WHERE full_text MATCH ? ORDER BY rank");
  sqlite3_bind_text(raw.statement(), 1, expression, -1, SQLITE_STATIC);
  for (auto _ : state) {
    qsizetype found = 0;
    for (; sqlite3_step(raw.statement()) == SQLITE_ROW; ++found)
      benchmark::DoNotOptimize(sqlite3_column_int64(raw.statement(), 0));
    sqlite3_reset(raw.statement());
    if (found != expected) state.SkipWithError("other documents were found");
  }
}

void BM_SearchByWords(benchmark::State& state) {
  searchByWords(state, u"memo and \"pump house\"", expectedFinds());
}
BENCHMARK(BM_SearchByWords)->UseRealTime()->Unit(benchmark::kMillisecond);

void BM_MatchWords(benchmark::State& state) {
  matchWords(state, "words : memo AND words : pump + house", expectedFinds());
}
BENCHMARK(BM_MatchWords)->UseRealTime()->Unit(benchmark::kMillisecond);

void BM_SearchByWordsOfField(benchmark::State& state) {
  searchByWords(state, u"FIELD Subject CONTAINS \"board letter\"", kDocuments / 5);
}
BENCHMARK(BM_SearchByWordsOfField)->UseRealTime()->Unit(benchmark::kMillisecond);

void BM_MatchWordsOfField(benchmark::State& state) {
  // Subject is the fifth field that the index met; its words carry that number.
  matchWords(state, "fields : \"\uE0005\uE000board\" + \"\uE0005\uE000letter\"", kDocuments / 5);
}
BENCHMARK(BM_MatchWordsOfField)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lens::bench
