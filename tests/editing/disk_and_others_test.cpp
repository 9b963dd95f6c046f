// What others and the disk do between two clicks: documents deleted or changed meanwhile, a database that
// cannot be written, a disk that fills up in the middle of a run.
#include <sqlite3.h>

#include <QElapsedTimer>

#include "editing/editing_fixture.h"
#include "embedded/faults/faulty_disk.h"

namespace lens {
namespace {

// Before any database is opened.
struct FailingDisk {
  FailingDisk() { testbed::FaultyDisk::count(); }
  ~FailingDisk() { testbed::FaultyDisk::count(); }
};

class DiskAndOthers : private FailingDisk, public EditingTest {
 protected:
  QString path() { return workspace->absolutePath(DatabasePlace{QString(), u"mail.nsf"_s}); }
  // Another program's connection to the same file.
  std::shared_ptr<Database> elsewhere() { return Database::open(path()); }

  void overwrite(const QString& content) {
    selectRow("fldList", u"Subject:"_s);
    setText("txtFieldContent", content);
    press("cmdOverwrite");
  }
  // The collection list, and boxes for any of the four buttons.
  void fillIn(const QVector<NoteId>& listed) {
    ListBox& list = control<ListBox>("idList");
    list.clear();
    for (const NoteId id : listed) list.addItem(idRow(id));
    setText("txtFieldName", u"Subject"_s);
    setText("cmbFieldType", kTextType);
    setText("txtFieldContent", u"new"_s);
    setText("txtSearch", u"old"_s);
    setText("txtReplace", u"new"_s);
  }
  // Memos in the collection list, another one on display.
  void collect(int count) {
    for (int i = 0; i < count; ++i) {
      Note note = memo(u"old"_s);
      ids += save(note);
    }
    show(memo(u"on display"_s));
    fillIn(ids);
  }
  bool isBatchBox(const ShownBox& shown) {
    return shown.text.startsWith(u"Error "_s) &&
           shown.text.endsWith(u") in procedure procCollection of Modul Globals"_s);
  }
  void writeProtect() {
    database.reset();
    workspace->client().showNoDatabase();
    ASSERT_TRUE(QFile::setPermissions(path(), QFile::ReadOwner));
    database = elsewhere();
    workspace->client().showDatabase(DatabasePlace{QString(), u"mail.nsf"_s});
  }
  QByteArray fileContent() {
    QFile file(path());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  QVector<NoteId> ids;
};

TEST_F(DiskAndOthers, ADocumentDeletedElsewhereIsNotWrittenAndNotBroughtBack) {
  show(memo());
  ASSERT_TRUE(elsewhere()->notes().remove(noteId));
  overwrite(u"new"_s);
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, u"Error in Overwrite"_s);
  EXPECT_TRUE(host.boxes[0].text.endsWith(u" (please Reload the document again)"_s));
  Note note;
  EXPECT_FALSE(elsewhere()->notes().read(noteId, note));
}

TEST_F(DiskAndOthers, ADatabaseThatAnotherProgramReplacedTakesNothingAndSaysSo) {
  show(memo());
  const QString backup = path() + u".backup"_s;
  ASSERT_TRUE(QFile::copy(path(), backup));
  const QByteArray before = fileContent();
  ASSERT_TRUE(QFile::remove(path()) && QFile::copy(backup, path()));
  overwrite(u"new"_s);
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, u"Error in Overwrite"_s);
  EXPECT_EQ(fileContent(), before);
}

TEST_F(DiskAndOthers, ADocumentChangedElsewhereTakesTheLastWriteWithoutAConflict) {
  show(memo());
  const auto other = elsewhere();
  Note theirs;
  ASSERT_TRUE(other->notes().read(noteId, theirs));
  theirs.find(u"Subject")->value = textValue(u"theirs"_s);
  theirs.add(u"Theirs"_s, itemflag::Summary, textValue(u"x"_s));
  other->notes().save(theirs);
  const int notesBefore = other->notes().noteCount(noteclass::Document);
  overwrite(u"ours"_s);
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(values(u"Subject"_s), QStringList(u"ours"_s));
  EXPECT_EQ(stored().header.sequence, theirs.header.sequence + 1);
  EXPECT_EQ(elsewhere()->notes().noteCount(noteclass::Document), notesBefore);
}

TEST_F(DiskAndOthers, ADocumentOfTheListDeletedElsewhereIsPassedOver) {
  collect(3);
  ASSERT_TRUE(elsewhere()->notes().remove(ids[1]));
  press("cmdWriteDocsInColl");
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(values(stored(ids[0]), u"Subject"_s), QStringList(u"new"_s));
  EXPECT_EQ(values(stored(ids[2]), u"Subject"_s), QStringList(u"new"_s));
}

// Between the moment when the run takes the document and that when it saves it.
TEST_F(DiskAndOthers, ADocumentDeletedWhileTheRunHoldsItEndsTheRunThere) {
  collect(3);
  int taken = 0;
  notes().onCall = [&](const QString& name) {
    if (name.compare(u"GETFIRSTITEM", Qt::CaseInsensitive) == 0 && ++taken == 2)
      elsewhere()->notes().remove(ids[1]);
  };
  press("cmdWriteDocsInColl");
  notes().onCall = nullptr;
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(isBatchBox(host.boxes[0])) << host.boxes[0].text.toStdString();
  EXPECT_EQ(values(stored(ids[0]), u"Subject"_s), QStringList(u"new"_s));
  EXPECT_EQ(values(stored(ids[2]), u"Subject"_s), QStringList(u"old"_s));
}

TEST_F(DiskAndOthers, EveryCommandRefusesAWriteProtectedDatabaseAloud) {
  Note note = memo(u"old"_s);
  note.add(u"Body"_s, 0, rich(u"old"_s));
  const NoteId id = save(note);
  writeProtect();
  openDocument(id);
  start();
  const auto title = [&](const char* button) {
    host.boxes.clear();
    selectRow("fldList", u"Subject:"_s);
    setText("txtFieldContent", u"new"_s);
    setText("txtSearch", u"old"_s);
    setText("txtReplace", u"new"_s);
    press(button);
    return host.boxes.size() == 1 ? host.boxes[0].title : u"%1 boxes"_s.arg(host.boxes.size());
  };
  EXPECT_EQ(title("cmdOverwrite"), u"Error in Overwrite"_s);
  EXPECT_EQ(title("cmdDelField"), u"Error in DeleteFiels"_s);
  EXPECT_EQ(title("cmdSearchReplaceAll"), u"Error in SeachReplaceAll"_s);
  click("cmdGetDoc");
  setText("txtFieldName", u"New"_s);
  setText("cmbFieldType", kTextType);
  setText("txtFieldContent", u"x"_s);
  host.boxes.clear();
  press("cmdAddField");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, u"Error in AddField"_s);
  EXPECT_EQ(values(stored(id), u"Subject"_s), QStringList(u"old"_s));
  EXPECT_FALSE(stored(id).has(u"New"));
}

