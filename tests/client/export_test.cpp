#include <QStatusBar>
#include <QTimer>

#include "client/client_fixture.h"
#include "embedded/dxl/dxl_importer.h"

#ifdef Q_OS_LINUX
#include "support/small_files.h"
#endif

namespace lens {

class ClientExport : public Client {
 protected:
  void startWithMemos(int count) {
    Database::Transaction transaction(*mail);
    for (int i = 1; i <= count; ++i) save(memo(u"Memo %1"_s.arg(i)));
    transaction.commit();
    start();
    openMail();
    choice->target = directory.path();
  }
  QString file() const { return directory.path() + u"/mail.dxl"_s; }
  // Subjects of the documents in the file that was written.
  QStringList written() {
    const std::shared_ptr<Database> target =
        Database::create(directory.path() + u"/%1.nsf"_s.arg(++targets_), {});
    ImportReport report;
    DxlImporter(*target).importFile(file(), report);
    EXPECT_EQ(report.failed.join(u'\n').toStdString(), "");
    QStringList subjects;
    target->notes().scan(noteclass::Document, [&](const Note& note) {
      subjects.push_back(note.text(u"Subject"));
      return true;
    });
    return subjects;
  }
  QString status() { return part<QStatusBar>("statusBar").currentMessage(); }
  int targets_ = 0;
};

TEST_F(ClientExport, WritesTheDatabaseOnTop) {
  startWithMemos(3);
  Note form;
  form.header.noteClass = noteclass::Form;
  save(form);
  bool barSeen = false;
  QTimer::singleShot(0, window.get(), [&] { barSeen = part<QWidget>("importBar").isVisible(); });
  trigger("exportDatabaseAction");
  EXPECT_TRUE(barSeen);
  EXPECT_FALSE(part<QWidget>("importBar").isVisible());
  EXPECT_EQ(error(), QString());
  EXPECT_TRUE(status().contains(u"4 note"_s)) << status().toStdString();
  EXPECT_EQ(written(), QStringList({u"Memo 1"_s, u"Memo 2"_s, u"Memo 3"_s}));
}

TEST_F(ClientExport, WritesTheDocumentsOfTheViewAndTheMarkedOnes) {
  startWithMemos(3);
  Note form;
  form.header.noteClass = noteclass::Form;
  save(form);
  trigger("exportViewAction");
  EXPECT_TRUE(status().contains(u"3 note"_s)) << status().toStdString();
  EXPECT_EQ(written().size(), 3);
  table().selectRow(1);
  trigger("exportMarkedAction");
  EXPECT_EQ(written(), QStringList{u"Memo 2"_s});
}

TEST_F(ClientExport, WritesTheOpenDocument) {
  startWithMemos(2);
  table().selectAll();
  ASSERT_TRUE(window->openDocument(mail->notes().list(noteclass::Document).last().id));
  EXPECT_FALSE(part<QAction>("exportViewAction").isEnabled());
  trigger("exportMarkedAction");
  EXPECT_EQ(written(), QStringList{u"Memo 2"_s});
}

TEST_F(ClientExport, NothingMarkedIsTold) {
  startWithMemos(1);
  table().clearSelection();
  trigger("exportMarkedAction");
  EXPECT_TRUE(error().contains(u"no documents"_s)) << error().toStdString();
  EXPECT_FALSE(QFile::exists(file()));
}

TEST_F(ClientExport, NoDatabaseNoCommand) {
  start();
  for (const char* action : {"exportDatabaseAction", "exportViewAction", "exportMarkedAction"})
    EXPECT_FALSE(part<QAction>(action).isEnabled()) << action;
}

TEST_F(ClientExport, ACancelledExportLeavesTheOldFile) {
  startWithMemos(500);
  QFile old(file());
  ASSERT_TRUE(old.open(QIODevice::WriteOnly));
  old.write("old");
  old.close();
  QTimer::singleShot(0, window.get(), [&] { part<QPushButton>("importCancel").click(); });
  trigger("exportDatabaseAction");
  ASSERT_TRUE(old.open(QIODevice::ReadOnly));
  EXPECT_EQ(old.readAll(), "old");
  EXPECT_TRUE(status().contains(u"cancelled"_s)) << status().toStdString();
  EXPECT_EQ(QDir(directory.path()).entryList({u"mail.dxl*"_s}), QStringList{u"mail.dxl"_s});
}

TEST_F(ClientExport, AFileThatCannotBeWrittenIsTold) {
  startWithMemos(1);
  choice->target = directory.path() + u"/missing"_s;
  trigger("exportDatabaseAction");
  EXPECT_TRUE(error().contains(u"mail.dxl"_s)) << error().toStdString();
  EXPECT_TRUE(error().contains(u"cannot be written"_s)) << error().toStdString();
}

TEST_F(ClientExport, GivingUpTheFileWritesNothing) {
  startWithMemos(1);
  choice->target.clear();
  trigger("exportDatabaseAction");
  EXPECT_EQ(choice->asked, 1);
  EXPECT_EQ(error(), QString());
}

TEST_F(ClientExport, ImportsAndExportsWaitForItsEnd) {
  startWithMemos(50);
  QString told;
  QTimer::singleShot(0, window.get(), [&] {
    trigger("importFilesAction");
    told = error();
    trigger("exportViewAction");
  });
  window->exportDxl(ClientWindow::ExportRange::Database, file());
  EXPECT_TRUE(told.contains(u"An export is running"_s)) << told.toStdString();
  EXPECT_EQ(choice->asked, 0);
  EXPECT_EQ(written().size(), 50);
}

TEST_F(ClientExport, AWindowDestroyedDuringAnExportEndsIt) {
  startWithMemos(500);
  const QString target = file();
  QTimer::singleShot(0, qApp, [&] { window.reset(); });
  window->exportDxl(ClientWindow::ExportRange::Database, target);
  EXPECT_EQ(window, nullptr);
  EXPECT_FALSE(QFile::exists(target));
}

#ifdef Q_OS_LINUX
TEST_F(ClientExport, OnAFullDiskLeavesTheOldFile) {
  startWithMemos(100);
  trigger("exportDatabaseAction");
  QFile whole(file());
  ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
  const QByteArray bytes = whole.readAll();
  ASSERT_GT(bytes.size(), 20'000);
  for (const qsizetype room : {qsizetype(0), qsizetype(16'384), bytes.size() - 1}) {
    {
      const SmallFiles full{rlim_t(room)};
      trigger("exportDatabaseAction");
    }
    EXPECT_TRUE(error().contains(u"was not written"_s)) << room;
    QFile after(file());
    ASSERT_TRUE(after.open(QIODevice::ReadOnly));
    EXPECT_EQ(after.readAll(), bytes) << room;
  }
}
#endif

}  // namespace lens
