// Whatever the program writes, a killed process or a full disk at any moment loses nothing that was done
// and leaves nothing half.
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

#include "embedded/store/database.h"
#include "faulty_disk.h"
#include "piece_of_work.h"

namespace lens::testbed {

std::vector<PieceOfWork>& piecesOfWork() {
  static std::vector<PieceOfWork> pieces;
  return pieces;
}

namespace {

// Long pieces are stopped at this many moments, evenly spread; short ones at each.
const int kMostMoments = qEnvironmentVariableIsSet("LENS_SOAK") ? 24 : 14;

// In memory where the system has such a directory: the disk itself is not what is tested here.
QString temporaryTemplate() {
  const QString inMemory = QStringLiteral("/dev/shm");
  return (QFileInfo(inMemory).isWritable() ? inMemory : QDir::tempPath()) + QStringLiteral("/lens-XXXXXX");
}

void copyDirectory(const QString& from, const QString& to) {
  QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString file = files.next();
    const QString target = to + file.mid(from.size());
    QDir().mkpath(QFileInfo(target).absolutePath());
    ASSERT_TRUE(QFile::copy(file, target)) << target.toStdString();
  }
}

QString integrityOf(const QString& path) {
  const auto database = Database::open(path);
  sqlite3_stmt* check = nullptr;
  sqlite3_prepare_v2(database->handle(), "PRAGMA integrity_check", -1, &check, nullptr);
  sqlite3_step(check);
  const QString result = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(check, 0)));
  sqlite3_finalize(check);
  return result;
}

void expectWholeDatabases(const QString& directory) {
  QDirIterator files(directory, {QStringLiteral("*.nsf")}, QDir::Files, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString file = files.next();
    EXPECT_EQ(integrityOf(file), QStringLiteral("ok")) << file.toStdString();
  }
}

class Interruption : public ::testing::TestWithParam<size_t> {
 protected:
  Interruption() : piece(piecesOfWork()[GetParam()]) {
    FaultyDisk::count();
    piece.prepare(origin.path());
  }
  ~Interruption() override { FaultyDisk::count(); }

  // How many changes of files the whole piece takes.
  int lengthOfTheWork() {
    const QTemporaryDir directory(temporaryTemplate());
    copyDirectory(origin.path(), directory.path());
    FaultyDisk::count();
    piece.run(directory.path(), [] {});
    return FaultyDisk::changes();
  }

  std::vector<int> moments() {
    const int length = lengthOfTheWork();
    EXPECT_GT(length, 0);
    const int stride = (length + kMostMoments - 1) / kMostMoments;
    std::vector<int> all;
    for (int moment = 1; moment <= length; moment += stride) all.push_back(moment);
    return all;
  }

  const PieceOfWork piece;
  const QTemporaryDir origin{temporaryTemplate()};
};

struct Ending {
  int steps = 0;   // that were finished, as the process told before it ended
  int status = 0;  // as waitpid gives it
};

// Runs the work in a process of its own, which calls `first` before it begins; `watch` is called here
// meanwhile.
Ending runInProcess(const PieceOfWork& piece, const QString& directory, const std::function<void()>& first,
                    const std::function<void(pid_t)>& watch = {}) {
  int ends[2] = {-1, -1};
  EXPECT_EQ(pipe(ends), 0);
  const pid_t child = fork();
  if (child == 0) {
    ::close(ends[0]);
    first();
    try {
      piece.run(directory, [&] {
        const char done = 1;
        if (::write(ends[1], &done, 1) != 1) _exit(1);
      });
    } catch (...) {
      _exit(2);
    }
    _exit(0);
  }
  ::close(ends[1]);
  if (watch) watch(child);
  Ending ending;
  char done = 0;
  while (::read(ends[0], &done, 1) == 1) ++ending.steps;
  ::close(ends[0]);
  waitpid(child, &ending.status, 0);
  return ending;
}

