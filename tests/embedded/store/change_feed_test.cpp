// What an index learns of the changes since it last looked.
#include "embedded/support/store_test.h"

namespace lens {
namespace {

using ChangeFeed = StoreTest;

QString told(const QVector<NoteChange>& changes) {
  QStringList parts;
  for (const NoteChange& change : changes) {
    const QString state = change.state == NoteState::Live   ? QStringLiteral("live")
                          : change.state == NoteState::Stub ? QStringLiteral("stub")
                                                            : QStringLiteral("gone");
    parts << QStringLiteral("%1 %2").arg(change.id.value(), 0, 16).arg(state);
  }
  return parts.join(QStringLiteral(", "));
}

TEST_F(ChangeFeed, TellsEachNoteOnceInTheOrderOfItsLastChange) {
  const NoteId first = saved(QStringLiteral("one")), second = saved(QStringLiteral("two"));
  Note note;
  ASSERT_TRUE(database->notes().read(first, note));
  database->notes().save(note);
  EXPECT_EQ(told(database->versions().changesSince(0)),
            QStringLiteral("%1 live, %2 live").arg(second.value(), 0, 16).arg(first.value(), 0, 16));
}

TEST_F(ChangeFeed, TellsDeletionsWithAndWithoutAStub) {
  const NoteId first = saved(QStringLiteral("one")), second = saved(QStringLiteral("two"));
  const qint64 seen = database->versions().changeSequence();
  EXPECT_TRUE(database->versions().changesSince(seen).isEmpty());
  database->notes().remove(second, false);
  database->notes().remove(first);
  EXPECT_EQ(told(database->versions().changesSince(seen)),
            QStringLiteral("%1 gone, %2 stub").arg(second.value(), 0, 16).arg(first.value(), 0, 16));
}

TEST_F(ChangeFeed, TellsThatAStubMadeWayForItsNote) {
  const NoteId id = saved(QStringLiteral("one"));
  Note note;
  ASSERT_TRUE(database->notes().read(id, note));
  database->notes().remove(id);
  const qint64 seen = database->versions().changeSequence();
  database->notes().saveAsGiven(note);
  EXPECT_EQ(told(database->versions().changesSince(seen)),
            QStringLiteral("%1 gone, %2 live").arg(id.value(), 0, 16).arg(note.header.id.value(), 0, 16));
}

TEST_F(ChangeFeed, KnowsNothingOfAChangeThatWasUndone) {
  const NoteId id = saved(QStringLiteral("one"));
  const qint64 seen = database->versions().changeSequence();
  {
    Database::Transaction transaction(*database);
    database->notes().remove(id, false);
    saved(QStringLiteral("two"));
  }
  EXPECT_TRUE(database->versions().changesSince(seen).isEmpty());
}

// A database as the first schema left it: without the record of what was erased.
void makeOld(const QString& path) {
  sqlite3* handle = nullptr;
  ASSERT_EQ(sqlite3_open(path.toUtf8().constData(), &handle), SQLITE_OK);
  EXPECT_EQ(
      sqlite3_exec(handle, "DROP TABLE erased; PRAGMA user_version = 1; PRAGMA wal_checkpoint(TRUNCATE)",
                   nullptr, nullptr, nullptr),
      SQLITE_OK);
  sqlite3_close(handle);
}

TEST_F(ChangeFeed, WorksInADatabaseOfTheFirstSchema) {
  const NoteId id = saved(QStringLiteral("one"));
  database.reset();
  makeOld(path());
  reopen();
  const qint64 seen = database->versions().changeSequence();
  database->notes().remove(id, false);
  EXPECT_EQ(told(database->versions().changesSince(seen)), QStringLiteral("%1 gone").arg(id.value(), 0, 16));
}

TEST_F(ChangeFeed, LeavesAReadOnlyDatabaseOfTheFirstSchemaAsItIs) {
  saved(QStringLiteral("one"));
  database.reset();
  makeOld(path());
  const QByteArray before = contentOf(path());
  QFile::setPermissions(path(), QFile::ReadOwner);
  reopen();
  EXPECT_EQ(database->versions().changesSince(0).size(), 1);
  database.reset();
  EXPECT_EQ(contentOf(path()), before);
}

}  // namespace
}  // namespace lens
