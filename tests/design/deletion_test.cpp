#include "design/deletion.h"

#include "design/design_fixture.h"

namespace lens {
namespace {

class DeletionTest : public DesignTest {
 protected:
  static ShownBox toldBox(const QString& text) { return {text, box::Information, u"Remove doc"_s}; }
  ShownBox deleted(NoteId id) const { return toldBox(u"Successfully deleted NoteID "_s + digits(id)); }
  ShownBox notThere(NoteId id) {
    return toldBox(u"Unable to delete doc. Error was 551: "_s + app->routines.GetAPIError(551) + u" " +
                   digits(id));
  }
};

TEST_F(DeletionTest, RemovesTheMarkedProfilesAndNoOther) {
  const NoteId first = profile(u"a"_s), second = profile(u"b"_s), third = profile(u"c"_s);
  start();
  select("idList", 0);
  control<ListBox>("idList").setSelected(2, true);
  press("cmdDelete");
  EXPECT_EQ(rows("idList"), QStringList(profileRow(u"b"_s, second)));
  EXPECT_EQ(database->notes().state(first), NoteState::Stub);
  EXPECT_EQ(database->notes().state(second), NoteState::Live);
  EXPECT_EQ(database->notes().state(third), NoteState::Stub);
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_TRUE(form().cmdDelete->isEnabled());
}

TEST_F(DeletionTest, WithoutAMarkDoesNothing) {
  const NoteId id = profile(u"a"_s);
  start();
  notes().log.clear();
  press("cmdDelete");
  EXPECT_EQ(rows("idList"), QStringList(profileRow(u"a"_s, id)));
  EXPECT_EQ(notes().log, QStringList());
  control<ListBox>("idList").clear();
  press("cmdDelete");
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DeletionTest, TakesTwoNeighboursOneAfterTheOther) {
  const NoteId first = profile(u"a"_s), second = profile(u"b"_s);
  start();
  markRows({profileRow(u"a"_s, first), profileRow(u"b"_s, second)});
  press("cmdDelete");
  EXPECT_EQ(rows("idList"), QStringList());
  EXPECT_EQ(database->notes().state(first), NoteState::Stub);
  EXPECT_EQ(database->notes().state(second), NoteState::Stub);
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DeletionTest, EmptiesTheFieldViewAndRefreshesTheClientsView) {
  Note note = document(u"Memo"_s);
  note.add(u"Body"_s, 0, textValue(u"content"_s));
  openDocument(save(note));
  start();
  ASSERT_EQ(text("txtFieldContent"), "content");
  notes().log.clear();
  press("cmdDelete");
  EXPECT_EQ(rows("idList"), QStringList());
  EXPECT_EQ(rows("fldList"), QStringList());
  for (const char* name : {"NotesUID", "txtFieldName", "cmbFieldType", "txtFieldContent"})
    EXPECT_EQ(text(name), QString()) << name;
  EXPECT_EQ(rows("cmbFieldType").size(), 30) << "types can be chosen afterwards";
  EXPECT_EQ(callsOf(u"VIEWREFRESH"_s), 1);
  EXPECT_TRUE(state().gDoc.isNothing());
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DeletionTest, ReadsBareIdsAndDesignRowsAlike) {
  const NoteId bare = memo(), named = design(noteclass::Form, u"Person|per"_s);
  start();
  markRows({digits(bare), row(u"Person|per"_s, named)});
  press("cmdDelete");
  EXPECT_EQ(rows("idList"), QStringList());
  EXPECT_EQ(database->notes().state(bare), NoteState::Stub);
  EXPECT_EQ(database->notes().state(named), NoteState::Stub);
}

TEST_F(DeletionTest, ReallyRemovesADamagedNoteAndKeepsItsRowMarked) {
  const NoteId id = damaged();
  start();
  const QStringList texts{row(u"broken"_s, id)};
  markRows(texts);
  notes().log.clear();
  press("cmdDelete");
  EXPECT_EQ(host.boxes, Boxes({deleted(id)}));
  EXPECT_EQ(database->notes().state(id), NoteState::Gone);
  EXPECT_EQ(markedRows(), texts);
  EXPECT_EQ(callsOf(u"VIEWREFRESH"_s), 0);
  EXPECT_TRUE(state().gDoc.isNothing());
  host.boxes.clear();
  press("cmdDelete");
  EXPECT_EQ(host.boxes, Boxes({notThere(id)}));
  EXPECT_EQ(markedRows(), texts);
  EXPECT_EQ(engineCapi->openHandles(), 0);
}

TEST_F(DeletionTest, TellsAStubAGoneNoteAndAnIdThatNeverWasApart) {
  const NoteId stub = memo(), gone = memo(), kept = memo();
  database->notes().remove(stub);
  database->notes().remove(gone, false);
  start();
  markRows({digits(stub), digits(gone), digits(NoteId(kept.value() + 1)), digits(NoteId(kept.value() + 400)),
            u"00000000"_s});
  press("cmdDelete");
  Boxes expected;
  for (const auto& [status, id] :
       QVector<QPair<Status, QString>>{{0x0225, digits(stub)},
                                       {0x0227, digits(gone)},
                                       {0x0214, digits(NoteId(kept.value() + 1))},
                                       {0x0214, digits(NoteId(kept.value() + 400))},
                                       {0x0214, u"00000000"_s}})
    expected += toldBox(u"Unable to delete doc. Error was %1: "_s.arg(status) +
                        app->routines.GetAPIError(status) + u" " + id);
  EXPECT_EQ(host.boxes, expected);
  EXPECT_EQ(markedRows().size(), 5);
  EXPECT_EQ(database->notes().state(stub), NoteState::Stub);
  EXPECT_EQ(database->notes().state(kept), NoteState::Live);
}

TEST_F(DeletionTest, ReallyRemovesADamagedDesignNoteThatWasListedBefore) {
  const NoteId id = design(noteclass::Form, u"Memo"_s);
  start();
  list(u"SELECTFORMS"_s);
  select("idList", 0);
  damage(id);
  press("cmdDelete");
  EXPECT_EQ(host.boxes, Boxes({deleted(id)}));
  EXPECT_EQ(database->notes().state(id), NoteState::Gone);
}

TEST_F(DeletionTest, NeverRemovesTheDocumentOnDisplayInPlaceOfTheOneThatIsGone) {
  const NoteId shown = memo();
  openDocument(shown);
  start();
  const NoteId gone = memo();
  database->notes().remove(gone, false);
  ASSERT_FALSE(state().gDoc.isNothing());
  markRows({digits(gone)});
  press("cmdDelete");
  EXPECT_EQ(host.boxes, Boxes({notThere(gone)}));
  EXPECT_EQ(database->notes().state(shown), NoteState::Live);
  EXPECT_TRUE(state().gDoc.isNothing());
}

TEST_F(DeletionTest, TriesALowLevelRowAgainAfterARemovalBeforeTheEnd) {
  const NoteId bad = damaged(), good = memo(), other = memo();
  start();
  markRows({digits(bad), digits(good), digits(other)});
  control<ListBox>("idList").setSelected(2, false);
  press("cmdDelete");
  EXPECT_EQ(host.boxes, Boxes({deleted(bad), notThere(bad)}));
  EXPECT_EQ(rows("idList"), QStringList({digits(bad), digits(other)}));
  EXPECT_EQ(database->notes().state(other), NoteState::Live);
}

TEST_F(DeletionTest, EndsWhenTheRemovedRowWasTheLast) {
  const NoteId bad = damaged(), good = memo();
  start();
  markRows({digits(bad), digits(good)});
  press("cmdDelete");
  EXPECT_EQ(host.boxes, Boxes({deleted(bad)}));
  EXPECT_EQ(rows("idList"), QStringList(digits(bad)));
  EXPECT_EQ(database->notes().state(good), NoteState::Stub);
}

TEST_F(DeletionTest, GoesOnBehindALowLevelRow) {
  const NoteId first = damaged(), second = damaged();
  start();
  markRows({digits(first), digits(second)});
  press("cmdDelete");
  EXPECT_EQ(host.boxes, Boxes({deleted(first), deleted(second)}));
  EXPECT_EQ(markedRows().size(), 2);
}

TEST_F(DeletionTest, TakesNoPartOfANameForAnId) {
  const NoteId id = profile(u"a"_s);
  const QString older = digits(id) + u" " + profileName(u"a"_s);
  const QString tail = u"12 x  # "_s + digits(id);
  start();
  markRows({older, u"A # "_s + tail, u"name # 12"_s, u"# 123456789"_s, u"# 0000011G"_s});
  capi().log.clear();
  press("cmdDelete");
  const auto mismatch = [](const QString& text) {
    return toldBox(u"Notes error 13 occurred: Type mismatch "_s + text);
  };
  EXPECT_EQ(host.boxes, Boxes({mismatch(older), mismatch(tail), mismatch(u"12"_s), mismatch(u"123456789"_s),
                               mismatch(u"0000011G"_s)}));
  EXPECT_EQ(database->notes().state(id), NoteState::Live);
  EXPECT_EQ(capi().log.filter(u"NSFNoteDelete"_s), QStringList());
  EXPECT_EQ(capi().log.filter(u"NotesTerm"_s), QStringList());
  EXPECT_EQ(capi().log.filter(u"NSFDbClose"_s).size(), 5);
  EXPECT_EQ(engineCapi->openHandles(), 0);
}

// A listing that writes the ID first has names behind it, and a name may end in a mark and digits. None of
// the ways to write another note's ID in less or more than eight digits leads to that note.
TEST_F(DeletionTest, TakesNoEndOfANameForAnotherNotesId) {
  const NoteId listed = profile(u"a"_s), other = profile(u"b"_s);
  const QString id = other.hexText();
  start();
  const QString padded = digits(other);
  for (const QString& written : QStringList{id, id.toLower(), u"0"_s + id, padded.mid(1), u"0"_s + padded,
                                            u" "_s + id, id + u" "_s, u"0x"_s + id}) {
    if (written.size() == 8) continue;
    markRows({digits(listed) + u" Plan # " + written});
    host.boxes.clear();
    press("cmdDelete");
    EXPECT_EQ(host.boxes, Boxes({toldBox(u"Notes error 13 occurred: Type mismatch "_s + written)}));
    EXPECT_EQ(rows("idList").size(), 1);
  }
  EXPECT_EQ(database->notes().state(listed), NoteState::Live);
  EXPECT_EQ(database->notes().state(other), NoteState::Live);
}

TEST_F(DeletionTest, ClearsTheTopBitOfAnId) {
  const NoteId bad = damaged();
  start();
  markRows({digits(NoteId(bad.value() | 0x80000000u))});
  press("cmdDelete");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0],
            toldBox(u"Successfully deleted NoteID "_s + digits(NoteId(bad.value() | 0x80000000u))));
  EXPECT_EQ(database->notes().state(bad), NoteState::Gone);
}

