// Undoing and redoing what the user did in a rich text box.
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QRandomGenerator>

#include "control_test.h"
#include "controls/rich_text_box.h"
#include "controls/text_history.h"

namespace lens {
namespace {

const QString kOdd = QStringLiteral("a\r\r\nb\rc\r\nd\u00A0e\nf");

struct EditedBox {
  explicit EditedBox(const QString& text = QString()) : changes(box.change) {
    box.resize(300, 200);
    showWithFocus(box);
    box.setText(text);
    changes.take();
  }
  void type(const QString& text) { QTest::keyClicks(&box, text); }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&box, key, modifiers);
  }
  void paste(const QString& text) {
    QApplication::clipboard()->setText(text);
    key(Qt::Key_V, Qt::ControlModifier);
  }
  void undo() { key(Qt::Key_Z, Qt::ControlModifier); }
  void redo() { key(Qt::Key_Y, Qt::ControlModifier); }
  RichTextBox box;
  Counter changes;
};

TEST(RichTextUndo, TypingOfALineIsOneStep) {
  EditedBox edited(u"one"_s);
  edited.key(Qt::Key_End);
  edited.type(u" two"_s);
  edited.key(Qt::Key_Return);
  edited.type(u"three"_s);
  edited.changes.take();
  edited.undo();
  EXPECT_EQ(edited.box.text(), u"one two\r\n"_s);
  EXPECT_EQ(edited.box.selStart(), 9);
  EXPECT_EQ(edited.changes.take(), 1);
  edited.undo();
  EXPECT_EQ(edited.box.text(), u"one two"_s);
  edited.undo();
  EXPECT_EQ(edited.box.text(), u"one"_s);
  edited.undo();
  EXPECT_EQ(edited.box.text(), u"one"_s);
  edited.redo();
  edited.redo();
  edited.key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  edited.redo();
  EXPECT_EQ(edited.box.text(), u"one two\r\nthree"_s);
}

TEST(RichTextUndo, BringsBackOwnLineEnds) {
  EditedBox edited(kOdd);
  edited.key(Qt::Key_A, Qt::ControlModifier);
  edited.type(u"x"_s);
  EXPECT_EQ(edited.box.text(), u"x"_s);
  edited.undo();
  EXPECT_EQ(edited.box.text(), kOdd);
  edited.box.setSelStart(1);
  edited.box.setSelLength(5);
  edited.key(Qt::Key_X, Qt::ControlModifier);
  edited.undo();
  EXPECT_EQ(edited.box.text(), kOdd);
}

TEST(RichTextUndo, BackspacesAreOneStepPastingIsOne) {
  EditedBox edited(u"abcdef"_s);
  edited.box.setSelStart(4);
  for (int i = 0; i < 3; ++i) edited.key(Qt::Key_Backspace);
  edited.paste(u"1\n2"_s);
  EXPECT_EQ(edited.box.text(), u"a1\r\n2ef"_s);
  edited.undo();
  EXPECT_EQ(edited.box.text(), u"aef"_s);
  edited.undo();
  EXPECT_EQ(edited.box.text(), u"abcdef"_s);
}

TEST(RichTextUndo, WhatCodeSetsCannotBeUndoneNorWhatWasBefore) {
  EditedBox edited;
  edited.type(u"typed"_s);
  edited.box.setText(u"set"_s);
  edited.undo();
  EXPECT_EQ(edited.box.text(), u"set"_s);
  edited.key(Qt::Key_End);
  edited.type(u"x"_s);
  edited.box.setSelText(u"y"_s);
  edited.undo();
  EXPECT_EQ(edited.box.text(), u"setxy"_s);
}

// A procedure that rewrites the text while the user types takes the history with it.
TEST(RichTextUndo, AChangeProcedureThatSetsTheTextLeavesNothingToUndo) {
  EditedBox edited;
  edited.box.change = [&] {
    if (!edited.box.text().endsWith(u'!')) edited.box.setText(edited.box.text() + u'!');
  };
  edited.paste(u"a"_s);
  EXPECT_EQ(edited.box.text(), u"a!"_s);
  edited.undo();
  EXPECT_EQ(edited.box.text(), u"a!"_s);
}

