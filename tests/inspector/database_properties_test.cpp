// A double click on the database's line: its icon note on display, its flags explained.
#include "inspector/database_properties.h"

#include <QTest>

#include "inspector/database_flags.h"
#include "support/lens_fixture.h"

namespace lens {
namespace {

class DatabasePropertiesTest : public LensFixture {
 protected:
  DatabasePropertiesTest() { openDatabase(u"mail/kmeier.nsf"_s); }

  NoteId saveIcon(const QByteArray& flags) {
    Note icon;
    icon.header.noteClass = noteclass::Icon;
    icon.add(u"$TITLE"_s, itemflag::Summary, textValue(u"Mail"_s));
    if (!flags.isEmpty()) icon.add(u"$Flags"_s, itemflag::Summary, flags);
    return save(icon);
  }
  // Starts the program on a database whose icon note has these flags.
  void startWithFlags(const QByteArray& flags) {
    iconId = saveIcon(flags);
    start();
    host.boxes.clear();
  }
  void doubleClick() { QTest::mouseDClick(&control<Label>("lastModified"), Qt::LeftButton); }
  QStringList redParts() {
    QStringList parts;
    const RichTextBox& box = control<RichTextBox>("txtFieldContent");
    bool before = false;
    for (int i = 0; i < box.length(); ++i) {
      const bool red = box.colorAt(i) == 255;
      if (red && !before) parts += QString();
      if (red) parts.last() += box.text()[i];
      before = red;
    }
    return parts;
  }
  static QString idText(NoteId id) { return id.hexText().rightJustified(8, u'0'); }

