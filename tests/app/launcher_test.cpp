// The launcher from its first breath: good, missing and damaged workspaces.

#include "app/launcher.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "app/closed_doors.h"
#include "app/sample_workspace.h"
#include "host/desktop_host.h"
#include "support/printers.h"
#include "support/recording_host.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

class ProgramTest : public testing::Test {
 protected:
  ProgramTest() { useWorkspace(directory.filePath(u"workspace"_s)); }
  ~ProgramTest() override {
    qunsetenv("TESSALY_WORKSPACE");
    setUntrappedReport(nullptr);
  }
  static void useWorkspace(const QString& path) { qputenv("TESSALY_WORKSPACE", path.toUtf8()); }
  // The client window follows the main window a moment later.
  static bool clientComesUp(Launcher& launcher) {
    return QTest::qWaitFor([&] { return launcher.client() != nullptr; });
  }
  QString sampleMail() const { return directory.filePath(u"workspace/data/mail/kmeier.nsf"_s); }

  QTemporaryDir directory;
  RecordingHost host;
};

TEST_F(ProgramTest, TheFirstStartShowsTheSampleMail) {
  Launcher launcher(host);
  launcher.start();
  Form1& form = launcher.application().form;
  EXPECT_EQ(host.boxTexts(), QStringList());
  EXPECT_TRUE(form.isVisible());
  ASSERT_TRUE(clientComesUp(launcher));
  EXPECT_TRUE(launcher.client()->isVisible());
  EXPECT_TRUE(form.txtFieldContent->text().startsWith(u"Dear Mr Okafor"));
  EXPECT_TRUE(form.sbrMain->panelText(u"Source"_s).startsWith(u"Embedded: "));
  EXPECT_FALSE(QApplication::quitOnLastWindowClosed());
}

// What stands behind the doors of a client that is not there.
ClientDoors absentClient() {
  return {std::make_unique<ClosedGateway>(u"no client"_s), std::make_unique<ClosedCApi>(u"no client"_s)};
}

TEST_F(ProgramTest, WithoutANamedWorkspaceTheClientIsAsked) {
  qunsetenv("TESSALY_WORKSPACE");
  Launcher launcher(host, absentClient());
  launcher.start();
  EXPECT_TRUE(host.boxTexts().contains(u"Start NotesClient !!!  no client"_s));
  Form1& form = launcher.application().form;
  EXPECT_TRUE(form.isVisible());
  EXPECT_EQ(form.sbrMain->panelText(u"Source"_s), u"Notes client"_s);
  QTest::qWait(100);
  EXPECT_EQ(launcher.client(), nullptr);
}

TEST_F(ProgramTest, ANamedWorkspaceGoesBeforeTheClient) {
  Launcher launcher(host, absentClient());
  launcher.start();
  EXPECT_EQ(host.boxTexts(), QStringList());
  EXPECT_TRUE(launcher.application().form.sbrMain->panelText(u"Source"_s).startsWith(u"Embedded: "));
}

TEST_F(ProgramTest, TheFirstStartMakesATemplateAndAReplicaOnAServer) {
  { const Launcher first(host); }
  const auto workspace = Workspace::open(directory.filePath(u"workspace"_s), host.regional());
  const QString replica = QDir::toNativeSeparators(u"disc/ideas.nsf"_s);
  EXPECT_EQ(workspace->databases(u"ACME-APP02/Acme"_s), QStringList(replica));
  EXPECT_EQ(workspace->infoOf({u"CN=ACME-APP02/O=Acme"_s, replica}).replicaId,
            workspace->infoOf({QString(), replica}).replicaId);
  EXPECT_EQ(workspace->infoOf({QString(), u"acmedisc.ntf"_s}).templateName, u"AcmeDiscussion"_s);
}