TEST(RichTextUndo, LooksAreNoSteps) {
  EditedBox edited(u"abc"_s);
  edited.key(Qt::Key_End);
  edited.type(u"d"_s);
  edited.box.setSelStart(0);
  edited.box.setSelLength(2);
  edited.box.setSelColor(255);
  edited.undo();
  EXPECT_EQ(edited.box.text(), u"abc"_s);
  EXPECT_EQ(edited.box.colorAt(0), 255u);
}

TEST(RichTextUndo, AReadOnlyBoxKeepsItsText) {
  EditedBox edited;
  edited.type(u"a"_s);
  edited.box.setReadOnly(true);
  edited.undo();
  EXPECT_EQ(edited.box.text(), u"a"_s);
}

TEST(RichTextUndo, IsInTheMenu) {
  EditedBox edited;
  edited.type(u"a"_s);
  QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), edited.box.mapToGlobal(QPoint(5, 5)));
  QApplication::sendEvent(edited.box.viewport(), &event);
  QMenu* menu = edited.box.findChild<QMenu*>();
  ASSERT_TRUE(menu);
  ASSERT_GE(menu->actions().size(), 3);
  EXPECT_EQ(menu->actions()[0]->text(), u"&Undo\tCtrl+Z"_s);
  EXPECT_TRUE(menu->actions()[0]->isEnabled());
  EXPECT_EQ(menu->actions()[1]->text(), u"&Redo\tCtrl+Y"_s);
  EXPECT_FALSE(menu->actions()[1]->isEnabled());
  menu->actions()[0]->trigger();
  EXPECT_EQ(edited.box.text(), QString());
  menu->close();
}

// Any edits, in short texts and in long ones of which the document holds a part: all can be taken back to
// where they began and done again.
TEST(RichTextUndo, OfRandomEditsGoesBackAndForth) {
  QRandomGenerator random(3);
  const QStringList pieces{u"x"_s, u"\r"_s, u"\n"_s, u"a\r\nb"_s, u"\u00A0"_s, u"\r\r\n"_s, u"word "_s};
  for (const int rounds : {60, 10}) {
    EditedBox edited(rounds == 60 ? kOdd : QString(kOdd + u"line\r\n"_s).repeated(12000));
    const QString before = edited.box.text();
    for (int i = 0; i < rounds; ++i) {
      edited.box.setSelStart(random.bounded(edited.box.length() + 1));
      edited.box.setSelLength(random.bounded(4) == 0 ? random.bounded(6) : 0);
      switch (random.bounded(5)) {
        case 0:
          edited.key(Qt::Key_Backspace);
          break;
        case 1:
          edited.key(Qt::Key_Delete);
          break;
        case 2:
          edited.paste(pieces[random.bounded(pieces.size())]);
          break;
        case 3:
          edited.key(Qt::Key_Return);
          break;
        default:
          edited.type(u"q"_s);
          break;
      }
    }
    const QString after = edited.box.text();
    for (int i = 0; i < rounds + 1; ++i) edited.undo();
    ASSERT_TRUE(edited.box.text() == before);
    for (int i = 0; i < rounds + 1; ++i) edited.redo();
    ASSERT_TRUE(edited.box.text() == after);
  }
}

TEST(TextHistory, IsBoundedAndForgetsTheOldestFirst) {
  TextHistory history(10);
  history.record(0, {}, u"12345"_s);
  history.record(9, {}, u"6789"_s);
  EXPECT_TRUE(history.canUndo());
  history.record(20, {}, u"abc"_s);
  QVector<TextHistory::Step> steps = history.undo();
  ASSERT_EQ(steps.size(), 1);
  EXPECT_EQ(steps[0].added, u"abc"_s);
  EXPECT_EQ(history.undo().value(0).added, u"6789"_s);
  EXPECT_TRUE(history.undo().isEmpty());
  history.record(0, u"a text that is too long"_s, {});
  EXPECT_FALSE(history.canUndo());
}

TEST(TextHistory, JoinedStepsAreTakenTogether) {
  TextHistory history;
  history.record(0, u"word"_s, {});
  history.breakStep();
  history.record(7, {}, u"word"_s);
  history.joinLast();
  EXPECT_EQ(history.undo().size(), 2);
  EXPECT_FALSE(history.canUndo());
  EXPECT_EQ(history.redo().size(), 2);
  EXPECT_FALSE(history.canRedo());
}

}  // namespace
}  // namespace lens
