#include "shell/window_layout.h"

#include <QScrollBar>
#include <QTest>

#include "support/lens_fixture.h"

namespace lens {
namespace {

// Where two pictures of one size differ; empty where they do not.
QString differences(const QImage& one, const QImage& other) {
  if (one == other) return {};
  QRect found;
  for (int y = 0; y < one.height(); ++y)
    for (int x = 0; x < one.width(); ++x)
      if (one.pixel(x, y) != other.pixel(x, y)) found |= QRect(x, y, 1, 1);
  return u"%1, %2 to %3, %4"_s.arg(found.left()).arg(found.top()).arg(found.right()).arg(found.bottom());
}

class WindowLayoutTest : public LensFixture {
 protected:
  WindowLayoutTest() {
    openDatabase(u"a.nsf"_s);
    Note note = document(u"Memo"_s);
    openDocument(save(note));
    build();
    app->lifecycle.Form_Load();
    form().resize(1280, 800);
    form().show();
  }
};

TEST_F(WindowLayoutTest, TheDesignSizeGivesTheDesignPlacesAndEightPoints) {
  EXPECT_EQ(form().cmdEnd->geometry(), QRect(1208, 744, 64, 26));
  EXPECT_EQ(form().txtSearch->geometry(), QRect(8, 16, 280, 26));
  EXPECT_EQ(form().cmdEnd->font().pointSize(), 8);
}

TEST_F(WindowLayoutTest, EveryControlReturnsToItsDesignPlaceExactly) {
  const Form1 design;
  for (const QSize size : {QSize(1920, 1001), QSize(1283, 799), QSize(1280, 800)}) form().resize(size);
  for (const QWidget* control : design.findChildren<QWidget*>()) {
    if (!control->property("tabIndex").isValid()) continue;
    EXPECT_EQ(form().findChild<QWidget*>(control->objectName())->geometry(), control->geometry())
        << control->objectName().toStdString();
  }
}

TEST_F(WindowLayoutTest, RestoringTheDesignSizeShowsTheDesignToThePixel) {
  const auto seen = [this] { return form().grab().toImage(); };
  form().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&form()));
  form().cmdScroll->show();  // what the program hides or shows is placed like all else
  form().cmdDelRT->show();
  form().Dir1->setPath(u"/"_s);   // so short that no list has to be moved
  app->lifecycle.Timer2_Timer();  // the clock
  QTest::qWait(50);               // bars of filled lists
  const QImage design = seen();
  for (const QSize size :
       {QSize(1920, 1001), QSize(1283, 799), QSize(480, 320), QSize(2560, 1440), QSize(1280, 800)})
    form().resize(size);
  EXPECT_TRUE(QTest::qWaitFor([&] { return seen() == design; })) << differences(seen(), design).toStdString();
  form().showMinimized();
  form().showNormal();
  form().resize(1280, 800);
  form().activateWindow();
  EXPECT_TRUE(QTest::qWaitFor([&] { return seen() == design; })) << differences(seen(), design).toStdString();
}

TEST_F(WindowLayoutTest, PlacesSizesAndFontsGrowWithTheWindow) {
  form().resize(1920, 1000);
  EXPECT_EQ(form().cmdEnd->geometry(), QRect(1812, 930, 96, 32));
  EXPECT_EQ(form().cmdEnd->font().pointSize(), 10);
  form().resize(1280, 900);
  EXPECT_EQ(form().cmdEnd->font().pointSize(), 9);
  form().resize(1280, 800);
  EXPECT_EQ(form().cmdEnd->geometry(), QRect(1208, 744, 64, 26));
  EXPECT_EQ(form().cmdEnd->font().pointSize(), 8);
}

TEST_F(WindowLayoutTest, BelowTheDesignHeightTheFontIsTheSmallest) {
  form().resize(1280, 799);
  EXPECT_EQ(app->layout.ScaledFontSize(), 0);
  EXPECT_EQ(form().cmdEnd->font().pointSize(), 1);
  form().resize(1280, 800);
  EXPECT_EQ(form().cmdEnd->font().pointSize(), 8);
}

