#include "editing/editing_fixture.h"
#include "support/in_zone.h"

namespace lens {
namespace {

class FieldOverwritingTest : public EditingTest {
 protected:
  // Selects the item, puts the content into the box and presses the button.
  void overwrite(const QString& name, const QString& content) {
    selectRow("fldList", name + u":");
    setText("txtFieldContent", content);
    click("cmdOverwrite");
  }
  void overwriteUntouched(const QString& name) {
    selectRow("fldList", name + u":");
    click("cmdOverwrite");
  }
  void searchFor(const QString& search, const QString& replace) {
    setText("txtSearch", search);
    setText("txtReplace", replace);
  }
  static ShownBox reloadBox(int number, const QString& title = QStringLiteral("Error in Overwrite")) {
    return {standardErrorText(number) + u" (please Reload the document again)", box::Information, title};
  }
};

TEST_F(FieldOverwritingTest, EachLineBecomesAValue) {
  show(memo());
  overwrite(u"Subject"_s, u"one\r\ntwo"_s);
  EXPECT_EQ(values(u"Subject"_s), QStringList({u"one"_s, u"two"_s}));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldOverwritingTest, SeveralValuesLeftUntouchedStayWhatTheyWere) {
  Note note = memo();
  note.add(u"List"_s, itemflag::Summary, textListValue({u"a"_s, u"b"_s}));
  show(note);
  overwriteUntouched(u"List"_s);
  EXPECT_EQ(values(u"List"_s), QStringList({u"a"_s, u"b"_s}));
}

TEST_F(FieldOverwritingTest, AnEmptyBoxWritesOneEmptyText) {
  show(memo());
  overwrite(u"Subject"_s, QString());
  EXPECT_EQ(values(u"Subject"_s), QStringList(QString()));
  EXPECT_EQ(stored().find(u"Subject")->type(), itemtype::Text);
}

TEST_F(FieldOverwritingTest, NamesReadersAndAuthorsBecomePlainText) {
  Note note = memo();
  note.add(u"N"_s, itemflag::Summary | itemflag::Names, textValue(u"CN=A"_s));
  note.add(u"R"_s, itemflag::Summary | itemflag::Names | itemflag::Readers, textValue(u"CN=A"_s));
  note.add(u"W"_s, itemflag::Summary | itemflag::Names | itemflag::Authors, textValue(u"CN=A"_s));
  show(note);
  for (const QString& name : {u"N"_s, u"R"_s, u"W"_s}) {
    overwrite(name, u"CN=B"_s);
    EXPECT_EQ(objectModelType(*stored().find(name)), 1280) << name.toStdString();
    EXPECT_EQ(values(name), QStringList(u"CN=B"_s));
  }
}

// An hour that comes twice when the clock goes back, a zone, hundredths, the digits behind the fifteenth: no
// text shows them, so a value whose text is untouched keeps them.
TEST_F(FieldOverwritingTest, WhatTheTextLeavesOutStaysWithAValueThatIsUntouched) {
  const InZone berlin("CET-1CEST,M3.5.0,M10.5.0/3");
  const auto at = [](int hour, int ms) {
    return timeDateOf(QDateTime(QDate(2024, 10, 27), QTime(hour, 30, 0, ms), Qt::UTC), {-300, true});
  };
  Note note = memo();
  note.add(u"Early"_s, itemflag::Summary, timeValue(at(0, 0)));
  note.add(u"Late"_s, itemflag::Summary, timeValue(at(1, 0)));
  note.add(u"All"_s, itemflag::Summary,
           timeListValue({at(0, 370), at(1, 0), at(23, 20)}, {{at(2, 0), at(3, 50)}}));
  note.add(u"Sum"_s, itemflag::Summary, numberValue(0.1 + 0.2));
  note.add(u"Sums"_s, itemflag::Summary, numberListValue({0.1 + 0.2, 1.0 / 3}));
  note.add(u"Texts"_s, itemflag::Summary,
           rawValue(itemtype::TextList, QByteArray("\2\0\3\0\1\0\1\x84"
                                                   "bc",
                                                   10)));
  show(note);
  const Note before = stored();
  for (const QString& name : {u"Early"_s, u"Late"_s, u"All"_s, u"Sum"_s, u"Sums"_s, u"Texts"_s}) {
    overwriteUntouched(name);
    EXPECT_EQ(stored().find(name)->value.toHex(' '), before.find(name)->value.toHex(' '))
        << name.toStdString();
  }
  EXPECT_EQ(boxes(), QStringList());
  selectRow("fldList", u"All:"_s);
  setText("txtFieldContent", text("txtFieldContent").replace(u"02:30:00"_s, u"02:31:00"_s));
  click("cmdOverwrite");
  const QByteArray changed = stored().find(u"All")->value, old = before.find(u"All")->value;
  EXPECT_EQ(changed.size(), old.size());
  EXPECT_NE(changed.mid(6, 8), old.mid(6, 8));
  EXPECT_EQ(changed.mid(22), old.mid(22)) << "the others keep theirs";
}

TEST_F(FieldOverwritingTest, DatesLeftUntouchedStayWhatTheyWereInEachRegion) {
  const DateTime moment{QDate(1949, 5, 6), QTime(7, 8, 9)};
  for (const QLocale::Territory territory : {QLocale::UnitedStates, QLocale::Germany, QLocale::Japan}) {
    host.setRegion(QLocale(QLocale::AnyLanguage, territory));
    Note note = memo();
    note.add(u"Due"_s, itemflag::Summary,
             timeListValue({timeDateOf(moment), timeDateOfDate(QDate(2024, 3, 11))}));
    note.add(u"One"_s, itemflag::Summary, timeValue(timeDateOf(moment)));
    const NoteId id = show(note);
    overwriteUntouched(u"Due"_s);
    overwriteUntouched(u"One"_s);
    const Value dates = itemValues(*stored(id).find(u"Due"));
    ASSERT_EQ(dates.upperBound(), 1);
    EXPECT_EQ(dates.at(0), Value(moment));
    EXPECT_EQ(dates.at(1), Value(DateTime{QDate(2024, 3, 11), QTime()}));
    EXPECT_EQ(itemValues(*stored(id).find(u"One")).at(0), Value(moment));
    app.reset();
  }
}

TEST_F(FieldOverwritingTest, WithoutAGoodDateTheOldOnesStayAndNothingIsTold) {
  Note note = memo();
  note.add(u"Due"_s, itemflag::Summary, timeValue(timeDateOfDate(QDate(2024, 3, 11))));
  show(note);
  overwrite(u"Due"_s, u"soon\r\nlater"_s);
  EXPECT_EQ(values(u"Due"_s), QStringList(u"11.03.2024"_s));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldOverwritingTest, AnEmptyBoxOnADateIsRefusedAloud) {
  Note note = memo();
  note.add(u"Due"_s, itemflag::Summary, timeValue(timeDateOfDate(QDate(2024, 3, 11))));
  show(note);
  overwrite(u"Due"_s, QString());
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, u"Error in Overwrite"_s);
  EXPECT_EQ(values(u"Due"_s), QStringList(u"11.03.2024"_s));
}

TEST_F(FieldOverwritingTest, AfterADateLineAFailedSaveIsNotTold) {
  Note note = memo();
  note.add(u"Due"_s, itemflag::Summary, timeValue(timeDateOfDate(QDate(2024, 3, 11))));
  show(note);
  notes().failing.insert(u"SAVE"_s, RuntimeError(70));
  overwrite(u"Due"_s, u"12.03.2024"_s);
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(values(u"Due"_s), QStringList(u"11.03.2024"_s));
}

TEST_F(FieldOverwritingTest, TheNumberOfNumbersStays) {
  Note note = memo();
  note.add(u"Numbers"_s, itemflag::Summary, numberListValue({1, 2, 3}));
  show(note);
  overwrite(u"Numbers"_s, u"12abc\r\n-1.5"_s);
  EXPECT_EQ(values(u"Numbers"_s), QStringList({u"12"_s, u"-1.5"_s, u"0"_s}));
  overwrite(u"Numbers"_s, u"1\r\n2\r\n3\r\n4"_s);
  EXPECT_EQ(values(u"Numbers"_s), QStringList({u"1"_s, u"2"_s, u"3"_s}));
}

TEST_F(FieldOverwritingTest, ANumberLeftUntouchedStaysInAGermanRegion) {
  Note note = memo();
  note.add(u"Rate"_s, itemflag::Summary, numberValue(1.5));
  show(note);
  overwriteUntouched(u"Rate"_s);
  EXPECT_EQ(values(u"Rate"_s), QStringList(u"1.5"_s));
}

TEST_F(FieldOverwritingTest, RichTextIsSearchedAndReplacedWithoutCase) {
  Note note = memo();
  note.add(u"Body"_s, 0, rich(u"A pump and a PUMP"_s));
  show(note);
  selectRow("fldList", u"Body:"_s);
  searchFor(u"pump"_s, u"valve"_s);
  control<CheckBox>("chkCase").setValue(1);
  setText("txtFieldContent", u"not used"_s);
  click("cmdOverwrite");
  EXPECT_EQ(bodyText(stored()), u"A valve and a valve"_s);
}

TEST_F(FieldOverwritingTest, RichTextWithoutAReplacementIsRefused) {
  Note note = memo();
  note.add(u"Body"_s, 0, rich(u"A pump"_s));
  show(note);
  selectRow("fldList", u"Body:"_s);
  searchFor(u"pump"_s, QString());
  click("cmdOverwrite");
  EXPECT_EQ(host.boxes,
            QVector<ShownBox>({{u"Replace text is empty!!"_s, box::Information, u"Error in Overwrite"_s}}));
  EXPECT_EQ(saves(), 0);
}

TEST_F(FieldOverwritingTest, RichTextWithBothBoxesEmptyIsSavedWithItsFlags) {
  Note note = memo();
  note.add(u"Body"_s, 0, rich(u"A pump"_s));
  show(note);
  selectRow("fldList", u"Body:"_s);
  searchFor(QString(), QString());
  control<CheckBox>("chkProtected").setValue(1);
  click("cmdOverwrite");
  EXPECT_EQ(saves(), 1);
  EXPECT_TRUE(stored().find(u"Body")->flags & itemflag::Protected);
  EXPECT_EQ(bodyText(stored()), u"A pump"_s);
}

TEST_F(FieldOverwritingTest, OtherKindsAreToldAndSavedAllTheSame) {
  Note note = memo();
  attach(note, u"report.pdf"_s, "bytes");
  show(note);
  selectRow("fldList", u"$FILE:"_s);
  control<CheckBox>("chkSigned").setValue(1);
  click("cmdOverwrite");
  EXPECT_EQ(
      host.boxes,
      QVector<ShownBox>({{u"Not implemented for the field type !!"_s, box::Exclamation, u"Doc Viewer"_s}}));
  EXPECT_EQ(saves(), 1);
  EXPECT_TRUE(stored().find(u"$FILE")->flags & itemflag::Sign);
}

TEST_F(FieldOverwritingTest, FlagsReachTheNewValue) {
  show(memo());
  selectRow("fldList", u"Subject:"_s);
  setText("txtFieldContent", u"new"_s);
  control<CheckBox>("chkProtected").setValue(1);
  click("cmdOverwrite");
  EXPECT_TRUE(stored().find(u"Subject")->flags & itemflag::Protected);
  EXPECT_EQ(values(u"Subject"_s), QStringList(u"new"_s));
}

TEST_F(FieldOverwritingTest, OneItemIsWrittenAlthoughTheBodyIsSelectedAfterwards) {
  Note note = memo();
  note.add(u"Body"_s, 0, rich(u"A pump"_s));
  show(note);
  const QByteArray body = stored().find(u"Body")->value;
  overwrite(u"Subject"_s, u"new"_s);
  EXPECT_EQ(saves(), 1);
  EXPECT_EQ(stored().find(u"Body")->value, body);
}

TEST_F(FieldOverwritingTest, AFailureLeavesTheStoredDocumentAndSaysSo) {
  show(memo());
  notes().failing.insert(u"SAVE"_s, RuntimeError(4005, u"the model's own words"_s));
  overwrite(u"Subject"_s, u"new"_s);
  EXPECT_EQ(host.boxes, QVector<ShownBox>({reloadBox(4005)}));
  EXPECT_EQ(values(u"Subject"_s), QStringList(u"Pumps"_s));
  notes().failing.clear();
  click("cmdGetDoc");
  selectRow("fldList", u"Subject:"_s);
  EXPECT_EQ(text("txtFieldContent"), "Pumps");
}

TEST_F(FieldOverwritingTest, Number4000IsPassedOver) {
  show(memo());
  notes().failing.insert(u"SAVE"_s, RuntimeError(4000));
  notes().log.clear();
  overwrite(u"Subject"_s, u"new"_s);
  EXPECT_EQ(boxes(), QStringList());
  // The statements behind it have run: the document is read anew.
  EXPECT_TRUE(notes().log.contains(u"CURRENTDOCUMENT"_s, Qt::CaseInsensitive));
}

TEST_F(FieldOverwritingTest, ARowWithoutANameFails) {
  show(memo());
  control<ListBox>("fldList").clear();
  control<ListBox>("fldList").addItem(u"no colon"_s);
  select("fldList", 0);
  click("cmdOverwrite");
  click("cmdDelField");
  EXPECT_EQ(host.boxes, QVector<ShownBox>({reloadBox(err::InvalidCall),
                                           reloadBox(err::InvalidCall, u"Error in DeleteFiels"_s)}));
}

TEST_F(FieldOverwritingTest, AnItemThatHasGoneFails) {
  show(memo());
  selectRow("fldList", u"Subject:"_s);
  state().gDoc.call(u"RemoveItem"_s, u"Subject"_s);
  click("cmdOverwrite");
  EXPECT_EQ(host.boxes, QVector<ShownBox>({reloadBox(err::ObjectNotSet)}));
}

TEST_F(FieldOverwritingTest, NothingSelectedAndNoDocumentDoNothing) {
  show(memo());
  click("cmdOverwrite");
  click("cmdDelField");
  selectRow("fldList", u"Subject:"_s);
  state().gDoc.release();
  click("cmdOverwrite");
  click("cmdDelField");
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(saves(), 0);
}

TEST_F(FieldOverwritingTest, OtherKindsOfDocumentsAreListedAnewByTheirRow) {
  show(memo());
  for (const QString& kind : {u"DESIGN"_s, u"PROFILE"_s}) {
    state().gDocKind = kind;
    overwrite(u"Subject"_s, u"of "_s + kind);
    EXPECT_EQ(state().gDocKind, kind);
    EXPECT_TRUE(rows("fldList").join(u'|').contains(u"of "_s + kind));
  }
  state().gDocKind = u"ELSE"_s;
  overwrite(u"Subject"_s, u"newer"_s);
  EXPECT_FALSE(rows("fldList").join(u'|').contains(u"newer"_s));
  EXPECT_EQ(values(u"Subject"_s), QStringList(u"newer"_s));
}

TEST_F(FieldOverwritingTest, DeletingRemovesTheItemAndItsRow) {
  Note note = memo();
  note.add(u"City"_s, itemflag::Summary, textValue(u"Bern"_s));
  show(note);
  selectRow("fldList", u"Subject:"_s);
  const auto flags = {"chkSummary", "chkEncrypted", "chkSigned", "chkProtected"};
  for (const char* flag : flags) control<CheckBox>(flag).setValue(1);
  click("cmdDelField");
  for (const char* flag : flags) EXPECT_EQ(control<CheckBox>(flag).value(), 0) << flag;
  EXPECT_FALSE(stored().has(u"Subject"));
  EXPECT_TRUE(stored().has(u"City"));
  EXPECT_FALSE(rows("fldList").join(u'|').contains(u"Subject"_s));
  for (const char* box : {"txtFieldName", "cmbFieldType", "txtFieldContent", "lblSize"})
    EXPECT_EQ(text(box), "") << box;
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldOverwritingTest, DeletingTakesTheFirstItemOfTheNameOnly) {
  Note note = memo();
  for (const QString& name : {u"a.txt"_s, u"b.txt"_s, u"c.txt"_s}) attach(note, name, "x");
  show(note);
  selectRow("fldList", u"$FILE:"_s);
  click("cmdDelField");
  int files = 0;
  for (const Item& item : stored().items) files += item.name == u"$FILE";
  EXPECT_EQ(files, 2);
}

TEST_F(FieldOverwritingTest, OneOfSeveralItemsOfANameIsNotOverwritten) {
  Note note = memo();
  for (const QString& hop : {u"first"_s, u"second"_s, u"third"_s}) note.add(u"Received"_s, 0, textValue(hop));
  show(note);
  overwrite(u"Received"_s, u"new"_s);
  EXPECT_EQ(host.boxes.size(), 1);
  QStringList kept;
  for (const Item& item : stored().items)
    if (item.name == u"Received") kept += textOf(itemValues(item).at(0), host.regional());
  EXPECT_EQ(kept, QStringList({u"first"_s, u"second"_s, u"third"_s}));
}

TEST_F(FieldOverwritingTest, AFailedDeletionSaysSoAlsoFor4000) {
  show(memo());
  selectRow("fldList", u"Subject:"_s);
  notes().failing.insert(u"SAVE"_s, RuntimeError(4000));
  click("cmdDelField");
  EXPECT_EQ(host.boxes, QVector<ShownBox>({reloadBox(4000, u"Error in DeleteFiels"_s)}));
  EXPECT_TRUE(stored().has(u"Subject"));
}

}  // namespace
}  // namespace lens
