#include "bulk/dump_list.h"

#include "bulk/bulk_fixture.h"

namespace lens {
namespace {

#ifdef Q_OS_WIN
const QByteArray kEnd = "\r\n";
#else
const QByteArray kEnd = "\n";
#endif

class DumpListTest : public ReplicDeskTest {
 protected:
  DumpListTest()
      : home(directory.filePath(u"home"_s)), before_(qgetenv("HOME")), place_(QDir::currentPath()) {
    QDir().mkpath(home);
    qputenv("HOME", home.toUtf8());
    QDir().mkpath(directory.filePath(u"working"_s));
    QDir::setCurrent(directory.filePath(u"working"_s));
    list.openFile = [this](const QString& path) { host.shellOpen(path); };
    fillMarked(*window.lstDBNames, {u"b.nsf"_s, u"a.nsf"_s});
    window.lstDBNames->setSelected(0, false);
    fill(*window.lstViewNames, {u"Größe"_s, u"日"_s});
    fill(*window.lstAgentNames, {u"two\r\nlines"_s});
  }
  ~DumpListTest() override {
    qputenv("HOME", before_);
    QDir::setCurrent(place_);
  }
  void print(const QString& path) {
    window.txtListToPrint->setText(path);
    host.boxes.clear();
    host.opened.clear();
    press(window.cmdPrint);
  }
  static QByteArray bytesAt(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
  }
  QStringList workingFiles() const { return QDir().entryList(QDir::Files | QDir::Hidden); }

  QString home;
  DumpList list{desk};

 private:
  QByteArray before_;
  QString place_;
};

TEST_F(DumpListTest, WritesTheChosenListInItsOrder) {
  const QString path = directory.filePath(u"list.txt"_s);
  const QByteArray expected[] = {"a.nsf" + kEnd + "b.nsf" + kEnd,
                                 "Gr\xF6\xDF"
                                 "e" +
                                     kEnd + "?" + kEnd,
                                 "two lines" + kEnd};
  for (int choice = 0; choice < 3; ++choice) {
    window.Opt[choice]->setValue(true);
    print(path);
    EXPECT_EQ(bytesAt(path), expected[choice]);
    EXPECT_EQ(host.boxes, Boxes());
    EXPECT_EQ(host.opened, QStringList(path));
  }
  window.lstAgentNames->clear();
  print(path);
  EXPECT_EQ(bytesAt(path), "") << "the older content is gone";
}

TEST_F(DumpListTest, GivesAPathWithoutExtensionOne) {
  const QString path = directory.filePath(u"x.y/list"_s);
  QDir().mkpath(directory.filePath(u"x.y"_s));
  print(path);
  EXPECT_EQ(window.txtListToPrint->text(), path + u".txt");
  EXPECT_NE(bytesAt(path + u".txt"), "(missing)");
  press(window.cmdPrint);
  EXPECT_EQ(window.txtListToPrint->text(), path + u".txt") << "and keeps it";
  print(directory.filePath(u"a."_s));
  EXPECT_EQ(window.txtListToPrint->text(), directory.filePath(u"a..txt"_s));
  print(QString());
  EXPECT_EQ(window.txtListToPrint->text(), u".txt"_s);
}

#ifndef Q_OS_WIN
TEST_F(DumpListTest, OfADriveIsInTheHomeDirectory) {
  EXPECT_EQ(window.txtListToPrint->text(), u"c:\\Dumplist.txt"_s);
  press(window.cmdPrint);
  EXPECT_EQ(host.opened, QStringList(home + u"/Dumplist.txt"));
  EXPECT_NE(bytesAt(home + u"/Dumplist.txt"), "(missing)");
  print(u"c:\\x.y\\list"_s);
  EXPECT_EQ(window.txtListToPrint->text(), u"c:\\x.y\\list.txt"_s);
  EXPECT_EQ(onlyBox().style, box::Critical);
  EXPECT_EQ(workingFiles(), QStringList());
}
#endif

TEST_F(DumpListTest, ThatCannotBeWrittenIsToldAndNotOpened) {
  const QString path = directory.filePath(u"none/list.txt"_s);
  print(path);
  const ShownBox box = onlyBox();
  EXPECT_TRUE(box.text.startsWith(path)) << box.text.toStdString();
  EXPECT_TRUE(box.text.endsWith(u" in line: 0"_s)) << box.text.toStdString();
  EXPECT_EQ(box.style, box::Critical);
  EXPECT_EQ(box.title, u"cmdPrint"_s);
  EXPECT_EQ(host.opened, QStringList());
  print(makeDatabase(u"open.nsf"_s)->path());
  EXPECT_EQ(onlyBox().title, u"cmdPrint"_s);
}

TEST_F(DumpListTest, WithNobodyToOpenItIsWritten) {
  list.openFile = nullptr;
  print(directory.filePath(u"list.txt"_s));
  EXPECT_EQ(host.boxes, Boxes());
  list.openFile = [](const QString&) { throw RuntimeError(31, u"no program"_s); };
  print(directory.filePath(u"list.txt"_s));
  EXPECT_EQ(host.boxes, Boxes({{u"no program in line: 0"_s, box::Critical, u"cmdPrint"_s}}));
}

}  // namespace
}  // namespace lens
