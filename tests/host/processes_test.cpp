// Ending processes by the file that they run, tried on children of this process.
#include "host/processes.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace lens {
namespace {
using namespace Qt::StringLiterals;

class Processes : public ::testing::Test {
 protected:
  // A program under that name that does nothing for a while.
  std::unique_ptr<QProcess> child(const QString& name) {
    const QString file = directory_.filePath(name);
    EXPECT_TRUE(QFile::exists(file) || QFile::copy(u"/bin/sleep"_s, file));
    auto process = std::make_unique<QProcess>();
    process->start(file, {u"60"_s});
    EXPECT_TRUE(process->waitForStarted());
    return process;
  }
  static bool lives(QProcess& process) { return !process.waitForFinished(300); }
  static bool ended(QProcess& process) { return process.waitForFinished(10000); }

  QTemporaryDir directory_;
};

TEST_F(Processes, AreEndedByTheWholeNameOfTheirFileWithoutCapitals) {
  const auto client = child(u"nlnotes.exe"_s), capitals = child(u"NLNotes.EXE"_s),
             other = child(u"nlnotes"_s), longer = child(u"xnlnotes.exe"_s);
  EXPECT_FALSE(endOtherProcesses({u"nlnotes.exe"_s}));
  EXPECT_TRUE(ended(*client));
  EXPECT_TRUE(ended(*capitals));
  EXPECT_TRUE(lives(*other));
  EXPECT_TRUE(lives(*longer));
  other->kill();
  longer->kill();
  EXPECT_TRUE(ended(*other) && ended(*longer));
}

// The process table would have cut it.
TEST_F(Processes, OfALongNameAreFound) {
  const auto copy = child(u"TessalyAndDocContent"_s), like = child(u"TessalyAndDocCo"_s);
  EXPECT_EQ(programOf(copy->processId()), u"TessalyAndDocContent"_s);
  EXPECT_FALSE(endOtherProcesses({u"TessalyAndDocContent.exe"_s, u"TessalyAndDocContent"_s}));
  EXPECT_TRUE(ended(*copy));
  EXPECT_TRUE(lives(*like));
  like->kill();
  EXPECT_TRUE(ended(*like));
}

// A name server is called like a helper of the client.
TEST_F(Processes, OfOtherSystemsAreLeftAlone) {
  const auto nsd = child(u"nsd"_s);
  endOtherProcesses({u"nsd.exe"_s});
  EXPECT_TRUE(lives(*nsd));
  nsd->kill();
  EXPECT_TRUE(ended(*nsd));
}

TEST_F(Processes, WhoseFileHasBeenDeletedAreStillKnown) {
  const auto client = child(u"notes2.exe"_s);
  ASSERT_TRUE(QFile::remove(directory_.filePath(u"notes2.exe"_s)));
  endOtherProcesses({u"notes2.exe"_s});
  EXPECT_TRUE(ended(*client));
}

// A loader is started under the name of what it loads.
TEST_F(Processes, OfALoaderAreCalledAfterTheirOwnFile) {
  const QString loader = directory_.filePath(u"wine-preloader"_s);
  ASSERT_TRUE(QFile::copy(u"/bin/sleep"_s, loader));
  QProcess process;
  process.start(u"/bin/bash"_s, {u"-c"_s, u"exec -a 'C:\\Notes\\nlnotes.exe' "_s + loader + u" 60"_s});
  ASSERT_TRUE(process.waitForStarted());
  for (int i = 0; i < 100 && programOf(process.processId()) != u"nlnotes.exe"_s; ++i)
    process.waitForFinished(20);
  EXPECT_EQ(programOf(process.processId()), u"nlnotes.exe"_s);
  endOtherProcesses({u"nlnotes.exe"_s});
  EXPECT_TRUE(ended(process));
}

TEST_F(Processes, TheOwnOneIsToldAndLivesOn) {
  EXPECT_TRUE(endOtherProcesses({programOf(::getpid())}));
  EXPECT_FALSE(endOtherProcesses({}));
}

}  // namespace
}  // namespace lens
