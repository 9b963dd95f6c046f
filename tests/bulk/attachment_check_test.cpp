#include "bulk/attachment_check.h"

#include <sqlite3.h>

#include "bulk/bulk_fixture.h"
#include "embedded/format/engine_fault.h"
#ifdef Q_OS_LINUX
#include "support/small_files.h"
#endif

namespace lens {
namespace {

class AttachmentCheckTest : public ReplicDeskTest {
 protected:
  AttachmentCheckTest() : out(directory.filePath(u"out"_s)) {
    QDir().mkpath(out);
    provideSound();
    database = makeDatabase(u"mail.nsf"_s);
    addView(*database, u"All"_s);
    globals.gDbPath = u"mail.nsf"_s;
    fill(*window.lstViewNames, {u"All"_s});
    window.lstViewNames->setListIndex(0);
    window.txtListToPrint->setText(out);
  }
  // A memo with these files, each of which holds its own name. Documents stand in the view in the order of
  // their subjects.
  NoteId mail(const QString& subject, const QStringList& files) {
    Note note = document(u"Memo"_s);
    note.add(u"Subject"_s, itemflag::Summary, textValue(subject));
    for (const QString& file : files) attach(note, file, file.toUtf8());
    return save(note);
  }
  void damage(const QString& file) {
    const QByteArray sql =
        "UPDATE object_chunk SET bytes = CAST('~' || substr(bytes, 2) AS BLOB)"
        " WHERE CAST(bytes AS TEXT) = '" +
        file.toUtf8() + "'";
    ASSERT_EQ(sqlite3_exec(database->handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
    ASSERT_GT(sqlite3_changes(database->handle()), 0);
  }
  void check() {
    host.boxes.clear();
    host.sounds.clear();
    press(window.cmdChkAttachments);
  }
  QStringList filesOut() const { return QDir(out).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
  QByteArray extracted(const QString& file) const {
    QFile read(out + u'/' + file);
    return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray("(missing)");
  }
  QStringList listed() { return rowsOf(*window.lstAgentNames); }
  QStringList titles() const {
    QStringList titles;
    for (const ShownBox& box : host.boxes) titles += box.title;
    return titles;
  }
  static ShownBox told(int number) {
    return {standardErrorText(number), box::Critical, u"CmdChkAttachments"_s};
  }

  const QString out;
  AttachmentCheck attachments{desk};
};

TEST_F(AttachmentCheckTest, WritesEveryAttachmentAndListsNobodyWhenAllIsWell) {
  mail(u"1"_s, {u"a.txt"_s, u"Größe.bin"_s});
  mail(u"2"_s, {});
  mail(u"3"_s, {u"c.txt"_s});
  fill(*window.lstAgentNames, {u"agent"_s});
  globals.gStopFlag = true;
  check();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(filesOut(), QStringList({u"Größe.bin"_s, u"a.txt"_s, u"c.txt"_s}));
  EXPECT_EQ(extracted(u"a.txt"_s), "a.txt");
  EXPECT_EQ(listed(), QStringList());
  EXPECT_EQ(window.txtProc->text(), u"3"_s);
  EXPECT_EQ(window.txtDocsSelected->text(), u"3"_s);
  EXPECT_EQ(host.sounds.size(), 1);
  EXPECT_FALSE(globals.gStopFlag);
  EXPECT_EQ(host.yields, 0);
}

TEST_F(AttachmentCheckTest, ADamagedOneCostsOneBoxAndOneRow) {
  mail(u"1"_s, {u"a.txt"_s});
  const NoteId second = mail(u"2"_s, {u"b1.txt"_s, u"b2.txt"_s, u"b3.txt"_s});
  mail(u"3"_s, {u"c.txt"_s});
  damage(u"b2.txt"_s);
  check();
  ASSERT_EQ(titles(), QStringList(u"CmdChkAttachments"_s));
  EXPECT_EQ(host.boxes[0].style, box::Critical);
  EXPECT_TRUE(host.boxes[0].text.contains(u"damaged"_s)) << host.boxes[0].text.toStdString();
  EXPECT_EQ(listed(), QStringList(second.hexText())) << "without zeros in front";
  EXPECT_EQ(filesOut(), QStringList({u"a.txt"_s, u"b1.txt"_s, u"b3.txt"_s, u"c.txt"_s}));
  EXPECT_EQ(window.txtProc->text(), u"3"_s);
  EXPECT_EQ(window.txtDocsSelected->text(), u"3"_s);
  EXPECT_EQ(host.sounds.size(), 1);
}

#ifndef Q_OS_WIN
TEST_F(AttachmentCheckTest, WithThePathOfTheDumpListFailsForEachAndWritesNothing) {
  const QByteArray before = qgetenv("HOME");
  const QString home = directory.filePath(u"home"_s), place = QDir::currentPath();
  QDir().mkpath(home);
  QDir().mkpath(directory.filePath(u"working"_s));
  qputenv("HOME", home.toUtf8());
  QDir::setCurrent(directory.filePath(u"working"_s));
  const QString first = mail(u"1"_s, {u"a.txt"_s, u"b.txt"_s}).hexText();
  const QString second = mail(u"2"_s, {u"c.txt"_s}).hexText();
  window.txtListToPrint->setText(u"c:\\Dumplist.txt"_s);
  check();
  EXPECT_EQ(host.boxes.size(), 3);
  EXPECT_EQ(listed(), QStringList({first, first, second}));
  EXPECT_TRUE(QDir(home).isEmpty());
  EXPECT_TRUE(QDir().isEmpty()) << QDir().entryList().join(u' ').toStdString();
  QDir(home).mkpath(u"Dumplist.txt"_s);
  check();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(QDir(home + u"/Dumplist.txt").entryList(QDir::Files),
            QStringList({u"a.txt"_s, u"b.txt"_s, u"c.txt"_s}));
  EXPECT_TRUE(QDir().isEmpty());
  QDir::setCurrent(place);
  qputenv("HOME", before);
}
#endif

TEST_F(AttachmentCheckTest, OverwritesAFileOfTheSameNameAndLeavesTheDirectoryNever) {
  mail(u"1"_s, {u"same.txt"_s});
  Note note = document(u"Memo"_s);
  note.add(u"Subject"_s, itemflag::Summary, textValue(u"2"_s));
  attach(note, u"same.txt"_s, "second");
  attach(note, u"..\\..\\up.txt"_s, "up");
  attach(note, u"/etc/deep.txt"_s, "deep");
  save(note);
  check();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(filesOut(), QStringList({u"deep.txt"_s, u"same.txt"_s, u"up.txt"_s}));
  EXPECT_EQ(extracted(u"same.txt"_s), "second");
  mail(u"3"_s, {u"nul"_s, u"z.txt"_s});
  check();
  EXPECT_EQ(host.boxes.size(), 1) << "the name of a device";
  EXPECT_EQ(extracted(u"z.txt"_s), "z.txt");
}

TEST_F(AttachmentCheckTest, PassesItemsWithoutAttachmentOverInSilence) {
  Note note = document(u"Memo"_s);
  note.add(u"Subject"_s, itemflag::Summary, textValue(u"1"_s));
  note.add(u"$File"_s, itemflag::Summary, textValue(u"gone.txt"_s));
  note.add(u"$FILE"_s, itemflag::Summary, textValue(QString()));
  note.add(u"$FILE"_s, 0, rawValue(itemtype::Object, QByteArray(12, '\5')));
  note.add(u"$FILE"_s, itemflag::Summary, textListValue({}));
  save(note);
  attach(note, u"a.txt"_s, "a");
  save(note);
  check();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(listed(), QStringList());
  EXPECT_EQ(filesOut(), QStringList(u"a.txt"_s));
}

TEST_F(AttachmentCheckTest, CountsCategoriesAndPassesThemOver) {
  auto sorted = makeDatabase(u"by.nsf"_s);
  database = sorted;
  addView(*sorted, u"All"_s, true, true);
  mail(u"1"_s, {u"a.txt"_s});
  mail(u"2"_s, {u"b.txt"_s});
  globals.gDbPath = u"by.nsf"_s;
  check();
  EXPECT_EQ(window.txtProc->text(), u"4"_s);
  EXPECT_EQ(window.txtDocsSelected->text(), u"4"_s);
  EXPECT_EQ(filesOut().size(), 2);
  EXPECT_EQ(host.boxes, Boxes());
}

// The rows may show another server's databases by now; the path is that of the last operation.
TEST_F(AttachmentCheckTest, WorksOnTheDatabaseThatWasOpenedLast) {
  mail(u"1"_s, {u"a.txt"_s});
  makeDatabase(u"other.nsf"_s);
  fillMarked(*window.lstDBNames, {u"other.nsf"_s});
  check();
  EXPECT_EQ(filesOut(), QStringList(u"a.txt"_s));
  EXPECT_EQ(globals.gDbPath, u"mail.nsf"_s);
}

TEST_F(AttachmentCheckTest, EndsInSilenceWithoutViewsAndAsksForOne) {
  fill(*window.lstAgentNames, {u"agent"_s});
  window.lstViewNames->clear();
  check();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(notes().log, QStringList());
  EXPECT_EQ(listed(), QStringList(u"agent"_s));
  fill(*window.lstViewNames, {u"All"_s});
  window.txtProc->setText(u"9"_s);
  check();
  EXPECT_EQ(host.boxes, Boxes({{u"Please select a view"_s, box::Plain, u"Extract attachments"_s}}));
  EXPECT_EQ(listed(), QStringList());
  EXPECT_EQ(window.txtProc->text(), u"9"_s);
  EXPECT_TRUE(host.sounds.isEmpty());
}

TEST_F(AttachmentCheckTest, GoesOnBehindEveryStatementThatFails) {
  globals.gDbPath = u"gone.nsf"_s;
  check();
  // The database, the view, its entries, the first of them, and their number.
  ASSERT_EQ(host.boxes.size(), 5);
  for (int at = 1; at < 5; ++at) EXPECT_EQ(host.boxes[at], told(err::ObjectNotSet));
  EXPECT_EQ(listed(), QStringList());
  EXPECT_EQ(host.sounds.size(), 1);
  globals.gDbPath = u"mail.nsf"_s;
  fill(*window.lstViewNames, {u"none"_s});
  window.lstViewNames->setListIndex(0);
  check();
  EXPECT_EQ(host.boxes, Boxes({told(err::ObjectNotSet), told(err::ObjectNotSet), told(err::ObjectNotSet)}));
}

TEST_F(AttachmentCheckTest, StopsInABoxWithoutSoundAndCount) {
  const QString first = mail(u"1"_s, {u"a.txt"_s, u"b.txt"_s}).hexText();
  mail(u"2"_s, {u"c.txt"_s});
  damage(u"a.txt"_s);
  window.txtDocsSelected->setText(u"9"_s);
  host.whileBoxIsShown = [this](const ShownBox&) { globals.gStopFlag = true; };
  check();
  EXPECT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(listed(), QStringList(first));
  EXPECT_EQ(filesOut(), QStringList(u"b.txt"_s)) << "its document is done";
  EXPECT_EQ(window.txtProc->text(), QString());
  EXPECT_EQ(window.txtDocsSelected->text(), u"9"_s);
  EXPECT_TRUE(host.sounds.isEmpty());
  EXPECT_FALSE(globals.gStopFlag);
}

TEST_F(AttachmentCheckTest, PassesADocumentOverThatGoesMeanwhile) {
  mail(u"1"_s, {u"a.txt"_s});
  const NoteId second = mail(u"2"_s, {u"b.txt"_s});
  mail(u"3"_s, {u"c.txt"_s});
  notes().onCall = [&](const QString& name) {
    if (name == u"EXTRACTFILE" && database->notes().state(second) == NoteState::Live)
      database->notes().remove(second);
  };
  check();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(filesOut(), QStringList({u"a.txt"_s, u"c.txt"_s}));
  EXPECT_EQ(window.txtProc->text(), u"3"_s);
}

TEST_F(AttachmentCheckTest, TellsADirectoryThatGoesMeanwhile) {
  mail(u"1"_s, {u"a.txt"_s});
  const QString second = mail(u"2"_s, {u"b.txt"_s}).hexText();
  int extracted = 0;
  notes().onCall = [&](const QString& name) {
    if (name == u"EXTRACTFILE" && ++extracted == 2) QDir(out).removeRecursively();
  };
  check();
  EXPECT_TRUE(onlyBox().text.startsWith(out + u"/b.txt")) << onlyBox().text.toStdString();
  EXPECT_EQ(listed(), QStringList(second));
  EXPECT_FALSE(QDir(out).exists()) << "no directory is made";
}

#ifdef Q_OS_LINUX
TEST_F(AttachmentCheckTest, LeavesNoHalfFileOnAFullDisk) {
  mail(u"1"_s, {u"a.txt"_s});
  const QString second = mail(u"2"_s, {u"a name longer than the room.txt"_s}).hexText();
  mail(u"3"_s, {u"c.txt"_s});
  {
    const SmallFiles full(10);
    check();
  }
  EXPECT_EQ(onlyBox().title, u"CmdChkAttachments"_s);
  EXPECT_EQ(listed(), QStringList(second));
  EXPECT_EQ(filesOut(), QStringList({u"a.txt"_s, u"c.txt"_s}));
}
#endif

// A document that cannot even tell its ID has no row.
TEST_F(AttachmentCheckTest, GoesOnWithoutARowForADocumentThatCannotTellItsId) {
  mail(u"1"_s, {u"a.txt"_s});
  mail(u"2"_s, {u"b.txt"_s});
  damage(u"a.txt"_s);
  notes().failing = {{u"NOTEID"_s, RuntimeError(70)}};
  check();
  EXPECT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(listed(), QStringList());
  EXPECT_EQ(filesOut(), QStringList(u"b.txt"_s));
}

// Below a category, so that a failure on its row could list the document before it.
TEST_F(AttachmentCheckTest, AlwaysReturnsAndListsNoOtherDocument) {
  auto sorted = makeDatabase(u"by.nsf"_s);
  database = sorted;
  addView(*sorted, u"All"_s, true, true);
  const QString first = mail(u"1"_s, {u"a.txt"_s}).hexText();
  const QString second = mail(u"2"_s, {u"b.txt"_s, u"c.txt"_s}).hexText();
  globals.gDbPath = u"by.nsf"_s;
  const auto run = [&](int n) {
    notes().log.clear();
    return reachesFault(notes(), n, [this] { check(); });
  };
  const int runs = withEveryFault(run, [&](int n) {
    const QString& call = notes().log[n - 1];
    SCOPED_TRACE(call.toStdString());
    ASSERT_FALSE(host.boxes.isEmpty());
    EXPECT_EQ(host.boxes.first(), told(70));
    for (const QString& title : titles()) EXPECT_EQ(title, u"CmdChkAttachments"_s);
    // Which of the two documents was the last to be fetched before.
    const int fetched = int(notes().log.mid(0, n - 1).count(u"DOCUMENT"_s));
    const bool atHand = call != u"ISDOCUMENT" && call != u"count" &&
                        notes().log.mid(0, n - 1).lastIndexOf(u"DOCUMENT"_s) >
                            notes().log.mid(0, n - 1).lastIndexOf(u"ISDOCUMENT"_s);
    EXPECT_EQ(listed(), atHand ? QStringList(fetched == 1 ? first : second) : QStringList());
    EXPECT_EQ(host.sounds.size(), 1);
    EXPECT_FALSE(globals.gStopFlag);
  });
  EXPECT_GT(runs, 30);
  EXPECT_EQ(host.boxes, Boxes());
}

}  // namespace
}  // namespace lens
