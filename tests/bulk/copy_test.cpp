// "Copy": what reaches the target, what is told, and what the window shows.
#include <QBuffer>

#include "bulk/operations_fixture.h"
#include "embedded/model/shown_files.h"
#include "embedded/richtext/rich_text.h"

namespace lens {
namespace {

const QString kTrace = QStringLiteral("qvCopiedFromAt");

class Copying : public OperationsTest {
 protected:
  void copy() { press(window.cmdCopy); }
  static ShownBox refused(const QString& text) { return refusal(text, u"Copy Docs"_s); }
  static ShownBox failed(int number) { return failure(u"in Copy"_s, number); }
  // What differs between a document and its copy, by item.
  static QStringList changedItems(const Note& before, const Note& after) {
    QStringList names;
    for (const Item& item : after.items) {
      const Item* old = before.find(item.name);
      if (!old || old->value != item.value || old->flags != item.flags) names += item.name;
    }
    for (const Item& item : before.items)
      if (!after.has(item.name)) names += u"lost "_s + item.name;
    return names;
  }
};

TEST_F(Copying, ChangesNothingOnACopyButItsTrace) {
  Note note = memoNote(u"one"_s);
  note.add(u"When"_s, itemflag::Summary, timeValue(timeDateNow()));
  note.add(u"Count"_s, itemflag::Summary, numberListValue({1, 2.5}));
  note.add(u"Body"_s, 0, rawValue(itemtype::RichText, RichText().toBytes()));
  const NoteId id = save(note);
  memo(u"two"_s);
  chooseView();
  markFields({u"Subject: one"_s, u"Count: 1"_s}, u"one"_s, u"1"_s);
  window.chkFields->setValue(0);
  provideSound();
  copy();
  EXPECT_EQ(host.boxes, Boxes());
  ASSERT_EQ(subjects(*target), QStringList({u"one"_s, u"two"_s}));
  Note original;
  ASSERT_TRUE(source->notes().read(id, original));
  const Note made = documents(*target).first();
  EXPECT_EQ(changedItems(original, made), QStringList(kTrace));
  EXPECT_NE(made.header.unid, original.header.unid);
  for (const Note& copied : documents(*target))
    EXPECT_EQ(values(copied, kTrace), QStringList(u"!!source.nsf at: 11.03.2024 14:05:09"_s));
  EXPECT_FALSE(original.has(kTrace));
  EXPECT_EQ(processed(), "2");
  EXPECT_EQ(selectedCount(), "2");
  EXPECT_EQ(host.sounds, QStringList(host.programDir + u"/done.wav"_s));
  EXPECT_EQ(host.pointers, QVector<int>({pointer::ArrowHourglass, pointer::Default}));
  EXPECT_EQ(host.yields, 2);
  EXPECT_EQ(globals.gDbPath, "source.nsf");
  EXPECT_EQ(globals.gDestDbPath, "target.nsf");
}

TEST_F(Copying, NamesTheServerInTheTraceOfACopyFromAServer) {
  chooseView();
  chooseSource(u"target.nsf"_s, kHub);
  chooseTarget(u"source.nsf"_s, u"Local"_s);
  Note all = testbed::viewNote(u"All"_s, {});
  target->notes().save(all);
  Note note = memoNote(u"there"_s);
  target->notes().save(note);
  copy();
  ASSERT_EQ(subjects(*source), QStringList(u"there"_s));
  EXPECT_EQ(values(documents(*source).first(), kTrace),
            QStringList(u"CN=Hub/O=Acme!!target.nsf at: 11.03.2024 14:05:09"_s));
}

TEST_F(Copying, StampsDateAndTimeInFullInEveryRegion) {
  memo(u"one"_s);
  chooseView();
  const auto stamp = [&] {
    copy();
    return values(documents(*target).last(), kTrace).first().section(u" at: "_s, 1);
  };
  host.clock = QDateTime(QDate(2024, 3, 11), QTime(0, 0, 0));
  EXPECT_EQ(stamp(), "11.03.2024 00:00:00");
  host.setRegion(QLocale(QLocale::English, QLocale::UnitedStates));
  host.clock = QDateTime(QDate(2024, 3, 11), QTime(14, 5, 9));
  EXPECT_EQ(stamp(), "3/11/2024 2:05:09 PM");
  host.clock = QDateTime(QDate(2024, 3, 11), QTime(0, 0, 0));
  EXPECT_EQ(stamp(), "3/11/2024 12:00:00 AM");
}

TEST_F(Copying, StampsAllCopiesOfARunAlike) {
  memos(3);
  chooseView();
  host.whileYielding = [this] { host.clock = host.clock.addSecs(60); };
  copy();
  for (const Note& made : documents(*target))
    EXPECT_EQ(values(made, kTrace), QStringList(u"!!source.nsf at: 11.03.2024 14:05:09"_s));
}

// --- What has to be chosen -----------------------------------------------------------------------------

TEST_F(Copying, SaysNothingWithoutViews) {
  copy();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(host.pointers, QVector<int>({pointer::Default}));
  EXPECT_EQ(notes().log, QStringList());
}

TEST_F(Copying, AsksForViewThenSourceThenTargetBeforeAnythingIsOpened) {
  window.lstViewNames->addItem(u"All"_s);
  const QVector<int> normal{pointer::Default};
  copy();
  EXPECT_EQ(host.boxes, Boxes({refused(u"Choose source view!!"_s)}));
  window.lstViewNames->setSelected(0, true);
  copy();
  window.lstDBNames->addItem(u"source.nsf"_s);
  window.lstDBNames->addItem(u"other.nsf"_s);
  window.lstDBNames->setSelected(0, true);
  window.lstDBNames->setSelected(1, true);
  window.lstDBNames->setSelected(1, false);  // as Ctrl and a click on it
  window.lstDBNames->setListIndex(1);
  window.lstDBNames->setSelected(1, false);
  ASSERT_TRUE(window.lstDBNames->selected(0));
  copy();
  window.lstDBNames->setSelected(1, true);
  window.lstDBNames->setListIndex(0);
  copy();
  EXPECT_EQ(host.boxes,
            Boxes({refused(u"Choose source view!!"_s), refused(u"Choose Source database!!"_s),
                   refused(u"Choose Source database!!"_s), refused(u"Choose Destination database!!"_s)}));
  EXPECT_EQ(host.pointers, normal + normal + normal + normal);
  EXPECT_EQ(notes().log, QStringList());
}

TEST_F(Copying, RefusesATargetRowWithoutAPathOnceTheSourceIsOpen) {
  chooseView();
  chooseTarget(QString());
  copy();
  EXPECT_EQ(host.boxes, Boxes({refused(u"Choose Destination database!!"_s)}));
  EXPECT_EQ(callsOf(u"GETDATABASE"_s), 1);
  EXPECT_EQ(host.pointers, QVector<int>({pointer::ArrowHourglass, pointer::Default}));
}

TEST_F(Copying, TakesOnlyTheCurrentRowOfSeveralSources) {
  memo(u"one"_s);
  workspace->createDatabase({}, u"another.nsf"_s, {});
  chooseView();
  window.lstDBNames->addItem(u"another.nsf"_s);
  window.lstDBNames->setSelected(0, true);
  window.lstDBNames->setSelected(1, true);
  ASSERT_EQ(window.lstDBNames->text(), "source.nsf");
  copy();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*target), QStringList(u"one"_s));
}

