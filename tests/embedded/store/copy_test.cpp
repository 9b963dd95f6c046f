// A database copied as a whole.
#include <QBuffer>
#include <QSet>

#include "embedded/store/database_copy.h"
#include "embedded/store/database_file.h"
#include "embedded/support/store_test.h"

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

}  // namespace
}  // namespace lens
