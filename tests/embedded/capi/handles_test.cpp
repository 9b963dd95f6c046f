#include <gtest/gtest.h>

#include "embedded/capi/embedded_capi.h"
#include "embedded/capi/status.h"
#include "embedded/model/support/test_workspace.h"
#include "notes/code_page.h"
#include "notes/numbers.h"
#include "support/counting_listener.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Handles : ::testing::Test {
  Handles() : api(t.workspace) {
    id = t.add({{u"Größe"_s, textListValue({u"0123456789"_s})},
                {u"Subject"_s, textValue(u"Hello")},
                {u"Subject"_s, textValue(u"second")},
                {u"$REF"_s, noteRefsValue({Unid::fromText(u"0123456789ABCDEF0123456789ABCDEF")})}});
    api.NotesInitExtended(0, "");
  }
  DbHandle open(const QByteArray& path = "mail.nsf") {
    DbHandle db = 0;
    EXPECT_EQ(api.NSFDbOpen(path, db), 0);
    return db;
  }
  NoteHandle openNote(DbHandle db) {
    NoteHandle note = 0;
    EXPECT_EQ(api.NSFNoteOpen(db, qint32(id.value()), 0, note), 0);
    return note;
  }
  Status info(NoteHandle note, const QByteArray& name) {
    return api.NSFItemInfo(note, name, quint16(name.size()), item, type, value, length);
  }
  Status openStatus(DbHandle db, qint32 noteId) {
    NoteHandle note = 77;
    const Status status = api.NSFNoteOpen(db, noteId, 0, note);
    EXPECT_EQ(status == 0, note != 0);
    return status;
  }
  TestWorkspace t;
  EmbeddedCApi api;
  NoteId id;
  BlockId item, value;
  quint16 type = 0;
  quint32 length = 0;
};

}  // namespace

TEST_F(Handles, DatabasesOpenByPathAndServer) {
  t.workspace->addServer(u"CN=Hub1/O=Acme"_s);
  t.workspace->createDatabase(u"Hub1/Acme"_s, u"names.nsf"_s, {});
  EXPECT_NE(open("mail"), 0u);
  EXPECT_NE(open("CN=Hub1/O=Acme!!names.nsf"), 0u);
  EXPECT_NE(open(QByteArray("mail.nsf\0rest", 13)), 0u);
  DbHandle db = 5;
  EXPECT_EQ(api.NSFDbOpen("none.nsf", db), 0x0103);
  EXPECT_EQ(db, 0u);
  EXPECT_EQ(api.NSFDbOpen("Hub2/Acme!!names.nsf", db), 0x0803);
  EXPECT_NE(api.NSFDbOpen("../x.nsf", db), 0);
  EXPECT_NE(api.NSFDbOpen("", db), 0);
  QFile foreign(t.workspace->dataDirectory() + u"/f.nsf"_s);
  ASSERT_TRUE(foreign.open(QIODevice::WriteOnly));
  foreign.write("junk");
  foreign.close();
  EXPECT_EQ(api.NSFDbOpen("f.nsf", db), 0x0201);
}

TEST_F(Handles, ZeroStaleAndWrongKindsAreStatuses) {
  const DbHandle db = open();
  const NoteHandle note = openNote(db);
  EXPECT_NE(db, note);
  for (const quint32 handle : {0u, db, 0xFFFFFFFFu, note + 1}) {
    EXPECT_NE(info(handle, "Subject"), 0);
    EXPECT_NE(api.NSFNoteClose(handle), 0);
  }
  for (const quint32 handle : {0u, note, 0xFFFFFFFFu}) {
    EXPECT_NE(openStatus(handle, qint32(id.value())), 0);
    EXPECT_NE(api.NSFDbClose(handle), 0);
    qint32 found = 9;
    EXPECT_NE(api.NIFFindDesignNote(handle, "x", 0x200, found), 0);
    EXPECT_EQ(found, 0);
  }
  EXPECT_EQ(api.NSFNoteClose(note), 0);
  EXPECT_NE(api.NSFNoteClose(note), 0);
  EXPECT_EQ(api.NSFDbClose(db), 0);
  EXPECT_NE(api.NSFDbClose(db), 0);
  EXPECT_NE(open(), db);  // the place is used again under another handle
}

TEST_F(Handles, ClosingADatabaseClosesItsNotesAndFreesTheirItems) {
  const DbHandle db = open(), other = open();
  const NoteHandle note = openNote(db), kept = openNote(other);
  ASSERT_EQ(info(note, "Subject"), 0);
  const MemHandle pool = value.pool;
  EXPECT_NE(api.OSLockObject(pool), nullptr);
  api.NSFDbClose(db);
  EXPECT_NE(info(note, "Subject"), 0);
  EXPECT_EQ(api.OSLockObject(pool), nullptr);
  EXPECT_EQ(info(kept, "Subject"), 0);
}

