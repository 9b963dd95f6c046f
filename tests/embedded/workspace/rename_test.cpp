#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "embedded/model/support/test_workspace.h"
#include "embedded/workspace/workspace.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

TEST(WorkspaceRename, GivesADatabaseAnotherNameWithAllThatIsInIt) {
  TestWorkspace t;
  const NoteId id = t.add({{u"Form"_s, textValue(u"Memo")}});
  const QString replica = t.store->info().replicaId;
  const DatabasePlace to = t.workspace->renameDatabase({{}, u"mail.nsf"_s}, u"old/letters"_s);
  EXPECT_EQ(to.path, QDir::toNativeSeparators(u"old/letters.nsf"_s));
  EXPECT_EQ(t.workspace->databases({}), QStringList(to.path));
  EXPECT_EQ(raised([&] { t.store->notes().noteCount(noteclass::Document); }), err::FileNotFound)
      << "who holds it has to open it anew";
  const auto again = t.workspace->database({}, to.path);
  EXPECT_EQ(again->info().replicaId, replica);
  Note note;
  EXPECT_TRUE(again->notes().read(id, note));
  again->notes().save(note);
  const QDir data(t.workspace->dataDirectory());
  EXPECT_EQ(data.entryList({u"mail*"_s}, QDir::Files), QStringList()) << "no journal stays behind";
}

TEST(WorkspaceRename, RefusesANameThatIsTakenOrLeadsOutside) {
  TestWorkspace t;
  t.workspace->createDatabase({}, u"taken.nsf"_s, {});
  const DatabasePlace mail{{}, u"mail.nsf"_s};
  EXPECT_EQ(raised([&] { t.workspace->renameDatabase(mail, u"taken.nsf"_s); }), workspacefault::FileExists);
  EXPECT_EQ(raised([&] { t.workspace->renameDatabase(mail, u"../mail.nsf"_s); }), workspacefault::BadPath);
  EXPECT_EQ(raised([&] {
              t.workspace->renameDatabase({{}, u"none.nsf"_s}, u"x.nsf"_s);
            }),
            workspacefault::NoSuchFile);
  EXPECT_EQ(t.store->notes().noteCount(noteclass::Document), 0) << "it is as it was";
  EXPECT_EQ(t.workspace->databases({}).size(), 2);
}

TEST(WorkspaceRename, ChangesTheCaseOfLettersAlone) {
  TestWorkspace t;
  const NoteId id = t.add({{u"Form"_s, textValue(u"Memo")}});
  const DatabasePlace mail{{}, u"mail.nsf"_s};
  EXPECT_EQ(t.workspace->renameDatabase(mail, u"Mail"_s).path, u"Mail.nsf"_s);
  EXPECT_EQ(t.workspace->databases({}), QStringList(u"Mail.nsf"_s));
  EXPECT_EQ(t.workspace->renameDatabase(mail, u"./MAIL.NSF"_s).path, u"MAIL.NSF"_s) << "found in any case";
  const QString inFolder = t.workspace->renameDatabase(mail, u"Old/mail.nsf"_s).path;
  EXPECT_EQ(t.workspace->renameDatabase({{}, inFolder}, u"OLD\\Mail.nsf"_s).path,
            QDir::toNativeSeparators(u"Old/Mail.nsf"_s))
      << "the folder keeps its name";
  Note note;
  EXPECT_TRUE(t.workspace->database({}, u"old/mail.nsf"_s)->notes().read(id, note));
}

TEST(WorkspaceRename, RefusesTheNameThatItHasAndThatOfAFileInOtherLetters) {
  TestWorkspace t;
  const DatabasePlace mail{{}, u"mail.nsf"_s};
  EXPECT_EQ(raised([&] { t.workspace->renameDatabase(mail, u"mail"_s); }), workspacefault::FileExists);
  QFile other(t.workspace->dataDirectory() + u"/MAIL.nsf"_s);
  if (other.exists()) GTEST_SKIP() << "here it is the same file";
  ASSERT_TRUE(other.open(QIODevice::WriteOnly));
  EXPECT_EQ(raised([&] { t.workspace->renameDatabase(mail, u"MAIL.nsf"_s); }), workspacefault::FileExists);
  EXPECT_EQ(other.size(), 0);
  EXPECT_EQ(t.store->notes().noteCount(noteclass::Document), 0) << "it is as it was";
}

TEST(WorkspaceRename, LeavesTheJournalOfAnEarlierFileAlone) {
  TestWorkspace t;
  const QString journal = t.workspace->dataDirectory() + u"/new.nsf-wal"_s;
  QFile file(journal);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("what a killed program left");
  file.close();
  EXPECT_EQ(raised([&] {
              t.workspace->renameDatabase({{}, u"mail.nsf"_s}, u"new.nsf"_s);
            }),
            err::PathFileAccess);
  EXPECT_TRUE(QFile::exists(journal));
  t.add({{u"Form"_s, textValue(u"Memo")}});
  EXPECT_EQ(t.store->notes().noteCount(noteclass::Document), 1);
}

TEST(WorkspaceRename, IsRefusedWhileAnotherProcessHasTheFile) {
  TestWorkspace t;
  const QString path = t.store->path();
  int ready[2], go[2];
  ASSERT_EQ(pipe(ready), 0);
  ASSERT_EQ(pipe(go), 0);
  t.store.reset();
  const pid_t other = fork();
  if (other == 0) {
    char byte = 0;
    const auto held = Database::open(path);
    if (write(ready[1], "x", 1) != 1 || read(go[0], &byte, 1) != 1) _exit(1);
    _exit(0);
  }
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  EXPECT_EQ(raised([&] {
              t.workspace->renameDatabase({{}, u"mail.nsf"_s}, u"new.nsf"_s);
            }),
            err::PermissionDenied);
  EXPECT_TRUE(QFile::exists(path));
  ASSERT_EQ(write(go[1], "x", 1), 1);
  int status = 0;
  waitpid(other, &status, 0);
  EXPECT_EQ(status, 0);
  t.workspace->renameDatabase({{}, u"mail.nsf"_s}, u"new.nsf"_s);
  EXPECT_FALSE(QFile::exists(path));
}

TEST(WorkspaceRename, TheClientClosesIt) {
  TestWorkspace t;
  t.workspace->client().showDatabase({{}, u"mail.nsf"_s});
  t.workspace->renameDatabase({{}, u"mail.nsf"_s}, u"new.nsf"_s);
  EXPECT_EQ(t.workspace->client().database(), nullptr);
}
