// Counters of 16 bits that run over, and contents of megabytes.
#include <QElapsedTimer>
#include <QTest>

#include "editing/editing_fixture.h"

namespace lens {
namespace {

class Limits : public EditingTest {
 protected:
  // Runs a click and tells how long it took.
  qint64 timed(const char* button) {
    QElapsedTimer clock;
    clock.start();
    press(button);
    return clock.elapsed();
  }
  void overwrite(const QString& name, const QString& content) {
    selectRow("fldList", name + u":");
    setText("txtFieldContent", content);
    host.boxes.clear();
    press("cmdOverwrite");
  }
  void add(int type, const QString& content) {
    setText("txtFieldName", u"New"_s);
    setText("cmbFieldType", typeSentence(type));
    setText("txtFieldContent", content);
    host.boxes.clear();
    press("cmdAddField");
  }
  void collect(const QVector<NoteId>& ids) {
    ListBox& list = control<ListBox>("idList");
    list.clear();
    for (const NoteId id : ids) list.addItem(idRow(id));
  }
  QVector<ShownBox> overflow(const QString& title) const {
    return {
        {standardErrorText(err::Overflow) + u" (please Reload the document again)", box::Information, title}};
  }
  bool isBatchOverflow() const {
    return host.boxes.size() == 1 && host.boxes[0].text.startsWith(u"Error 6 ("_s) &&
           host.boxes[0].text.endsWith(u") in procedure procCollection of Modul Globals"_s);
  }