TEST_F(Copying, ReadsTheDesignBeforeTheView) {
  memo(u"one"_s);
  chooseView();
  markFields({u"Subject: one"_s}, u"o"_s, u"0"_s);
  copy();
  const QStringList expected{u"GETDATABASE"_s,
                             u"GETDATABASE"_s,
                             u"CREATENOTECOLLECTION"_s,
                             u"SELECTVIEWS"_s,
                             u"BUILDCOLLECTION"_s,
                             u"GETFIRSTNOTEID"_s,
                             u"GETDOCUMENTBYID"_s,
                             u"GETVIEW"_s,
                             u"ALLENTRIES"_s,
                             u"GETFIRSTENTRY"_s,
                             u"ISDOCUMENT"_s,
                             u"DOCUMENT"_s,
                             u"COPYTODATABASE"_s,
                             u"HASITEM"_s,
                             u"GETITEMVALUE"_s,
                             u"REPLACEITEMVALUE"_s,
                             u"server"_s,
                             u"FILEPATH"_s,
                             u"REPLACEITEMVALUE"_s,
                             u"SAVE"_s,
                             u"GETNEXTENTRY"_s,
                             u"ALLENTRIES"_s,
                             u"count"_s};
  EXPECT_EQ(notes().log, expected);
}

// --- Fields --------------------------------------------------------------------------------------------

