// The design browser: listing a class of 100,000 notes beside SQLite that opens the same rows one by one.
#include <benchmark/benchmark.h>

#include "desk.h"
#include "ratio.h"
#include "raw_sqlite.h"

namespace lens::bench {
namespace {

constexpr int kForms = 100'000;

const Ratio kListing("list of 100,000 forms, per row beside its raw open", "BM_ListForms", "BM_OpenForms", 5);

Note formNote(int number, const TimeDate& now) {
  Note note;
  note.header.noteClass = noteclass::Form;
  note.add(QStringLiteral("$TITLE"), itemflag::Summary,
           textListValue({QStringLiteral("Order %1").arg(number), QStringLiteral("order%1").arg(number)}));
  note.add(QStringLiteral("$Flags"), itemflag::Summary, textValue(u"C"));
  note.add(QStringLiteral("$UpdatedBy"), itemflag::Summary | itemflag::Names,
           textListValue({QStringLiteral("CN=Ada Byron/O=Tessaly"), QStringLiteral("CN=Carl Dorn/O=Acme")}));
  note.add(QStringLiteral("$Revisions"), itemflag::Summary, timeValue(now));
  note.add(QStringLiteral("$Info"), 0, rawValue(itemtype::Formula, QByteArray(60, 'i')));
  note.add(QStringLiteral("$Body"), 0, rawValue(itemtype::RichText, QByteArray(2000, 'b')));
  return note;
}

// The forms lie in the database that the client shows; a document is open, so that the window has one too.
struct Forms : Desk {
  Forms() {
    Database::Transaction transaction(*database);
    Note document;
    document.add(QStringLiteral("Form"), itemflag::Summary, textValue(u"Order"));
    const NoteId open = save(document);
    const TimeDate now = timeDateNow();
    for (int i = 0; i < kForms; ++i) save(formNote(i, now));
    transaction.commit();
    start(open);
  }
};

// Made once, and gone before the application is: making it takes longer than listing.
Forms& forms() {
  static std::unique_ptr<Forms> made;
  if (!made) {
    made = std::make_unique<Forms>();
    qAddPostRoutine([] { made.reset(); });
  }
  return *made;
}

void BM_ListForms(benchmark::State& state) {
  Forms& desk = forms();
  ListBox& classes = *desk.form().lstDesigns;
  classes.setListIndex(classes.find(QStringLiteral("SELECTFORMS")));
  for (auto _ : state) classes.raiseDblClick();
  // The rows are more than the counter takes, which costs a box at the end.
  if (desk.form().idList->listCount() != kForms) state.SkipWithError("forms are missing");
}
BENCHMARK(BM_ListForms)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

// The same notes, each asked for by its ID and read to its end.
void BM_OpenForms(benchmark::State& state) {
  Forms& desk = forms();
  const QVector<NoteSummary> notes = desk.database->notes().list(noteclass::Form);
  const Raw raw(desk.path(),
                "SELECT id, class, unid, parent, sequence, sequence_time, created, modified, added, accessed,"
                " items FROM note WHERE id = ? AND state = 0");
  unsigned touched = 0;
  for (auto _ : state)
    for (const NoteSummary& note : notes) {
      sqlite3_bind_int64(raw.statement(), 1, note.id.value());
      if (sqlite3_step(raw.statement()) != SQLITE_ROW) state.SkipWithError("a row is missing");
      const auto* const items = static_cast<const unsigned char*>(sqlite3_column_blob(raw.statement(), 10));
      const int size = sqlite3_column_bytes(raw.statement(), 10);
      for (int at = 0; at < size; at += 64) touched += items[at];
      sqlite3_reset(raw.statement());
    }
  benchmark::DoNotOptimize(touched);
  if (notes.size() != kForms) state.SkipWithError("forms are missing");
}
BENCHMARK(BM_OpenForms)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lens::bench
