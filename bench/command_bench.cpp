// The command line: a listing of 100,000 documents against a raw scan of the same rows; and the start of the
// program to its first output against a bare program that links the same libraries and opens the same file.
#include <benchmark/benchmark.h>

#include <QProcess>
#include <QTemporaryDir>

#include "app/sample_workspace.h"
#include "command/run_command.h"
#include "embedded/store/database.h"
#include "embedded/workspace/workspace.h"
#include "ratio.h"
#include "raw_sqlite.h"

namespace lens::bench {
namespace {
using namespace Qt::StringLiterals;

constexpr int kDocuments = 100'000;
constexpr char kRows[] = "SELECT id, items FROM note WHERE state = 0 AND class = 1";

const Ratio kListing("list 100,000 documents", "BM_ListDocuments", "BM_ListRawRows", 2.5);
const Ratio kListingJson("list 100,000 documents as JSON", "BM_ListDocumentsAsJson", "BM_ListRawRows", 2.5);
const Ratio kStart("start of a command to its output", "BM_StartCommand", "BM_StartBareProgram", 2);

// About one kilobyte each.
Note letter(int number) {
  Note note;
  note.add(u"Form"_s, itemflag::Summary, textValue(number % 2 ? u"Memo" : u"Task"));
  note.add(u"From"_s, itemflag::Summary | itemflag::Names,
           textValue(u"CN=Person %1/O=Acme"_s.arg(number % 977)));
  note.add(u"SendTo"_s, itemflag::Summary | itemflag::Names,
           textListValue({u"CN=Carl Dorn/O=Acme"_s, u"CN=Eva Falk/O=Acme"_s}));
  note.add(u"PostedDate"_s, itemflag::Summary, timeValue(timeDateNow()));
  note.add(u"Subject"_s, itemflag::Summary, textValue(u"Minutes of the board, letter %1"_s.arg(number)));
  note.add(u"Amount"_s, itemflag::Summary, numberValue(number));
  note.add(u"Categories"_s, itemflag::Summary, textListValue({u"Plant"_s, u"North"_s}));
  note.add(u"Remark"_s, 0, textValue(QString(90, u'x')));
  note.add(u"Body"_s, 0, rawValue(itemtype::RichText, QByteArray(400, 'y')));
  return note;
}

// The samples with a large database beside them. Made at the first use, and gone with the process.
struct Letters {
  Letters() {
    const auto workspace = Workspace::open(root.path(), Regional(QLocale::c()));
    fillFirstTime(*workspace);
    const auto database = workspace->createDatabase({}, u"large.nsf"_s, {});
    Database::Transaction transaction(*database);
    for (int i = 0; i < kDocuments; ++i) {
      Note note = letter(i);
      database->notes().save(note);
    }
    transaction.commit();
  }
  QString file(const QString& name) const { return root.path() + u"/data/"_s + name; }
  QTemporaryDir root;
};

const Letters& letters() {
  static const Letters instance;
  return instance;
}

// Counts lines and takes everything, as /dev/null would.
class LineCounter : public QIODevice {
 public:
  LineCounter() { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }
  qsizetype lines = 0;

 protected:
  qint64 readData(char*, qint64) override { return -1; }
  qint64 writeData(const char* bytes, qint64 size) override {
    lines += QByteArrayView(bytes, size).count('\n');
    return size;
  }
};

void listDocuments(benchmark::State& state, const QStringList& options) {
  const QString root = letters().root.path();
  for (auto _ : state) {
    LineCounter out, error;
    const int code = runCommand(QStringList{u"documents"_s, u"large.nsf"_s} + options, {&out, &error},
                                [&](const QString&) { return openDoors(root, Regional(QLocale::c()), {}); });
    if (code != 0 || out.lines != kDocuments) state.SkipWithError("documents are missing");
  }
}

void BM_ListDocuments(benchmark::State& state) {
  listDocuments(state, {});
}
BENCHMARK(BM_ListDocuments)->UseRealTime()->Unit(benchmark::kMillisecond);

void BM_ListDocumentsAsJson(benchmark::State& state) {
  listDocuments(state, {u"--json"_s});
}
BENCHMARK(BM_ListDocumentsAsJson)->UseRealTime()->Unit(benchmark::kMillisecond);

void BM_ListRawRows(benchmark::State& state) {
  const QString path = letters().file(u"large.nsf"_s);
  for (auto _ : state) {
    const Raw raw(path, kRows);
    int rows = 0;
    unsigned touched = 0;
    while (sqlite3_step(raw.statement()) == SQLITE_ROW) {
      const auto* const items = static_cast<const unsigned char*>(sqlite3_column_blob(raw.statement(), 1));
      const int size = sqlite3_column_bytes(raw.statement(), 1);
      touched += unsigned(sqlite3_column_int64(raw.statement(), 0));
      for (int at = 0; at < size; at += 64) touched += items[at];
      ++rows;
    }
    benchmark::DoNotOptimize(touched);
    if (rows != kDocuments) state.SkipWithError("rows are missing");
  }
}
BENCHMARK(BM_ListRawRows)->UseRealTime()->Unit(benchmark::kMillisecond);

// The time from the start of the process to its first byte.
void startProcess(benchmark::State& state, const QString& program, const QStringList& arguments) {
  for (auto _ : state) {
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForReadyRead()) state.SkipWithError("it wrote nothing");
    state.PauseTiming();
    process.waitForFinished();
    if (process.exitCode() != 0) state.SkipWithError("it failed");
    state.ResumeTiming();
  }
}

void BM_StartCommand(benchmark::State& state) {
  startProcess(state, QStringLiteral(LENS_PROGRAM),
               {u"documents"_s, u"mail/kmeier.nsf"_s, u"--workspace"_s, letters().root.path()});
}
BENCHMARK(BM_StartCommand)->UseRealTime()->Unit(benchmark::kMillisecond);

void BM_StartBareProgram(benchmark::State& state) {
  startProcess(state, QStringLiteral(LENS_BARE_PROGRAM), {letters().file(u"mail/kmeier.nsf"_s)});
}
BENCHMARK(BM_StartBareProgram)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lens::bench
