// What a screen reader meets: every control that holds or takes something has a name, in every window.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>
#include <QTimer>
#include <functional>

#include "app/whole_program.h"
#include "client/file_choice.h"
#include "client/formula_window.h"
#include "client/import_dialog.h"
#include "client/report_dialog.h"
#include "client/work_bar.h"
#include "design/dump_to_file.h"
#include "design/form2.h"
#include "design/form3.h"
#include "embedded/workspace/workspace.h"
#include "host/desktop_host.h"

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

// The Tab key goes there.
bool takesKeyboard(const QObject* object) {
  const auto* widget = qobject_cast<const QWidget*>(object);
  return widget && !widget->isWindow() && (widget->focusPolicy() & Qt::TabFocus);
}

struct Tree {
  QStringList nameless;
  int named = 0;

  void walk(QAccessibleInterface* one, const QString& path) {
    if (!one || !one->isValid()) return;
    const QString own = one->object() ? one->object()->objectName() : QString();
    const QString here = path + u'/' + (own.isEmpty() ? QString::number(int(one->role())) : own);
    if (needsName(one->role()) || takesKeyboard(one->object())) {
      if (one->text(QAccessible::Name).trimmed().isEmpty())
        nameless += here;
      else
        ++named;
    }
    if (isPartOfControl(one->role())) return;
    for (int i = 0; i < one->childCount(); ++i) walk(one->child(i), here);
  }
};

int expectNames(QWidget& window) {
  Tree tree;
  tree.walk(QAccessible::queryAccessibleInterface(&window), window.objectName());
  EXPECT_EQ(tree.nameless.join(u'\n').toStdString(), "")
      << window.metaObject()->className() << ' ' << window.windowTitle().toStdString();
  return tree.named;
}

// A box or dialog holds back who asks: it is looked at and left once it is there.
void expectNamesOfDialog(const std::function<void()>& ask) {
  int named = 0;
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, [&] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (!dialog) return;
    look.stop();
    EXPECT_NE(dialog->windowTitle(), QString());
    named = expectNames(*dialog);
    dialog->reject();
  });
  look.start(1);
  ask();
  EXPECT_GT(named, 0);
}

// What a screen reader says of a control.
QString told(QWidget& widget) {
  return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
}

class AccessibleNames : public WholeProgram {};

TEST_F(AccessibleNames, EveryControlOfEveryWindowHasOne) {
  app().cmdCMRcoll_Click();
  app().lifecycle.Label6_Click();
  Form2 copy(&app().form);
  Form3 picker(&app().form);
  DumpToFile dump(&app().form);
  const Regional regional = host.regional();
  ImportOffer offer;
  offer.paths = {u"/x.dxl"_s};
  offer.regional = &regional;
  ImportDialog import(offer, &client());
  ReportDialog report(u"Heading"_s, u"Text"_s, &client());
  FormulaWindow formulas(&client());
  for (const char* action : {"guideAction", "aboutAction", "compareDatabasesAction"})
    partOf<QAction>(client(), action).trigger();
  int windows = 0, named = 0;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->windowType() == Qt::Popup || window->windowType() == Qt::ToolTip) continue;
    const int count = expectNames(*window);
    windows += count > 0;
    named += count;
  }
  EXPECT_GE(windows, 11);
  EXPECT_GT(named, 150);
}

TEST(AccessibleDialogs, EveryControlOfEveryBoxAndDialogHasAName) {
  DesktopHost desktop;
  DesktopFileChoice choice;
  DesktopWorkspaceChoice workspace;
  for (const int style : {box::Exclamation, box::OkCancel, box::YesNo})
    expectNamesOfDialog([&] { desktop.messageBox(u"What happened"_s, style, QString()); });
  expectNamesOfDialog([&] { choice.confirm(nullptr, u"Delete it?"_s, u"&Delete"_s); });
  expectNamesOfDialog([&] { choice.databaseName(nullptr, u"Local"_s); });
  expectNamesOfDialog([&] { choice.otherDatabaseName(nullptr, u"Rename"_s, u"mail.nsf"_s); });
  expectNamesOfDialog([&] { workspace.another(u"/none"_s, u"It cannot be opened"_s); });
}

TEST(AccessibleClient, WhatTheWindowTellsIsTold) {
  QTemporaryDir directory;
  ClientWindow client(
      Workspace::open(directory.filePath(u"workspace"_s), Regional(QLocale(QLocale::German))));
  client.show();
  client.openDatabase({QString(), u"none.nsf"_s});
  auto& error = partOf<QLabel>(client, "errorText");
  EXPECT_TRUE(told(error).contains(u"none.nsf"_s)) << told(error).toStdString();
  EXPECT_EQ(told(partOf<QStatusBar>(client, "statusBar")), u"No database is open"_s);
  auto& bar = partOf<WorkBar>(client, "importBar");
  bar.begin(WorkBar::Work::Copy);
  bar.showProgress(u"/data/mail.nsf"_s, 1, 2);
  QAccessibleInterface* progress = QAccessible::queryAccessibleInterface(bar.findChild<QProgressBar*>());
  QAccessibleValueInterface* value = progress->valueInterface();
  ASSERT_TRUE(value);
  EXPECT_EQ(2 * value->currentValue().toInt(), value->maximumValue().toInt());
  EXPECT_EQ(told(*bar.findChild<QLabel*>()), u"Copying mail.nsf"_s);
  bar.finish();
}

TEST_F(AccessibleNames, TheStatusBarTellsItsPanelsAndTheyCanBePressed) {
  client().close();
  QAccessibleInterface* bar = QAccessible::queryAccessibleInterface(app().form.sbrMain);
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
  EXPECT_TRUE(client().isVisible());
}

}  // namespace
}  // namespace lens
