// Views: the first build of a sorted view beside a search over the same documents, and bringing a view up to
// date after one change in a small and in a large database.
#include <benchmark/benchmark.h>

#include <QTemporaryDir>
#include <map>

#include "embedded/dxl/view_elements.h"
#include "embedded/format/source_formula.h"
#include "embedded/search/selection.h"
#include "embedded/store/database.h"
#include "embedded/views/view_index.h"
#include "ratio.h"

namespace lens::bench {
namespace {

const Ratio kBuild("first build of a sorted view on 100,000 documents, beside a search", "BM_ViewFirstBuild",
                   "BM_ViewSearch", 3);
const Ratio kRefresh("refresh after one change: 100,000 documents beside 10,000", "BM_ViewRefresh/100000",
                     "BM_ViewRefresh/10000", 1.5);

constexpr int kOneInSoMany = 50;  // has an "x" in its subject

Note document(int number) {
  Note note;
  note.add(QStringLiteral("Form"), itemflag::Summary, textValue(u"Memo"));
  note.add(QStringLiteral("Subject"), itemflag::Summary,
           textValue(QStringLiteral("Letter %1 to %2")
                         .arg(quint32(number) * 2654435761u)
                         .arg(number % kOneInSoMany == 0 ? u"Max" : u"somebody")));
  note.add(QStringLiteral("From"), itemflag::Summary | itemflag::Names, textValue(u"CN=Ada Byron/O=Tessaly"));
  note.add(QStringLiteral("PostedDate"), itemflag::Summary, timeValue(timeDateNow()));
  note.add(QStringLiteral("Size"), itemflag::Summary, numberValue(number));
  note.add(QStringLiteral("Body"), 0, rawValue(itemtype::RichText, QByteArray(700, 'y')));
  return note;
}

Note sortedView() {
  ViewColumn subject, size;
  subject.item = QStringLiteral("Subject");
  subject.sorted = true;
  size.item = QStringLiteral("Size");
  Note note;
  note.header.noteClass = noteclass::View;
  note.add(QStringLiteral("$TITLE"), itemflag::Summary, textValue(u"By subject"));
  note.add(QStringLiteral("$Formula"), itemflag::Summary, sourceFormulaValue(u"SELECT Form = \"Memo\""));
  note.add(QStringLiteral("$ViewFormat"), itemflag::Summary, viewFormatValue({subject, size}));
  note.add(QStringLiteral("$Collation"), itemflag::Summary, collationValue({subject, size}));
  return note;
}

struct Filled {
  QTemporaryDir directory;
  std::shared_ptr<Database> database;
  NoteId view;
  NoteId some;  // a document without an "x" in its subject

  explicit Filled(int count)
      : database(Database::create(directory.filePath(QStringLiteral("views.nsf")), {})) {
    Database::Transaction transaction(*database);
    for (int i = 0; i < count; ++i) {
      Note note = document(i);
      database->notes().save(note);
      if (i == count / 2 + 1) some = note.header.id;
    }
    Note note = sortedView();
    database->notes().save(note);
    view = note.header.id;
    transaction.commit();
  }
};

// Made once for all repetitions.
Filled& filled(int count) {
  static std::map<int, std::unique_ptr<Filled>> instances;
  std::unique_ptr<Filled>& instance = instances[count];
  if (!instance) instance = std::make_unique<Filled>(count);
  return *instance;
}

void BM_ViewFirstBuild(benchmark::State& state) {
  Filled& data = filled(100000);
  for (auto _ : state) {
    state.PauseTiming();
    dropViewIndexes(*data.database);
    state.ResumeTiming();
    ViewIndex index(*data.database, data.view);
    index.refresh();
    if (index.count() != 100000) state.SkipWithError("rows are missing");
  }
}
BENCHMARK(BM_ViewFirstBuild)->UseRealTime()->Unit(benchmark::kMillisecond);

void BM_ViewSearch(benchmark::State& state) {
  Filled& data = filled(100000);
  formula::MachineEnvironment environment;
  const auto formula = compiledFormula(u"Form = \"Memo\" & @Contains(Subject; \"x\")", environment);
  for (auto _ : state)
    if (selectDocuments(*data.database, {formula, environment}).size() != 100000 / kOneInSoMany)
      state.SkipWithError("other documents were found");
}
BENCHMARK(BM_ViewSearch)->UseRealTime()->Unit(benchmark::kMillisecond);

void BM_ViewRefresh(benchmark::State& state) {
  Filled& data = filled(int(state.range(0)));
  ViewIndex index(*data.database, data.view);
  index.refresh();
  Note note;
  data.database->notes().read(data.some, note);
  quint32 turn = 0;
  for (auto _ : state) {
    state.PauseTiming();
    note.find(u"Subject")->value = textValue(QStringLiteral("Letter %1").arg(++turn * 2654435761u));
    data.database->notes().save(note);
    state.ResumeTiming();
    index.refresh();
  }
}
BENCHMARK(BM_ViewRefresh)->Arg(10000)->Arg(100000)->UseRealTime();

}  // namespace
}  // namespace lens::bench