TEST_F(Copying, ReplacesInMarkedItemsAndMakesTextOfTheirValues) {
  Note note = memoNote(u"pump Pump pump"_s);
  note.add(u"Kinds"_s, itemflag::Summary, textListValue({u"pump a"_s, u"b"_s, u"pump c"_s}));
  note.add(u"Count"_s, itemflag::Summary, numberValue(1.5));
  note.add(u"Counts"_s, itemflag::Summary, numberListValue({1, 2.5}));
  note.add(u"Left"_s, itemflag::Summary, textValue(u"pump"_s));
  save(note);
  memo(u"no kinds"_s);
  chooseView();
  markFields({u"Subject: pump"_s, u"Kinds: pump: a"_s, u"Count: 1"_s, u"Counts: 1"_s, u"no colon"_s, u": x"_s,
              u"  : y"_s, u"Left: pump"_s},
             u"pump"_s, u"valve"_s);
  for (int row = 0; row < window.fldList->listCount(); ++row)
    if (window.fldList->list(row).startsWith(u"Left")) window.fldList->setSelected(row, false);
  copy();
  EXPECT_EQ(host.boxes, Boxes());
  const QVector<Note> made = documents(*target);
  ASSERT_EQ(made.size(), 2);
  const Note& other = made.first().text(u"Subject") == u"no kinds" ? made.first() : made.last();
  const Note& changed = made.first().text(u"Subject") == u"no kinds" ? made.last() : made.first();
  EXPECT_EQ(values(changed, u"Subject"_s), QStringList(u"valve Pump valve"_s)) << "capitals are told apart";
  EXPECT_EQ(values(changed, u"Kinds"_s), QStringList({u"valve a"_s, u"b"_s, u"valve c"_s}));
  EXPECT_EQ(values(changed, u"Count"_s), QStringList(u"1.5"_s));
  EXPECT_EQ(changed.find(u"Count")->type(), itemtype::Text);
  EXPECT_EQ(values(changed, u"Counts"_s), QStringList({u"1"_s, u"2.5"_s}));
  EXPECT_EQ(changed.find(u"Counts")->type(), itemtype::TextList);
  EXPECT_EQ(values(changed, u"Left"_s), QStringList(u"pump"_s)) << "not marked";
  EXPECT_FALSE(other.has(u"Kinds"));
  EXPECT_EQ(values(documents(*source).first(), u"Subject"_s), QStringList(u"pump Pump pump"_s));
}

TEST_F(Copying, ARowWithABlankNameIsNeverAskedFor) {
  memo(u"one"_s);
  chooseView();
  markFields({u": x"_s, u"   : y"_s, u"no colon"_s});
  copy();
  EXPECT_EQ(callsOf(u"HASITEM"_s), 0);
  EXPECT_EQ(subjects(*target), QStringList(u"one"_s));
}

TEST_F(Copying, TakesAHighlightedRowWithoutACheckForUnmarked) {
  memo(u"one"_s);
  chooseView();
  markFields({u"Subject: one"_s}, u"one"_s, u"1"_s);
  window.fldList->setSelected(0, false);
  window.fldList->setListIndex(0);
  window.fldList->setSelected(0, false);
  copy();
  EXPECT_EQ(subjects(*target), QStringList(u"one"_s));
}

TEST_F(Copying, AnEmptySearchTextChangesNoTextButMakesTextOfNumbers) {
  Note note = memoNote(u"one"_s);
  note.add(u"Count"_s, itemflag::Summary, numberValue(7));
  save(note);
  chooseView();
  markFields({u"Count: 7"_s, u"Subject: one"_s}, QString(), u"x"_s);
  copy();
  const Note made = documents(*target).first();
  EXPECT_EQ(values(made, u"Subject"_s), QStringList(u"one"_s));
  EXPECT_EQ(made.find(u"Count")->type(), itemtype::Text);
  EXPECT_EQ(values(made, u"Count"_s), QStringList(u"7"_s));
}

TEST_F(Copying, TakesTextsThatAreChangedDuringTheRun) {
  memos(2);
  chooseView();
  markFields({u"Subject: m"_s}, u"m"_s, u"a"_s);
  host.whileYielding = [this] { window.txtReplace->setText(u"b"_s); };
  copy();
  EXPECT_EQ(subjects(*target), QStringList({u"a1"_s, u"b2"_s}));
}

// --- What is in the view -------------------------------------------------------------------------------

