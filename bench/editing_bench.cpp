// Editing: one change in 10,000 documents beside SQLite that reads and durably writes the same rows, and how
// marking and searching grow.
#include <benchmark/benchmark.h>

#include "client/client_window.h"
#include "desk.h"
#include "embedded/format/packed_items.h"
#include "embedded/richtext/rich_text.h"
#include "ratio.h"
#include "raw_sqlite.h"

namespace lens::bench {
namespace {

constexpr int kDocuments = 10'000;

const Ratio kDelete("delete an item in 10,000 documents", "BM_Collection/1", "BM_ReadAndWriteRows", 2.5);
const Ratio kAdd("add an item to 10,000 documents", "BM_Collection/2", "BM_ReadAndWriteRows", 2.5);
const Ratio kOverwrite("overwrite an item in 10,000 documents", "BM_Collection/3", "BM_ReadAndWriteRows",
                       2.5);
const Ratio kReplace("replace in all items of 10,000 documents", "BM_Collection/4", "BM_ReadAndWriteRows",
                     2.5);
const Ratio kDeleteMarked("delete 10,000 marked documents of 20,000", "BM_DeleteMarked", "BM_DeleteRows", 3);
const Ratio kMark("10,000 hits marked in 1 MB beside 4 times 2,500 in 250 KB", "BM_Mark/10000",
                  "BM_MarkFourTimes/2500", 1.3);
const Ratio kMiss("search over 5,000 rows beside 4 times 1,250", "BM_SearchRows/5000",
                  "BM_SearchRowsFourTimes/1250", 1.3);
const Ratio kStep("5,000 hits stepped through beside 4 times 1,250", "BM_StepThroughList/5000",
                  "BM_StepThroughListFourTimes/1250", 1.3);

Note letter(int number) {
  Note note;
  note.add(QStringLiteral("Form"), itemflag::Summary, textValue(u"Memo"));
  note.add(QStringLiteral("Subject"), itemflag::Summary, textValue(QStringLiteral("Letter %1").arg(number)));
  note.add(QStringLiteral("From"), itemflag::Summary | itemflag::Names, textValue(u"CN=Ada Byron/O=Tessaly"));
  note.add(QStringLiteral("SendTo"), itemflag::Summary | itemflag::Names, textValue(u"CN=Carl Dorn/O=Acme"));
  note.add(QStringLiteral("PostedDate"), itemflag::Summary, timeValue(timeDateNow()));
  note.add(QStringLiteral("Size"), itemflag::Summary, numberValue(number));
  note.add(QStringLiteral("State"), itemflag::Summary, textValue(u"odd"));
  note.add(QStringLiteral("Remark"), 0, textValue(QString(400, u'x')));
  note.add(QStringLiteral("Note"), 0, textValue(QString(200, u'z')));
  note.add(QStringLiteral("Body"), 0, rawValue(itemtype::RichText, QByteArray(1500, 'y')));
  return note;
}

// --- The collection ------------------------------------------------------------------------------------

struct Collection : Desk {
  Collection() {
    QVector<NoteId> ids;
    {
      Database::Transaction transaction(*database);
      for (int i = 0; i < kDocuments; ++i) ids.push_back(save(letter(i)));
      transaction.commit();
    }
    start(ids.front());
    form().idList->clear();
    for (const NoteId id : ids) form().idList->addItem(id.hexText().rightJustified(8, u'0'));
  }
};

// Every run changes every document: its values are others each time.
void change(Collection& desk, int mode, int turn) {
  CollectionEngine& engine = desk.application->collection;
  const QString text = QString::number(turn);
  switch (mode) {
    case CollectionEngine::Delete:
      return engine.procCollection(mode, QStringLiteral("Gone"), QString());
    case CollectionEngine::Add:
      desk.form().txtFieldContent->setText(QStringLiteral("new"));
      return engine.procCollection(mode, QStringLiteral("Added%1").arg(turn), QStringLiteral("1280"));
    case CollectionEngine::Overwrite:
      return engine.procCollection(mode, QStringLiteral("Subject"), QStringLiteral("turn ") + text);
    default:
      desk.form().txtSearch->setText(turn % 2 ? QStringLiteral("odd") : QStringLiteral("even"));
      desk.form().txtReplace->setText(turn % 2 ? QStringLiteral("even") : QStringLiteral("odd"));
      return engine.procCollection(mode, QString(), QString());
  }
}

void BM_Collection(benchmark::State& state) {
  static int turn = 0;
  Collection desk;
  const qint64 before = desk.database->versions().changeSequence();
  int runs = 0;
  for (auto _ : state) {
    change(desk, int(state.range(0)), turn = 2 * (turn / 2) + 1);
    ++runs;
  }
  if (desk.database->versions().changeSequence() - before < qint64(runs) * kDocuments)
    state.SkipWithError("documents were not changed");
}
BENCHMARK(BM_Collection)
    ->DenseRange(1, 4)
    ->Iterations(1)
    ->Repetitions(3)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// The same rows read and written, each write durable before the next.
void BM_ReadAndWriteRows(benchmark::State& state) {
  Collection desk;
  const Raw read(
      desk.path(),
      "SELECT id, class, unid, parent, sequence, sequence_time, created, modified, added, accessed,"
      " items FROM note WHERE id = ? AND state = 0");
  const Raw write(desk.path(),
                  "UPDATE note SET sequence = ?, sequence_time = ?, created = ?, modified = ?, added = ?,"
                  " accessed = ?, items = ?, change = ? WHERE id = ?");
  qint64 count = desk.database->versions().changeSequence();
  for (auto _ : state)
    for (const NoteSummary& note : desk.database->notes().list(noteclass::Document)) {
      sqlite3_bind_int64(read.statement(), 1, note.id.value());
      if (sqlite3_step(read.statement()) != SQLITE_ROW) state.SkipWithError("a row is missing");
      QByteArray items(static_cast<const char*>(sqlite3_column_blob(read.statement(), 10)),
                       sqlite3_column_bytes(read.statement(), 10));
      sqlite3_reset(read.statement());
      items[items.size() - 1] = char(++count);
      for (int column = 1; column <= 6; ++column) sqlite3_bind_int64(write.statement(), column, count);
      sqlite3_bind_blob64(write.statement(), 7, items.constData(), sqlite3_uint64(items.size()),
                          SQLITE_STATIC);
      sqlite3_bind_int64(write.statement(), 8, count);
      sqlite3_bind_int64(write.statement(), 9, note.id.value());
      if (sqlite3_step(write.statement()) != SQLITE_DONE) state.SkipWithError("a row was not written");
      sqlite3_reset(write.statement());
    }
}
BENCHMARK(BM_ReadAndWriteRows)->Iterations(1)->Repetitions(3)->UseRealTime()->Unit(benchmark::kMillisecond);

// --- Marked rows ---------------------------------------------------------------------------------------

constexpr int kMarked = 10'000, kListed = 20'000;

// The client's window shows all documents; half of them are marked in the list.
struct Marked : Desk {
  Marked() {
    {
      Database::Transaction transaction(*database);
      for (int i = 0; i < kListed; ++i) ids.push_back(save(letter(i)));
      transaction.commit();
    }
    start(ids.front());
    client = std::make_unique<ClientWindow>(workspace);
    client->show();
    ListBox& list = *form().idList;
    list.clear();
    for (const NoteId id : ids) list.addItem(id.hexText().rightJustified(8, u'0'));
    for (int row = 0; row < kMarked; ++row) list.setSelected(row, true);
  }
  QVector<NoteId> ids;
  std::unique_ptr<ClientWindow> client;
};

void BM_DeleteMarked(benchmark::State& state) {
  Marked desk;
  for (auto _ : state) {
    desk.application->deletion.cmdDelete_Click();
    QCoreApplication::processEvents();
  }
  if (desk.form().idList->listCount() != kListed - kMarked) state.SkipWithError("rows are left");
}
BENCHMARK(BM_DeleteMarked)->Iterations(1)->Repetitions(3)->UseRealTime()->Unit(benchmark::kMillisecond);

// The same rows made stubs, each durable before the next.
void BM_DeleteRows(benchmark::State& state) {
  Marked desk;
  const Raw write(desk.path(),
                  "UPDATE note SET state = 1, modified = ?, change = ?, items = x'' WHERE id = ?");
  qint64 count = desk.database->versions().changeSequence();
  for (auto _ : state)
    for (int row = 0; row < kMarked; ++row) {
      sqlite3_bind_int64(write.statement(), 1, ++count);
      sqlite3_bind_int64(write.statement(), 2, count);
      sqlite3_bind_int64(write.statement(), 3, desk.ids[row].value());
      if (sqlite3_step(write.statement()) != SQLITE_DONE) state.SkipWithError("a row was not written");
      sqlite3_reset(write.statement());
    }
}
BENCHMARK(BM_DeleteRows)->Iterations(1)->Repetitions(3)->UseRealTime()->Unit(benchmark::kMillisecond);

// --- Marks ---------------------------------------------------------------------------------------------

// A body with so many hits, a hundred bytes each.
void mark(benchmark::State& state, int times) {
  Desk desk;
  RichText text;
  QString content;
  for (int i = 0; i < state.range(0); ++i)
    content += QStringLiteral("pump ") + QString(94, u'.') + (i % 10 == 9 ? u'\n' : u' ');
  text.appendText(content);
  Note note = letter(1);
  note.find(u"Body")->value = rawValue(itemtype::RichText, text.toBytes());
  desk.start(desk.save(note));
  desk.form().txtSearch->setText(QStringLiteral("pump"));
  int row = 0;
  while (!desk.form().fldList->list(row).startsWith(u"Body")) ++row;
  for (auto _ : state)
    for (int i = 0; i < times; ++i) desk.form().fldList->setSelected(row, true);
  const QString shown = desk.form().txtFieldContent->text();
  if (shown.count(u"pump") != state.range(0)) state.SkipWithError("the body is not shown");
}

void BM_Mark(benchmark::State& state) {
  mark(state, 1);
}
void BM_MarkFourTimes(benchmark::State& state) {
  mark(state, 4);
}
BENCHMARK(BM_Mark)->Arg(2500)->Arg(5000)->Arg(10000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MarkFourTimes)->Arg(2500)->Iterations(1)->Unit(benchmark::kMillisecond);

// --- Searches ------------------------------------------------------------------------------------------

// A document of so many items; the text stands in the last one, so each search looks at all of them.
void searchRows(benchmark::State& state, int times) {
  Desk desk;
  const int items = int(state.range(0));
  Note note;
  for (int i = 0; i < items; ++i)
    note.add(QStringLiteral("Field%1").arg(i), itemflag::Summary,
             textValue(i + 1 < items ? QStringLiteral("value %1").arg(i) : QStringLiteral("needle")));
  desk.start(desk.save(note));
  desk.form().txtSearch->setText(QStringLiteral("needle"));
  for (auto _ : state)
    for (int i = 0; i < times; ++i) desk.form().cmdSearch->raiseClick();
  if (desk.form().txtFieldContent->text() != u"needle") state.SkipWithError("the hit was not found");
}

void BM_SearchRows(benchmark::State& state) {
  searchRows(state, 1);
}
void BM_SearchRowsFourTimes(benchmark::State& state) {
  searchRows(state, 4);
}
BENCHMARK(BM_SearchRows)->Arg(1250)->Arg(2500)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SearchRowsFourTimes)->Arg(1250)->Unit(benchmark::kMillisecond);

// Every row of the collection is a hit.
void stepThroughList(benchmark::State& state, int times) {
  Desk desk;
  const int rows = int(state.range(0));
  NoteId first;
  {
    Database::Transaction transaction(*desk.database);
    first = desk.save(letter(0));
    for (int i = 1; i < rows; ++i) desk.save(letter(i));
    transaction.commit();
  }
  desk.start(first);
  desk.form().idList->clear();
  for (int i = 0; i < rows; ++i)
    desk.form().idList->addItem(QStringLiteral("pump # ") +
                                NoteId(first.value() + 4 * quint32(i)).hexText().rightJustified(8, u'0'));
  desk.form().txtSearch->setText(QStringLiteral("pump"));
  desk.form().chkProfile->setValue(1);
  for (auto _ : state)
    for (int i = 0; i < times * rows; ++i) desk.form().cmdSearch->raiseClick();
  if (desk.form().idList->listIndex() != rows - 1) state.SkipWithError("the last row was not reached");
}

void BM_StepThroughList(benchmark::State& state) {
  stepThroughList(state, 1);
}
void BM_StepThroughListFourTimes(benchmark::State& state) {
  stepThroughList(state, 4);
}
BENCHMARK(BM_StepThroughList)
    ->Arg(1250)
    ->Arg(2500)
    ->Arg(5000)
    ->Iterations(1)
    ->Repetitions(3)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StepThroughListFourTimes)
    ->Arg(1250)
    ->Iterations(1)
    ->Repetitions(3)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lens::bench
