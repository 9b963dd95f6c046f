// The first build of a view in the copy of a real database, whose formulas are there in compiled form only,
// beside the same view with its formulas as source in the same copy.
#include <benchmark/benchmark.h>

#include <QTemporaryDir>

#include "embedded/dxl/view_elements.h"
#include "embedded/format/source_formula.h"
#include "embedded/formula/compiled/compiled_writer.h"
#include "embedded/nsf/nsf_copy.h"
#include "embedded/views/view_index.h"
#include "ratio.h"
#include "real_letters.h"

namespace lens::bench {
namespace {

using namespace made;

constexpr int kLetters = 20'000;

const Ratio kRealView("first build of a view of a real database, beside one with source", "BM_RealViewBuild",
                      "BM_SourceViewBuild", 1.1);

const QStringView kSelection =
    u"SELECT Form = \"Memo\" & @IsAvailable(PostedDate) & !@Contains(Subject; \"draft\")";

QVector<ViewColumn> columnsOf(bool compiled) {
  const formula::MachineEnvironment machine;
  QVector<ViewColumn> columns;
  const auto add = [&](const QString& item, QStringView source) {
    ViewColumn column;
    column.item = item;
    if (!source.isEmpty())
      column.formula =
          compiled ? formula::writeCompiledColumn(source, item, machine).bytes : sourceFormula(source);
    columns.push_back(column);
  };
  add(QStringLiteral("$0"), u"@If(Size > 100; \"large\"; \"small\")");
  add(QStringLiteral("Subject"), {});
  add(QStringLiteral("$1"), u"@Name([CN]; From) + \", \" + @Implode(Categories; \" \")");
  columns.first().sorted = true;
  return columns;
}

// Values with their type words.
QByteArray selectionValue(bool compiled) {
  if (!compiled) return sourceFormulaValue(kSelection);
  QVector<formula::WrittenColumn> written;
  for (const ViewColumn& column : columnsOf(true)) written.push_back({column.item, column.formula});
  return rawValue(itemtype::Formula,
                  formula::writeCompiledSelection(kSelection, written, formula::MachineEnvironment()).bytes);
}

MadeNote realView() {
  MadeNote note = document(kLetters + 1, "none");
  note.noteClass = noteclass::View;
  note.items = {
      {"$TITLE", itemtype::Text, flag::Summary, "By size"},
      {"$FORMULA", itemtype::Formula, flag::Summary, selectionValue(true).sliced(2)},
      {"$VIEWFORMAT", itemtype::ViewFormat, flag::Summary, viewFormatValue(columnsOf(true)).sliced(2)},
      {"$COLLATION", itemtype::Collation, flag::Summary, collationValue(columnsOf(true)).sliced(2)}};
  return note;
}

struct RealCopy {
  QTemporaryDir directory;
  std::shared_ptr<Database> database;
  NoteId real, source;

  RealCopy() {
    const QString file = directory.filePath(QStringLiteral("real.nsf")),
                  copy = directory.filePath(QStringLiteral("copy.nsf"));
    MadeDatabase described = realLetters(kLetters);
    real = NoteId(described.add(realView()));
    makeFile(described).write(file);
    QString reason;
    NsfDatabase read(NsfFileSource::open(file, reason));
    copyNsf(read, copy);
    database = Database::open(copy);
    Note view;
    database->notes().read(real, view);
    view.header.id = {};
    view.header.unid = Unid::create();
    view.find(u"$FORMULA")->value = selectionValue(false);
    view.find(u"$VIEWFORMAT")->value = viewFormatValue(columnsOf(false));
    database->notes().save(view);
    source = view.header.id;
  }
};

RealCopy& realCopy() {
  static RealCopy copy;
  return copy;
}

void buildView(benchmark::State& state, NoteId view) {
  Database& database = *realCopy().database;
  for (auto _ : state) {
    state.PauseTiming();
    dropViewIndexes(database);
    state.ResumeTiming();
    ViewIndex index(database, view);
    index.refresh();
    if (index.count() != kLetters) state.SkipWithError("rows are missing");
  }
}

void BM_RealViewBuild(benchmark::State& state) {
  buildView(state, realCopy().real);
}
BENCHMARK(BM_RealViewBuild)->UseRealTime()->Unit(benchmark::kMillisecond);

void BM_SourceViewBuild(benchmark::State& state) {
  buildView(state, realCopy().source);
}
BENCHMARK(BM_SourceViewBuild)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lens::bench
