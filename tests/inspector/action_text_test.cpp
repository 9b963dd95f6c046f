// What is shown of an agent's action: the letters behind the read pointer; and what is shown of it when the
// note cannot be read.
#include "notes/note_reading.h"
#include "support/lens_fixture.h"

namespace lens {
namespace {

// Type word, header, signature of a script record, its length; the pointer stands at the flags.
const QByteArray kHead = QByteArray::fromHex("1000810285ff0c00");

QString textBehindHead(const QByteArray& bytes, qint16 count) {
  const QByteArray value = kHead + bytes;
  return actionText(value, kHead.size(), count);
}

TEST(ActionText, BeginsBehindThePointerAndEndsWithTheCount) {
  EXPECT_EQ(textBehindHead("Xlegible", 5), "legib");
  EXPECT_EQ(textBehindHead("Xlegible", 100), "legible");
  EXPECT_EQ(textBehindHead("Xlegible", 0), "");
  EXPECT_EQ(textBehindHead("Xlegible", -1), "");
}

TEST(ActionText, EndsAtAZeroByteAndShowsBlanksForOthers) {
  EXPECT_EQ(textBehindHead(QByteArray("Xab\0cd", 6), 5), "ab");
  // 125 stays, 126 does not; line ends stay, other control bytes do not.
  EXPECT_EQ(textBehindHead("X}~\r\n\t\x1f \x80\xff", 9), "} \r\n     ");
}

TEST(ActionText, OfARecordWithoutFlagsIsEmpty) {
  const QByteArray flagsLengthAndText = QByteArray::fromHex("000000006e050000").append("'++Lotus");
  EXPECT_EQ(textBehindHead(flagsLengthAndText, 0x57A), "");
}

TEST(ActionText, OfAPointerOutsideTheValueIsEmpty) {
  const QByteArray value("twelve bytes");
  EXPECT_EQ(actionText(value, 11, 32767), "");
  EXPECT_EQ(actionText(value, 12, 32767), "");
  EXPECT_EQ(actionText(value, 4000, 32767), "");
  EXPECT_EQ(actionText(value, -1, 32767), "");
  EXPECT_EQ(actionText(value, 0, 32767), "welve bytes");
  EXPECT_EQ(actionText(QByteArray(), 0, 32767), "");
}

// --- the display ---

class ActionDisplayTest : public LensFixture {
 protected:
  ActionDisplayTest() { openDatabase(u"agents.nsf"_s); }

