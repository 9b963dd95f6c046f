// Boxes that one types a line in: text box and combo box.
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QWheelEvent>

#include "control_test.h"
#include "controls/combo_box.h"
#include "controls/keys.h"
#include "controls/text_box.h"

namespace lens {
namespace {

TEST(TextBox, ChangeFiresWhenTheTextDiffersTypedOrSet) {
  TextBox box;
  Counter changes(box.change);
  box.setText(QStringLiteral("a"));
  box.setText(QStringLiteral("a"));
  EXPECT_EQ(changes.take(), 1);
  showWithFocus(box);
  QTest::keyClicks(&box, QStringLiteral("bc"));
  EXPECT_EQ(changes.take(), 2);
}

TEST(TextBox, FailureInChangeGoesToTheCodeThatSetTheTextAndToTheReportBelowTheUser) {
  Untrapped untrapped;
  TextBox box;
  box.change = [] { throw RuntimeError(6); };
  EXPECT_EQ(errorOf([&] { box.setText(QStringLiteral("a")); }), 6);
  EXPECT_EQ(box.text(), QStringLiteral("a"));
  EXPECT_EQ(errorOf([&] { box.setText(QStringLiteral("a")); }), 0);
  EXPECT_TRUE(untrapped.numbers.isEmpty());
  showWithFocus(box);
  QTest::keyClicks(&box, QStringLiteral("b"));
  EXPECT_EQ(untrapped.numbers, QVector<int>{6});
}

TEST(ComboBox, ShowsTheBeginningOfALongTextAndItsRowsWhole) {
  const QString sentence =
      QStringLiteral("DATETIMES (1024) means date-time value or range of date-time values");
  ComboBox box;
  box.setEditable(true);
  box.addItem(sentence);
  box.setFixedWidth(80);
  showWithFocus(box);
  box.setText(sentence);
  EXPECT_EQ(box.lineEdit()->cursorPosition(), 0);
  box.showPopup();
  EXPECT_GE(box.view()->viewport()->width(), box.fontMetrics().horizontalAdvance(sentence));
  box.hidePopup();
}

TEST(ComboBox, FailureInChangeGoesToTheCodeThatSetTheText) {
  Untrapped untrapped;
  ComboBox box;
  box.setEditable(true);
  box.change = [] { throw RuntimeError(6); };
  EXPECT_EQ(errorOf([&] { box.setText(QStringLiteral("a")); }), 6);
  EXPECT_EQ(box.text(), QStringLiteral("a"));
  EXPECT_TRUE(untrapped.numbers.isEmpty());
}

TEST(TextBox, TakesTextOfAnyLength) {
  TextBox box;
  box.setText(QString(100000, QChar(u'x')));
  EXPECT_EQ(box.text().size(), 100000);
}

TEST(TextBox, SignsAreNoKeysOfAnotherKind) {
  TextBox box;
  showWithFocus(box);
  QVector<int> codes;
  box.keyDown = [&](int code, int) { codes += code; };
  QTest::keyClicks(&box, QStringLiteral("a7 -.%'!"));
  // Shift comes with some of them, depending on the keyboard.
  codes.removeAll(16);
  EXPECT_EQ(codes, QVector<int>({'A', '7', key::Space, 0, 0, 0, 0, 0}));
}

TEST(TextBox, KeyPressMayChangeOrSwallowTheCharacter) {
  TextBox box;
  showWithFocus(box);
  box.keyPress = [](int& code) {
    if (code == 'a') code = 'A';
    if (code == 'n') code = 0;
    if (code == 'm') code = 13;
  };
  QTest::keyClicks(&box, QStringLiteral("xanm"));
  EXPECT_EQ(box.text(), QStringLiteral("xA"));
  box.selectAll();
  QTest::keyClicks(&box, QStringLiteral("n"));
  EXPECT_EQ(box.text(), QStringLiteral("xA"));
  QTest::keyClicks(&box, QStringLiteral("a"));
  EXPECT_EQ(box.text(), QStringLiteral("A"));
}

TEST(TextBox, ControlKeysAndPastingPassKeyPressBy) {
  TextBox box;
  showWithFocus(box);
  QVector<int> codes;
  box.keyPress = [&](int& code) { codes << code; };
  QTest::keyClicks(&box, QStringLiteral("a"));
  QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_Adiaeresis, QStringLiteral("\u00E4"), Qt::NoModifier);
  for (int key : {Qt::Key_Backspace, Qt::Key_Left, Qt::Key_Delete, Qt::Key_Home})
    QTest::keyClick(&box, Qt::Key(key));
  EXPECT_EQ(box.text(), QString());
  QApplication::clipboard()->setText(QStringLiteral("pasted"));
  QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(box.text(), QStringLiteral("pasted"));
  QTest::keyClick(&box, Qt::Key_Return);
  QTest::keyClick(&box, Qt::Key_Escape);
  EXPECT_EQ(codes, (QVector<int>{'a', 0xE4, 13, 27}));
  EXPECT_EQ(box.text(), QStringLiteral("pasted"));
}

struct DefaultDialog : QDialog {
  DefaultDialog() : box(this), button(this) {
    button.setDefault(true);
    connect(&button, &QPushButton::clicked, this, [this] { ++presses; });
    showWithFocus(box);
    show();
  }
  TextBox box;
  QPushButton button;
  int presses = 0;
};

TEST(TextBox, EnterThatAProcedureTakesPressesNoDefaultButton) {
  DefaultDialog dialog;
  dialog.box.keyPress = [](int&) {};
  QTest::keyClick(&dialog.box, Qt::Key_Return);
  EXPECT_EQ(dialog.presses, 0);
}

TEST(TextBox, EnterThatNobodyTakesIsLeftToTheWindow) {
  DefaultDialog dialog;
  QTest::keyClick(&dialog.box, Qt::Key_Return);
  EXPECT_EQ(dialog.presses, 1);
}

TEST(TextBox, CommittedInputMethodTextGoesThroughKeyPress) {
  TextBox box;
  showWithFocus(box);
  box.keyPress = [](int& code) { code = code == u'\u306B' ? 'n' : 0; };
  QInputMethodEvent commit;
  commit.setCommitString(QStringLiteral("\u306Bx"));
  QApplication::sendEvent(&box, &commit);
  EXPECT_EQ(box.text(), QStringLiteral("n"));
}

struct ShownCombo {
  explicit ShownCombo(bool editable) : clicks(box.click) {
    box.setEditable(editable);
    for (const char16_t* row : {u"Text", u"Number", u"Date"}) box.addItem(QString::fromUtf16(row));
    box.resize(200, 26);
    showWithFocus(box);
  }
  ComboBox box;
  Counter clicks;
};

TEST(ComboBox, RowsAddedChooseNothing) {
  for (bool editable : {true, false}) {
    ShownCombo shown(editable);
    EXPECT_EQ(shown.box.text(), QString());
    EXPECT_EQ(shown.box.listIndex(), -1);
    EXPECT_EQ(shown.clicks.take(), 0);
  }
}

TEST(ComboBox, TextAndRowsAreSeparateThings) {
  ShownCombo shown(true);
  shown.box.setText(QStringLiteral("Local"));
  shown.box.addItem(QStringLiteral("Fourth"));
  EXPECT_EQ(shown.box.text(), QStringLiteral("Local"));
  shown.box.setText(QString());
  EXPECT_EQ(shown.box.listCount(), 4);
  shown.box.setText(QStringLiteral("Local"));
  shown.box.clearRows();
  EXPECT_EQ(shown.box.listCount(), 0);
  EXPECT_EQ(shown.box.text(), QStringLiteral("Local"));
  shown.box.addItem(QStringLiteral("again"));
  EXPECT_EQ(shown.box.text(), QStringLiteral("Local"));
  EXPECT_EQ(shown.clicks.take(), 0);
}

TEST(ComboBox, TypedTextIsNeitherCompletedNorAdded) {
  ShownCombo shown(true);
  QTest::keyClicks(&shown.box, QStringLiteral("TEXT"));
  QTest::keyClick(&shown.box, Qt::Key_Return);
  EXPECT_EQ(shown.box.text(), QStringLiteral("TEXT"));
  EXPECT_EQ(shown.box.listCount(), 3);
  EXPECT_EQ(shown.clicks.take(), 0);
}

TEST(ComboBox, TextThatEqualsARowIsNoPickOnEnterOrFocus) {
  ShownCombo shown(true);
  QWidget other;
  shown.box.setText(QStringLiteral("Number"));
  QTest::keyClick(&shown.box, Qt::Key_Return);
  shown.box.clearFocus();
  showWithFocus(other);
  showWithFocus(shown.box);
  EXPECT_EQ(shown.clicks.take(), 0);
}

TEST(ComboBox, ArrowKeyPicks) {
  for (bool editable : {true, false}) {
    ShownCombo shown(editable);
    QTest::keyClick(&shown.box, Qt::Key_Down);
    QTest::keyClick(&shown.box, Qt::Key_Down);
    EXPECT_EQ(shown.box.text(), QStringLiteral("Number"));
    EXPECT_EQ(shown.clicks.take(), 2);
  }
}

TEST(ComboBox, MousePickInTheOpenListFires) {
  for (bool editable : {true, false}) {
    ShownCombo shown(editable);
    // Within this time an open list takes a release as part of the press that opened it.
    QApplication::setDoubleClickInterval(0);
    shown.box.showPopup();
    const QRect place = shown.box.view()->visualRect(shown.box.model()->index(2, 0));
    QTest::mouseMove(shown.box.view()->viewport(), place.center());
    QTest::mouseClick(shown.box.view()->viewport(), Qt::LeftButton, {}, place.center());
    EXPECT_EQ(shown.box.text(), QStringLiteral("Date"));
    EXPECT_EQ(shown.clicks.take(), 1);
  }
}

TEST(ComboBox, WheelOverAClosedBoxDoesNothing) {
  ShownCombo shown(false);
  QTest::keyClick(&shown.box, Qt::Key_Down);
  shown.clicks.take();
  QWheelEvent roll(QPointF(5, 5), shown.box.mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, -120),
                   Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&shown.box, &roll);
  EXPECT_EQ(shown.box.text(), QStringLiteral("Text"));
  EXPECT_EQ(shown.clicks.take(), 0);
}

TEST(ComboBox, LetterSearchIsNoPick) {
  ShownCombo shown(false);
  QTest::keyClick(&shown.box, 'd');
  EXPECT_EQ(shown.box.text(), QStringLiteral("Date"));
  EXPECT_EQ(shown.clicks.take(), 0);
}

TEST(ComboBox, KeyPressWorksAsInATextBox) {
  ShownCombo shown(true);
  shown.box.keyPress = [](int& code) { code = code == 'a' ? 'A' : code == 'n' ? 0 : code; };
  QTest::keyClicks(&shown.box, QStringLiteral("an"));
  EXPECT_EQ(shown.box.text(), QStringLiteral("A"));
}

TEST(ComboBox, ChangeFiresOncePerText) {
  ShownCombo shown(true);
  Counter changes(shown.box.change);
  shown.box.setText(QStringLiteral("Local"));
  shown.box.setText(QStringLiteral("Local"));
  EXPECT_EQ(changes.take(), 1);
  shown.box.clearRows();
  shown.box.addItem(QStringLiteral("row"));
  EXPECT_EQ(changes.take(), 0);
  QTest::keyClick(&shown.box, Qt::Key_Down);
  EXPECT_EQ(changes.take(), 1);
}

}  // namespace
}  // namespace lens