// Runs the work in a process that dies at that change; the number of its finished steps.
int stepsBeforeDeath(const PieceOfWork& piece, const QString& directory, int moment) {
  const Ending ending = runInProcess(piece, directory, [moment] { FaultyDisk::dieAt(moment); });
  EXPECT_TRUE(WIFEXITED(ending.status));
  EXPECT_EQ(WEXITSTATUS(ending.status), kDied) << "the process should have died at change " << moment;
  return ending.steps;
}

TEST_P(Interruption, AtAnyMomentByTheEndOfTheProcessLosesNothing) {
  for (const int moment : moments()) {
    SCOPED_TRACE(::testing::Message() << "died at change " << moment);
    const QTemporaryDir directory(temporaryTemplate());
    copyDirectory(origin.path(), directory.path());
    const int steps = stepsBeforeDeath(piece, directory.path(), moment);
    FaultyDisk::count();
    expectWholeDatabases(directory.path());
    piece.check(directory.path(), steps);
    if (HasFailure()) return;
  }
}

// Microseconds that the whole piece takes in a process of its own.
qint64 timeOfTheWork(const PieceOfWork& piece, const QString& origin) {
  const QTemporaryDir directory(temporaryTemplate());
  copyDirectory(origin, directory.path());
  QElapsedTimer clock;
  clock.start();
  runInProcess(piece, directory.path(), [] {});
  return std::max<qint64>(1000, clock.nsecsElapsed() / 1000);
}

// Where the process is stopped from outside, between any two of its instructions.
TEST_P(Interruption, ByAKillAtARandomMomentLosesNothing) {
  const int kills = qEnvironmentVariableIsSet("LENS_SOAK") ? 80 : 3;
  int killed = 0, steps = 0;
  const qint64 microseconds = timeOfTheWork(piece, origin.path());
  for (int round = 0; round < kills; ++round) {
    const QTemporaryDir directory(temporaryTemplate());
    copyDirectory(origin.path(), directory.path());
    const qint64 delay = QRandomGenerator::global()->bounded(microseconds);
    SCOPED_TRACE(::testing::Message() << "killed after " << delay << " microseconds");
    const Ending ending = runInProcess(
        piece, directory.path(), [] {},
        [delay](pid_t child) {
          usleep(useconds_t(delay));
          ::kill(child, SIGKILL);
        });
    if (WIFSIGNALED(ending.status)) ++killed;
    steps += ending.steps;
    expectWholeDatabases(directory.path());
    piece.check(directory.path(), ending.steps);
    if (HasFailure()) return;
  }
  std::printf("%s: %d kills in %d runs, %d finished steps, none lost\n", piece.name, killed, kills, steps);
}

TEST_P(Interruption, ByAFullDiskIsToldAndLosesNothing) {
  int told = 0;
  for (const int moment : moments()) {
    SCOPED_TRACE(::testing::Message() << "full from change " << moment);
    const QTemporaryDir directory(temporaryTemplate());
    copyDirectory(origin.path(), directory.path());
    int steps = 0;
    FaultyDisk::fullFrom(moment);
    try {
      piece.run(directory.path(), [&] { ++steps; });
    } catch (const RuntimeError& error) {
      ++told;
      EXPECT_TRUE(error.description().contains(directory.path()))
          << "names no file: " << error.description().toStdString();
    }
    FaultyDisk::count();
    expectWholeDatabases(directory.path());
    piece.check(directory.path(), steps);
    if (HasFailure()) return;
  }
  EXPECT_GT(told, 0);
}

std::vector<size_t> places() {
  std::vector<size_t> all(piecesOfWork().size());
  for (size_t place = 0; place < all.size(); ++place) all[place] = place;
  return all;
}

INSTANTIATE_TEST_SUITE_P(Of, Interruption, ::testing::ValuesIn(places()),
                         [](const auto& place) { return piecesOfWork()[place.param].name; });

}  // namespace
}  // namespace lens::testbed
