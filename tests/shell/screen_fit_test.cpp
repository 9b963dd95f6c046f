// Windows of a fixed design on small screens: inside them, with text that can be read.
#include "shell/screen_fit.h"

#include <QScreen>
#include <QTest>

#include "bulk/frm_replic.h"
#include "support/lens_fixture.h"

namespace lens {
namespace {

struct Laptop {
  const char* name;
  QSize screen;  // what the desktop leaves, at the scale that is usual there
};

const Laptop kLaptops[] = {
    {"1366 x 768", {1366, 768}},           {"1366 x 768 with a task bar", {1366, 728}},
    {"1366 x 768 at 125 %", {1093, 614}},  {"1366 x 768 at 125 % with a task bar", {1093, 574}},
    {"1280 x 800", {1280, 800}},           {"1280 x 800 at 125 %", {1024, 640}},
    {"1920 x 1080 at 150 %", {1280, 720}}, {"1920 x 1080 at 150 % with a task bar", {1280, 690}},
    {"1920 x 1080 at 200 %", {960, 540}},
};
constexpr QSize kFrame(16, 40);

class ScreenFit : public LensFixture {
 protected:
  // As a start does it: fitted, recorded, shown.
  void expectFitting(QWidget& window, QSize screen) {
    fitDesign(window, screen - kFrame);
    EXPECT_LE(window.width() + kFrame.width(), screen.width());
    EXPECT_LE(window.height() + kFrame.height(), screen.height());
    WindowLayout layout(window, host);
    layout.GetLocation();
    layout.ResizeControls();
    for (const QWidget* control : layoutControls(window)) {
      EXPECT_TRUE(control->parentWidget()->rect().contains(control->geometry()))
          << control->objectName().toStdString();
      const bool isLine = qobject_cast<const Label*>(control);
      EXPECT_GE(control->height(), isLine ? control->fontMetrics().height() - 1 : 12)
          << control->objectName().toStdString();
      EXPECT_EQ(control->font().pointSize(), 8) << control->objectName().toStdString();
    }
  }
};

TEST_F(ScreenFit, TheMainWindowComesUpWholeAndReadableOnEveryLaptop) {
  for (const Laptop& laptop : kLaptops) {
    SCOPED_TRACE(laptop.name);
    Form1 window;
    window.txtFieldContent->setText(u"text"_s);  // an empty one keeps its font
    expectFitting(window, laptop.screen);
  }
}

TEST_F(ScreenFit, TheBulkToolsWindowComesUpWholeAndReadableOnEveryLaptop) {
  for (const Laptop& laptop : kLaptops) {
    if (laptop.screen.height() < 540 + 12) continue;  // its design is higher, and so is what it needs
    SCOPED_TRACE(laptop.name);
    FrmReplic window;
    expectFitting(window, laptop.screen);
  }
}

TEST_F(ScreenFit, ADesignThatHasRoomStaysAsItIs) {
  const Form1 design;
  for (const QSize room : {QSize(1280, 800), QSize(1264, 800), QSize(1280, 760), QSize(3840, 2160)}) {
    Form1 window;
    fitDesign(window, room);
    EXPECT_EQ(window.size(), room.boundedTo(design.size()));
    const bool isWhole = window.size() == design.size();
    EXPECT_EQ(window.cmdEnd->geometry() == design.cmdEnd->geometry(), isWhole);
  }
}

TEST_F(ScreenFit, EachWayIsFittedByItself) {
  const Form1 design;
  Form1 narrow, low;
  fitDesign(narrow, QSize(960, 900));
  fitDesign(low, QSize(1400, 600));
  for (const QWidget* control : layoutControls(design)) {
    const auto* inNarrow = narrow.findChild<QWidget*>(control->objectName());
    const auto* inLow = low.findChild<QWidget*>(control->objectName());
    EXPECT_EQ(inNarrow->y(), control->y());
    EXPECT_EQ(inNarrow->height(), control->height());
    EXPECT_EQ(inNarrow->mapTo(&narrow, QPoint()).x(), qRound(control->mapTo(&design, QPoint()).x() * 0.75));
    EXPECT_EQ(inLow->x(), control->x());
    EXPECT_EQ(inLow->width(), control->width());
    const bool speaks = qobject_cast<const Label*>(control) || qobject_cast<const Frame*>(control);
    const int y = control->mapTo(&design, QPoint()).y(), lowY = inLow->mapTo(&low, QPoint()).y();
    if (speaks) {
      EXPECT_LE(lowY, qRound(y * 0.75));
      EXPECT_GE(lowY, qRound(y * 0.75) - 6);
    } else {
      EXPECT_EQ(lowY, qRound(y * 0.75)) << control->objectName().toStdString();
    }
  }
}

TEST_F(ScreenFit, ThereIsASizeBelowWhichNothingCouldBeRead) {
  Form1 window;
  fitDesign(window, QSize(320, 200));
  EXPECT_EQ(window.size(), QSize(800, 500));
}

TEST_F(ScreenFit, APlaceIsMovedInsideByTheShortestWay) {
  const QRect area(100, 50, 800, 600);
  EXPECT_EQ(movedInside(QRect(200, 100, 300, 300), area), QRect(200, 100, 300, 300));
  EXPECT_EQ(movedInside(QRect(700, 500, 300, 300), area), QRect(600, 350, 300, 300));
  EXPECT_EQ(movedInside(QRect(0, 0, 300, 300), area), QRect(100, 50, 300, 300));
  EXPECT_EQ(movedInside(QRect(300, 300, 900, 700), area).topLeft(), area.topLeft());
}

// A caption that is cut in half would be no caption; what stands above and below it still does.
TEST_F(ScreenFit, CaptionsThatKeepTheirHeightCoverNothing) {
  for (const Laptop& laptop : kLaptops) {
    SCOPED_TRACE(laptop.name);
    Form1 window;
    fitDesign(window, laptop.screen - kFrame);
    for (const Label* label : window.findChildren<Label*>()) {
      for (const QWidget* other : layoutControls(window)) {
        if (other == label || other->parentWidget() != label->parentWidget()) continue;
        EXPECT_FALSE(other->geometry().intersects(label->geometry()))
            << label->objectName().toStdString() << " and " << other->objectName().toStdString();
      }
    }
    // The title of the frame stands above what is in it.
    EXPECT_GE(window.txtSearch->y(), 14);
  }
}

// Some desktops put windows anywhere.
TEST_F(ScreenFit, AWindowThatTheDesktopPutsPartlyOutsideComesIn) {
  openDatabase(u"a.nsf"_s);
  start();
  form().move(60, 90);
  const QRect screen = form().screen()->availableGeometry();
  ASSERT_FALSE(screen.contains(form().frameGeometry().bottomLeft()));
  EXPECT_TRUE(QTest::qWaitFor([&] { return screen.contains(form().frameGeometry().bottomLeft()); }));
  EXPECT_TRUE(screen.contains(form().frameGeometry().topLeft()));
}

TEST_F(ScreenFit, ThatTheUserMovesItOutLaterIsHisOwnAffair) {
  openDatabase(u"a.nsf"_s);
  start();
  const auto staysOut = [this] {
    form().move(60, 90);
    QTest::qWait(150);
    return form().pos() == QPoint(60, 90);
  };
  EXPECT_TRUE(QTest::qWaitFor(staysOut, 30'000));
}

}  // namespace
}  // namespace lens
