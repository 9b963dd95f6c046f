#include <QTest>

#include "editing/editing_fixture.h"

namespace lens {
namespace {

class CollectionEngineTest : public EditingTest {
 protected:
  // Puts the notes into the collection list, as a listing would.
  void collect(QVector<Note> notes) {
    QVector<NoteId> all;
    for (Note& note : notes) all += save(note);
    show(memo(u"on display"_s));
    ListBox& list = control<ListBox>("idList");
    list.clear();
    for (const NoteId id : all) list.addItem(idRow(id));
    ids = all;
    this->notes().log.clear();
    host.boxes.clear();
  }
  void collectTwo() { collect({memo(u"first pump"_s), memo(u"second pump"_s)}); }
  void fillIn(const QString& name, const QString& type, const QString& content) {
    setText("txtFieldName", name);
    setText("cmbFieldType", type);
    setText("txtFieldContent", content);
  }
  // Three documents with a date, of which the list gives the second an ID that is refused.
  void overwriteDatesAroundARefusedId(const QString& content) {
    Note note = document(u"A"_s);
    note.add(u"Due"_s, itemflag::Summary, timeValue(timeDateOfDate(QDate(2024, 3, 11))));
    collect({note, note, note});
    control<ListBox>("idList").setList(1, u"7FFFFFFC"_s);
    fillIn(u"Due"_s, {}, content);
    click("cmdWriteDocsInColl");
  }
  QStringList valuesOf(int place, const QString& name) { return values(stored(ids[place]), name); }
  void expectBatchBox(int number, const QString& description = {}) {
    ASSERT_EQ(host.boxes.size(), 1);
    EXPECT_TRUE(host.boxes[0].text.startsWith(u"Error %1 ("_s.arg(number)) &&
                host.boxes[0].text.endsWith(u") in procedure procCollection of Modul Globals"_s) &&
                host.boxes[0].text.contains(description))
        << host.boxes[0].text.toStdString();
    EXPECT_EQ(host.boxes[0].style, box::Plain);
    EXPECT_EQ(host.boxes[0].title, QString());
  }

