// What administrators type at the console, and what it does.
#include "embedded/console/console.h"
#include "embedded/search/full_text.h"

#include <gtest/gtest.h>

#include <random>

#include "embedded/console/command_line.h"
#include "embedded/format/lmbcs.h"
#include "embedded/model/support/test_workspace.h"
#include "support/counting_listener.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

const QString kHub = u"CN=Hub1/O=Acme"_s;

struct Console : ::testing::Test {
  Console() {
    t.workspace->addServer(kHub);
    create(u"apps/orders.nsf"_s, u"Orders"_s);
    create(u"names.nsf"_s, u"Names %1 of\nAcme"_s);
  }
  std::shared_ptr<Database> create(const QString& path, const QString& title, const QString& server = kHub,
                                   const QString& replica = {}) {
    return t.workspace->createDatabase(server, path, {title, replica, {}, {}, {}, false});
  }
  std::shared_ptr<Database> orders() { return t.workspace->database(kHub, u"apps/orders.nsf"_s); }
  QString pathOf(const QString& path) { return t.workspace->absolutePath(t.workspace->place(kHub, path)); }
  QString run(const QString& command) { return runConsoleCommand(*t.workspace, kHub, command); }
  ::testing::AssertionResult says(const QString& command, const QString& part) {
    const QString reply = run(command);
    if (reply.contains(part)) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << command.toStdString() << " replied: " << reply.toStdString();
  }
  // Notes that have come and gone, with much text.
  void fillAndEmpty(Database& database) {
    Note note = noteOf({{u"A"_s, textValue(QString(300'000, u'x'))}});
    database.notes().save(note);
    database.notes().remove(note.header.id);
  }
  TestWorkspace t;
};

}  // namespace

TEST(CommandWords, ArePartedByBlanksAndHeldTogetherByQuotes) {
  EXPECT_EQ(commandWords(u"  Show\t SERVER \r\n"), QStringList({u"Show"_s, u"SERVER"_s}));
  EXPECT_EQ(commandWords(u"compact \"my apps/a b.nsf\" x"),
            QStringList({u"compact"_s, u"my apps/a b.nsf"_s, u"x"_s}));
  EXPECT_EQ(commandWords(u"a\"b c\"d \"\" \"open end "), QStringList({u"ab cd"_s, u""_s, u"open end "_s}));
  EXPECT_TRUE(commandWords(u" \x01\x02 ").isEmpty());
}

TEST_F(Console, CommandsMatchWithoutCaseAndByTheirFirstLetters) {
  const QString help = run(u"help"_s);
  for (const QString& name :
       {u"show"_s, u"compact"_s, u"updall"_s, u"replicate"_s, u"dbcopy"_s, u"load"_s, u"tell"_s})
    EXPECT_TRUE(help.contains(u"  "_s + name)) << name.toStdString();
  for (const QString& same : {u"HELP"_s, u"he"_s, u"?"_s, u" Help me "_s}) EXPECT_EQ(run(same), help);
  EXPECT_EQ(run(u"SH TA"_s), run(u"show tasks"_s));
  EXPECT_TRUE(says(u"h"_s, u"Unknown command: h"_s));
  EXPECT_TRUE(says(u"helpme"_s, u"Unknown command: helpme"_s));
}

TEST_F(Console, AnUnknownCommandIsAnsweredAndNothingHasNoReply) {
  EXPECT_EQ(run(u"frobnicate now"_s),
            u"Unknown command: frobnicate\r\nType HELP for the list of commands."_s);
  EXPECT_EQ(run(u""_s), QString());
  EXPECT_EQ(run(u"  \t "_s), QString());
  EXPECT_TRUE(says(u"show nothing"_s, u"Unknown to show: nothing"_s));
  EXPECT_TRUE(says(u"show"_s, u"show directory"_s));
  EXPECT_TRUE(says(QString(1025, u'a'), u"1024"_s));
  EXPECT_TRUE(says(QString(1024, u'a'), u"Unknown command: aaaa"_s));
}

TEST_F(Console, TheServerIsNotEndedAndNobodyIsTold) {
  EXPECT_TRUE(says(u"quit"_s, u"not possible"_s));
  EXPECT_TRUE(says(u"EXIT"_s, u"not possible"_s));
  EXPECT_TRUE(says(u"broadcast \"going down\""_s, u"not sent"_s));
}

TEST_F(Console, ShowsTheServerItsTasksUsersPortsAndDisk) {
  EXPECT_TRUE(says(u"show server"_s, kHub));
  EXPECT_TRUE(says(u"show server"_s, t.directory()));
  EXPECT_TRUE(says(u"show tasks"_s, u"serves 2 databases"_s));
  EXPECT_TRUE(says(u"show users"_s, u"Karin Meier/Acme"_s));
  EXPECT_FALSE(says(u"show users"_s, u"names.nsf"_s));
  t.workspace->client().showDatabase({kHub, u"names.nsf"_s});
  EXPECT_TRUE(says(u"show users"_s, u"names.nsf"_s));
  EXPECT_TRUE(says(u"show ports"_s, t.directory()));
  EXPECT_TRUE(says(u"show diskspace"_s, u" free below "_s));
}

TEST_F(Console, TheDirectoryHasOneLineForEachDatabaseOfTheServer) {
  Note note = noteOf({{u"A"_s, textValue(u"x")}});
  orders()->notes().save(note);
  const QStringList lines = run(u"show directory"_s).split(u"\r\n"_s);
  ASSERT_EQ(lines.size(), 4) << lines.join(u'\n').toStdString();
  EXPECT_TRUE(lines[1].contains(u"apps"_s) && lines[1].endsWith(u"1 documents  Orders"_s));
  EXPECT_TRUE(lines[2].endsWith(u"0 documents  Names %1 of Acme"_s)) << lines[2].toStdString();
  EXPECT_EQ(lines[3], u"2 databases"_s);
  EXPECT_EQ(run(u"show directory ORD"_s).split(u"\r\n"_s).size(), 3);
}

TEST_F(Console, TheDirectoryShowsADatabaseThatCannotBeOpened) {
  const QString file = pathOf(u"names.nsf"_s);
  QFile damaged(file);
  ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
  damaged.seek(100);
  damaged.write(QByteArray(int(damaged.size() - 100), '\x5A'));
  damaged.close();
  EXPECT_TRUE(says(u"show directory"_s, u"names.nsf"_s));
  EXPECT_TRUE(says(u"show directory"_s, u"cannot be opened"_s));
  EXPECT_TRUE(says(u"show directory"_s, u"1 documents  Orders"_s) || says(u"show directory"_s, u"Orders"_s));
  EXPECT_TRUE(says(u"compact"_s, file));
}

TEST_F(Console, CompactGivesRoomBack) {
  fillAndEmpty(*orders());
  const qint64 before = orders()->size();
  EXPECT_TRUE(says(u"compact apps/orders"_s, u"bytes recovered"_s));
  EXPECT_LT(orders()->size(), before);
  EXPECT_TRUE(says(u"load compact \"apps\\orders.nsf\" -B"_s, u"Option -B has no meaning"_s));
}

TEST_F(Console, CompactWithoutNamesTakesAllDatabasesAndPassesOverTheFailing) {
  fillAndEmpty(*orders());
  const auto held = t.workspace->database(kHub, u"names.nsf"_s);
  const Database::Transaction transaction(*held);
  const QStringList lines = run(u"compact"_s).split(u"\r\n"_s);
  ASSERT_EQ(lines.size(), 2);
  EXPECT_TRUE(lines[0].contains(u"orders.nsf"_s) && lines[0].contains(u"recovered"_s));
  EXPECT_TRUE(lines[1].contains(pathOf(u"names.nsf"_s))) << lines[1].toStdString();
}

TEST_F(Console, NamesThatLeadNowhereOrOutAreToldWithTheirReason) {
  EXPECT_TRUE(says(u"compact none.nsf"_s, u"does not exist"_s));
  EXPECT_TRUE(says(u"compact ../mail.nsf"_s, u"leads out"_s));
  EXPECT_TRUE(says(u"compact \"\""_s, u"no file name"_s));
  EXPECT_TRUE(says(u"dbcopy names.nsf ../x.nsf"_s, u"leads out"_s));
}

TEST_F(Console, DbcopyMakesADatabaseOfItsOwn) {
  Note note = noteOf({{u"A"_s, textValue(u"x")}});
  orders()->notes().save(note);
  EXPECT_TRUE(says(u"dbcopy apps/orders.nsf \"new folder/copy\""_s, u"was copied"_s));
  const auto copy = t.workspace->database(kHub, u"new folder/copy.nsf"_s);
  EXPECT_EQ(copy->notes().noteCount(noteclass::Document), 1);
  EXPECT_NE(copy->info().replicaId, orders()->info().replicaId);
  EXPECT_TRUE(says(u"dbcopy apps/orders.nsf names.nsf"_s, u"exists already"_s));
  EXPECT_EQ(t.workspace->database(kHub, u"names.nsf"_s)->notes().noteCount(noteclass::Document), 0);
  EXPECT_TRUE(says(u"dbcopy none.nsf x.nsf"_s, u"does not exist"_s));
  EXPECT_TRUE(says(u"dbcopy one"_s, u"needs two names"_s));
}

TEST_F(Console, DbcopyTellsTheClient) {
  CountingListener listener;
  t.workspace->client().setListener(&listener);
  run(u"dbcopy names.nsf copy.nsf"_s);
  EXPECT_EQ(listener.told, 1);
  run(u"dbcopy names.nsf copy.nsf"_s);
  EXPECT_EQ(listener.told, 1);
  t.workspace->client().setListener(nullptr);
}

TEST_F(Console, ACopyThatCannotBeMadeLeavesNoFolders) {
  EXPECT_TRUE(says(u"dbcopy names.nsf new/er/%1.nsf"_s.arg(QString(300, u'n')), u"cannot be created"_s));
  EXPECT_FALSE(QFile::exists(QFileInfo(pathOf(u"names.nsf"_s)).path() + u"/new"_s));
}

TEST_F(Console, TasksThatAreNotThereAreNotFound) {
  EXPECT_TRUE(says(u"load amgr"_s, u"Unable to find a task of this name: amgr"_s));
  EXPECT_TRUE(says(u"load"_s, u"needs the name"_s));
  EXPECT_TRUE(says(u"tell amgr quit"_s, u"Unable to find a task"_s));
  EXPECT_TRUE(says(u"tell compact quit"_s, u"compact is not running"_s));
}

TEST_F(Console, UpdallMakesAFullTextIndexOnlyOnDemand) {
  Note note = noteOf({{u"A"_s, textValue(u"pump")}});
  orders()->notes().save(note);
  EXPECT_TRUE(says(u"updall apps/orders.nsf"_s, u"there is no full-text index"_s));
  EXPECT_FALSE(hasFullTextIndex(*orders()));
  EXPECT_TRUE(says(u"load updall apps/orders.nsf -X"_s, u"the full-text index was made anew"_s));
  EXPECT_EQ(fullTextSearch(*orders(), u"pump", 0).size(), 1);
  EXPECT_TRUE(says(u"updall apps/orders.nsf"_s, u"the full-text index is up to date"_s));
  EXPECT_EQ(run(u"updall"_s).split(u"\r\n"_s).size(), 2);
}

TEST_F(Console, SearchesGoOnBehindACompaction) {
  Note note = noteOf({{u"A"_s, textValue(u"pump")}});
  orders()->notes().save(note);
  run(u"updall apps/orders.nsf -x"_s);
  EXPECT_EQ(fullTextSearch(*orders(), u"pump", 0).size(), 1);
  EXPECT_TRUE(says(u"compact apps/orders.nsf"_s, u"recovered"_s));
  EXPECT_EQ(fullTextSearch(*orders(), u"pump", 0).size(), 1);
}

TEST_F(Console, ReplicateBringsReplicasTogetherAndLeavesOthers) {
  t.workspace->addServer(u"CN=Hub2/O=Acme"_s);
  create(u"a.nsf"_s, u"A here"_s, kHub, u"C125000000000001"_s);
  create(u"b.nsf"_s, u"A there"_s, u"Hub2/Acme"_s, u"C125000000000001"_s);
  create(u"c.nsf"_s, u"other"_s, u"Hub2/Acme"_s, u"C125000000000002"_s);
  const auto here = t.workspace->database(kHub, u"a.nsf"_s);
  const auto there = t.workspace->database(u"Hub2/Acme"_s, u"b.nsf"_s);
  Note note = noteOf({{u"A"_s, textValue(u"x")}});
  here->notes().save(note);
  QStringList changed;
  t.workspace->setChangeListener([&](const DatabasePlace& place) { changed.append(place.path); });
  EXPECT_TRUE(says(u"replicate hub2/acme"_s, u"1 added, 0 updated, 0 deleted, 0 conflicts"_s));
  EXPECT_EQ(there->notes().noteCount(noteclass::Document), 1);
  EXPECT_EQ(changed, QStringList({u"a.nsf"_s, u"b.nsf"_s}));
  EXPECT_TRUE(says(u"replicate Hub2/Acme names.nsf"_s, u"no replica"_s));
  EXPECT_TRUE(says(u"replicate Hub9/Acme"_s, u"Hub9/Acme"_s));
  EXPECT_TRUE(says(u"replicate Hub1/Acme"_s, u"another server"_s));
  EXPECT_TRUE(says(u"replicate"_s, u"needs the name"_s));
}

TEST_F(Console, AFailedReplicationNamesTheFile) {
  t.workspace->addServer(u"CN=Hub2/O=Acme"_s);
  create(u"a.nsf"_s, u"A here"_s, kHub, u"C125000000000001"_s);
  create(u"b.nsf"_s, u"A there"_s, u"Hub2/Acme"_s, u"C125000000000001"_s);
  const QString file = t.workspace->absolutePath(t.workspace->place(u"Hub2/Acme"_s, u"b.nsf"_s));
  QFile::setPermissions(file, QFile::ReadOwner);
  Note note = noteOf({{u"A"_s, textValue(u"x")}});
  t.workspace->database(kHub, u"a.nsf"_s)->notes().save(note);
  EXPECT_TRUE(says(u"load repl Hub2/Acme a.nsf"_s, file));
}

TEST(ConsoleReply, IsTextInTheStoredCharacterSetBehindOneBlank) {
  EXPECT_EQ(consoleReply(u"Größe €"_s), " " + toLmbcs(u"Größe €") + '\0');
}

TEST(ConsoleReply, IsCutBetweenLinesAndSaysSo) {
  QStringList lines;
  for (int i = 0; i < 1000; ++i) lines.append(u"Line %1 of a long reply"_s.arg(i));
  const QByteArray whole = consoleReply(lines.first(600).join(u"\r\n"_s));
  EXPECT_TRUE(whole.endsWith(QByteArray("Line 599 of a long reply\0", 25)));
  const QByteArray cut = consoleReply(lines.join(u"\r\n"_s));
  EXPECT_LE(cut.size(), kLongestReply);
  EXPECT_GT(cut.size(), kLongestReply - 200);
  const QByteArrayList kept = cut.chopped(1).split('\n');
  EXPECT_EQ(kept.last(), "More lines than a reply can hold: " + QByteArray::number(1001 - kept.size()));
  // The first two bytes of a reply stand for its length to some readers: never less than what is there.
  EXPECT_LE(cut.size(), quint8(cut[0]) | 'A' << 8);
}

TEST(ConsoleReply, AFirstLineThatIsTooLongIsCutAndTheOthersFollow) {
  const QByteArray one = consoleReply(QString(40'000, u'x'));
  EXPECT_TRUE(one.startsWith(" xxxxx") && one.endsWith(QByteArray("xx...\0", 6)));
  EXPECT_LE(one.size(), kLongestReply);
  EXPECT_TRUE(consoleReply(QString(40'000, u'x') + u"\r\nmore"_s).endsWith(QByteArray("...\r\nmore\0", 10)));
  EXPECT_LE(consoleReply(QString(40'000, u'\u20AC')).size(), kLongestReply);
}

// Whatever is typed: a reply that begins with a letter, in lines of plain text, and no file outside.
TEST_F(Console, AnythingTypedHasAReplyOfPlainText) {
  std::mt19937 random(4);
  const QStringList pieces{u"show"_s,
                           u"directory"_s,
                           u"compact"_s,
                           u"updall"_s,
                           u"dbcopy"_s,
                           u"load"_s,
                           u"names.nsf"_s,
                           u"apps/orders.nsf"_s,
                           u"../mail"_s,
                           u"\""_s,
                           u"-x"_s,
                           u"%1"_s,
                           u"\x01"_s,
                           u"\u20AC"_s,
                           u"\\"_s,
                           u"tell"_s,
                           u"replicate"_s,
                           u"Hub1/Acme"_s,
                           QString(300, u'n'),
                           u"C:\\x"_s,
                           u"\xD83D"_s,
                           u"/etc/x"_s,
                           u"'; DROP TABLE note"_s,
                           u"new.nsf"_s};
  for (int i = 0; i < 300; ++i) {
    QStringList words;
    for (quint32 n = random() % 5 + 1; n > 0; --n) words.append(pieces[random() % pieces.size()]);
    const QString command = words.join(random() % 8 ? u" "_s : u""_s);
    const QString reply = run(command);
    if (reply.isEmpty()) {
      EXPECT_TRUE(commandWords(command).isEmpty());
      continue;
    }
    ASSERT_TRUE(reply[0].unicode() < 0x80 && reply[0].isLetter()) << reply.toStdString();
    for (const QString& line : reply.split(u"\r\n"_s))
      for (const QChar c : line) ASSERT_GE(c.unicode(), 0x20) << command.toStdString();
    ASSERT_EQ(consoleReply(reply).indexOf('\0'), consoleReply(reply).size() - 1);
  }
  EXPECT_EQ(QDir(t.directory()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
            QStringList({u"data"_s, u"notes.ini"_s, u"servers"_s}));
}
