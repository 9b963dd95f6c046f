// The console of a server from the main window: through a library beside the program, and through the C API.
#include "tools/remote_console.h"

#include <QTest>

#include "embedded/console/console.h"
#include "notes/code_page.h"
#include "support/lens_fixture.h"
#include "tools/cls_remote_console.h"

namespace lens {
namespace {

const QString kHub = u"CN=Hub/O=Acme"_s;

class RemoteConsoleTest : public LensFixture {
 protected:
  RemoteConsoleTest() {
    openDatabase(u"mail.nsf"_s);
    workspace->addServer(kHub);
    start();
    host.boxes.clear();
    capi().log.clear();
    control<ComboBox>("lstServerList").setText(kHub);
  }
  void send(const QString& command) {
    setText("txtRemoteCommand", command);
    control<CommandButton>("cmdRemCon").click.fire();
  }
  void press(Qt::Key key) { QTest::keyClick(&control<TextBox>("txtRemoteCommand"), key); }
  QString content() { return text("txtFieldContent"); }
  QString command() { return text("txtRemoteCommand"); }
  // A library that keeps what it was given and replies so.
  void useLibrary(qint16 result, const QByteArray& reply) {
    host.consoleLibrary = [this, result, reply] {
      return [this, result, reply](const QByteArray& server, const QByteArray& command, QByteArray& buffer) {
        sentTo = server;
        sent = command;
        blanks = buffer;
        capi().log += u"RemoteCommand"_s;
        std::copy(reply.begin(), reply.end(), buffer.begin());
        return result;
      };
    };
  }
  QByteArray sentTo, sent, blanks;
};

// --- through the C API ---

TEST_F(RemoteConsoleTest, ShowsTheReplyInPlaceOfTheContent) {
  setText("txtFieldContent", u"what was there"_s);
  send(u"help"_s);
  EXPECT_EQ(content(), runConsoleCommand(*workspace, kHub, u"help"_s));
  EXPECT_TRUE(content().contains(u"\r\n"_s));
  EXPECT_EQ(command(), u"help"_s);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(RemoteConsoleTest, EnterSends) {
  setText("txtRemoteCommand", u"help"_s);
  press(Qt::Key_Return);
  EXPECT_EQ(content(), runConsoleCommand(*workspace, kHub, u"help"_s));
}

TEST_F(RemoteConsoleTest, WhatHasNoReplyLeavesTheContentEmpty) {
  for (const QString& server : {QString(), u"Local"_s, u"CN=Nobody/O=Acme"_s}) {
    control<ComboBox>("lstServerList").setText(server);
    setText("txtFieldContent", u"what was there"_s);
    send(u"help"_s);
    EXPECT_EQ(content(), QString()) << server.toStdString();
  }
  control<ComboBox>("lstServerList").setText(kHub);
  send(QString());
  EXPECT_EQ(content(), QString());
  EXPECT_EQ(boxes(), QStringList());
  // An empty command is remembered like any other.
  EXPECT_EQ(state().gRemoteHistory, QStringList({u"help"_s, QString()}));
}

TEST_F(RemoteConsoleTest, CallsTheLibraryInItsOrder) {
  send(u"help"_s);
  EXPECT_EQ(capi().log, QStringList({u"NotesInitExtended"_s, u"NSFRemoteConsole"_s, u"OSLockObject"_s,
                                     u"OSUnlockObject"_s, u"OSMemFree"_s, u"NotesTerm"_s}));
}

TEST_F(RemoteConsoleTest, AFailureIsToldAndLeavesNotesTermOut) {
  capi().failFunction = u"NSFRemoteConsole"_s;
  setText("txtFieldContent", u"what was there"_s);
  send(u"help"_s);
  EXPECT_EQ(boxes(), QStringList(u"Error 453 (Specified DLL function not found) in procedure "
                                 "cmdRemCon_Click of Formular Form1"_s));
  EXPECT_EQ(content(), QString());
  EXPECT_FALSE(capi().log.contains(u"NotesTerm"_s));
  EXPECT_EQ(state().gRemoteHistory, QStringList(u"help"_s));
}

TEST_F(RemoteConsoleTest, AFailureWithTheReplyInHandIsPassedOver) {
  capi().failFunction = u"OSUnlockObject"_s;
  send(u"help"_s);
  EXPECT_EQ(content(), runConsoleCommand(*workspace, kHub, u"help"_s));
  EXPECT_EQ(boxes(), QStringList());
}

// --- through the library ---

TEST_F(RemoteConsoleTest, TheLibraryGetsTextsEndedByNulAndABufferOfBlanks) {
  useLibrary(1, QByteArray("Reply\0behind it", 15));
  send(u" tell é "_s);
  EXPECT_EQ(sentTo, toCodePage(kHub) + '\0');
  EXPECT_EQ(sent, toCodePage(u" tell é "_s) + '\0');
  EXPECT_EQ(blanks, QByteArray(32767, ' '));
  EXPECT_EQ(content(), u"Reply"_s);
  EXPECT_EQ(capi().log, QStringList({u"NotesInitExtended"_s, u"RemoteCommand"_s, u"NotesTerm"_s}));
}

// What is missing is for the library to refuse.
TEST_F(RemoteConsoleTest, TheLibraryIsAskedWithoutAServerAndWithoutACommandToo) {
  useLibrary(0, {});
  control<ComboBox>("lstServerList").setText(QString());
  send(QString());
  EXPECT_EQ(sentTo, QByteArray(1, '\0'));
  EXPECT_EQ(sent, QByteArray(1, '\0'));
  EXPECT_EQ(state().gRemoteHistory, QStringList(QString()));
  control<ComboBox>("lstServerList").setText(u"Local"_s);
  send(u"help"_s);
  EXPECT_EQ(sentTo, QByteArray("Local\0", 6));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(RemoteConsoleTest, AReplyWithoutItsNulIsShownWithTheBlanks) {
  useLibrary(7, "abc");
  send(u"x"_s);
  EXPECT_EQ(content(), u"abc"_s.leftJustified(32767));
}

TEST_F(RemoteConsoleTest, AResultOfNothingShowsNothing) {
  for (const qint16 result : {qint16(0), qint16(-1)}) {
    useLibrary(result, QByteArray("Reply\0", 6));
    setText("txtFieldContent", u"what was there"_s);
    send(u"x"_s);
    EXPECT_EQ(content(), QString());
  }
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(RemoteConsoleTest, ALibraryWithoutTheFunctionIsTold) {
  host.consoleLibrary = []() -> RemoteCommand { throw RuntimeError(err::EntryNotFound); };
  send(u"x"_s);
  EXPECT_EQ(boxes(), QStringList(u"Error 453 (Specified DLL function not found) in procedure "
                                 "cmdRemCon_Click of Formular Form1"_s));
  EXPECT_EQ(content(), QString());
}

// --- the history ---

TEST_F(RemoteConsoleTest, KeepsEachCommandOnceWithoutOuterBlanks) {
  for (const QString& command : {u"show tasks"_s, u" show tasks "_s, u"Show tasks"_s, u"show tasks"_s})
    send(command);
  EXPECT_EQ(state().gRemoteHistory, QStringList({u"show tasks"_s, u"Show tasks"_s}));
}

TEST_F(RemoteConsoleTest, UpAndDownGoFromTheTextInTheBox) {
  for (const QString& command : {u"one"_s, u"two"_s, u"three"_s}) send(command);
  press(Qt::Key_Up);
  EXPECT_EQ(command(), u"two"_s);
  press(Qt::Key_Up);
  press(Qt::Key_Up);
  EXPECT_EQ(command(), u"one"_s);  // the first one stays
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  EXPECT_EQ(command(), u"three"_s);  // so does the last one
  setText("txtRemoteCommand", u"four"_s);
  press(Qt::Key_Up);
  press(Qt::Key_Down);
  EXPECT_EQ(command(), u"four"_s);
}

// The box keeps its blanks, the history does not.
TEST_F(RemoteConsoleTest, ATextWithOuterBlanksIsNotFound) {
  send(u"one"_s);
  send(u" two "_s);
  press(Qt::Key_Up);
  EXPECT_EQ(command(), u" two "_s);
}

TEST_F(RemoteConsoleTest, TheHistoryHoldsAsManyCommandsAsItsCounterCanCount) {
  useLibrary(0, {});
  for (int i = 0; i < 32766; ++i) state().gRemoteHistory += QString::number(i);
  send(u"the last one"_s);
  EXPECT_EQ(boxes(), QStringList());
  send(u"one more"_s);
  EXPECT_EQ(boxes(), QStringList(u"Error 6 (Overflow) in procedure cmdRemCon_Click of Formular Form1"_s));
  EXPECT_EQ(state().gRemoteHistory.size(), 32767);
}

// --- the class ---

class ConsoleClass : public RemoteConsoleTest {
 protected:
  clsRemoteConsole console{capi(), host};
  QString server = kHub, command = u"help"_s;
};

TEST_F(ConsoleClass, NeedsAServerAndACommand) {
  QString none;
  EXPECT_EQ(console.Execute(none, command), QString());
  EXPECT_TRUE(console.IsError);
  console.IsError = false;
  EXPECT_EQ(console.Execute(server, none), QString());
  EXPECT_TRUE(console.IsError);
  EXPECT_EQ(server, kHub);
  EXPECT_EQ(capi().log, QStringList());
}

TEST_F(ConsoleClass, LeavesTheNulInTheTextsOfItsCaller) {
  EXPECT_EQ(console.Execute(server, command), runConsoleCommand(*workspace, kHub, u"help"_s));
  EXPECT_FALSE(console.IsError);
  EXPECT_EQ(server, kHub + QChar(u'\0'));
  EXPECT_EQ(command, u"help"_s + QChar(u'\0'));
}

TEST_F(ConsoleClass, KeepsTheErrorOfARunThatFailed) {
  server = u"CN=Nobody/O=Acme"_s;
  EXPECT_EQ(console.Execute(server, command), QString());
  EXPECT_TRUE(console.IsError);
  EXPECT_TRUE(console.errorText().startsWith(u"Error: ["_s)) << console.errorText().toStdString();
  EXPECT_GT(console.errorText().size(), u"Error: [1234] "_s.size());
  EXPECT_EQ(capi().log.last(), u"NotesTerm"_s);
  // A later run that works clears the mark.
  server = kHub;
  command = u"help"_s;
  console.Execute(server, command);
  EXPECT_FALSE(console.IsError);
}

// --- the reply block ---

QByteArray block(quint16 length, const QByteArray& rest) {
  QByteArray bytes;
  bytes.append(char(length & 0xFF)).append(char(length >> 8)).append(rest);
  return bytes + QByteArray(70000, '\0');
}

TEST(ReplyBlock, IsReadFromTheHighByteOfItsLengthToTheByteBeforeItsLast) {
  EXPECT_EQ(decodedReply(block(0x4103, "bcdef")), u"Abcdef"_s);
  EXPECT_EQ(decodedReply(block(0x0005, "bcdef")), QString());  // the high byte ends it
  EXPECT_EQ(decodedReply("\x03 ab"), u" ab"_s);
  EXPECT_EQ(decodedReply("\x20"
                         "abc\0def"),
            u"abc"_s);
}

TEST(ReplyBlock, ShowsLineEndsAndPrintableLettersAndBlanksForAllElse) {
  QByteArray bytes("\x20\x7E");
  QString expected(u' ');
  for (int code = 1; code < 256; ++code) {
    bytes.append(char(code));
    const bool shown = code == 10 || code == 13 || (code >= 32 && code <= 125);
    expected += shown ? QChar(code) : QChar(u' ');
  }
  EXPECT_EQ(decodedReply(bytes.append('\0').constData()), expected);
}

TEST(ReplyBlock, OfANegativeLengthIsEmpty) {
  EXPECT_EQ(decodedReply(block(0x8000, "abc")), QString());
  EXPECT_EQ(decodedReply(block(0xFFFF, "abc")), QString());
}

}  // namespace
}  // namespace lens
