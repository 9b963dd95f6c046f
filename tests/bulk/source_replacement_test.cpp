// "Replace in Source".
#include "bulk/operations_fixture.h"
#include "embedded/richtext/rich_text.h"

namespace lens {
namespace {

class Replacing : public OperationsTest {
 protected:
  Replacing() { notes().log.clear(); }
  void replace() { press(window.cmdReplace); }
  void choose() {
    chooseView();
    window.lstDBNamesDest->clear();
  }
  qint64 changes() { return source->versions().changeSequence(); }
};

TEST_F(Replacing, WritesTheDocumentsOfTheViewThemselves) {
  memos(2);
  choose();
  markFields({u"Subject: m1"_s}, u"m"_s, u"n"_s);
  provideSound();
  replace();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*source), QStringList({u"n1"_s, u"n2"_s}));
  for (const Note& note : documents(*source)) EXPECT_EQ(note.items.size(), 2) << "no trace";
  EXPECT_EQ(processed(), "2");
  EXPECT_EQ(selectedCount(), "2");
  EXPECT_EQ(host.sounds.size(), 1);
  EXPECT_EQ(host.pointers, QVector<int>());
  EXPECT_EQ(host.yields, 2);
  EXPECT_EQ(callsOf(u"GETDATABASE"_s), 1) << "the target lists play no part";
  EXPECT_EQ(globals.gDbPath, "source.nsf");
}

TEST_F(Replacing, WithoutTheCheckBoxCountsAndSavesNothing) {
  memos(3);
  choose();
  markFields({u"Subject: m1"_s}, u"m"_s, u"n"_s);
  window.chkFields->setValue(0);
  provideSound();
  const qint64 before = changes();
  replace();
  EXPECT_EQ(changes(), before);
  EXPECT_EQ(callsOf(u"SAVE"_s), 0);
  EXPECT_EQ(processed(), "3");
  EXPECT_EQ(host.sounds.size(), 1);
}

TEST_F(Replacing, SavesADocumentThatHasTheItemAlsoWithoutAHit) {
  Note numbers = memoNote(u"a"_s);
  numbers.add(u"Count"_s, itemflag::Summary, numberValue(7));
  numbers.add(u"When"_s, itemflag::Summary, timeValue(timeDateNow()));
  const NoteId with = save(numbers), without = memo(u"b"_s);
  choose();
  markFields({u"Count: 7"_s, u"When: x"_s}, u"not there"_s, u"x"_s);
  replace();
  Note note;
  ASSERT_TRUE(source->notes().read(with, note));
  EXPECT_EQ(note.header.sequence, 2u);
  EXPECT_EQ(values(note, u"Count"_s), QStringList(u"7"_s));
  EXPECT_EQ(note.find(u"Count")->type(), itemtype::Text);
  EXPECT_EQ(note.find(u"When")->type(), itemtype::Text);
  ASSERT_TRUE(source->notes().read(without, note));
  EXPECT_EQ(note.header.sequence, 1u) << "without a marked item it is not saved";
}

TEST_F(Replacing, SaysNothingWithoutViewsAndAsksForViewThenSource) {
  replace();
  EXPECT_EQ(host.boxes, Boxes());
  window.lstViewNames->addItem(u"All"_s);
  replace();
  window.lstViewNames->setSelected(0, true);
  replace();
  EXPECT_EQ(host.boxes, Boxes({refusal(u"Choose source view!!"_s, u"Move Docs"_s),
                               refusal(u"Choose Source database!!"_s, u"Move Docs"_s)}));
  EXPECT_EQ(host.pointers, QVector<int>());
  EXPECT_EQ(notes().log, QStringList());
}

TEST_F(Replacing, ARowWithoutAColonEndsTheRunAtTheFirstDocument) {
  memos(2);
  choose();
  markFields({u"Subject: m1"_s, u"no colon"_s}, u"m"_s, u"n"_s);
  replace();
  EXPECT_EQ(host.boxes, Boxes({report(err::InvalidCall)}));
  EXPECT_EQ(subjects(*source), QStringList({u"m1"_s, u"m2"_s})) << "nothing was saved";
}

TEST_F(Replacing, KeepsTheNumberOfValues) {
  Note note = memoNote(u"a"_s);
  note.add(u"Kinds"_s, itemflag::Summary, textListValue({u"pump"_s, u"b"_s}));
  const NoteId id = save(note);
  choose();
  markFields({u"Kinds: pump"_s}, u"pump"_s, u""_s);
  replace();
  ASSERT_TRUE(source->notes().read(id, note));
  EXPECT_EQ(values(note, u"Kinds"_s), QStringList({u""_s, u"b"_s}));
}

TEST_F(Replacing, GoesOnWithDocumentsThatItDropsFromTheView) {
  view(u"Open"_s, {.formula = u"SELECT Form = \"Memo\" & Status = \"open\""_s});
  for (int i = 0; i < 4; ++i) {
    Note note = memoNote(u"m%1"_s.arg(i));
    note.add(u"Status"_s, itemflag::Summary, textValue(u"open"_s));
    save(note);
  }
  choose();
  window.lstViewNames->clear();
  window.lstViewNames->addItem(u"Open"_s);
  window.lstViewNames->setSelected(0, true);
  markFields({u"Status: open"_s}, u"open"_s, u"done"_s);
  replace();
  for (const Note& note : documents(*source)) EXPECT_EQ(note.text(u"Status"), "done");
  EXPECT_EQ(processed(), "4");
  EXPECT_EQ(selectedCount(), "0") << "the view as it is then";
}

