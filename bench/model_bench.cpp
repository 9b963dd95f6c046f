// The object model's door against a raw prepared SELECT of the same row on the same file.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QTemporaryDir>

#include "embedded/model/embedded_gateway.h"
#include "embedded/workspace/workspace.h"
#include "ratio.h"

namespace lens::bench {
namespace {

constexpr int kNotes = 1000;

const Ratio kBridge("open and read five items through the bridge", "BM_BridgeReadFive", "BM_BridgeSelectRow",
                    4);

Note letter(int number) {
  const quint16 summary = itemflag::Summary;
  Note note;
  note.add(QStringLiteral("Form"), summary, textValue(u"Memo"));
  note.add(QStringLiteral("Subject"), summary, textValue(QStringLiteral("Letter %1").arg(number)));
  note.add(QStringLiteral("From"), summary | itemflag::Names, textValue(u"CN=Ada Byron/O=Acme"));
  note.add(QStringLiteral("SendTo"), summary | itemflag::Names,
           textListValue({QStringLiteral("CN=Carl Dorn/O=Acme"), QStringLiteral("CN=Eva Falk/O=Acme")}));
  note.add(QStringLiteral("PostedDate"), summary, timeValue(timeDateNow()));
  note.add(QStringLiteral("Size"), summary, numberValue(number));
  note.add(QStringLiteral("Categories"), summary, textListValue({QStringLiteral("a"), QStringLiteral("b")}));
  note.add(QStringLiteral("Importance"), summary, textValue(u"2"));
  note.add(QStringLiteral("Remark"), 0, textValue(QString(400, u'x')));
  note.add(QStringLiteral("Body"), 0, rawValue(itemtype::RichText, QByteArray(1500, 'y')));
  return note;
}

// A workspace with one database of letters and the note IDs in it.
struct Letters {
  Letters() : workspace(Workspace::open(root.path(), Regional(QLocale::c()))) {
    store = workspace->createDatabase({}, QStringLiteral("mail.nsf"), {});
    Database::Transaction transaction(*store);
    for (int i = 0; i < kNotes; ++i) {
      Note note = letter(i);
      store->notes().save(note);
      ids.push_back(note.header.id);
    }
    transaction.commit();
  }
  NoteId some(int turn) const { return ids[qint64(turn) * 7919 % kNotes]; }

  QTemporaryDir root;
  std::shared_ptr<Workspace> workspace;
  std::shared_ptr<Database> store;
  QVector<NoteId> ids;
};

void BM_BridgeReadFive(benchmark::State& state) {
  const Letters letters;
  EmbeddedGateway gateway(letters.workspace);
  const Object session = gateway.create(QStringLiteral("Notes.NotesSession"));
  const Object mail =
      session.call(QStringLiteral("GETDATABASE"), QString(), QStringLiteral("mail.nsf")).object();
  const QStringList names{QStringLiteral("Form"), QStringLiteral("Subject"), QStringLiteral("SendTo"),
                          QStringLiteral("PostedDate"), QStringLiteral("Size")};
  QStringList ids;
  for (const NoteId id : letters.ids) ids.append(id.hexText());
  int turn = 0;
  for (auto _ : state) {
    const QString& id = ids[qint64(++turn) * 7919 % kNotes];
    const Object document = mail.call(QStringLiteral("GETDOCUMENTBYID"), id).object();
    for (const QString& name : names)
      benchmark::DoNotOptimize(document.call(QStringLiteral("GETITEMVALUE"), name));
  }
}
BENCHMARK(BM_BridgeReadFive)->UseRealTime();

void BM_BridgeSelectRow(benchmark::State& state) {
  Letters letters;
  const QByteArray path = letters.store->path().toUtf8();
  letters.store.reset();
  sqlite3* handle = nullptr;
  sqlite3_stmt* select = nullptr;
  sqlite3_open_v2(path.constData(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  sqlite3_exec(handle, "PRAGMA synchronous = FULL; PRAGMA cache_size = -16384;", nullptr, nullptr, nullptr);
  sqlite3_prepare_v3(handle,
                     "SELECT id, class, unid, parent, sequence, sequence_time, created, modified, added,"
                     " accessed, items FROM note WHERE id = ? AND state = 0",
                     -1, SQLITE_PREPARE_PERSISTENT, &select, nullptr);
  int turn = 0;
  for (auto _ : state) {
    sqlite3_bind_int64(select, 1, letters.some(++turn).value());
    if (sqlite3_step(select) != SQLITE_ROW) state.SkipWithError("the row is missing");
    for (int column = 0; column < 10; ++column)
      benchmark::DoNotOptimize(sqlite3_column_int64(select, column));
    benchmark::DoNotOptimize(sqlite3_column_blob(select, 10));
    sqlite3_reset(select);
  }
  sqlite3_finalize(select);
  sqlite3_close(handle);
}
BENCHMARK(BM_BridgeSelectRow)->UseRealTime();

}  // namespace
}  // namespace lens::bench
