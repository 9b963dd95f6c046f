#include "controls/rich_text_box.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTextBlock>
#include <QWheelEvent>

#include "control_test.h"

namespace lens {
namespace {

constexpr quint32 kRed = 255;
constexpr quint32 kPlain = 0x1B1B1B;
const QString kMixed = QStringLiteral("a\r\r\nb\rc\r\nd\u00A0e");

struct ShownBox {
  explicit ShownBox(const QString& text = QString()) : changes(box.change) {
    box.resize(300, 200);
    showWithFocus(box);
    box.setText(text);
    changes.take();
  }
  void mark(int start, int length, quint32 colour = kRed) {
    box.setSelStart(start);
    box.setSelLength(length);
    box.setSelColor(colour);
  }
  // The colour that the document shows behind a document position.
  QColor shownColour(int documentPosition) {
    QTextCursor cursor(box.document());
    cursor.setPosition(documentPosition + 1);
    return cursor.charFormat().foreground().color();
  }
  RichTextBox box;
  Counter changes;
};

TEST(RichTextBox, GivesBackExactlyWhatWasPutIn) {
  ShownBox shown(kMixed);
  EXPECT_EQ(shown.box.text(), kMixed);
  shown.box.refresh();
  EXPECT_EQ(shown.box.text(), kMixed);
  EXPECT_EQ(shown.box.blockCount(), 4);
  QString all;
  for (int unit = 0; unit < 0x10000; ++unit) all += QChar(char16_t(unit));
  shown.box.setText(all);
  shown.box.refresh();
  EXPECT_EQ(shown.box.text(), all);
}

TEST(RichTextBox, ChangeRunsForAnotherTextOnly) {
  ShownBox shown;
  shown.box.setText(QStringLiteral("x"));
  shown.box.setText(QStringLiteral("x"));
  EXPECT_EQ(shown.changes.take(), 1);
  shown.mark(0, 1);
  EXPECT_EQ(shown.changes.take(), 0);
}

TEST(RichTextBox, FailureInChangeGoesToTheCodeThatSetTheTextAndToTheReportBelowTheUser) {
  Untrapped untrapped;
  ShownBox shown;
  shown.box.change = [] { throw RuntimeError(13); };
  EXPECT_EQ(errorOf([&] { shown.box.setText(QStringLiteral("x")); }), 13);
  EXPECT_EQ(shown.box.text(), QStringLiteral("x"));
  EXPECT_TRUE(untrapped.numbers.isEmpty());
  QTest::keyClick(&shown.box, Qt::Key_Y);
  EXPECT_EQ(untrapped.numbers, QVector<int>{13});
}

TEST(RichTextBox, SettingTheTextDropsColourAlsoForTheSameText) {
  ShownBox shown(QStringLiteral("abc"));
  shown.mark(0, 3);
  shown.box.setText(QStringLiteral("abc"));
  EXPECT_EQ(shown.box.colorAt(1), kPlain);
  shown.box.refresh();
  EXPECT_NE(shown.shownColour(1), QColor(Qt::red));
}

TEST(RichTextBox, ColoursPositionsRightBehindADoubleLineEnd) {
  ShownBox shown(kMixed);
  shown.mark(4, 1);
  EXPECT_EQ(shown.box.selText(), QStringLiteral("b"));
  EXPECT_EQ(shown.box.colorAt(4), kRed);
  EXPECT_EQ(shown.box.colorAt(5), kPlain);
  shown.mark(10, 1);
  EXPECT_EQ(shown.box.selText(), QStringLiteral("\u00A0"));
  shown.box.refresh();
  EXPECT_EQ(shown.shownColour(2), QColor(Qt::red));
  EXPECT_NE(shown.shownColour(0), QColor(Qt::red));
  EXPECT_NE(shown.shownColour(4), QColor(Qt::red));
  EXPECT_EQ(shown.shownColour(7), QColor(Qt::red));
  EXPECT_EQ(shown.box.text(), kMixed);
  EXPECT_EQ(shown.changes.take(), 0);
}

TEST(RichTextBox, LinesCountEachLineEndOnce) {
  ShownBox shown(kMixed);
  const int lines[] = {0, 0, 0, 0, 1, 1, 2, 2, 2, 3, 3, 3, 3};
  for (int position = 0; position <= shown.box.length(); ++position)
    EXPECT_EQ(shown.box.lineFromChar(position), lines[position]) << position;
}

TEST(RichTextBox, TypingInTheMiddleKeepsTheLineEndsAround) {
  ShownBox shown(kMixed);
  shown.box.setSelStart(4);
  QTest::keyClicks(&shown.box, QStringLiteral("xy"));
  EXPECT_EQ(shown.box.text(), QStringLiteral("a\r\r\nxyb\rc\r\nd\u00A0e"));
  EXPECT_EQ(shown.box.selStart(), 6);
  EXPECT_EQ(shown.changes.take(), 2);
  QTest::keyClick(&shown.box, Qt::Key_Return);
  EXPECT_EQ(shown.box.text(), QStringLiteral("a\r\r\nxy\r\nb\rc\r\nd\u00A0e"));
  EXPECT_EQ(shown.box.selStart(), 8);
}

TEST(RichTextBox, DeletingALineEndTakesAllOfIt) {
  ShownBox shown(kMixed);
  shown.box.setSelStart(4);
  QTest::keyClick(&shown.box, Qt::Key_Backspace);
  EXPECT_EQ(shown.box.text(), QStringLiteral("ab\rc\r\nd\u00A0e"));
  EXPECT_EQ(shown.box.selStart(), 1);
  QTest::keyClick(&shown.box, Qt::Key_End);
  QTest::keyClick(&shown.box, Qt::Key_Delete);
  EXPECT_EQ(shown.box.text(), QStringLiteral("abc\r\nd\u00A0e"));
}

TEST(RichTextBox, LineEndsThatMeetBecomeOneInTheDocumentToo) {
  ShownBox shown(QStringLiteral("a\rx\nb"));
  EXPECT_EQ(shown.box.blockCount(), 3);
  shown.box.setSelStart(3);
  QTest::keyClick(&shown.box, Qt::Key_Backspace);
  EXPECT_EQ(shown.box.text(), QStringLiteral("a\r\nb"));
  EXPECT_EQ(shown.box.blockCount(), 2);
  QTest::keyClick(&shown.box, Qt::Key_End, Qt::ControlModifier);
  QTest::keyClicks(&shown.box, QStringLiteral("c"));
  EXPECT_EQ(shown.box.text(), QStringLiteral("a\r\nbc"));
}

TEST(RichTextBox, SelectionThatIsTypedOverIsReplaced) {
  ShownBox shown(kMixed);
  shown.box.setSelStart(1);
  shown.box.setSelLength(6);
  QTest::keyClicks(&shown.box, QStringLiteral("Z"));
  EXPECT_EQ(shown.box.text(), QStringLiteral("aZ\r\nd\u00A0e"));
  QTest::keyClick(&shown.box, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(shown.box.selText(), shown.box.text());
  QTest::keyClick(&shown.box, Qt::Key_Delete);
  EXPECT_EQ(shown.box.text(), QString());
  QTest::keyClicks(&shown.box, QStringLiteral("new"));
  EXPECT_EQ(shown.box.text(), QStringLiteral("new"));
}

TEST(RichTextBox, PastedLineEndsBecomeCrLf) {
  ShownBox shown(QStringLiteral("ab"));
  QApplication::clipboard()->setText(QStringLiteral("1\n2\r\n3\r4\u00A0"));
  shown.box.setSelStart(1);
  QTest::keyClick(&shown.box, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(shown.box.text(), QStringLiteral("a1\r\n2\r\n3\r\n4\u00A0b"));
  EXPECT_EQ(shown.changes.take(), 1);
}

// Whatever comes in, and by whichever way, the document shows the text that the box holds.
void expectShownWhole(RichTextBox& box) {
  box.refresh();
  ExactText exact;
  exact.setText(box.text());
  EXPECT_EQ(box.document()->characterCount() - 1, exact.documentLength());
  EXPECT_EQ(box.document()->toPlainText().replace(QChar(u'\u00A0'), QChar(u' ')),
            exact.shown(0, exact.length()).replace(QChar(u'\u00A0'), QChar(u' ')));
}

TEST(RichTextBox, LineEndsBehindALoneCrAreShownAsTheyAreHeld) {
  for (const auto modifier : {Qt::NoModifier, Qt::ShiftModifier}) {
    ShownBox shown(QStringLiteral("one\rtwo three"));
    shown.box.setSelStart(4);
    QTest::keyClick(&shown.box, Qt::Key_Return, modifier);
    EXPECT_EQ(shown.box.text(), QStringLiteral("one\r\r\ntwo three"));
    expectShownWhole(shown.box);
    QTest::keyClicks(&shown.box, QStringLiteral("x"));
    EXPECT_EQ(shown.box.text(), QStringLiteral("one\r\r\nxtwo three"));
    QTest::keyClick(&shown.box, Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(&shown.box, QStringLiteral("y"));
    EXPECT_EQ(shown.box.text(), QStringLiteral("one\r\r\nxtwo threey"));
    expectShownWhole(shown.box);
  }
}

TEST(RichTextBox, PastedSeparatorsOfLinesAndParagraphsBecomeCrLf) {
  for (const char16_t separator : {u'\u2028', u'\u2029'}) {
    ShownBox shown(QStringLiteral("one\rtwo"));
    shown.box.setSelStart(4);
    QApplication::clipboard()->setText(QStringLiteral("a") + QChar(separator) + QStringLiteral("b"));
    shown.box.paste();
    EXPECT_EQ(shown.box.text(), QStringLiteral("one\ra\r\nbtwo"));
    shown.box.setSelStart(4);
    QApplication::clipboard()->setText(QString(QChar(separator)));
    shown.box.paste();
    EXPECT_EQ(shown.box.text(), QStringLiteral("one\r\r\na\r\nbtwo"));
    expectShownWhole(shown.box);
  }
}

// A plain model beside the box: one edit at a time, at every place, in texts of all line ends.
TEST(RichTextBox, EveryEditAtEveryPlaceChangesTextAndPictureAlike) {
  const QString text = QStringLiteral("a\rb\nc\r\nd\r\r\ne\r\rf\n\n\u2028g");
  const QStringList pasted = {QStringLiteral("p"), QStringLiteral("\r"), QStringLiteral("\n"),
                              QString(QChar(0x2028)), QString(QChar(0xFDD0))};
  for (int place = 0; place <= text.size(); ++place) {
    for (int edit = 0; edit < pasted.size() + 3; ++edit) {
      ShownBox shown(text);
      shown.box.setSelStart(place);
      // The keyboard stands before a line end or behind it, never in it; a paste goes where it is told.
      ExactText exact;
      exact.setText(text);
      QString added = QStringLiteral("\r\n");
      if (edit < pasted.size()) {
        QApplication::clipboard()->setText(pasted[edit]);
        shown.box.paste();
        if (pasted[edit] == QStringLiteral("p") || pasted[edit] == QString(QChar(0xFDD0)))
          added = pasted[edit];
      } else {
        if (exact.isInsideLineEnd(place)) continue;
        if (edit == pasted.size())
          QTest::keyClicks(&shown.box, added = QStringLiteral("k"));
        else
          QTest::keyClick(&shown.box, Qt::Key_Return,
                          edit == pasted.size() + 1 ? Qt::NoModifier : Qt::ShiftModifier);
      }
      const QString expected = text.left(place) + added + text.mid(place);
      ASSERT_EQ(shown.box.text(), expected) << place << ' ' << edit;
      EXPECT_EQ(shown.box.selStart(), place + added.size());
      EXPECT_EQ(shown.changes.take(), 1);
      expectShownWhole(shown.box);
      ASSERT_FALSE(HasFailure()) << place << ' ' << edit;
    }
  }
}

TEST(RichTextBox, LineAndPositionFollowTheTyping) {
  ShownBox shown(QStringLiteral("ab"));
  Counter moves(shown.box.selChange);
  QTest::keyClicks(&shown.box, QStringLiteral("x"));
  EXPECT_EQ(moves.take(), 1);
  QApplication::clipboard()->setText(QStringLiteral("yz"));
  shown.box.paste();
  EXPECT_EQ(moves.take(), 1);
}

// An encoded file in one line comes in by the clipboard, by dragging, or grows by typing: each way costs what
// setting it costs, since the document then breaks inside of words. The other way takes minutes here.
TEST(RichTextBox, OneEndlessWordComesInByEachWay) {
  const QString word = QString(400'000, QChar(u'x'));
  ShownBox shown(QStringLiteral("ab"));
  shown.box.setSelStart(1);
  QApplication::clipboard()->setText(word);
  QTest::keyClick(&shown.box, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(shown.box.text().size(), word.size() + 2);
  EXPECT_EQ(shown.box.wordWrapMode(), QTextOption::WrapAnywhere);

  shown.box.setText(QStringLiteral("ab"));
  EXPECT_EQ(shown.box.wordWrapMode(), QTextOption::WrapAtWordBoundaryOrAnywhere);
  shown.box.setSelStart(1);
  shown.box.setSelText(word);
  EXPECT_EQ(shown.box.wordWrapMode(), QTextOption::WrapAnywhere);

  shown.box.setText(QStringLiteral("ab"));
  QInputMethodEvent commit;
  commit.setCommitString(word);
  QApplication::sendEvent(&shown.box, &commit);
  EXPECT_EQ(shown.box.text(), word + QStringLiteral("ab"));
  EXPECT_EQ(shown.box.wordWrapMode(), QTextOption::WrapAnywhere);

  shown.box.setText(QStringLiteral("ab"));
  QMimeData data;
  data.setText(word);
  QDragEnterEvent enter(QPoint(200, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(shown.box.viewport(), &enter);
  QDropEvent drop(QPointF(200, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(shown.box.viewport(), &drop);
  EXPECT_EQ(shown.box.text(), QStringLiteral("ab") + word);
  EXPECT_EQ(shown.box.wordWrapMode(), QTextOption::WrapAnywhere);

  shown.box.setText(word.left(10'000));
  EXPECT_EQ(shown.box.wordWrapMode(), QTextOption::WrapAtWordBoundaryOrAnywhere);
  QTest::keyClicks(&shown.box, QStringLiteral("y"));
  EXPECT_EQ(shown.box.wordWrapMode(), QTextOption::WrapAnywhere);
}

TEST(RichTextBox, InputMethodTextComesInOnce) {
  ShownBox shown(QStringLiteral("a\r\nb"));
  shown.box.setSelStart(3);
  QInputMethodEvent preedit(QStringLiteral("n"), {});
  QApplication::sendEvent(&shown.box, &preedit);
  EXPECT_EQ(shown.box.text(), QStringLiteral("a\r\nb"));
  QInputMethodEvent commit;
  commit.setCommitString(QStringLiteral("\u306B"));
  QApplication::sendEvent(&shown.box, &commit);
  EXPECT_EQ(shown.box.text(), QStringLiteral("a\r\n\u306Bb"));
}

TEST(RichTextBox, ShiftEnterIsALineEndToo) {
  ShownBox shown(QStringLiteral("ab"));
  shown.box.setSelStart(1);
  QTest::keyClick(&shown.box, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(shown.box.text(), QStringLiteral("a\r\nb"));
  EXPECT_EQ(shown.box.blockCount(), 2);
}

TEST(RichTextBox, CopyTakesTheOwnTextOfTheSelection) {
  ShownBox shown(kMixed);
  shown.box.setSelStart(1);
  shown.box.setSelLength(10);
  QTest::keyClick(&shown.box, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), kMixed.mid(1, 10));
}

TEST(RichTextBox, PositionsAreClampedAndMayStandInsideALineEnd) {
  ShownBox shown(QStringLiteral("a\r\nb"));
  shown.box.setSelStart(99);
  EXPECT_EQ(shown.box.selStart(), 4);
  shown.box.setSelStart(-1);
  EXPECT_EQ(shown.box.selStart(), 0);
  shown.box.setSelStart(2);
  shown.box.setSelLength(99);
  shown.box.refresh();
  EXPECT_EQ(shown.box.selStart(), 2);
  EXPECT_EQ(shown.box.selText(), QStringLiteral("\nb"));
  shown.box.setSelStart(1);
  EXPECT_EQ(shown.box.selLength(), 0);
  EXPECT_EQ(errorOf([&] { shown.box.setSelLength(-1); }), 5);
}

TEST(RichTextBox, CaretOfTheUserIsReportedInOwnPositions) {
  ShownBox shown(kMixed);
  Counter moves(shown.box.selChange);
  QTest::keyClick(&shown.box, Qt::Key_Down);
  EXPECT_EQ(shown.box.selStart(), 4);
  EXPECT_EQ(moves.take(), 1);
  QTest::keyClick(&shown.box, Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(shown.box.selText(), kMixed.mid(4));
  EXPECT_EQ(moves.take(), 1);
}

TEST(RichTextBox, SelTextReplacesTheSelectionVerbatim) {
  ShownBox shown(kMixed);
  shown.box.setSelStart(4);
  shown.box.setSelLength(1);
  shown.box.setSelText(QStringLiteral("1\r\r\n2\n"));
  EXPECT_EQ(shown.box.text(), QStringLiteral("a\r\r\n1\r\r\n2\n\rc\r\nd\u00A0e"));
  EXPECT_EQ(shown.box.selStart(), 10);
  EXPECT_EQ(shown.changes.take(), 1);
  EXPECT_EQ(shown.box.blockCount(), 6);
  shown.box.setSelStart(2);
  shown.box.setSelText(QStringLiteral("x"));
  EXPECT_EQ(shown.box.text(), QStringLiteral("a\rx\r\n1\r\r\n2\n\rc\r\nd\u00A0e"));
  EXPECT_EQ(shown.box.blockCount(), 7);
  QTest::keyClicks(&shown.box, QStringLiteral("y"));
  EXPECT_EQ(shown.box.text(), QStringLiteral("a\rxy\r\n1\r\r\n2\n\rc\r\nd\u00A0e"));
}

TEST(RichTextBox, LooksMoveWithTheTextThatIsTypedBeforeThem) {
  ShownBox shown(QStringLiteral("one two"));
  shown.mark(4, 3);
  shown.box.setSelStart(0);
  QTest::keyClicks(&shown.box, QStringLiteral("__"));
  EXPECT_EQ(shown.box.colorAt(5), kPlain);
  EXPECT_EQ(shown.box.colorAt(6), kRed);
  EXPECT_EQ(shown.box.colorAt(8), kRed);
  shown.box.refresh();
  EXPECT_EQ(shown.shownColour(6), QColor(Qt::red));
  EXPECT_NE(shown.shownColour(5), QColor(Qt::red));
}

TEST(RichTextBox, MixedSelectionHasNoOneColourFontOrSize) {
  ShownBox shown(QStringLiteral("one two"));
  shown.mark(4, 3);
  EXPECT_EQ(shown.box.selColor(), kRed);
  shown.box.setSelFontSize(0);
  EXPECT_EQ(shown.box.selFontSize(), 1);
  shown.box.setSelFontName(QStringLiteral("Consolas"));
  EXPECT_EQ(shown.box.selFontName(), QStringLiteral("Consolas"));
  shown.box.setSelStart(0);
  shown.box.setSelLength(7);
  EXPECT_FALSE(shown.box.selColor());
  EXPECT_FALSE(shown.box.selFontSize());
  EXPECT_FALSE(shown.box.selFontName());
  shown.box.setSelBold(true);
  shown.box.setSelColor(0);
  EXPECT_EQ(shown.box.selColor(), 0u);
  shown.box.refresh();
  QTextCursor cursor(shown.box.document());
  cursor.setPosition(2);
  EXPECT_EQ(cursor.charFormat().fontWeight(), QFont::Bold);
}

TEST(RichTextBox, ProcedureOfChangeMaySetTheTextWhileTyping) {
  ShownBox shown(QStringLiteral("a"));
  shown.box.change = [&] {
    if (shown.box.text() == QStringLiteral("xa")) shown.box.setText(QStringLiteral("other\r\ntext"));
  };
  QTest::keyClicks(&shown.box, QStringLiteral("xy"));
  EXPECT_EQ(shown.box.text(), QStringLiteral("yother\r\ntext"));
}

TEST(RichTextBox, KeysReachTheirProcedure) {
  ShownBox shown(QStringLiteral("a"));
  QVector<int> keys;
  shown.box.keyDown = [&](int code, int shift) {
    if (code != 17) keys << code << shift;
  };
  QTest::keyClick(&shown.box, Qt::Key_Insert);
  QTest::keyClick(&shown.box, Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(keys, (QVector<int>{45, 0, 'F', 2}));
}

TEST(RichTextBox, TakesTextUpToTheFirstNulWhereAsked) {
  EXPECT_EQ(RichTextBox::upToNul(QString(QStringLiteral("ab") + QChar(u'\0') + QStringLiteral("c"))),
            QStringLiteral("ab"));
  EXPECT_EQ(RichTextBox::upToNul(QStringLiteral("ab")), QStringLiteral("ab"));
}

TEST(RichTextBox, ThousandsOfHitsAreColouredInABigText) {
  QString text;
  for (int line = 0; line < 10000; ++line)
    text +=
        QStringLiteral("a line with a hit in its middle and more of it, up to about a hundred units\r\r\n");
  ShownBox shown(text);
  int hits = 0;
  for (int place = text.indexOf(QStringLiteral("hit")); place >= 0;
       place = text.indexOf(QStringLiteral("hit"), place + 3)) {
    shown.mark(place, 3);
    ++hits;
  }
  shown.box.setSelStart(1);
  shown.box.refresh();
  EXPECT_EQ(hits, 10000);
  EXPECT_EQ(shown.box.colorAt(text.lastIndexOf(QStringLiteral("hit"))), kRed);
  const int documentPlace = shown.box.document()->toPlainText().lastIndexOf(QStringLiteral("hit"));
  EXPECT_EQ(shown.shownColour(documentPlace), QColor(Qt::red));
  EXPECT_NE(shown.shownColour(documentPlace + 3), QColor(Qt::red));
}

TEST(RichTextBox, FiveMegabytesOfTextGoIn) {
  const QString text = QStringLiteral("0123456789 abcdefghijklmnopqrstuvwxyz\r\n").repeated(135000);
  ShownBox shown(text);
  shown.box.refresh();
  EXPECT_EQ(shown.box.text().size(), text.size());
  shown.box.setSelStart(int(text.size()) / 2);
  QTest::keyClicks(&shown.box, QStringLiteral("x"));
  EXPECT_EQ(shown.box.text().size(), text.size() + 1);
}

// --- texts too long for the document ---

// The box as one reads it: what stands on the screen is a stretch of the text, wherever one has come to.
class LongText : public testing::Test {
 protected:
  explicit LongText(const QString& text = numberedLines(150'000)) : shown(text), box(shown.box) { settle(); }
  static QString numberedLines(int count) {
    QString text;
    text.reserve(count * 22);
    for (int line = 0; line < count; ++line) text += QStringLiteral("line %1 of them\r\n").arg(line, 8);
    return text;
  }
  static void settle() {
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
  }
  // The text of the line at the top of the view.
  QString topLine() { return box.cursorForPosition({1, 1}).block().text(); }
  QScrollBar& bar() {
    for (QScrollBar* each : box.findChildren<QScrollBar*>())
      if (each->isVisible() && each->orientation() == Qt::Vertical) return *each;
    throw std::runtime_error("no bar");
  }
  void expectSmallDocument() {
    EXPECT_LT(box.document()->characterCount(), 300'000);
    EXPECT_TRUE(box.text().contains(
        box.document()->toPlainText().replace(QStringLiteral("\n"), QStringLiteral("\r\n"))));
  }
  ShownBox shown;
  RichTextBox& box;
};

TEST_F(LongText, IsHeldWholeAndShownInParts) {
  EXPECT_EQ(box.text(), numberedLines(150'000));
  expectSmallDocument();
  EXPECT_EQ(topLine(), QStringLiteral("line        0 of them"));
  EXPECT_EQ(box.lineFromChar(box.length()), 150'000);
}

TEST_F(LongText, ScrollsToEachPlaceByItsBar) {
  for (const double place : {0.0, 0.3, 0.31, 0.999, 0.5, 1.0, 0.0}) {
    bar().setValue(int(bar().maximum() * place));
    settle();
    const QString top = topLine();
    const qsizetype at = box.text().indexOf(top);
    EXPECT_NEAR(double(at) / double(box.length()), place, 0.01) << place << ' ' << top.toStdString();
    expectSmallDocument();
  }
  bar().setValue(bar().maximum());
  settle();
  EXPECT_TRUE(box.document()->toPlainText().endsWith(QStringLiteral("149999 of them\n")));
}

TEST_F(LongText, TheWheelGoesOnWhereAPartEnds) {
  QString last = topLine();
  for (int turn = 0; turn < 1'500; ++turn) {
    QWheelEvent wheel(QPointF(20, 20), box.viewport()->mapToGlobal(QPointF(20, 20)), {}, {0, -1200},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(box.viewport(), &wheel);
    QCoreApplication::processEvents();
    const QString top = topLine();
    ASSERT_LT(last, top) << turn;
    // Neither a jump nor a step back where the part changes.
    ASSERT_LE(top.mid(5, 8).toInt() - last.mid(5, 8).toInt(), 40) << turn;
    last = top;
  }
  EXPECT_GT(last.mid(5, 8).toInt(), 12'000);
}

TEST_F(LongText, TheKeyboardReachesBothEndsAndMarksBetweenThem) {
  QTest::keyClick(&box, Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(box.selStart(), box.length());
  QTest::keyClicks(&box, QStringLiteral("z"));
  EXPECT_TRUE(box.text().endsWith(QStringLiteral("149999 of them\r\nz")));
  QTest::keyClick(&box, Qt::Key_Left, Qt::ShiftModifier);
  QTest::keyClick(&box, Qt::Key_Home, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(box.selStart(), 0);
  EXPECT_EQ(box.selLength(), box.length());
  QTest::keyClick(&box, Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(box.selStart(), 1);
  EXPECT_EQ(box.selLength(), box.length() - 1) << "the other end stays, far away";
  QTest::keyClick(&box, Qt::Key_Home, Qt::ControlModifier);
  EXPECT_EQ(box.selLength(), 0);
  settle();
  EXPECT_EQ(topLine(), QStringLiteral("line        0 of them"));
}

TEST_F(LongText, AKeyGoesToTheCaretWhereverTheViewIs) {
  box.setSelStart(5);
  settle();
  bar().setValue(bar().maximum() / 2);
  settle();
  EXPECT_EQ(box.selStart(), 5);
  QTest::keyClick(&box, Qt::Key_Control);
  EXPECT_NE(topLine(), QStringLiteral("line        0 of them"));
  QTest::keyClicks(&box, QStringLiteral("x"));
  EXPECT_TRUE(box.text().startsWith(QStringLiteral("line x       0")));
  EXPECT_EQ(topLine(), QStringLiteral("line x       0 of them"));
}

TEST_F(LongText, AllOfItIsSelectedCopiedAndReplaced) {
  const QString text = box.text();
  QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(box.selLength(), box.length());
  QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), text);
  QTest::keyClicks(&box, QStringLiteral("l"));  // as the text begins
  EXPECT_EQ(box.text(), QStringLiteral("l"));
  EXPECT_EQ(shown.changes.take(), 1);
  settle();
  EXPECT_EQ(box.document()->toPlainText(), QStringLiteral("l"));
  QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(box.text(), text);
  expectSmallDocument();
  box.selectAll();
  box.cut();
  EXPECT_EQ(box.text(), QString());
}

TEST_F(LongText, WhatIsSelectedBeyondThePartGoesWithIt) {
  const QString text = box.text();
  const int from = 1'000, to = 5'000'000;
  for (int edit = 0; edit < 3; ++edit) {
    box.setText(text);
    box.setSelStart(from);
    box.setSelLength(to - from);
    settle();
    if (edit == 0) QTest::keyClick(&box, Qt::Key_Delete);
    if (edit == 1) QTest::keyClicks(&box, QStringLiteral("new"));
    if (edit == 2) {
      QInputMethodEvent commit;
      commit.setCommitString(QStringLiteral("new"));
      QApplication::sendEvent(&box, &commit);
    }
    const QString expected = text.left(from) + (edit == 0 ? QString() : QStringLiteral("new")) + text.mid(to);
    EXPECT_TRUE(box.text() == expected) << edit;
    EXPECT_EQ(box.selStart(), from + (edit == 0 ? 0 : 3));
    settle();
    expectSmallDocument();
  }
}

TEST_F(LongText, ColoursComeWithThePartThatHoldsThem) {
  const int places[] = {10, 3'000'000, box.length() - 40};
  for (const int place : places) shown.mark(place, 4);
  for (const int place : places) {
    EXPECT_EQ(box.colorAt(place + 1), kRed);
    box.setSelStart(place);
    box.refresh();
    settle();
    QTextCursor cursor = box.textCursor();
    cursor.movePosition(QTextCursor::Right);
    EXPECT_EQ(cursor.charFormat().foreground().color(), QColor(Qt::red)) << place;
  }
}

// The same in a text that is one line, one word, or nothing but line ends.
TEST(LongTexts, OfEachShapeAreShownInParts) {
  const QString words = QStringLiteral("some words ").repeated(110'000), word(1'200'000, u'x'),
                pairs = QStringLiteral("\U0001F600").repeated(600'000), ends(1'200'000, u'\n'),
                mixed = QStringLiteral("\r\r\n\r").repeated(300'000);
  for (const QString& text : {words, word, pairs, ends, mixed}) {
    ShownBox shown(text);
    RichTextBox& box = shown.box;
    for (const int place : {0, int(text.size()) / 2, int(text.size())}) {
      box.setSelStart(place);
      box.refresh();
      for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
      EXPECT_LT(box.document()->characterCount(), 300'000);
      EXPECT_LT(box.document()->blockCount(), 30'000);
      EXPECT_FALSE(box.document()->characterAt(0).isLowSurrogate());
    }
    QTest::keyClicks(&box, QStringLiteral("end"));
    EXPECT_EQ(box.text().size(), text.size() + 3);
    EXPECT_TRUE(box.text().endsWith(QStringLiteral("end")));
    EXPECT_TRUE(box.text().startsWith(text.left(1000)));
    QTest::keyClick(&box, Qt::Key_Home, Qt::ControlModifier);
    QTest::keyClicks(&box, QStringLiteral("start"));
    EXPECT_EQ(box.text(), QStringLiteral("start") + text + QStringLiteral("end"));
  }
}

}  // namespace
}  // namespace lens