TEST_F(Replacing, AStopEndsBeforeTheNextDocumentAndStillCloses) {
  memos(3);
  choose();
  markFields({u"Subject: m"_s}, u"m"_s, u"n"_s);
  provideSound();
  stopInYield(2);
  replace();
  EXPECT_EQ(subjects(*source), QStringList({u"n1"_s, u"n2"_s, u"m3"_s}));
  EXPECT_EQ(processed(), "2");
  EXPECT_EQ(selectedCount(), "3");
  EXPECT_EQ(host.sounds.size(), 1);
  EXPECT_FALSE(globals.gStopFlag);
}

TEST_F(Replacing, WithAllRowsMarkedLeavesAttachmentsWhole) {
  RichText text;
  text.appendText(u"see the report"_s);
  Note note = memoNote(u"with report"_s);
  note.add(u"Body"_s, 0, rawValue(itemtype::RichText, text.toBytes()));
  attach(note, u"report.pdf"_s, QByteArray(1000, 'x'));
  const NoteId id = save(note);
  choose();
  markFields({u"$FILE: report.pdf"_s, u"Body: see the report"_s, u"Subject: with report"_s}, u"report"_s,
             u"x"_s);
  replace();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '"_s));
  Note after;
  ASSERT_TRUE(source->notes().read(id, after));
  EXPECT_EQ(after.header.sequence, 1u);
  EXPECT_EQ(values(after, u"$FILE"_s), QStringList(u"report.pdf"_s));
  EXPECT_EQ(after.find(u"Body")->type(), itemtype::RichText);
}

TEST_F(Replacing, AnItemWithoutAValueEndsTheRun) {
  Note note = memoNote(u"a"_s);
  note.add(u"Formula"_s, 0, rawValue(itemtype::Formula, QByteArray("\x12\x00\x01\x02", 4)));
  save(note);
  choose();
  markFields({u"Formula: "_s, u"Subject: a"_s}, u"a"_s, u"b"_s);
  replace();
  EXPECT_EQ(host.boxes, Boxes({report(err::TypeMismatch)}));
  EXPECT_EQ(subjects(*source), QStringList(u"a"_s));
}

// References to other documents, messages and several items of one name are no values that a text stands for.
TEST_F(Replacing, RefusesWhatNoTextCanStandForAndChangesNothing) {
  Note parent = memoNote(u"parent"_s);
  source->notes().save(parent);
  const auto refuses = [&](const QString& item, const QByteArray& value, int times) {
    Note note = memoNote(u"z"_s);
    for (int i = 0; i < times; ++i) note.add(item, itemflag::Summary, value);
    const NoteId id = save(note);
    chooseView();
    markFields({item + u": x"_s}, u"x"_s, u"y"_s);
    host.boxes.clear();
    replace();
    EXPECT_EQ(host.boxes.size(), 1) << item.toStdString();
    Note after;
    EXPECT_TRUE(source->notes().read(id, after));
    EXPECT_EQ(after.header.sequence, 1u) << item.toStdString();
    for (const Item& kept : after.items) {
      if (kept.name != item) continue;
      EXPECT_EQ(kept.value, value) << item.toStdString();
    }
    source->notes().remove(id);
  };
  refuses(u"$REF"_s, noteRefsValue({parent.header.unid}), 1);
  refuses(u"Twice"_s, textValue(u"x"_s), 2);
  refuses(u"Message"_s, rawValue(itemtype::MimePart, QByteArray(20, '\0')), 1);
}

TEST_F(Replacing, ADocumentOfTheEngineThatIsDeletedMeanwhileIsCounted) {
  memos(2);
  const NoteId last = memo(u"m3"_s);
  choose();
  markFields({u"Subject: m"_s}, u"m"_s, u"n"_s);
  host.whileYielding = [this, last] { source->notes().remove(last); };
  replace();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(subjects(*source), QStringList({u"n1"_s, u"n2"_s}));
  EXPECT_EQ(processed(), "3");
}

TEST_F(Replacing, TakesWhatAnotherProgramWroteMeanwhile) {
  memos(1);
  const NoteId last = memo(u"m2"_s);
  choose();
  markFields({u"Subject: m"_s}, u"m"_s, u"n"_s);
  host.whileYielding = [this, last] {
    Note note;
    if (!source->notes().read(last, note)) return;
    if (note.text(u"Subject") == u"m2") note.find(u"Subject")->value = textValue(u"mm"_s);
    source->notes().save(note);
  };
  replace();
  EXPECT_EQ(subjects(*source), QStringList({u"n1"_s, u"nn"_s}));
}

TEST_F(Replacing, OfAViewThatIsDeletedMeanwhileEndsInTheReportBehindItsRows) {
  memos(2);
  view(u"Doomed"_s, {});
  const NoteId doomed = source->notes().list(noteclass::View).last().id;
  chooseView(u"Doomed"_s);
  markFields({u"Subject: m"_s}, u"m"_s, u"n"_s);
  provideSound();
  host.whileYielding = [this, doomed] { source->notes().remove(doomed); };
  replace();
  EXPECT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(subjects(*source), QStringList({u"n1"_s, u"n2"_s}));
  EXPECT_EQ(host.sounds, QStringList());
}

}  // namespace
}  // namespace lens
