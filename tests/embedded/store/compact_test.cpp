// What goes and what stays when a database is compacted, and that nothing can be lost by it.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QBuffer>
#include <QThread>

#include "embedded/store/compaction.h"
#include "embedded/support/store_test.h"

namespace lens {
namespace {

class Compact : public StoreTest {
 protected:
  quint32 object(const QByteArray& bytes) {
    const quint32 id = database->objects().begin();
    database->objects().append(id, bytes);
    return database->objects().finish(id).id;
  }
  static QByteArray fileValue(quint32 object) {
    FileObject file;
    file.objectId = object;
    file.name = QStringLiteral("a.bin");
    return fileObjectValue(file);
  }
  // A note with an attachment of its own.
  Note withFile(const QByteArray& bytes) {
    Note note = noteWith(QStringLiteral("with a file"));
    note.add(QStringLiteral("$FILE"), itemflag::Summary, fileValue(object(bytes)));
    database->notes().save(note);
    return note;
  }
  static quint32 objectOf(const Note& note) { return objectIdOf(note.find(u"$FILE")->data()); }
  QByteArray contentOfObject(quint32 id) {
    QBuffer target;
    target.open(QIODevice::WriteOnly);
    database->objects().read(id, target);
    return target.data();
  }
  bool has(quint32 id) { return database->objects().size(id) >= 0; }
  QByteArray integrity() {
    sqlite3_stmt* check = nullptr;
    sqlite3_prepare_v2(database->handle(), "PRAGMA integrity_check", -1, &check, nullptr);
    sqlite3_step(check);
    const QByteArray result(reinterpret_cast<const char*>(sqlite3_column_text(check, 0)));
    sqlite3_finalize(check);
    return result;
  }
  // The failure of a compaction; it must name the file and leave every object.
  int refusal(const QVector<quint32>& objects) {
    QString description;
    const int number = errorNumber([&] { compact(*database); }, &description);
    EXPECT_TRUE(description.contains(path())) << description.toStdString();
    for (const quint32 id : objects) EXPECT_TRUE(has(id));
    return number;
  }
  const QByteArray big = QByteArray(700'000, 'b');
};

TEST_F(Compact, FilesOfLiveNotesStayAndThoseOfDeletedOrReplacedGo) {
  const Note kept = withFile("kept" + big), deleted = withFile(big), erased = withFile(big);
  Note replaced = withFile(big);
  const quint32 before = objectOf(replaced), fresh = object("fresh");
  replaced.find(u"$FILE")->value = fileValue(fresh);
  database->notes().save(replaced);
  database->notes().remove(deleted.header.id);
  database->notes().remove(erased.header.id, false);
  const qint64 size = database->size();
  const qint64 saved = compact(*database);
  EXPECT_GT(saved, 3 * big.size() * 9 / 10);
  EXPECT_EQ(database->size(), size - saved);
  EXPECT_EQ(contentOfObject(objectOf(kept)), "kept" + big);
  EXPECT_EQ(contentOfObject(fresh), "fresh");
  for (const quint32 gone : {before, objectOf(deleted), objectOf(erased)}) EXPECT_FALSE(has(gone)) << gone;
  EXPECT_EQ(integrity(), "ok");
}

TEST_F(Compact, AFileThatTwoNotesShareStaysUntilBothAreGone) {
  const Note first = withFile("shared");
  Note second = noteWith(QStringLiteral("copy"));
  second.add(QStringLiteral("$FILE"), 0, first.find(u"$FILE")->value);
  database->notes().save(second);
  database->notes().remove(first.header.id);
  compact(*database);
  EXPECT_EQ(contentOfObject(objectOf(first)), "shared");
  database->notes().remove(second.header.id);
  compact(*database);
  EXPECT_FALSE(has(objectOf(first)));
}

TEST_F(Compact, WhatAnAgentKeepsFromItsRunsStays) {
  const quint32 data = object("run data");
  QByteArray value;
  appendU16(value, itemtype::Object);
  appendU16(value, 8);
  appendU32(value, data);
  Note agent = noteWith(QStringLiteral("agent"), noteclass::Filter);
  agent.add(QStringLiteral("$AssistRunInfo"), 0, value);
  database->notes().save(agent);
  compact(*database);
  EXPECT_EQ(contentOfObject(data), "run data");
}

TEST_F(Compact, AFileOfADocumentThatIsStillBeingWrittenStays) {
  const quint32 open = object("not saved yet");
  compact(*database);
  ASSERT_TRUE(has(open));
  Note note = noteWith(QStringLiteral("later"));
  note.add(QStringLiteral("$FILE"), 0, fileValue(open));
  database->notes().save(note);
  compact(*database);
  EXPECT_EQ(contentOfObject(open), "not saved yet");
}

TEST_F(Compact, AFileThatNeverCameIntoADocumentGoesWithTheNextOpening) {
  const quint32 lost = object("lost");
  database->objects().begin();  // not even finished
  reopen();
  compact(*database);
  EXPECT_FALSE(has(lost));
  sqlite3_stmt* rows = nullptr;
  sqlite3_prepare_v2(database->handle(),
                     "SELECT (SELECT count(*) FROM object) + (SELECT count(*) FROM object_chunk)", -1, &rows,
                     nullptr);
  ASSERT_EQ(sqlite3_step(rows), SQLITE_ROW);
  EXPECT_EQ(sqlite3_column_int(rows, 0), 0);
  sqlite3_finalize(rows);
}

TEST_F(Compact, BesideADamagedNoteNoFileIsTakenAway) {
  const Note deleted = withFile(big), damaged = withFile("perhaps");
  database->notes().remove(deleted.header.id);
  const QByteArray sql =
      "UPDATE note SET items = x'00' WHERE id = " + QByteArray::number(damaged.header.id.value());
  damage(sql.constData());
  compact(*database);
  EXPECT_TRUE(has(objectOf(damaged)));
  EXPECT_TRUE(has(objectOf(deleted)));
}

TEST_F(Compact, TheDatabaseIsUsedAsBefore) {
  const NoteId first = saved(QStringLiteral("one")), gone = saved(QStringLiteral("two"));
  database->notes().remove(gone, false);
  const qint64 change = database->versions().changeSequence();
  EXPECT_GE(compact(*database), 0);
  EXPECT_EQ(subjectOf(first), QStringLiteral("one"));
  EXPECT_EQ(database->versions().changeSequence(), change);
  EXPECT_EQ(database->versions().changesSince(0).size(), 2) << "an index still learns what is gone";
  EXPECT_EQ(saved(QStringLiteral("three")), NoteId(gone.value() + 4));
  // Others can open it and write beside this one.
  std::unique_ptr<QThread> other(QThread::create([this] {
    Note note = noteWith(QStringLiteral("from elsewhere"));
    Database::open(path())->notes().save(note);
  }));
  other->start();
  other->wait();
  EXPECT_EQ(subjectOf(NoteId(gone.value() + 8)), QStringLiteral("from elsewhere"));
  reopen();
  EXPECT_EQ(subjectOf(first), QStringLiteral("one"));
}

TEST_F(Compact, IsRefusedInTheMiddleOfAChange) {
  const Note deleted = withFile(big);
  database->notes().remove(deleted.header.id);
  {
    Database::Transaction transaction(*database);
    const NoteId written = saved(QStringLiteral("inside"));
    EXPECT_EQ(refusal({objectOf(deleted)}), enginefault::InUse);
    transaction.commit();
    EXPECT_EQ(subjectOf(written), QStringLiteral("inside"));
  }
  EXPECT_GT(compact(*database), 0);
}

TEST_F(Compact, IsRefusedInTheMiddleOfAListing) {
  saved(QStringLiteral("one"));
  saved(QStringLiteral("two"));
  sqlite3_stmt* listing = nullptr;
  sqlite3_prepare_v2(database->handle(), "SELECT id FROM note", -1, &listing, nullptr);
  ASSERT_EQ(sqlite3_step(listing), SQLITE_ROW);
  EXPECT_EQ(refusal({}), enginefault::InUse);
  EXPECT_EQ(sqlite3_step(listing), SQLITE_ROW);
  sqlite3_finalize(listing);
  EXPECT_EQ(errorNumber([&] { compact(*database); }), 0);
}

TEST_F(Compact, IsRefusedWhileAnotherThreadHasTheFileOpen) {
  const Note deleted = withFile(big);
  database->notes().remove(deleted.header.id);
  std::shared_ptr<Database> elsewhere;
  std::unique_ptr<QThread> other(QThread::create([&] { elsewhere = Database::open(path()); }));
  other->start();
  other->wait();
  EXPECT_EQ(refusal({objectOf(deleted)}), enginefault::InUse);
  EXPECT_NE(saved(QStringLiteral("still works")), NoteId());
  elsewhere.reset();
  EXPECT_GT(compact(*database), 0);
}

TEST_F(Compact, IsRefusedWhileAnotherProgramHasTheFileOpen) {
  const Note deleted = withFile(big);
  database->notes().remove(deleted.header.id);
  database.reset();
  int ready[2] = {-1, -1}, done[2] = {-1, -1};
  ASSERT_EQ(pipe(ready), 0);
  ASSERT_EQ(pipe(done), 0);
  const pid_t child = fork();
  if (child == 0) {
    close(done[1]);
    const auto held = Database::open(path());
    char byte = 'x';
    if (write(ready[1], &byte, 1) != 1) _exit(1);
    _exit(read(done[0], &byte, 1) == 0 ? 0 : 1);
  }
  close(done[0]);
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  database = Database::open(path());
  EXPECT_EQ(refusal({objectOf(deleted)}), enginefault::InUse);
  close(done[1]);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  close(ready[0]);
  close(ready[1]);
  EXPECT_GT(compact(*database), 0);
}

TEST_F(Compact, AReadOnlyFileStaysAsItIs) {
  const Note deleted = withFile(big);
  database->notes().remove(deleted.header.id);
  database.reset();
  ASSERT_TRUE(QFile::setPermissions(path(), QFile::ReadOwner));
  const QByteArray content = contentOf(path());
  database = Database::open(path());
  EXPECT_EQ(refusal({objectOf(deleted)}), enginefault::NotSaved);
  database.reset();
  EXPECT_TRUE(contentOf(path()) == content);
  QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner);
}

// Adds notes with files, deletes every other one and compacts, without end; tells how far it came.
[[noreturn]] void compactUntilKilled(const QString& path, int pipe) {
  const auto database = Database::open(path);
  for (quint32 turn = 0;; ++turn) {
    for (int i = 0; i < 2; ++i) {
      const quint32 object = database->objects().begin();
      database->objects().append(object, QByteArray(60'000, char('a' + turn % 26)));
      database->objects().finish(object);
      Note note = noteWith(QStringLiteral("kept"));
      FileObject file;
      file.objectId = object;
      note.add(QStringLiteral("$FILE"), 0, fileObjectValue(file));
      database->notes().save(note);
      if (i == 0) database->notes().remove(note.header.id);
      if (i == 1 && write(pipe, &note.header.id, 4) != 4) _exit(1);
    }
    compact(*database);
  }
}

TEST_F(Compact, KilledAtAnyMomentLosesNothing) {
  database.reset();
  QVector<NoteId> kept;
  for (int stop = 1; stop <= 8; ++stop) {
    int ends[2] = {-1, -1};
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
      close(ends[0]);
      compactUntilKilled(path(), ends[1]);
    }
    close(ends[1]);
    NoteId id;
    for (int i = 0; i < 2 && read(ends[0], &id, 4) == 4; ++i) kept.push_back(id);
    usleep(useconds_t(stop) * 9000);  // now it compacts, or saves again
    kill(child, SIGKILL);
    while (read(ends[0], &id, 4) == 4) kept.push_back(id);
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    database = Database::open(path());
    EXPECT_EQ(integrity(), "ok");
    for (const NoteId noteId : std::as_const(kept)) {
      Note note;
      ASSERT_TRUE(database->notes().read(noteId, note)) << noteId.value();
      EXPECT_EQ(contentOfObject(objectOf(note)).size(), 60'000);
    }
    database.reset();
  }
  EXPECT_GE(kept.size(), 16);
}

}  // namespace
}  // namespace lens
