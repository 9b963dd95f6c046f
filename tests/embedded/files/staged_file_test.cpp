// Files that come into being beside their final names.
#include "embedded/files/staged_file.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDateTime>

#include "embedded/support/store_test.h"

namespace lens {
namespace {
using namespace Qt::Literals::StringLiterals;

class Aside : public StoreTest {
 protected:
  QString target() const { return path(u"new.nsf"_s); }
};

TEST_F(Aside, ComesIntoItsPlaceWholeOrLeavesNothing) {
  {
    StagedFile file(target());
    writeFile(file.path(), "half");
    EXPECT_FALSE(QFile::exists(target()));
  }
  EXPECT_TRUE(files().filter(u"new"_s).isEmpty());
  {
    StagedFile file(target());
    writeFile(file.path(), "whole");
    file.putInPlace();
  }
  EXPECT_EQ(contentOf(target()), "whole");
  EXPECT_EQ(files().filter(u"new"_s), QStringList(u"new.nsf"_s));
}

TEST_F(Aside, IsNeverPutOverAFileThatCameMeanwhile) {
  StagedFile file(target());
  writeFile(file.path(), "ours");
  writeFile(target(), "theirs");
  EXPECT_EQ(errorNumber([&] { file.putInPlace(); }), 58);
  EXPECT_EQ(contentOf(target()), "theirs");
}

TEST_F(Aside, WhatFoundNoRoomInTheFileIsAFailure) {
  StagedFile file(target());
  writeFile(file.path(), "the first part");
  writeFile(file.path() + u"-wal"_s, "the rest");
  QString why;
  EXPECT_EQ(errorNumber([&] { file.putInPlace(); }, &why), enginefault::NotSaved);
  EXPECT_TRUE(why.contains(target())) << why.toStdString();
  EXPECT_FALSE(QFile::exists(target()));
}

// All that make a database make it so.
TEST_F(Aside, OnlyOneMakesAFileAtATime) {
  const StagedFile first(target());
  QString why;
  EXPECT_EQ(errorNumber([&] { Database::create(target(), {}); }, &why), err::PathFileAccess);
  EXPECT_TRUE(why.contains(target())) << why.toStdString();
  EXPECT_FALSE(QFile::exists(target()));
}

TEST_F(Aside, TheLockOfADeadProcessDoesNotCount) {
  const pid_t child = fork();
  if (child == 0) {
    StagedFile file(target());
    writeFile(file.path(), "half");
    kill(getpid(), SIGKILL);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(QFile::exists(target() + u".lock"_s));
  Database::create(target(), {});
  EXPECT_TRUE(QFile::exists(target()));
  EXPECT_FALSE(QFile::exists(target() + u".lock"_s));
}

TEST_F(Aside, NorDoesALockThatNobodyHadTimeToSign) {
  writeFile(target() + u".lock"_s, "");
  QFile lock(target() + u".lock"_s);
  ASSERT_TRUE(lock.open(QIODevice::ReadWrite));
  ASSERT_TRUE(lock.setFileTime(QDateTime::currentDateTime().addSecs(-60), QFileDevice::FileModificationTime));
  lock.close();
  EXPECT_EQ(errorNumber([&] { StagedFile file(target()); }), 0);
}

}  // namespace
}  // namespace lens
