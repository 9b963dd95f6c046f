#include "embedded/workspace/workspace.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "embedded/model/support/test_workspace.h"
#include "support/counting_listener.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

Regional german() {
  return Regional(QLocale(QLocale::German, QLocale::Germany));
}

QString faultOf(const QString& directory) {
  try {
    Workspace::open(directory, german());
  } catch (const RuntimeError& error) {
    return error.description();
  }
  return {};
}

void write(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(bytes);
}

QByteArray contentOf(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  return file.readAll();
}

}  // namespace

TEST(Workspace, FirstOpeningMakesSettingsAndDataDirectory) {
  TestWorkspace t;
  EXPECT_TRUE(QFile::exists(t.directory() + u"/notes.ini"_s));
  EXPECT_EQ(t.workspace->dataDirectory(), t.directory() + u"/data"_s);
  EXPECT_EQ(t.workspace->programDirectory(), t.directory());
  EXPECT_EQ(t.workspace->userName(), u"CN=Karin Meier/O=Acme"_s);
}

TEST(Workspace, AFileInItsPlaceIsNamedInTheError) {
  QTemporaryDir root;
  const QString path = root.filePath(u"ws"_s);
  write(path, "x");
  EXPECT_TRUE(faultOf(path).startsWith(path));
  EXPECT_TRUE(faultOf(path).contains(u"not a directory"_s));
}

TEST(Workspace, AServerWhoseSettingsCannotBeReadIsLeftOutAndTold) {
  TestWorkspace t;
  const QString servers = t.directory() + u"/servers/"_s;
  for (const QString& name : {u"Good"_s, u"Junk"_s, u"Large"_s, u"Pipe"_s, u"Folder"_s, u"Device"_s})
    QDir().mkpath(servers + name);
  write(servers + u"Good/server.ini"_s, "[Server]\nName=CN=Good/O=Acme\n");
  write(servers + u"Junk/server.ini"_s, QByteArray("\xff\xfe\x00\x80", 4));
  write(servers + u"Large/server.ini"_s, QByteArray(3 << 20, 'x'));
  ASSERT_EQ(mkfifo(QFile::encodeName(servers + u"Pipe/server.ini"_s).constData(), 0600), 0);
  QDir().mkpath(servers + u"Folder/server.ini"_s);
  ASSERT_TRUE(QFile::link(u"/dev/zero"_s, servers + u"Device/server.ini"_s));
  const auto opened = Workspace::open(t.directory(), german());
  EXPECT_TRUE(opened->serverNames().contains(u"CN=Good/O=Acme"_s));
  for (const QString& name : {u"Junk"_s, u"Large"_s, u"Pipe"_s, u"Folder"_s, u"Device"_s}) {
    EXPECT_FALSE(opened->serverNames().contains(u"CN="_s + name)) << name.toStdString();
    EXPECT_EQ(opened->serverFaults().filter(servers + name + u"/server.ini: "_s).size(), 1)
        << opened->serverFaults().join(u'|').toStdString();
  }
  EXPECT_EQ(opened->serverFaults().size(), 5);
  EXPECT_TRUE(opened->databases(QString()).contains(u"mail.nsf"_s));
}

// Whatever stands where a file should: a line that names it, and no waiting for ever.
TEST(Workspace, SettingsThatAreNoPlainFileAreNamedInTheError) {
  for (const QString& name : {u"notes.ini"_s, u"notes.ini.lock"_s})
    for (const char* kind : {"pipe", "device", "folder"}) {
      SCOPED_TRACE(qPrintable(name + u' ' + QLatin1String(kind)));
      QTemporaryDir root;
      const QString path = root.filePath(u"ws"_s), file = path + u'/' + name;
      QDir().mkpath(path);
      const bool made = *kind == 'p'   ? mkfifo(QFile::encodeName(file).constData(), 0600) == 0
                        : *kind == 'd' ? QFile::link(u"/dev/zero"_s, file)
                                       : QDir().mkdir(file);
      ASSERT_TRUE(made);
      const QString fault = faultOf(path);
      EXPECT_TRUE(fault.contains(path + u"/notes.ini"_s)) << fault.toStdString();
    }
}

