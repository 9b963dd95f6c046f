#include <QScreen>
#include <QTest>

#include "editing/editing_fixture.h"

namespace lens {
namespace {

class ContentBoxTest : public EditingTest {
 protected:
  ContentBoxTest() {
    start();
    state().gContentPages.clear();
  }
  RichTextBox& content() { return control<RichTextBox>("txtFieldContent"); }
  QString panel(const char* name) { return form().sbrMain->panelText(QString::fromLatin1(name)); }
};

TEST_F(ContentBoxTest, EachNewTextJoinsTheHistoryOnce) {
  for (const QString& page : {u"one"_s, u" one "_s, u"two"_s, u"one"_s}) setText("txtFieldContent", page);
  EXPECT_EQ(state().gContentPages, QStringList({u"one"_s, u"two"_s}));
}

TEST_F(ContentBoxTest, BlanksAloneAreNoText) {
  setText("txtFieldContent", u"   "_s);
  EXPECT_EQ(state().gContentPages, QStringList());
  EXPECT_FALSE(isShown("cmdDelRT"));
}

TEST_F(ContentBoxTest, LineEndsAreKept) {
  setText("txtFieldContent", u"x"_s);
  setText("txtFieldContent", u"x\r\n"_s);
  EXPECT_EQ(state().gContentPages, QStringList({u"x"_s, u"x\r\n"_s}));
}

TEST_F(ContentBoxTest, TypingAddsATextForEachKeyAndShowsTheButtons) {
  type("txtFieldContent", u"a"_s);
  EXPECT_FALSE(isShown("cmdScroll"));
  EXPECT_TRUE(isShown("cmdDelRT"));
  type("txtFieldContent", u"b"_s);
  EXPECT_EQ(state().gContentPages, QStringList({u"a"_s, u"ab"_s}));
  EXPECT_TRUE(isShown("cmdScroll"));
}

TEST_F(ContentBoxTest, ScrollingGoesRoundTheHistory) {
  for (const QString& page : {u"one"_s, u"two"_s, u"three"_s}) setText("txtFieldContent", page);
  QStringList shown;
  for (int click_ = 0; click_ < 4; ++click_) {
    click("cmdScroll");
    shown += text("txtFieldContent");
  }
  EXPECT_EQ(shown, QStringList({u"one"_s, u"two"_s, u"three"_s, u"one"_s}));
  EXPECT_EQ(state().gContentPages.size(), 3);
}

TEST_F(ContentBoxTest, ScrollingFromAnUnknownTextBeginsWithTheFirst) {
  for (const QString& page : {u"one"_s, u"two"_s}) setText("txtFieldContent", page);
  setText("txtFieldContent", QString());
  click("cmdScroll");
  EXPECT_EQ(text("txtFieldContent"), "one");
}

TEST_F(ContentBoxTest, ScrollingEndsWhereOnlyTheShownTextIsLeft) {
  setText("txtFieldContent", u"one"_s);
  click("cmdScroll");
  EXPECT_EQ(text("txtFieldContent"), "one");
}

// Over the whole width of the screen the text gets the size that goes with the window, and is selected for
// it.
TEST_F(ContentBoxTest, ScrollingInAWindowAsWideAsTheScreenLeavesTheTextSelected) {
  const RichTextBox& box = control<RichTextBox>("txtFieldContent");
  const int screen = form().screen()->size().width();
  for (const QString& page : {u"one"_s, u"two"_s, u"three"_s}) setText("txtFieldContent", page);
  for (const int width : {screen - 1, screen, screen + 1}) {
    form().resize(width, 800);
    click("cmdScroll");
    EXPECT_EQ(box.selStart(), 0) << width;
    EXPECT_EQ(box.selLength(), width < screen ? 0 : box.length()) << width;
  }
}

TEST_F(ContentBoxTest, ClearingEmptiesTheHistoryAndTheBox) {
  for (const QString& page : {u"one"_s, u"two"_s}) setText("txtFieldContent", page);
  click("cmdDelRT");
  EXPECT_EQ(state().gContentPages, QStringList());
  EXPECT_EQ(text("txtFieldContent"), "");
  EXPECT_FALSE(isShown("cmdScroll"));
  EXPECT_FALSE(isShown("cmdDelRT"));
}

TEST_F(ContentBoxTest, TheHistoryOverflowsAndTheTypedTextStays) {
  for (int page = 0; page < 32'767; ++page) {
    state().gContentPages.clear();
    content().setText(QString::number(page));
  }
  host.boxes.clear();
  content().setFocus();
  content().setSelStart(content().length());
  QTest::keyClicks(&content(), u"x"_s);
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '6':"_s)) << host.boxes[0].text.toStdString();
  EXPECT_EQ(text("txtFieldContent"), "32766x");
  EXPECT_EQ(state().gContentPages, QStringList(u"32766"_s));
}

TEST_F(ContentBoxTest, TheStatusBarTellsLineAndColumn) {
  setText("txtFieldContent", u"first\r\nsecond"_s);
  content().setSelStart(3);
  EXPECT_EQ(panel("MainText"), "Line 1     Pos 4");
  content().setSelStart(7);
  EXPECT_EQ(panel("MainText"), "Line 2     Pos 1");
  content().setSelStart(9);
  EXPECT_EQ(panel("MainText"), "Line 2     Pos 3");
}

TEST_F(ContentBoxTest, TheStatusBarTellsTheFontWhereThereIsOne) {
  setText("txtFieldContent", u"ab"_s);
  content().setSelStart(0);
  content().setSelLength(2);
  const QString one = panel("FontInfo");
  EXPECT_TRUE(one.startsWith(u"Font: "_s) && one.size() > 8) << one.toStdString();
  content().setSelLength(1);
  content().setSelFontSize(30);
  content().setSelStart(0);
  content().setSelLength(2);
  EXPECT_FALSE(panel("FontInfo").contains(u"30"_s)) << panel("FontInfo").toStdString();
}

TEST_F(ContentBoxTest, TheInsertKeyFlipsItsPanel) {
  const bool before = form().sbrMain->isPanelEnabled(u"Overwrite"_s);
  QTest::keyClick(&content(), Qt::Key_Insert);
  EXPECT_NE(form().sbrMain->isPanelEnabled(u"Overwrite"_s), before);
  QTest::keyClick(&content(), Qt::Key_Insert);
  EXPECT_EQ(form().sbrMain->isPanelEnabled(u"Overwrite"_s), before);
}

}  // namespace
}  // namespace lens