TEST_F(ProgramTest, AWorkspaceThatIsAFileIsNamedAndTheProgramComesUpWithClosedDoors) {
  const QString path = directory.filePath(u"file"_s);
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.close();
  useWorkspace(path);
  Launcher launcher(host);
  launcher.start();
  EXPECT_FALSE(launcher.client());
  EXPECT_TRUE(launcher.application().form.isVisible());
  ASSERT_GE(host.boxes.size(), 3);
  EXPECT_TRUE(host.boxes[0].text.contains(path)) << host.boxes[0].text.toStdString();
  EXPECT_EQ(host.boxes[0].style, box::Critical);
  EXPECT_TRUE(host.boxes[1].text.startsWith(u"Start NotesClient !!!  "));
  EXPECT_TRUE(host.boxes[2].text.endsWith(u"in procedure Form_Load of Formular Form1"));
  host.boxes.clear();
  launcher.application().form.cmdGetDoc->raiseClick();
  EXPECT_EQ(launcher.application().routines.GetAPIError(0x0222), "");
  EXPECT_FALSE(host.boxes.isEmpty());
}

TEST_F(ProgramTest, ADamagedSampleIsNamedAndTheOtherDatabasesStayInReach) {
  { const Launcher first(host); }
  QFile file(sampleMail());
  ASSERT_TRUE(file.resize(5000));
  for (const char16_t* journal : {u"-wal", u"-shm"})
    QFile::remove(sampleMail() + QString::fromUtf16(journal));
  Launcher launcher(host);
  launcher.start();
  ASSERT_FALSE(host.boxes.isEmpty());
  EXPECT_TRUE(host.boxes[0].text.contains(u"kmeier.nsf")) << host.boxes[0].text.toStdString();
  EXPECT_TRUE(clientComesUp(launcher));
  EXPECT_TRUE(launcher.application().form.isVisible());
  EXPECT_EQ(launcher.application().form.lstServerList->listCount(), 4);
}

TEST_F(ProgramTest, AServerThatCannotBeReadIsToldInTheClientWindowAndTheOthersStay) {
  { const Launcher first(host); }
  const QString folder = directory.filePath(u"workspace/servers/junk"_s);
  QDir().mkpath(folder);
  QFile junk(folder + u"/server.ini"_s);
  ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
  junk.write("\xff\xfe\x80");
  junk.close();
  Launcher launcher(host);
  launcher.start();
  EXPECT_EQ(host.boxTexts(), QStringList());
  ASSERT_TRUE(clientComesUp(launcher));
  const auto* text = launcher.client()->findChild<QLabel*>(u"errorText"_s);
  ASSERT_TRUE(text);
  EXPECT_TRUE(text->text().contains(junk.fileName())) << text->text().toStdString();
  EXPECT_EQ(launcher.application().form.lstServerList->listCount(), 4);
}

TEST_F(ProgramTest, TheNextStartShowsWhatWasOpenInTheSamePlaces) {
  const DatabasePlace ideas{QString(), QDir::toNativeSeparators(u"disc/ideas.nsf"_s)};
  QSize main;
  {
    Launcher launcher(host);
    launcher.start();
    ASSERT_TRUE(clientComesUp(launcher));
    ASSERT_TRUE(launcher.client()->openDatabase(ideas));
    launcher.client()->setGeometry(20, 30, 700, 480);
    launcher.client()->close();
    Form1& form = launcher.application().form;
    QTest::qWait(1200);  // the desktop's first second
    main = form.size() + QSize(-60, 10);
    form.resize(main);
    QTest::qWait(500);
  }
  Launcher launcher(host);
  launcher.start();
  EXPECT_EQ(launcher.application().form.size(), main);
  // Behind the record: what is placed by it has grown with the window.
  EXPECT_NE(launcher.application().layout.recordedHeight() / WindowLayout::kTwipsPerPixel, main.height());
  ASSERT_TRUE(clientComesUp(launcher));
  EXPECT_EQ(launcher.client()->geometry(), QRect(20, 30, 700, 480));
  EXPECT_TRUE(launcher.client()->windowTitle().contains(u"Discussion"))
      << launcher.client()->windowTitle().toStdString();
}

