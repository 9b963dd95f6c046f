#include "controls/file_lists.h"

#include <QDir>
#include <QTemporaryDir>

#include "control_test.h"

namespace lens {
namespace {

// A directory "top" with the sub-directories "beta" and "Alpha" and the files "b.txt" and "A.dat".
struct SomeFiles {
  SomeFiles() {
    QDir(root.path()).mkpath(QStringLiteral("top/beta"));
    QDir(root.path()).mkpath(QStringLiteral("top/Alpha"));
    touch(QStringLiteral("b.txt"));
    touch(QStringLiteral("A.dat"));
  }
  void touch(const QString& name) {
    QFile file(top() + QChar(u'/') + name);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  }
  QString top() const { return root.path() + QStringLiteral("/top"); }
  QTemporaryDir root;
};

TEST(DirList, ShowsTheOpenDirectoryBetweenParentsAndSubDirectories) {
  SomeFiles files;
  DirList list;
  Counter clicks(list.click), changes(list.change);
  list.setPath(files.top() + QChar(u'/'));
  EXPECT_EQ(list.path(), files.top());
  EXPECT_EQ(list.text(), QStringLiteral("top"));
  EXPECT_EQ(list.directoryAt(list.listIndex()), files.top());
  EXPECT_EQ(list.directoryAt(list.listIndex() - 1), files.root.path());
  EXPECT_EQ(list.list(list.listIndex() + 1), QStringLiteral("Alpha"));
  EXPECT_EQ(list.directoryAt(list.listIndex() + 2), files.top() + QStringLiteral("/beta"));
  EXPECT_EQ(list.directoryAt(0), QStringLiteral("/"));
  EXPECT_EQ(clicks.take(), 0);
  EXPECT_EQ(changes.take(), 1);
  list.setPath(files.top());
  EXPECT_EQ(changes.take(), 0);
}

TEST(DirList, MissingDirectoryRaisesAndLeavesTheListAsItWas) {
  SomeFiles files;
  DirList list;
  list.setPath(files.top());
  const int rows = list.listCount();
  EXPECT_EQ(errorOf([&] { list.setPath(files.top() + QStringLiteral("/none")); }), 76);
  EXPECT_EQ(errorOf([&] { list.setPath(QString()); }), 76);
  EXPECT_EQ(list.path(), files.top());
  EXPECT_EQ(list.listCount(), rows);
}

TEST(DirList, DoubleClickAndEnterGoIntoTheDirectory) {
  SomeFiles files;
  DirList list;
  list.resize(200, 400);
  list.setPath(files.top());
  showWithFocus(list);
  Counter changes(list.change);
  const QModelIndex beta = list.model()->index(list.listIndex() + 2, 0);
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(beta).center());
  EXPECT_EQ(list.path(), files.top() + QStringLiteral("/beta"));
  QTest::keyClick(&list, Qt::Key_Up);
  EXPECT_EQ(changes.take(), 1);
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_EQ(list.path(), files.top());
  EXPECT_EQ(changes.take(), 1);
}

TEST(FileList, ShowsPlainFilesInOrderAndReadsThemAnewOnRefresh) {
  SomeFiles files;
  FileList list;
  list.setPath(files.top());
  ASSERT_EQ(list.listCount(), 2);
  EXPECT_EQ(list.list(0), QStringLiteral("A.dat"));
  list.setListIndex(1);
  EXPECT_EQ(list.fileName(), QStringLiteral("b.txt"));
  files.touch(QStringLiteral("c"));
  EXPECT_EQ(list.listCount(), 2);
  list.refresh();
  EXPECT_EQ(list.listCount(), 3);
  list.setPattern(QStringLiteral("*.txt;c"));
  EXPECT_EQ(list.listCount(), 2);
  EXPECT_EQ(errorOf([&] { list.setPath(QStringLiteral("/no/such/directory")); }), 76);
}

#ifndef Q_OS_WIN
TEST(DriveList, BeginsWithTheRootAndHoldsOnlyWhatHoldsFiles) {
  DriveList list;
  ASSERT_GE(list.listCount(), 1);
  EXPECT_EQ(list.list(0), QStringLiteral("/"));
  for (int row = 0; row < list.listCount(); ++row) {
    EXPECT_TRUE(QDir(list.list(row)).exists()) << list.list(row).toStdString();
    EXPECT_NE(list.list(row), QStringLiteral("/proc"));
    EXPECT_NE(list.list(row), QStringLiteral("/sys"));
  }
}

TEST(DriveList, EmptyDriveChangesNothing) {
  DriveList list;
  Counter changes(list.change);
  EXPECT_EQ(list.drive(), QStringLiteral("/"));
  list.setDrive(QString());
  EXPECT_EQ(list.drive(), QStringLiteral("/"));
  EXPECT_EQ(changes.take(), 0);
  list.setDrive(QStringLiteral("/"));
  EXPECT_EQ(changes.take(), 1);
  EXPECT_EQ(errorOf([&] { list.setDrive(QStringLiteral("q:")); }), 68);
}
#endif

}  // namespace
}  // namespace lens