TEST_F(Handles, TheLastTermClosesEverythingAndSurplusTermsDoNoHarm) {
  const DbHandle db = open();
  api.NotesInitExtended(0, "");
  api.NotesTerm();
  EXPECT_NE(openNote(db), 0u);
  EXPECT_GT(api.openHandles(), 0);
  api.NotesTerm();
  EXPECT_EQ(api.openHandles(), 0);
  api.NotesTerm();
  api.NotesTerm();
  api.NotesInitExtended(0, "");
  EXPECT_NE(open(), 0u);
}

TEST_F(Handles, ARoutineThatNeverCameToItsTermKeepsNothingOfLaterOnesOpen) {
  // The routine of the fixture fails: its term never comes.
  const DbHandle failed = open();
  const qsizetype left = api.openHandles();
  const QByteArray source("A + 1");
  for (int i = 0; i < 3; ++i) {
    api.NotesInitExtended(0, "");
    info(openNote(open()), "Subject");
    MemHandle list = 0, code = 0, compute = 0;
    EXPECT_EQ(api.NSGetServerList(0, list), 0);
    Status error = 0;
    quint16 size = 0, line = 0, column = 0, offset = 0, errorLength = 0;
    EXPECT_EQ(api.NSFFormulaCompile(source, quint16(source.size()), code, size, error, line, column, offset,
                                    errorLength),
              0);
    EXPECT_EQ(api.NSFComputeStart(0, api.OSLockObject(code), compute), 0);
    EXPECT_GT(api.openHandles(), left + 4);
    api.NotesTerm();
    EXPECT_EQ(api.openHandles(), left);
  }
  EXPECT_NE(openNote(failed), 0u);
}

TEST_F(Handles, ItemsReadByARoutineInsideStayWithTheirNote) {
  const NoteHandle note = openNote(open());
  api.NotesInitExtended(0, "");
  EXPECT_EQ(info(note, "Subject"), 0);
  const MemHandle pool = value.pool;
  api.NotesTerm();
  EXPECT_NE(api.OSLockObject(pool), nullptr);
  EXPECT_EQ(info(note, "Subject"), 0);
  EXPECT_EQ(value.pool, pool);
}

TEST_F(Handles, NewDatabasesAreToldToTheClient) {
  CountingListener listener;
  t.workspace->client().setListener(&listener);
  EXPECT_EQ(api.NSFDbCreate("told.nsf", 0xFF03, 0), 0);
  EXPECT_EQ(listener.told, 1);
  t.workspace->client().setListener(nullptr);
}

TEST_F(Handles, NoteIdsTellWhyTheyLeadNowhere) {
  const NoteId stub = t.add({{u"A"_s, textValue(u"x")}}), gone = t.add({{u"A"_s, textValue(u"x")}});
  t.store->notes().remove(stub);
  t.store->notes().remove(gone, false);
  const DbHandle db = open();
  EXPECT_EQ(openStatus(db, qint32(id.value())), 0);
  EXPECT_EQ(openStatus(db, qint32(stub.value())), 0x0225);
  EXPECT_EQ(openStatus(db, qint32(gone.value())), 0x0227);
  EXPECT_EQ(openStatus(db, 0), 0x0214);
  EXPECT_EQ(openStatus(db, 0x7FFFFFFC), 0x0214);
  EXPECT_EQ(openStatus(db, hexToInt32(u"80000001")), 0x0214);
}

TEST_F(Handles, NegativeNoteIdsLeadToSpecialNotes) {
  const DbHandle db = open();
  ASSERT_EQ(hexToInt32(u"FFFF0010"), -65520);
  EXPECT_EQ(openStatus(db, -65520), 0x0242);
  t.add({{u"$TITLE"_s, textValue(u"Mail")}}, noteclass::Icon);
  EXPECT_EQ(openStatus(db, -65520), 0);
}

TEST_F(Handles, ItemsAreFoundWithoutCaseAndTheFirstOfAName) {
  const NoteHandle note = openNote(open());
  ASSERT_EQ(info(note, toCodePage(u"größe")), 0);
  EXPECT_EQ(type, 0x0501);
  EXPECT_EQ(length, 16u);  // type word, count, one length, ten characters
  ASSERT_EQ(info(note, "SUBJECT"), 0);
  EXPECT_EQ(QByteArray(api.OSLockObject(value.pool) + value.block, qsizetype(length)), textValue(u"Hello"));
  ASSERT_EQ(info(note, "$REF"), 0);
  EXPECT_EQ(type, 4);
  EXPECT_EQ(length, 20u);
}

