#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "embedded/support/store_test.h"

namespace lens {
namespace {

constexpr int kStops = 6;

// Saves without end and tells each finished save through the pipe. Runs in a process of its own.
[[noreturn]] void saveUntilKilled(const QString& path, int pipe) {
  const auto database = Database::open(path);
  for (;;) {
    Note note = noteWith(QString(3000, QChar(u'k')));
    database->notes().save(note);
    note.add(QStringLiteral("Again"), 0, textValue(u"yes"));
    database->notes().save(note);
    const NoteId id = note.header.id;
    if (write(pipe, &id, sizeof id) != sizeof id) _exit(1);
  }
}

// Kills the saver after some acknowledged saves, wherever it stands by then.
QVector<NoteId> acknowledgedBeforeTheKill(const QString& path, int saves) {
  int ends[2] = {-1, -1};
  EXPECT_EQ(pipe(ends), 0);
  const pid_t child = fork();
  if (child == 0) {
    close(ends[0]);
    saveUntilKilled(path, ends[1]);
  }
  close(ends[1]);
  QVector<NoteId> acknowledged;
  NoteId id;
  while (read(ends[0], &id, sizeof id) == sizeof id) {
    acknowledged.push_back(id);
    if (acknowledged.size() == saves) kill(child, SIGKILL);
  }
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status));
  return acknowledged;
}

QByteArray integrityOf(const Database& database) {
  sqlite3_stmt* check = nullptr;
  sqlite3_prepare_v2(database.handle(), "PRAGMA integrity_check", -1, &check, nullptr);
  sqlite3_step(check);
  const QByteArray result(reinterpret_cast<const char*>(sqlite3_column_text(check, 0)));
  sqlite3_finalize(check);
  return result;
}

TEST_F(StoreTest, KilledProcessLosesNoFinishedSave) {
  database.reset();
  QVector<NoteId> acknowledged;
  for (int stop = 1; stop <= kStops; ++stop) {
    acknowledged += acknowledgedBeforeTheKill(path(), stop * 7);
    database = Database::open(path());
    EXPECT_EQ(integrityOf(*database), QByteArray("ok"));
    for (NoteId id : std::as_const(acknowledged)) {
      Note note;
      ASSERT_TRUE(database->notes().read(id, note)) << id.value();
      EXPECT_EQ(note.text(u"Again"), QStringLiteral("yes"));
      EXPECT_EQ(note.header.sequence, 2u);
    }
    database.reset();
  }
}

}  // namespace
}  // namespace lens
