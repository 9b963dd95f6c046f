// The client window can be reached and the program comes up, whatever stands in the way.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "app/launcher.h"
#include "app/window_places.h"
#include "controls/fonts.h"
#include "support/printers.h"
#include "support/recording_host.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

TEST(WindowPlaces, AreBesideTheWindowWhereThereIsRoom) {
  const QRect screen(0, 0, 2560, 1400), main(100, 50, 1440, 900);
  const QSize wanted(1080, 680), least(520, 400);
  const auto right = placeBeside(main, {screen}, wanted, least);
  ASSERT_TRUE(right);
  EXPECT_EQ(*right, QRect(1540, 50, 1020, 680)) << "as wide as there is room";
  const auto left = placeBeside(QRect(1000, 50, 1440, 900), {screen}, wanted, least);
  ASSERT_TRUE(left);
  EXPECT_EQ(*left, QRect(0, 50, 1000, 680));
  EXPECT_EQ(*placeBeside(QRect(1300, 1000, 1200, 400), {screen}, wanted, least), QRect(220, 720, 1080, 680))
      << "whole on the screen, and at the main window's side";
}

TEST(WindowPlaces, AreOnAnotherScreenWhereTheOwnIsFull) {
  const QRect screen(0, 0, 1366, 728), other(1366, 0, 1920, 1080);
  EXPECT_EQ(*placeBeside(screen, {screen, other}, {1080, 680}, {520, 400}), QRect(1366, 0, 1080, 680));
  EXPECT_FALSE(placeBeside(screen, {screen}, {1080, 680}, {520, 400}));
  EXPECT_FALSE(placeBeside(screen, {}, {1080, 680}, {520, 400}));
}

TEST(WindowPlaces, ReachBehindTheWindowAndNotBeyondTheScreenWhereTheyAreNarrow) {
  const QRect main(560, 297, 1442, 930);
  EXPECT_EQ(widenedBehind(QRect(2002, 297, 558, 680), main, 611), QRect(1949, 297, 611, 680));
  EXPECT_EQ(widenedBehind(QRect(0, 297, 560, 680), main, 611), QRect(0, 297, 611, 680));
  EXPECT_EQ(widenedBehind(QRect(2002, 297, 700, 680), main, 611), QRect(2002, 297, 700, 680));
}

class ClientReach : public testing::Test {
 protected:
  ClientReach() { useWorkspace(directory.filePath(u"workspace"_s)); }
  ~ClientReach() override {
    qunsetenv("TESSALY_WORKSPACE");
    setUntrappedReport(nullptr);
  }
  static void useWorkspace(const QString& path) { qputenv("TESSALY_WORKSPACE", path.toUtf8()); }
  static bool clientComesUp(Launcher& launcher) {
    return QTest::qWaitFor([&] { return launcher.client() != nullptr; });
  }
  // A file where the workspace should be.
  QString brokenWorkspace() {
    const QString path = directory.filePath(u"file"_s);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    useWorkspace(path);
    return path;
  }

  QTemporaryDir directory;
  RecordingHost host;
};

TEST_F(ClientReach, F9BringsTheClientWindowUpFromTheMainWindow) {
  Launcher launcher(host);
  launcher.start();
  ASSERT_TRUE(clientComesUp(launcher));
  launcher.client()->close();
  Form1& form = launcher.application().form;
  form.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
  QTest::keyClick(form.txtFieldContent, Qt::Key_F9);
  EXPECT_TRUE(launcher.client()->isVisible());
  EXPECT_TRUE(QTest::qWaitForWindowActive(launcher.client()));
}

TEST_F(ClientReach, TheTrayMenuBringsItUpToo) {
  Launcher launcher(host);
  launcher.start();
  ASSERT_TRUE(clientComesUp(launcher));
  launcher.client()->close();
  launcher.application().form.mnuBarHide->raise();
  PopupMenu& menu = *launcher.application().form.mnuBar;
  ASSERT_EQ(menu.actions().size(), 4);
  EXPECT_EQ(menu.actions().last()->text(), u"Client window"_s);
  menu.actions().last()->trigger();
  EXPECT_TRUE(launcher.client()->isVisible());
}

// Asked in the user's place.
struct ScriptedWorkspace : WorkspaceChoice {
  QStringList answers, failures;
  QString another(const QString&, const QString& failure) override {
    failures += failure;
    return answers.isEmpty() ? QString() : answers.takeFirst();
  }
};

TEST_F(ClientReach, AWorkspaceThatCannotBeOpenedMakesWayForAnotherOne) {
  const QString broken = brokenWorkspace();
  ScriptedWorkspace choice;
  choice.answers = {broken, directory.filePath(u"fresh"_s)};
  Launcher launcher(host, {}, &choice);
  launcher.start();
  ASSERT_EQ(choice.failures.size(), 2) << "it asks as long as it takes";
  EXPECT_TRUE(choice.failures[0].contains(broken));
  EXPECT_EQ(host.boxTexts(), QStringList());
  EXPECT_TRUE(clientComesUp(launcher));
  EXPECT_TRUE(launcher.application().form.sbrMain->panelText(u"Source"_s).contains(u"fresh"_s));
  EXPECT_TRUE(launcher.application().form.txtFieldContent->text().startsWith(u"Dear Mr Okafor"));
}

// Without a record nothing moves with the window, so it must not be larger than its design.
TEST_F(ClientReach, WithoutAWorkspaceTheWindowIsLaidOutAsItWasDesigned) {
  brokenWorkspace();
  ScriptedWorkspace choice;
  Launcher launcher(host, {}, &choice);
  launcher.start();
  const Form1& form = launcher.application().form;
  const QRect corner = form.cmdEnd->geometry();
  EXPECT_GE(form.width(), corner.right());
  EXPECT_LT(form.width(), corner.right() + 40);
  EXPECT_LT(form.height(), corner.bottom() + 60);
}

TEST_F(ClientReach, TheDesktopsQuestionNamesTheFailureAndOffersBoth) {
  QStringList buttons;
  QString text;
  QTimer::singleShot(0, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box) return;
    text = box->text();
    for (QAbstractButton* button : box->buttons()) buttons += button->text().remove(u'&');
    box->escapeButton()->click();
  });
  EXPECT_EQ(DesktopWorkspaceChoice().another(u"/no/where"_s, u"<b>why</b>"_s), QString());
  EXPECT_EQ(text, u"<b>why</b>"_s);
  for (const QString& wanted : {u"Open another..."_s, u"Make a new one..."_s, u"Go on without"_s})
    EXPECT_TRUE(buttons.contains(wanted)) << wanted.toStdString();
}

TEST_F(ClientReach, TheStatusBarNamesTheFontThatIsSeenFromTheStart) {
  Launcher launcher(host);
  launcher.start();
  const QString shown = launcher.application().form.sbrMain->panelText(u"FontInfo"_s);
  EXPECT_TRUE(shown.startsWith(u"Font: "_s + installedFamily(u"Consolas"_s))) << shown.toStdString();
}

}  // namespace
}  // namespace lens