TEST_F(DiskAndOthers, EveryRunEndsAtTheFirstDocumentOfAWriteProtectedDatabase) {
  Note first = memo(u"old"_s), second = memo(u"old"_s);
  ids = {save(first), save(second)};
  const QVector<NoteId> all = ids;
  writeProtect();
  openDocument(all[0]);
  start();
  for (const char* button :
       {"cmdDelFieldInCol", "cmdAddFieldInColl", "cmdWriteDocsInColl", "cmdReplAllFieldsInColl"}) {
    fillIn(all);
    host.boxes.clear();
    press(button);
    ASSERT_EQ(host.boxes.size(), 1) << button;
    EXPECT_TRUE(isBatchBox(host.boxes[0]) && host.boxes[0].text.contains(u"mail.nsf"_s))
        << host.boxes[0].text.toStdString();
    for (const NoteId id : all) EXPECT_EQ(values(stored(id), u"Subject"_s), QStringList(u"old"_s)) << button;
  }
}

// The disk is full from each of many moments on; those before are saved, the one at hand is whole, those
// behind are as they were.
TEST_F(DiskAndOthers, ADiskThatFillsUpInARunLosesNothingAndHalvesNothing) {
  collect(6);
  int ended = 0, finished = 0;
  for (int moment = 1; finished == 0 && moment < 400; ++moment) {
    // Back to the old subjects.
    for (const NoteId id : ids) {
      Note note = stored(id);
      note.find(u"Subject")->value = textValue(u"old"_s);
      database->notes().save(note);
    }
    setText("txtFieldName", u"Subject"_s);
    setText("txtFieldContent", u"new"_s);
    host.boxes.clear();
    testbed::FaultyDisk::fullFrom(moment);
    press("cmdWriteDocsInColl");
    const bool reached = testbed::FaultyDisk::changes() >= moment;
    testbed::FaultyDisk::count();
    QString subjects;
    for (const NoteId id : ids) subjects += values(stored(id), u"Subject"_s).join(u',') + u' ';
    const qsizetype done = subjects.count(u"new"_s);
    EXPECT_EQ(subjects, u"new "_s.repeated(done) + u"old "_s.repeated(ids.size() - done)) << moment;
    if (done == ids.size()) {
      if (!reached) ++finished;
      continue;
    }
    ++ended;
    ASSERT_EQ(host.boxes.size(), 1) << moment;
    EXPECT_TRUE(isBatchBox(host.boxes[0]) && host.boxes[0].text.contains(u"mail.nsf"_s))
        << moment << ": " << host.boxes[0].text.toStdString();
  }
  EXPECT_EQ(finished, 1);
  EXPECT_GE(ended, 6);
}

