// The list of fields as a text file, and the window that asks where to.
#include <QApplication>
#include <QFileDialog>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include "design/tools_fixture.h"
#include "host/dump_file.h"
#include "support/without_rights.h"

#ifdef Q_OS_LINUX
#include "support/small_files.h"
#endif

namespace lens {
namespace {

#ifdef Q_OS_WIN
const QByteArray kDumpEnd = "\r\n";
#else
const QByteArray kDumpEnd = "\n";
#endif

QByteArray lines(const QList<QByteArray>& texts) {
  QByteArray all;
  for (const QByteArray& text : texts) all.append(text).append(kDumpEnd);
  return all;
}

class FieldDumpTest : public ToolsTest {
 protected:
  FieldDumpTest() {
    home = directory.filePath(u"home"_s);
    QDir().mkpath(home);
    oldHome = qgetenv("HOME");
    qputenv("HOME", home.toLocal8Bit());
    startOnDatabase();
    fill("fldList", {u"Form:    Memo"_s, u"Subject: Pumps"_s});
  }
  ~FieldDumpTest() override { qputenv("HOME", oldHome); }

  static QByteArray fileAt(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
  }
  static void putFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }
  static QStringList filesIn(const QString& path) {
    return QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
  }
  QList<DumpToFile*> windows() { return form().findChildren<DumpToFile*>(); }
  DumpToFile& open() {
    press("cmdDump");
    EXPECT_FALSE(windows().isEmpty());
    return *windows().last();
  }
  static void destroyClosed() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
  // The file that OK writes, with these settings.
  QByteArray dump(const QString& width, bool content) {
    DumpToFile& window = open();
    const QString path = directory.filePath(u"dump.txt"_s);
    window.txtDumpFile->setText(path);
    window.txtWidth->setText(width);
    window.chkContent->setValue(content);
    window.cmdOK->click.fire();
    destroyClosed();
    return fileAt(path);
  }
  static ShownBox errorBox(const QString& procedure, int number, const QString& description) {
    return {u"Error %1 ("_s.arg(number) + description + u") in procedure " + procedure +
                u" of Formular frmDumpToFile",
            box::Plain,
            {}};
  }