TEST_F(WindowLayoutTest, MinimisingShrinksEverythingAndRestoringPutsItBack) {
  form().txtFieldContent->setText(u"abc"_s);
  form().txtFieldContent->setSelLength(3);
  form().txtFieldContent->setSelColor(255);
  form().showMinimized();
  EXPECT_EQ(form().cmdEnd->font().pointSize(), 1);
  form().showNormal();
  form().resize(1280, 800);
  EXPECT_EQ(form().cmdEnd->geometry(), QRect(1208, 744, 64, 26));
  EXPECT_EQ(form().txtFieldContent->colorAt(1), 0u);
}

TEST_F(WindowLayoutTest, AResizePutsTheCaretBehindTheFirstCharacterAndDropsColours) {
  form().txtFieldContent->setText(u"abc"_s);
  form().txtFieldContent->setSelStart(0);
  form().txtFieldContent->setSelLength(2);
  form().txtFieldContent->setSelColor(255);
  form().resize(1300, 820);
  EXPECT_EQ(form().txtFieldContent->colorAt(0), 0u);
  EXPECT_EQ(form().txtFieldContent->selStart(), 1);
  EXPECT_EQ(form().txtFieldContent->selLength(), 0);
}

TEST_F(WindowLayoutTest, ControlsMovedLaterReturnToTheirRecordedPlace) {
  form().cmdEnd->move(10, 10);
  form().resize(1281, 800);
  form().resize(1280, 800);
  EXPECT_EQ(form().cmdEnd->pos(), QPoint(1208, 744));
}

TEST_F(WindowLayoutTest, AControlThatIsHiddenScalesToo) {
  ASSERT_TRUE(form().cmdDelRT->isHidden());
  form().resize(2560, 1600);
  form().cmdDelRT->show();
  EXPECT_EQ(form().cmdDelRT->geometry(), QRect(2 * 1244, 2 * 88, 2 * 28, 2 * 26));
}

TEST_F(WindowLayoutTest, ControlsOfAWindowThatItOwnsAreNotItsOwn) {
  QWidget owned(&form(), Qt::Window);
  QWidget child(&owned);
  child.setProperty("tabIndex", form().cmdEnd->property("tabIndex"));
  child.setGeometry(1, 2, 3, 4);
  form().resize(2560, 1600);
  EXPECT_EQ(child.geometry(), QRect(1, 2, 3, 4));
  EXPECT_FALSE(layoutControls(form()).contains(&child));
}

TEST_F(WindowLayoutTest, OneControlCanBePlacedAlone) {
  form().cmdEnd->move(10, 10);
  form().cmdIni->move(10, 10);
  app->layout.ResizeOneControl(u"cmdIni"_s);
  EXPECT_EQ(form().cmdIni->pos(), QPoint(1192, 680));
  EXPECT_EQ(form().cmdEnd->pos(), QPoint(10, 10));
}

TEST_F(WindowLayoutTest, AWindowTallerThanTheRecordCanHoldShowsTheBoxAndIsNotScaled) {
  QWidget window;
  window.resize(100, 2185);  // 32775 twips
  QWidget child(&window);
  child.setObjectName(u"child"_s);
  child.setProperty("tabIndex", 0);
  child.setGeometry(0, 0, 10, 10);
  WindowLayout layout(window, host);
  layout.GetLocation();
  EXPECT_EQ(boxes(), QStringList(u"Error 6 (Overflow) in procedure GetLocation of Formular Form1"_s));
  window.resize(3840, 100);
  layout.ResizeControls();
  EXPECT_EQ(layout.ScaledFontSize(), 0);
}

TEST_F(WindowLayoutTest, AControlOutsideTheRecordsRangeIsLeftWhereItIs) {
  QWidget window;
  window.resize(100, 100);
  QWidget far(&window), near(&window);
  far.setProperty("tabIndex", 0);
  far.setGeometry(2185, 0, 10, 10);
  near.setProperty("tabIndex", 1);
  near.setGeometry(10, 10, 10, 10);
  WindowLayout layout(window, host);
  layout.GetLocation();
  EXPECT_EQ(boxes(), QStringList());
  window.resize(3840, 200);
  layout.ResizeControls();
  EXPECT_EQ(far.geometry(), QRect(2185, 0, 10, 10));
  EXPECT_EQ(near.geometry(), QRect(384, 20, 384, 20));
}

