#include "inspector/field_viewer.h"

#include "embedded/mime/mime_entity.h"
#include "embedded/richtext/rich_text.h"
#include "support/lens_fixture.h"

namespace lens {
namespace {

class FieldViewerTest : public LensFixture {
 protected:
  FieldViewerTest() { openDatabase(u"mail/kmeier.nsf"_s); }

  // Captures a document with one item beside its form and selects that item's row.
  void view(const QString& name, quint16 flags, const QByteArray& value) {
    Note note = document(u"Memo"_s);
    note.add(name, flags, value);
    openDocument(save(note));
    start();
    selectRow("fldList", name + u":");
  }
  // Puts a row into the empty idList and presses "View selected".
  void viewRow(const QString& row) {
    control<ListBox>("idList").addItem(row);
    select("idList", 0);
    click("cmdidList");
  }
  static QString idText(NoteId id) { return id.hexText().rightJustified(8, u'0'); }
  QVector<int> redPlaces() {
    QVector<int> places;
    const RichTextBox& box = control<RichTextBox>("txtFieldContent");
    for (int i = 0; i < box.length(); ++i)
      if (box.colorAt(i) == 255) places += i;
    return places;
  }
};

TEST_F(FieldViewerTest, ATextItemShowsNameTypeFlagsSizeAndContent) {
  view(u"Subject"_s, itemflag::Summary | itemflag::Sign, textValue(u"Pumps"_s));
  EXPECT_EQ(text("txtFieldName"), "Subject");
  EXPECT_EQ(text("txtFieldContent"), "Pumps");
  EXPECT_EQ(text("cmbFieldType"), "TEXT (1280) means text or text list");
  EXPECT_EQ(text("lblSize"), "7 bytes");
  EXPECT_EQ(value("chkSummary"), 1);
  EXPECT_EQ(value("chkSigned"), 1);
  EXPECT_EQ(value("chkEncrypted"), 0);
  EXPECT_EQ(value("chkProtected"), 0);
  EXPECT_EQ(host.pointerCode, pointer::Default);
  EXPECT_EQ(text("Label2"), "Contents of the first element: (click to see more)");
}

TEST_F(FieldViewerTest, EncryptedAndProtectedShowInTheirBoxes) {
  view(u"Secret"_s, itemflag::Seal | itemflag::Protected, textValue(u"x"_s));
  EXPECT_EQ(value("chkEncrypted"), 1);
  EXPECT_EQ(value("chkProtected"), 1);
  EXPECT_EQ(value("chkSummary"), 0);
}

TEST_F(FieldViewerTest, SeveralValuesShowALineEndAfterEach) {
  view(u"List"_s, itemflag::Summary, textListValue({u"a"_s, u"b"_s}));
  EXPECT_EQ(text("txtFieldContent"), "a\r\r\nb\r\r\n");
}

TEST_F(FieldViewerTest, ASingleValueShowsNoLineEnd) {
  view(u"List"_s, itemflag::Summary, textListValue({u"only"_s}));
  EXPECT_EQ(text("txtFieldContent"), "only");
}

TEST_F(FieldViewerTest, NamesReadersAndAuthorsHaveSentencesOfTheirOwn) {
  Note note = document(u"Memo"_s);
  note.add(u"N"_s, itemflag::Summary | itemflag::Names, textValue(u"CN=A"_s));
  note.add(u"R"_s, itemflag::Summary | itemflag::Names | itemflag::Readers, textValue(u"CN=A"_s));
  note.add(u"W"_s, itemflag::Summary | itemflag::Names | itemflag::Authors, textValue(u"CN=A"_s));
  openDocument(save(note));
  start();
  selectRow("fldList", u"N:"_s);
  EXPECT_EQ(text("cmbFieldType"), "NAMES (1074) means names");
  selectRow("fldList", u"R:"_s);
  EXPECT_EQ(text("cmbFieldType"), "READERS (1075) means readers");
  selectRow("fldList", u"W:"_s);
  EXPECT_EQ(text("cmbFieldType"), "AUTHORS (1076) means authors");
}

TEST_F(FieldViewerTest, NumbersShowAPointWhateverTheRegion) {
  view(u"Amount"_s, itemflag::Summary, numberValue(1.5));
  EXPECT_EQ(text("txtFieldContent"), "1.5");
  EXPECT_EQ(text("cmbFieldType"), "NUMBERS (768) means number or number list");
}

TEST_F(FieldViewerTest, DatesShowInTheRegionsForm) {
  view(u"Posted"_s, itemflag::Summary, timeValue(timeDateOf(DateTime{QDate(2024, 11, 21), QTime(14, 5, 9)})));
  EXPECT_EQ(text("txtFieldContent"), "21.11.2024 14:05:09");
  EXPECT_EQ(text("cmbFieldType"), "DATETIMES (1024) means date-time value or range of date-time values");
}

TEST_F(FieldViewerTest, RichTextShowsItsFormattedTextWithoutTabs) {
  RichText body;
  body.appendText(u"Dear\tMr Okafor,"_s);
  body.beginParagraph();
  body.appendText(u"second line"_s);
  Note note = document(u"Memo"_s);
  note.add(u"Body"_s, 0, rawValue(itemtype::RichText, body.toBytes()));
  openDocument(save(note));
  start();
  EXPECT_EQ(text("cmbFieldType"), "RICHTEXT (1) means rich text");
  EXPECT_FALSE(text("txtFieldContent").contains(u'\t'));
  EXPECT_TRUE(text("txtFieldContent").startsWith(u"Dear"));
  EXPECT_TRUE(text("txtFieldContent").endsWith(u"\r\r\nsecond line"));
}

TEST_F(FieldViewerTest, AMimePartShowsTheJoinedPartsOfTheMessage) {
  const QByteArray message =
      "MIME-Version: 1.0\r\nContent-Type: multipart/alternative; boundary=\"b1\"\r\n\r\n"
      "--b1\r\nContent-Type: text/plain\r\n\r\nplain\r\n"
      "--b1\r\nContent-Type: text/html\r\n\r\n<p>html</p>\r\n--b1--\r\n";
  Note note = document(u"Memo"_s);
  for (const QByteArray& value : mimePartValues(message)) note.add(u"Body"_s, 0, value);
  openDocument(save(note));
  start();
  EXPECT_EQ(text("txtFieldContent"), "plain<p>html</p>");
  EXPECT_EQ(text("cmbFieldType"), "MIME_PART (25) means MIME support");
  const QStringList& log = notes().log;
  EXPECT_EQ(log.count(u"CONVERTMIME"_s), 4);  // off and on again, for each of the two runs
}

TEST_F(FieldViewerTest, ASinglePartMessageShowsItsDecodedText) {
  Note note = document(u"Memo"_s);
  for (const QByteArray& value : mimePartValues(
           "Content-Type: text/plain; charset=utf-8\r\nContent-Transfer-Encoding: quoted-printable\r\n"
           "\r\nGr=C3=BC=C3=9Fe"))
    note.add(u"Body"_s, 0, value);
  openDocument(save(note));
  start();
  EXPECT_EQ(text("txtFieldContent"), u"Grüße"_s);
}

TEST_F(FieldViewerTest, ATypeWithoutARowLeavesTheTypeTextAsItWas) {
  view(u"Strange"_s, 0, rawValue(itemtype::ViewFormat, QByteArrayView("\1\0\0\0", 4)));
  EXPECT_EQ(text("cmbFieldType"), "");
  selectRow("fldList", u"Form:"_s);
  EXPECT_EQ(text("cmbFieldType"), "TEXT (1280) means text or text list");
  selectRow("fldList", u"Strange:"_s);
  EXPECT_EQ(text("cmbFieldType"), "TEXT (1280) means text or text list");
  EXPECT_EQ(text("txtFieldContent"), "");
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldViewerTest, ARowWithoutAMarkSetsAllFlagsToZeroAndKeepsTheType) {
  view(u"Subject"_s, itemflag::Summary | itemflag::Sign, textValue(u"Pumps"_s));
  control<ListBox>("fldList").addItem(u"no mark here"_s);
  select("fldList", 2);
  for (const char* flag : {"chkSummary", "chkEncrypted", "chkSigned", "chkProtected"})
    EXPECT_EQ(value(flag), 0);
  EXPECT_EQ(text("txtFieldContent"), "");
  EXPECT_EQ(text("cmbFieldType"), "TEXT (1280) means text or text list");
  EXPECT_EQ(text("lblSize"), "0 bytes");
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldViewerTest, TheContentKeepsEveryLineEndAndNoBreakSpaceExactly) {
  view(u"Odd"_s, itemflag::Summary, textValue(u"a\r\nb\rc\u00A0d"_s));
  EXPECT_EQ(text("txtFieldContent"), u"a\r\r\nb\rc\u00A0d"_s);
}

TEST_F(FieldViewerTest, TheFormulaRowIsReadBackTrimmed) {
  view(u"$Formula"_s, 0, textValue(u"x"_s));
  control<ListBox>("fldList").setList(1, u"$Formula:   SELECT Form = \"Memo\"\r\n  & @All\r\n  | x   "_s);
  select("fldList", 1);
  EXPECT_EQ(text("txtFieldContent"), "SELECT Form = \"Memo\"\r\r\n  & @All\r\r\n  | x");
}

// --- special items ---

TEST_F(FieldViewerTest, AssistActionShowsTheLegibleLettersBehindItsCount) {
  QByteArray action = QByteArray::fromHex("810285ff");
  appendU16(action, 12);
  action += '\x01';  // the byte at the read pointer is never shown
  action += "say \"hi\"\r\n\x01~}";
  view(u"$AssistAction"_s, 0, rawValue(itemtype::Action, action));
  EXPECT_EQ(text("txtFieldContent"), "say \"hi\"\r\n  ");
  EXPECT_EQ(text("txtFieldName"), "$AssistAction");
  EXPECT_EQ(text("cmbFieldType"), state().gDocTypes.item(u"16"_s));
}

TEST_F(FieldViewerTest, ARecordAsAgentsHaveItShowsNothing) {
  // Flags below 100h make the first copied byte zero.
  view(u"$AssistAction"_s, 0,
       rawValue(itemtype::Action, QByteArray::fromHex("810285ff7a050000000 06e0500002 72b2b4c")));
  EXPECT_EQ(text("txtFieldContent"), "");
}

TEST_F(FieldViewerTest, ACountBeyondTheValueReadsNothingOutside) {
  QByteArray action = QByteArray::fromHex("810285ff");
  appendU16(action, 32767);
  action +=
      "\x01"
      "abc";
  view(u"$AssistAction"_s, 0, rawValue(itemtype::Action, action));
  EXPECT_EQ(text("txtFieldContent"), "abc");
  view(u"$AssistAction"_s, 0, rawValue(itemtype::Action, QByteArray::fromHex("8102")));
  EXPECT_EQ(text("txtFieldContent"), "");
}

TEST_F(FieldViewerTest, FileDataShowsNothing) {
  view(u"$FileData"_s, 0, textValue(u"secret bytes"_s));
  EXPECT_EQ(text("txtFieldContent"), "");
  EXPECT_EQ(text("txtFieldName"), "");
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

TEST_F(FieldViewerTest, FileDataWithAnEmptyIdRowLeavesTheHourglassOn) {
  view(u"$FileData"_s, 0, textValue(u"x"_s));
  control<ListBox>("idList").clear();
  selectRow("fldList", u"$FileData:"_s);
  EXPECT_EQ(host.pointerCode, pointer::Hourglass);
  EXPECT_EQ(app->routines.mouseBusyCount(), 1);
}

TEST_F(FieldViewerTest, AgentInfoWithAnEmptyIdRowLeavesTheHourglassOn) {
  view(u"$AssistInfo"_s, 0, rawValue(itemtype::AssistantInfo, QByteArray(102, '\0')));
  EXPECT_EQ(host.pointerCode, pointer::Default);
  control<ListBox>("idList").clear();
  selectRow("fldList", u"$AssistInfo:"_s);
  EXPECT_EQ(host.pointerCode, pointer::Hourglass);
}

TEST_F(FieldViewerTest, AnErrorItemLeavesTheTypeTextAsItWas) {
  view(u"Broken"_s, 0, rawValue(itemtype::Error, QByteArrayView("\5\2", 2)));
  selectRow("fldList", u"Form:"_s);
  selectRow("fldList", u"Broken:"_s);
  EXPECT_EQ(text("cmbFieldType"), "TEXT (1280) means text or text list");
}

TEST_F(FieldViewerTest, ATextListHasTheSentenceOfText) {
  view(u"List"_s, itemflag::Summary, textListValue({u"a"_s, u"b"_s}));
  EXPECT_EQ(text("cmbFieldType"), "TEXT (1280) means text or text list");
}

TEST_F(FieldViewerTest, TheValueOfARichTextItemIsAnArrayWithOneText) {
  RichText body;
  body.appendText(u"one"_s);
  view(u"Body"_s, 0, rawValue(itemtype::RichText, body.toBytes()));
  const Value value = state().gDoc.call(u"GETITEMVALUE"_s, u"Body"_s);
  EXPECT_EQ(value.upperBound(), 0);
  EXPECT_EQ(value.at(0).text(), "one");
}

TEST_F(FieldViewerTest, AnItemNamedBodyInOtherLettersIsNotTheBody) {
  Note note = document(u"Memo"_s);
  note.add(u"BODY"_s, 0, textValue(u"other"_s));
  openDocument(save(note));
  start();
  EXPECT_EQ(control<ListBox>("fldList").listIndex(), -1);
}

TEST_F(FieldViewerTest, AnAttachmentViewedByIdOnAFreshStartHasNoCollectedSize) {
  Note note = document(u"Memo"_s);
  attach(note, u"contract.pdf"_s, "bytes");
  const NoteId id = save(note);
  start();
  viewRow(idText(id));
  selectRow("fldList", u"$FILE:"_s);
  EXPECT_EQ(boxes(), QStringList(u"Invalid procedure call or argument"_s));
  EXPECT_EQ(text("lblSize"), "0 bytes");
}

TEST_F(FieldViewerTest, ItemsOfALargeDocumentAreFoundByNameInAnyCase) {
  Note note = document(u"Memo"_s);
  for (int i = 0; i < 100; ++i) note.add(u"Field%1"_s.arg(i), itemflag::Summary, numberValue(i));
  note.add(u"FIELD7"_s, itemflag::Summary, textValue(u"second of its name"_s));
  openDocument(save(note));
  start();
  EXPECT_EQ(state().gDoc.call(u"GETITEMVALUE"_s, u"fIELD99"_s).at(0).number(), 99);
  EXPECT_EQ(state().gDoc.call(u"GETITEMVALUE"_s, u"field7"_s).at(0).number(), 7);
  EXPECT_TRUE(state().gDoc.call(u"GETITEMVALUE"_s, u"Field100"_s).isEmpty());
}

// --- stored sizes ---

TEST_F(FieldViewerTest, AListOfOneTenByteEntryHasTheSizeOfItsText) {
  view(u"List"_s, itemflag::Summary, textListValue({u"0123456789"_s}));
  EXPECT_EQ(text("lblSize"), "10 bytes");
}

TEST_F(FieldViewerTest, AListWithoutEntriesHasMinusTwoBytes) {
  view(u"List"_s, itemflag::Summary, textListValue({}));
  EXPECT_EQ(text("lblSize"), "-2 bytes");
}

TEST_F(FieldViewerTest, AReferenceListIsTwoBytesShorter) {
  view(u"$REF"_s, itemflag::Summary, noteRefsValue({Unid::fromText(QString(32, u'A'))}));
  EXPECT_EQ(text("lblSize"), "18 bytes");
}

TEST_F(FieldViewerTest, AnItemNameOutsideAsciiHasItsSize) {
  view(u"Größe"_s, itemflag::Summary, textValue(u"abc"_s));
  EXPECT_EQ(text("lblSize"), "5 bytes");
}

TEST_F(FieldViewerTest, ADatabaseAndAnItemOfLettersOutsideTheCodePageHaveTheirSizes) {
  openDatabase(u"Přehled.nsf"_s);
  view(u"Příloha č. 1"_s, itemflag::Summary, textValue(u"abc"_s));
  EXPECT_EQ(text("lblSize"), "5 bytes");
  EXPECT_EQ(boxes(), QStringList());
}

// The platform's own library knows the code page only.
TEST_F(FieldViewerTest, ANameThatTheLibraryCannotBeGivenIsToldOnceAndNotAnsweredWithZeros) {
  openDatabase(u"Přehled.nsf"_s);
  view(u"Subject"_s, itemflag::Summary, textValue(u"abc"_s));
  capi().boundToCodePage = true;
  for (int click = 0; click < 3; ++click) {
    selectRow("fldList", u"Form:"_s);
    selectRow("fldList", u"Subject:"_s);
    EXPECT_EQ(text("lblSize"), QString());
  }
  ASSERT_EQ(boxes().size(), 1);
  EXPECT_TRUE(boxes().first().contains(u"Přehled.nsf"_s)) << boxes().first().toStdString();
}

TEST_F(FieldViewerTest, ADatabaseThatCannotBeOpenedGivesZeroBytesAndNoMessage) {
  view(u"Subject"_s, itemflag::Summary, textValue(u"x"_s));
  notes().replies.insert(u"FILEPATH"_s, u"gone.nsf"_s);
  capi().log.clear();
  selectRow("fldList", u"Subject:"_s);
  EXPECT_EQ(text("lblSize"), "0 bytes");
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(capi().log,
            QStringList({u"NotesInitExtended"_s, u"OSPathNetConstruct"_s, u"NSFDbOpen"_s, u"NotesTerm"_s}));
}

TEST_F(FieldViewerTest, ReadingASizeClosesTheDatabaseAndNotTheNote) {
  view(u"Subject"_s, itemflag::Summary, textValue(u"x"_s));
  capi().log.clear();
  selectRow("fldList", u"Subject:"_s);
  EXPECT_EQ(capi().log, QStringList({u"NotesInitExtended"_s, u"OSPathNetConstruct"_s, u"NSFDbOpen"_s,
                                     u"NSFNoteOpen"_s, u"NSFItemInfo"_s, u"NSFDbClose"_s, u"NotesTerm"_s}));
}

TEST_F(FieldViewerTest, ANoteThatCannotBeOpenedStillClosesTheDatabase) {
  view(u"Subject"_s, itemflag::Summary, textValue(u"x"_s));
  notes().replies.insert(u"NOTEID"_s, u"7FFFFFFC"_s);
  capi().log.clear();
  selectRow("fldList", u"Subject:"_s);
  EXPECT_EQ(text("lblSize"), "0 bytes");
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(capi().log.mid(3), QStringList({u"NSFNoteOpen"_s, u"NSFDbClose"_s, u"NotesTerm"_s}));
}

TEST_F(FieldViewerTest, WithoutADocumentTheSizeShowsItsErrorAndClosesWhatWasNeverOpened) {
  start();
  capi().log.clear();
  control<ListBox>("fldList").addItem(u"Subject: x"_s);
  select("fldList", 0);
  EXPECT_EQ(boxes(), QStringList(u"Object variable or With block variable not set"_s));
  EXPECT_EQ(host.boxes[0].style, box::Plain);
  EXPECT_EQ(text("lblSize"), "0 bytes");
  EXPECT_EQ(capi().log, QStringList({u"NSFDbClose 0"_s, u"NotesTerm"_s}));
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

TEST_F(FieldViewerTest, AnAttachmentWhoseSizeWasNotCollectedReportsAndShowsZeroBytes) {
  Note note = document(u"Memo"_s);
  attach(note, u"contract.pdf"_s, "bytes");
  openDocument(save(note));
  start();
  state().gAttachmentSizes.clear();
  selectRow("fldList", u"$FILE:"_s);
  EXPECT_EQ(boxes(), QStringList(u"Invalid procedure call or argument"_s));
  EXPECT_EQ(text("lblSize"), "0 bytes");
  EXPECT_EQ(text("txtFieldContent"), "contract.pdf");
}

TEST_F(FieldViewerTest, ActionTextUnlocksItsPoolBeforeClosing) {
  QByteArray action = QByteArray::fromHex("810285ff0300");
  action +=
      "\x01"
      "abc";
  view(u"$AssistAction"_s, 0, rawValue(itemtype::Action, action));
  const qsizetype lock = capi().log.lastIndexOf(u"OSLockObject"_s);
  ASSERT_GE(lock, 0);
  EXPECT_EQ(capi().log.mid(lock),
            QStringList({u"OSLockObject"_s, u"ODSReadMemory"_s, u"ODSReadMemory"_s, u"ODSReadMemory"_s,
                         u"ODSReadMemory"_s, u"OSUnlockObject"_s, u"NSFDbClose"_s, u"NotesTerm"_s}));
}

// --- marking ---

TEST_F(FieldViewerTest, EveryHitIsRedAndTheCaretReturnsToTheTop) {
  view(u"Subject"_s, itemflag::Summary, textValue(u"Contract and contract"_s));
  setText("txtSearch", u"contract"_s);
  click("fldList");
  EXPECT_EQ(redPlaces(), QVector<int>({0, 1, 2, 3, 4, 5, 6, 7, 13, 14, 15, 16, 17, 18, 19, 20}));
  EXPECT_EQ(control<RichTextBox>("txtFieldContent").selStart(), 1);
  EXPECT_EQ(control<RichTextBox>("txtFieldContent").selLength(), 0);
  form().chkCase->setValue(1);
  click("fldList");
  EXPECT_EQ(redPlaces().size(), 8);
  EXPECT_EQ(redPlaces().first(), 13);
}

TEST_F(FieldViewerTest, AGreyCaseBoxIgnoresCase) {
  view(u"Subject"_s, itemflag::Summary, textValue(u"Ab"_s));
  setText("txtSearch", u"aB"_s);
  form().chkCase->setValue(2);
  click("fldList");
  EXPECT_EQ(redPlaces(), QVector<int>({0, 1}));
}

TEST_F(FieldViewerTest, ALetterThatGrowsInUpperCaseMovesNoHit) {
  view(u"Subject"_s, itemflag::Summary, textValue(u"Straße x"_s));
  setText("txtSearch", u"x"_s);
  click("fldList");
  EXPECT_EQ(redPlaces(), QVector<int>({7}));
}

TEST_F(FieldViewerTest, HitsBehindCarriageReturnsAreColouredInTheirPlace) {
  view(u"List"_s, itemflag::Summary, textListValue({u"ab"_s, u"xb"_s}));
  setText("txtSearch", u"xb"_s);
  click("fldList");
  EXPECT_EQ(redPlaces(), QVector<int>({5, 6}));  // behind "ab", CR, CR, LF
}

TEST_F(FieldViewerTest, AHitBehindPosition32767EndsTheMarking) {
  QString content(40010, u'.');
  content.replace(9, 3, u"hit"_s);
  content.replace(39999, 3, u"hit"_s);
  Note note = document(u"Memo"_s);
  note.add(u"Long"_s, 0, textValue(content));
  openDocument(save(note));
  start();
  setText("txtSearch", u"hit"_s);
  selectRow("fldList", u"Long:"_s);
  EXPECT_EQ(redPlaces(), QVector<int>({9, 10, 11}));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldViewerTest, TheFirstHitAt32767IsMarkedAndOneBehindItIsNot) {
  const auto hits = [&](int place) {
    QString content(33000, u'.');
    content[place - 1] = u'#';
    Note note = document(u"Memo"_s);
    note.add(u"Long"_s, 0, textValue(content));
    openDocument(save(note));
    start();
    setText("txtSearch", u"#"_s);
    selectRow("fldList", u"Long:"_s);
    return redPlaces();
  };
  EXPECT_EQ(hits(32767), QVector<int>({32766}));
  EXPECT_EQ(hits(32768), QVector<int>());
}

// --- view selected ---

TEST_F(FieldViewerTest, ViewSelectedListsTheDocumentOfTheRow) {
  Note note = document(u"Memo"_s);
  note.add(u"Numbers"_s, itemflag::Summary, numberListValue({7, 8}));
  note.add(u"Unknown"_s, 0, rawValue(itemtype::ViewFormat, QByteArrayView("\1\0\0\0", 4)));
  attach(note, u"one.txt"_s, "1");
  attach(note, u"two.txt"_s, "2");
  const NoteId id = save(note);
  start();
  viewRow(idText(id));
  EXPECT_EQ(rows("fldList"), QStringList({u"Form:    Memo"_s, u"Numbers: 7"_s, u"Unknown: "_s,
                                          u"$FILE:   one.txt"_s, u"$FILE:   two.txt"_s}));
  EXPECT_EQ(text("NotesUID"), note.header.unid.text());
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

TEST_F(FieldViewerTest, ViewSelectedReadsTheIdBehindADesignName) {
  Note form;
  form.header.noteClass = noteclass::Form;
  form.add(u"$TITLE"_s, itemflag::Summary, textValue(u"Person|per"_s));
  const NoteId id = save(form);
  start();
  viewRow(u"Person|per  # "_s + idText(id));
  EXPECT_EQ(rows("fldList"), QStringList(u"$TITLE: Person|per"_s));
}

TEST_F(FieldViewerTest, AnIdOfAnotherLengthKeepsTheDocumentThatWasThere) {
  Note note = document(u"Memo"_s);
  openDocument(save(note));
  start();
  control<ListBox>("idList").clear();
  viewRow(u"name # 12"_s);
  EXPECT_EQ(rows("fldList"), QStringList(u"Form: Memo"_s));
}

TEST_F(FieldViewerTest, AViewsFormulaIsShownWhileViewsAreListed) {
  Note view;
  view.header.noteClass = noteclass::View;
  view.add(u"$TITLE"_s, itemflag::Summary, textValue(u"All"_s));
  view.add(u"$Formula"_s, itemflag::Summary, textValue(u"x"_s));
  const NoteId id = save(view);
  notes().replies.insert(u"SELECTIONFORMULA"_s, u"SELECT @All\n& x"_s);
  start();
  selectRow("lstDesigns", u"SELECTVIEWS"_s);
  viewRow(u"All  # "_s + idText(id));
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(rows("fldList").last(), "$Formula: SELECT @All\n& x");
  EXPECT_EQ(text("txtFieldContent"), "SELECT @All\r\n& x");
  EXPECT_EQ(text("txtFieldName"), "$Formula");
  EXPECT_EQ(value("chkSummary"), 1);
  EXPECT_EQ(text("lblSize"), "3 bytes");
}

TEST_F(FieldViewerTest, ViewSelectedWithoutADatabaseOrARowDoesNothing) {
  start();
  click("cmdidList");
  closeDatabase();
  state().gDb.release();
  control<ListBox>("fldList").addItem(u"stays: x"_s);
  click("cmdidList");
  EXPECT_EQ(rows("fldList"), QStringList(u"stays: x"_s));
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

TEST_F(FieldViewerTest, ViewSelectedWithAnUnknownIdShowsTheErrorBoxAndLeavesTheHourglass) {
  Note note = document(u"Memo"_s);
  openDocument(save(note));
  start();
  control<ListBox>("idList").addItem(u"7FFFFFFC"_s);
  select("idList", 1);
  click("cmdidList");
  ASSERT_EQ(boxes().size(), 1);
  EXPECT_TRUE(boxes()[0].endsWith(u") in procedure cmdidList_Click of Formular Form1"));
  EXPECT_TRUE(state().gDoc.isNothing());
  EXPECT_EQ(app->routines.mouseBusyCount(), 1);
}

TEST_F(FieldViewerTest, ViewSelectedSelectsTheBodyAndSearchesForTheRowsFirstWord) {
  Note note = document(u"Memo"_s);
  note.add(u"Body"_s, 0, textValue(u"the Weekly report"_s));
  const NoteId id = save(note);
  start();
  control<ListBox>("idList").addItem(u"Weekly report # "_s + idText(id));
  select("idList", 0);
  form().chkCase->setValue(1);
  click("cmdidList");
  EXPECT_EQ(text("fldList"), "Body: the Weekly report");
  EXPECT_EQ(text("txtSearch"), "Weekly");
  EXPECT_EQ(form().chkCase->value(), 0);
  EXPECT_EQ(redPlaces(), QVector<int>({4, 5, 6, 7, 8, 9}));
}

TEST_F(FieldViewerTest, RepaintingTheIdListKeepsItsMarks) {
  start();
  ListBox& list = control<ListBox>("idList");
  for (const char16_t* row : {u"00000001", u"00000002", u"00000003", u"00000004"})
    list.addItem(QString::fromUtf16(row));
  for (int row : {0, 2, 3}) list.setSelected(row, true);
  list.refresh();
  EXPECT_TRUE(list.selected(0) && !list.selected(1) && list.selected(2) && list.selected(3));
  EXPECT_EQ(list.listIndex(), 3);
}

TEST_F(FieldViewerTest, FiveMegabytesOfTextAreShown) {
  const QString content = QString(u"0123456789abcde\n"_s).repeated(5 * 65536);
  RichText body;
  body.appendText(content);
  Note note = document(u"Memo"_s);
  note.add(u"Long"_s, 0, rawValue(itemtype::RichText, body.toBytes()));
  openDocument(save(note));
  start();
  selectRow("fldList", u"Long:"_s);
  EXPECT_GE(text("txtFieldContent").size(), 5 * 65536 * 16);
}

}  // namespace
}  // namespace lens
