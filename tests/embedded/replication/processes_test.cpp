// Processes that are killed in the middle, and processes that work on the same files.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QRandomGenerator>
#include <functional>

#include "replica_fixture.h"

namespace lens {
namespace {
using namespace Qt::Literals::StringLiterals;

class Processes : public Replicas {
 protected:
  // Runs the work in a process of its own; it tells through the pipe that it begins.
  pid_t start(const std::function<void()>& work, int& begun) {
    int ends[2] = {-1, -1};
    EXPECT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
      close(ends[0]);
      int status = 0;
      try {
        if (write(ends[1], "b", 1) != 1) status = 2;
        work();
      } catch (const RuntimeError& error) {
        fprintf(stderr, "%s\n", qPrintable(error.description()));
        status = 1;
      }
      _exit(status);
    }
    close(ends[1]);
    begun = ends[0];
    return child;
  }
  // True when the work was not done yet.
  bool killAfter(int microseconds, const std::function<void()>& work) {
    int begun = -1;
    const pid_t child = start(work, begun);
    char byte = 0;
    EXPECT_EQ(read(begun, &byte, 1), 1);
    usleep(useconds_t(microseconds));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    close(begun);
    EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
    return WIFSIGNALED(status);
  }

  // Notes whose parts must belong together.
  void fill(const QString& name, int count) {
    const auto database = Database::open(path(name));
    Database::Transaction all(*database);
    for (int i = 0; i < count; ++i) rewrite(*database, add(*database, u"new"_s), u"%1 %2"_s.arg(name).arg(i));
    all.commit();
  }
  static void rewrite(Database& database, const Unid& unid, const QString& text) {
    edit(database, unid, text);
    Note note;
    ASSERT_TRUE(database.notes().read(unid, note));
    note.items.removeIf([](const Item& item) { return item.name == u"$FILE"; });
    database.notes().saveAsGiven(note);
    attach(database, unid, text.toUtf8().repeated(1000));
  }
  void changeSome(const QString& name, int round) {
    const auto database = Database::open(path(name));
    const QVector<NoteSummary> all = database->notes().list(noteclass::Document);
    Database::Transaction changes(*database);
    for (qsizetype i = round; i < all.size(); i += 3)
      rewrite(*database, all[i].unid, u"%1 again %2.%3"_s.arg(name).arg(round).arg(i));
    changes.commit();
  }
  void expectWhole(const QString& name) {
    const auto database = Database::open(path(name));
    EXPECT_EQ(integrityOf(*database), QByteArray("ok"));
    database->notes().scan(0x7FFF, [&](const Note& note) {
      QBuffer file;
      file.open(QIODevice::WriteOnly);
      database->objects().read(objectIn(*note.find(u"$FILE")), file);
      EXPECT_EQ(file.data(), note.text(u"Subject").toUtf8().repeated(1000));
      return true;
    });
  }

  QRandomGenerator random{7};
};

TEST_F(Processes, AKilledReplicationLeavesWholeNotesAndTheNextOneGoesOn) {
  make(u"a"_s);
  make(u"b"_s);
  fill(u"a"_s, 150);
  fill(u"b"_s, 150);
  int cut = 0;
  for (int round = 0; round < 8; ++round) {
    cut += killAfter(random.bounded(120'000), [&] {
      const auto a = Database::open(path(u"a"_s)), b = Database::open(path(u"b"_s));
      replicate(*a, *b);
    });
    expectWhole(u"a"_s);
    expectWhole(u"b"_s);
    changeSome(u"a"_s, round % 3);
    if (round % 2) changeSome(u"b"_s, round % 3);
  }
  EXPECT_GT(cut, 0);
  const auto a = Database::open(path(u"a"_s)), b = Database::open(path(u"b"_s));
  replicate(*a, *b);
  EXPECT_EQ(differenceOf(*a, *b), "");
  EXPECT_GE(a->notes().noteCount(noteclass::Document), 300);
}

TEST_F(Processes, AKilledCreationLeavesNoReplicaOrAWholeOne) {
  make(u"a"_s);
  fill(u"a"_s, 200);
  int cut = 0;
  for (int round = 0; round < 8; ++round) {
    cut += killAfter(random.bounded(80'000),
                     [&] { createReplica(*Database::open(path(u"a"_s)), path(u"new"_s)); });
    if (!QFile::exists(path(u"new"_s))) continue;
    EXPECT_EQ(differenceOf(*Database::open(path(u"new"_s)), *Database::open(path(u"a"_s))), "");
    EXPECT_TRUE(QFile::remove(path(u"new"_s)));
  }
  EXPECT_GT(cut, 0);
  createReplica(*Database::open(path(u"a"_s)), path(u"new"_s));
  EXPECT_EQ(differenceOf(*Database::open(path(u"new"_s)), *Database::open(path(u"a"_s))), "");
  EXPECT_EQ(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name),
            QStringList({u"a.nsf"_s, u"new.nsf"_s}));
}

TEST_F(Processes, TwoProcessesReplicateTheSameFilesWhileBothWrite) {
  make(u"a"_s);
  make(u"b"_s);
  constexpr int kRounds = 25;
  const auto work = [&](const QString& own, const QString& other) {
    // A forked process has its parent's random numbers before it.
    if (own == u"b") QRandomGenerator::global()->discard(100'000);
    const auto mine = Database::open(path(own)), yours = Database::open(path(other));
    for (int i = 0; i < kRounds; ++i) {
      add(*mine, u"%1 %2"_s.arg(own).arg(i));
      add(*yours, u"%1 to %2 %3"_s.arg(own, other).arg(i));
      replicate(*mine, *yours);
    }
  };
  int first = -1, second = -1;
  const pid_t children[] = {start([&] { work(u"a"_s, u"b"_s); }, first),
                            start([&] { work(u"b"_s, u"a"_s); }, second)};
  for (const pid_t child : children) {
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  close(first);
  close(second);
  const auto a = Database::open(path(u"a"_s)), b = Database::open(path(u"b"_s));
  EXPECT_EQ(integrityOf(*a), QByteArray("ok"));
  EXPECT_EQ(integrityOf(*b), QByteArray("ok"));
  replicate(*a, *b);
  EXPECT_EQ(differenceOf(*a, *b), "");
  EXPECT_EQ(a->notes().noteCount(noteclass::Document), 4 * kRounds);
}

}  // namespace
}  // namespace lens
