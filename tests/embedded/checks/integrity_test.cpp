#include <QBuffer>

#include "embedded/checks/integrity_check.h"
#include "embedded/support/store_test.h"

namespace lens {
namespace {

using namespace Qt::StringLiterals;

class Integrity : public StoreTest {
 protected:
  Integrity() {
    for (const char16_t* subject : {u"First", u"Second", u"Third"})
      ids.push_back(saved(QString::fromUtf16(subject)));
    Note note = noteWith(u"With a file"_s);
    QByteArray content(40'000, 'x');
    QBuffer source(&content);
    source.open(QIODevice::ReadOnly);
    const StoredObject object = database->objects().add(source);
    FileObject file;
    file.objectId = object.id;
    file.name = u"letter.txt"_s;
    file.size = quint32(object.size);
    note.add(u"$FILE"_s, itemflag::Summary, fileObjectValue(file));
    database->notes().save(note);
    ids.push_back(note.header.id);
  }
  // "8FE: reason" for each fault.
  QStringList faults() {
    QStringList found;
    report = checkIntegrity(*database, [&](const IntegrityFault& fault) {
      found += fault.note.hexText() + u": "_s + fault.what;
    });
    return found;
  }

  // As another program would, by a connection of its own.
  void beside(const char* sql) const {
    sqlite3* raw = nullptr;
    ASSERT_EQ(sqlite3_open(path().toUtf8().constData(), &raw), 0);
    EXPECT_EQ(sqlite3_exec(raw, sql, nullptr, nullptr, nullptr), 0) << sqlite3_errmsg(raw);
    sqlite3_close(raw);
  }

  QVector<NoteId> ids;
  IntegrityReport report;
};

TEST_F(Integrity, AWholeDatabaseHasNoFaults) {
  EXPECT_EQ(faults(), QStringList());
  EXPECT_EQ(report.notes, 4);
  EXPECT_EQ(report.attachments, 1);
  EXPECT_EQ(report.faults, 0);
  EXPECT_FALSE(report.cancelled);
}

TEST_F(Integrity, StubsAndGapsAreNoFaults) {
  database->notes().remove(ids[0]);
  database->notes().remove(ids[1], false);
  EXPECT_EQ(faults(), QStringList());
  EXPECT_EQ(report.notes, 2);
}

// Databases that were not made here number their notes otherwise.
TEST_F(Integrity, NotesOfAnyNumberAreChecked) {
  damage("UPDATE note SET id = 287 WHERE id = 2302");
  EXPECT_EQ(faults(), QStringList());
  EXPECT_EQ(report.notes, 4);
}

// More than are asked for at a time.
TEST_F(Integrity, EachOfManyNotesIsChecked) {
  Database::Transaction transaction(*database);
  for (int i = 0; i < 600; ++i) saved(u"x"_s);
  transaction.commit();
  EXPECT_EQ(faults(), QStringList());
  EXPECT_EQ(report.notes, 604);
}

TEST_F(Integrity, ADamagedNoteIsToldAndTheOthersAreChecked) {
  damage("UPDATE note SET items = x'0011' WHERE id = 2302");
  const QStringList found = faults();
  ASSERT_EQ(found.size(), 1);
  EXPECT_TRUE(found[0].startsWith(u"8FE: "_s)) << found[0].toStdString();
  EXPECT_EQ(report.notes, 3);
  EXPECT_EQ(report.attachments, 1);
}

TEST_F(Integrity, AnAttachmentWithOtherBytesIsTold) {
  damage("UPDATE object_chunk SET bytes = zeroblob(length(bytes))");
  const QStringList found = faults();
  ASSERT_EQ(found.size(), 1);
  EXPECT_TRUE(found[0].contains(u"letter.txt"_s)) << found[0].toStdString();
  EXPECT_EQ(report.attachments, 0);
}

TEST_F(Integrity, AnAttachmentThatIsGoneIsTold) {
  damage("DELETE FROM object_chunk; DELETE FROM object");
  const QStringList found = faults();
  ASSERT_EQ(found.size(), 1);
  EXPECT_TRUE(found[0].startsWith(u"906: attachment \"letter.txt\""_s)) << found[0].toStdString();
}

// An index that does not agree with its rows is seen by nobody who reads row by row: here one row was changed
// while the file did not know of the index.
TEST_F(Integrity, AnIndexThatDoesNotFitItsRowsIsTold) {
  database.reset();
  beside(
      "CREATE TABLE kept AS SELECT * FROM sqlite_schema WHERE name = 'note_change';"
      "PRAGMA writable_schema = ON; DELETE FROM sqlite_schema WHERE name = 'note_change'");
  beside("UPDATE note SET change = change + 100 WHERE id = 2302");
  beside("PRAGMA writable_schema = ON; INSERT INTO sqlite_schema SELECT * FROM kept");
  beside("DROP TABLE kept");
  database = Database::open(path());
  const QStringList found = faults();
  ASSERT_FALSE(found.isEmpty());
  EXPECT_TRUE(found[0].startsWith(u"0: "_s) && found[0].contains(u"note_change"_s)) << found[0].toStdString();
}

TEST_F(Integrity, CanBeEnded) {
  int asked = 0;
  report = checkIntegrity(
      *database, [](const IntegrityFault&) {}, [&](qint64, qint64) { return ++asked < 3; });
  EXPECT_TRUE(report.cancelled);
  EXPECT_EQ(asked, 3);
}

}  // namespace
}  // namespace lens
