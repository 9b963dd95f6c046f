// Every window in both sets of colours.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include "app/launcher.h"
#include "controls/look.h"
#include "support/contrast.h"
#include "support/printers.h"
#include "support/recording_host.h"

namespace lens {
namespace {

constexpr double kReadable = 4.5;

// What is written on the widget, and on what.
std::pair<QPalette::ColorRole, QPalette::ColorRole> rolesOf(const QWidget& widget) {
  if (qobject_cast<const QLineEdit*>(&widget) || qobject_cast<const QAbstractScrollArea*>(&widget) ||
      qobject_cast<const QComboBox*>(&widget))
    return {QPalette::Text, QPalette::Base};
  const auto* button = qobject_cast<const QAbstractButton*>(&widget);
  if (button && !button->isCheckable()) return {QPalette::ButtonText, QPalette::Button};
  return {QPalette::WindowText, QPalette::Window};
}

TEST(Colours, EveryControlOfEveryWindowCanBeRead) {
  QTemporaryDir directory;
  qputenv("TESSALY_WORKSPACE", directory.filePath(QStringLiteral("workspace")).toUtf8());
  RecordingHost host;
  Launcher launcher(host);
  launcher.start();
  Application& application = launcher.application();
  application.bulk();
  application.designCopy();
  application.databasePicker();
  application.form.Label6->raiseClick();
  ASSERT_TRUE(QTest::qWaitFor([&] { return launcher.client() != nullptr; }));
  for (const Scheme scheme : {Scheme::Dark, Scheme::Light}) {
    applyLook(scheme);
    QCoreApplication::processEvents();  // widgets hear of it with the next events
    int seen = 0;
    for (const QWidget* widget : QApplication::allWidgets()) {
      const auto [text, ground] = rolesOf(*widget);
      const QPalette palette = widget->palette();
      EXPECT_EQ(schemeOf(palette), scheme) << widget->objectName().toStdString();
      EXPECT_GE(contrast(palette.color(QPalette::Active, text), palette.color(QPalette::Active, ground)),
                kReadable)
          << int(scheme) << ' ' << widget->metaObject()->className() << ' '
          << widget->objectName().toStdString();
      ++seen;
    }
    EXPECT_GT(seen, 200);
  }
  applyLook();
  qunsetenv("TESSALY_WORKSPACE");
  setUntrappedReport(nullptr);
}

}  // namespace
}  // namespace lens
