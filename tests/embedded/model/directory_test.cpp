#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QElapsedTimer>

#include "embedded/model/support/test_workspace.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

void writeFile(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(bytes);
}

// Paths that a walk gives, with "/" between their parts.
QStringList walk(const Object& directory, int type) {
  QStringList paths;
  for (Object database = directory.call(u"GetFirstDatabase"_s, type).object(); database;
       database = directory.call(u"getNextDatabase"_s).object())
    paths.append(QDir::fromNativeSeparators(database.get(u"FilePath"_s).text()));
  return paths;
}

struct Directory : ::testing::Test {
  Directory() {
    t.workspace->addServer(hub);
    DatabaseInfo info;
    info.title = u"Orders"_s;
    info.replicaId = u"C1257A0000445566"_s;
    info.templateName = u"OrderMaster"_s;
    info.inheritsFrom = u"StdOrders"_s;
    t.workspace->createDatabase({}, u"apps/Orders.NSF"_s, info);
    t.workspace->createDatabase({}, u"orders.ntf"_s, {});
    t.workspace->createDatabase(hub, u"names.nsf"_s, info);
  }
  Object directory(const QString& server = {}) {
    return t.session().call(u"GetDbDirectory"_s, server).object();
  }
  Object first(const Object& directory, const QString& path) {
    for (Object database = directory.call(u"GETFIRSTDATABASE"_s, 1246).object(); database;
         database = directory.call(u"GETNEXTDATABASE"_s).object())
      if (QDir::fromNativeSeparators(database.get(u"FILEPATH"_s).text()) == path) return database;
    return {};
  }
  QString data(const QString& name) const { return t.workspace->dataDirectory() + u'/' + name; }

  TestWorkspace t;
  const QString hub = u"CN=Hub1/O=Acme"_s;
};

}  // namespace

TEST_F(Directory, WalksDatabasesWithOrWithoutTemplatesInOrderOfTheirPaths) {
  EXPECT_EQ(walk(directory(), 1246), QStringList({u"apps/Orders.NSF"_s, u"mail.nsf"_s, u"orders.ntf"_s}));
  EXPECT_EQ(walk(directory(), 1247), QStringList({u"apps/Orders.NSF"_s, u"mail.nsf"_s}));
  EXPECT_EQ(walk(directory(u"hub1/ACME"_s), 1247), QStringList(u"names.nsf"_s));
  EXPECT_EQ(raised([&] { directory().call(u"GETFIRSTDATABASE"_s, 7); }), err::InvalidCall);
}

TEST_F(Directory, ObjectsAreNotOpenAndTellTheirProperties) {
  const Object orders = first(directory(), u"apps/Orders.NSF"_s);
  EXPECT_FALSE(orders.get(u"IsOpen"_s).boolean());
  EXPECT_EQ(orders.get(u"Server"_s).text(), u""_s);
  EXPECT_EQ(orders.get(u"title"_s).text(), u"Orders"_s);
  EXPECT_EQ(orders.get(u"TemplateName"_s).text(), u"StdOrders"_s);
  EXPECT_EQ(orders.get(u"ReplicaId"_s).text(), u"C1257A0000445566"_s);
  EXPECT_GT(raised([&] { orders.get(u"Views"_s); }), 0);
  EXPECT_EQ(first(directory(u"Hub1/Acme"_s), u"names.nsf"_s).get(u"SERVER"_s).text(), hub);
}

