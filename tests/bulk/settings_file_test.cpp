#include "bulk/settings_file.h"

#ifdef Q_OS_LINUX
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "bulk/bulk_fixture.h"
#include "bulk/settings_text.h"
#include "support/without_rights.h"
#ifdef Q_OS_LINUX
#include "support/small_files.h"
#endif

namespace lens {
namespace {

class SettingsFileTest : public ReplicDeskTest {
 protected:
  QString path() const { return host.programDir + u"/TessalyAndDocContent.ini"; }
  QByteArray bytesAt(const QString& file) const {
    QFile read(file);
    return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray("(missing)");
  }
  QByteArray bytes() const { return bytesAt(path()); }
  void put(const QByteArray& content) {
    QFile file(path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(content), content.size());
  }
  // As the window's load and its buttons run it.
  void load() {
    run([this] {
      settings.provideSettings();
      settings.readSettings();
    });
  }
  void read() {
    run([this] { settings.readSettings(); });
  }
  void save() {
    run([this] { settings.writeSettings(); });
  }
  void fillLists(const QStringList& sources, const QStringList& targets, const QStringList& fields) {
    fill(*window.lstDBNames, sources);
    fill(*window.lstDBNamesDest, targets);
    fill(*window.fldList, fields);
  }
  QVector<QStringList> lists() const {
    return {rowsOf(*window.lstDBNames), rowsOf(*window.lstDBNamesDest), rowsOf(*window.fldList)};
  }
  QStringList keys() const {
    return {window.lstServer->text(), window.lstDesignServer->text(), window.txtFind->text(),
            window.txtReplace->text()};
  }
  static QStringList numbered(const QString& name, int count) {
    QStringList rows;
    for (int i = 1; i <= count; ++i) rows += name + QString::number(i);
    return rows;
  }

  SettingsFile settings{desk};