  QString home;
  QByteArray oldHome;
};

// --- the window ---

TEST_F(FieldDumpTest, AnEmptyListOpensNoWindow) {
  fill("fldList", {});
  press("cmdDump");
  EXPECT_TRUE(windows().isEmpty());
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldDumpTest, TheWindowIsOnTopInTheMiddleAndBlocksNothing) {
  const DumpToFile& window = open();
  EXPECT_TRUE(window.isVisible());
  EXPECT_FALSE(window.isModal());
  EXPECT_TRUE(window.windowFlags() & Qt::WindowStaysOnTopHint);
  const QRect screen = window.screen()->geometry();
  EXPECT_LE((window.frameGeometry().center() - screen.center()).manhattanLength(), 4);
  EXPECT_EQ(host.pointers, QVector<int>({pointer::Hourglass, pointer::Default}));
}

TEST_F(FieldDumpTest, TheWindowHasItsTexts) {
  const DumpToFile& window = open();
  EXPECT_EQ(window.objectName(), u"frmDumpToFile"_s);
  EXPECT_EQ(window.windowTitle(), u"Dump fields with first contet to file"_s);
  EXPECT_EQ(window.lblFile->text(), u"&File:"_s);
  EXPECT_EQ(window.lblFile->buddy(), window.txtDumpFile);
  EXPECT_EQ(window.txtDumpFile->text(), u"c:\\Fields.txt"_s);
  EXPECT_EQ(window.lblWidth->text(), u"Width:"_s);
  EXPECT_EQ(window.txtWidth->text(), u"80"_s);
  EXPECT_EQ(window.chkContent->text(), u"Include field content"_s);
  EXPECT_EQ(window.cmdCancel->text(), u"Cancel"_s);
  EXPECT_EQ(control<Button>("cmdDump").text(), u"&Dump fields"_s);
  EXPECT_TRUE(control<Button>("cmdDump").isEnabled());
}

TEST_F(FieldDumpTest, EnterIsOkAndEscIsCancel) {
  QPointer<DumpToFile> window = &open();
  window->txtDumpFile->setText(directory.filePath(u"x.txt"_s));
  QTest::keyClick(window->txtWidth, Qt::Key_Return);
  destroyClosed();
  EXPECT_TRUE(window.isNull());
  EXPECT_TRUE(QFile::exists(directory.filePath(u"x.txt"_s)));

  window = &open();
  window->txtDumpFile->setText(directory.filePath(u"y.txt"_s));
  QTest::keyClick(window->txtWidth, Qt::Key_Escape);
  destroyClosed();
  EXPECT_TRUE(window.isNull());
  EXPECT_FALSE(QFile::exists(directory.filePath(u"y.txt"_s)));
}

TEST_F(FieldDumpTest, CancelAndTheClosingCrossUnloadTheWindow) {
  for (const bool cross : {false, true}) {
    const QPointer<DumpToFile> window = &open();
    if (cross)
      window->close();
    else
      window->cmdCancel->click.fire();
    destroyClosed();
    EXPECT_TRUE(window.isNull()) << cross;
  }
  EXPECT_EQ(filesIn(home), QStringList());
}

TEST_F(FieldDumpTest, EachClickOpensAWindowOfItsOwn) {
  open();
  open();
  EXPECT_EQ(windows().size(), 2);
}

TEST_F(FieldDumpTest, TheChosenFileComesIntoTheBoxAndGivingUpEmptiesIt) {
  const DumpToFile& window = open();
  window.cmdDialog1->ask = [](QWidget*) { return u"/tmp/chosen.txt"_s; };
  window.cmdOpenFile->click.fire();
  EXPECT_EQ(window.txtDumpFile->text(), u"/tmp/chosen.txt"_s);
  window.cmdDialog1->ask = [](QWidget*) { return QString(); };
  window.cmdOpenFile->click.fire();
  EXPECT_EQ(window.txtDumpFile->text(), QString());
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldDumpTest, AFailureOfTheDialogHasItsBox) {
  const DumpToFile& window = open();
  window.cmdDialog1->ask = [](QWidget*) -> QString { throw RuntimeError(75); };
  window.cmdOpenFile->click.fire();
  EXPECT_EQ(host.boxes, ShownBoxes({errorBox(u"cmdOpenFile_Click"_s, 75, standardErrorText(75))}));
  EXPECT_EQ(window.txtDumpFile->text(), u"c:\\Fields.txt"_s);
}

// --- what is written ---

TEST_F(FieldDumpTest, OkWithDefaultsWritesIntoTheHomeDirectoryAndOpensTheFile) {
  const QPointer<DumpToFile> window = &open();
  window->cmdOK->click.fire();
  const QString path = home + u"/Fields.txt";
  EXPECT_EQ(fileAt(path), lines({"Form:    Memo", "Subject: Pumps"}));
  EXPECT_EQ(filesIn(home), QStringList(u"Fields.txt"_s));
  EXPECT_EQ(host.opened, QStringList(path));
  EXPECT_EQ(boxes(), QStringList());
  destroyClosed();
  EXPECT_TRUE(window.isNull());
}

TEST_F(FieldDumpTest, LinesAreCutAtTheWidth) {
  EXPECT_EQ(dump(u"5"_s, true), lines({"Form:", "Subje"}));
  EXPECT_EQ(dump(u"6.5"_s, true), lines({"Form: ", "Subjec"}));
  EXPECT_EQ(dump(u"5 and more"_s, true), lines({"Form:", "Subje"}));
}

TEST_F(FieldDumpTest, AWidthThatIsNoneIsEighty) {
  fill("fldList", {QString(100, u'x')});
  for (const QString& width : {u"abc"_s, u"0"_s, u"-3"_s, u"0.5"_s, QString()})
    EXPECT_EQ(dump(width, true), lines({QByteArray(80, 'x')})) << width.toStdString();
  EXPECT_EQ(dump(u"32767"_s, true), lines({QByteArray(100, 'x')}));
}

TEST_F(FieldDumpTest, AWidthBeyondSixteenBitsOverflows) {
  for (const QString& width : {u"32768"_s, u"-32769"_s, u"1e300"_s}) {
    host.boxes.clear();
    EXPECT_EQ(dump(width, true), "(missing)");
    EXPECT_EQ(host.boxes, ShownBoxes({errorBox(u"cmdOK_Click"_s, 6, standardErrorText(6))}));
  }
}

TEST_F(FieldDumpTest, LineEndsInsideAValueBecomeSemicolonsBehindTheCut) {
  fill("fldList", {u"A: 1\r\n2\n3"_s, u"B: 45\r\n6"_s});
  EXPECT_EQ(dump(u"80"_s, true), lines({"A: 1;2\n3", "B: 45;6"}));
  EXPECT_EQ(dump(u"6"_s, true), lines({"A: 1;", "B: 45\r"}));
}

TEST_F(FieldDumpTest, WithoutContentsTheNamesAreWritten) {
  fill("fldList", {u"Form:    Memo"_s, u"no name"_s, u":x"_s, u"$UpdatedBy: CN=A:B"_s});
  EXPECT_EQ(dump(u"2"_s, false), lines({"Form", "", "", "$UpdatedBy"}));
}

TEST_F(FieldDumpTest, TheBoxIsReadAsOneCheckedAndNothingElse) {
  DumpToFile& window = open();
  window.txtDumpFile->setText(directory.filePath(u"dump.txt"_s));
  window.chkContent->setValue(2);
  window.cmdOK->click.fire();
  EXPECT_EQ(fileAt(directory.filePath(u"dump.txt"_s)), lines({"Form", "Subject"}));
}

TEST_F(FieldDumpTest, TheFileIsInTheCodePage) {
  fill("fldList", {u"Straße: 5 € – ok"_s, u"Name: 日本 😀"_s});
  EXPECT_EQ(dump(u"80"_s, true), lines({"Stra\xDF"
                                        "e: 5 \x80 \x96 ok",
                                        "Name: ?? ??"}));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldDumpTest, WritesTheListAsItIsAtTheMomentOfOk) {
  DumpToFile& window = open();
  fill("fldList", {u"Later: 1"_s});
  window.cmdOK->click.fire();
  EXPECT_EQ(fileAt(home + u"/Fields.txt"), lines({"Later: 1"}));
}

TEST_F(FieldDumpTest, AnOlderFileIsReplaced) {
  putFile(directory.filePath(u"dump.txt"_s), QByteArray(1000, 'o'));
  EXPECT_EQ(dump(u"80"_s, true), lines({"Form:    Memo", "Subject: Pumps"}));
}

TEST_F(FieldDumpTest, AFileThatNoProgramOpensIsWrittenAllTheSame) {
  host.shellCode = 2;
  EXPECT_EQ(dump(u"80"_s, true), lines({"Form:    Memo", "Subject: Pumps"}));
  EXPECT_EQ(host.boxes, ShownBoxes({{u"Can't execute the file !!"_s, box::Exclamation, u"Execute it"_s}}));
  EXPECT_TRUE(windows().isEmpty());
}

TEST_F(FieldDumpTest, ALineWhoseNameEndsTooFarIsEmptyAndTold) {
  fill("fldList", {QString(32'767, u'x') + u":", QString(32'766, u'x') + u":"});
  EXPECT_EQ(dump(u"80"_s, false), lines({"", QByteArray(32'766, 'x')}));
  EXPECT_EQ(host.boxes,
            ShownBoxes({{u"Error 6 ("_s + standardErrorText(6) + u") in procedure LeftFrom of Modul Globals",
                         box::Plain,
                         {}}}));
}

// --- what cannot be written ---

class UnwritableDump : public FieldDumpTest {
 protected:
  // The box that OK ends in; the window stays, nothing is opened.
  ShownBox refusal(const QString& path) {
    DumpToFile& window = open();
    window.txtDumpFile->setText(path);
    host.boxes.clear();
    window.cmdOK->click.fire();
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(host.opened, QStringList());
    EXPECT_EQ(host.boxes.size(), 1);
    const ShownBox shown = host.boxes.value(0);
    window.close();
    return shown;
  }
  static ShownBox cannotWrite(const QString& path, int number, const QString& reason) {
    return errorBox(u"cmdOK_Click"_s, number, path + u": the file cannot be written (" + reason + u")");
  }
};

TEST_F(UnwritableDump, ADirectoryThatIsMissingIsTold) {
  const QString path = directory.filePath(u"no/such/dump.txt"_s);
  EXPECT_EQ(refusal(path), cannotWrite(path, 76, u"there is no such directory"_s));
  EXPECT_FALSE(QFile::exists(directory.filePath(u"no"_s)));
}

TEST_F(UnwritableDump, ANameThatIsMissingIsTold) {
  EXPECT_EQ(refusal(QString()), cannotWrite(QString(), 75, u"there is no name"_s));
}

TEST_F(UnwritableDump, ADirectoryIsNoFile) {
  EXPECT_EQ(refusal(home), cannotWrite(home, 75, u"this is a directory"_s));
}

#ifdef Q_OS_LINUX
TEST_F(UnwritableDump, ADeviceIsLeftAlone) {
  EXPECT_EQ(refusal(u"/dev/full"_s), cannotWrite(u"/dev/full"_s, 75, u"this is no file"_s));
  EXPECT_FALSE(QFileInfo(u"/dev/full"_s).isFile());
}

TEST_F(UnwritableDump, AFullDiskLeavesTheOldFileAndNothingElse) {
  const QString place = directory.filePath(u"place"_s);
  QDir().mkpath(place);
  const QString path = place + u"/dump.txt";
  fill("fldList", QStringList(2000, QString(80, u'x')));
  for (const bool isThere : {false, true}) {
    if (isThere) putFile(path, "old");
    // Also where the last bytes alone find no room, which wait in a buffer until the file is closed.
    for (const int room : {0, 1, 40'000, 2000 * 81 - 1}) {
      ShownBox shown;
      {
        const SmallFiles full{rlim_t(room)};
        shown = refusal(path);
      }
      EXPECT_TRUE(shown.text.startsWith(u"Error 75 ("_s + path + u": the file cannot be written ("))
          << room << ' ' << shown.text.toStdString();
      EXPECT_EQ(fileAt(path), isThere ? "old" : "(missing)") << room;
      EXPECT_EQ(filesIn(place), isThere ? QStringList(u"dump.txt"_s) : QStringList()) << room;
    }
  }
  // A line too long for the buffer goes to the disk at once, and may be cut there.
  const SmallFiles full(999);
  DumpFile file(path);
  EXPECT_THROW(file.write({QString(100'000, u'x')}), RuntimeError);
  EXPECT_EQ(fileAt(path), "old");
}
#endif

#ifdef Q_OS_LINUX
TEST_F(UnwritableDump, AFileThatMayNotBeWrittenStaysAsItIs) {
  const QString path = directory.filePath(u"dump.txt"_s);
  putFile(path, "old");
  const WithoutRights user(directory.path());
  QFile::setPermissions(path, QFile::ReadOwner);
  EXPECT_TRUE(refusal(path).text.startsWith(u"Error 75 ("_s + path));
  EXPECT_EQ(fileAt(path), "old");
}
#endif

// --- paths of other desks ---

#ifndef Q_OS_WIN
TEST_F(FieldDumpTest, ADriveMeansTheHomeDirectory) {
  EXPECT_EQ(typedPath(u"c:\\Fields.txt"_s), home + u"/Fields.txt");
  EXPECT_EQ(typedPath(u"D:\\lists\\Fields.txt"_s), home + u"/lists/Fields.txt");
  EXPECT_EQ(typedPath(u"c:Fields.txt"_s), home + u"/Fields.txt");
  EXPECT_EQ(typedPath(u"c:/Fields.txt"_s), home + u"/Fields.txt");
  EXPECT_EQ(typedPath(u"c:\\..\\..\\Fields.txt"_s), home + u"/Fields.txt");
  EXPECT_EQ(typedPath(u"c:"_s), home + u"/");
}

TEST_F(FieldDumpTest, OtherPathsStayWhereTheyAre) {
  EXPECT_EQ(typedPath(u"/tmp/a.txt"_s), u"/tmp/a.txt"_s);
  EXPECT_EQ(typedPath(u"lists\\a.txt"_s), u"lists/a.txt"_s);
  EXPECT_EQ(typedPath(u"é:\\a"_s), u"é:/a"_s);
  EXPECT_EQ(typedPath(QString()), QString());
}
#endif

TEST_F(FieldDumpTest, TheWindowHasItsPlaces) {
  struct Place {
    const char* name;
    QRect place;
    int tabIndex;
  };
  const Place places[] = {
      {"lblFile", {16, 21, 56, 16}, 0},      {"txtDumpFile", {80, 16, 296, 26}, 1},
      {"cmdOpenFile", {384, 16, 32, 26}, 2}, {"lblWidth", {16, 53, 56, 16}, 3},
      {"txtWidth", {80, 48, 56, 26}, 4},     {"chkContent", {160, 48, 208, 26}, 5},
      {"cmdOK", {240, 96, 80, 26}, 6},       {"cmdCancel", {336, 96, 80, 26}, 7},
  };
  DumpToFile& window = open();
  for (const Place& place : places) {
    const auto* control = window.findChild<QWidget*>(QString::fromLatin1(place.name));
    ASSERT_TRUE(control) << place.name;
    EXPECT_EQ(control->geometry(), place.place) << place.name;
    EXPECT_EQ(control->property("tabIndex").toInt(), place.tabIndex) << place.name;
  }
  EXPECT_EQ(window.size(), QSize(432, 136));
  EXPECT_EQ(window.minimumSize(), window.maximumSize());
  EXPECT_TRUE(window.cmdOK->isDefault());
  EXPECT_FALSE(window.cmdOpenFile->icon().isNull());
}

TEST_F(FieldDumpTest, TheFileIsOpenedBeforeALineIsMade) {
  fill("fldList", {QString(40'000, u'x') + u":"});
  DumpToFile& window = open();
  window.txtDumpFile->setText(directory.filePath(u"none/dump.txt"_s));
  window.chkContent->setValue(false);
  window.cmdOK->click.fire();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes.first().text.startsWith(u"Error 76 ("_s)) << host.boxes.first().text.toStdString();
}

TEST_F(FieldDumpTest, TheFileDialogBlocksNoOtherProgramAndAsksNothing) {
  DumpToFile& window = open();
  QWidget other;
  bool asked = false;
  QTimer::singleShot(0, [&] {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_TRUE(dialog);
    asked = true;
    EXPECT_EQ(dialog->windowModality(), Qt::WindowModal);
    EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
    EXPECT_TRUE(dialog->testOption(QFileDialog::DontConfirmOverwrite));
    dialog->reject();
  });
  window.cmdOpenFile->click.fire();
  EXPECT_TRUE(asked);
  EXPECT_EQ(window.txtDumpFile->text(), "");
}

}  // namespace
}  // namespace lens