TEST_F(DeletionTest, EndsSilentlyAtARowWithoutAnId) {
  const NoteId before = damaged(), behind = memo();
  start();
  markRows({digits(before), u"a name  # "_s, digits(behind)});
  capi().log.clear();
  press("cmdDelete");
  EXPECT_EQ(host.boxes, Boxes({deleted(before)}));
  EXPECT_EQ(database->notes().state(behind), NoteState::Live);
  EXPECT_EQ(rows("idList").size(), 3);
}

TEST_F(DeletionTest, EndsWithoutADatabase) {
  const NoteId id = memo();
  start();
  markRows({digits(id), digits(id)});
  state().gDb.release();
  press("cmdDelete");
  EXPECT_EQ(host.boxes, Boxes({noDatabaseBox()}));
  EXPECT_EQ(rows("idList").size(), 2);
  EXPECT_EQ(database->notes().state(id), NoteState::Live);
}

TEST_F(DeletionTest, DeletesInTheDatabaseOfTheListAndNotInTheOneThatIsShownNow) {
  const auto mail = database;
  const NoteId id = profile(u"a"_s);
  start();
  select("idList", 0);
  openDatabase(u"other.nsf"_s);
  const NoteId other = profile(u"b"_s);
  press("cmdDelete");
  EXPECT_EQ(mail->notes().state(id), NoteState::Stub);
  EXPECT_EQ(database->notes().state(other), NoteState::Live);
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DeletionTest, OfADatabaseThatCannotBeOpenedSaysSoAndGoesOn) {
  const NoteId id = damaged();
  start();
  markRows({digits(id), digits(id)});
  notes().replies.insert(u"FILEPATH"_s, u"gone.nsf"_s);
  notes().replies.insert(u"SERVER"_s, u"CN=ACME-HUB01/O=Acme"_s);
  capi().log.clear();
  press("cmdDelete");
  DbHandle db = 0;
  const Status status = engineCapi->NSFDbOpen("CN=ACME-HUB01/O=Acme!!gone.nsf", db);
  ASSERT_NE(status, 0);
  const ShownBox expected = toldBox(
      u"Cannot open database gone.nsf on server CN=ACME-HUB01/O=Acme. Error was %1: "_s.arg(qint16(status)) +
      app->routines.GetAPIError(status) + u" " + digits(id));
  EXPECT_EQ(host.boxes, Boxes({expected, expected}));
  const QStringList once{u"NotesInitExtended"_s, u"OSPathNetConstruct"_s, u"NSFDbOpen"_s,
                         u"NotesInitExtended"_s, u"OSLoadString"_s,       u"NotesTerm"_s};
  EXPECT_EQ(capi().log.mid(0, 12), once + once) << "the library stays open here";
  EXPECT_EQ(database->notes().state(id), NoteState::Damaged);
  // Whatever uses the library later works on.
  host.boxes.clear();
  notes().replies.clear();
  press("cmdDelete");
  EXPECT_EQ(host.boxes, Boxes({deleted(id), notThere(id)}));
}

