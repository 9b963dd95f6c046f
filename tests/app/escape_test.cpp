// Esc while the program works: seen without running anything else that waits.

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "app/launcher.h"
#include "host/desktop_host.h"
#include "support/printers.h"
#include "support/recording_host.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

class EscapeTest : public testing::Test {
 protected:
  EscapeTest() {
    window.setFocusPolicy(Qt::StrongFocus);
    window.show();
    window.setFocus();
  }
  void post(int key, const QString& text = {}) {
    QCoreApplication::postEvent(&window, new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier, text));
  }

  QLineEdit window;
  DesktopHost host;
};

TEST_F(EscapeTest, IsSeenOnceWhileItWaits) {
  post(Qt::Key_Escape);
  EXPECT_TRUE(host.escapePressed());
  QTest::qSleep(60);  // as often as it really looks
  EXPECT_FALSE(host.escapePressed());
}

TEST_F(EscapeTest, IsNotSeenWhenNobodyPressedIt) {
  EXPECT_FALSE(host.escapePressed());
}

TEST_F(EscapeTest, OtherKeysWaitForTheEndOfTheWorkInTheirOrder) {
  post(Qt::Key_A, u"a"_s);
  post(Qt::Key_Escape);
  post(Qt::Key_B, u"b"_s);
  EXPECT_TRUE(host.escapePressed());
  EXPECT_EQ(window.text(), QString());
  QCoreApplication::processEvents();
  EXPECT_EQ(window.text(), u"ab"_s);
}

TEST_F(EscapeTest, NothingElseRunsWhileItIsLookedFor) {
  int ran = 0;
  QPushButton button;
  QObject::connect(&button, &QPushButton::clicked, &button, [&] { ++ran; });
  const auto postMouse = [&](QEvent::Type type) {
    QCoreApplication::postEvent(
        &button,
        new QMouseEvent(type, QPointF(2, 2), QPointF(2, 2), Qt::LeftButton,
                        type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier));
  };
  postMouse(QEvent::MouseButtonPress);
  postMouse(QEvent::MouseButtonRelease);
  QMetaObject::invokeMethod(
      &button, [&] { ++ran; }, Qt::QueuedConnection);
  post(Qt::Key_Escape);
  EXPECT_TRUE(host.escapePressed());
  EXPECT_EQ(ran, 0);
  QCoreApplication::processEvents();
  EXPECT_EQ(ran, 2);
}

TEST_F(EscapeTest, KeysForAWindowThatGoesAreForgotten) {
  {
    QLineEdit other;
    QCoreApplication::postEvent(&other, new QKeyEvent(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, u"a"_s));
    EXPECT_FALSE(host.escapePressed());
  }
  QCoreApplication::processEvents();
}

TEST(Launching, ConnectsEscWithFormulasThatRunOn) {
  QTemporaryDir directory;
  qputenv("TESSALY_WORKSPACE", directory.filePath(u"workspace"_s).toUtf8());
  RecordingHost host;
  Launcher launcher(host);
  launcher.start();
  host.whenEscapeIsAsked = [&] { return host.escapesAsked == 2; };
  ASSERT_TRUE(QTest::qWaitFor([&] { return launcher.client() != nullptr; }));
  host.escapesAsked = 0;
  const Object database = launcher.application().state.gDb;
  ASSERT_TRUE(database);
  EXPECT_THROW(database.call(u"SEARCH"_s, u"SELECT @While(1; 1)"_s, Object(), 0), RuntimeError);
  EXPECT_GE(host.escapesAsked, 2);
  EXPECT_LE(host.escapesAsked, 3);
  qunsetenv("TESSALY_WORKSPACE");
  setUntrappedReport(nullptr);
}

}  // namespace
}  // namespace lens