TEST_F(Copying, CountsCategoriesAndCopiesADocumentOfTwoCategoriesTwice) {
  view(u"Kinds"_s, {.columns = {testbed::category(u"Kind"_s), testbed::sorted(u"Subject"_s)}});
  Note note = memoNote(u"both"_s);
  note.add(u"Kind"_s, itemflag::Summary, textListValue({u"x"_s, u"y"_s}));
  save(note);
  chooseView(u"Kinds"_s);
  copy();
  EXPECT_EQ(subjects(*target), QStringList({u"both"_s, u"both"_s}));
  EXPECT_EQ(processed(), "4");
  EXPECT_EQ(selectedCount(), "4");
  EXPECT_EQ(host.yields, 2);
}

TEST_F(Copying, ASecondRunAddsFurtherCopies) {
  memo(u"one"_s);
  chooseView();
  copy();
  copy();
  EXPECT_EQ(subjects(*target), QStringList({u"one"_s, u"one"_s}));
}

TEST_F(Copying, IntoTheSourceItselfEnds) {
  memos(3);
  chooseView();
  chooseTarget(u"source.nsf"_s, u"Local"_s);
  copy();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*source).size(), 6);
  EXPECT_EQ(processed(), "3");
  EXPECT_EQ(selectedCount(), "6") << "the view as it is then";
}

TEST_F(Copying, PassesOverADocumentThatIsDeletedMeanwhileAndCountsIt) {
  memos(2);
  const NoteId last = memo(u"m3"_s);
  chooseView();
  host.whileYielding = [this, last] { source->notes().remove(last); };
  copy();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*target), QStringList({u"m1"_s, u"m2"_s}));
  EXPECT_EQ(processed(), "3");
  EXPECT_EQ(selectedCount(), "2");
}

TEST_F(Copying, OfAViewThatIsDeletedMeanwhileCopiesItsRowsAndTellsThatItIsGone) {
  memos(2);
  view(u"Doomed"_s, {});
  const NoteId doomed = source->notes().list(noteclass::View).last().id;
  chooseView(u"Doomed"_s);
  provideSound();
  host.whileYielding = [this, doomed] {
    source->notes().remove(doomed);
    globals.gStopFlag = false;
  };
  copy();
  EXPECT_EQ(subjects(*target), QStringList({u"m1"_s, u"m2"_s}));
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, "in Copy");
  EXPECT_TRUE(host.boxes[0].text.endsWith(u" in line: 0"_s));
  EXPECT_TRUE(host.boxes[0].text.contains(u"source.nsf"_s));
  EXPECT_EQ(host.sounds, QStringList());
  EXPECT_EQ(processed(), "2");
}

TEST_F(Copying, IntoATargetThatDisappearsEndsAtTheNextDocument) {
  memos(3);
  chooseView();
  const QString file = pathOf(*target);
  host.whileYielding = [&] { QFile::remove(file); };
  copy();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, "in Copy");
  EXPECT_TRUE(host.boxes[0].text.contains(u"target.nsf"_s)) << host.boxes[0].text.toStdString();
  EXPECT_EQ(processed(), "1");
  EXPECT_FALSE(QFile::exists(file));
  EXPECT_EQ(subjects(*source).size(), 3);
}

TEST_F(Copying, OfAViewThatIsNotThereTellsIt) {
  chooseView(u"None"_s);
  copy();
  EXPECT_EQ(host.boxes, Boxes({failed(err::ObjectNotSet)}));
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

TEST_F(Copying, EndsAtADamagedDocumentAndSaysWhichItIs) {
  memo(u"m1"_s);
  const NoteId bad = memo(u"m2"_s);
  memo(u"m3"_s);
  chooseView();
  copy();
  damage(*source, bad);
  host.boxes.clear();
  copy();
  EXPECT_EQ(subjects(*target).size(), 4) << "three of the first run";
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, "in Copy");
  EXPECT_TRUE(host.boxes[0].text.contains(u"source.nsf"_s)) << host.boxes[0].text.toStdString();
}

// --- Stop, sound, another run --------------------------------------------------------------------------

