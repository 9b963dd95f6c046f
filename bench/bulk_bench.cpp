// The bulk tool: a view of 10,000 documents copied with two marked fields, beside SQLite that reads each row
// and durably writes its copy twice, once as it is and once changed.
#include <benchmark/benchmark.h>

#include "bulk/copy_move.h"
#include "desk.h"
#include "embedded/dxl/view_elements.h"
#include "embedded/format/source_formula.h"
#include "ratio.h"
#include "raw_sqlite.h"

namespace lens::bench {
namespace {

constexpr int kCopied = 10'000;

const Ratio kCopy("copy 10,000 documents with two marked fields", "BM_CopyView", "BM_CopyRows", 2.5);

Note copiedLetter(int number) {
  Note note;
  note.add(QStringLiteral("Form"), itemflag::Summary, textValue(u"Memo"));
  note.add(QStringLiteral("Subject"), itemflag::Summary, textValue(QStringLiteral("Letter %1").arg(number)));
  note.add(QStringLiteral("From"), itemflag::Summary | itemflag::Names, textValue(u"CN=Ada Byron/O=Tessaly"));
  note.add(QStringLiteral("Kinds"), itemflag::Summary,
           textListValue({QStringLiteral("old"), QStringLiteral("pump"), QStringLiteral("old valve")}));
  note.add(QStringLiteral("PostedDate"), itemflag::Summary, timeValue(timeDateNow()));
  note.add(QStringLiteral("Size"), itemflag::Summary, numberValue(number));
  note.add(QStringLiteral("Remark"), 0, textValue(QString(400, u'x')));
  note.add(QStringLiteral("Note"), 0, textValue(QString(200, u'z')));
  note.add(QStringLiteral("Body"), 0, rawValue(itemtype::RichText, QByteArray(1500, 'y')));
  return note;
}

Note allBySubject() {
  ViewColumn subject;
  subject.item = QStringLiteral("Subject");
  subject.sorted = true;
  Note note;
  note.header.noteClass = noteclass::View;
  note.add(QStringLiteral("$TITLE"), itemflag::Summary, textValue(u"All"));
  note.add(QStringLiteral("$Formula"), itemflag::Summary, sourceFormulaValue(u"SELECT Form = \"Memo\""));
  note.add(QStringLiteral("$ViewFormat"), itemflag::Summary, viewFormatValue({subject}));
  note.add(QStringLiteral("$Collation"), itemflag::Summary, collationValue({subject}));
  return note;
}

// A full source, an empty target, and the window with both chosen.
struct Copying : Desk {
  Copying() {
    NoteId first;
    {
      Database::Transaction transaction(*database);
      save(allBySubject());
      first = save(copiedLetter(0));
      for (int i = 1; i < kCopied; ++i) save(copiedLetter(i));
      transaction.commit();
    }
    target = workspace->createDatabase(QString(), QStringLiteral("b.nsf"), {});
    start(first);
    tool = std::make_unique<Tool>(*this);
  }

  struct Tool {
    explicit Tool(Copying& of)
        : databases(state, of.host),
          desk{window,
               state,
               *of.notes,
               of.host,
               of.application->routines,
               of.application->sessions,
               of.application->servers,
               databases},
          copyMove(desk) {
      state.gSession = NotesSession::ofClient(*of.notes);
      choose(*window.lstViewNames, QStringLiteral("All"));
      choose(*window.lstDBNames, QStringLiteral("a.nsf"));
      choose(*window.lstDBNamesDest, QStringLiteral("b.nsf"));
      choose(*window.fldList, QStringLiteral("Subject: Letter 1"));
      choose(*window.fldList, QStringLiteral("Kinds: old;pump"));
      for (int row = 0; row < window.fldList->listCount(); ++row) window.fldList->setSelected(row, true);
      window.chkFields->setValue(1);
      window.txtFind->setText(QStringLiteral("old"));
      window.txtReplace->setText(QStringLiteral("new"));
      window.show();
    }
    static void choose(ListBox& list, const QString& row) {
      list.addItem(row);
      list.setSelected(0, true);
    }
    FrmReplic window;
    Globals state;
    DatabaseLists databases;
    ReplicDesk desk;
    CopyMove copyMove;
  };

  std::shared_ptr<Database> target;
  std::unique_ptr<Tool> tool;
};

void BM_CopyView(benchmark::State& state) {
  Copying desk;
  for (auto _ : state) desk.tool->copyMove.cmdCopy_Click();
  if (desk.target->notes().noteCount(noteclass::Document) != kCopied)
    state.SkipWithError("documents were not copied");
}
BENCHMARK(BM_CopyView)->Iterations(1)->Repetitions(3)->UseRealTime()->Unit(benchmark::kMillisecond);

// The same rows read, put into a file with the same tables and indexes, and written once more, each write
// durable before the next.
void BM_CopyRows(benchmark::State& state) {
  Copying desk;
  const Raw read(
      desk.path(),
      "SELECT id, class, unid, parent, sequence, sequence_time, created, modified, added, accessed,"
      " items FROM note WHERE id = ? AND state = 0");
  const Raw insert(desk.target->path(),
                   "INSERT INTO note (id, class, unid, parent, sequence, sequence_time, created, modified, "
                   "added, accessed,"
                   " state, change, items) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 0, ?, ?)");
  const Raw write(desk.target->path(),
                  "UPDATE note SET sequence = ?, sequence_time = ?, created = ?, modified = ?, added = ?,"
                  " accessed = ?, items = ?, change = ? WHERE id = ?");
  qint64 count = 1'000;
  for (auto _ : state)
    for (const NoteSummary& note : desk.database->notes().list(noteclass::Document)) {
      sqlite3_bind_int64(read.statement(), 1, note.id.value());
      if (sqlite3_step(read.statement()) != SQLITE_ROW) state.SkipWithError("a row is missing");
      for (int column = 0; column < 10; ++column)
        sqlite3_bind_value(insert.statement(), column + 1, sqlite3_column_value(read.statement(), column));
      QByteArray items(static_cast<const char*>(sqlite3_column_blob(read.statement(), 10)),
                       sqlite3_column_bytes(read.statement(), 10));
      sqlite3_reset(read.statement());
      sqlite3_bind_int64(insert.statement(), 11, ++count);
      sqlite3_bind_blob64(insert.statement(), 12, items.constData(), sqlite3_uint64(items.size()),
                          SQLITE_STATIC);
      if (sqlite3_step(insert.statement()) != SQLITE_DONE) state.SkipWithError("a row was not written");
      sqlite3_reset(insert.statement());
      items[items.size() - 1] = char(++count);
      for (int column = 1; column <= 6; ++column) sqlite3_bind_int64(write.statement(), column, count);
      sqlite3_bind_blob64(write.statement(), 7, items.constData(), sqlite3_uint64(items.size()),
                          SQLITE_STATIC);
      sqlite3_bind_int64(write.statement(), 8, count);
      sqlite3_bind_int64(write.statement(), 9, note.id.value());
      if (sqlite3_step(write.statement()) != SQLITE_DONE) state.SkipWithError("a row was not written again");
      sqlite3_reset(write.statement());
    }
}
BENCHMARK(BM_CopyRows)->Iterations(1)->Repetitions(3)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lens::bench
