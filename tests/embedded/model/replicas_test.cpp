#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QDir>

#include "embedded/model/support/test_workspace.h"
#include "embedded/replication/replication.h"

#ifdef Q_OS_UNIX
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Listener : ClientListener {
  QStringList told;
  void refreshView() override {}
  void documentClosed() override {}
  void databaseClosed() override { told.append(u"closed"_s); }
  void databasesChanged() override { told.append(u"changed"_s); }
};

struct ReplicaMembers : ::testing::Test {
  ReplicaMembers() {
    t.workspace->addServer(hub);
    id = t.add({{u"Subject"_s, textValue(u"One")}});
  }
  Object replica() {
    return t.session().call(u"GETDATABASE"_s, u"Hub1/Acme"_s, u"copies/mail.nsf"_s).object();
  }
  void edit(Database& store, const QString& text) {
    Note note;
    ASSERT_TRUE(store.notes().read(store.notes().list(noteclass::Document).first().id, note));
    note.find(u"Subject")->value = textValue(text);
    store.notes().save(note);
  }
  QString subject(const Object& database) {
    return database.call(u"GETDOCUMENTBYUNID"_s, t.document(id).get(u"UNIVERSALID"_s).text())
        .object()
        .call(u"GETITEMVALUE"_s, u"Subject"_s)
        .at(0)
        .text();
  }
  QString mailFile() const { return t.workspace->dataDirectory() + u"/mail.nsf"_s; }

  TestWorkspace t;
  const QString hub = u"CN=Hub1/O=Acme"_s;
  NoteId id;
};

}  // namespace

TEST_F(ReplicaMembers, AReplicaIsMadeWithItsFoldersAndHasTheSameId) {
  const Object made = t.mail().call(u"CreateReplica"_s, u"HUB1/acme"_s, u"copies\\mail.nsf"_s).object();
  EXPECT_TRUE(made.get(u"ISOPEN"_s).boolean());
  EXPECT_EQ(made.get(u"SERVER"_s).text(), hub);
  EXPECT_EQ(made.get(u"REPLICAID"_s).text(), u"C1257A0000112233"_s);
  EXPECT_EQ(made.get(u"TEMPLATENAME"_s).text(), u"StdMail"_s);
  EXPECT_EQ(subject(made), u"One"_s);
}

TEST_F(ReplicaMembers, AnExistingFileIsNeverOverwritten) {
  t.workspace->createDatabase(hub, u"mail.nsf"_s, {});
  EXPECT_EQ(raised([&] { t.mail().call(u"CREATEREPLICA"_s, hub, u"mail.nsf"_s); }),
            workspacefault::FileExists);
  EXPECT_EQ(raised([&] { t.mail().call(u"CREATEREPLICA"_s, u""_s, u"mail.nsf"_s); }),
            workspacefault::FileExists);
  EXPECT_EQ(t.workspace->database(hub, u"mail.nsf"_s)->notes().noteCount(0x7FFF), 0);
  EXPECT_EQ(raised([&] { t.mail().call(u"CREATEREPLICA"_s, u"Hub9/Acme"_s, u"x.nsf"_s); }),
            workspacefault::UnknownServer);
}