TEST_F(DeletionTest, UsesTheLibraryInItsOrder) {
  const NoteId id = damaged();
  start();
  markRows({digits(id)});
  capi().log.clear();
  press("cmdDelete");
  EXPECT_EQ(capi().log, QStringList({u"NotesInitExtended"_s, u"OSPathNetConstruct"_s, u"NSFDbOpen"_s,
                                     u"NSFNoteDelete"_s, u"NSFDbClose"_s, u"NotesTerm"_s}));
}

TEST_F(DeletionTest, ThatTheObjectModelRefusesEndsWithItsReason) {
  const NoteId first = memo(), second = memo();
  start();
  markRows({digits(first), digits(second)});
  capi().log.clear();
  for (const int number : {4102, 4000}) {
    host.boxes.clear();
    notes().failing.insert(u"REMOVE"_s, RuntimeError(number, u"the note is held"_s));
    press("cmdDelete");
    EXPECT_EQ(host.boxes, Boxes({{u"the note is held"_s, box::Critical, u"Remove Profiles"_s}}));
    EXPECT_EQ(markedRows().size(), 2);
  }
  EXPECT_EQ(capi().log, QStringList()) << "the second level is for notes that are not found";
  EXPECT_EQ(database->notes().state(first), NoteState::Live);
}

