#include <sys/wait.h>
#include <unistd.h>
#include <QAction>
#include <QStatusBar>
#include <QTimer>

#include "client/client_fixture.h"
#include "support/small_files.h"

namespace lens {
namespace {

class DatabaseCommandsTest : public Client {
 protected:
  QStringList databases() const { return workspace->databases({}); }
  void startWithMail(const QString& newName, int memos = 1) {
    saveMany(memos);
    start();
    openMail();
    choice->otherName = newName;
  }
  void letGo() { mail.reset(); }
  // Its row on the left, whatever is open.
  void chooseFirst() {
    auto& tree = part<DatabaseTree>("databaseTree");
    tree.setCurrentItem(tree.topLevelItem(0)->child(0));
  }
  QStringList filesOf() const {
    return QDir(workspace->dataDirectory()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
  }
};

TEST_F(DatabaseCommandsTest, DeletesTheDatabaseThatIsCurrentOnTheLeftWhenTheUserIsSure) {
  save(memo(u"one"_s));
  start();
  openMail();
  choice->sure = false;
  trigger("deleteDatabaseAction");
  EXPECT_TRUE(choice->lastQuestion.contains(u"mail.nsf on Local"_s)) << choice->lastQuestion.toStdString();
  EXPECT_TRUE(choice->lastQuestion.contains(u"1 document"_s)) << choice->lastQuestion.toStdString();
  EXPECT_EQ(databases(), QStringList(u"mail.nsf"_s));
  choice->sure = true;
  trigger("deleteDatabaseAction");
  EXPECT_EQ(databases(), QStringList());
  EXPECT_EQ(workspace->client().database(), nullptr);
  EXPECT_EQ(page(), u"emptyPage"_s);
}

TEST_F(DatabaseCommandsTest, RenamesTheOpenDatabaseAndKeepsItOpen) {
  startWithMail(u"old/letters.nsf"_s);
  trigger("renameDatabaseAction");
  EXPECT_EQ(error(), QString());
  const QString path = QDir::toNativeSeparators(u"old/letters.nsf"_s);
  EXPECT_EQ(databases(), QStringList(path));
  ASSERT_NE(workspace->client().database(), nullptr);
  EXPECT_EQ(workspace->client().database()->path, path);
  EXPECT_EQ(table().model()->rowCount(), 1);
}

TEST_F(DatabaseCommandsTest, CopiesADatabaseUnderAReplicaIdOfItsOwnAndOpensTheCopy) {
  startWithMail(u"copy.nsf"_s);
  trigger("copyDatabaseAction");
  EXPECT_EQ(error(), QString());
  ASSERT_NE(workspace->client().database(), nullptr);
  EXPECT_EQ(workspace->client().database()->path, u"copy.nsf"_s);
  EXPECT_EQ(table().model()->rowCount(), 1);
  EXPECT_NE(workspace->infoOf({{}, u"copy.nsf"_s}).replicaId, mail->info().replicaId);
  trigger("copyDatabaseAction");
  EXPECT_TRUE(error().contains(u"copy.nsf"_s)) << "a name that is taken is told: " << error().toStdString();
}

TEST_F(DatabaseCommandsTest, ACopyShowsHowFarItIsAndLeavesNothingWhenItIsCancelled) {
  startWithMail(u"new/copy.nsf"_s, 1500);
  const QStringList before = filesOf();
  const QString caption = cancelled("copyDatabaseAction");
  EXPECT_TRUE(caption.contains(u"copy"_s)) << caption.toStdString();
  EXPECT_EQ(error(), QString());
  EXPECT_TRUE(part<QStatusBar>("statusBar").currentMessage().contains(u"cancelled"_s));
  EXPECT_EQ(filesOf(), before);
  EXPECT_EQ(workspace->client().database()->path, u"mail.nsf"_s);
  EXPECT_FALSE(window->isImporting());
}

TEST_F(DatabaseCommandsTest, ACopyThatFindsNoRoomIsToldAndLeavesNothing) {
  startWithMail(u"new/copy.nsf"_s, 200);
  const QStringList before = filesOf();
  {
    const SmallFiles full(64 * 1024);
    trigger("copyDatabaseAction");
  }
  EXPECT_TRUE(error().contains(u"copy.nsf"_s)) << error().toStdString();
  EXPECT_EQ(filesOf(), before);
}

TEST_F(DatabaseCommandsTest, ADatabaseMayBeClosedButNotDeletedWhileItIsCopied) {
  startWithMail(u"copy.nsf"_s, 1500);
  QString told;
  const WhenWorkBegins meanwhile(*window, [&] {
    trigger("deleteDatabaseAction");
    told = error();
    window->closeDatabase();
    window->close();
  });
  trigger("copyDatabaseAction");
  EXPECT_TRUE(told.contains(u"A database is being copied"_s)) << told.toStdString();
  EXPECT_EQ(databases(), QStringList({u"copy.nsf"_s, u"mail.nsf"_s}));
  EXPECT_EQ(workspace->client().database()->path, u"copy.nsf"_s);
  EXPECT_EQ(table().model()->rowCount(), 1500);
}

TEST_F(DatabaseCommandsTest, AWindowDestroyedDuringACopyLeavesNoHalfOfIt) {
  startWithMail(u"copy.nsf"_s, 1500);
  QTimer::singleShot(0, qApp, [&] { window.reset(); });
  trigger("copyDatabaseAction");
  ASSERT_TRUE(QTest::qWaitFor([&] { return !window; }));
  EXPECT_EQ(filesOf().filter(u".new"_s), QStringList());
  if (databases().contains(u"copy.nsf"_s)) {
    EXPECT_EQ(workspace->database({}, u"copy.nsf"_s)->notes().noteCount(noteclass::Document), 1500);
  }
}

TEST_F(DatabaseCommandsTest, ANameMayChangeInTheCaseOfItsLettersOnly) {
  startWithMail(u"Mail.nsf"_s);
  trigger("renameDatabaseAction");
  EXPECT_EQ(error(), QString());
  EXPECT_EQ(databases(), QStringList(u"Mail.nsf"_s));
  EXPECT_EQ(workspace->client().database()->path, u"Mail.nsf"_s);
  EXPECT_EQ(table().model()->rowCount(), 1);
}

TEST_F(DatabaseCommandsTest, ANameThatIsTakenIsToldAndNothingChanges) {
  workspace->createDatabase({}, u"taken.nsf"_s, {});
  startWithMail(u"taken.nsf"_s);
  trigger("renameDatabaseAction");
  EXPECT_TRUE(error().contains(u"taken.nsf"_s)) << error().toStdString();
  EXPECT_EQ(databases(), QStringList({u"mail.nsf"_s, u"taken.nsf"_s}));
  EXPECT_EQ(workspace->client().database()->path, u"mail.nsf"_s);
  EXPECT_EQ(mail->notes().noteCount(noteclass::Document), 1);
}

// Other windows, the tool's too, hold what they had open.
TEST_F(DatabaseCommandsTest, WhoHoldsADatabaseThatGoesWritesNowhere) {
  startWithMail(u"new.nsf"_s);
  trigger("renameDatabaseAction");
  EXPECT_THROW(save(memo(u"two"_s)), RuntimeError);
  const auto held = workspace->database({}, u"new.nsf"_s);
  trigger("deleteDatabaseAction");
  Note late = memo(u"three"_s);
  EXPECT_THROW(held->notes().save(late), RuntimeError);
  EXPECT_EQ(filesOf(), QStringList());
}

TEST_F(DatabaseCommandsTest, WhatAnotherProgramPutThereMeanwhileIsNotDeleted) {
  const QString path = mail->path();
  letGo();
  start();
  chooseFirst();
  choice->whileAsked = [&] { putAnotherInPlaceOf(path); };
  trigger("deleteDatabaseAction");
  EXPECT_TRUE(choice->lastQuestion.contains(u"0 document"_s)) << choice->lastQuestion.toStdString();
  EXPECT_TRUE(error().contains(u"replaced the file"_s)) << error().toStdString();
  EXPECT_EQ(workspace->infoOf({{}, u"mail.nsf"_s}).title, u"Another"_s);
}

TEST_F(DatabaseCommandsTest, ADatabaseThatIsGoneMeanwhileIsTold) {
  const QString path = mail->path();
  letGo();
  start();
  for (const char* action : {"deleteDatabaseAction", "renameDatabaseAction", "copyDatabaseAction"}) {
    if (!QFile::exists(path)) Database::create(path, {});
    window->refresh();
    chooseFirst();
    choice->otherName = u"new.nsf"_s;
    choice->whileAsked = [&] {
      for (const char* suffix : {"", "-wal", "-shm"}) QFile::remove(path + QLatin1String(suffix));
    };
    trigger(action);
    EXPECT_TRUE(error().contains(u"mail.nsf"_s)) << action << ' ' << error().toStdString();
    EXPECT_EQ(filesOf(), QStringList()) << action;
  }
}

TEST_F(DatabaseCommandsTest, AWindowDestroyedWhileItAsksDoesNothing) {
  for (const char* action : {"deleteDatabaseAction", "renameDatabaseAction", "copyDatabaseAction"}) {
    start();
    openMail();
    choice->otherName = u"new.nsf"_s;
    choice->whileAsked = [&] { window.reset(); };
    trigger(action);
    EXPECT_EQ(databases(), QStringList(u"mail.nsf"_s)) << action;
  }
}

// Another program has it open.
TEST_F(DatabaseCommandsTest, AFileThatIsOpenElsewhereStaysAndTheReasonIsTold) {
  const QString path = mail->path();
  letGo();
  int ready[2], go[2];
  ASSERT_EQ(pipe(ready), 0);
  ASSERT_EQ(pipe(go), 0);
  const pid_t other = fork();
  if (other == 0) {
    char byte = 0;
    const auto held = Database::open(path);
    _exit(write(ready[1], "x", 1) == 1 && read(go[0], &byte, 1) == 1 ? 0 : 1);
  }
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  start();
  openMail();
  choice->otherName = u"new.nsf"_s;
  for (const char* action : {"deleteDatabaseAction", "renameDatabaseAction"}) {
    trigger(action);
    EXPECT_TRUE(error().contains(u"in use elsewhere"_s)) << action << error().toStdString();
    EXPECT_EQ(databases(), QStringList(u"mail.nsf"_s));
    EXPECT_NE(workspace->client().database(), nullptr) << "it stays open";
  }
  ASSERT_EQ(write(go[1], "x", 1), 1);
  waitpid(other, nullptr, 0);
}

TEST_F(DatabaseCommandsTest, WithoutADatabaseTheUserIsTold) {
  start();
  trigger("deleteDatabaseAction");
  EXPECT_TRUE(error().contains(u"No database is chosen"_s)) << error().toStdString();
  EXPECT_EQ(choice->lastQuestion, QString());
}

}  // namespace
}  // namespace lens