  static QString tooManyLines() { return u"a\r\n"_s.repeated(32'768); }
  static QString farLineEnd() { return QString(33'000, u'x') + u"\r\nx"; }
};

TEST_F(Limits, TheLineCounterShowsOneBoxInEachCommand) {
  const NoteId id = show(memo());
  overwrite(u"Subject"_s, tooManyLines());
  EXPECT_EQ(host.boxes, overflow(u"Error in Overwrite"_s));
  add(1280, tooManyLines());
  EXPECT_EQ(host.boxes, overflow(u"Error in AddField"_s));
  for (const char* button : {"cmdAddFieldInColl", "cmdWriteDocsInColl"}) {
    collect({id});
    setText("txtFieldName", u"Subject"_s);
    setText("cmbFieldType", kTextType);
    setText("txtFieldContent", tooManyLines());
    host.boxes.clear();
    press(button);
    EXPECT_TRUE(isBatchOverflow()) << button;
    // Adding has taken the old item away before the lines are read.
    EXPECT_EQ(stored(id).has(u"Subject"), button == std::string("cmdWriteDocsInColl")) << button;
    Note note = stored(id);
    if (!note.has(u"Subject")) note.add(u"Subject"_s, itemflag::Summary, textValue(u"Pumps"_s));
    database->notes().save(note);
  }
}

TEST_F(Limits, ALineEndTooFarAwayIsABoxForTextsAndSilenceForDates) {
  Note note = memo();
  note.add(u"Due"_s, itemflag::Summary, timeValue(timeDateOfDate(QDate(2024, 3, 11))));
  const NoteId id = show(note);
  overwrite(u"Subject"_s, farLineEnd());
  EXPECT_EQ(host.boxes, overflow(u"Error in Overwrite"_s));
  overwrite(u"Due"_s, farLineEnd());
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(values(u"Due"_s), QStringList(u"11.03.2024"_s));
  for (const auto& [name, box] : {std::pair(u"Subject"_s, true), {u"Due"_s, false}}) {
    collect({id});
    setText("txtFieldName", name);
    setText("txtFieldContent", farLineEnd());
    host.boxes.clear();
    press("cmdWriteDocsInColl");
    EXPECT_EQ(isBatchOverflow(), box) << name.toStdString();
    EXPECT_EQ(host.boxes.size(), box ? 1 : 0);
  }
}

TEST_F(Limits, TheTypeOfAnItemHasSixteenBits) {
  show(memo());
  selectRow("fldList", u"Subject:"_s);
  notes().replies.insert(u"TYPE"_s, 70'000);
  press("cmdOverwrite");
  EXPECT_EQ(host.boxes, overflow(u"Error in Overwrite"_s));
  EXPECT_EQ(saves(), 0);
}

TEST_F(Limits, TheIndexOfARunOverflowsBehindItsLastRow) {
  const NoteId id = show(memo());
  Note other = memo();
  const NoteId last = save(other);
  ListBox& list = control<ListBox>("idList");
  list.clear();
  // Rows that name no document would end the run; those of a missing item are merely read.
  while (list.listCount() < 32'767) list.addItem(idRow(id));
  list.addItem(idRow(last));
  // Nothing is read but the last row's document.
  notes().replies.clear();
  setText("txtFieldName", u"Missing"_s);
  host.boxes.clear();
  press("cmdWriteDocsInColl");
  EXPECT_TRUE(isBatchOverflow()) << (boxes().isEmpty() ? "no box" : boxes()[0].toStdString());
  EXPECT_EQ(saves(), 0);
}

TEST_F(Limits, TheSearchStopsBehindARowThatItsIndexCannotName) {
  show(memo());
  ListBox& list = control<ListBox>("idList");
  list.clear();
  for (int row = 0; row < 32'768; ++row) list.addItem(QString::number(row));
  control<CheckBox>("chkProfile").setValue(1);
  setText("txtSearch", u"none"_s);
  host.boxes.clear();
  press("cmdSearch");
  EXPECT_EQ(host.boxes, QVector<ShownBox>({{u"Error 6 (Overflow) in procedure cmdSearch_Click of Formular "
                                            u"Form1"_s,
                                            box::Plain,
                                            {}}}));
}

TEST_F(Limits, FiveMegabytesInOneLineAreOneValue) {
  show(memo());
  const QString content(5'000'000, u'x');
  overwrite(u"Subject"_s, content);
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(values(u"Subject"_s), QStringList(content));
}

TEST_F(Limits, FiveMegabytesInManyLinesGoThroughReplaceAndOverwrite) {
  show(memo());
  const QString line = u"pump "_s.repeated(40);
  const QString content = QString(line + u"\r\n").repeated(25'000);
  ASSERT_GT(content.size(), 5'000'000);
  setText("txtFieldContent", content);
  setText("txtSearch", u"pump"_s);
  setText("txtReplace", u"valve"_s);
  EXPECT_LT(timed("cmdReplace"), 20'000);
  EXPECT_EQ(text("txtFieldContent"), QString(content).replace(u"pump"_s, u"valve"_s));
  overwrite(u"Subject"_s, content);
  const QStringList told = boxes();
  EXPECT_LE(told.size(), 1);
  // Either all lines are stored, or the store says that a list may not be so long and keeps the old one.
  const QStringList now = values(u"Subject"_s);
  if (told.isEmpty())
    EXPECT_EQ(now, QStringList(25'000, line));
  else
    EXPECT_EQ(now, QStringList(u"Pumps"_s));
}

TEST_F(Limits, FiveMegabytesOfRichTextAreSearchedAndReplaced) {
  Note note = memo();
  note.add(u"Text"_s, 0, rich(u"a pump "_s.repeated(715'000)));
  show(note);
  setText("txtSearch", u"pump"_s);
  setText("txtReplace", u"valve"_s);
  EXPECT_LT(timed("cmdSearchReplaceAll"), 60'000);
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(bodyText(stored(), u"Text"_s), u"a valve "_s.repeated(715'000));
}

TEST_F(Limits, ALargeAttachmentShowsTheHourglassWhileItIsWritten) {
  const QByteArray bytes(30'000'000, 'x');
  show(withAttachment(u"film.bin"_s, bytes));
  const QString files = directory.filePath(u"files"_s);
  QDir().mkpath(files);
  control<DirList>("Dir1").setPath(files);
  host.pointers.clear();
  press("cmdExtractAtt");
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(host.pointers, QVector<int>({pointer::Hourglass, pointer::Default}));
  EXPECT_EQ(QFileInfo(files + u"/film.bin"_s).size(), bytes.size());
}

TEST_F(Limits, AFileThatIsLoadedShowsTheHourglass) {
  Note note = memo();
  note.add(u"Body"_s, 0, rich(u"text"_s));
  show(note);
  const QString files = directory.filePath(u"files"_s);
  QDir().mkpath(files);
  QFile film(files + u"/film.bin"_s);
  ASSERT_TRUE(film.open(QIODevice::WriteOnly));
  film.write(QByteArray(30'000'000, 'x'));
  film.close();
  control<DirList>("Dir1").setPath(files);
  setText("txtFieldName", u"Body"_s);
  setText("cmbFieldType", u"RICHTEXT (1) means rich text"_s);
  host.pointers.clear();
  press("cmdLoadAtt");
  ASSERT_FALSE(host.pointers.isEmpty());
  EXPECT_EQ(host.pointers.first(), pointer::Hourglass);
  EXPECT_EQ(host.pointerCode, pointer::Default);
  EXPECT_TRUE(stored().has(u"$FILE"));
}

}  // namespace
}  // namespace lens
