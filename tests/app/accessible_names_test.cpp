// What a screen reader meets: every control that holds or takes something has a name, in every window.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QTemporaryDir>
#include <QTest>

#include "app/launcher.h"
#include "client/import_dialog.h"
#include "client/report_dialog.h"
#include "design/dump_to_file.h"
#include "design/form2.h"
#include "design/form3.h"
#include "embedded/workspace/workspace.h"
#include "support/printers.h"
#include "support/recording_host.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

bool needsName(QAccessible::Role role) {
  switch (role) {
    case QAccessible::List:
    case QAccessible::Tree:
    case QAccessible::Table:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::SpinBox:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::Button:
    case QAccessible::ButtonMenu:
    case QAccessible::ProgressBar:
    case QAccessible::Slider:
    case QAccessible::PageTabList:
    case QAccessible::StatusBar:
      return true;
    default:
      return false;
  }
}

// What belongs to a control of its own, as the box and the arrow of a combo do.
bool isPartOfControl(QAccessible::Role role) {
  return role == QAccessible::ComboBox || role == QAccessible::SpinBox || role == QAccessible::ScrollBar ||
         role == QAccessible::List || role == QAccessible::EditableText || role == QAccessible::Table ||
         role == QAccessible::Tree;
}

struct Tree {
  QStringList nameless;
  int named = 0;

  void walk(QAccessibleInterface* one, const QString& path) {
    if (!one || !one->isValid()) return;
    const QString own = one->object() ? one->object()->objectName() : QString();
    const QString here = path + u'/' + (own.isEmpty() ? QString::number(int(one->role())) : own);
    if (needsName(one->role())) {
      if (one->text(QAccessible::Name).trimmed().isEmpty())
        nameless += here;
      else
        ++named;
    }
    if (isPartOfControl(one->role())) return;
    for (int i = 0; i < one->childCount(); ++i) walk(one->child(i), here);
  }
};

TEST(AccessibleNames, EveryControlOfEveryWindowHasOne) {
  QTemporaryDir directory;
  qputenv("TESSALY_WORKSPACE", directory.filePath(u"workspace"_s).toUtf8());
  RecordingHost host;
  Launcher launcher(host);
  launcher.start();
  ASSERT_TRUE(QTest::qWaitFor([&] { return launcher.client() != nullptr; }));
  Application& app = launcher.application();
  app.cmdCMRcoll_Click();
  app.lifecycle.Label6_Click();
  Form2 copy(&app.form);
  Form3 picker(&app.form);
  DumpToFile dump(&app.form);
  const Regional regional = host.regional();
  ImportOffer offer;
  offer.paths = {u"/x.dxl"_s};
  offer.regional = &regional;
  ImportDialog import(offer, launcher.client());
  ReportDialog report(u"Heading"_s, u"Text"_s, launcher.client());
  int windows = 0, named = 0;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->windowType() == Qt::Popup || window->windowType() == Qt::ToolTip) continue;
    Tree tree;
    tree.walk(QAccessible::queryAccessibleInterface(window), window->objectName());
    EXPECT_EQ(tree.nameless.join(u'\n').toStdString(), "") << window->metaObject()->className();
    windows += tree.named > 0;
    named += tree.named;
  }
  EXPECT_GE(windows, 7);
  EXPECT_GT(named, 120);
  qunsetenv("TESSALY_WORKSPACE");
  setUntrappedReport(nullptr);
}

TEST(AccessibleNames, TheStatusBarTellsItsPanelsAndTheyCanBePressed) {
  QTemporaryDir directory;
  qputenv("TESSALY_WORKSPACE", directory.filePath(u"workspace"_s).toUtf8());
  RecordingHost host;
  Launcher launcher(host);
  launcher.start();
  ASSERT_TRUE(QTest::qWaitFor([&] { return launcher.client() != nullptr; }));
  launcher.client()->close();
  QAccessibleInterface* bar = QAccessible::queryAccessibleInterface(launcher.application().form.sbrMain);
  ASSERT_EQ(bar->role(), QAccessible::StatusBar);
  ASSERT_EQ(bar->childCount(), 4);
  QStringList texts;
  for (int i = 0; i < bar->childCount(); ++i) texts += bar->child(i)->text(QAccessible::Name);
  EXPECT_TRUE(texts[0].startsWith(u"Line 1"_s)) << texts[0].toStdString();
  EXPECT_TRUE(texts[1].startsWith(u"Font: "_s)) << texts[1].toStdString();
  EXPECT_TRUE(texts[3].startsWith(u"Embedded: "_s)) << texts[3].toStdString();
  EXPECT_EQ(bar->indexOfChild(bar->child(2)), 2);
  QAccessibleActionInterface* source = bar->child(3)->actionInterface();
  ASSERT_TRUE(source);
  source->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(launcher.client()->isVisible());
  qunsetenv("TESSALY_WORKSPACE");
  setUntrappedReport(nullptr);
}

}  // namespace
}  // namespace lens
