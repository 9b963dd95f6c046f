#include <QTest>

#include "editing/editing_fixture.h"
#include "support/in_zone.h"

namespace lens {
namespace {

class SearchReplaceTest : public EditingTest {
 protected:
  // Three items, of which the first and the third hold "pump".
  void showThree() {
    Note note;
    note.add(u"Aone"_s, itemflag::Summary, textValue(u"a pump"_s));
    note.add(u"Btwo"_s, itemflag::Summary, textValue(u"nothing"_s));
    note.add(u"Cthree"_s, itemflag::Summary, textValue(u"the Pump"_s));
    show(note);
  }
  int search(const QString& wanted) {
    setText("txtSearch", wanted);
    click("cmdSearch");
    return control<ListBox>("fldList").listIndex();
  }
  void replaceAll(const QString& search, const QString& replace) {
    setText("txtSearch", search);
    setText("txtReplace", replace);
    click("cmdSearchReplaceAll");
  }
};

TEST_F(SearchReplaceTest, EachClickGoesToTheNextHitAndRound) {
  showThree();
  EXPECT_EQ(search(u"pump"_s), 0);
  EXPECT_EQ(search(u"pump"_s), 2);
  EXPECT_EQ(search(u"pump"_s), 0);
  EXPECT_EQ(text("txtFieldName"), "Aone");
}

TEST_F(SearchReplaceTest, OneHitAtTheEndIsFoundAgain) {
  showThree();
  EXPECT_EQ(search(u"the"_s), 2);
  EXPECT_EQ(search(u"the"_s), 2);
}

TEST_F(SearchReplaceTest, NoHitEndsInSilence) {
  showThree();
  EXPECT_EQ(search(u"valve"_s), -1);
  EXPECT_EQ(search(u"the"_s), 2);
  EXPECT_EQ(search(u"valve"_s), 2);
  EXPECT_EQ(search(u"a pump"_s), 0);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(SearchReplaceTest, AFailureLeavesTheNextSearchWhereItWas) {
  showThree();
  EXPECT_EQ(search(u"a pump"_s), 0);
  notes().failing.insert(u"GETITEMVALUE"_s, RuntimeError(70));
  setText("txtSearch", u"valve"_s);
  click("cmdSearch");
  EXPECT_EQ(host.boxes.size(), 1);
  notes().failing.clear();
  EXPECT_EQ(search(u"pump"_s), 2);
}

TEST_F(SearchReplaceTest, ReplaceAllReadsTheOpenDocumentWhateverWasShown) {
  showThree();
  Note other = memo(u"Other"_s);
  openDocument(save(other));
  state().gDocKind = u"PROFILE"_s;
  replaceAll(u"pump"_s, u"valve"_s);
  EXPECT_EQ(state().gDocKind, u"UIDOC"_s);
  EXPECT_TRUE(rows("fldList").join(u'|').contains(u"Other"_s));
}

TEST_F(SearchReplaceTest, ReplaceAllTakes4000ForAFailureLikeAnyOther) {
  showThree();
  notes().failing.insert(u"SAVE"_s, RuntimeError(4000));
  replaceAll(u"pump"_s, u"valve"_s);
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, u"Error in SeachReplaceAll"_s);
}

TEST_F(SearchReplaceTest, TheCaseBoxAsksForExactCase) {
  showThree();
  control<CheckBox>("chkCase").setValue(1);
  EXPECT_EQ(search(u"Pump"_s), 2);
  EXPECT_EQ(search(u"PUMP"_s), 2);
  control<CheckBox>("chkCase").setValue(2);  // grey
  EXPECT_EQ(search(u"PUMP"_s), 0);
}

TEST_F(SearchReplaceTest, ATextAcrossTwoValuesIsFound) {
  Note note;
  note.add(u"List"_s, itemflag::Summary, textListValue({u"red"_s, u"dish"_s}));
  show(note);
  EXPECT_EQ(search(u"reddish"_s), 0);
}

TEST_F(SearchReplaceTest, WithoutATextNothingIsSearched) {
  showThree();
  notes().log.clear();
  EXPECT_EQ(search(QString()), -1);
  EXPECT_EQ(notes().calls(), 0);
}

TEST_F(SearchReplaceTest, EnterSearches) {
  showThree();
  setText("txtSearch", u"nothing"_s);
  QTest::keyClick(&control<QWidget>("txtSearch"), Qt::Key_Return);
  EXPECT_EQ(control<ListBox>("fldList").listIndex(), 1);
}

TEST_F(SearchReplaceTest, WithoutADocumentTheFirstRowWithoutAHitFails) {
  showThree();
  state().gDoc.release();
  EXPECT_EQ(search(u"valve"_s), -1);
  EXPECT_EQ(
      host.boxes,
      QVector<ShownBox>(
          {{u"Error 91 (%1) in procedure cmdSearch_Click of Formular Form1"_s.arg(standardErrorText(91)),
            box::Plain, QString()}}));
}

TEST_F(SearchReplaceTest, TheCollectionListIsSearchedByItsRows) {
  Note first = memo(u"first"_s), second = memo(u"second"_s);
  const NoteId one = save(first), two = save(second);
  show(memo());
  ListBox& list = control<ListBox>("idList");
  list.clear();
  for (const NoteId id : {one, two}) list.addItem(idRow(id));
  control<CheckBox>("chkProfile").setValue(1);
  setText("txtSearch", list.list(1).right(4));
  click("cmdSearch");
  EXPECT_EQ(list.listIndex(), 1);
  EXPECT_TRUE(rows("fldList").join(u'|').contains(u"second"_s));
}

TEST_F(SearchReplaceTest, AnEmptyCollectionListEndsInSilence) {
  showThree();
  control<ListBox>("idList").clear();
  control<CheckBox>("chkProfile").setValue(1);
  search(u"pump"_s);
  search(u"pump"_s);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(SearchReplaceTest, ReplaceChangesTheBoxOnlyAndWithExactCase) {
  show(memo(u"a pump, a Pump"_s));
  selectRow("fldList", u"Subject:"_s);
  setText("txtSearch", u"pump"_s);
  setText("txtReplace", u"valve"_s);
  click("cmdReplace");
  EXPECT_EQ(text("txtFieldContent"), "a valve, a Pump");
  EXPECT_EQ(values(u"Subject"_s), QStringList(u"a pump, a Pump"_s));
  EXPECT_EQ(saves(), 0);
}

TEST_F(SearchReplaceTest, ReplacingNothingChangesNothing) {
  show(memo());
  setText("txtFieldContent", u"a pump"_s);
  setText("txtSearch", QString());
  click("cmdReplace");
  EXPECT_EQ(text("txtFieldContent"), "a pump");
}

TEST_F(SearchReplaceTest, ReplaceAllGoesThroughEachItemAndEachValue) {
  Note note = memo(u"a pump"_s);
  note.add(u"List"_s, itemflag::Summary, textListValue({u"pump"_s, u"Pump"_s, u"pumps"_s}));
  note.add(u"Body"_s, 0, rich(u"PUMP and pump"_s));
  show(note);
  replaceAll(u"pump"_s, u"valve"_s);
  EXPECT_EQ(values(u"Subject"_s), QStringList(u"a valve"_s));
  EXPECT_EQ(values(u"List"_s), QStringList({u"valve"_s, u"Pump"_s, u"valves"_s}));
  EXPECT_EQ(bodyText(stored()), u"valve and valve"_s);
  EXPECT_EQ(saves(), 1);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(SearchReplaceTest, ReplaceAllKeepsNumbersNumbers) {
  Note note = memo();
  note.add(u"Count"_s, itemflag::Summary, numberValue(12));
  show(note);
  replaceAll(u"1"_s, u"2"_s);
  EXPECT_EQ(stored().find(u"Count")->type(), itemtype::Number);
  EXPECT_EQ(values(u"Count"_s), QStringList(u"22"_s));
}

TEST_F(SearchReplaceTest, ReplaceAllThatMakesNoDateFailsAndSavesNothing) {
  Note note = memo();
  note.add(u"Due"_s, itemflag::Summary, timeValue(timeDateOfDate(QDate(2024, 3, 11))));
  show(note);
  replaceAll(u"11.03"_s, u"someday"_s);
  EXPECT_EQ(host.boxes, QVector<ShownBox>({{standardErrorText(13) + u" (please Reload the document again)",
                                            box::Information, u"Error in SeachReplaceAll"_s}}));
  EXPECT_EQ(saves(), 0);
}

TEST_F(SearchReplaceTest, ReplaceAllWithoutAHitSavesNothingAndKeepsTheDocument) {
  show(memo());
  replaceAll(u"valve"_s, u"pump"_s);
  EXPECT_EQ(saves(), 0);
  EXPECT_FALSE(state().gDoc.isNothing());
}

TEST_F(SearchReplaceTest, ReplaceAllNeedsBothTexts) {
  show(memo());
  replaceAll(QString(), u"x"_s);
  replaceAll(u"x"_s, QString());
  const ShownBox empty{u"Search or Replace fields are empty !!"_s, box::Information, u"Replace all fields"_s};
  EXPECT_EQ(host.boxes, QVector<ShownBox>({empty, empty}));
}

TEST_F(SearchReplaceTest, ReplaceAllRefusesToTurnAnAttachmentIntoText) {
  Note note = memo();
  attach(note, u"report.pdf"_s, "bytes");
  show(note);
  replaceAll(u"report"_s, u"letter"_s);
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, u"Error in SeachReplaceAll"_s);
  EXPECT_EQ(stored().find(u"$FILE")->type(), itemtype::Object);
}

TEST_F(SearchReplaceTest, ReplaceAllWithTwoItemsOfAHitEndsUnsaved) {
  Note note;
  note.add(u"A"_s, itemflag::Summary, textValue(u"pump"_s));
  note.add(u"A"_s, itemflag::Summary, textValue(u"pump"_s));
  show(note);
  replaceAll(u"pump"_s, u"valve"_s);
  EXPECT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(saves(), 0);
  int kept = 0;
  for (const Item& item : stored().items) kept += item.name == u"A" && item.value == textValue(u"pump"_s);
  EXPECT_EQ(kept, 2);
}

// A hit in any one of them must not cost the others.
TEST_F(SearchReplaceTest, ReplaceAllNeverWritesOneItemOverOthersOfItsName) {
  const QByteArray hit = textValue(u"by pump"_s), other = textValue(u"by valve"_s);
  const QVector<QVector<QByteArray>> bodies{{other, other, hit},
                                            {hit, other, other},
                                            {rich(u"a long letter"_s), hit},
                                            {hit, rich(u"a long letter"_s)},
                                            {rich(u"a pump"_s), rich(u"more"_s), hit}};
  for (const QVector<QByteArray>& values : bodies) {
    Note note = memo();
    for (const QByteArray& value : values) note.add(u"Received"_s, 0, value);
    openDocument(save(note));
    if (noteId)
      click("cmdGetDoc");
    else
      start();
    noteId = note.header.id;
    host.boxes.clear();
    replaceAll(u"by pump"_s, u"by mistake"_s);
    ASSERT_EQ(host.boxes.size(), 1);
    EXPECT_EQ(host.boxes[0].title, u"Error in SeachReplaceAll"_s);
    EXPECT_EQ(saves(), 0);
    QVector<QByteArray> kept;
    for (const Item& item : stored().items)
      if (item.name == u"Received") kept += item.value;
    EXPECT_EQ(kept, values);
  }
}

TEST_F(SearchReplaceTest, ReplaceAllChangesEachPieceOfARichText) {
  Note note = memo();
  for (const QString& piece : {u"first pump"_s, u"second"_s, u"last pump"_s})
    note.add(u"Body"_s, 0, rich(piece));
  show(note);
  replaceAll(u"pump"_s, u"valve"_s);
  EXPECT_EQ(boxes(), QStringList());
  QStringList pieces;
  for (const Item& item : stored().items)
    if (item.name == u"Body") pieces += RichText::fromBytes(item.data()).plainText();
  EXPECT_EQ(pieces, QStringList({u"first valve"_s, u"second"_s, u"last valve"_s}));
}

TEST_F(SearchReplaceTest, ReplaceAllRefusesToTurnAReferenceIntoText) {
  Note parent = memo();
  save(parent);
  Note note = memo();
  note.add(u"$REF"_s, itemflag::Summary, noteRefsValue({parent.header.unid}));
  show(note);
  const QByteArray before = stored().find(u"$REF")->value;
  replaceAll(parent.header.unid.text().left(8), u"x"_s);
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, u"Error in SeachReplaceAll"_s);
  EXPECT_EQ(stored().find(u"$REF")->value, before);
  EXPECT_EQ(saves(), 0);
}

TEST_F(SearchReplaceTest, ReplacedRichTextIsNotSearchedAgain) {
  Note note = memo();
  note.add(u"Body"_s, 0, rich(u"a banana"_s));
  show(note);
  replaceAll(u"a"_s, u"aa"_s);
  EXPECT_EQ(bodyText(stored()), u"aa baanaanaa"_s);
}

TEST_F(SearchReplaceTest, AValueThatIsNoTextEndsInTheBox) {
  showThree();
  setText("txtSearch", u"valve"_s);
  notes().replies.insert(u"GETITEMVALUE"_s, Value::array({Value(), Value(Object())}));
  click("cmdSearch");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.endsWith(u") in procedure cmdSearch_Click of Formular Form1"_s));
}

TEST_F(SearchReplaceTest, AHitInTheListMayRewriteTheSearchText) {
  Note pumps = memo();
  pumps.add(u"Body"_s, 0, rich(u"text"_s));
  const NoteId id = save(pumps);
  show(memo());
  ListBox& list = control<ListBox>("idList");
  list.clear();
  list.addItem(u"Weekly pumps  # "_s + idRow(id));
  control<CheckBox>("chkProfile").setValue(1);
  control<CheckBox>("chkCase").setValue(1);
  setText("txtSearch", u"pumps"_s);
  click("cmdSearch");
  EXPECT_EQ(text("txtSearch"), "Weekly");
  EXPECT_EQ(value("chkCase"), 0);
}

TEST_F(SearchReplaceTest, AFailingChangeIsOneReportBelowReplaceAndSilenceBelowTheList) {
  show(memo());
  control<RichTextBox>("txtFieldContent").change = [] { throw RuntimeError(err::Overflow); };
  host.boxes.clear();
  selectRow("fldList", u"Subject:"_s);
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(text("txtFieldContent"), "Pumps");
  setText("txtSearch", u"Pump"_s);
  setText("txtReplace", u"Valve"_s);
  press("cmdReplace");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '6':"_s));
  EXPECT_EQ(text("txtFieldContent"), "Valves");
}

TEST_F(SearchReplaceTest, PlacesWithoutAHitKeepTheirStoredBytes) {
  const InZone berlin("CET-1CEST,M3.5.0,M10.5.0/3");
  const TimeDate early =
      timeDateOf(QDateTime(QDate(2024, 10, 27), QTime(0, 30, 0, 370), Qt::UTC), {-300, true});
  Note note = memo();
  note.add(u"Due"_s, itemflag::Summary, timeListValue({early, timeDateOfDate(QDate(2031, 3, 12)), early}));
  const NoteId id = show(note);
  const QByteArray before = stored().find(u"Due")->value;
  const auto expectOthersKept = [&] {
    const QByteArray after = stored(id).find(u"Due")->value;
    EXPECT_EQ(after.first(14).toHex(), before.first(14).toHex());
    EXPECT_EQ(after.sliced(22).toHex(), before.sliced(22).toHex());
    EXPECT_NE(after.sliced(14, 8), before.sliced(14, 8));
  };
  setText("txtSearch", u"2031"_s);
  setText("txtReplace", u"2032"_s);
  click("cmdSearchReplaceAll");
  expectOthersKept();
  ListBox& list = control<ListBox>("idList");
  list.clear();
  list.addItem(idRow(id));
  setText("txtSearch", u"2032"_s);
  setText("txtReplace", u"2033"_s);
  click("cmdReplAllFieldsInColl");
  expectOthersKept();
  EXPECT_EQ(boxes(), QStringList());
}

}  // namespace
}  // namespace lens