TEST_F(Directory, DamagedFilesEndNoListingAndTellNothing) {
  writeFile(data(u"a-junk.nsf"_s), "no database at all");
  writeFile(data(u"b-empty.nsf"_s), {});
  const QString cut = data(u"c-cut.nsf"_s);
  t.workspace->createDatabase({}, u"c-cut.nsf"_s, {}).reset();
  QFile file(cut);
  ASSERT_TRUE(file.resize(3000));
  EXPECT_EQ(walk(directory(), 1247), QStringList({u"a-junk.nsf"_s, u"apps/Orders.NSF"_s, u"b-empty.nsf"_s,
                                                  u"c-cut.nsf"_s, u"mail.nsf"_s}));
  for (const QString& path : {u"a-junk.nsf"_s, u"b-empty.nsf"_s, u"c-cut.nsf"_s})
    for (const QString& member : {u"TITLE"_s, u"templatename"_s, u"ReplicaID"_s})
      EXPECT_EQ(first(directory(), path).get(member).text(), u""_s) << path.toStdString();
}

TEST_F(Directory, AskingForPropertiesLeavesNoFileBehind) {
  QDir apps(data(u"apps"_s));
  const Object orders = first(directory(), u"apps/Orders.NSF"_s);
  orders.get(u"TITLE"_s);
  EXPECT_EQ(apps.entryList(QDir::Files | QDir::Hidden), QStringList(u"Orders.NSF"_s));
}

TEST_F(Directory, AnUnknownServerFailsAtItsFirstUse) {
  const Object nowhere = directory(u"Hub9/Acme"_s);
  EXPECT_TRUE(nowhere);
  EXPECT_EQ(raised([&] { nowhere.call(u"GETFIRSTDATABASE"_s, 1246); }), workspacefault::UnknownServer);
  EXPECT_EQ(raised([&] { nowhere.call(u"OpenDatabaseByReplicaID"_s, u"C1257A0000445566"_s); }),
            workspacefault::UnknownServer);
  EXPECT_TRUE(nowhere.call(u"GETNEXTDATABASE"_s).object().isNothing());
}

TEST_F(Directory, AReplicaIsFoundByItsIdAndAnUnknownIdIsNotOpen) {
  const Object found = directory().call(u"opendatabasebyreplicaid"_s, u"c1257a0000445566"_s).object();
  EXPECT_TRUE(found.get(u"ISOPEN"_s).boolean());
  EXPECT_EQ(found.get(u"FileName"_s).text(), u"Orders.NSF"_s);
  for (const QString& id : {u"C1257A0000999999"_s, u""_s, u"no ID"_s}) {
    const Object none = directory().call(u"OpenDatabaseByReplicaID"_s, id).object();
    EXPECT_FALSE(none.get(u"ISOPEN"_s).boolean());
    EXPECT_EQ(none.get(u"TITLE"_s).text(), u""_s);
  }
}

TEST_F(Directory, AnOpenedDatabaseCanComeFromAWalk) {
  const Object orders = first(directory(), u"apps/Orders.NSF"_s);
  const Object opened =
      t.session()
          .call(u"GETDATABASE"_s, orders.get(u"SERVER"_s).text(), orders.get(u"FILEPATH"_s).text())
          .object();
  EXPECT_TRUE(opened.get(u"ISOPEN"_s).boolean());
}

TEST_F(Directory, ALockedFileRaisesWhenItIsOpenedAndHoldsUpNoListing) {
  const QString path = data(u"apps/Orders.NSF"_s);
  sqlite3* elsewhere = nullptr;
  ASSERT_EQ(sqlite3_open(path.toUtf8().constData(), &elsewhere), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(elsewhere,
                         "PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE; UPDATE info SET value = 'x'"
                         " WHERE key = 'none'",
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
  QElapsedTimer time;
  time.start();
  EXPECT_EQ(walk(directory(), 1247).size(), 2);
  EXPECT_EQ(first(directory(), u"apps/Orders.NSF"_s).get(u"TITLE"_s).text(), u""_s);
  EXPECT_LT(time.elapsed(), 3000);
  EXPECT_GT(raised([&] { t.session().call(u"GETDATABASE"_s, u""_s, u"apps/orders.nsf"_s); }), 0);
  sqlite3_close(elsewhere);
  EXPECT_EQ(first(directory(), u"apps/Orders.NSF"_s).get(u"TITLE"_s).text(), u"Orders"_s);
}