TEST(Workspace, MissingParentDirectoryIsNamedInTheError) {
  const QString path = u"/nowhere-at-all/ws"_s;
  EXPECT_TRUE(faultOf(path).startsWith(path));
  EXPECT_FALSE(QFile::exists(u"/nowhere-at-all"_s));
}

TEST(Workspace, SettingsThatAreNoTextAreRefused) {
  QTemporaryDir root;
  write(root.filePath(u"notes.ini"_s), "[Notes]\nUserName=\xff\xfe\n");
  EXPECT_TRUE(faultOf(root.path()).contains(u"notes.ini"_s));
}

TEST(Workspace, WritingAnEntryKeepsForeignLines) {
  QTemporaryDir root;
  write(root.filePath(u"notes.ini"_s),
        "; mine\r\n[Other]\r\nUserName=no\r\n[notes]\r\nusername=CN=A/O=B\r\nX=1\r\n");
  const auto workspace = Workspace::open(root.path(), german());
  EXPECT_EQ(workspace->userName(), u"CN=A/O=B"_s);
  workspace->setIniValue(u"x"_s, u"2"_s);
  workspace->setIniValue(u"Y"_s, u"3\n4"_s);
  EXPECT_EQ(contentOf(root.filePath(u"notes.ini"_s)),
            "; mine\n[Other]\nUserName=no\n[notes]\nusername=CN=A/O=B\nx=2\nY=3 4\n");
}

TEST(Workspace, TwoThatAreOpenKeepEachOthersEntries) {
  QTemporaryDir root;
  const auto first = Workspace::open(root.path(), german()), second = Workspace::open(root.path(), german());
  first->setIniValue(u"$A"_s, u"1"_s);
  second->setIniValue(u"$B"_s, u"2"_s);
  EXPECT_EQ(second->iniValue(u"$A"), u"1"_s);
  first->setIniValue(u"$C"_s, u"3"_s);
  const auto third = Workspace::open(root.path(), german());
  for (const auto& [name, value] : {std::pair(u"$A"_s, u"1"_s), {u"$B"_s, u"2"_s}, {u"$C"_s, u"3"_s}})
    EXPECT_EQ(third->iniValue(name), value) << name.toStdString();
}

