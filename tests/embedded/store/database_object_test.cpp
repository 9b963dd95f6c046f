#include <QBuffer>
#include <QCryptographicHash>

#include "embedded/support/store_test.h"

namespace lens {
namespace {

// Gives a known sequence of bytes without holding it, and checks one that it is given.
class LongDevice : public QIODevice {
 public:
  explicit LongDevice(qint64 length) : length_(length) {}
  bool isSequential() const override { return true; }
  qint64 seen() const { return at_; }
  bool sameSoFar() const { return same_; }

 protected:
  static char byteAt(qint64 place) { return char(place * 31 + (place >> 11)); }
  qint64 readData(char* data, qint64 most) override {
    const qint64 count = qMin(most, length_ - at_);
    for (qint64 i = 0; i < count; ++i) data[i] = byteAt(at_ + i);
    at_ += count;
    return count;
  }
  qint64 writeData(const char* data, qint64 count) override {
    for (qint64 i = 0; i < count; ++i) same_ = same_ && data[i] == byteAt(at_ + i);
    at_ += count;
    return count;
  }

 private:
  qint64 length_, at_ = 0;
  bool same_ = true;
};

class FailingDevice : public LongDevice {
 public:
  using LongDevice::LongDevice;

 protected:
  qint64 readData(char* data, qint64 most) override {
    return seen() > 600000 ? -1 : LongDevice::readData(data, most);
  }
  qint64 writeData(const char* data, qint64 count) override {
    return seen() > 300000 ? -1 : LongDevice::writeData(data, count);
  }
};

class DatabaseObject : public StoreTest {
 protected:
  StoredObject stored(QByteArray content) {
    QBuffer source(&content);
    source.open(QIODevice::ReadOnly);
    return database->objects().add(source);
  }
  QByteArray read(quint32 id) {
    QBuffer target;
    target.open(QIODevice::WriteOnly);
    database->objects().read(id, target);
    return target.data();
  }
  qint64 rows(const char* table) {
    sqlite3_stmt* count = nullptr;
    const QByteArray sql = QByteArray("SELECT count(*) FROM ") + table;
    sqlite3_prepare_v2(database->handle(), sql.constData(), -1, &count, nullptr);
    sqlite3_step(count);
    const qint64 result = sqlite3_column_int64(count, 0);
    sqlite3_finalize(count);
    return result;
  }
  QString target() const { return path(QStringLiteral("out.bin")); }
};

TEST_F(DatabaseObject, BytesComeBackAtEveryChunkBoundary) {
  constexpr int chunk = 256 * 1024;
  for (int size : {0, 1, chunk - 1, chunk, chunk + 1, 2 * chunk}) {
    QByteArray content(size, 'a');
    for (int i = 0; i < size; i += 1000) content[i] = char(i / 1000);
    const auto object = stored(content);
    EXPECT_EQ(object.size, size);
    EXPECT_EQ(database->objects().size(object.id), size);
    reopen();
    EXPECT_EQ(read(object.id), content) << size;
  }
}

TEST_F(DatabaseObject, LargeSourceGoesInAndOutInPieces) {
  constexpr qint64 size = 40 * 1024 * 1024 + 7;
  LongDevice source(size), sink(size);
  ASSERT_TRUE(source.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
  const auto object = database->objects().add(source);
  EXPECT_EQ(object.size, size);
  ASSERT_TRUE(sink.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
  database->objects().read(object.id, sink);
  EXPECT_EQ(sink.seen(), size);
  EXPECT_TRUE(sink.sameSoFar());
  EXPECT_EQ(rows("object_chunk"), 161);
}

TEST_F(DatabaseObject, PiecesOfAnySizeMakeOneObject) {
  const quint32 id = database->objects().begin();
  EXPECT_EQ(database->objects().size(id), -1);
  QByteArray whole;
  for (int size : {1, 300000, 0, 7, 262144, 600000}) {
    const QByteArray piece(size, char('a' + size % 23));
    database->objects().append(id, piece);
    whole += piece;
  }
  EXPECT_EQ(errorNumber([&] { read(id); }), enginefault::Damaged);
  EXPECT_EQ(database->objects().finish(id).size, whole.size());
  EXPECT_EQ(read(id), whole);
  EXPECT_EQ(errorNumber([&] { database->objects().append(id, "more"); }), err::InvalidCall);
}

TEST_F(DatabaseObject, SourceThatFailsLeavesNothing) {
  FailingDevice source(1000000);
  ASSERT_TRUE(source.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
  EXPECT_EQ(errorNumber([&] { database->objects().add(source); }), 57);
  EXPECT_EQ(rows("object"), 0);
  EXPECT_EQ(rows("object_chunk"), 0);
}

TEST_F(DatabaseObject, TargetThatFailsIsTold) {
  const auto object = stored(QByteArray(1000000, 'x'));
  FailingDevice sink(1000000);
  ASSERT_TRUE(sink.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
  QString why;
  EXPECT_EQ(errorNumber([&] { database->objects().read(object.id, sink); }, &why), 57);
  EXPECT_TRUE(why.contains(path())) << why.toStdString();
#ifdef Q_OS_LINUX
  QFile full(QStringLiteral("/dev/full"));
  ASSERT_TRUE(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
  EXPECT_EQ(errorNumber([&] { database->objects().read(object.id, full); }, &why), 57);
  EXPECT_TRUE(why.contains(full.fileName())) << why.toStdString();
#endif
}

TEST_F(DatabaseObject, SourceThatFailsIsToldWithTheDatabase) {
  FailingDevice source(1000000);
  ASSERT_TRUE(source.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
  QString why;
  EXPECT_EQ(errorNumber([&] { database->objects().add(source); }, &why), 57);
  EXPECT_TRUE(why.contains(path())) << why.toStdString();
}

TEST_F(DatabaseObject, ObjectOfAnUndoneTransactionIsGone) {
  quint32 id = 0;
  {
    Database::Transaction transaction(*database);
    id = database->objects().begin();
    database->objects().append(id, QByteArray(300000, 'x'));
  }
  EXPECT_EQ(errorNumber([&] { database->objects().append(id, "more"); }), err::InvalidCall);
  EXPECT_EQ(rows("object"), 0);
  EXPECT_EQ(rows("object_chunk"), 0);
}

TEST_F(DatabaseObject, ExtractionWritesTheFile) {
  const QByteArray content(700000, 'e');
  const auto object = stored(content);
  database->objects().extract(object.id, target());
  EXPECT_EQ(contentOf(target()), content);
  const auto other = stored("other");
  database->objects().extract(other.id, target());
  EXPECT_EQ(contentOf(target()), QByteArray("other"));
}

TEST_F(DatabaseObject, DamagedObjectLeavesNoFile) {
  const auto object = stored(QByteArray(700000, 'e'));
  for (const char* fault :
       {"UPDATE object_chunk SET bytes = replace(bytes, x'65', x'66') WHERE number = 2",
        "UPDATE object SET checksum = x'00'", "UPDATE object SET size = size + 1",
        "UPDATE object SET size = 5", "UPDATE object_chunk SET bytes = substr(bytes, 2) WHERE number = 1",
        "DELETE FROM object_chunk WHERE number = 1"}) {
    ASSERT_EQ(sqlite3_exec(database->handle(), "SAVEPOINT before", nullptr, nullptr, nullptr), 0);
    damage(fault);
    const QStringList before = files();
    QString description;
    EXPECT_EQ(errorNumber([&] { database->objects().extract(object.id, target()); }, &description),
              enginefault::Damaged)
        << fault;
    EXPECT_TRUE(description.contains(path())) << fault;
    EXPECT_EQ(files(), before) << fault;
    ASSERT_EQ(
        sqlite3_exec(database->handle(), "ROLLBACK TO before; RELEASE before", nullptr, nullptr, nullptr), 0);
  }
  database->objects().extract(object.id, target());
}

// As earlier programs stored them.
TEST_F(DatabaseObject, ChecksumOfShaIsHeld) {
  const QByteArray content(700000, 'e');
  const auto object = stored(content);
  const QByteArray sha = QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex();
  damage(("UPDATE object SET checksum = x'" + sha + "'").constData());
  database->objects().extract(object.id, target());
  EXPECT_EQ(contentOf(target()), content);
  damage("UPDATE object_chunk SET bytes = replace(bytes, x'65', x'66') WHERE number = 2");
  EXPECT_EQ(errorNumber([&] { database->objects().extract(object.id, target()); }), enginefault::Damaged);
}

TEST_F(DatabaseObject, FailedExtractionKeepsTheFileThatWasThere) {
  const auto object = stored(QByteArray(700000, 'e'));
  writeFile(target(), "before");
  damage("UPDATE object SET checksum = x'00'");
  EXPECT_EQ(errorNumber([&] { database->objects().extract(object.id, target()); }), enginefault::Damaged);
  EXPECT_EQ(contentOf(target()), QByteArray("before"));
}

TEST_F(DatabaseObject, ExtractionNeedsADirectory) {
  const auto object = stored("x");
  EXPECT_EQ(errorNumber([&] { database->objects().extract(object.id, path(QStringLiteral("no/such"))); }),
            err::PathNotFound);
}

TEST_F(DatabaseObject, RemovedObjectIsGoneAndItsIdIsNotUsedAgain) {
  const auto object = stored(QByteArray(700000, 'e'));
  database->objects().remove(object.id);
  EXPECT_EQ(database->objects().size(object.id), -1);
  EXPECT_EQ(errorNumber([&] { read(object.id); }), enginefault::Damaged);
  EXPECT_EQ(rows("object_chunk"), 0);
  reopen();
  EXPECT_GT(stored("x").id, object.id);
}

}  // namespace
}  // namespace lens