TEST_F(Copying, StoppedInTheThirdYieldLeavesThreeCopiesAndEndsLikeAWholeRun) {
  memos(5);
  chooseView();
  provideSound();
  stopInYield(3);
  copy();
  EXPECT_EQ(subjects(*target).size(), 3);
  EXPECT_EQ(processed(), "3");
  EXPECT_EQ(selectedCount(), "5");
  EXPECT_EQ(host.sounds.size(), 1);
  EXPECT_FALSE(globals.gStopFlag);
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

// The sound, then the flag, then the pointer.
TEST_F(Copying, SoundsBeforeTheFlagAndThePointerAreReset) {
  memos(2);
  chooseView();
  provideSound();
  stopInYield(1);
  host.whileSoundPlays = [this] {
    EXPECT_TRUE(globals.gStopFlag);
    EXPECT_EQ(host.pointerCode, pointer::ArrowHourglass);
    EXPECT_EQ(selectedCount(), "2");
  };
  copy();
  EXPECT_EQ(host.sounds.size(), 1);
}

TEST_F(Copying, IsSilentWithoutTheSoundFile) {
  memo(u"one"_s);
  chooseView();
  copy();
  EXPECT_EQ(host.sounds, QStringList());
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(Copying, ForgetsAStopRequestThatCameBeforeIt) {
  memos(2);
  chooseView();
  globals.gStopFlag = true;
  copy();
  EXPECT_EQ(subjects(*target).size(), 2);
}

TEST_F(Copying, AFailureLeavesTheStopRequestAsItIs) {
  memos(2);
  chooseView();
  host.whileYielding = [this] {
    globals.gStopFlag = true;
    notes().failing.insert(u"GETNEXTENTRY"_s, RuntimeError(70));
  };
  copy();
  EXPECT_EQ(host.boxes, Boxes({failed(70)}));
  EXPECT_TRUE(globals.gStopFlag);
}

// The inner run is a whole run of its own; its end clears the stop request for the outer one too.
TEST_F(Copying, AMoveStartedWhileItYieldsRunsInsideIt) {
  memos(3);
  chooseView();
  bool started = false;
  host.whileYielding = [&] {
    if (std::exchange(started, true)) return;
    globals.gStopFlag = true;
    press(window.cmdMoveDocs);
  };
  copy();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*source), QStringList());
  EXPECT_EQ(subjects(*target).size(), 4) << "one copied, three moved; two were gone for the copy";
  EXPECT_EQ(processed(), "6") << "the outer run counts on in the field that the inner one emptied";
  EXPECT_FALSE(globals.gStopFlag);
}

TEST_F(Copying, GoesOnWithItsOwnDatabasesWhenAnotherClickTakesTheSharedOne) {
  memos(3);
  chooseView();
  answerWith({answer::Cancel, answer::Cancel, answer::Cancel});
  host.whileYielding = [this] {
    press(window.cmdDelDocs);
    globals.gDb.release();
    window.lstDBNames->clear();
    window.lstViewNames->clear();
  };
  copy();
  EXPECT_EQ(subjects(*target), QStringList({u"m1"_s, u"m2"_s, u"m3"_s}));
}

TEST_F(Copying, KeepsItsWindowFromLoadingAnewAsLongAsItRuns) {
  for (Button* button : {window.cmdCopy, window.cmdReplace, window.cmdMoveDocs}) {
    memo(u"one"_s);
    chooseView();
    int seen = 0;
    host.whileYielding = [&] { seen += window.isRunning() ? 1 : 0; };
    press(button);
    EXPECT_GT(seen, 0);
    EXPECT_FALSE(window.isRunning());
    notes().failing.insert(u"ISDOCUMENT"_s, RuntimeError(70));
    memo(u"two"_s);
    press(button);
    notes().failing.clear();
    EXPECT_FALSE(window.isRunning()) << "after a failure too";
  }
}

// Closing takes the session away; the run has its databases and goes on over its controls.
TEST_F(Copying, GoesOnWhenItsWindowIsClosed) {
  for (Button* button : {window.cmdCopy, window.cmdMoveDocs}) {
    memos(3);
    chooseView();
    sessions.GetSessionProbe();
    window.terminate = [this] { globals.gSession.release(); };
    window.show();
    host.whileYielding = [this] { window.close(); };
    press(button);
    EXPECT_EQ(host.boxes, Boxes());
    EXPECT_TRUE(globals.gSession.isNothing());
    EXPECT_EQ(processed(), button == window.cmdCopy ? "3" : "6");
  }
  EXPECT_EQ(subjects(*target).size(), 9);
  EXPECT_EQ(subjects(*source).size(), 0);
}

// --- Doubles and special items -------------------------------------------------------------------------

TEST_F(Copying, ACopyOfNothingEndsTheRun) {
  memos(2);
  chooseView();
  notes().replies.insert(u"COPYTODATABASE"_s, Object());
  copy();
  EXPECT_EQ(host.boxes, Boxes({failed(err::ObjectNotSet)}));
  EXPECT_EQ(processed(), QString());
}

