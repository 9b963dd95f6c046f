// "Move": what it does as a copy does, and in what it differs.
#include <sqlite3.h>

#include "bulk/operations_fixture.h"

namespace lens {
namespace {

const QString kMoveTrace = QStringLiteral("zpMovedFromAt");

class Moving : public OperationsTest {
 protected:
  void move() { press(window.cmdMoveDocs); }
  static ShownBox refused(const QString& text) { return refusal(text, u"Move Docs"_s); }
  static ShownBox failed(int number) { return failure(u"in Move"_s, number); }
};

TEST_F(Moving, CopiesWithItsOwnTraceAndEmptiesTheView) {
  memos(3);
  Note task = document(u"Task"_s);
  task.add(u"Subject"_s, itemflag::Summary, textValue(u"task"_s));
  save(task);
  chooseView();
  provideSound();
  move();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*target), QStringList({u"m1"_s, u"m2"_s, u"m3"_s}));
  for (const Note& made : documents(*target)) {
    EXPECT_EQ(values(made, kMoveTrace), QStringList(u"!!source.nsf at: 11.03.2024 14:05:09"_s));
    EXPECT_FALSE(made.has(u"qvCopiedFromAt"));
  }
  EXPECT_EQ(subjects(*source), QStringList(u"task"_s));
  EXPECT_EQ(processed(), "3");
  EXPECT_EQ(selectedCount(), "0") << "of the emptied collection";
  EXPECT_EQ(host.sounds.size(), 1);
  EXPECT_EQ(host.pointers, QVector<int>({pointer::ArrowHourglass, pointer::Default}));
}

TEST_F(Moving, StoppedAtTheFirstDocumentLeavesOneCopyAndAnEmptyView) {
  memos(4);
  chooseView();
  provideSound();
  stopInYield(1);
  move();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*target), QStringList(u"m1"_s));
  EXPECT_EQ(subjects(*source), QStringList());
  EXPECT_EQ(processed(), "1");
  EXPECT_EQ(host.sounds.size(), 1);
  EXPECT_FALSE(globals.gStopFlag);
}

TEST_F(Moving, FromAndIntoTheSameDatabaseRemovesOnlyWhatWasThereBefore) {
  memos(3);
  chooseView();
  chooseTarget(u"source.nsf"_s, u"Local"_s);
  move();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*source), QStringList({u"m1"_s, u"m2"_s, u"m3"_s}));
  for (const Note& made : documents(*source)) EXPECT_TRUE(made.has(kMoveTrace));
  EXPECT_EQ(selectedCount(), "0");
}

TEST_F(Moving, RemovesADocumentOfTwoCategoriesOnce) {
  view(u"Kinds"_s, {.columns = {testbed::category(u"Kind"_s), testbed::sorted(u"Subject"_s)}});
  Note note = memoNote(u"both"_s);
  note.add(u"Kind"_s, itemflag::Summary, textListValue({u"x"_s, u"y"_s}));
  save(note);
  chooseView(u"Kinds"_s);
  move();
  EXPECT_EQ(subjects(*target), QStringList({u"both"_s, u"both"_s}));
  EXPECT_EQ(subjects(*source), QStringList());
  EXPECT_EQ(processed(), "4");
  EXPECT_EQ(selectedCount(), "0");
}

TEST_F(Moving, AsksForViewAndSourceBeforeAndForTheTargetBehindOpeningTheSource) {
  move();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(host.pointers, QVector<int>({pointer::Default}));
  chooseView();
  window.lstViewNames->clear();
  window.lstViewNames->addItem(u"All"_s);
  move();
  window.lstViewNames->setSelected(0, true);
  window.lstDBNames->setSelected(0, false);
  move();
  EXPECT_EQ(notes().log, QStringList());
  window.lstDBNames->setSelected(0, true);
  window.lstDBNamesDest->clear();
  host.pointers.clear();
  move();
  EXPECT_EQ(host.boxes, Boxes({refused(u"Choose source view!!"_s), refused(u"Choose Source database!!"_s),
                               refused(u"Choose Destination database!!"_s)}));
  EXPECT_EQ(notes().log, QStringList(u"GETDATABASE"_s));
  EXPECT_EQ(host.pointers, QVector<int>({pointer::ArrowHourglass, pointer::Default}));
}

TEST_F(Moving, TellsASourceThatIsGoneBeforeAMissingTarget) {
  chooseView();
  chooseSource(u"gone.nsf"_s);
  window.lstDBNamesDest->clear();
  move();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, "in Move");
  EXPECT_EQ(host.boxes[0].style, box::Critical);
  EXPECT_TRUE(host.boxes[0].text.contains(u"gone.nsf"_s) && host.boxes[0].text.endsWith(u" in line: 0"_s))
      << host.boxes[0].text.toStdString();
}

TEST_F(Moving, TriesToOpenATargetRowWithoutAPath) {
  memo(u"one"_s);
  chooseView();
  chooseTarget(QString());
  move();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, "in Move");
  EXPECT_EQ(callsOf(u"GETDATABASE"_s), 2);
  EXPECT_EQ(subjects(*source), QStringList(u"one"_s));
}