TEST_F(ProgramTest, AKeptHeightBelowTheRecordComesUpWithReadableText) {
  {
    Launcher launcher(host);
    launcher.start();
    QTest::qWait(1200);
    launcher.application().form.resize(700, 340);
    QTest::qWait(500);
  }
  Launcher launcher(host);
  launcher.start();
  const WindowLayout& layout = launcher.application().layout;
  EXPECT_EQ(launcher.application().form.height(), layout.recordedHeight() / WindowLayout::kTwipsPerPixel);
  EXPECT_GE(layout.ScaledFontSize(), 8);
}

TEST_F(ProgramTest, FilesThatItIsStartedWithComeIntoTheClientWindow) {
  { const Launcher first(host); }
  Launcher launcher(host);
  launcher.openWhenShown({directory.filePath(u"workspace/data/disc/ideas.nsf"_s)});
  launcher.start();
  ASSERT_TRUE(clientComesUp(launcher));
  ASSERT_TRUE(QTest::qWaitFor([&] { return launcher.client()->windowTitle().contains(u"Discussion"); }))
      << launcher.client()->windowTitle().toStdString();
}

// What raises here is a box there.
TEST_F(ProgramTest, OfFirstStartsAtOnceOneFillsAndTheOthersWait) {
  for (int round = 0; round < 3; ++round) {
    const QString path = directory.filePath(u"workspace%1"_s.arg(round));
    std::vector<pid_t> starts(4);
    for (std::size_t i = 0; i < starts.size(); ++i) {
      starts[i] = fork();
      if (starts[i] != 0) continue;
      int faults = 0;
      try {
        usleep(useconds_t(i * round * 100'000));
        const auto workspace = Workspace::open(path, host.regional());
        fillFirstTime(*workspace);
        faults = openSampleMail(*workspace) && workspace->serverNames().size() == 3 &&
                         workspace->client().document()
                     ? 0
                     : 1;
      } catch (const RuntimeError& error) {
        fprintf(stderr, "%s\n", qPrintable(error.description()));
        faults = 2;
      }
      _exit(faults);
    }
    for (const pid_t start : starts) {
      int status = 0;
      waitpid(start, &status, 0);
      EXPECT_EQ(status, 0) << round;
    }
    const auto workspace = Workspace::open(path, host.regional());
    EXPECT_EQ(workspace->serverNames().size(), 3) << "no server twice";
    EXPECT_EQ(workspace->iniValue(u"Samples"), u"filled"_s);
    EXPECT_FALSE(QFile::exists(path + u"/samples.lock"_s));
  }
}

TEST_F(ProgramTest, AFirstStartThatWasCutShortIsDoneAgain) {
  { const Launcher first(host); }
  {
    const auto workspace = Workspace::open(directory.filePath(u"workspace"_s), host.regional());
    workspace->setIniValue(u"Samples"_s, u"filling"_s);
  }
  ASSERT_TRUE(QFile::remove(sampleMail()));
  Launcher launcher(host);
  EXPECT_EQ(host.boxTexts(), QStringList());
  EXPECT_TRUE(QFile::exists(sampleMail()));
}

TEST_F(ProgramTest, DoingAFirstStartAgainLeavesFilledDatabasesWithTheirNewDocuments) {
  { const Launcher first(host); }
  Note note;
  {
    const auto workspace = Workspace::open(directory.filePath(u"workspace"_s), host.regional());
    workspace->setIniValue(u"Samples"_s, u"filling"_s);
    note.add(u"Form"_s, itemflag::Summary, textValue(u"Memo"_s));
    workspace->database(QString(), u"mail/kmeier.nsf"_s)->notes().save(note);
  }
  { const Launcher second(host); }
  const auto workspace = Workspace::open(directory.filePath(u"workspace"_s), host.regional());
  Note found;
  EXPECT_TRUE(workspace->database(QString(), u"mail/kmeier.nsf"_s)->notes().read(note.header.unid, found));
  EXPECT_EQ(workspace->iniValue(u"Samples"), "filled");
  EXPECT_EQ(host.boxTexts(), QStringList());
}

TEST_F(ProgramTest, AClosedClientWindowLeavesTheProgramAliveAndComesBackFromTheStatusBar) {
  Launcher launcher(host);
  launcher.start();
  ASSERT_TRUE(clientComesUp(launcher));
  launcher.client()->close();
  launcher.application().form.mnuBarHide->raise();
  QApplication::processEvents();
  EXPECT_FALSE(launcher.client()->isVisible());
  launcher.application().form.mnuBarShow->raise();
  launcher.application().form.sbrMain->panelClick.raise(u"Source"_s);
  EXPECT_TRUE(launcher.client()->isVisible());
  EXPECT_EQ(host.processEnds, 0);
}

TEST_F(ProgramTest, ABoxOfTheDesktopBlocksTheToolAndNotTheClientWindowAndShowsMarkupAsItIs) {
  Launcher launcher(host);
  launcher.start();
  ASSERT_TRUE(clientComesUp(launcher));
  DesktopHost desktop;
  QMessageBox* shown = nullptr;
  Qt::WindowModality modality = Qt::NonModal;
  QString text;
  Qt::TextFormat format = Qt::AutoText;
  const QWidget* owner = nullptr;
  QTimer::singleShot(0, [&] {
    for (QWidget* window : QApplication::topLevelWidgets())
      if (auto* box = qobject_cast<QMessageBox*>(window)) shown = box;
    if (!shown) return;
    modality = shown->windowModality();
    text = shown->text();
    format = shown->textFormat();
    owner = shown->parentWidget();
    shown->accept();
  });
  desktop.messageBox(u"<b>x</b>"_s, box::Plain, QString());
  ASSERT_TRUE(shown);
  EXPECT_EQ(modality, Qt::WindowModal);
  EXPECT_EQ(owner, &launcher.application().form);
  EXPECT_EQ(text, "<b>x</b>");
  EXPECT_EQ(format, Qt::PlainText);
}

// A box that nobody can reach behind a window that blocks its owner would hold up the program.
TEST_F(ProgramTest, ABoxStandsOverTheWindowThatBlocksTheMainWindow) {
  Launcher launcher(host);
  launcher.start();
  ASSERT_TRUE(clientComesUp(launcher));
  launcher.application().form.cmdCMRcoll->click.fire();
  DesktopHost desktop;
  const QWidget* owner = nullptr;
  const auto showBox = [&] {
    launcher.client()->activateWindow();
    QTimer::singleShot(0, [&] {
      for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* shown = qobject_cast<QMessageBox*>(window);
        if (!shown) continue;
        owner = shown->parentWidget();
        shown->accept();
      }
    });
    desktop.messageBox(u"x"_s, box::Plain, QString());
  };
  showBox();
  EXPECT_EQ(owner, &launcher.application().bulk().window);
  launcher.application().bulk().window.close();
  showBox();
  EXPECT_EQ(owner, &launcher.application().form);
}

TEST_F(ProgramTest, ThePointerShowsWhetherOneMayGoOnPressingButtons) {
  DesktopHost desktop;
  const QVector<std::pair<int, Qt::CursorShape>> shapes = {
      {pointer::Hourglass, Qt::WaitCursor}, {pointer::ArrowHourglass, Qt::BusyCursor}, {1, Qt::ArrowCursor}};
  for (const auto& [code, shape] : shapes) {
    desktop.setPointer(code);
    ASSERT_TRUE(QApplication::overrideCursor());
    EXPECT_EQ(QApplication::overrideCursor()->shape(), shape) << code;
  }
  desktop.setPointer(pointer::Default);
  EXPECT_FALSE(QApplication::overrideCursor());
}

}  // namespace
}  // namespace lens