TEST_F(DeletionTest, ThatTheStoreRefusesEndsWithItsReasonAndKeepsTheNote) {
  const NoteId id = memo();
  database.reset();
  start();
  markRows({digits(id)});
  ASSERT_TRUE(state().gDb);
  // Triggers of the file itself would not be run.
  const auto held = workspace->database(QString(), u"mail.nsf"_s);
  ASSERT_EQ(
      sqlite3_exec(held->handle(),
                   "CREATE TEMP TRIGGER held BEFORE UPDATE ON main.note BEGIN SELECT RAISE(ABORT, 'held');"
                   " END;"
                   "CREATE TEMP TRIGGER kept BEFORE DELETE ON main.note BEGIN SELECT RAISE(ABORT, 'held');"
                   " END",
                   nullptr, nullptr, nullptr),
      SQLITE_OK);
  press("cmdDelete");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].style, box::Critical);
  EXPECT_EQ(host.boxes[0].title, "Remove Profiles");
  EXPECT_EQ(markedRows().size(), 1);
  sqlite3_exec(held->handle(), "DROP TRIGGER held; DROP TRIGGER kept", nullptr, nullptr, nullptr);
  host.boxes.clear();
  press("cmdDelete");
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(rows("idList"), QStringList());
}

TEST_F(DeletionTest, RefreshesNoViewWhereNoneIsOpenAndSaysNothing) {
  const NoteId id = memo();
  start();
  closeDatabase();
  markRows({digits(id)});
  press("cmdDelete");
  EXPECT_EQ(database->notes().state(id), NoteState::Stub);
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DeletionTest, WithRowsThatComeInMeanwhileEndsAtTheOldEnd) {
  const NoteId bad = damaged();
  start();
  markRows({digits(bad)});
  host.whileBoxIsShown = [&](const ShownBox&) { control<ListBox>("idList").addItem(digits(bad)); };
  press("cmdDelete");
  EXPECT_EQ(host.boxes, Boxes({deleted(bad)}));
  EXPECT_EQ(rows("idList").size(), 2);
}

}  // namespace
}  // namespace lens