TEST(Workspace, TwoProcessesKeepEachOthersEntries) {
  QTemporaryDir root;
  Workspace::open(root.path(), german());
  constexpr int kEntries = 40;
  QVector<pid_t> children;
  for (int process = 0; process < 2; ++process) {
    children.push_back(fork());
    if (children.back() != 0) continue;
    try {
      const auto workspace = Workspace::open(root.path(), german());
      for (int i = 0; i < kEntries; ++i)
        workspace->setIniValue(u"$%1_%2"_s.arg(process).arg(i), QString::number(i));
    } catch (const RuntimeError&) {
      _exit(1);
    }
    _exit(0);
  }
  for (const pid_t child : std::as_const(children)) {
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  const auto workspace = Workspace::open(root.path(), german());
  for (int process = 0; process < 2; ++process)
    for (int i = 0; i < kEntries; ++i)
      EXPECT_EQ(workspace->iniValue(u"$%1_%2"_s.arg(process).arg(i)), QString::number(i)) << process;
  EXPECT_FALSE(QFile::exists(root.filePath(u"notes.ini.lock"_s)));
}

TEST(Workspace, AnEntryThatCannotBeWrittenIsNotThereEither) {
  QTemporaryDir root;
  const auto workspace = Workspace::open(root.path(), german());
  const QByteArray before("[Notes]\nUserName=\xff\xfe\n");
  write(root.filePath(u"notes.ini"_s), before);
  QString why;
  try {
    workspace->setIniValue(u"$A"_s, u"1"_s);
  } catch (const RuntimeError& error) {
    why = error.description();
    EXPECT_EQ(error.number(), err::PathFileAccess);
  }
  EXPECT_TRUE(why.contains(u"notes.ini"_s));
  EXPECT_EQ(workspace->iniValue(u"$A"), QString());
  EXPECT_EQ(contentOf(root.filePath(u"notes.ini"_s)), before);
}

TEST(Workspace, TellsTheClientOfEveryNewDatabase) {
  CountingListener listener;
  TestWorkspace t;
  t.workspace->client().setListener(&listener);
  t.workspace->createDatabase({}, u"a.nsf"_s, {});
  EXPECT_EQ(listener.told, 1);
  t.workspace->createDatabase({}, u"a.nsf"_s, {}, true);
  EXPECT_EQ(listener.told, 2);
  t.workspace->copyDatabase({{}, u"a.nsf"_s}, {{}, u"b.nsf"_s});
  EXPECT_EQ(listener.told, 3);
  EXPECT_GT(raised([&] { t.workspace->createDatabase({}, u"a.nsf"_s, {}); }), 0);
  EXPECT_EQ(listener.told, 3);
  t.workspace->client().setListener(nullptr);
}

TEST(Workspace, AFailureLeavesNoFolders) {
  TestWorkspace t;
  const QString path = u"new/er/"_s + QString(300, u'n') + u".nsf"_s;
  EXPECT_GT(raised([&] { t.workspace->createDatabase({}, path, {}); }), 0);
  EXPECT_FALSE(QFile::exists(t.workspace->dataDirectory() + u"/new"_s));
  EXPECT_GT(raised([&] { t.workspace->copyDatabase({{}, u"mail.nsf"_s}, {{}, path}); }), 0);
  EXPECT_FALSE(QFile::exists(t.workspace->dataDirectory() + u"/new"_s));
}

TEST(Workspace, PathsTakeBothSeparatorsAndTheEndingMayLack) {
  TestWorkspace t;
  const auto made = t.workspace->createDatabase({}, u"apps\\Orders"_s, {});
  const QString path = u"apps"_s + QDir::separator() + u"Orders.nsf"_s;
  EXPECT_EQ(t.workspace->place({}, u"apps/Orders.nsf"_s).path, path);
  EXPECT_EQ(t.workspace->place({}, u"APPS\\orders"_s).path, path);
  EXPECT_EQ(t.workspace->database({}, u"apps/orders.NSF"_s), made);
  EXPECT_EQ(t.workspace->place({}, t.workspace->dataDirectory() + u"/apps/Orders.nsf"_s).path, path);
}

TEST(Workspace, PathsThatLeadOutsideAreRefused) {
  TestWorkspace t;
  for (const QString& path :
       {u"../x.nsf"_s, u"a\\..\\..\\x.nsf"_s, u"/etc/x.nsf"_s, u"C:\\x.nsf"_s, u""_s, u"."_s})
    EXPECT_EQ(raised([&] { t.workspace->place({}, path); }), workspacefault::BadPath) << path.toStdString();
}

TEST(Workspace, ALinkThatLeadsOutsideIsRefused) {
  TestWorkspace t;
  DatabaseInfo info;
  Database::create(t.file(u"outside.nsf"_s), info);
  ASSERT_TRUE(QFile::link(t.file(u"outside.nsf"_s), t.workspace->dataDirectory() + u"/link.nsf"_s));
  EXPECT_EQ(raised([&] { t.workspace->database({}, u"link.nsf"_s); }), workspacefault::BadPath);
  EXPECT_FALSE(t.workspace->databases({}).contains(u"link.nsf"_s));
}

TEST(Workspace, ANewFileBehindALinkedFolderIsRefused) {
  TestWorkspace t;
  ASSERT_TRUE(QDir().mkpath(t.file(u"outside"_s)));
  ASSERT_TRUE(QFile::link(t.file(u"outside"_s), t.workspace->dataDirectory() + u"/link"_s));
  EXPECT_EQ(raised([&] { t.workspace->createDatabase({}, u"link/new.nsf"_s, {}); }), workspacefault::BadPath);
  EXPECT_EQ(raised([&] { t.workspace->createDatabase({}, u"link/more/new.nsf"_s, {}); }),
            workspacefault::BadPath);
  EXPECT_TRUE(QDir(t.file(u"outside"_s)).isEmpty());
}

TEST(Workspace, AFileThatSomebodyDeletedIsMissingAlsoForWhoHasItOpen) {
  TestWorkspace t;
  ASSERT_TRUE(QFile::remove(t.workspace->dataDirectory() + u"/mail.nsf"_s));
  EXPECT_EQ(raised([&] { t.workspace->database({}, u"mail.nsf"_s); }), workspacefault::NoSuchFile);
}

TEST(Workspace, ADatabaseThatAnotherProgramHasOpenIsNotReplaced) {
  TestWorkspace t;
  t.workspace->createDatabase({}, u"spare.nsf"_s, {});
  const QString file = t.workspace->dataDirectory() + u"/spare.nsf"_s;
  sqlite3* elsewhere = nullptr;
  ASSERT_EQ(sqlite3_open(file.toUtf8().constData(), &elsewhere), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(elsewhere, "SELECT count(*) FROM note", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(raised([&] { t.workspace->createDatabase({}, u"spare.nsf"_s, {}, true); }),
            err::PermissionDenied);
  EXPECT_FALSE(QFile::exists(file + u".new"_s));
  EXPECT_EQ(sqlite3_exec(elsewhere, "SELECT count(*) FROM note", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(elsewhere);
  EXPECT_NE(t.workspace->createDatabase({}, u"spare.nsf"_s, {}, true), nullptr);
}

TEST(Workspace, ListsOurDatabasesInFoldersSortedAndNothingElse) {
  TestWorkspace t;
  t.workspace->createDatabase({}, u"b.nsf"_s, {});
  t.workspace->createDatabase({}, u"A.ntf"_s, {});
  t.workspace->createDatabase({}, u"apps/x.nsf"_s, {});
  write(t.workspace->dataDirectory() + u"/foreign.nsf"_s, "no database at all");
  const QString sub = u"apps"_s + QDir::separator() + u"x.nsf"_s;
  EXPECT_EQ(t.workspace->databases({}), QStringList({u"A.ntf"_s, sub, u"b.nsf"_s, u"mail.nsf"_s}));
}

TEST(Workspace, FilesNamedLikeDatabasesAreListedWhateverIsInThem) {
  TestWorkspace t;
  write(t.workspace->dataDirectory() + u"/Foreign.NSF"_s, "no database at all");
  write(t.workspace->dataDirectory() + u"/list.txt"_s, "no database at all");
  EXPECT_EQ(t.workspace->databaseFiles({}), QStringList({u"Foreign.NSF"_s, u"mail.nsf"_s}));
}

TEST(Workspace, ReplicasAreFoundByTheirId) {
  TestWorkspace t;
  t.workspace->addServer(u"CN=Hub1/O=Acme"_s);
  const QString id = t.store->info().replicaId.toLower();
  EXPECT_EQ(t.workspace->replicas({}, id), (QVector<DatabasePlace>{{u""_s, u"mail.nsf"_s}}));
  EXPECT_TRUE(t.workspace->replicas(u"Hub1/Acme"_s, id).isEmpty());
  EXPECT_TRUE(t.workspace->replicas({}, {}).isEmpty());
}

TEST(Workspace, ADatabaseIsOpenedOnceForAll) {
  TestWorkspace t;
  EXPECT_EQ(t.workspace->database({}, u"mail"_s), t.store);
}

TEST(Workspace, MissingAndForeignFilesRaise) {
  TestWorkspace t;
  const QString foreign = t.workspace->dataDirectory() + u"/foreign.nsf"_s;
  write(foreign, "no database at all");
  EXPECT_EQ(raised([&] { t.workspace->database({}, u"none.nsf"_s); }), workspacefault::NoSuchFile);
  EXPECT_EQ(raised([&] { t.workspace->database({}, u"foreign.nsf"_s); }), enginefault::NotADatabase);
  EXPECT_EQ(raised([&] { t.workspace->createDatabase({}, u"foreign.nsf"_s, {}, true); }),
            enginefault::NotADatabase);
  EXPECT_EQ(contentOf(foreign), "no database at all");
}

TEST(Workspace, ReplacingNeedsConsentAndNobodyWhoHoldsIt) {
  TestWorkspace t;
  t.add({{u"Form"_s, textValue(u"Memo")}});
  EXPECT_EQ(raised([&] { t.workspace->createDatabase({}, u"mail.nsf"_s, {}); }), workspacefault::FileExists);
  EXPECT_EQ(raised([&] { t.workspace->createDatabase({}, u"mail.nsf"_s, {}, true); }), enginefault::InUse);
  t.store.reset();
  const auto fresh = t.workspace->createDatabase({}, u"mail.nsf"_s, {}, true);
  EXPECT_EQ(fresh->notes().noteCount(noteclass::Document), 0);
}

TEST(Workspace, ServersAnswerToCanonicalAndAbbreviatedNames) {
  TestWorkspace t;
  t.workspace->addServer(u"CN=Hub1/OU=Ops/O=Acme"_s);
  QDir(t.directory()).mkpath(u"servers/Plain"_s);
  const auto again = Workspace::open(t.directory(), german());
  EXPECT_EQ(again->serverNames(), QStringList({u"CN=Hub1/OU=Ops/O=Acme"_s, u"CN=Plain"_s}));
  EXPECT_EQ(again->canonicalServer(u"hub1/ops/acme"_s), u"CN=Hub1/OU=Ops/O=Acme"_s);
  EXPECT_EQ(again->canonicalServer(u""_s), u""_s);
  // Lists drop labels wherever they stand in a name.
  t.workspace->addServer(u"CN=RADIO=1/O=Acme"_s);
  EXPECT_EQ(t.workspace->canonicalServer(u"RADI1/acme"_s), u"CN=RADIO=1/O=Acme"_s);
  EXPECT_EQ(raised([&] { again->canonicalServer(u"Hub2/Acme"_s); }), workspacefault::UnknownServer);
}

TEST(Workspace, AServersDatabasesStandInItsOwnDirectory) {
  TestWorkspace t;
  t.workspace->addServer(u"CN=Hub1/O=Acme"_s);
  t.workspace->createDatabase(u"Hub1/Acme"_s, u"names.nsf"_s, {});
  EXPECT_EQ(t.workspace->databases(u"CN=Hub1/O=Acme"_s), QStringList(u"names.nsf"_s));
  EXPECT_EQ(t.workspace->databases({}), QStringList(u"mail.nsf"_s));
  EXPECT_TRUE(QFile::exists(t.directory() + u"/servers/Hub1/names.nsf"_s));
}

TEST(Workspace, AddressBooksComeFromSettingsOrByTheirUsualName) {
  TestWorkspace t;
  t.workspace->addServer(u"CN=Hub1/O=Acme"_s);
  EXPECT_TRUE(t.workspace->addressBooks().isEmpty());
  t.workspace->createDatabase(u"CN=Hub1/O=Acme"_s, u"names.nsf"_s, {});
  const DatabasePlace hub{u"CN=Hub1/O=Acme"_s, u"names.nsf"_s};
  EXPECT_EQ(t.workspace->addressBooks(), QVector<DatabasePlace>{hub});
  t.workspace->setIniValue(u"Names"_s, u"mail.nsf, Nobody/Acme!!names.nsf, Hub1/Acme!!names.nsf"_s);
  EXPECT_EQ(t.workspace->addressBooks(),
            (QVector<DatabasePlace>{{u""_s, u"mail.nsf"_s}, {u"Nobody/Acme"_s, u"names.nsf"_s}, hub}));
  t.workspace->setIniValue(u"Names"_s, u"../names.nsf, gone.nsf"_s);
  EXPECT_EQ(t.workspace->addressBooks(), (QVector<DatabasePlace>{{u""_s, u"gone.nsf"_s}}));
}
