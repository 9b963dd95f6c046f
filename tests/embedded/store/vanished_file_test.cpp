// Another program deletes, moves or replaces the file of a database that is open, or that a killed process
// left with a journal: nothing is told as saved that is nowhere, and no file gets what belongs to another
// one.
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QUuid>
#include <cstdio>

#include "embedded/store/compaction.h"
#include "embedded/support/store_test.h"

namespace lens {
namespace {
using namespace Qt::Literals::StringLiterals;

class VanishedFile : public StoreTest {
 protected:
  VanishedFile() {
    saved(u"early"_s);
    database.reset();
    EXPECT_TRUE(QFile::copy(path(), backup()));
    backupContent = contentOf(backup());
    // The file goes on from there, so that the backup is another state of it.
    database = Database::open(path());
    late = saved(u"late"_s);
    database.reset();
    database = Database::open(path());
  }
  // Under a UNID that no process which came out of this one gives.
  NoteId saved(const QString& subject) {
    Note note = noteWith(subject);
    note.header.unid = Unid::fromBytes(QUuid::createUuid().toRfc4122());
    database->notes().save(note);
    return note.header.id;
  }
  QString backup() const { return path(u"backup"_s); }

  // The ways in which another program puts the backup in the file's place.
  enum class Way { CopyAnew, Rename, CopyOver };
  void restore(Way way) {
    bool done = true;
    if (way == Way::CopyOver)
      writeFile(path(), backupContent);
    else if (way == Way::CopyAnew)
      done = QFile::remove(path()) && QFile::copy(backup(), path());
    else
      done = std::rename(QFile::encodeName(backup()).constData(), QFile::encodeName(path()).constData()) == 0;
    ASSERT_TRUE(done);
  }
  int saveFails() {
    return errorNumber([&] { saved(u"nowhere"_s); }, &why);
  }
  // A process that saves so many notes of so many letters and is killed with the database open.
  void killedWhileOpen(int saves, int letters = 10) {
    database.reset();
    const pid_t child = fork();
    if (child == 0) {
      database = Database::open(path());
      for (int i = 0; i < saves; ++i) saved(QString(letters, u'k'));
      kill(getpid(), SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
  }
  // Tells each save through the pipe.
  [[noreturn]] void saveWithoutEnd(int pipe) {
    try {
      const auto mine = Database::open(path());
      for (;;) {
        database = mine;
        saved(QString(20'000, u'k'));
        if (write(pipe, "x", 1) != 1) break;
      }
    } catch (const RuntimeError&) {
    }
    _exit(1);
  }
  int count() { return database->notes().noteCount(0xFFFF); }

  QByteArray backupContent;
  NoteId late;
  QString why;
};

TEST_F(VanishedFile, ADeletedFileTakesNoMoreChanges) {
  ASSERT_TRUE(QFile::remove(path()));
  EXPECT_EQ(saveFails(), enginefault::NotSaved);
  EXPECT_TRUE(why.contains(path())) << why.toStdString();
  EXPECT_EQ(errorNumber([&] { database->setInfo({}); }), enginefault::NotSaved);
  EXPECT_EQ(errorNumber([&] { database->notes().remove(late); }), enginefault::NotSaved);
  EXPECT_EQ(errorNumber([&] { compact(*database); }), enginefault::NotSaved);
  EXPECT_EQ(subjectOf(late), u"late"_s) << "what was read can still be read";
  EXPECT_FALSE(QFile::exists(path()));
  database.reset();
  EXPECT_EQ(QFileInfo(path() + u"-wal"_s).size(), 0) << "nothing is left that could get into another file";
  Database::create(path(), {});
  EXPECT_EQ(files(), QStringList({u"backup"_s, u"letters.nsf"_s}));
}

TEST_F(VanishedFile, AReplacedFileIsNeverWrittenIntoAndIsTheOneThatOpens) {
  for (const Way way : {Way::CopyAnew, Way::Rename}) {
    saved(u"in the journal"_s);
    restore(way);
    EXPECT_EQ(saveFails(), enginefault::NotSaved);
    EXPECT_EQ(errorNumber([&] { compact(*database); }), enginefault::NotSaved);
    EXPECT_EQ(errorNumber([&] { database->removeFile(); }), err::PermissionDenied);
    EXPECT_EQ(contentOf(path()), backupContent);
    const auto old = database;
    database = Database::open(path());
    EXPECT_NE(database, old);
    EXPECT_EQ(count(), 1);
    saved(u"again"_s);
    EXPECT_EQ(saveFails(), 0);
    EXPECT_EQ(errorNumber([&] { old->setInfo({}); }), enginefault::NotSaved);
  }
  reopen();
  EXPECT_EQ(count(), 3);
}

TEST_F(VanishedFile, ClosingWhatWasReplacedLeavesTheNewFileAlone) {
  for (const Way way : {Way::CopyAnew, Way::Rename}) {
    saved(u"in the journal"_s);
    restore(way);
    database.reset();
    EXPECT_EQ(contentOf(path()), backupContent);
    database = Database::open(path());
    EXPECT_EQ(count(), 1);
  }
}

TEST_F(VanishedFile, TheNewFileIsOpenedWithoutAskingTheOldOne) {
  const auto old = database;
  saved(u"in the journal"_s);
  restore(Way::CopyAnew);
  database = Database::open(path());
  EXPECT_EQ(count(), 1);
  saved(u"new"_s);
  EXPECT_EQ(errorNumber([&] { old->setInfo({}); }), enginefault::NotSaved);
  reopen();
  EXPECT_EQ(count(), 2);
}

TEST_F(VanishedFile, AMovedFileHasAllThatWasSaved) {
  const NoteId last = saved(u"in the journal"_s);
  const QString elsewhere = path(u"elsewhere.nsf"_s);
  ASSERT_TRUE(QFile::rename(path(), elsewhere));
  EXPECT_EQ(saveFails(), enginefault::NotSaved);
  EXPECT_EQ(errorNumber([&] { saved(u"nowhere"_s); }), enginefault::NotSaved);
  database = Database::open(elsewhere);
  EXPECT_EQ(subjectOf(last), u"in the journal"_s);
  EXPECT_EQ(count(), 3);
}

TEST_F(VanishedFile, AFileThatCameBackIsOnlyWrittenOnceItIsOpenedAnew) {
  const QString aside = path(u"aside"_s);
  ASSERT_TRUE(QFile::rename(path(), aside));
  EXPECT_EQ(saveFails(), enginefault::NotSaved);
  ASSERT_TRUE(QFile::rename(aside, path()));
  EXPECT_EQ(saveFails(), enginefault::NotSaved);
  reopen();
  EXPECT_EQ(saveFails(), 0);
}

TEST_F(VanishedFile, TheJournalOfAKilledProcessIsNotPlayedIntoARestoredBackup) {
  for (const int letters : {10, 20'000})
    for (const Way way : {Way::CopyAnew, Way::CopyOver, Way::Rename}) {
      SCOPED_TRACE(testing::Message() << int(way) << " with saves of " << letters);
      if (!QFile::exists(backup())) writeFile(backup(), backupContent);
      killedWhileOpen(letters > 10 ? 300 : 30, letters);  // more than once round the journal, or less
      ASSERT_GT(contentOf(path() + u"-wal"_s).size(), 0);
      restore(way);
      for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_EQ(errorNumber([&] { Database::open(path()); }, &why), enginefault::Damaged);
        EXPECT_TRUE(why.contains(path() + u"-wal"_s)) << why.toStdString();
        EXPECT_EQ(errorNumber([&] { Database::infoOf(path()); }), enginefault::Damaged);
        EXPECT_EQ(contentOf(path()), backupContent);
      }
      for (const QString& suffix : {u"-wal"_s, u"-shm"_s}) QFile::remove(path() + suffix);
      database = Database::open(path());
      EXPECT_EQ(count(), 1);
      saved(u"goes on"_s);
      reopen();
      database.reset();
    }
}

TEST_F(VanishedFile, NorIntoANewDatabaseOfThatName) {
  killedWhileOpen(3);
  ASSERT_TRUE(QFile::remove(path()));
  EXPECT_EQ(errorNumber([&] { Database::create(path(), {}); }, &why), err::PathFileAccess);
  EXPECT_TRUE(why.contains(path() + u"-wal"_s)) << why.toStdString();
  EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(VanishedFile, TheJournalOfAKilledProcessIsPlayedIntoItsOwnFileWhereverBothAre) {
  int expected = count();
  for (const int letters : {10, 20'000})
    for (const int saves : {1, 2, 60, 240, 300}) {
      SCOPED_TRACE(testing::Message() << saves << " saves of " << letters);
      killedWhileOpen(saves, letters);
      killedWhileOpen(2);  // a second one, before anybody closed the file
      expected += saves + 2;
      const QString copy = path(u"copy.nsf"_s);
      QFile::remove(copy);
      QFile::remove(copy + u"-wal"_s);
      ASSERT_TRUE(QFile::copy(path() + u"-wal"_s, copy + u"-wal"_s));
      ASSERT_TRUE(QFile::copy(path(), copy));
      database = Database::open(copy);
      EXPECT_EQ(count(), expected);
      saved(u"in the copy"_s);
      database.reset();
      database = Database::open(path());
      ASSERT_EQ(count(), expected);
    }
}

// Two processes write in turn into one journal, which begins anew every now and then, until both are killed.
TEST_F(VanishedFile, TheJournalOfTwoKilledProcessesIsPlayed) {
  for (int round = 0; round < 4; ++round) {
    const int before = count();
    database.reset();
    int told[2] = {-1, -1};
    ASSERT_EQ(pipe(told), 0);
    pid_t writers[2] = {};
    for (pid_t& writer : writers) {
      writer = fork();
      if (writer != 0) continue;
      saveWithoutEnd(told[1]);
    }
    close(told[1]);
    int acknowledged = 0;
    char one = 0;
    while (read(told[0], &one, 1) == 1)
      if (++acknowledged == 100 + 130 * round)
        for (const pid_t writer : writers) kill(writer, SIGKILL);
    close(told[0]);
    for (const pid_t writer : writers) waitpid(writer, nullptr, 0);
    database = Database::open(path());
    EXPECT_GE(count(), before + acknowledged);
  }
}

TEST_F(VanishedFile, AJournalThatIsNoPlainFileIsRefused) {
  database.reset();
  const QByteArray whole = contentOf(path());
  const QString outside = path(u"outside.txt"_s);
  for (const QString& suffix : {u"-wal"_s, u"-shm"_s, u"-journal"_s}) {
    const QString journal = path() + suffix;
    for (const char* kind : {"link", "pipe", "directory"}) {
      SCOPED_TRACE(qPrintable(suffix + u' ' + QLatin1String(kind)));
      writeFile(outside, "mine");
      const bool made = *kind == 'l'   ? QFile::link(outside, journal)
                        : *kind == 'p' ? mkfifo(QFile::encodeName(journal).constData(), 0600) == 0
                                       : QDir().mkdir(journal);
      ASSERT_TRUE(made);
      EXPECT_EQ(errorNumber([&] { Database::open(path()); }, &why), enginefault::Damaged);
      EXPECT_TRUE(why.contains(journal)) << why.toStdString();
      EXPECT_EQ(contentOf(outside), QByteArray("mine"));
      EXPECT_EQ(contentOf(path()), whole);
      if (*kind == 'd')
        QDir().rmdir(journal);
      else
        QFile::remove(journal);
    }
  }
}

}  // namespace
}  // namespace lens
