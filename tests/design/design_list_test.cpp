#include "design/design_list.h"

#include "design/design_fixture.h"

namespace lens {
namespace {

struct ClassRow {
  const char16_t* entry;
  const char16_t* label;
};

constexpr ClassRow kClasses[] = {
    {u"SELECTACL", u"ACL"},
    {u"SELECTACTIONS", u"ACTIONS"},
    {u"SELECTAGENTS", u"AGENTS"},
    {u"SELECTDATABASESCRIPT", u"DATABASESCRIPT"},
    {u"SELECTDATACONNECTIONS", u"DATACONNECTIONS"},
    {u"SELECTDOCUMENTS", u"DOCUMENTS"},
    {u"SELECTFOLDERS", u"FOLDERS"},
    {u"SELECTFORMS", u"FORMS"},
    {u"SELECTFRAMESETS", u"FRAMESETS"},
    {u"SELECTHELPABOUT", u"HELPABOUT"},
    {u"SELECTHELPINDEX", u"HELPINDEX"},
    {u"SELECTHELPUSING", u"HELPUSING"},
    {u"SELECTICON", u"ICON"},
    {u"SELECTIMAGERESOURCES", u"IMAGERESOURCES"},
    {u"SELECTIONFORMULA", u"SELECTIONFORMULA"},
    {u"SELECTJAVARESOURCES", u"JAVARESOURCES"},
    {u"SELECTMISCCODEELEMENTS", u"MISCCODEELEMENTS"},
    {u"SELECTMISCFORMATELEMENTS", u"MISCFORMATELEMENTS"},
    {u"SELECTMISCINDEXELEMENTS", u"MISCINDEXELEMENTS"},
    {u"SELECTNAVIGATORS", u"NAVIGATORS"},
    {u"SELECTOUTLINES", u"OUTLINES"},
    {u"SELECTPAGES", u"PAGES"},
    {u"SELECTPROFILES", u"PROFILES"},
    {u"SELECTREPLICATIONFORMULAS", u"REPLICATIONFORMULAS"},
    {u"SELECTSCRIPTLIBRARIES", u"SCRIPTLIBRARIES"},
    {u"SELECTSHAREDFIELDS", u"SHAREDFIELDS"},
    {u"SELECTSTYLESHEETRESOURCES", u"STYLESHEETRESOURCES"},
    {u"SELECTSUBFORMS", u"SUBFORMS"},
    {u"SELECTVIEWS", u"VIEWS"},
};

const QString kDesignListProcedure = u"lstDesigns_DblClick"_s;

class DesignListTest : public DesignTest {};

TEST_F(DesignListTest, OffersTheClassesInTheirOrder) {
  start();
  QStringList entries;
  for (const ClassRow& row : kClasses) entries += QString::fromUtf16(row.entry);
  EXPECT_EQ(entries.size(), 29);
  EXPECT_EQ(rows("lstDesigns"), entries);
  EXPECT_TRUE(control<ListBox>("lstDesigns").isEnabled());
}

TEST_F(DesignListTest, SwitchesOnExactlyTheChosenClassAndNamesItInTheCaption) {
  start();
  for (const ClassRow& row : kClasses) {
    const QString entry = QString::fromUtf16(row.entry);
    notes().log.clear();
    list(entry);
    EXPECT_EQ(notes().log.filter(u"SELECT"_s), QStringList({u"SELECTALLNOTES"_s, entry}));
    EXPECT_EQ(caption(), QString::fromUtf16(row.label) + u" documents in: !!mail.nsf");
    EXPECT_EQ(state().gDocKind, "DESIGN");
  }
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DesignListTest, NamesEachNoteByItsNameOrTitleOrItsIdAlone) {
  Note both = noteWith(u"$Name"_s, textListValue({u"first"_s, u"second"_s}));
  both.add(u"$Title"_s, itemflag::Summary, textValue(u"unused"_s));
  const NoteId named = saved(both);
  const NoteId titled = saved(noteWith(u"$title"_s, textValue(u"Person|per"_s)));
  const NoteId bare = memo();
  const NoteId nameless = saved(noteWith(u"$Name"_s, textValue(QString())));
  const NoteId again = saved(noteWith(u"$Title"_s, textValue(u"Person|per"_s)));
  start();
  list(u"SELECTDOCUMENTS"_s);
  EXPECT_EQ(rows("idList"), QStringList({row(u"first"_s, named), row(u"Person|per"_s, titled), digits(bare),
                                         u"  # "_s + digits(nameless), row(u"Person|per"_s, again)}));
  EXPECT_EQ(text("lblCounter"), "5");
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DesignListTest, ShowsTheTitlesOfFormsAsTheyAreStored) {
  const NoteId person = design(noteclass::Form, u"Person|per"_s);
  const NoteId memoForm = design(noteclass::Form, u"Memo"_s);
  design(noteclass::Form, u"a page"_s, u"W"_s);
  start();
  list(u"SELECTFORMS"_s);
  EXPECT_EQ(rows("idList"), QStringList({row(u"Person|per"_s, person), row(u"Memo"_s, memoForm)}));
}

TEST_F(DesignListTest, LeavesTheLastNoteTheCollectionAndANewSession) {
  memo();
  const NoteId last = memo();
  start();
  control<ListBox>("fldList").addItem(u"old: row"_s);
  const Object session = state().gSession;
  list(u"SELECTDOCUMENTS"_s);
  EXPECT_FALSE(state().gSession == session);
  EXPECT_EQ(state().gDoc.get(u"NoteID"_s).text(), last.hexText());
  EXPECT_EQ(state().gNoteColl.get(u"count"_s).number(), 2);
  EXPECT_EQ(rows("fldList"), QStringList());
  EXPECT_EQ(host.yields, 2);
  EXPECT_EQ(host.pointers.last(2), QVector<int>({pointer::Hourglass, pointer::Default}));
}

TEST_F(DesignListTest, OfAnEmptyClassIsEmpty) {
  start();
  list(u"SELECTVIEWS"_s);
  EXPECT_EQ(rows("idList"), QStringList());
  EXPECT_EQ(text("lblCounter"), "0");
  EXPECT_EQ(state().gDocKind, "DESIGN");
  EXPECT_EQ(callsOf(u"GETDOCUMENTBYID"_s), 0);
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DesignListTest, WithoutAChosenEntryNamesNoClass) {
  memo();
  start();
  doubleClick();
  EXPECT_EQ(caption(), " documents in: !!mail.nsf");
  EXPECT_EQ(rows("idList"), QStringList());
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DesignListTest, TakesTheSelectionFormulaForAClassAndFindsNothing) {
  memo();
  start();
  list(u"SELECTIONFORMULA"_s);
  EXPECT_EQ(rows("idList"), QStringList());
  EXPECT_EQ(text("lblCounter"), "0");
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DesignListTest, ComparesEntriesWithRegardToCapitals) {
  memo();
  start();
  control<ListBox>("lstDesigns").setList(5, u"SelectDocuments"_s);
  select("lstDesigns", 5);
  doubleClick();
  EXPECT_EQ(caption(), " documents in: !!mail.nsf");
  EXPECT_EQ(rows("idList"), QStringList());
}

TEST_F(DesignListTest, NamesTheServerByItsCommonName) {
  openDatabase(u"disc.nsf"_s, u"CN=ACME-HUB01/O=Acme"_s);
  start();
  list(u"SELECTPROFILES"_s);
  EXPECT_EQ(caption(), "PROFILES documents in: ACME-HUB01!!disc.nsf");
}

TEST_F(DesignListTest, CutsALongNoteIdToItsLastEightDigits) {
  memo();
  start();
  notes().replies.insert(u"NOTEID"_s, u"12345678AB"_s);
  list(u"SELECTDOCUMENTS"_s);
  EXPECT_EQ(rows("idList"), QStringList(u"345678AB"_s));
}

TEST_F(DesignListTest, PassesOverANoteWithoutAnId) {
  memo();
  start();
  notes().replies.insert(u"NOTEID"_s, QString());
  list(u"SELECTDOCUMENTS"_s);
  EXPECT_EQ(rows("idList"), QStringList());
  EXPECT_EQ(text("lblCounter"), "0");
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DesignListTest, WithoutADatabaseChangesNothing) {
  profile(u"a"_s);
  start();
  control<ListBox>("fldList").addItem(u"old: row"_s);
  const QStringList before = rows("idList");
  const QString title = caption();
  ASSERT_EQ(before.size(), 1);
  closeDatabase();
  host.pointers.clear();
  list(u"SELECTDOCUMENTS"_s);
  EXPECT_EQ(host.boxes, Boxes({noDatabaseBox()}));
  EXPECT_EQ(host.pointers, QVector<int>({pointer::Hourglass, pointer::Default}));
  EXPECT_EQ(rows("idList"), before);
  EXPECT_EQ(rows("fldList"), QStringList(u"old: row"_s));
  EXPECT_EQ(caption(), title);
  EXPECT_EQ(state().gDocKind, "PROFILE");
  EXPECT_TRUE(state().gDb.isNothing());
}

TEST_F(DesignListTest, WritesTheFirstCaptionBeforeTheCollectionIsMade) {
  start();
  notes().failing.insert(u"CREATENOTECOLLECTION"_s, RuntimeError(70));
  list(u"SELECTDOCUMENTS"_s);
  EXPECT_EQ(caption(), "Documents in: !!mail.nsf");
  EXPECT_EQ(host.boxes, Boxes({errorBox(kDesignListProcedure, 70)}));
}

TEST_F(DesignListTest, EndsAtANoteThatIsDeletedMeanwhileAndKeepsItsRows) {
  const NoteId first = memo(), second = memo(), third = memo();
  start();
  setText("txtSearch", u"x"_s);
  const QString counter = text("lblCounter");
  host.whileYielding = [&] { database->notes().remove(second, false); };
  host.pointers.clear();
  list(u"SELECTDOCUMENTS"_s);
  EXPECT_EQ(rows("idList"), QStringList(digits(first)));
  EXPECT_EQ(host.boxes, Boxes({errorBox(kDesignListProcedure, err::ObjectNotSet)}));
  EXPECT_EQ(host.pointers, QVector<int>({pointer::Hourglass}));
  EXPECT_EQ(text("lblCounter"), counter);
  EXPECT_EQ(state().gDocKind, "PROFILE");
  EXPECT_EQ(caption(), "DOCUMENTS documents in: !!mail.nsf");
  EXPECT_EQ(database->notes().state(third), NoteState::Live);
}

TEST_F(DesignListTest, IsThatOfTheMomentItBegan) {
  const NoteId first = memo(), second = memo();
  start();
  host.whileYielding = [&] {
    if (host.yields != 1) return;
    database->notes().remove(first, false);
    memo();
  };
  host.yields = 0;
  list(u"SELECTDOCUMENTS"_s);
  EXPECT_EQ(rows("idList"), QStringList({digits(first), digits(second)}));
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DesignListTest, ShowsNoFieldsOfANoteThatIsGone) {
  const NoteId id = design(noteclass::Form, u"Memo"_s);
  start();
  list(u"SELECTFORMS"_s);
  database->notes().remove(id, false);
  select("idList", 0);
  click("cmdidList");
  EXPECT_EQ(rows("fldList"), QStringList());
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DesignListTest, EndsAtANameWithoutValues) {
  const NoteId first = memo();
  saved(noteWith(u"$Name"_s, textListValue({})));
  memo();
  start();
  list(u"SELECTDOCUMENTS"_s);
  EXPECT_EQ(rows("idList"), QStringList(digits(first)));
  EXPECT_EQ(host.boxes, Boxes({errorBox(kDesignListProcedure, err::TypeMismatch)}));
}

TEST_F(DesignListTest, LeavesAnHourglassThatTheNextClickTakesAway) {
  start();
  notes().failing.insert(u"BUILDCOLLECTION"_s, RuntimeError(70));
  list(u"SELECTDOCUMENTS"_s);
  EXPECT_EQ(host.pointerCode, pointer::Hourglass);
  click("fldList");
  EXPECT_EQ(host.pointerCode, pointer::Default);
  EXPECT_EQ(app->routines.mouseBusyCount(), 0);
}

TEST_F(DesignListTest, TakesACountedHourglassFromTheScreenButNotFromTheCount) {
  start();
  app->routines.SetMousePtr(pointer::Hourglass);
  list(u"SELECTVIEWS"_s);
  EXPECT_EQ(host.pointerCode, pointer::Default);
  EXPECT_EQ(app->routines.mouseBusyCount(), 1);
}

class ManyRows : public DesignTest {
 protected:
  // Walks over one note again and again, so that so many rows arise.
  void listRows(int count) {
    const NoteId id = memo();
    start();
    const Object same = documentObject(id);
    notes().replies = {{u"COUNT"_s, count}, {u"GETDOCUMENTBYID"_s, same}, {u"GETNEXTNOTEID"_s, digits(id)}};
    list(u"SELECTDOCUMENTS"_s);
    EXPECT_EQ(control<ListBox>("idList").listCount(), count);
  }
};

TEST_F(ManyRows, AreCountedUpTo32767) {
  listRows(32767);
  EXPECT_EQ(text("lblCounter"), "32767");
  EXPECT_EQ(state().gDocKind, "DESIGN");
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(ManyRows, OverflowTheCounterAndLeaveTheHourglass) {
  listRows(32768);
  EXPECT_EQ(host.boxes, Boxes({errorBox(kDesignListProcedure, err::Overflow)}));
  EXPECT_EQ(host.pointerCode, pointer::Hourglass);
  EXPECT_EQ(state().gDocKind, "PROFILE");
}

TEST_F(DesignListTest, LeadsToTheFieldsOfTheNoteInARow) {
  const NoteId id = design(noteclass::Form, u"Person|per"_s, u"C"_s);
  design(noteclass::Form, u"Memo"_s);
  start();
  list(u"SELECTFORMS"_s);
  select("idList", 0);
  form().idList->dblClick.fire();
  EXPECT_EQ(rows("fldList"), QStringList({u"$TITLE: Person|per"_s, u"$Flags: C"_s}));
  EXPECT_EQ(state().gDoc.get(u"NoteID"_s).text(), id.hexText());
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DesignListTest, LeadsToTheFormulaOfAViewWhoseRowHasTwoBlanks) {
  Note view = noteWith(u"$TITLE"_s, textValue(u"All"_s), noteclass::View);
  view.add(u"$Formula"_s, itemflag::Summary, textValue(u"x"_s));
  const NoteId id = save(view);
  notes().replies.insert(u"SELECTIONFORMULA"_s, u"SELECT @All"_s);
  start();
  list(u"SELECTVIEWS"_s);
  ASSERT_EQ(rows("idList"), QStringList(u"All  # "_s + digits(id)));
  select("idList", 0);
  click("cmdidList");
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(rows("fldList").last(), "$Formula: SELECT @All");
}

}  // namespace
}  // namespace lens