  QVector<NoteId> ids;
};

TEST_F(CollectionEngineTest, DeletesTheItemInEachDocumentAndSavesEach) {
  collectTwo();
  fillIn(u"Subject"_s, {}, {});
  click("cmdDelFieldInCol");
  for (const NoteId id : ids) EXPECT_FALSE(stored(id).has(u"Subject"));
  EXPECT_EQ(saves(), 2);
  EXPECT_EQ(host.pointerCode, pointer::Default);
  EXPECT_EQ(text("txtFieldContent"), "");
  EXPECT_TRUE(control<ListBox>("idList").selected(0));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(CollectionEngineTest, ADocumentWithoutTheItemIsSavedAllTheSame) {
  collectTwo();
  const quint32 before = stored(ids[0]).header.sequence;
  fillIn(u"Missing"_s, {}, {});
  click("cmdDelFieldInCol");
  EXPECT_EQ(stored(ids[0]).header.sequence, before + 1);
}

TEST_F(CollectionEngineTest, AddsTheItemInEachDocument) {
  collectTwo();
  fillIn(u"City"_s, kTextType, u"Bern\r\nGenf"_s);
  click("cmdAddFieldInColl");
  for (int place : {0, 1}) EXPECT_EQ(valuesOf(place, u"City"_s), QStringList({u"Bern"_s, u"Genf"_s}));
  EXPECT_EQ(saves(), 2);
}

TEST_F(CollectionEngineTest, AddingReplacesAnItemThatIsThere) {
  collectTwo();
  fillIn(u"Subject"_s, typeSentence(768), u"7"_s);
  click("cmdAddFieldInColl");
  EXPECT_EQ(valuesOf(0, u"Subject"_s), QStringList(u"7"_s));
  EXPECT_EQ(saves(), 4);
}

TEST_F(CollectionEngineTest, AddedRichTextTakesTheContentBox) {
  collectTwo();
  fillIn(u"Body"_s, typeSentence(1), u"Some text"_s);
  click("cmdAddFieldInColl");
  EXPECT_EQ(bodyText(stored(ids[1])), u"Some text"_s);
}

TEST_F(CollectionEngineTest, AddedRichTextMayBeEmpty) {
  collectTwo();
  fillIn(u"Body"_s, typeSentence(1), {});
  click("cmdAddFieldInColl");
  EXPECT_TRUE(stored(ids[1]).has(u"Body"));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(CollectionEngineTest, OnlyReadersAreMarkedAsSuch) {
  collectTwo();
  for (const int type : {1074, 1075, 1076}) {
    fillIn(u"T%1"_s.arg(type), typeSentence(type), u"CN=A"_s);
    click("cmdAddFieldInColl");
  }
  const Note note = stored(ids[0]);
  EXPECT_EQ(objectModelType(*note.find(u"T1074")), 1280);
  EXPECT_EQ(objectModelType(*note.find(u"T1075")), 1075);
  EXPECT_EQ(objectModelType(*note.find(u"T1076")), 1280);
}

TEST_F(CollectionEngineTest, AnUnsupportedTypeIsSilentAndTakesTheOldItemAway) {
  collectTwo();
  fillIn(u"Subject"_s, u"(text)"_s, u"x"_s);
  click("cmdAddFieldInColl");
  EXPECT_FALSE(stored(ids[0]).has(u"Subject"));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(CollectionEngineTest, AddingWhatIsNoNumberEndsTheRunAtTheFirstDocument) {
  collectTwo();
  fillIn(u"Count"_s, typeSentence(768), u"twelve"_s);
  click("cmdAddFieldInColl");
  expectBatchBox(13);
  EXPECT_EQ(saves(), 0);
}

TEST_F(CollectionEngineTest, AnEmptyTextEndsTheRun) {
  collectTwo();
  fillIn(u"City"_s, kTextType, {});
  click("cmdAddFieldInColl");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_FALSE(stored(ids[0]).has(u"City"));
}

TEST_F(CollectionEngineTest, ATypeWithoutAParenthesisFailsUntrapped) {
  collectTwo();
  fillIn(u"City"_s, u"text"_s, u"x"_s);
  press("cmdAddFieldInColl");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '5':"_s));
}

TEST_F(CollectionEngineTest, ATypeMayLackItsOpeningParenthesisAndHasSixteenBits) {
  collectTwo();
  fillIn(u"City"_s, u"1280)"_s, u"Bern"_s);
  click("cmdAddFieldInColl");
  EXPECT_EQ(valuesOf(1, u"City"_s), QStringList(u"Bern"_s));
  EXPECT_EQ(boxes(), QStringList());
  fillIn(u"Other"_s, u"(70000)"_s, u"Bern"_s);
  click("cmdAddFieldInColl");
  expectBatchBox(6);
}

TEST_F(CollectionEngineTest, AnItemOfAnotherKindIsSavedUnchangedAndInSilence) {
  Note note = memo();
  attach(note, u"report.pdf"_s, "bytes");
  collect({note});
  fillIn(u"$FILE"_s, {}, u"x"_s);
  click("cmdWriteDocsInColl");
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(stored(ids[0]).header.sequence, 2u);
  EXPECT_EQ(stored(ids[0]).find(u"$FILE")->type(), itemtype::Object);
}

TEST_F(CollectionEngineTest, AnyOtherModeVisitsAndChangesNothing) {
  collectTwo();
  app->collection.procCollection(9, u"Subject"_s, u"x"_s);
  int visited = 0;
  for (const QString& name : notes().log) visited += name == u"GETDOCUMENTBYID";
  EXPECT_EQ(visited, 2);
  EXPECT_EQ(saves(), 0);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(CollectionEngineTest, AListThatShrinksEndsTheRun) {
  collect({memo(u"a"_s), memo(u"b"_s), memo(u"c"_s)});
  fillIn(u"Subject"_s, {}, u"new"_s);
  notes().onCall = [&](const QString& name) {
    ListBox& list = control<ListBox>("idList");
    if (name == u"SAVE" && list.listCount() == 3) list.removeItem(2);
  };
  click("cmdWriteDocsInColl");
  notes().onCall = nullptr;
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(saves(), 2);
  EXPECT_EQ(valuesOf(2, u"Subject"_s), QStringList(u"c"_s));
}

TEST_F(CollectionEngineTest, ReplacingThatMakesNoDateEndsTheRun) {
  Note note = document(u"A"_s);
  note.add(u"Due"_s, itemflag::Summary,
           timeListValue({timeDateOfDate(QDate(2024, 3, 11)), timeDateOfDate(QDate(2024, 3, 12))}));
  collect({note, memo(u"11.03 and more"_s)});
  setText("txtSearch", u"11.03"_s);
  setText("txtReplace", u"someday"_s);
  click("cmdReplAllFieldsInColl");
  expectBatchBox(13);
  EXPECT_EQ(saves(), 0);
  EXPECT_EQ(valuesOf(1, u"Subject"_s), QStringList(u"11.03 and more"_s));
}

TEST_F(CollectionEngineTest, OfTwoEqualValuesOnlyTheFirstIsReplaced) {
  Note note = document(u"A"_s);
  note.add(u"List"_s, itemflag::Summary, textListValue({u"pump"_s, u"pump"_s}));
  collect({note});
  setText("txtSearch", u"pump"_s);
  setText("txtReplace", u"valve"_s);
  click("cmdReplAllFieldsInColl");
  EXPECT_EQ(valuesOf(0, u"List"_s), QStringList({u"valve"_s, u"pump"_s}));
}

TEST_F(CollectionEngineTest, OverwritesOnlyDocumentsThatHaveTheItem) {
  collect({memo(u"first"_s), document(u"Memo"_s), memo(u"third"_s)});
  fillIn(u"Subject"_s, {}, u"new"_s);
  click("cmdWriteDocsInColl");
  EXPECT_EQ(valuesOf(0, u"Subject"_s), QStringList(u"new"_s));
  EXPECT_EQ(valuesOf(1, u"Subject"_s), QStringList(u"(missing)"_s));
  EXPECT_EQ(valuesOf(2, u"Subject"_s), QStringList(u"new"_s));
  EXPECT_EQ(saves(), 2);
}

TEST_F(CollectionEngineTest, OverwritingFollowsTheTypeInEachDocument) {
  Note text = document(u"A"_s), number = document(u"B"_s), date = document(u"C"_s);
  text.add(u"V"_s, itemflag::Summary, textValue(u"x"_s));
  number.add(u"V"_s, itemflag::Summary, numberListValue({1, 2}));
  date.add(u"V"_s, itemflag::Summary, timeValue(timeDateOfDate(QDate(2024, 3, 11))));
  collect({text, number, date});
  fillIn(u"V"_s, {}, u"12.03.2024"_s);
  click("cmdWriteDocsInColl");
  EXPECT_EQ(valuesOf(0, u"V"_s), QStringList(u"12.03.2024"_s));
  EXPECT_EQ(valuesOf(1, u"V"_s), QStringList({u"12.03"_s, u"0"_s}));
  EXPECT_EQ(valuesOf(2, u"V"_s), QStringList(u"12.03.2024"_s));
}

TEST_F(CollectionEngineTest, OverwritingTouchesNoFlag) {
  Note note = document(u"A"_s);
  note.add(u"V"_s, itemflag::Summary | itemflag::Protected | itemflag::Sign, textValue(u"x"_s));
  collect({note});
  for (const char* name : {"chkSummary", "chkEncrypted", "chkSigned", "chkProtected"})
    control<CheckBox>(name).setValue(0);
  fillIn(u"V"_s, {}, u"y"_s);
  click("cmdWriteDocsInColl");
  EXPECT_EQ(stored(ids[0]).find(u"V")->flags, itemflag::Summary | itemflag::Protected | itemflag::Sign);
}

TEST_F(CollectionEngineTest, OverwritingRichTextMayReplaceByNothing) {
  Note note = memo();
  note.add(u"Body"_s, 0, rich(u"A pump and a Pump"_s));
  collect({note});
  fillIn(u"Body"_s, {}, u"not used"_s);
  setText("txtSearch", u"pump"_s);
  setText("txtReplace", QString());
  click("cmdWriteDocsInColl");
  EXPECT_EQ(bodyText(stored(ids[0])), u"A  and a "_s);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(CollectionEngineTest, WithoutANameThreeButtonsDoNothing) {
  collectTwo();
  fillIn({}, kTextType, u"x"_s);
  for (const char* button : {"cmdDelFieldInCol", "cmdAddFieldInColl", "cmdWriteDocsInColl"}) click(button);
  EXPECT_EQ(notes().calls(), 0);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(CollectionEngineTest, ReplacesInAllItemsButNeverInTheLastOfSeveralValues) {
  Note note = memo(u"a pump"_s);
  note.add(u"List"_s, itemflag::Summary, textListValue({u"pump"_s, u"Pump"_s, u"pump"_s}));
  note.add(u"Body"_s, 0, rich(u"PUMP"_s));
  collect({note, memo(u"none"_s)});
  setText("txtSearch", u"pump"_s);
  setText("txtReplace", u"valve"_s);
  control<CheckBox>("chkCase").setValue(0);
  click("cmdReplAllFieldsInColl");
  EXPECT_EQ(valuesOf(0, u"Subject"_s), QStringList(u"a valve"_s));
  EXPECT_EQ(valuesOf(0, u"List"_s), QStringList({u"valve"_s, u"Pump"_s, u"pump"_s}));
  EXPECT_EQ(bodyText(stored(ids[0])), u"valve"_s);
  // A document without a hit is not saved.
  EXPECT_EQ(saves(), 1);
  EXPECT_EQ(stored(ids[1]).header.sequence, 1u);
}

TEST_F(CollectionEngineTest, ReplacingNeedsBothTexts) {
  collectTwo();
  setText("txtSearch", u"pump"_s);
  setText("txtReplace", QString());
  click("cmdReplAllFieldsInColl");
  EXPECT_EQ(host.boxes, QVector<ShownBox>({{u"Search or Replace fields are empty !!"_s, box::Information,
                                            u"Replace all fields"_s}}));
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

TEST_F(CollectionEngineTest, ARefusedAttachmentEndsTheRunAndKeepsTheFile) {
  Note note = memo();
  attach(note, u"report.pdf"_s, "bytes");
  collect({memo(u"report one"_s), note, memo(u"report three"_s)});
  setText("txtSearch", u"report"_s);
  setText("txtReplace", u"letter"_s);
  click("cmdReplAllFieldsInColl");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(valuesOf(0, u"Subject"_s), QStringList(u"letter one"_s));
  EXPECT_EQ(stored(ids[1]).find(u"$FILE")->type(), itemtype::Object);
  EXPECT_EQ(valuesOf(2, u"Subject"_s), QStringList(u"report three"_s));
}

TEST_F(CollectionEngineTest, SeveralItemsOfANameEndEachRunThatWouldWriteOverThem) {
  Note note = memo(u"pump two"_s);
  for (const QString& hop : {u"by pump"_s, u"by valve"_s, u"by tap"_s})
    note.add(u"Received"_s, 0, textValue(hop));
  for (const char* const button : {"cmdReplAllFieldsInColl", "cmdWriteDocsInColl"}) {
    SCOPED_TRACE(button);
    ids.clear();
    collect({memo(u"pump one"_s), note});
    fillIn(u"Received"_s, kTextType, u"by pump"_s);
    setText("txtSearch", u"by pump"_s);
    setText("txtReplace", u"by mistake"_s);
    host.boxes.clear();
    click(button);
    EXPECT_EQ(host.boxes.size(), 1);
    QStringList kept;
    for (const Item& item : stored(ids[1]).items)
      if (item.name == u"Received") kept += textOf(itemValues(item).at(0), host.regional());
    EXPECT_EQ(kept, QStringList({u"by pump"_s, u"by valve"_s, u"by tap"_s}));
  }
}

TEST_F(CollectionEngineTest, AFailureLeavesWhatWasDoneAndWhatWasNot) {
  collect({memo(u"a"_s), memo(u"b"_s), memo(u"c"_s)});
  fillIn(u"Subject"_s, {}, u"new"_s);
  ListBox& list = control<ListBox>("idList");
  list.setList(1, u"7FFFFFFC"_s);
  click("cmdWriteDocsInColl");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(valuesOf(0, u"Subject"_s), QStringList(u"new"_s));
  EXPECT_EQ(valuesOf(2, u"Subject"_s), QStringList(u"c"_s));
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

TEST_F(CollectionEngineTest, AfterADateLineARefusedIdMeansThePreviousDocumentOnceMore) {
  overwriteDatesAroundARefusedId(u"12.03.2024"_s);
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(stored(ids[0]).header.sequence, 3u);
  EXPECT_EQ(stored(ids[2]).header.sequence, 2u);
}

TEST_F(CollectionEngineTest, AfterARefusedIdADateLineIsLostOnce) {
  overwriteDatesAroundARefusedId(u"12.03.2024\r\n13.03.2024"_s);
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(valuesOf(0, u"Due"_s), QStringList(u"13.03.2024"_s));
  EXPECT_EQ(valuesOf(2, u"Due"_s), QStringList({u"12.03.2024"_s, u"13.03.2024"_s}));
}

TEST_F(CollectionEngineTest, TakesNoEndOfANameForAnotherNotesId) {
  collectTwo();
  ListBox& list = control<ListBox>("idList");
  for (const QString& written : {ids[1].hexText(), QString(u'0' + idRow(ids[1]))}) {
    list.clear();
    list.addItem(idRow(ids[0]) + u" Plan # " + written);
    fillIn(u"Subject"_s, {}, u"new"_s);
    host.boxes.clear();
    click("cmdWriteDocsInColl");
    expectBatchBox(13);
    EXPECT_EQ(valuesOf(0, u"Subject"_s), QStringList(u"first pump"_s));
    EXPECT_EQ(valuesOf(1, u"Subject"_s), QStringList(u"second pump"_s));
  }
}

TEST_F(CollectionEngineTest, AddsDatesAndDropsWhatIsNone) {
  collectTwo();
  fillIn(u"Due"_s, typeSentence(1024), u"11.03.2024\r\nsoon\r\n12.03.2024"_s);
  click("cmdAddFieldInColl");
  for (int place : {0, 1})
    EXPECT_EQ(valuesOf(place, u"Due"_s), QStringList({u"11.03.2024"_s, u"12.03.2024"_s})) << place;
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(CollectionEngineTest, AddingDatesIsSilentBehindTheFirstLine) {
  collectTwo();
  fillIn(u"Due"_s, typeSentence(1024), u"11.03.2024"_s);
  notes().failing.insert(u"SAVE"_s, RuntimeError(70));
  click("cmdAddFieldInColl");
  EXPECT_EQ(boxes(), QStringList());
  notes().failing.clear();
  fillIn(u"Due"_s, typeSentence(1024), {});
  click("cmdAddFieldInColl");
  EXPECT_EQ(host.boxes.size(), 1);
}

TEST_F(CollectionEngineTest, Number4000IsAFailureLikeAnyOther) {
  for (const char* button : {"cmdDelFieldInCol", "cmdAddFieldInColl", "cmdWriteDocsInColl"}) {
    collectTwo();
    fillIn(u"Subject"_s, kTextType, u"new"_s);
    notes().failing.insert(u"SAVE"_s, RuntimeError(4000));
    click(button);
    notes().failing.clear();
    expectBatchBox(4000);
    app.reset();
  }
}

TEST_F(CollectionEngineTest, BehindADateATextThatCannotBeCutStaysAsItWas) {
  Note due = document(u"A"_s);
  due.add(u"Item"_s, itemflag::Summary, timeValue(timeDateOfDate(QDate(2024, 3, 11))));
  Note text = document(u"A"_s);
  text.add(u"Item"_s, itemflag::Summary, textValue(u"old"_s));
  collect({due, text});
  fillIn(u"Item"_s, {}, u"a\r\n"_s + QString(33'000, u'x') + u"\r\nb");
  click("cmdWriteDocsInColl");
  EXPECT_EQ(valuesOf(1, u"Item"_s), QStringList(u"old"_s));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(CollectionEngineTest, RowsWithANameGiveTheirNoteId) {
  collectTwo();
  control<ListBox>("idList").setList(0, u"Some name  # "_s + idRow(ids[0]));
  fillIn(u"Subject"_s, {}, u"new"_s);
  click("cmdWriteDocsInColl");
  EXPECT_EQ(valuesOf(0, u"Subject"_s), QStringList(u"new"_s));
}

TEST_F(CollectionEngineTest, MarksStayAndTheFirstRowIsMarkedToo) {
  collect({memo(u"a"_s), memo(u"b"_s), memo(u"c"_s), memo(u"d"_s), memo(u"e"_s)});
  ListBox& list = control<ListBox>("idList");
  list.setSelected(2, true);
  list.setSelected(4, true);
  fillIn(u"Subject"_s, {}, u"new"_s);
  click("cmdWriteDocsInColl");
  for (int place = 0; place < 5; ++place) EXPECT_EQ(list.selected(place), place % 2 == 0) << place;
  EXPECT_EQ(list.listIndex(), 0);
}

TEST_F(CollectionEngineTest, AnEmptyListGivesOneReportBehindTheSound) {
  collectTwo();
  control<ListBox>("idList").clear();
  QDir().mkpath(host.programDir);
  QFile sound(host.programDir + u"/done.wav"_s);
  ASSERT_TRUE(sound.open(QIODevice::WriteOnly));
  sound.close();
  for (const char* button :
       {"cmdDelFieldInCol", "cmdAddFieldInColl", "cmdWriteDocsInColl", "cmdReplAllFieldsInColl"}) {
    host.boxes.clear();
    host.sounds.clear();
    fillIn(u"Subject"_s, kTextType, u"x"_s);
    press(button);
    ASSERT_EQ(host.boxes.size(), 1) << button;
    EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '381':"_s))
        << host.boxes[0].text.toStdString();
    EXPECT_EQ(host.pointerCode, pointer::Default);
    EXPECT_EQ(host.sounds.size(), 1);
    EXPECT_EQ(text("txtFieldContent"), "x");
  }
}

TEST_F(CollectionEngineTest, MoreRowsThanTheIndexHoldsAreRefusedBeforeTheFirst) {
  collectTwo();
  ListBox& list = control<ListBox>("idList");
  while (list.listCount() < 32'769) list.addItem(idRow(ids[0]));
  fillIn(u"Subject"_s, {}, u"new"_s);
  click("cmdWriteDocsInColl");
  expectBatchBox(6);
  EXPECT_EQ(saves(), 0);
}

TEST_F(CollectionEngineTest, SelectedEntriesAreTakenOffTheList) {
  collect({memo(u"a"_s), memo(u"b"_s), memo(u"c"_s), memo(u"d"_s)});
  ListBox& list = control<ListBox>("idList");
  list.setSelected(1, true);
  list.setSelected(2, true);
  click("cmdRemColl");
  EXPECT_EQ(rows("idList"), QStringList({idRow(ids[0]), idRow(ids[3])}));
  EXPECT_EQ(text("lblCounter"), "2");
  for (const NoteId id : ids) EXPECT_TRUE(stored(id).has(u"Subject"));
}

TEST_F(CollectionEngineTest, WithoutACurrentEntryNothingIsTakenOff) {
  collectTwo();
  control<ListBox>("idList").setListIndex(-1);
  click("cmdRemColl");
  EXPECT_EQ(rows("idList").size(), 2);
}

}  // namespace
}  // namespace lens
