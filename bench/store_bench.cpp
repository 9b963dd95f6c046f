// The store against raw SQLite statements on a database of the same tables, indexes and durability.
#include <benchmark/benchmark.h>

#include <QTemporaryDir>

#include "embedded/format/packed_items.h"
#include "embedded/store/database.h"
#include "ratio.h"
#include "raw_sqlite.h"

namespace lens::bench {
namespace {

constexpr int kNotes = 1000;
constexpr quint32 kFirstId = 0x8FA;

const Ratio kSave("save of a changed document", "BM_Save", "BM_SaveRaw", 1.5);
const Ratio kRead("open and read five items from the store", "BM_OpenAndReadFive", "BM_SelectRow", 4);

Note document(int number) {
  Note note;
  note.add(QStringLiteral("Form"), itemflag::Summary, textValue(u"Memo"));
  note.add(QStringLiteral("Subject"), itemflag::Summary, textValue(QStringLiteral("Letter %1").arg(number)));
  note.add(QStringLiteral("From"), itemflag::Summary | itemflag::Names, textValue(u"CN=Ada Byron/O=Tessaly"));
  note.add(
      QStringLiteral("SendTo"), itemflag::Summary | itemflag::Names,
      textListValue({QStringLiteral("CN=Carl Dorn/O=Tessaly"), QStringLiteral("CN=Eva Falk/O=Tessaly")}));
  note.add(QStringLiteral("PostedDate"), itemflag::Summary, timeValue(timeDateNow()));
  note.add(QStringLiteral("Size"), itemflag::Summary, numberValue(number));
  note.add(QStringLiteral("Categories"), itemflag::Summary,
           textListValue({QStringLiteral("a"), QStringLiteral("b")}));
  note.add(QStringLiteral("Importance"), itemflag::Summary, textValue(u"2"));
  note.add(QStringLiteral("Remark"), 0, textValue(QString(400, u'x')));
  note.add(QStringLiteral("Body"), 0, rawValue(itemtype::RichText, QByteArray(1500, 'y')));
  return note;
}

QString filled(const QTemporaryDir& directory, const QString& name) {
  const QString path = directory.filePath(name);
  const auto database = Database::create(path, {});
  Database::Transaction transaction(*database);
  for (int i = 0; i < kNotes; ++i) {
    Note note = document(i);
    database->notes().save(note);
  }
  transaction.commit();
  return path;
}

NoteId someId(int turn) {
  return NoteId(kFirstId + 4 * quint32(turn * 7919 % kNotes));
}

void BM_Save(benchmark::State& state) {
  const QTemporaryDir directory;
  const auto database = Database::open(filled(directory, QStringLiteral("ours.nsf")));
  Note note;
  database->notes().read(someId(1), note);
  double count = 0;
  for (auto _ : state) {
    note.find(u"Size")->value = numberValue(++count);
    database->notes().save(note);
  }
}
BENCHMARK(BM_Save)->UseRealTime();

void BM_SaveRaw(benchmark::State& state) {
  const QTemporaryDir directory;
  const Raw raw(filled(directory, QStringLiteral("peer.nsf")),
                "UPDATE note SET sequence = ?, sequence_time = ?, created = ?, modified = ?, added = ?,"
                " accessed = ?, items = ?, change = ? WHERE id = ?");
  QByteArray items = packItems(document(1).items);
  qint64 count = kNotes;
  for (auto _ : state) {
    sqlite3_stmt* const update = raw.statement();
    items[items.size() - 1] = char(++count);
    for (int column = 1; column <= 6; ++column) sqlite3_bind_int64(update, column, count);
    sqlite3_bind_blob64(update, 7, items.constData(), sqlite3_uint64(items.size()), SQLITE_STATIC);
    sqlite3_bind_int64(update, 8, count);
    sqlite3_bind_int64(update, 9, someId(1).value());
    if (sqlite3_step(update) != SQLITE_DONE) state.SkipWithError("the update failed");
    sqlite3_reset(update);
  }
}
BENCHMARK(BM_SaveRaw)->UseRealTime();

void BM_OpenAndReadFive(benchmark::State& state) {
  const QTemporaryDir directory;
  const auto database = Database::open(filled(directory, QStringLiteral("ours.nsf")));
  quint32 turn = 0;
  for (auto _ : state) {
    Note note;
    database->notes().read(someId(++turn), note);
    for (const char16_t* name : {u"Form", u"Subject", u"SendTo", u"PostedDate", u"Size"})
      benchmark::DoNotOptimize(itemValues(*note.find(name)));
  }
}
BENCHMARK(BM_OpenAndReadFive)->UseRealTime();

void BM_SelectRow(benchmark::State& state) {
  const QTemporaryDir directory;
  const Raw raw(filled(directory, QStringLiteral("peer.nsf")),
                "SELECT id, class, unid, parent, sequence, sequence_time, created, modified, added, accessed,"
                " items FROM note WHERE id = ? AND state = 0");
  quint32 turn = 0;
  for (auto _ : state) {
    sqlite3_stmt* const select = raw.statement();
    sqlite3_bind_int64(select, 1, someId(++turn).value());
    if (sqlite3_step(select) != SQLITE_ROW) state.SkipWithError("the row is missing");
    for (int column = 0; column < 10; ++column)
      benchmark::DoNotOptimize(sqlite3_column_int64(select, column));
    benchmark::DoNotOptimize(sqlite3_column_blob(select, 10));
    sqlite3_reset(select);
  }
}
BENCHMARK(BM_SelectRow)->UseRealTime();

}  // namespace
}  // namespace lens::bench
