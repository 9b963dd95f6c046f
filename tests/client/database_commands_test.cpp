#include <sys/wait.h>
#include <unistd.h>
#include <QAction>

#include "client/client_fixture.h"

namespace lens {
namespace {

class DatabaseCommandsTest : public Client {
 protected:
  QStringList databases() const { return workspace->databases({}); }
  void letGo() { mail.reset(); }
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
  save(memo(u"one"_s));
  start();
  openMail();
  choice->otherName = u"old/letters.nsf"_s;
  trigger("renameDatabaseAction");
  EXPECT_EQ(error(), QString());
  const QString path = QDir::toNativeSeparators(u"old/letters.nsf"_s);
  EXPECT_EQ(databases(), QStringList(path));
  ASSERT_NE(workspace->client().database(), nullptr);
  EXPECT_EQ(workspace->client().database()->path, path);
  EXPECT_EQ(table().model()->rowCount(), 1);
}

TEST_F(DatabaseCommandsTest, CopiesADatabaseUnderAReplicaIdOfItsOwnAndOpensTheCopy) {
  save(memo(u"one"_s));
  start();
  openMail();
  choice->otherName = u"copy.nsf"_s;
  trigger("copyDatabaseAction");
  EXPECT_EQ(error(), QString());
  ASSERT_NE(workspace->client().database(), nullptr);
  EXPECT_EQ(workspace->client().database()->path, u"copy.nsf"_s);
  EXPECT_EQ(table().model()->rowCount(), 1);
  EXPECT_NE(workspace->infoOf({{}, u"copy.nsf"_s}).replicaId, mail->info().replicaId);
  trigger("copyDatabaseAction");
  EXPECT_TRUE(error().contains(u"copy.nsf"_s)) << "a name that is taken is told: " << error().toStdString();
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