 private:
  template <class Work>
  void run(Work work) {
    Event<> event;
    event = work;
    event.fire();
  }
};

const QByteArray kFirstFile =
    "[TessalyAndDocContent]\r\nSource=Local\r\nDestination=Local\r\ntxtFind=\r\ntxtReplace=\r\n";

// --- Where it is ---------------------------------------------------------------------------------------

TEST_F(SettingsFileTest, StandsBesideTheProgram) {
  settings.findSettings();
  EXPECT_EQ(globals.gIniPath, path());
  EXPECT_EQ(bytes(), "(missing)") << "it is only looked for";
}

TEST_F(SettingsFileTest, StandsInTheUsersDirectoryWhereTheProgramsTakesNoFile) {
  QDir(host.programDir).removeRecursively();
  load();
  EXPECT_EQ(globals.gIniPath, host.userDir + u"/TessalyAndDocContent.ini");
  EXPECT_EQ(bytesAt(globals.gIniPath), kFirstFile);
  host.userDir.clear();
  settings.findSettings();
  EXPECT_EQ(globals.gIniPath, path()) << "the failure names a path that one understands";
}

#ifdef Q_OS_LINUX
TEST_F(SettingsFileTest, OfAnInstalledProgramStandsInTheUsersDirectory) {
  const WithoutRights user(host.directory.path());
  QFile::setPermissions(host.programDir, QFile::ReadOwner | QFile::ExeOwner);
  fillLists({u"a.nsf"_s}, {}, {});
  load();
  save();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_TRUE(QDir(host.programDir).isEmpty());
  EXPECT_EQ(bytesAt(host.userDir + u"/TessalyAndDocContent.ini"),
            kFirstFile + "[SourceDB]\r\na.nsf\r\n[DestDB]\r\n[Fields]\r\n");
}
#endif

TEST_F(SettingsFileTest, IsLookedForEachTimeAnew) {
  settings.findSettings();
  globals.gIniPath = u"elsewhere"_s;
  save();
  EXPECT_EQ(globals.gIniPath, path());
  globals.gIniPath = u"elsewhere"_s;
  read();
  EXPECT_EQ(globals.gIniPath, path());
}

// --- First opening -------------------------------------------------------------------------------------

TEST_F(SettingsFileTest, IsMadeAtTheFirstOpeningAndChangesNothing) {
  window.lstServer->setText(u"CN=Hub/O=Acme"_s);
  fillLists({u"a.nsf"_s}, {u"b.nsf"_s}, {});
  load();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(bytes(),
            "[TessalyAndDocContent]\r\nSource=CN=Hub/O=Acme\r\nDestination=Local\r\ntxtFind=\r\n"
            "txtReplace=\r\n");
  EXPECT_EQ(keys(), QStringList({u"CN=Hub/O=Acme"_s, u"Local"_s, QString(), QString()}));
  EXPECT_EQ(lists(), QVector<QStringList>({{u"a.nsf"_s}, {u"b.nsf"_s}, {}}));
}

TEST_F(SettingsFileTest, OfNoBytesIsOneReportAndStays) {
  put({});
  fillLists({u"a.nsf"_s}, {u"b.nsf"_s}, {u"F: x"_s});
  load();
  EXPECT_EQ(host.boxes, Boxes({report(62)}));
  EXPECT_EQ(keys(), QStringList({QString(), QString(), QString(), QString()}));
  EXPECT_EQ(lists(), QVector<QStringList>({{u"a.nsf"_s}, {u"b.nsf"_s}, {u"F: x"_s}}));
  EXPECT_EQ(bytes(), "");
}

// --- Reading -------------------------------------------------------------------------------------------

TEST_F(SettingsFileTest, BringsKeysAndListsBackWithNothingMarked) {
  put("[TessalyAndDocContent]\r\nSource=Hub/Acme\r\nDestination=App/Acme\r\ntxtFind=old\r\ntxtReplace=new\r\n"
      "[SourceDB]\r\nz.nsf\r\na.nsf\r\n[DestDB]\r\nt.nsf\r\n[Fields]\r\nG: 2\r\nF: 1\r\n");
  fillMarked(*window.lstDBNames, {u"former.nsf"_s});
  fillMarked(*window.fldList, {u"F: 1"_s});
  read();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(keys(), QStringList({u"Hub/Acme"_s, u"App/Acme"_s, u"old"_s, u"new"_s}));
  const QVector<QStringList> sorted{{u"a.nsf"_s, u"z.nsf"_s}, {u"t.nsf"_s}, {u"F: 1"_s, u"G: 2"_s}};
  EXPECT_EQ(lists(), sorted);
  EXPECT_EQ(markedRowsOf(*window.lstDBNames) + markedRowsOf(*window.fldList), QStringList());
  EXPECT_EQ(window.lstDBNames->listIndex(), -1);
  EXPECT_EQ(window.lstDBNamesDest->listIndex(), -1);
  fillMarked(*window.lstDBNames, rowsOf(*window.lstDBNames));
  read();
  EXPECT_EQ(lists(), sorted) << "the same again";
  EXPECT_EQ(markedRowsOf(*window.lstDBNames), QStringList());
}

TEST_F(SettingsFileTest, StopsAtTheFirstListThatItLacks) {
  fillLists({u"a"_s}, {u"b"_s}, {u"c"_s});
  put("[Fields]\r\nF: 1\r\n[DestDB]\r\nt\r\n");
  read();
  EXPECT_EQ(lists(), QVector<QStringList>({{u"a"_s}, {u"b"_s}, {u"c"_s}}));
  put("[SourceDB]\r\ns\r\n[Fields]\r\nF: 1\r\n[DestDB]\r\n");
  read();
  EXPECT_EQ(lists(), QVector<QStringList>({{u"s"_s}, {u"b"_s}, {u"c"_s}}));
  put("[Fields]\r\nF: 1\r\n[DestDB]\r\n\r\n[SourceDB]\r\n\r\n");
  read();
  EXPECT_EQ(lists(), QVector<QStringList>({{}, {}, {u"F: 1"_s}})) << "in any order in the file";
}

TEST_F(SettingsFileTest, WithATooLongKeyIsAReportWithTheKeysBeforeIt) {
  const QByteArray head = "[TessalyAndDocContent]\r\nSource=Hub\r\nDestination=";
  fillLists({u"a"_s}, {}, {});
  put(head + QByteArray(253, 'x') + "\r\ntxtFind=f\r\n[SourceDB]\r\n\r\n");
  read();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(window.lstDesignServer->text().size(), 253);
  put(head + QByteArray(254, 'x') + "\r\ntxtFind=other\r\n[SourceDB]\r\nb\r\n");
  window.lstServer->setText(u"former"_s);
  read();
  EXPECT_EQ(host.boxes, Boxes({report(5)}));
  EXPECT_EQ(keys().mid(0, 1) + keys().mid(2), QStringList({u"Hub"_s, u"f"_s, QString()}));
  EXPECT_EQ(rowsOf(*window.lstDBNames), QStringList());
}

// 253 letters are typed, saved and read; one more is saved, and then fails at every load.
TEST_F(SettingsFileTest, KeepsATextOf253Characters) {
  window.txtFind->setText(QString(253, u'ä'));
  save();
  read();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(window.txtFind->text(), QString(253, u'ä'));
  window.txtFind->setText(QString(254, u'ä'));
  save();
  for (int turn = 1; turn <= 2; ++turn) {
    load();
    EXPECT_EQ(host.boxes.size(), turn);
    EXPECT_EQ(host.boxes.last(), report(5));
  }
}

TEST_F(SettingsFileTest, ThatIsNotThereOrNoFileIsAReport) {
  window.txtFind->setText(u"f"_s);
  read();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '53':\n\n"_s + path()))
      << host.boxes[0].text.toStdString();
  EXPECT_EQ(window.txtFind->text(), QString()) << "a file that is not there has no keys";
  QDir(host.programDir).mkdir(u"TessalyAndDocContent.ini"_s);
  load();
  save();
  ASSERT_EQ(host.boxes.size(), 3);
  for (const int at : {1, 2})
    EXPECT_TRUE(host.boxes[at].text.startsWith(u"Run-time error '75':\n\n"_s + path()))
        << host.boxes[at].text.toStdString();
}

TEST_F(SettingsFileTest, OfAnyBytesIsReadOrReported) {
  const QByteArray ten = QByteArray("C:\\data\\some\\database.nsf\r\n").repeated((10 << 20) / 27);
  put("[SourceDB]\r\n" + ten + "[DestDB]\r\nt\r\n");
  read();
  EXPECT_EQ(window.lstDBNames->listCount(), (10 << 20) / 27);
  EXPECT_EQ(rowsOf(*window.lstDBNamesDest), QStringList(u"t"_s));
  put("[TessalyAndDocContent]\rSource=a\r[SourceDB]\rb\r[DestDB]\rc\r[Fields]\rd: e");
  read();
  EXPECT_EQ(window.lstServer->text(), u"a"_s);
  EXPECT_EQ(lists(), QVector<QStringList>({{u"b"_s}, {u"c"_s}, {u"d: e"_s}}));
  put("\xEF\xBB\xBF[TessalyAndDocContent]\r\nSource=a\r\n[SourceDB]\r\nq\r\n");
  read();
  EXPECT_EQ(window.lstServer->text(), QString()) << "the mark stands in front of the header";
  EXPECT_EQ(rowsOf(*window.lstDBNames), QStringList(u"q"_s));
  save();
  EXPECT_TRUE(bytes().startsWith(
      "\xEF\xBB\xBF[TessalyAndDocContent]\r\nSource=a\r\n[TessalyAndDocContent]\r\nSource=\r\n"))
      << "nothing is lost";
  put(QByteArray(100'000, '\0'));
  read();
  save();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_TRUE(bytes().startsWith(QByteArray(QByteArray(100'000, '\0') + "\r\n[TessalyAndDocContent]\r\n")));
}

// --- Writing -------------------------------------------------------------------------------------------

TEST_F(SettingsFileTest, EndsTheSessionFirst) {
  QDir(host.programDir).mkdir(u"TessalyAndDocContent.ini"_s);
  save();
  EXPECT_TRUE(globals.gSession.isNothing());
  EXPECT_EQ(host.boxes.size(), 1);
}

TEST_F(SettingsFileTest, HoldsAsManyFieldsAsThereAreTargets) {
  fillLists({u"s"_s}, numbered(u"t"_s, 3), numbered(u"F"_s, 9) + QStringList(u"a: 1"_s));
  save();
  EXPECT_EQ(bytes(),
            kFirstFile + "[SourceDB]\r\ns\r\n[DestDB]\r\nt1\r\nt2\r\nt3\r\n[Fields]\r\na: 1\r\nF1\r\nF2\r\n");
  fillLists({}, numbered(u"t"_s, 5), {u"F: 1"_s, u"G: 2"_s});
  save();
  EXPECT_EQ(bytes(),
            kFirstFile +
                "[SourceDB]\r\n[DestDB]\r\nt1\r\nt2\r\nt3\r\nt4\r\nt5\r\n[Fields]\r\nF: 1\r\nG: 2\r\n"
                "\r\n\r\n\r\n");
  read();
  EXPECT_EQ(rowsOf(*window.fldList), QStringList({u"F: 1"_s, u"G: 2"_s}));
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(SettingsFileTest, KeepsNoMarks) {
  fillMarked(*window.lstDBNames, {u"a"_s, u"b"_s});
  const QByteArray marked = (save(), bytes());
  fill(*window.lstDBNames, {u"a"_s, u"b"_s});
  save();
  EXPECT_EQ(bytes(), marked);
}

TEST_F(SettingsFileTest, EndsARowThatBeginsWithABracketWhenItIsRead) {
  fillLists({u"_behind.nsf"_s, u"[odd].nsf"_s, u"a.nsf"_s}, {u"t"_s}, {});
  save();
  read();
  EXPECT_EQ(rowsOf(*window.lstDBNames), QStringList(u"a.nsf"_s));
  EXPECT_EQ(rowsOf(*window.lstDBNamesDest), QStringList(u"t"_s));
}

#ifdef Q_OS_LINUX
TEST_F(SettingsFileTest, ThatMayNotBeChangedIsOneReportAndStays) {
  save();
  const QByteArray before = bytes();
  const WithoutRights user(host.directory.path());
  QFile::setPermissions(path(), QFile::ReadOwner);
  fillLists({u"new.nsf"_s}, {}, {});
  save();
  const ShownBox box = onlyBox();
  EXPECT_TRUE(box.text.startsWith(u"Run-time error '75':\n\n"_s + path())) << box.text.toStdString();
  EXPECT_EQ(bytes(), before);
  EXPECT_EQ(QDir(host.programDir).entryList(QDir::Files | QDir::Hidden).size(), 1);
}
#endif

#ifdef Q_OS_LINUX
// The disk is full at any place, or the process is killed there: the old file or the new one, whole.
TEST_F(SettingsFileTest, IsTheOldOrTheNewOneWhereverTheSaveEnds) {
  fillLists(numbered(u"old"_s, 500), {}, {});
  save();
  const QByteArray before = bytes();
  fillLists(numbered(u"new"_s, 5'000), {}, {});
  save();
  const QByteArray after = bytes();
  const int size = int(after.size());
  for (int room = 0; room <= size; room += room + 4'999 < size || room == size ? 4'999 : size - room) {
    put(before);
    host.boxes.clear();
    {
      const SmallFiles full{rlim_t(room)};
      save();
    }
    ASSERT_EQ(bytes(), room < size ? before : after) << room;
    ASSERT_EQ(host.boxes.size(), room < size ? 1 : 0) << room;
    put(before);
    const pid_t child = fork();
    if (child == 0) {
      const SmallFiles full{rlim_t(room)};
      std::signal(SIGXFSZ, SIG_DFL);
      settings.writeSettings();
      _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_EQ(WIFSIGNALED(status), room < size) << room;
    ASSERT_EQ(bytes(), room < size ? before : after) << room;
  }
}
#endif

}  // namespace
}  // namespace lens