TEST_F(Copying, ARefusedItemEndsTheRunAndLeavesItsCopyUntraced) {
  Note note = memoNote(u"with file"_s);
  attach(note, u"report.pdf"_s, QByteArray(1000, 'x'));
  save(note);
  chooseView();
  markFields({u"$FILE: report.pdf"_s, u"Subject: with"_s}, u"report"_s, u"x"_s);
  copy();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, "in Copy");
  EXPECT_TRUE(host.boxes[0].text.contains(u"$FILE"_s)) << host.boxes[0].text.toStdString();
  const Note made = documents(*target).first();
  EXPECT_FALSE(made.has(kTrace));
  EXPECT_EQ(values(made, u"$FILE"_s), QStringList(u"report.pdf"_s));
  EXPECT_EQ(values(made, u"Subject"_s), QStringList(u"with file"_s));
}

TEST_F(Copying, LeavesMarkedItemsWithoutAValueAndMakesTextOfRichText) {
  RichText text;
  text.appendText(u"the pump"_s);
  Note note = memoNote(u"kinds"_s);
  note.add(u"Body"_s, 0, rawValue(itemtype::RichText, text.toBytes()));
  note.add(u"Formula"_s, 0, rawValue(itemtype::Formula, QByteArray("\x12\x00\x01\x02", 4)));
  note.add(u"None"_s, itemflag::Summary, textListValue({}));
  save(note);
  chooseView();
  markFields({u"Body: the pump"_s, u"Formula: "_s, u"None: "_s}, u"pump"_s, u"valve"_s);
  copy();
  EXPECT_EQ(host.boxes, Boxes());
  const Note made = documents(*target).first();
  EXPECT_EQ(made.find(u"Body")->type(), itemtype::Text);
  EXPECT_EQ(made.text(u"Body").trimmed(), "the valve");
  EXPECT_EQ(made.find(u"Formula")->type(), itemtype::Formula);
  EXPECT_EQ(values(made, u"None"_s), QStringList(u"(empty)"_s));
}

// References to other documents and several items of one name are refused; a message has no value.
TEST_F(Copying, RefusesWhatNoTextCanStandForAndLeavesMessagesAlone) {
  const NoteId parent = memo(u"parent"_s);
  Note answered;
  ASSERT_TRUE(source->notes().read(parent, answered));
  const auto copied = [&](const QString& item, const QByteArray& value, int times) {
    Note note = memoNote(u"a first"_s);
    for (int i = 0; i < times; ++i) note.add(item, itemflag::Summary, value);
    const NoteId id = save(note);
    chooseView();
    markFields({item + u": x"_s}, u"x"_s, u"y"_s);
    host.boxes.clear();
    copy();
    source->notes().remove(id);
    const Note made = documents(*target).last();
    for (const Note& each : documents(*target)) target->notes().remove(each.header.id);
    return made;
  };
  for (const auto& [item, value, times] : {std::tuple{u"$REF"_s, noteRefsValue({answered.header.unid}), 1},
                                           {u"Twice"_s, textValue(u"x"_s), 2}}) {
    const Note made = copied(item, value, times);
    EXPECT_EQ(host.boxes.size(), 1) << item.toStdString();
    EXPECT_FALSE(made.has(kTrace)) << item.toStdString();
    EXPECT_EQ(made.find(item)->value, value) << item.toStdString();
  }
  const QByteArray message = rawValue(itemtype::MimePart, QByteArray(20, '\0'));
  const Note made = copied(u"Message"_s, message, 1);
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_TRUE(made.has(kTrace));
}

TEST_F(Copying, CarriesAttachmentsAndRichTextWhole) {
  const QByteArray bytes(300'000, 'x');
  Note note = memoNote(u"with file"_s);
  attach(note, u"report.pdf"_s, bytes);
  note.add(u"Body"_s, 0, rawValue(itemtype::RichText, QByteArray(200'000, 'y')));
  save(note);
  chooseView();
  markFields({u"Subject: with file"_s}, u"file"_s, u"report"_s);
  copy();
  EXPECT_EQ(host.boxes, Boxes());
  const Note made = documents(*target).first();
  EXPECT_EQ(made.text(u"Subject"), "with report");
  EXPECT_EQ(made.find(u"Body")->value, note.find(u"Body")->value);
  FileObject file;
  ASSERT_TRUE(readAttachedFile(*made.find(u"$FILE"), file));
  QByteArray there;
  QBuffer buffer(&there);
  buffer.open(QIODevice::WriteOnly);
  target->objects().read(file.objectId, buffer);
  EXPECT_TRUE(there == bytes);
}

}  // namespace
}  // namespace lens