TEST_F(Moving, LooksForTheItemWithoutAName) {
  memo(u"one"_s);
  chooseView();
  markFields({u": x"_s, u"   : y"_s, u"no colon"_s});
  move();
  EXPECT_EQ(callsOf(u"HASITEM"_s), 2);
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*target), QStringList(u"one"_s));
}

TEST_F(Moving, PassesOverACopyOfNothingAndRemovesItsSourceAllTheSame) {
  memos(2);
  chooseView();
  notes().replies.insert(u"COPYTODATABASE"_s, Object());
  markFields({u"Subject: m"_s});
  move();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(callsOf(u"HASITEM"_s) + callsOf(u"SAVE"_s), 0);
  EXPECT_EQ(host.yields, 2);
  EXPECT_EQ(subjects(*target), QStringList());
  EXPECT_EQ(subjects(*source), QStringList());
}

TEST_F(Moving, AFailureInTheLoopKeepsTheWholeSource) {
  memos(3);
  chooseView();
  host.whileYielding = [this] {
    if (host.yields == 2) notes().failing.insert(u"COPYTODATABASE"_s, RuntimeError(70));
  };
  move();
  EXPECT_EQ(host.boxes, Boxes({failed(70)}));
  EXPECT_EQ(subjects(*target).size(), 2);
  EXPECT_EQ(subjects(*source).size(), 3);
}

// It would not be copied, but be removed.
TEST_F(Moving, EndsAtADamagedDocumentAndRemovesNone) {
  memo(u"m1"_s);
  const NoteId bad = memo(u"m2"_s);
  memo(u"m3"_s);
  chooseView();
  press(window.cmdReplace);  // the index knows the document
  damage(*source, bad);
  move();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, "in Move");
  EXPECT_EQ(subjects(*target), QStringList(u"m1"_s));
  EXPECT_EQ(source->notes().state(bad), NoteState::Damaged);
  EXPECT_EQ(subjects(*source), QStringList({u"m1"_s, u"m3"_s}));
}

TEST_F(Moving, EndsAtADamagedAttachmentAmongGoodOnesAndRemovesNone) {
  for (int i = 1; i <= 3; ++i) {
    Note note = memoNote(u"m%1"_s.arg(i));
    attach(note, u"report.pdf"_s, QByteArray(1000, char('a' + i)));
    save(note);
  }
  ASSERT_EQ(sqlite3_exec(source->handle(),
                         "UPDATE object_chunk SET bytes = zeroblob(length(bytes)) WHERE object = 2", nullptr,
                         nullptr, nullptr),
            SQLITE_OK);
  chooseView();
  move();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, "in Move");
  EXPECT_TRUE(host.boxes[0].text.contains(u"source.nsf"_s)) << host.boxes[0].text.toStdString();
  EXPECT_EQ(subjects(*target), QStringList(u"m1"_s));
  EXPECT_EQ(subjects(*source).size(), 3);
}

TEST_F(Moving, RemovesBehindTheLastEntryAndCountsTheCollection) {
  memo(u"one"_s);
  chooseView();
  move();
  EXPECT_EQ(notes().log.mid(notes().log.size() - 3),
            QStringList({u"GETNEXTENTRY"_s, u"REMOVEALL"_s, u"count"_s}));
  EXPECT_EQ(callsOf(u"ALLENTRIES"_s), 1);
}

TEST_F(Moving, KeepsTheSourceWhenTheTargetDisappears) {
  memos(3);
  chooseView();
  host.whileYielding = [this] { QFile::remove(pathOf(*target)); };
  move();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, "in Move");
  EXPECT_EQ(subjects(*source).size(), 3);
}

// The rows and their documents are there all the same.
TEST_F(Moving, OfAViewThatIsDeletedMeanwhileIsWhole) {
  memos(2);
  view(u"Doomed"_s, {});
  const NoteId doomed = source->notes().list(noteclass::View).last().id;
  chooseView(u"Doomed"_s);
  host.whileYielding = [this, doomed] { source->notes().remove(doomed); };
  move();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*target).size(), 2);
  EXPECT_EQ(subjects(*source), QStringList());
}

TEST_F(Moving, KeepsWhatCameIntoTheViewMeanwhile) {
  memo(u"m1"_s);
  chooseView();
  host.whileYielding = [this] { memo(u"late"_s); };
  move();
  EXPECT_EQ(subjects(*source), QStringList(u"late"_s));
  EXPECT_EQ(subjects(*target), QStringList(u"m1"_s));
}

TEST_F(Moving, TakesTheTimeBehindTheTestForViews) {
  memo(u"one"_s);
  chooseView();
  move();
  EXPECT_EQ(values(documents(*target).first(), kMoveTrace).first().section(u" at: "_s, 1),
            "11.03.2024 14:05:09");
}

TEST_F(Moving, OfAnItemThatIsRefusedKeepsTheSource) {
  Note note = memoNote(u"with file"_s);
  attach(note, u"report.pdf"_s, QByteArray(1000, 'x'));
  save(note);
  chooseView();
  markFields({u"$FILE: report.pdf"_s}, u"report"_s, u"x"_s);
  move();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, "in Move");
  EXPECT_EQ(subjects(*source), QStringList(u"with file"_s));
  EXPECT_FALSE(documents(*target).first().has(kMoveTrace));
}

}  // namespace
}  // namespace lens
