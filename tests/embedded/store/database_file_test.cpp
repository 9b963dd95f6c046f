#include <QCryptographicHash>
#include <QtEndian>

#include "embedded/store/database_file.h"
#include "embedded/store/own_tables.h"
#include "embedded/support/store_test.h"

namespace lens {
namespace {

class DatabaseFile : public StoreTest {
 protected:
  // Opening the file must fail so, and change neither it nor its directory.
  void expectRefused(const QString& file, int number) {
    const QByteArray before = contentOf(file);
    const QStringList filesBefore = files();
    QString description;
    EXPECT_EQ(errorNumber([&] { Database::open(file); }, &description), number);
    EXPECT_TRUE(description.contains(file)) << description.toStdString();
    EXPECT_EQ(contentOf(file), before);
    EXPECT_EQ(files(), filesBefore);
  }
  // The closed database's bytes.
  QByteArray closedContent() {
    database.reset();
    return contentOf(path());
  }
};

TEST_F(DatabaseFile, ClosedDatabaseIsOneFile) {
  saved(QStringLiteral("a"));
  database.reset();
  EXPECT_EQ(files(), QStringList{QStringLiteral("letters.nsf")});
}

TEST_F(DatabaseFile, ForeignFilesAreRefusedAndNeverTouched) {
  const QString foreign = path(QStringLiteral("foreign.nsf"));
  for (const QByteArray& content :
       QVector<QByteArray>{QByteArray(), QByteArray("short"), QByteArray(5000, 'x'),
                           QByteArray("SQLite format 3\0", 16) + QByteArray(4080, '\0')}) {
    writeFile(foreign, content);
    expectRefused(foreign, enginefault::NotADatabase);
    EXPECT_FALSE(Database::looksLikeDatabase(foreign));
  }
}

TEST_F(DatabaseFile, DatabaseOfAnotherProgramIsRefusedAndNeverTouched) {
  const QString foreign = path(QStringLiteral("foreign.nsf"));
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(foreign.toUtf8().constData(), &other), SQLITE_OK);
  ASSERT_EQ(
      sqlite3_exec(other, "PRAGMA journal_mode = WAL; CREATE TABLE note (id);", nullptr, nullptr, nullptr),
      0);
  sqlite3_close(other);
  expectRefused(foreign, enginefault::NotADatabase);
}

TEST_F(DatabaseFile, NewerSchemaIsRefusedAndNeverTouched) {
  QByteArray content = closedContent();
  qToBigEndian<quint32>(quint32(kArrivingSchema) + 1, content.data() + 60);
  writeFile(path(), content);
  expectRefused(path(), enginefault::NewerSchema);
  EXPECT_TRUE(Database::looksLikeDatabase(path()));
}

TEST_F(DatabaseFile, MissingFileAndDirectoryAreRefused) {
  expectRefused(path(QStringLiteral("none.nsf")), err::FileNotFound);
  expectRefused(directory.path(), enginefault::NotADatabase);
  EXPECT_FALSE(Database::looksLikeDatabase(path(QStringLiteral("none.nsf"))));
  EXPECT_FALSE(Database::looksLikeDatabase(directory.path()));
}

TEST_F(DatabaseFile, ExistingFileIsNotReplaced) {
  const QString file = path(QStringLiteral("text.nsf"));
  writeFile(file, "text");
  EXPECT_EQ(errorNumber([&] { Database::create(file, {}); }), 58);
  EXPECT_EQ(contentOf(file), QByteArray("text"));
  EXPECT_EQ(errorNumber([&] { Database::create(path(), {}); }), 58);
}

TEST_F(DatabaseFile, CreationNeedsADirectoryAndLeavesNothing) {
  EXPECT_EQ(errorNumber([&] { Database::create(path(QStringLiteral("no/such.nsf")), {}); }),
            err::PathNotFound);
  writeFile(path(QStringLiteral("late.nsf.new")), "left by a crash");
  Database::create(path(QStringLiteral("late.nsf")), {});
  EXPECT_FALSE(QFile::exists(path(QStringLiteral("late.nsf.new"))));
}

TEST_F(DatabaseFile, TruncatedDatabaseIsDamagedAtEveryPage) {
  for (int i = 0; i < 40; ++i) saved(QString(400, QChar(u'x')));
  const QByteArray whole = closedContent();
  for (qsizetype size = 100; size < whole.size(); size += 4096) {
    writeFile(path(), whole.first(size));
    QString description;
    const int number = errorNumber(
        [&] {
          const auto cut = Database::open(path());
          Note note;
          for (quint32 id = 0x8FA; id < 0x8FA + 160; id += 4)
            if (!cut->notes().read(NoteId(id), note)) throw RuntimeError(enginefault::Damaged, path());
        },
        &description);
    EXPECT_EQ(number, enginefault::Damaged) << size;
    EXPECT_TRUE(description.contains(path()));
  }
}

TEST_F(DatabaseFile, FlippedBytesNeverCrash) {
  for (int i = 0; i < 10; ++i) saved(QString(400, QChar(u'x')));
  const QByteArray whole = closedContent();
  for (qsizetype place = 16; place < whole.size(); place += 997) {
    QByteArray hostile = whole;
    hostile[place] = char(~hostile[place]);
    writeFile(path(), hostile);
    errorNumber([&] {
      const auto flipped = Database::open(path());
      flipped->notes().scan(0xFFFF, [](const Note&) { return true; });
      flipped->notes().state(NoteId(0x8FA));
      Note note = noteWith(QStringLiteral("new"));
      flipped->notes().save(note);
      flipped->notes().remove(NoteId(0x8FE));
      flipped->info();
    });
    for (const char* suffix : {"-wal", "-shm"}) QFile::remove(path() + QLatin1String(suffix));
  }
}

TEST_F(DatabaseFile, MissingTableIsDamage) {
  damage("DROP TABLE note");
  database.reset();
  EXPECT_EQ(errorNumber([&] { Database::open(path()); }), enginefault::Damaged);
}

TEST_F(DatabaseFile, WriteProtectedFileIsReadAndRefusesChanges) {
  const NoteId id = saved(QStringLiteral("a"));
  const QByteArray before = closedContent();
  ASSERT_TRUE(QFile::setPermissions(path(), QFile::ReadOwner | QFile::ReadUser));
  database = Database::open(path());
  EXPECT_EQ(subjectOf(id), QStringLiteral("a"));
  Note note = noteWith(QStringLiteral("b"));
  QString description;
  EXPECT_EQ(errorNumber([&] { database->notes().save(note); }, &description), enginefault::NotSaved);
  EXPECT_TRUE(description.contains(path()));
  EXPECT_EQ(errorNumber([&] { database->notes().remove(id); }), enginefault::NotSaved);
  EXPECT_EQ(errorNumber([&] { database->setInfo({}); }), enginefault::NotSaved);
  EXPECT_EQ(closedContent(), before);
  EXPECT_EQ(files(), QStringList{QStringLiteral("letters.nsf")});
}

TEST_F(DatabaseFile, WriteProtectedFileShowsWhatACrashLeftInItsJournal) {
  const NoteId id = saved(QStringLiteral("late"));
  const QString copy = path(QStringLiteral("odd #1%20?.nsf"));
  ASSERT_TRUE(QFile::copy(path(), copy));
  ASSERT_TRUE(QFile::copy(path() + QStringLiteral("-wal"), copy + QStringLiteral("-wal")));
  ASSERT_TRUE(QFile::setPermissions(copy, QFile::ReadOwner | QFile::ReadUser));
  database = Database::open(copy);
  EXPECT_EQ(subjectOf(id), QStringLiteral("late"));
}

TEST_F(DatabaseFile, WriteProtectedFileOfAnyNameIsRead) {
  const NoteId id = saved(QStringLiteral("a"));
  database.reset();
  const QString odd = path(QStringLiteral(u"ödd #1%20?.nsf"));
  ASSERT_TRUE(QFile::rename(path(), odd));
  ASSERT_TRUE(QFile::setPermissions(odd, QFile::ReadOwner | QFile::ReadUser));
  database = Database::open(odd);
  EXPECT_EQ(subjectOf(id), QStringLiteral("a"));
}

TEST_F(DatabaseFile, OneThreadSharesWhatIsOpen) {
  EXPECT_EQ(Database::open(path()), database);
  EXPECT_TRUE(Database::looksLikeDatabase(path()));
  const auto shared = Database::open(directory.path() + QStringLiteral("/./letters.nsf"));
  EXPECT_EQ(shared, database);
}

TEST_F(DatabaseFile, FileMadeAnewIsNotTheOneThatIsStillOpen) {
  saved(QStringLiteral("old"));
  ASSERT_TRUE(QFile::remove(path()));
  for (const char* suffix : {"-wal", "-shm"}) QFile::remove(path() + QLatin1String(suffix));
  const auto fresh = Database::create(path(), {});
  EXPECT_NE(fresh, database);
  EXPECT_EQ(fresh->notes().noteCount(0xFFFF), 0);
  EXPECT_EQ(Database::open(path()), fresh);
  database.reset();
  EXPECT_EQ(Database::open(path()), fresh);
}

TEST_F(DatabaseFile, LockedDatabaseRefusesTheSaveAndLivesOn) {
  sqlite3_busy_timeout(database->handle(), 0);
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(path().toUtf8().constData(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  Note note = noteWith(QStringLiteral("a"));
  EXPECT_EQ(errorNumber([&] { database->notes().save(note); }), enginefault::NotSaved);
  EXPECT_EQ(note.header.id, NoteId());
  sqlite3_close(other);
  database->notes().save(note);
  EXPECT_EQ(database->notes().noteCount(0xFFFF), 1);
}

TEST_F(DatabaseFile, FullDiskUndoesTheTransactionAndSaysSo) {
  Note kept = noteWith(QStringLiteral("kept"));
  database->notes().save(kept);
  sqlite3_exec(database->handle(), "PRAGMA max_page_count = 40", nullptr, nullptr, nullptr);
  {
    Database::Transaction transaction(*database);
    Note small = noteWith(QStringLiteral("small"));
    database->notes().save(small);
    Note large = noteWith(QString(1000000, QChar(u'x')));
    QString description;
    EXPECT_EQ(errorNumber([&] { database->notes().save(large); }, &description), enginefault::NotSaved);
    EXPECT_TRUE(description.contains(u"full"));
  }
  EXPECT_EQ(database->notes().noteCount(0xFFFF), 1);
  database->notes().save(kept);
  EXPECT_EQ(kept.header.sequence, 2u);
}

}  // namespace
}  // namespace lens
