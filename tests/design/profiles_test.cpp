#include "design/profiles.h"

#include "design/design_fixture.h"

namespace lens {
namespace {

const QString kProfilesProcedure = u"cmdGetProfiels_Click"_s;

class ProfilesTest : public DesignTest {};

TEST_F(ProfilesTest, AreListedWithTheirNamesAndIds) {
  const NoteId first = profile(u"a"_s);
  memo();
  const NoteId second = profile(u"calendarprofile"_s);
  start();
  control<ListBox>("fldList").addItem(u"old: row"_s);
  const Object session = state().gSession;
  setText("txtFieldContent", u"stays"_s);
  host.yields = 0;
  host.pointers.clear();
  click("cmdGetProfiels");
  EXPECT_EQ(rows("idList"),
            QStringList({profileRow(u"a"_s, first), profileRow(u"calendarprofile"_s, second)}));
  EXPECT_EQ(rows("fldList"), QStringList());
  EXPECT_EQ(text("lblCounter"), "2");
  EXPECT_EQ(text("lastModified"), u"Database size: %1 bytes"_s.arg(database->size()));
  EXPECT_EQ(caption(), "PROFILE documents in: !!mail.nsf");
  EXPECT_EQ(state().gDocKind, "PROFILE");
  EXPECT_TRUE(state().gDoc.isNothing());
  EXPECT_TRUE(state().gNoteColl.isNothing());
  EXPECT_FALSE(state().gSession == session);
  EXPECT_EQ(text("txtFieldContent"), "stays");
  EXPECT_EQ(host.yields, 0);
  EXPECT_EQ(host.pointers, QVector<int>());
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_TRUE(form().cmdGetProfiels->isEnabled());
}

TEST_F(ProfilesTest, OfADatabaseWithoutThemAreAnEmptyList) {
  openDocument(memo());
  start();
  EXPECT_EQ(state().gDocKind, "UIDOC");
  EXPECT_FALSE(state().gDoc.isNothing());
  click("cmdGetProfiels");
  EXPECT_EQ(rows("idList"), QStringList());
  EXPECT_EQ(text("lblCounter"), "0");
  EXPECT_EQ(state().gDocKind, "PROFILE");
  EXPECT_TRUE(state().gDoc.isNothing());
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(ProfilesTest, OfADatabaseOnAServerNameTheServer) {
  openDatabase(u"disc.nsf"_s, u"CN=ACME-HUB01/O=Acme"_s);
  start();
  click("cmdGetProfiels");
  EXPECT_EQ(caption(), "PROFILE documents in: ACME-HUB01!!disc.nsf");
}

TEST_F(ProfilesTest, AreTheFirstScreenWhenNoDocumentIsOpen) {
  const NoteId id = profile(u"a"_s);
  start();
  EXPECT_EQ(rows("idList"), QStringList(profileRow(u"a"_s, id)));
  EXPECT_EQ(state().gDocKind, "PROFILE");
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(ProfilesTest, WithoutADatabaseAreNotListedAndNothingChanges) {
  const NoteId id = profile(u"a"_s);
  start();
  control<ListBox>("fldList").addItem(u"old: row"_s);
  const QString title = caption();
  closeDatabase();
  state().gDocKind = u"DESIGN"_s;
  click("cmdGetProfiels");
  EXPECT_EQ(host.boxes, Boxes({noDatabaseBox()}));
  EXPECT_EQ(rows("idList"), QStringList(profileRow(u"a"_s, id)));
  EXPECT_EQ(rows("fldList"), QStringList(u"old: row"_s));
  EXPECT_EQ(caption(), title);
  EXPECT_EQ(state().gDocKind, "DESIGN");
}

TEST_F(ProfilesTest, AtAStartWithoutADatabaseAddTheirBoxToThatOfTheCapture) {
  closeDatabase();
  start();
  EXPECT_EQ(host.boxes, Boxes({noDatabaseBox(), noDatabaseBox()}));
  host.boxes.clear();
  click("cmdFldtype");
  EXPECT_EQ(host.boxes, Boxes({noDatabaseBox()}));
}

TEST_F(ProfilesTest, OneThatCannotBeHadCostsOneBox) {
  const NoteId first = profile(u"a"_s);
  profile(u"b"_s);
  const NoteId third = profile(u"c"_s);
  start();
  for (const int number : {70, 4000}) {
    host.boxes.clear();
    state().gDocKind = u"UIDOC"_s;
    notes().log.clear();
    // The second lookup: the first note's three calls lie between.
    const QStringList calls = [&] {
      click("cmdGetProfiels");
      return notes().log;
    }();
    notes().log.clear();
    notes().failNumber = number;
    notes().failAt = int(calls.indexOf(u"GETNTHDOCUMENT"_s, calls.indexOf(u"GETNTHDOCUMENT"_s) + 1)) + 1;
    click("cmdGetProfiels");
    notes().failAt = 0;
    EXPECT_EQ(host.boxes, Boxes({errorBox(kProfilesProcedure, number)}));
    EXPECT_EQ(rows("idList"), QStringList({profileRow(u"a"_s, first), profileRow(u"c"_s, third)}));
    EXPECT_EQ(text("lblCounter"), "2");
    EXPECT_EQ(state().gDocKind, "PROFILE");
    EXPECT_TRUE(state().gDoc.isNothing());
  }
}

TEST_F(ProfilesTest, OneThatLosesItsNameMeanwhileCostsOneBox) {
  const NoteId first = profile(u"a"_s), second = profile(u"b"_s), third = profile(u"c"_s);
  start();
  notes().log.clear();
  notes().onCall = [&](const QString& name) {
    if (name != u"GETNTHDOCUMENT" || callsOf(name) != 2) return;
    Note note;
    ASSERT_TRUE(database->notes().read(second, note));
    note.items.clear();
    database->notes().save(note);
  };
  click("cmdGetProfiels");
  EXPECT_EQ(host.boxes, Boxes({errorBox(kProfilesProcedure, err::TypeMismatch)}));
  EXPECT_EQ(rows("idList"), QStringList({profileRow(u"a"_s, first), profileRow(u"c"_s, third)}));
  EXPECT_EQ(state().gDocKind, "PROFILE");
}

TEST_F(ProfilesTest, OneThatIsDeletedMeanwhileCostsOneBox) {
  const NoteId first = profile(u"a"_s), second = profile(u"b"_s), third = profile(u"c"_s);
  start();
  notes().log.clear();
  notes().onCall = [&](const QString& name) {
    if (name == u"GETNTHDOCUMENT" && callsOf(name) == 2) database->notes().remove(second, false);
  };
  click("cmdGetProfiels");
  EXPECT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(rows("idList"), QStringList({profileRow(u"a"_s, first), profileRow(u"c"_s, third)}));
  EXPECT_EQ(state().gDocKind, "PROFILE");
}

TEST_F(ProfilesTest, ThatAreNoCollectionCostABoxForItAndOneForItsCount) {
  profile(u"a"_s);
  start();
  notes().failing.insert(u"GETPROFILEDOCCOLLECTION"_s, RuntimeError(4101, u"no luck"_s));
  click("cmdGetProfiels");
  EXPECT_EQ(host.boxes, Boxes({errorBox(kProfilesProcedure, 4101, u"no luck"_s),
                               errorBox(kProfilesProcedure, err::ObjectNotSet)}));
  EXPECT_EQ(rows("idList"), QStringList());
  EXPECT_EQ(text("lblCounter"), "0");
  EXPECT_EQ(state().gDocKind, "PROFILE");
}

TEST_F(ProfilesTest, WithoutAClientCostABoxForTheSessionAndOneForItsDatabase) {
  const NoteId id = profile(u"a"_s);
  start();
  notes().failing.insert(u"NOTES.NOTESSESSION"_s, RuntimeError(err::CannotCreateObject));
  click("cmdGetProfiels");
  EXPECT_EQ(host.boxes, Boxes({errorBox(kProfilesProcedure, err::CannotCreateObject),
                               errorBox(kProfilesProcedure, err::ObjectNotSet), noDatabaseBox()}));
  EXPECT_EQ(rows("idList"), QStringList(profileRow(u"a"_s, id)));
  EXPECT_TRUE(state().gSession.isNothing());
  EXPECT_TRUE(state().gDb.isNothing()) << "nothing of the listing before is taken for the client's";
}

TEST_F(ProfilesTest, LetTheClientsWorkspaceGo) {
  openDocument(memo());
  start();
  ASSERT_FALSE(state().gUIWorkspace.isNothing());
  click("cmdGetProfiels");
  EXPECT_TRUE(state().gUIWorkspace.isNothing());
}

TEST_F(ProfilesTest, PassOverANoteWithoutAnId) {
  profile(u"a"_s);
  start();
  notes().replies.insert(u"NOTEID"_s, QString());
  click("cmdGetProfiels");
  EXPECT_EQ(rows("idList"), QStringList());
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(ProfilesTest, CutALongNoteIdToItsLastEightDigits) {
  profile(u"a"_s);
  start();
  notes().replies.insert(u"NOTEID"_s, u"12345678AB"_s);
  click("cmdGetProfiels");
  EXPECT_EQ(rows("idList"), QStringList(profileName(u"a"_s) + u"  # 345678AB"));
}

TEST_F(ProfilesTest, AreCountedUpTo32767AndOverflowTheCounterBeyond) {
  const NoteId id = profile(u"a"_s);
  start();
  notes().replies.insert(u"GETNTHDOCUMENT"_s, documentObject(id));
  for (const int count : {32767, 32768}) {
    host.boxes.clear();
    state().gDocKind = u"UIDOC"_s;
    notes().replies.insert(u"COUNT"_s, count);
    click("cmdGetProfiels");
    EXPECT_EQ(control<ListBox>("idList").listCount(), count);
    EXPECT_EQ(text("lblCounter"), "32767");
    EXPECT_EQ(state().gDocKind, "PROFILE");
  }
  EXPECT_EQ(host.boxes, Boxes({errorBox(kProfilesProcedure, err::Overflow)}));
}

TEST_F(ProfilesTest, LeadToTheirFields) {
  profile(u"a"_s);
  start();
  select("idList", 0);
  click("cmdidList");
  EXPECT_EQ(rows("fldList"), QStringList(u"$Name: "_s + profileName(u"a"_s)));
  EXPECT_EQ(host.boxes, Boxes());
}

class UnprocessedDocuments : public DesignTest {};

TEST_F(UnprocessedDocuments, AreRemovedWithoutAQuestion) {
  const NoteId first = memo(), kept = memo(), second = memo();
  start();
  selectDocuments({first, second});
  app->profiles.removeUnprocessedDocuments();
  EXPECT_EQ(database->notes().state(first), NoteState::Stub);
  EXPECT_EQ(database->notes().state(second), NoteState::Stub);
  EXPECT_EQ(database->notes().state(kept), NoteState::Live);
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(UnprocessedDocuments, OfNoSelectionAreLeftAlone) {
  const NoteId id = memo();
  start();
  app->profiles.removeUnprocessedDocuments();
  EXPECT_EQ(callsOf(u"REMOVEALL"_s), 0);
  EXPECT_EQ(database->notes().state(id), NoteState::Live);
}

TEST_F(UnprocessedDocuments, LeaveAFailureToTheCaller) {
  start();
  state().gDb.release();
  EXPECT_THROW(app->profiles.removeUnprocessedDocuments(), RuntimeError);
  EXPECT_EQ(host.boxes, Boxes());
}

}  // namespace
}  // namespace lens
