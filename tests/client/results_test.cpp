#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QStatusTipEvent>

#include "client/client_fixture.h"

namespace lens {
namespace {

class ClientResults : public Client {
 protected:
  QString documentFile(const QString& name, int number, const QByteArray& inside = {}) {
    QFile file(directory.path() + u'/' + name);
    if (!file.open(QIODevice::WriteOnly)) throw std::runtime_error("no room for test data");
    file.write("<document form='Memo'><noteinfo unid='" + QByteArray::number(number).rightJustified(32, '0') +
               "'/>" + inside + "<item name='Subject'><text>Imported " + QByteArray::number(number) +
               "</text></item></document>");
    return file.fileName();
  }
};

TEST_F(ClientResults, TheStatusTextSurvivesTheMenus) {
  start();
  openMail();
  auto& bar = part<QStatusBar>("statusBar");
  const QString text = bar.currentMessage();
  ASSERT_TRUE(text.contains(u"mail.nsf"_s)) << text.toStdString();
  part<QMenu>("fileMenu").popup(window->pos());
  part<QMenu>("fileMenu").setActiveAction(&part<QAction>("newDatabaseAction"));
  QStatusTipEvent left{QString()};
  QApplication::sendEvent(window.get(), &left);
  part<QMenu>("fileMenu").close();
  QApplication::processEvents();
  EXPECT_EQ(bar.currentMessage(), text);
}

TEST_F(ClientResults, OneLineIsTellingInOneLineAndMoreInAWindowThatTakesNoFocus) {
  start();
  openMail();
  window->importDxl({documentFile(u"one.dxl"_s, 1)});
  EXPECT_EQ(window->findChild<QDialog*>(u"ImportReport"_s), nullptr);
  EXPECT_TRUE(part<QWidget>("errorStrip").isVisible());
  EXPECT_TRUE(report().contains(u"1 notes imported"_s)) << report().toStdString();
  EXPECT_EQ(error(), QString()) << "it is no failure";
  window->importDxl({dxlFile(u"two.dxl"_s, 2, "<hologram/></database>")});
  auto* dialog = window->findChild<QDialog*>(u"ImportReport"_s);
  ASSERT_TRUE(dialog);
  EXPECT_TRUE(dialog->testAttribute(Qt::WA_ShowWithoutActivating));
}

TEST_F(ClientResults, WhatManyFilesHaveInCommonIsSaidOnce) {
  start();
  openMail();
  QStringList files;
  for (int i = 1; i <= 100; ++i)
    files += documentFile(u"f%1.dxl"_s.arg(i), i, "<wassignedby><name>x</name></wassignedby>");
  window->importDxl(files);
  EXPECT_EQ(report().count(u"wassignedby"_s), 1) << report().toStdString();
  EXPECT_TRUE(report().contains(u"wassignedby: information only (100 files)"_s)) << report().toStdString();
}

TEST_F(ClientResults, TheReportNamesWhatWasReplaced) {
  Note old = memo(u"The old subject"_s);
  old.header.unid = Unid::fromText(QString(QString(31, u'0') + u'7'));
  save(old);
  start();
  openMail();
  window->importDxl({documentFile(u"seven.dxl"_s, 7)});
  EXPECT_TRUE(report().contains(u"Replaced:"_s)) << report().toStdString();
  EXPECT_TRUE(report().contains(u"The old subject"_s)) << report().toStdString();
}

TEST_F(ClientResults, F1OpensTheGuide) {
  start();
  int actions = 0;
  for (const QAction* action : window->findChildren<QAction*>())
    actions += action->shortcut() == QKeySequence(Qt::Key_F1);
  EXPECT_EQ(actions, 1) << "a key that two commands have does nothing";
}

TEST_F(ClientResults, FilesThatCannotBeOpenedAreListedGreyWithAdvice) {
  QFile file(workspace->dataDirectory() + u"/foreign.nsf"_s);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("no database at all");
  file.close();
  start();
  auto& tree = part<DatabaseTree>("databaseTree");
  QTreeWidgetItem* foreign = nullptr;
  QTreeWidgetItem* own = nullptr;
  for (int i = 0; i < tree.topLevelItem(0)->childCount(); ++i) {
    QTreeWidgetItem* row = tree.topLevelItem(0)->child(i);
    (row->text(0).startsWith(u"foreign.nsf"_s) ? foreign : own) = row;
  }
  ASSERT_TRUE(foreign);
  ASSERT_TRUE(own);
  EXPECT_EQ(foreign->foreground(0).color(), tree.palette().color(QPalette::Disabled, QPalette::Text));
  EXPECT_NE(own->foreground(0), foreign->foreground(0));
  tree.setCurrentItem(foreign);
  EXPECT_FALSE(tree.currentPlace());
  trigger("openDatabaseAction");
  EXPECT_TRUE(error().contains(u"foreign.nsf"_s)) << error().toStdString();
  EXPECT_TRUE(error().contains(u"export it as DXL"_s)) << error().toStdString();
}

}  // namespace
}  // namespace lens