TEST_F(WindowLayoutTest, WithoutARecordAResizeDoesNothing) {
  QWidget window;
  window.resize(100, 100);
  QWidget child(&window);
  child.setProperty("tabIndex", 0);
  child.setGeometry(1, 2, 3, 4);
  WindowLayout layout(window, host);
  layout.ResizeControls();
  EXPECT_EQ(child.geometry(), QRect(1, 2, 3, 4));
}

TEST_F(WindowLayoutTest, ListsKeepWholeRows) {
  form().resize(1920, 1000);
  EXPECT_EQ(form().fldList->rowHeight(), 20);
}

TEST_F(WindowLayoutTest, ListsScrollSidewaysToTwiceTheirWidthAtEverySize) {
  for (const QSize size : {QSize(1280, 800), QSize(1920, 1040), QSize(2560, 1400), QSize(1000, 700)}) {
    form().resize(size);
    for (const ListBox* list : {form().fldList, form().idList}) {
      EXPECT_EQ(list->horizontalExtent(), 2 * list->width()) << size.width();
      const QScrollBar* bar = list->horizontalScrollBar();
      EXPECT_EQ(bar->maximum(), 2 * list->width() - list->viewport()->width()) << size.width();
    }
  }
}

TEST_F(WindowLayoutTest, AnEmptyContentBoxKeepsItsFont) {
  form().txtFieldContent->setText(QString());
  const QFont before = form().txtFieldContent->font();
  for (const QSize size : {QSize(1280, 799), QSize(1920, 1040), QSize(1280, 800)}) {
    form().resize(size);
    EXPECT_EQ(form().txtFieldContent->font(), before) << size.width();
  }
  form().txtFieldContent->setText(u"text"_s);
  form().resize(1920, 1000);
  EXPECT_EQ(form().txtFieldContent->font().pointSize(), 10);
}

TEST_F(WindowLayoutTest, StepsBackToTheLineBeforeGiveTheColumn) {
  RichTextBox box;
  box.setText(u"ab\r\ncdef"_s);
  int out = 0;
  LinesBackFromChar(box, 0, 5, out);
  EXPECT_EQ(out, 5);
  out = 0;
  LinesBackFromChar(box, 1, 6, out);  // behind "cd": the line end's last place is 3
  EXPECT_EQ(out, 2);
}

// The column as a walk back over all places finds it, which takes too long in a line of millions.
TEST_F(WindowLayoutTest, TheColumnIsThatOfAWalkBackFromEachPlace) {
  RichTextBox box;
  box.setText(u"ab\r\ncdef\rg\n\nh\r\r\nij"_s);
  for (int line = 0; line <= 7; ++line) {
    for (int position = 0; position <= box.length(); ++position) {
      int expected = line == 0 ? position : 0, out = 0;
      for (int index = position; line > 0 && index >= 0; --index) {
        if (box.lineFromChar(index) >= line) continue;
        expected = position - index - 1;
        break;
      }
      LinesBackFromChar(box, line, position, out);
      EXPECT_EQ(out, expected) << line << ' ' << position;
    }
  }
}

// Usual laptops leave less than the design height, and their window managers fit windows to the screen.
TEST_F(LensFixture, AWindowThatTheDesktopMakesLowerComesUpWithReadableText) {
  openDatabase(u"a.nsf"_s);
  build();
  app->start();
  const int asked = form().height();
  form().resize(form().width(), asked - 70);  // the desktop's answer
  EXPECT_TRUE(QTest::qWaitFor([&] { return form().cmdEnd->font().pointSize() == 8; }));
  EXPECT_LE(form().cmdEnd->geometry().bottom(), form().height());
  const QRect place = form().cmdEnd->geometry();
  // Maximised it is at least as high, and the text grows from there.
  form().resize(form().width(), asked);
  EXPECT_GE(form().cmdEnd->font().pointSize(), 8);
  form().resize(form().width(), asked - 70);
  EXPECT_EQ(form().cmdEnd->geometry(), place);
}

}  // namespace
}  // namespace lens
