// Deletion by note ID: for notes that cannot be opened any more.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "embedded/capi/embedded_capi.h"
#include "embedded/capi/status.h"
#include "embedded/model/support/test_workspace.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr quint16 kForce = 0x0001, kNoStub = 0x0200, kForceNoStub = 0x0201;

struct NoteDelete : ::testing::Test {
  NoteDelete() : api(t.workspace) {
    api.NotesInitExtended(0, "");
    EXPECT_EQ(api.NSFDbOpen("mail.nsf", db), 0);
  }
  NoteId plain(quint16 noteClass = noteclass::Document) {
    return t.add({{u"A"_s, textValue(u"x")}}, noteClass);
  }
  Status remove(NoteId id, quint16 flags = kForceNoStub) {
    return api.NSFNoteDelete(db, qint32(id.value()), flags);
  }
  TestWorkspace t;
  EmbeddedCApi api;
  DbHandle db = 0;
};

}  // namespace

TEST_F(NoteDelete, LeavesAStubOrNothing) {
  const NoteId stub = plain(), gone = plain();
  EXPECT_EQ(remove(stub, 0), 0);
  EXPECT_EQ(t.store->notes().state(stub), NoteState::Stub);
  EXPECT_EQ(remove(gone), 0);
  EXPECT_EQ(t.store->notes().state(gone), NoteState::Gone);
}

TEST_F(NoteDelete, TellsWhyThereIsNothingToDelete) {
  const NoteId stub = plain(), gone = plain();
  t.store->notes().remove(stub);
  t.store->notes().remove(gone, false);
  EXPECT_EQ(remove(stub), 0x0225);
  EXPECT_EQ(t.store->notes().state(stub), NoteState::Stub);
  EXPECT_EQ(remove(gone), 0x0227);
  EXPECT_EQ(remove(NoteId(gone.value() - 1)), 0x0227);
  EXPECT_EQ(remove(NoteId(0)), 0x0214);
  EXPECT_EQ(remove(NoteId(gone.value() + 4)), 0x0214);
  EXPECT_EQ(remove(NoteId(0x7FFFFFFC)), 0x0214);
  EXPECT_EQ(remove(NoteId(0xFFFF0010)), 0x0214);
}

TEST_F(NoteDelete, TakesNotesOfEveryClass) {
  for (const quint16 noteClass : {noteclass::Form, noteclass::View, noteclass::Filter, noteclass::Icon,
                                  noteclass::Acl, noteclass::SharedField}) {
    const NoteId id = plain(noteClass);
    EXPECT_EQ(remove(id), 0) << noteClass;
    EXPECT_EQ(t.store->notes().state(id), NoteState::Gone);
  }
}

TEST_F(NoteDelete, TakesADamagedNoteThatNothingElseCanOpen) {
  const NoteId id = plain();
  const QByteArray sql = "UPDATE note SET items = x'00112233' WHERE id = " + QByteArray::number(id.value());
  ASSERT_EQ(sqlite3_exec(t.store->handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  ASSERT_EQ(t.store->notes().state(id), NoteState::Damaged);
  EXPECT_EQ(remove(id), 0);
  EXPECT_EQ(remove(id), 0x0227);
}

TEST_F(NoteDelete, ADocumentWithResponsesGoesWithoutAStubOnlyByForce) {
  const NoteId parent = plain(), other = plain();
  Note main, response = noteOf({{u"A"_s, textValue(u"answer")}});
  ASSERT_TRUE(t.store->notes().read(parent, main));
  response.header.parent = main.header.unid;
  t.store->notes().save(response);
  EXPECT_EQ(remove(parent, kNoStub), 0x02F0);
  EXPECT_EQ(t.store->notes().state(parent), NoteState::Live);
  EXPECT_EQ(remove(other, kNoStub), 0);
  EXPECT_EQ(remove(parent, kForceNoStub), 0);
  EXPECT_EQ(t.store->notes().state(response.header.id), NoteState::Live);
  EXPECT_EQ(remove(response.header.id, kForce), 0);
}

TEST_F(NoteDelete, AResponseMayTellItsParentInAnItem) {
  const NoteId parent = plain(), other = plain();
  Note main;
  ASSERT_TRUE(t.store->notes().read(parent, main));
  const NoteId response =
      t.add({{u"A"_s, textValue(u"answer")}, {u"$Ref"_s, noteRefsValue({main.header.unid})}});
  EXPECT_EQ(remove(parent, kNoStub), 0x02F0);
  EXPECT_EQ(remove(other, kNoStub), 0);
  EXPECT_EQ(remove(response, kNoStub), 0);
  EXPECT_EQ(remove(parent, kNoStub), 0);
}

TEST_F(NoteDelete, ChangesNothingInAReadOnlyDatabase) {
  const QString file = t.workspace->dataDirectory() + u"/locked.nsf"_s;
  Note note = noteOf({{u"A"_s, textValue(u"x")}});
  t.workspace->createDatabase({}, u"locked.nsf"_s, {})->notes().save(note);
  ASSERT_TRUE(QFile::setPermissions(file, QFile::ReadOwner));
  DbHandle locked = 0;
  ASSERT_EQ(api.NSFDbOpen("locked.nsf", locked), 0);
  EXPECT_EQ(api.NSFNoteDelete(locked, qint32(note.header.id.value()), kForceNoStub), status::CannotAccess);
  NoteHandle open = 0;
  EXPECT_EQ(api.NSFNoteOpen(locked, qint32(note.header.id.value()), 0, open), 0);
  api.NSFDbClose(locked);
  QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
}

TEST_F(NoteDelete, TellsThoseWhoFollowTheDatabase) {
  QStringList told;
  t.workspace->setChangeListener([&](const DatabasePlace& place) { told.append(place.path); });
  const NoteId id = plain();
  remove(id);
  remove(id);
  EXPECT_EQ(told, QStringList(u"mail.nsf"_s));
}

TEST_F(NoteDelete, AnOpenNoteIsReadableUntilItIsClosed) {
  const NoteId id = plain();
  NoteHandle note = 0;
  ASSERT_EQ(api.NSFNoteOpen(db, qint32(id.value()), 0, note), 0);
  EXPECT_EQ(remove(id), 0);
  BlockId item, value;
  quint16 type = 0;
  quint32 length = 0;
  EXPECT_EQ(api.NSFItemInfo(note, "A", 1, item, type, value, length), 0);
  EXPECT_EQ(api.NSFNoteClose(note), 0);
}

TEST_F(NoteDelete, NeedsADatabase) {
  const NoteId id = plain();
  for (const DbHandle handle : {0u, db + 1, 0xFFFFFFFFu})
    EXPECT_EQ(api.NSFNoteDelete(handle, qint32(id.value()), kForceNoStub), status::BadHandle);
  api.NSFDbClose(db);
  EXPECT_EQ(remove(id), status::BadHandle);
  EXPECT_EQ(t.store->notes().state(id), NoteState::Live);
}