  NoteId iconId;
};

TEST_F(DatabasePropertiesTest, ShowsTheIconNoteAndItsItems) {
  startWithFlags(textValue(u"rJ"_s));
  doubleClick();
  EXPECT_EQ(rows("idList"), QStringList(idText(iconId)));
  EXPECT_EQ(control<ListBox>("idList").listIndex(), 0);
  EXPECT_EQ(rows("fldList"), QStringList({u"$TITLE: Mail"_s, u"$Flags: rJ"_s}));
  Note icon;
  ASSERT_TRUE(database->notes().read(iconId, icon));
  EXPECT_EQ(text("NotesUID"), icon.header.unid.text());
  EXPECT_EQ(NoteId(state().gDoc.get(u"NoteID"_s).text().toUInt(nullptr, 16)), iconId);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(DatabasePropertiesTest, ShowsTheLegendWithTheLinesOfTheFlagsInRed) {
  startWithFlags(textValue(u"rJ"_s));
  doubleClick();
  EXPECT_EQ(text("txtFieldContent"), databaseLegend());
  EXPECT_EQ(redParts(),
            QStringList({u"J = Use JavaScript when generating pages."_s, u"r = Type: MailFile."_s}));
  EXPECT_EQ(control<RichTextBox>("txtFieldContent").selStart(), 1);
  EXPECT_EQ(control<RichTextBox>("txtFieldContent").selLength(), 0);
}

TEST_F(DatabasePropertiesTest, EmptiesTheControlsOfTheDocumentShownBefore) {
  Note memo = document(u"Memo"_s);
  memo.add(u"Body"_s, itemflag::Summary | itemflag::Sign, textValue(u"Dear Mr Okafor"_s));
  openDocument(save(memo));
  startWithFlags(textValue(QString()));
  EXPECT_EQ(text("txtFieldContent"), "Dear Mr Okafor");
  control<CheckBox>("chkEncrypted").setValue(1);
  control<CheckBox>("chkProtected").setValue(1);
  doubleClick();
  EXPECT_EQ(text("txtFieldName"), "");
  EXPECT_EQ(text("lblSize"), "");
  EXPECT_EQ(text("cmbFieldType"), "");
  for (const char* flag : {"chkSummary", "chkEncrypted", "chkSigned", "chkProtected"})
    EXPECT_EQ(value(flag), 0) << flag;
}

TEST_F(DatabasePropertiesTest, EmptyFlagsColourNothing) {
  startWithFlags(textValue(QString()));
  doubleClick();
  EXPECT_EQ(text("txtFieldContent"), databaseLegend());
  EXPECT_EQ(redParts(), QStringList());
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(DatabasePropertiesTest, TheLegendTakesThePlaceOfABodyOfTheIconNote) {
  Note icon;
  icon.header.noteClass = noteclass::Icon;
  icon.add(u"Body"_s, itemflag::Summary, textValue(u"shown by the listing"_s));
  icon.add(u"$Flags"_s, itemflag::Summary, textValue(u"A"_s));
  save(icon);
  start();
  doubleClick();
  EXPECT_EQ(text("txtFieldContent"), databaseLegend());
  EXPECT_EQ(text("txtFieldName"), "Body");
}

TEST_F(DatabasePropertiesTest, FlagsThatAreANumberAreReadAsItsDigits) {
  startWithFlags(numberValue(25));
  doubleClick();
  EXPECT_EQ(redParts(),
            QStringList({u"5 = Allow document locking."_s, u"2 = Optimize document table bitmap."_s}));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(DatabasePropertiesTest, ANegativeNumberBeginsWithAMinus) {
  startWithFlags(numberValue(-257));
  doubleClick();
  // "-2" is no pair of the legend; the letters behind it are looked at.
  EXPECT_EQ(redParts(), QStringList({u"5 = Allow document locking."_s,
                                     u"7 = Allow more fields in database (expanded UNK Table)."_s}));
}

TEST_F(DatabasePropertiesTest, FlagsThatAreADateAreReadAsTheRegionWritesThem) {
  startWithFlags(timeValue(timeDateOf(DateTime{QDate(2024, 7, 15), QTime(0, 0)})));
  doubleClick();
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_TRUE(redParts().contains(u"7 = Allow more fields in database (expanded UNK Table)."_s));
}

TEST_F(DatabasePropertiesTest, OfAListOnlyTheFirstTextIsExplained) {
  startWithFlags(textListValue({u"A"_s, u"J"_s}));
  doubleClick();
  EXPECT_EQ(redParts(), QStringList(u"A = Type: Mailbox."_s));
}

TEST_F(DatabasePropertiesTest, TheColourStaysUntilTheTextIsReplaced) {
  startWithFlags(textValue(u"A"_s));
  doubleClick();
  selectRow("fldList", u"$TITLE:"_s);
  EXPECT_EQ(redParts(), QStringList());
}

TEST_F(DatabasePropertiesTest, TheLegendEntersTheHistoryOfTheContentBox) {
  startWithFlags(textValue(u"A"_s));
  doubleClick();
  ASSERT_FALSE(state().gContentPages.isEmpty());
  EXPECT_EQ(state().gContentPages.last(), databaseLegend());
}

TEST_F(DatabasePropertiesTest, KindOfDocumentAndCounterStayAsTheyWere) {
  startWithFlags(textValue(u"A"_s));
  const QString kind = state().gDocKind, counter = text("lblCounter");
  doubleClick();
  EXPECT_EQ(state().gDocKind, kind);
  EXPECT_EQ(text("lblCounter"), counter);
}

TEST_F(DatabasePropertiesTest, OnlyADoubleClickOfTheLeftButtonCounts) {
  startWithFlags(textValue(u"A"_s));
  setText("txtFieldContent", u"before"_s);
  click("lastModified");
  QTest::mouseClick(&control<Label>("lastModified"), Qt::LeftButton);
  QTest::mouseDClick(&control<Label>("lastModified"), Qt::RightButton);
  EXPECT_EQ(text("txtFieldContent"), "before");
}

// --- failures ---

TEST_F(DatabasePropertiesTest, WithoutADatabaseNothingHappens) {
  startWithFlags(textValue(u"A"_s));
  state().gDb.release();
  setText("txtFieldContent", u"before"_s);
  notes().log.clear();
  doubleClick();
  EXPECT_EQ(text("txtFieldContent"), "before");
  EXPECT_EQ(notes().calls(), 0);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(DatabasePropertiesTest, WithoutAnIconNoteTheLookUpFails) {
  Note memo = document(u"Memo"_s);
  openDocument(save(memo));
  start();
  host.boxes.clear();
  const QStringList before = rows("fldList");
  doubleClick();
  EXPECT_EQ(host.boxes, QVector<ShownBox>({{u"Run-time error '4091':\n\n"_s + database->path() +
                                                u": no document has the special note ID \"FFFF0010\"",
                                            box::Critical,
                                            {}}}));
  EXPECT_FALSE(state().gDoc.isNothing());
  EXPECT_EQ(rows("fldList"), before);
}

TEST_F(DatabasePropertiesTest, AnIconNoteThatIsNothingFailsAtItsId) {
  startWithFlags(textValue(u"A"_s));
  notes().replies.insert(u"GETDOCUMENTBYID"_s, Value(Object()));
  doubleClick();
  EXPECT_EQ(host.boxes,
            QVector<ShownBox>({{u"Run-time error '91':\n\nObject variable or With block variable not set"_s,
                                box::Critical,
                                {}}}));
  EXPECT_EQ(rows("idList"), QStringList());
  EXPECT_EQ(rows("fldList"), QStringList());
}

TEST_F(DatabasePropertiesTest, WithoutFlagsItFailsBehindTheListing) {
  startWithFlags(QByteArray());
  doubleClick();
  EXPECT_EQ(host.boxes, QVector<ShownBox>({{u"Run-time error '13':\n\nType mismatch"_s, box::Critical, {}}}));
  EXPECT_EQ(rows("fldList"), QStringList(u"$TITLE: Mail"_s));
  EXPECT_EQ(text("txtFieldContent"), "");
}

// The box has another text by the time the lines are looked for, as a procedure of its own may put there.
TEST_F(DatabasePropertiesTest, AFailureWhileColouringShowsItsBoxAndStops) {
  startWithFlags(textValue(u"A"_s));
  RichTextBox& content = control<RichTextBox>("txtFieldContent");
  bool replaced = false;
  content.change = [&] {
    if (std::exchange(replaced, true)) return;
    content.setText(u"x\rJ = one\rB = two"_s);
  };
  app->properties.loadDBInfo(u"JBX"_s);
  EXPECT_EQ(host.boxes, QVector<ShownBox>({{u"Error 5 (Invalid procedure call or argument) in procedure "
                                            "loadDBInfo of Modul Globals. Line 0"_s,
                                            box::Plain,
                                            {}}}));
  EXPECT_EQ(redParts(), QStringList(u"J = one"_s));
  EXPECT_EQ(content.selStart(), 10);
}

// As many letters as an item holds, each with a line of its own.
TEST_F(DatabasePropertiesTest, AsManyFlagsAsFitAreExplained) {
  startWithFlags(textValue(u"Jr"_s.repeated(qEnvironmentVariableIsSet("LENS_SOAK") ? 7500 : 1000)));
  doubleClick();
  EXPECT_EQ(redParts().size(), 2);
}

// The library is asked for the size of the icon note's body, where it has one, and for nothing else.
TEST_F(DatabasePropertiesTest, EveryCallOfTheLibraryMayFail) {
  Note icon;
  icon.header.noteClass = noteclass::Icon;
  icon.add(u"Body"_s, itemflag::Summary, textValue(u"shown by the listing"_s));
  icon.add(u"$Flags"_s, itemflag::Summary, textValue(u"A"_s));
  save(icon);
  start();
  // The body is shown twice: by the selection of its row and by the listing.
  constexpr int kOfOne = 7;
  for (int n = 1; n <= 2 * kOfOne; ++n) {
    host.boxes.clear();
    const int before = capi().calls();
    capi().failAt = before + n;
    doubleClick();
    capi().failAt = 0;
    // NotesInitExtended to NSFItemInfo, behind which two releases follow; then NSFDbClose, NotesTerm.
    const int place = (n - 1) % kOfOne + 1;
    EXPECT_EQ(capi().calls() - before, kOfOne + (place <= 5 ? place + 2 : kOfOne)) << n;
    const int boxes = place < kOfOne ? 1 : 0;
    EXPECT_EQ(host.boxes, QVector<ShownBox>(boxes, {u"Specified DLL function not found"_s, box::Plain, {}}))
        << n;
    EXPECT_EQ(text("txtFieldContent"), databaseLegend()) << n;
    EXPECT_EQ(redParts(), QStringList(u"A = Type: Mailbox."_s)) << n;
    EXPECT_EQ(engineCapi->openHandles(), 0) << n;
  }
}

TEST_F(DatabasePropertiesTest, EveryCallOfTheModelMayFail) {
  startWithFlags(textValue(u"A"_s));
  notes().log.clear();
  doubleClick();
  const QStringList calls = notes().log;
  ASSERT_GT(calls.size(), 8);
  EXPECT_EQ(calls.mid(0, 3), QStringList({u"GETDOCUMENTBYID"_s, u"NoteID"_s, u"UNIVERSALID"_s}));
  const ShownBox report{u"Run-time error '70':\n\nPermission denied"_s, box::Critical, {}};
  const ShownBox listing{
      u"Error 70 (Permission denied) in procedure cmdidList_Click of Formular Form1"_s, box::Plain, {}};
  const ShownBox noDocument{
      u"Run-time error '91':\n\nObject variable or With block variable not set"_s, box::Critical, {}};
  for (int n = 1; n <= calls.size(); ++n) {
    host.boxes.clear();
    setText("txtFieldContent", u"before"_s);
    notes().log.clear();
    notes().failAt = n;
    doubleClick();
    notes().failAt = 0;
    // The listing empties the document before it looks it up anew; its own trap says so.
    const bool own = n <= 3 || n == calls.size();
    QVector<ShownBox> expected = {own ? report : listing};
    if (n == 4) expected += noDocument;
    EXPECT_EQ(host.boxes, expected) << n << " " << calls[n - 1].toStdString();
    const bool legendShown = !own && n != 4;
    const QString otherwise = n == 1 ? u"before"_s : QString();
    EXPECT_EQ(text("txtFieldContent"), legendShown ? databaseLegend() : otherwise) << n;
  }
}

}  // namespace
}  // namespace lens