TEST_F(ReplicaMembers, ANoteThatCannotGoAlongIsToldBehindTheFinishedReplica) {
  const NoteId damaged = t.add({{u"A"_s, textValue(u"x")}});
  const QByteArray sql =
      "UPDATE note SET items = x'00112233' WHERE id = " + QByteArray::number(damaged.value());
  ASSERT_EQ(sqlite3_exec(t.store->handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  Listener listener;
  t.workspace->client().setListener(&listener);
  EXPECT_EQ(raised([&] { t.mail().call(u"CreateReplica"_s, hub, u"copies/mail.nsf"_s); }),
            replicationfault::NotesLeftOut);
  t.workspace->client().setListener(nullptr);
  EXPECT_EQ(listener.told, QStringList(u"changed"_s));
  EXPECT_EQ(subject(replica()), u"One"_s);
}

TEST_F(ReplicaMembers, AReplicaThatCannotBeMadeLeavesNoFolders) {
  const QString longName = QString(300, u'n') + u".nsf"_s;
  ASSERT_TRUE(QDir().mkpath(t.workspace->dataDirectory() + u"/there"_s));
  EXPECT_GT(raised([&] { t.mail().call(u"CREATEREPLICA"_s, u""_s, u"there/new/er/"_s + longName); }), 0);
  EXPECT_TRUE(QDir(t.workspace->dataDirectory() + u"/there"_s).isEmpty());
  EXPECT_TRUE(QFileInfo(t.workspace->dataDirectory() + u"/there"_s).isDir());
  t.mail().call(u"CREATEREPLICA"_s, u""_s, u"there/new/er/mail.nsf"_s);
  EXPECT_TRUE(QFile::exists(t.workspace->dataDirectory() + u"/there/new/er/mail.nsf"_s));
}

TEST_F(ReplicaMembers, ReplicationGoesBothWaysWithAllReplicasOfTheServer) {
  t.mail().call(u"CREATEREPLICA"_s, hub, u"copies/mail.nsf"_s);
  t.mail().call(u"CREATEREPLICA"_s, hub, u"second.nsf"_s);
  edit(*t.workspace->database(hub, u"second.nsf"_s), u"by the second"_s);
  QVector<DatabasePlace> told;
  t.workspace->setChangeListener([&](const DatabasePlace& place) { told.push_back(place); });
  EXPECT_TRUE(t.mail().call(u"Replicate"_s, u"Hub1/Acme"_s).boolean());
  EXPECT_EQ(subject(t.mail()), u"by the second"_s);
  EXPECT_EQ(told.size(), 3);
  t.mail().call(u"REPLICATE"_s, hub);
  EXPECT_EQ(subject(replica()), u"by the second"_s);
}

TEST_F(ReplicaMembers, WithoutAnotherReplicaThereIsNothingToReplicateWith) {
  EXPECT_EQ(raised([&] { t.mail().call(u"REPLICATE"_s, u""_s); }), replicationfault::NoReplica);
  EXPECT_EQ(raised([&] { t.mail().call(u"REPLICATE"_s, hub); }), replicationfault::NoReplica);
  EXPECT_EQ(raised([&] { t.mail().call(u"REPLICATE"_s, u"Hub9/Acme"_s); }), workspacefault::UnknownServer);
}

TEST_F(ReplicaMembers, ADamagedNoteIsToldOnceTheOthersHaveArrived) {
  t.mail().call(u"CREATEREPLICA"_s, hub, u"copies/mail.nsf"_s);
  const NoteId damaged = t.add({{u"A"_s, textValue(u"x")}});
  const NoteId sound = t.add({{u"A"_s, textValue(u"y")}});
  const QByteArray sql =
      "UPDATE note SET items = x'00112233' WHERE id = " + QByteArray::number(damaged.value());
  ASSERT_EQ(sqlite3_exec(t.store->handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(raised([&] { t.mail().call(u"REPLICATE"_s, hub); }), replicationfault::NotesLeftOut);
  const QString unid = t.document(sound).get(u"UNIVERSALID"_s).text();
  EXPECT_FALSE(replica().call(u"GETDOCUMENTBYUNID"_s, unid).object().isNothing());
}

TEST_F(ReplicaMembers, RemovingDeletesTheFileWithItsJournalsAndEndsItsObjects) {
  Listener listener;
  t.workspace->client().setListener(&listener);
  t.workspace->client().showDatabase({{}, u"mail.nsf"_s});
  const Object mail = t.mail(), other = t.mail();
  mail.call(u"REMOVE"_s);
  for (const char* suffix : {"", "-wal", "-shm", "-journal"})
    EXPECT_FALSE(QFile::exists(mailFile() + QLatin1String(suffix))) << suffix;
  for (const Object& object : {mail, other}) {
    EXPECT_FALSE(object.get(u"ISOPEN"_s).boolean());
    for (const QString& member : {u"Title"_s, u"Size"_s, u"Views"_s, u"Remove"_s})
      EXPECT_GT(raised([&] { object.get(member); }), 0) << member.toStdString();
    EXPECT_GT(raised([&] { object.call(u"GETDOCUMENTBYID"_s, t.hex(id)); }), 0);
  }
  EXPECT_EQ(t.workspace->client().database(), nullptr);
  EXPECT_EQ(listener.told, QStringList({u"closed"_s, u"changed"_s}));
  EXPECT_GT(raised([&] { t.mail(); }), 0);
  Note note = noteOf({});
  EXPECT_GT(raised([&] { t.store->notes().save(note); }), 0);
  EXPECT_GT(raised([&] { Database::Transaction change(*t.store); }), 0);
  t.workspace->client().setListener(nullptr);
}

TEST_F(ReplicaMembers, ANewDatabaseCanTakeThePlaceOfARemovedOne) {
  const Object mail = t.mail();
  mail.call(u"Remove"_s);
  t.workspace->createDatabase({}, u"mail.nsf"_s, {});
  EXPECT_TRUE(t.mail().get(u"ISOPEN"_s).boolean());
  EXPECT_FALSE(mail.get(u"ISOPEN"_s).boolean());
}

TEST_F(ReplicaMembers, AWriteProtectedDatabaseIsNotRemoved) {
  t.store.reset();
  ASSERT_TRUE(QFile::setPermissions(mailFile(), QFile::ReadOwner));
  EXPECT_EQ(raised([&] { t.mail().call(u"REMOVE"_s); }), err::PermissionDenied);
  EXPECT_TRUE(QFile::exists(mailFile()));
}

TEST_F(ReplicaMembers, ADatabaseInTheMiddleOfAChangeIsNotRemoved) {
  Database::Transaction change(*t.store);
  EXPECT_EQ(raised([&] { t.mail().call(u"REMOVE"_s); }), err::PermissionDenied);
}

TEST_F(ReplicaMembers, ADatabaseThatIsHeldElsewhereIsNotRemoved) {
  sqlite3* elsewhere = nullptr;
  ASSERT_EQ(sqlite3_open(mailFile().toUtf8().constData(), &elsewhere), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(elsewhere, "SELECT count(*) FROM note", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(raised([&] { t.mail().call(u"REMOVE"_s); }), err::PermissionDenied);
  EXPECT_EQ(t.document(id).call(u"GETITEMVALUE"_s, u"Subject"_s).at(0).text(), u"One"_s);
  EXPECT_GT(t.add({{u"A"_s, textValue(u"x")}}), id);
  sqlite3_close(elsewhere);
  t.mail().call(u"REMOVE"_s);
  EXPECT_FALSE(QFile::exists(mailFile()));
}

TEST_F(ReplicaMembers, AViewWorksOnBehindARefusedRemoval) {
  t.addView(u"All"_s, sourceFormulaValue(u"SELECT @All"_s));
  const Object view = t.mail().call(u"GETVIEW"_s, u"All"_s).object();
  const double before = view.get(u"ENTRYCOUNT"_s).number();
  sqlite3* elsewhere = nullptr;
  ASSERT_EQ(sqlite3_open(mailFile().toUtf8().constData(), &elsewhere), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(elsewhere, "SELECT count(*) FROM note", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(raised([&] { t.mail().call(u"REMOVE"_s); }), err::PermissionDenied);
  sqlite3_close(elsewhere);
  t.add({{u"A"_s, textValue(u"x")}});
  EXPECT_EQ(view.get(u"ENTRYCOUNT"_s).number(), before + 1);
  EXPECT_FALSE(view.call(u"GETFIRSTDOCUMENT"_s).object().isNothing());
  t.mail().call(u"REMOVE"_s);
  EXPECT_FALSE(QFile::exists(mailFile()));
  EXPECT_NE(raised([&] { view.get(u"ENTRYCOUNT"_s); }), 0);
}

#ifdef Q_OS_UNIX
TEST_F(ReplicaMembers, ADatabaseOfAnotherProcessIsNotRemoved) {
  t.store.reset();
  int ready[2], done[2];
  ASSERT_EQ(pipe(ready), 0);
  ASSERT_EQ(pipe(done), 0);
  const pid_t child = fork();
  if (child == 0) {
    close(done[1]);
    char byte = 'r';
    const auto held = Database::open(mailFile());
    if (write(ready[1], &byte, 1) != 1) _exit(1);
    _exit(read(done[0], &byte, 1) == 0 ? 0 : 1);
  }
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  EXPECT_EQ(raised([&] { t.mail().call(u"REMOVE"_s); }), err::PermissionDenied);
  EXPECT_EQ(subject(t.mail()), u"One"_s);
  for (const int end : {done[0], done[1], ready[0], ready[1]}) close(end);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}
#endif
