// What is very large: prints times, what the same bytes take as rows of SQLite, and the memory that each took
// at most. Each piece runs in a process of its own.
//
//   lens_sizes [megabytes of the attachment]
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <functional>

#include "embedded/nsf/nsf_copy.h"
#include "embedded/store/database.h"
#include "notes/literals.h"
#include "raw_sqlite.h"
#include "real_letters.h"

namespace lens::bench {
namespace {

constexpr qsizetype kChunk = 256 * 1024;

// Bytes that no file system makes small.
QByteArray chunk(int number) {
  QByteArray bytes(kChunk, Qt::Uninitialized);
  quint64 state = quint64(number) * 0x9E3779B97F4A7C15 + 1;
  for (qsizetype i = 0; i + 8 <= bytes.size(); i += 8) {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    std::memcpy(bytes.data() + i, &state, 8);
  }
  return bytes;
}

struct Piece {
  const char* what;
  std::function<void()> work;
};

// Seconds, and megabytes at most beyond what a process has that does nothing.
void run(const Piece& piece, qint64 idleKb) {
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    QElapsedTimer clock;
    clock.start();
    piece.work();
    std::printf("| %s | %.2f |", piece.what, double(clock.nsecsElapsed()) / 1e9);
    std::fflush(nullptr);
    _exit(0);
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) std::printf("| %s | failed |", piece.what);
  std::printf(" %lld |\n", (static_cast<long long>(usage.ru_maxrss) - idleKb) / 1024);
}

qint64 idleMemory() {
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) _exit(0);
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  return usage.ru_maxrss;
}

class Sizes {
 public:
  explicit Sizes(int megabytes) : chunks_(int(qint64(megabytes) * 1024 * 1024 / kChunk)) {
    Database::create(store_, {});
    { Raw made(raw_, "SELECT 1"); }
    sqlite3* handle = nullptr;
    sqlite3_open(raw_.toUtf8().constData(), &handle);
    sqlite3_exec(handle,
                 "PRAGMA page_size = 8192; PRAGMA journal_mode = WAL;"
                 "CREATE TABLE chunk (number INTEGER PRIMARY KEY, bytes BLOB NOT NULL)",
                 nullptr, nullptr, nullptr);
    sqlite3_close(handle);
    QFile file(source_);
    if (!file.open(QIODevice::WriteOnly)) std::abort();
    for (int i = 0; i < chunks_; ++i)
      if (file.write(chunk(i)) != kChunk) std::abort();
  }

  QVector<Piece> pieces() {
    return {{"attachment in", [this] { attachmentIn(); }},
            {"the same bytes as rows in", [this] { rowsIn(); }},
            {"attachment out", [this] { attachmentOut(); }},
            {"the same rows out", [this] { rowsOut(); }},
            {"save a document of 100,000 items", [this] { saveItems(); }},
            {"read it", [this] { readLast(); }},
            {"save a text item of 50 MB", [this] { saveText(); }},
            {"read it", [this] { readLast(); }},
            {"make a real database of 10,000 notes", [this] { makeReal(10'000); }},
            {"read it into a store", [this] { readReal(10'000); }},
            {"make a real database of 100,000 notes", [this] { makeReal(100'000); }},
            {"read it into a store", [this] { readReal(100'000); }}};
  }

 private:
  void attachmentIn() {
    QFile file(source_);
    if (!file.open(QIODevice::ReadOnly)) std::abort();
    Database::open(store_)->objects().add(file);
  }
  void rowsIn() {
    QFile file(source_);
    if (!file.open(QIODevice::ReadOnly)) std::abort();
    Raw rows(raw_, "INSERT INTO chunk (bytes) VALUES (?)");
    sqlite3* const handle = sqlite3_db_handle(rows.statement());
    sqlite3_exec(handle, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    for (int i = 0; i < chunks_; ++i) {
      const QByteArray bytes = file.read(kChunk);
      sqlite3_bind_blob(rows.statement(), 1, bytes.constData(), int(bytes.size()), SQLITE_STATIC);
      if (sqlite3_step(rows.statement()) != SQLITE_DONE) std::abort();
      sqlite3_reset(rows.statement());
    }
    sqlite3_exec(handle, "COMMIT", nullptr, nullptr, nullptr);
  }
  void attachmentOut() {
    QFile target(directory_.filePath(u"out"_s));
    if (!target.open(QIODevice::WriteOnly)) std::abort();
    Database::open(store_)->objects().read(1, target);
    target.flush();
    ::fsync(target.handle());
  }
  void rowsOut() {
    QFile target(directory_.filePath(u"rows"_s));
    if (!target.open(QIODevice::WriteOnly)) std::abort();
    Raw rows(raw_, "SELECT bytes FROM chunk ORDER BY number");
    while (sqlite3_step(rows.statement()) == SQLITE_ROW) {
      const int size = sqlite3_column_bytes(rows.statement(), 0);
      const auto* bytes = static_cast<const char*>(sqlite3_column_blob(rows.statement(), 0));
      if (target.write(bytes, size) != size) std::abort();
    }
    target.flush();
    ::fsync(target.handle());
  }
  void saveItems() {
    Note note;
    for (int i = 0; i < 100'000; ++i)
      note.add(u"Item%1"_s.arg(i), itemflag::Summary, textValue(u"value %1"_s.arg(i)));
    Database::open(store_)->notes().save(note);
  }
  void saveText() {
    Note note;
    note.add(u"Text"_s, 0, textValue(QString(50 * 1024 * 1024, u'x')));
    Database::open(store_)->notes().save(note);
  }
  void readLast() {
    const auto database = Database::open(store_);
    Note note;
    if (!database->notes().read(database->notes().highestIssuedId(), note)) std::abort();
  }
  void makeReal(int notes) {
    if (!made::makeFile(realLetters(notes)).write(real_)) std::abort();
  }
  void readReal(int notes) {
    QString reason;
    NsfDatabase database(NsfFileSource::open(real_, reason));
    if (copyNsf(database, directory_.filePath(u"copy of %1.nsf"_s.arg(notes))).notes != notes) std::abort();
  }

  const QTemporaryDir directory_;
  const QString store_ = directory_.filePath(u"sizes.nsf"_s), raw_ = directory_.filePath(u"raw"_s),
                source_ = directory_.filePath(u"source"_s), real_ = directory_.filePath(u"real.nsf"_s);
  const int chunks_;
};

}  // namespace
}  // namespace lens::bench

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const int megabytes = argc > 1 ? std::atoi(argv[1]) : 1024;
  lens::bench::Sizes sizes(megabytes);
  std::printf("| of %d MB | seconds | MB of memory at most |\n|---|---|---|\n", megabytes);
  const qint64 idle = lens::bench::idleMemory();
  for (const lens::bench::Piece& piece : sizes.pieces()) lens::bench::run(piece, idle);
  return 0;
}