TEST_F(DiskAndOthers, AFullDiskLeavesTheStoredDocumentAndSaysSo) {
  show(memo());
  selectRow("fldList", u"Subject:"_s);
  setText("txtFieldContent", u"new"_s);
  testbed::FaultyDisk::fullFrom(1);
  press("cmdOverwrite");
  testbed::FaultyDisk::count();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, u"Error in Overwrite"_s);
  EXPECT_EQ(values(u"Subject"_s), QStringList(u"Pumps"_s));
  overwrite(u"new"_s);
  EXPECT_EQ(values(u"Subject"_s), QStringList(u"new"_s));
}

// The bytes of the attachment end too early: neither a new file nor a changed one may show the rest.
TEST_F(DiskAndOthers, ABrokenAttachmentLeavesTheFileThatWasThere) {
  show(withAttachment(u"report.pdf"_s, QByteArray(300'000, 'x')));
  const QString files = directory.filePath(u"files"_s);
  QDir().mkpath(files);
  control<DirList>("Dir1").setPath(files);
  ASSERT_EQ(sqlite3_exec(database->handle(), "DELETE FROM object_chunk WHERE number > 0", nullptr, nullptr,
                         nullptr),
            SQLITE_OK);
  press("cmdExtractAtt");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '"_s)) << host.boxes[0].text.toStdString();
  EXPECT_EQ(QDir(files).entryList(QDir::Files), QStringList());
  QFile old(files + u"/report.pdf"_s);
  ASSERT_TRUE(old.open(QIODevice::WriteOnly));
  old.write("old");
  old.close();
  press("cmdExtractAtt");
  ASSERT_TRUE(old.open(QIODevice::ReadOnly));
  EXPECT_EQ(old.readAll(), QByteArray("old"));
  EXPECT_EQ(QDir(files).entryList(QDir::Files), QStringList(u"report.pdf"_s));
}

}  // namespace
}  // namespace lens