TEST_F(Handles, AMissingItemLeavesNoPool) {
  const NoteHandle note = openNote(open());
  for (const QByteArray& name : {QByteArray("None"), QByteArray()}) {
    value.pool = 5;
    EXPECT_EQ(info(note, name), 0x0222);
    EXPECT_EQ(value.pool, 0u);
    EXPECT_EQ(type, 0);
    EXPECT_EQ(length, 0u);
  }
  EXPECT_EQ(api.NSFItemInfo(note, "Subject", 3, item, type, value, length), 0x0222);
  EXPECT_EQ(api.NSFItemInfo(note, "Subject", 700, item, type, value, length), 0);
}

TEST_F(Handles, TheSameItemKeepsItsMemory) {
  const NoteHandle note = openNote(open());
  info(note, "Subject");
  const MemHandle pool = value.pool;
  info(note, "subject");
  EXPECT_EQ(value.pool, pool);
  EXPECT_NE(api.OSMemFree(pool), 0);  // it belongs to the note
  EXPECT_NE(api.OSLockObject(pool), nullptr);
}

TEST_F(Handles, MemoryHandlesFitIntoSixteenBitsAndAreFreedOnce) {
  MemHandle list = 0, last = 0;
  for (int i = 0; i < 0x8001; ++i) {
    ASSERT_EQ(api.NSGetServerList(0, list), 0);
    ASSERT_TRUE(list >= 1 && list <= 0x7FFF);
    ASSERT_NE(list, last);
    last = list;
    ASSERT_EQ(api.OSMemFree(list), 0);
  }
  EXPECT_NE(api.OSMemFree(list), 0);
  EXPECT_NE(api.OSMemFree(0), 0);
  EXPECT_EQ(api.OSLockObject(0), nullptr);
  EXPECT_TRUE(api.OSUnlockObject(0));
  EXPECT_TRUE(api.OSUnlockObject(0xFFFF8001));
}

TEST_F(Handles, LockedMemoryIsNotFreed) {
  MemHandle list = 0;
  api.NSGetServerList(0, list);
  api.OSLockObject(list);
  api.OSLockObject(list);
  api.OSUnlockObject(list);
  EXPECT_NE(api.OSMemFree(list), 0);
  api.OSUnlockObject(list);
  EXPECT_EQ(api.OSMemFree(list), 0);
}

TEST_F(Handles, DatabasesAreMadeAndReplacedOnlyByForce) {
  EXPECT_EQ(api.NSFDbCreate("empty.nsf", 0xFF03, 0), 0);
  EXPECT_EQ(api.NSFDbCreate("empty.nsf", 0xFF03, 0), 0x0104);
  EXPECT_EQ(api.NSFDbCreate("empty.nsf", 0xFF03, -1), 0);
  EXPECT_EQ(api.NSFDbCreate("new.nsf", 0x1234, -1), 0x0232);
  EXPECT_NE(api.NSFDbCreate("mail.nsf", 0xFF03, -1), 0);  // it is open
  EXPECT_NE(open("empty.nsf"), 0u);
}

TEST_F(Handles, ADatabaseIsMadeEmptyAndClosedAndNothingElseIsReplaced) {
  t.workspace->addServer(u"CN=Hub1/O=Acme"_s);
  EXPECT_EQ(api.NSFDbCreate("Hub1/Acme!!new folder\\there", 0xFF03, -1), 0);
  EXPECT_EQ(api.openHandles(), 0);
  EXPECT_EQ(t.workspace->database(u"Hub1/Acme"_s, u"new folder/there.nsf"_s)->notes().noteCount(0x7FFF), 0);
  EXPECT_EQ(api.NSFDbCreate("Hub2/Acme!!x.nsf", 0xFF03, -1), 0x0803);
  EXPECT_EQ(api.NSFDbCreate("../x.nsf", 0xFF03, -1), status::BadPath);
  EXPECT_NE(api.NSFDbCreate("", 0xFF03, -1), 0);
  QFile foreign(t.workspace->dataDirectory() + u"/letter.nsf"_s);
  ASSERT_TRUE(foreign.open(QIODevice::ReadWrite));
  foreign.write("a letter");
  foreign.flush();
  EXPECT_EQ(api.NSFDbCreate("letter.nsf", 0xFF03, -1), 0x0201);
  foreign.seek(0);
  EXPECT_EQ(foreign.readAll(), "a letter");
}

TEST_F(Handles, DesignNotesAreFoundByClassAndAlias) {
  const NoteId agent = t.add({{u"$TITLE"_s, textValue(u"Clean Up|cu")}}, noteclass::Filter);
  t.addView(u"Other"_s);
  const DbHandle db = open();
  qint32 found = 0;
  EXPECT_EQ(api.NIFFindDesignNote(db, "clean up", 0x200, found), 0);
  EXPECT_EQ(found, qint32(agent.value()));
  EXPECT_EQ(api.NIFFindDesignNote(db, "CU", 0x200, found), 0);
  EXPECT_EQ(api.NIFFindDesignNote(db, "Other", 0x200, found), 0x0404);
  EXPECT_EQ(found, 0);
}
