// The buttons that work on the machine itself.
#include "tools/host_tools.h"

#include <QFileInfo>

#include "shell/exact_texts.h"
#include "support/lens_fixture.h"

namespace lens {
namespace {

class HostToolsTest : public LensFixture {
 protected:
  HostToolsTest() {
    openDatabase(u"mail.nsf"_s);
    start();
    host.boxes.clear();
  }
  void press(const char* button) { control<CommandButton>(button).click.fire(); }
  QString pane() { return control<DirList>("Dir1").path(); }
};

TEST_F(HostToolsTest, TheDirectoriesMoveTheFilePane) {
  const QString data = state().gDataDir;
  press("cmdDataDir");
  EXPECT_EQ(pane(), QFileInfo(data).absoluteFilePath());
  EXPECT_EQ(control<FileList>("File1").path(), pane());
  EXPECT_TRUE(rows("File1").contains(u"mail.nsf"_s));
  QTemporaryDir temporary;
  host.tempDir = temporary.path();
  press("cmdTempDir");
  EXPECT_EQ(pane(), temporary.path());
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(HostToolsTest, AFileThatCameMeanwhileIsListed) {
  press("cmdDataDir");
  QFile file(state().gDataDir + u"/new.txt");
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.close();
  press("cmdDataDir");
  EXPECT_TRUE(rows("File1").contains(u"new.txt"_s));
}

TEST_F(HostToolsTest, AnUnusableDirectoryEndsInTheGeneralReport) {
  const QString before = pane();
  for (const QString& directory : {QString(), u"/no/such/directory"_s}) {
    host.tempDir = directory;
    host.boxes.clear();
    press("cmdTempDir");
    ASSERT_EQ(host.boxes.size(), 1) << directory.toStdString();
    EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '76':"_s));
    EXPECT_EQ(pane(), before);
  }
}

// Its name has other capitals than the file.
TEST_F(HostToolsTest, TheSettingsFileOfTheClientIsOpened) {
  press("cmdIni");
  ASSERT_EQ(host.opened.size(), 1);
  EXPECT_EQ(QFileInfo(host.findFile(host.opened[0])).fileName(), u"notes.ini"_s);
  EXPECT_EQ(boxes(), QStringList());
  host.shellCode = 2;
  press("cmdIni");
  EXPECT_EQ(boxes(), QStringList(exact::kCannotExecute));
}

TEST_F(HostToolsTest, AHungClientIsEndedWithItsHelpersItsLockAndThisProgram) {
  const QString lock = state().gDataDir + u"/~notes.lck";
  QFile file(lock);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.close();
  host.isOwnProgram = true;
  ASSERT_TRUE(endsProcess([&] { press("cmdKillNotes"); }));
  EXPECT_EQ(host.endedProcesses,
            QVector<QStringList>({{u"nlnotes.exe"_s},
                                  {u"notes2.exe"_s},
                                  {u"nsd.exe"_s},
                                  {u"ntaskldr.exe"_s},
                                  {u"rcplauncher.exe"_s},
                                  {u"TessalyAndDocContent.exe"_s, u"TessalyAndDocContent"_s}}));
  EXPECT_FALSE(QFileInfo::exists(lock));
  EXPECT_TRUE(state().gSession.isNothing());
  EXPECT_TRUE(state().gUIWorkspace.isNothing());
  EXPECT_TRUE(state().gDb.isNothing());
  EXPECT_EQ(host.processEnds, 1);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(HostToolsTest, UnderAnotherNameTheProgramLivesOn) {
  ASSERT_FALSE(endsProcess([&] { press("cmdKillNotes"); }));
  EXPECT_EQ(host.endedProcesses.size(), 6);
  EXPECT_TRUE(state().gSession.isNothing());
  EXPECT_EQ(boxes(), QStringList());  // there was no lock either
  press("cmdDataDir");
  EXPECT_FALSE(state().gSession.isNothing());
}

TEST_F(HostToolsTest, AFailureOnTheWayKeepsNoneOfTheRestFromBeingEnded) {
  host.whileEnding = [](const QStringList&) { throw RuntimeError(err::PermissionDenied); };
  press("cmdKillNotes");
  EXPECT_EQ(host.endedProcesses.size(), 6);
  EXPECT_EQ(host.deletedFiles.size(), 1);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(HostToolsTest, AClientThatGivesNoDirectoryEndsInTheGeneralReport) {
  for (const char* button : {"cmdDataDir", "cmdIni"}) {
    host.boxes.clear();
    notes().failing.insert(u"GETENVIRONMENTSTRING"_s, RuntimeError(err::ObjectNotSet));
    press(button);
    ASSERT_EQ(host.boxes.size(), 1) << button;
    EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '91':"_s)) << button;
    notes().failing.clear();
  }
  EXPECT_EQ(host.opened, QStringList());
}

// The root's file of that name is none of the client's.
TEST_F(HostToolsTest, WithoutADataDirectoryNoLockIsDeleted) {
  state().gDataDir.clear();
  ASSERT_FALSE(endsProcess([&] { press("cmdKillNotes"); }));
  EXPECT_EQ(host.deletedFiles, QStringList());
}

}  // namespace
}  // namespace lens
