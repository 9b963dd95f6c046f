// A database copied as a whole.
#include <QBuffer>
#include <QSet>
#include <algorithm>

#include "embedded/store/database_copy.h"
#include "embedded/store/database_file.h"
#include "embedded/support/store_test.h"
#include "support/small_files.h"

namespace lens {
namespace {

class Copy : public StoreTest {
 protected:
  QString target() const { return path(QStringLiteral("copy.nsf")); }
};

TEST_F(Copy, HoldsTheSameNotesUnderAReplicaIdOfItsOwn) {
  const NoteId first = saved(QStringLiteral("one")), stub = saved(QStringLiteral("two"));
  database->notes().remove(stub);
  const quint32 object = database->objects().begin();
  database->objects().append(object, "attached");
  database->objects().finish(object);
  copyDatabase(*database, target());
  const auto copy = Database::open(target());
  Note here, there;
  ASSERT_TRUE(database->notes().read(first, here) && copy->notes().read(first, there));
  EXPECT_EQ(here.header.unid, there.header.unid);
  EXPECT_EQ(there.text(u"Subject"), QStringLiteral("one"));
  EXPECT_EQ(copy->notes().state(stub), NoteState::Stub);
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  copy->objects().read(object, bytes);
  EXPECT_EQ(bytes.data(), QByteArray("attached"));
  EXPECT_EQ(copy->info().title, QStringLiteral("Letters"));
  EXPECT_EQ(copy->info().replicaId.size(), 16);
  EXPECT_NE(copy->info().replicaId, database->info().replicaId);
  // They go apart from here.
  copy->notes().remove(first);
  EXPECT_EQ(subjectOf(first), QStringLiteral("one"));
}

TEST_F(Copy, DatabasesMadeAtOnceAreNoReplicas) {
  QSet<QString> ids{database->info().replicaId};
  for (int i = 0; i < 2000; ++i) ids.insert(timeDateHex(newIdTime()));
  EXPECT_EQ(ids.size(), 2001);
  const auto first = Database::create(path(QStringLiteral("1.nsf")), {});
  const auto second = Database::create(path(QStringLiteral("2.nsf")), {});
  EXPECT_NE(first->info().replicaId, second->info().replicaId);
}

TEST_F(Copy, ReplacesNoFileAndLeavesNothingBehind) {
  writeFile(target(), "something else");
  QString description;
  EXPECT_EQ(errorNumber([&] { copyDatabase(*database, target()); }, &description), 58);
  EXPECT_TRUE(description.contains(target()));
  EXPECT_EQ(contentOf(target()), QByteArray("something else"));
  EXPECT_EQ(errorNumber([&] { copyDatabase(*database, path(QStringLiteral("none/x.nsf"))); }),
            err::PathNotFound);
  QFile::remove(target());
  {
    Database::Transaction transaction(*database);
    EXPECT_EQ(errorNumber([&] { copyDatabase(*database, target()); }, &description), enginefault::NotSaved);
    EXPECT_TRUE(description.contains(path()) && description.contains(target())) << description.toStdString();
  }
  database.reset();
  EXPECT_EQ(files(), QStringList(QStringLiteral("letters.nsf")));
}

// Enough to be asked several times.
class LargeCopy : public Copy {
 protected:
  LargeCopy() {
    Database::Transaction all(*database);
    for (int i = 0; i < 1500; ++i) saved(QStringLiteral("Letter %1 %2").arg(i).arg(QString(200, u'x')));
    all.commit();
  }
  void expectNothingBesideTheDatabase() const {
    EXPECT_EQ(files().filter(QStringLiteral("copy")), QStringList());
    EXPECT_EQ(database->notes().noteCount(noteclass::Document), 1500);
  }
};

TEST_F(LargeCopy, TellsHowFarItIs) {
  database->connection().execute("PRAGMA cache_size = 20", enginefault::NotSaved);  // pages
  QVector<qint64> told;
  qint64 all = 0;
  ASSERT_TRUE(copyDatabase(*database, target(), [&](qint64 done, qint64 total) {
    told.push_back(done);
    all = total;
    return true;
  }));
  ASSERT_GT(told.size(), 2);
  EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
  EXPECT_GT(told.last(), 0);
  EXPECT_LE(told.last(), all);
  EXPECT_EQ(Database::open(target())->notes().noteCount(noteclass::Document), 1500);
}

TEST_F(LargeCopy, LeavesNothingWhereverItIsEnded) {
  int questions = 0;
  for (bool finished = false; !finished; ++questions) {
    int left = questions;
    finished = copyDatabase(*database, target(), [&](qint64, qint64) { return left-- > 0; });
    if (!finished) expectNothingBesideTheDatabase();
  }
  EXPECT_GT(questions, 3);
  EXPECT_EQ(Database::open(target())->notes().noteCount(noteclass::Document), 1500);
}

TEST_F(LargeCopy, LeavesNothingOnAFullDisk) {
  const qint64 size = database->size();
  for (const qint64 room : {qint64(0), size / 3, size / 2, size * 3 / 4}) {
    QString told;
    int number = 0;
    {
      const SmallFiles full{rlim_t(room)};
      number = errorNumber([&] { copyDatabase(*database, target()); }, &told);
    }
    EXPECT_NE(number, 0) << room;
    EXPECT_TRUE(told.contains(target())) << told.toStdString();
    expectNothingBesideTheDatabase();
  }
}

}  // namespace
}  // namespace lens
