// Journals that stand beside a database when it is opened: none makes SQLite delete or read other files, and
// none is rolled back into a file that it does not belong to.
#include "embedded/store/rollback_journal.h"

#include <QtEndian>

#include "embedded/support/store_test.h"

namespace lens {
namespace {
using namespace Qt::Literals::StringLiterals;

class RollbackJournal : public StoreTest {
 protected:
  RollbackJournal() {
    for (int i = 0; i < 20; ++i) saved(QString(3000, u'a'));
    database.reset();
    whole = contentOf(path());
  }
  QString journal() const { return path() + u"-journal"_s; }
  static QByteArray number(quint32 value) {
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
  }
  static QByteArray mark() { return QByteArray("\xd9\xd5\x05\xf9\x20\xa1\x63\xd7", 8); }
  // A journal without pages that names another file, as that of a change of several files does.
  static QByteArray naming(const QString& file) {
    const QByteArray name = QFile::encodeName(file);
    quint32 sum = 0;
    for (const char c : name) sum += quint32(int(c));
    QByteArray head = mark() + number(0) + number(1) + number(1) + number(512) + number(8192);
    head.append(512 - head.size(), '\0');
    return head + number(0x40000000 / 8192 + 1) + name + number(quint32(name.size())) + number(sum) + mark();
  }
  void expectRefused(const QByteArray& content) {
    QString why;
    writeFile(journal(), content);
    for (int attempt = 0; attempt < 2; ++attempt) {
      EXPECT_EQ(errorNumber([&] { Database::open(path()); }, &why), enginefault::Damaged);
      EXPECT_TRUE(why.contains(journal())) << why.toStdString();
      EXPECT_EQ(errorNumber([&] { Database::infoOf(path()); }), enginefault::Damaged);
    }
    EXPECT_EQ(contentOf(journal()), content);
  }
  // What a process leaves that dies in the middle of a change without a write-ahead journal.
  void dieInAChange() {
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(path()).constData(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other,
                           "PRAGMA journal_mode = DELETE; PRAGMA cache_size = 1; BEGIN;"
                           "UPDATE note SET items = zeroblob(length(items)), change = change + 100;"
                           "DELETE FROM note WHERE id > 2330",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    const QByteArray half = contentOf(path()), before = contentOf(journal());
    sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(other);
    writeFile(path(), half);
    writeFile(journal(), before);
    ASSERT_GT(before.size(), 512);
  }

  QByteArray whole;
};

TEST_F(RollbackJournal, ThatNamesAnotherFileIsRefusedAndTheOtherFileStays) {
  const QString outside = path(u"outside.txt"_s);
  writeFile(outside, "somebody's letters");
  const QByteArray good = naming(outside);
  expectRefused(good);
  QByteArray wrongSum = good;
  wrongSum[wrongSum.size() - 9] = char(wrongSum.back() ^ 1);
  expectRefused(wrongSum);
  expectRefused(naming(path(u"not there"_s)));
  expectRefused(QByteArray(16, '\0') + mark());
  EXPECT_EQ(contentOf(outside), QByteArray("somebody's letters"));
  EXPECT_EQ(contentOf(path()), whole);
}

TEST_F(RollbackJournal, OfTheFileItselfIsRolledBack) {
  dieInAChange();
  EXPECT_EQ(faultOfRollbackJournal(path(), false), QString());
  database = Database::open(path());
  EXPECT_EQ(database->notes().noteCount(0xFFFF), 20);
  EXPECT_EQ(subjectOf(NoteId(0x8FA)), QString(3000, u'a'));
}

TEST_F(RollbackJournal, OfAnotherStateOfTheFileIsRefused) {
  const QByteArray backup = whole;
  for (int i = 0; i < 3; ++i) {
    reopen();
    saved(QString(9000, u'b'));
    database.reset();
  }
  dieInAChange();
  const QByteArray left = contentOf(journal());
  writeFile(path(), backup);
  expectRefused(left);
  EXPECT_EQ(contentOf(path()), backup);
}

TEST_F(RollbackJournal, OfAnyBytesNeverCrashes) {
  dieInAChange();
  const QByteArray left = contentOf(journal()), half = contentOf(path());
  for (qsizetype at = 0; at < left.size(); at += at < 600 ? 3 : 1999) {
    QByteArray hostile = left;
    hostile[at] = char(~hostile[at]);
    writeFile(journal(), at % 2 == 0 ? hostile : hostile.first(at));
    writeFile(path(), half);
    errorNumber([&] { Database::open(path())->notes().noteCount(0xFFFF); });
  }
}

}  // namespace
}  // namespace lens