  // Captures a document with this action, header and signature as scripts have them, and clicks it.
  void view(const QByteArray& behindSignature) {
    const QByteArray action = QByteArray::fromHex("810285ff") + behindSignature;
    Note note = document(u"Memo"_s);
    note.add(u"$AssistAction"_s, 0, rawValue(itemtype::Action, action));
    openDocument(save(note));
    start();
    clickAction();
  }
  void viewLegible() { view(QByteArray::fromHex("0700 01") + "say hi"); }
  void clickAction() {
    host.boxes.clear();
    capi().log.clear();
    notes().log.clear();
    selectRow("fldList", u"$AssistAction:"_s);
  }
  static QVector<ShownBox> told(int times, int number) {
    return QVector<ShownBox>(times, {standardErrorText(number), box::Plain, {}});
  }
};

TEST_F(ActionDisplayTest, ShowsTheTextInFrontOfAZeroByte) {
  view(QByteArray::fromHex("0900 01") + QByteArray("say\0 more", 9));
  EXPECT_EQ(text("txtFieldContent"), "say");
  EXPECT_EQ(text("lblSize"), "18 bytes");
}

TEST_F(ActionDisplayTest, ACountBelowZeroShowsNothing) {
  view(QByteArray::fromHex("ffff 01") + "say hi");
  EXPECT_EQ(text("txtFieldContent"), "");
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(ActionDisplayTest, ADatabaseThatCannotBeOpenedShowsNothingAndNoMessage) {
  viewLegible();
  EXPECT_EQ(text("txtFieldContent"), "say hi");
  notes().replies.insert(u"FILEPATH"_s, u"gone.nsf"_s);
  clickAction();
  EXPECT_EQ(text("txtFieldContent"), "");
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(ActionDisplayTest, WithoutADocumentBothReadersSaySo) {
  viewLegible();
  state().gDoc.release();
  clickAction();
  EXPECT_EQ(host.boxes, told(2, err::ObjectNotSet));
  EXPECT_EQ(text("txtFieldContent"), "");
  EXPECT_EQ(text("lblSize"), "0 bytes");
  EXPECT_EQ(capi().log, QStringList({u"NSFDbClose 0"_s, u"NotesTerm"_s, u"NSFDbClose 0"_s, u"NotesTerm"_s}));
}

// A value that was read is shown, even where a release fails behind it.
TEST_F(ActionDisplayTest, EveryCallOfTheLibraryMayFail) {
  viewLegible();
  struct Expected {
    QString function;
    int boxes;
    QString size, shown;
  };
  const QString size = u"15 bytes"_s, none = u"0 bytes"_s, shown = u"say hi"_s;
  const QVector<Expected> expected = {
      {u"NotesInitExtended"_s, 1, none, shown}, {u"OSPathNetConstruct"_s, 1, none, shown},
      {u"NSFDbOpen"_s, 1, none, shown},         {u"NSFNoteOpen"_s, 1, none, shown},
      {u"NSFItemInfo"_s, 1, none, shown},       {u"NSFDbClose"_s, 1, size, shown},
      {u"NotesTerm"_s, 0, size, shown},         {u"NotesInitExtended"_s, 1, size, {}},
      {u"OSPathNetConstruct"_s, 1, size, {}},   {u"NSFDbOpen"_s, 1, size, {}},
      {u"NSFNoteOpen"_s, 1, size, {}},          {u"NSFItemInfo"_s, 1, size, {}},
      {u"OSLockObject"_s, 1, size, {}},         {u"ODSReadMemory"_s, 1, size, {}},
      {u"ODSReadMemory"_s, 1, size, {}},        {u"ODSReadMemory"_s, 1, size, {}},
      {u"ODSReadMemory"_s, 1, size, {}},        {u"OSUnlockObject"_s, 1, size, shown},
      {u"NSFDbClose"_s, 1, size, shown},        {u"NotesTerm"_s, 0, size, shown},
  };
  for (int n = 1; n <= expected.size(); ++n) {
    const Expected& row = expected[n - 1];
    capi().failAt = capi().calls() + n;
    clickAction();
    capi().failAt = 0;
    ASSERT_GE(capi().log.size(), n);
    EXPECT_EQ(capi().log[n - 1].section(u' ', 0, 0), row.function) << n;
    EXPECT_EQ(host.boxes, told(row.boxes, 453)) << n;
    EXPECT_EQ(text("lblSize"), row.size) << n;
    EXPECT_EQ(text("txtFieldContent"), row.shown) << n;
    EXPECT_EQ(engineCapi->openHandles(), 0) << n;
    EXPECT_EQ(app->routines.mouseBusyCount(), 0) << n;
  }
  clickAction();
  EXPECT_EQ(capi().log.size(), expected.size());
}

TEST_F(ActionDisplayTest, EveryCallOfTheModelMayFail) {
  viewLegible();
  const QString size = u"15 bytes"_s;
  // The item and its four flags; the note's place and ID for the size, and again for the text; the type.
  const QVector<int> boxesAt = {0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 1, 0};
  for (int n = 1; n <= boxesAt.size(); ++n) {
    notes().failAt = n;
    clickAction();
    notes().failAt = 0;
    ASSERT_GE(notes().calls(), n);
    EXPECT_EQ(host.boxes, told(boxesAt[n - 1], 70)) << n;
    EXPECT_EQ(text("lblSize"), n >= 6 && n <= 9 ? u"0 bytes"_s : size) << n;
    EXPECT_EQ(text("txtFieldContent"), n >= 10 && n <= 13 ? QString() : u"say hi"_s) << n;
    EXPECT_EQ(engineCapi->openHandles(), 0) << n;
    EXPECT_EQ(app->routines.mouseBusyCount(), 0) << n;
  }
  clickAction();
  EXPECT_EQ(notes().log,
            QStringList({u"GETFIRSTITEM"_s, u"ISSUMMARY"_s, u"ISENCRYPTED"_s, u"ISSIGNED"_s, u"ISPROTECTED"_s,
                         u"PARENTDATABASE"_s, u"server"_s, u"FILEPATH"_s, u"NoteID"_s, u"PARENTDATABASE"_s,
                         u"server"_s, u"FILEPATH"_s, u"NoteID"_s, u"Type"_s}));
}

}  // namespace
}  // namespace lens
