#include "inspector/document_capture.h"

#include <QTest>

#include "support/lens_fixture.h"

namespace lens {
namespace {

class DocumentCaptureTest : public LensFixture {
 protected:
  DocumentCaptureTest() { openDatabase(u"mail/kmeier.nsf"_s); }

  NoteId memo(const QString& subject) {
    Note note = document(u"Memo"_s);
    note.add(u"Subject"_s, itemflag::Summary, textValue(subject));
    return save(note);
  }
  static QString idText(NoteId id) { return id.hexText().rightJustified(8, u'0'); }
};

TEST_F(DocumentCaptureTest, ListsEveryItemPaddedToACommonWidth) {
  Note note = document(u"Memo"_s);
  note.add(u"DeliveryPriority"_s, itemflag::Summary, textValue(u"N"_s));
  note.add(u"Numbers"_s, itemflag::Summary, numberListValue({1, 2.5}));
  openDocument(save(note));
  start();
  EXPECT_EQ(rows("fldList"), QStringList({u"Form:             Memo"_s, u"DeliveryPriority: N"_s,
                                          u"Numbers:          1;2.5"_s}));
  EXPECT_EQ(rows("idList"), QStringList(idText(note.header.id)));
  EXPECT_EQ(text("lblCounter"), "1");
  EXPECT_EQ(text("NotesUID"), note.header.unid.text());
  EXPECT_EQ(state().gDocKind, "UIDOC");
  EXPECT_TRUE(text("lastModified").startsWith(u"Database size: "));
  EXPECT_TRUE(text("lastModified").endsWith(u" bytes"));
}

TEST_F(DocumentCaptureTest, ADocumentWithoutBodyEndsWithoutASelectedField) {
  openDocument(memo(u"x"_s));
  start();
  EXPECT_EQ(control<ListBox>("fldList").listIndex(), -1);
  EXPECT_EQ(text("txtFieldContent"), "");
  EXPECT_EQ(text("txtFieldName"), "");
  for (const char* flag : {"chkSummary", "chkEncrypted", "chkSigned", "chkProtected"})
    EXPECT_EQ(value(flag), 0);
}

TEST_F(DocumentCaptureTest, ADocumentWithBodyShowsItAndRunsTheViewerTwice) {
  Note note = document(u"Memo"_s);
  note.add(u"Body"_s, 0, textValue(u"Dear Mr Okafor"_s));
  openDocument(save(note));
  start();
  notes().log.clear();
  click("cmdGetDoc");
  EXPECT_EQ(text("fldList"), "Body: Dear Mr Okafor");
  EXPECT_EQ(text("txtFieldContent"), "Dear Mr Okafor");
  EXPECT_EQ(text("txtSearch"), "");
  EXPECT_EQ(notes().log.count(u"ISSUMMARY"_s), 2);
}

TEST_F(DocumentCaptureTest, ASelectionOfSeveralDocumentsCapturesTheFirst) {
  const NoteId first = memo(u"first"_s);
  const NoteId second = memo(u"second"_s);
  selectDocuments({second, first});
  start();
  EXPECT_EQ(rows("idList"), QStringList(idText(second)));
  EXPECT_EQ(rows("fldList").last(), "Subject: second");
}

TEST_F(DocumentCaptureTest, AnEmptySelectionIsNotAskedForItsFirstDocument) {
  memo(u"x"_s);
  start();
  EXPECT_TRUE(notes().log.contains(u"count"_s));
  EXPECT_FALSE(notes().log.contains(u"GETFIRSTDOCUMENT"_s));
  EXPECT_EQ(rows("fldList"), QStringList());
  EXPECT_TRUE(state().gDoc.isNothing());
}

TEST_F(DocumentCaptureTest, WithoutADatabaseBothSharedObjectsAreReleased) {
  openDocument(memo(u"x"_s));
  start();
  closeDatabase();
  click("cmdGetDoc");
  // The profile search, which comes first, finds none either.
  EXPECT_EQ(boxes(), QStringList({u"Cann't open DB try again"_s, u"Cann't open DB try again"_s}));
  EXPECT_EQ(host.boxes[0], host.boxes[1]);
  EXPECT_EQ(host.boxes[0].style, box::Plain);
  EXPECT_TRUE(state().gSession.isNothing());
  EXPECT_TRUE(state().gUIWorkspace.isNothing());
  EXPECT_TRUE(state().gDb.isNothing());
}

TEST_F(DocumentCaptureTest, ACurrentDatabaseThatRaisesLeavesTheOneBefore) {
  openDocument(memo(u"x"_s));
  start();
  const Object before = state().gDb;
  notes().failing.insert(u"CURRENTDATABASE"_s, RuntimeError(7063));
  click("cmdGetDoc");
  EXPECT_EQ(state().gDb, before);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(DocumentCaptureTest, TheTypeListKeepsItsThirtyRowsAndLosesItsText) {
  Note note = document(u"Memo"_s);
  note.add(u"Body"_s, 0, textValue(u"x"_s));
  openDocument(save(note));
  start();
  EXPECT_TRUE(text("cmbFieldType").startsWith(u"TEXT (1280)"));
  openDocument(memo(u"no body"_s));
  click("cmdGetDoc");
  click("cmdGetDoc");
  EXPECT_EQ(text("cmbFieldType"), "");
  EXPECT_EQ(rows("cmbFieldType").size(), 30);
  control<ComboBox>("cmbFieldType").setFocus();
  type("cmbFieldType", u"TEXT"_s);
  QTest::keyClick(&control<ComboBox>("cmbFieldType"), Qt::Key_Return);
  EXPECT_EQ(text("cmbFieldType"), "TEXT");
  EXPECT_EQ(rows("cmbFieldType").size(), 30);
}

TEST_F(DocumentCaptureTest, ScanControlsAreHiddenFromReleaseFiveOnAndStayHidden) {
  openDocument(memo(u"x"_s));
  notes().replies.insert(u"NOTESVERSION"_s, u"Release 10.0"_s);
  start();
  for (const char* name : {"cmdStop", "lfdIDNum", "txtLfdNr", "Label4"}) EXPECT_TRUE(isShown(name)) << name;
  notes().replies.insert(u"NOTESVERSION"_s, u"Release 9.0.1"_s);
  click("cmdGetDoc");
  notes().replies.insert(u"NOTESVERSION"_s, u"Release 10.0"_s);
  click("cmdGetDoc");
  for (const char* name : {"cmdStop", "lfdIDNum", "txtLfdNr", "Label4"}) EXPECT_FALSE(isShown(name)) << name;
  EXPECT_TRUE(isShown("Label5"));
}

TEST_F(DocumentCaptureTest, TheCaptionNamesFileAndServer) {
  openDatabase(u"names.nsf"_s, u"CN=ACME-HUB01/O=Acme"_s);
  openDocument(memo(u"x"_s));
  start();
  EXPECT_EQ(caption(), "Current UI document in: names.nsf!!ACME-HUB01");
}

TEST_F(DocumentCaptureTest, EachAttachmentHasItsRowAndItsSizeIsKeptUnderItsName) {
  Note note = document(u"Memo"_s);
  attach(note, u"contract.pdf"_s, QByteArray(300, 'x'));
  attach(note, u"price-list.ods"_s, QByteArray(40, 'x'));
  openDocument(save(note));
  start();
  EXPECT_EQ(rows("fldList"),
            QStringList({u"Form:  Memo"_s, u"$FILE: contract.pdf"_s, u"$FILE: price-list.ods"_s}));
  EXPECT_EQ(state().gAttachmentSizes.item(u"contract.pdf"_s), "300");
  select("fldList", 1);
  EXPECT_EQ(text("lblSize"), "300 bytes");
  EXPECT_EQ(text("txtFieldContent"), "contract.pdf");
  select("fldList", 2);
  EXPECT_EQ(text("lblSize"), "40 bytes");
  EXPECT_EQ(text("txtFieldContent"), "price-list.ods");
}

TEST_F(DocumentCaptureTest, ForgettingSizesPassesOverEverySecondOne) {
  start();
  const auto keysLeftOf = [&](int count) {
    state().gAttachmentSizes.clear();
    for (int i = 1; i <= count; ++i) state().gAttachmentSizes.add(QString::number(i), u"file%1"_s.arg(i));
    openDocument(memo(u"no files"_s));
    click("cmdGetDoc");
    QStringList left;
    for (int place = 1; place <= state().gAttachmentSizes.count(); ++place)
      left += state().gAttachmentSizes.item(place);
    return left;
  };
  EXPECT_EQ(keysLeftOf(4), QStringList({u"2"_s, u"4"_s}));
  EXPECT_EQ(keysLeftOf(3), QStringList(u"2"_s));
  EXPECT_EQ(keysLeftOf(0), QStringList());
}

TEST_F(DocumentCaptureTest, ANameThatStayedKeepsItsOldSize) {
  start();
  state().gAttachmentSizes.add(u"1"_s, u"a"_s);
  state().gAttachmentSizes.add(u"999"_s, u"CONTRACT.pdf"_s);
  Note note = document(u"Memo"_s);
  attach(note, u"contract.pdf"_s, QByteArray(300, 'x'));
  openDocument(save(note));
  click("cmdGetDoc");
  EXPECT_EQ(state().gAttachmentSizes.item(u"contract.pdf"_s), "999");
}

TEST_F(DocumentCaptureTest, AnAttachmentNamedLikeAStoredSizeIsNotAdded) {
  Note note = document(u"Memo"_s);
  attach(note, u"first"_s, QByteArray(12, 'x'));
  attach(note, u"12"_s, QByteArray(5, 'x'));
  openDocument(save(note));
  start();
  EXPECT_EQ(state().gAttachmentSizes.count(), 1);
  EXPECT_EQ(rows("fldList").size(), 3);
}

TEST_F(DocumentCaptureTest, TwoItemsOfOneNameAreTwoRows) {
  Note note = document(u"Memo"_s);
  note.add(u"A"_s, itemflag::Summary, textValue(u"one"_s));
  note.add(u"A"_s, itemflag::Summary, textValue(u"two"_s));
  openDocument(save(note));
  start();
  EXPECT_EQ(rows("fldList"), QStringList({u"Form: Memo"_s, u"A:    one"_s, u"A:    two"_s}));
  select("fldList", 2);
  EXPECT_EQ(text("txtFieldContent"), "one");
}

// --- items of one type ---

TEST_F(DocumentCaptureTest, FieldTypeListsTheItemsOfThatTypeUnpadded) {
  Note note = document(u"Memo"_s);
  note.add(u"LongItemName"_s, itemflag::Summary, numberValue(7));
  note.add(u"N"_s, itemflag::Summary, numberListValue({1, 2}));
  openDocument(save(note));
  start();
  state().gDocKind = u"DESIGN"_s;
  setText("cmbFieldType", state().gDocTypes.item(u"768"_s));
  click("cmdFldtype");
  EXPECT_EQ(rows("fldList"), QStringList({u"LongItemName: 7"_s, u"N: 1;2"_s}));
  EXPECT_EQ(text("cmbFieldType"), state().gDocTypes.item(u"768"_s));
  EXPECT_EQ(state().gDocKind, "DESIGN");
  EXPECT_EQ(text("lblCounter"), "1");
}

TEST_F(DocumentCaptureTest, FieldTypeNeverMatchesATypeWithoutARow) {
  Note note = document(u"Memo"_s);
  note.add(u"Broken"_s, 0, rawValue(itemtype::Error, QByteArrayView("\x05\x02", 2)));
  openDocument(save(note));
  start();
  setText("cmbFieldType", state().gDocTypes.item(u"156"_s));
  click("cmdFldtype");
  EXPECT_EQ(rows("fldList"), QStringList());
  setText("cmbFieldType", QString());
  click("cmdFldtype");
  EXPECT_EQ(rows("fldList"), QStringList());
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(DocumentCaptureTest, FieldTypeShowsFileNamesForAttachments) {
  Note note = document(u"Memo"_s);
  attach(note, u"contract.pdf"_s, "bytes");
  openDocument(save(note));
  start();
  setText("cmbFieldType", state().gDocTypes.item(u"1084"_s));
  click("cmdFldtype");
  EXPECT_EQ(rows("fldList"), QStringList(u"$FILE: contract.pdf"_s));
}

TEST_F(DocumentCaptureTest, FieldTypeWithoutADatabaseShowsOneBox) {
  start();
  closeDatabase();
  host.boxes.clear();
  click("cmdFldtype");
  EXPECT_EQ(boxes(), QStringList(u"Cann't open DB try again"_s));
}

TEST_F(DocumentCaptureTest, FieldTypeWithoutADocumentSaysSo) {
  start();
  click("cmdFldtype");
  EXPECT_EQ(boxes(), QStringList(u"Cann't open document try again"_s));
  EXPECT_EQ(host.boxes[0].style, box::Plain);
}

// --- documents by ID ---

TEST_F(DocumentCaptureTest, AShortDecimalNoteIdIsPaddedAndFound) {
  const NoteId id = memo(u"by number"_s);
  start();
  setText("NotesID", QString::number(id.value()));
  click("viewNotesID");
  EXPECT_EQ(rows("idList"), QStringList(idText(id)));
  EXPECT_EQ(rows("fldList").last(), "Subject: by number");
}

TEST_F(DocumentCaptureTest, ALongHexadecimalIdIsCutToItsLastEightDigits) {
  const NoteId id = memo(u"by hex"_s);
  start();
  click("cmdDECHEX");
  setText("NotesID", u"FFFF"_s + idText(id));
  click("viewNotesID");
  EXPECT_EQ(rows("idList"), QStringList(idText(id)));
  EXPECT_EQ(rows("fldList").last(), "Subject: by hex");
}

TEST_F(DocumentCaptureTest, ViewingByNoteIdShowsTheUniversalIdWhichEmptiesTheNoteId) {
  const NoteId id = memo(u"x"_s);
  start();
  setText("NotesID", QString::number(id.value()));
  click("viewNotesID");
  EXPECT_EQ(text("NotesUID").size(), 32);
  EXPECT_EQ(text("NotesID"), "");
}

TEST_F(DocumentCaptureTest, AUniversalIdShowsTheNoteIdOfItsDocument) {
  Note note = document(u"Memo"_s);
  save(note);
  start();
  setText("NotesUID", note.header.unid.text());
  click("viewNotesID");
  EXPECT_EQ(rows("idList"), QStringList(idText(note.header.id)));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(DocumentCaptureTest, AnUnknownNoteIdShowsTheCriticalBoxWithTheFilesName) {
  memo(u"x"_s);
  start();
  click("cmdDECHEX");
  setText("NotesID", u"7FFFFFFC"_s);
  click("viewNotesID");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0], (ShownBox{u"Invalid note ID"_s, box::Critical, u"Db = kmeier.nsf"_s}));
  EXPECT_EQ(rows("idList"), QStringList(u"7FFFFFFC"_s));
}

TEST_F(DocumentCaptureTest, AnUnknownUniversalIdShowsItsOwnText) {
  start();
  setText("NotesUID", QString(32, u'A'));
  click("viewNotesID");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0], (ShownBox{u"Invalid universal ID"_s, box::Critical, u"Db = kmeier.nsf"_s}));
}

TEST_F(DocumentCaptureTest, AnIdWithoutADatabaseShowsNothing) {
  start();
  closeDatabase();
  host.boxes.clear();
  setText("NotesID", u"2298"_s);
  click("viewNotesID");
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_TRUE(state().gDb.isNothing());
}

TEST_F(DocumentCaptureTest, ADeletedDocumentGivesNoFieldsAndNoBox) {
  const NoteId id = memo(u"x"_s);
  database->notes().remove(id);
  start();
  setText("NotesID", QString::number(id.value()));
  click("viewNotesID");
  EXPECT_EQ(rows("fldList"), QStringList());
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(DocumentCaptureTest, NoIdAtAllEndsTheClickBeforeAnythingIsCleared) {
  openDocument(memo(u"x"_s));
  start();
  setText("NotesUID", QString());
  click("viewNotesID");
  EXPECT_EQ(rows("idList").size(), 1);
}

TEST_F(DocumentCaptureTest, TheSpecialNumberOfTheIconNoteIsFound) {
  Note icon;
  icon.header.noteClass = noteclass::Icon;
  icon.add(u"$TITLE"_s, itemflag::Summary, textValue(u"Mail"_s));
  save(icon);
  start();
  setText("NotesID", u"4294901776"_s);
  click("viewNotesID");
  EXPECT_EQ(rows("fldList"), QStringList(u"$TITLE: Mail"_s));
}

TEST_F(DocumentCaptureTest, ANegativeNumberIsLookedForAsMinusOne) {
  start();
  setText("NotesID", u"-1"_s);
  click("viewNotesID");
  EXPECT_EQ(rows("idList"), QStringList(u"000000-1"_s));
  EXPECT_EQ(boxes(), QStringList(u"Invalid note ID"_s));
}

// --- the ID boxes ---

TEST_F(DocumentCaptureTest, EachIdBoxEmptiesTheOther) {
  start();
  setText("NotesUID", u"ABC"_s);
  setText("NotesID", u"1"_s);
  EXPECT_EQ(text("NotesUID"), "");
  setText("NotesUID", u"ABC"_s);
  EXPECT_EQ(text("NotesID"), "");
}

TEST_F(DocumentCaptureTest, ACaptureEmptiesATypedNoteId) {
  openDocument(memo(u"x"_s));
  start();
  setText("NotesID", u"1"_s);
  click("cmdGetDoc");
  EXPECT_EQ(text("NotesID"), "");
}

TEST_F(DocumentCaptureTest, TheModeButtonConvertsTheNumberBothWays) {
  start();
  setText("NotesID", u"36770"_s);
  click("cmdDECHEX");
  EXPECT_EQ(text("cmdDECHEX"), "HEX NoteID");
  EXPECT_EQ(text("NotesID"), "8FA2");
  click("cmdDECHEX");
  EXPECT_EQ(text("cmdDECHEX"), "DEC NoteID");
  EXPECT_EQ(text("NotesID"), "36770");
}

TEST_F(DocumentCaptureTest, TwelveHexadecimalDigitsShowAllDigitsOfTheirNumber) {
  start();
  click("cmdDECHEX");
  setText("NotesID", u"FFFFFFFFFFFF"_s);
  click("cmdDECHEX");
  EXPECT_EQ(text("NotesID"), "281474976710655");
}

TEST_F(DocumentCaptureTest, ATextThatIsNoNumberChangesTheModeAndEmptiesTheBoxWithOneMessage) {
  start();
  setText("NotesID", u"abc"_s);
  click("cmdDECHEX");
  EXPECT_EQ(text("cmdDECHEX"), "HEX NoteID");
  EXPECT_EQ(text("NotesID"), "");
  EXPECT_EQ(boxes(),
            QStringList(u"Error 13 (Type mismatch) in procedure UnsignedDec2Hex of Modul Globals"_s));
}

TEST_F(DocumentCaptureTest, HexModeTakesDigitsAndTheLettersUpToF) {
  start();
  click("cmdDECHEX");
  type("NotesID", u"0a9fF"_s);
  EXPECT_EQ(text("NotesID"), "0A9FF");
  type("NotesID", u":@"_s);
  EXPECT_EQ(text("NotesID"), "0A9FF:@");
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(DocumentCaptureTest, HexModeRefusesOtherCharactersAndEmptiesTheBox) {
  start();
  click("cmdDECHEX");
  type("NotesID", u"12g"_s);
  EXPECT_EQ(text("NotesID"), "");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0],
            (ShownBox{u"Only Charachter between 'A' - 'F'  allowed"_s, box::Critical, u"HEX NoteID"_s}));
  type("NotesID", u"3-"_s);
  EXPECT_EQ(text("NotesID"), "");
  EXPECT_EQ(host.boxes.size(), 2);
}

TEST_F(DocumentCaptureTest, EditingKeysPassInHexMode) {
  start();
  click("cmdDECHEX");
  type("NotesID", u"12"_s);
  QTest::keyClick(&control<TextBox>("NotesID"), Qt::Key_Backspace);
  QTest::keyClick(&control<TextBox>("NotesID"), Qt::Key_Left);
  QTest::keyClick(&control<TextBox>("NotesID"), Qt::Key_Delete);
  EXPECT_EQ(text("NotesID"), "");
  type("NotesID", u"1A"_s);
  QTest::keyClick(&control<TextBox>("NotesID"), Qt::Key_Return);
  QTest::keyClick(&control<TextBox>("NotesID"), Qt::Key_Escape);
  EXPECT_EQ(text("NotesID"), "1A");
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(DocumentCaptureTest, DecimalModeTakesEveryKeyAndPastedLettersPassWithoutAWord) {
  start();
  type("NotesID", u"1g-"_s);
  EXPECT_EQ(text("NotesID"), "1g-");
  EXPECT_EQ(boxes(), QStringList());
}

// --- the open document ---

TEST_F(DocumentCaptureTest, CloseIfOpenClosesTheDocumentOnScreenOnly) {
  const NoteId first = memo(u"first"_s);
  const NoteId second = memo(u"second"_s);
  openDocument(first);
  start();
  const Object other = state().gDb.call(u"GETDOCUMENTBYID"_s, idText(second)).object();
  EXPECT_FALSE(app->capture.CloseIfOpen(other));
  EXPECT_EQ(workspace->client().document(), first);
  EXPECT_TRUE(app->capture.CloseIfOpen(state().gDoc));
  EXPECT_EQ(workspace->client().document(), NoteId());
}

TEST_F(DocumentCaptureTest, CloseIfOpenWithoutAnOpenDocumentShowsTheErrorBox) {
  openDocument(memo(u"x"_s));
  start();
  openDocument(NoteId(0));
  EXPECT_FALSE(app->capture.CloseIfOpen(state().gDoc));
  EXPECT_EQ(boxes(), QStringList(u"Error 91 (Object variable or With block variable not set) in procedure "
                                 "CloseIfOpen of Formular Form1"_s));
}

TEST_F(DocumentCaptureTest, RefreshingTheViewReachesTheClient) {
  struct Listener : ClientListener {
    int refreshes = 0;
    void refreshView() override { ++refreshes; }
    void documentClosed() override {}
    void databaseClosed() override {}
  } listener;
  workspace->client().setListener(&listener);
  start();
  app->capture.RefreshCurrentView();
  EXPECT_EQ(listener.refreshes, 1);
  workspace->client().setListener(nullptr);
}

TEST_F(DocumentCaptureTest, DoubleClickOnARowViewsItOnlyWhileTheButtonIsEnabled) {
  const NoteId id = memo(u"x"_s);
  start();
  control<ListBox>("idList").addItem(idText(id));
  select("idList", 0);
  control<Button>("cmdidList").setEnabled(false);
  control<ListBox>("idList").raiseDblClick();
  EXPECT_EQ(rows("fldList"), QStringList());
  control<Button>("cmdidList").setEnabled(true);
  control<ListBox>("idList").raiseDblClick();
  EXPECT_EQ(rows("fldList").size(), 2);
}

}  // namespace
}  // namespace lens
