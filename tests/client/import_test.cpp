#include <QPushButton>
#include <QTimer>

#include "client/client_fixture.h"

namespace lens {

TEST_F(Client, ImportsIntoTheDatabaseOnTopAndReports) {
  start();
  openMail();
  choice->files = {dxlFile(u"two.dxl"_s, 2)};
  bool barSeen = false;
  QTimer::singleShot(0, window.get(), [&] { barSeen = part<QWidget>("importBar").isVisible(); });
  trigger("importFilesAction");
  EXPECT_TRUE(barSeen);
  EXPECT_FALSE(part<QWidget>("importBar").isVisible());
  EXPECT_EQ(table().model()->rowCount(), 2);
  EXPECT_EQ(cell(0, 1), u"Imported 1"_s);
  EXPECT_TRUE(report().contains(u"2 notes imported"_s)) << report().toStdString();
  EXPECT_EQ(mail->info().title, u"Karin's mail"_s);
}

TEST_F(Client, ImportsAFolderIntoANewDatabaseWhenNoneIsOpen) {
  start();
  ASSERT_TRUE(QDir(directory.path()).mkdir(u"in"_s));
  dxlFile(u"in/a.dxl"_s, 3);
  choice->directory = directory.path() + u"/in"_s;
  choice->name = u"fresh.nsf"_s;
  trigger("importFolderAction");
  ASSERT_NE(workspace->client().database(), nullptr);
  EXPECT_EQ(workspace->client().database()->path, u"fresh.nsf"_s);
  EXPECT_EQ(window->windowTitle(), u"Client: Other"_s);
  EXPECT_EQ(table().model()->rowCount(), 3);
  EXPECT_EQ(mail->notes().noteCount(noteclass::Document), 0);
}

TEST_F(Client, ACancelledImportLeavesNothing) {
  start();
  openMail();
  QTimer::singleShot(0, window.get(), [&] { part<QPushButton>("importCancel").click(); });
  window->importDxl({dxlFile(u"many.dxl"_s, 2000)});
  EXPECT_EQ(mail->notes().noteCount(noteclass::Document), 0);
  EXPECT_EQ(table().model()->rowCount(), 0);
  EXPECT_TRUE(report().contains(u"Cancelled"_s)) << report().toStdString();
  EXPECT_FALSE(window->isImporting());
}

TEST_F(Client, ACancelledImportLeavesNoNewDatabase) {
  start();
  choice->name = u"fresh.nsf"_s;
  QTimer::singleShot(0, window.get(), [&] { part<QPushButton>("importCancel").click(); });
  window->importDxl({dxlFile(u"many.dxl"_s, 2000)}, true);
  EXPECT_FALSE(QFile::exists(workspace->dataDirectory() + u"/fresh.nsf"_s));
  EXPECT_EQ(workspace->client().database(), nullptr);
  EXPECT_FALSE(report().isEmpty());
}

TEST_F(Client, NamesTheFileThatFailedAndImportsTheOthers) {
  start();
  openMail();
  window->importDxl({dxlFile(u"cut.dxl"_s, 2, "<document>"), dxlFile(u"whole.dxl"_s, 1)});
  EXPECT_TRUE(report().contains(u"cut.dxl"_s)) << report().toStdString();
  EXPECT_TRUE(report().contains(u"1 notes imported"_s)) << report().toStdString();
  EXPECT_EQ(table().model()->rowCount(), 1);
}

TEST_F(Client, WhatIsSavedDuringAnImportIsNotUndoneWithIt) {
  start();
  openMail();
  Note own;
  own.add(u"Subject"_s, itemflag::Summary, textValue(u"Own"));
  QTimer::singleShot(0, window.get(), [&] { mail->notes().save(own); });
  window->importDxl({dxlFile(u"cut.dxl"_s, 500, "<document>")});
  EXPECT_TRUE(report().contains(u"cut.dxl"_s)) << report().toStdString();
  EXPECT_EQ(mail->notes().noteCount(noteclass::Document), 1);
  Note stored;
  ASSERT_TRUE(mail->notes().read(own.header.id, stored));
  EXPECT_EQ(stored.text(u"Subject"), u"Own"_s);
}

TEST_F(Client, NamesWhatWasKeptRaw) {
  start();
  openMail();
  window->importDxl({dxlFile(u"odd.dxl"_s, 1, "<hologram depth='3'/></database>")});
  EXPECT_TRUE(report().contains(u"hologram"_s)) << report().toStdString();
}

TEST_F(Client, ASecondImportIsRefusedWhileOneRuns) {
  start();
  openMail();
  QString told;
  int asked = -1;
  choice->files = {dxlFile(u"two.dxl"_s, 2)};
  QTimer::singleShot(0, window.get(), [&] {
    trigger("importFilesAction");
    told = error();
    asked = choice->asked;
  });
  window->importDxl(choice->files);
  EXPECT_TRUE(told.contains(u"An import is running"_s)) << told.toStdString();
  EXPECT_EQ(asked, 0);
  EXPECT_EQ(table().model()->rowCount(), 2);
}

TEST_F(Client, AWindowClosedDuringAnImportStillReports) {
  start();
  openMail();
  QTimer::singleShot(0, window.get(), [&] { window->close(); });
  window->importDxl({dxlFile(u"two.dxl"_s, 2)});
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(table().model()->rowCount(), 2);
  EXPECT_FALSE(report().isEmpty());
}

TEST_F(Client, AWindowDestroyedDuringAnImportEndsIt) {
  start();
  openMail();
  const QString file = dxlFile(u"many.dxl"_s, 2000);
  QTimer::singleShot(0, qApp, [&] { window.reset(); });
  window->importDxl({file});
  EXPECT_EQ(window, nullptr);
  EXPECT_EQ(mail->notes().noteCount(noteclass::Document), 0);
}

TEST_F(Client, TheReportHoldsNoOtherWindowBack) {
  start();
  openMail();
  window->importDxl({dxlFile(u"two.dxl"_s, 2)});
  const QPointer<QDialog> dialog = window->findChild<QDialog*>(u"ImportReport"_s);
  ASSERT_TRUE(dialog);
  EXPECT_FALSE(dialog->isModal());
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  dialog->close();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(dialog.isNull());
}

}  // namespace lens
