// Buttons, labels, check boxes, option buttons, frames, status bar, timer and menu.
#include <QApplication>
#include <QMouseEvent>
#include <QToolTip>

#include "control_test.h"
#include "controls/button.h"
#include "controls/check_box.h"
#include "controls/fonts.h"
#include "controls/frame.h"
#include "controls/label.h"
#include "controls/look.h"
#include "controls/option_button.h"
#include "controls/popup_menu.h"
#include "controls/status_bar.h"
#include "controls/text_box.h"
#include "controls/timer.h"

namespace lens {
namespace {

TEST(Button, MouseAndSpaceClickButEnterDoesNot) {
  Button button;
  Counter clicks(button.click);
  showWithFocus(button);
  QTest::mouseClick(&button, Qt::LeftButton);
  QTest::keyClick(&button, Qt::Key_Space);
  EXPECT_EQ(clicks.take(), 2);
  QTest::keyClick(&button, Qt::Key_Return);
  EXPECT_EQ(clicks.take(), 0);
  EXPECT_FALSE(button.autoDefault());
}

TEST(Button, RaisedClickRunsAlsoHiddenAndDisabledAndFailsToItsCaller) {
  Untrapped untrapped;
  Button button;
  button.setEnabled(false);
  button.click = [] { throw RuntimeError(91); };
  EXPECT_EQ(errorOf([&] { button.raiseClick(); }), 91);
  EXPECT_TRUE(untrapped.numbers.isEmpty());
  button.setEnabled(true);
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(untrapped.numbers, QVector<int>{91});
}

TEST(Button, DestructiveOneTakesTheFillOfItsWindow) {
  QWidget window;
  Button button(&window);
  button.setProperty("destructive", true);
  EXPECT_EQ(button.palette().color(QPalette::ButtonText), QColor(0x8E1F1F));
  EXPECT_EQ(button.palette().color(QPalette::Button), QColor(0xEFEFEF));
  button.setGeometry(0, 0, 80, 26);
  const QImage grey = button.grab().toImage();
  QPalette blue = window.palette();
  blue.setColor(QPalette::Window, QColor(0xDCE7ED));
  window.setPalette(blue);
  const QColor fill = button.grab().toImage().pixelColor(10, 13);
  EXPECT_GT(fill.blue(), fill.red());
  EXPECT_EQ(grey.pixelColor(10, 13).blue(), grey.pixelColor(10, 13).red());
}

TEST(Button, TellsOfTypedKeysAndOfMousePressesBeforeTheClick) {
  for (const bool picture : {false, true}) {
    std::unique_ptr<CommandButton> button;
    if (picture)
      button = std::make_unique<PictureButton>();
    else
      button = std::make_unique<Button>();
    QStringList order;
    button->keyPress = [&](int& code) { order += QString::number(code); };
    button->mouseDown = [&](int which, int shift) {
      order += QStringLiteral("down %1 %2").arg(which).arg(shift);
    };
    button->click = [&] { order += QStringLiteral("click"); };
    showWithFocus(*button);
    QTest::mouseClick(button.get(), Qt::LeftButton, Qt::ShiftModifier);
    QTest::mouseClick(button.get(), Qt::RightButton);
    for (const int key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Backspace, Qt::Key_A, Qt::Key_Space})
      QTest::keyClick(button.get(), Qt::Key(key));
    for (const int key : {Qt::Key_Down, Qt::Key_F1, Qt::Key_Delete, Qt::Key_Control})
      QTest::keyClick(button.get(), Qt::Key(key));
    QTest::keyClick(button.get(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(order.join(QLatin1Char(',')).toStdString(), "down 1 1,click,down 2 0,13,27,8,97,32,click");
  }
}

TEST(Button, KeyThatAProcedureUsedUpPressesNothing) {
  Button button;
  Counter clicks(button.click);
  button.keyPress = [](int& code) { code = 0; };
  showWithFocus(button);
  QTest::keyClick(&button, Qt::Key_Space);
  EXPECT_EQ(clicks.take(), 0);
}

TEST(Button, FailureOfAKeyOrPressEndsInTheReport) {
  Untrapped untrapped;
  Button button;
  button.keyPress = [](int&) { throw RuntimeError(6); };
  button.mouseDown = [](int, int) { throw RuntimeError(13); };
  Counter clicks(button.click);
  showWithFocus(button);
  QTest::keyClick(&button, Qt::Key_Space);
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(untrapped.numbers, (QVector<int>{6, 13}));
  EXPECT_EQ(clicks.take(), 2);
}

TEST(PictureButton, FollowsTheSameClickRules) {
  PictureButton button;
  Counter clicks(button.click);
  QTest::mouseClick(&button, Qt::LeftButton);
  button.raiseClick();
  EXPECT_EQ(clicks.take(), 2);
}

// Counts the mouse events that reach the bare window.
class BareWindow : public QWidget {
 public:
  int presses = 0;
  int releases = 0;

 protected:
  void mousePressEvent(QMouseEvent*) override { ++presses; }
  void mouseReleaseEvent(QMouseEvent*) override { ++releases; }
};

TEST(Label, MouseEventsEndAtTheLabel) {
  BareWindow window;
  Label label(&window);
  label.setGeometry(10, 10, 80, 16);
  window.show();
  Counter clicks(label.click);
  QTest::mouseClick(&label, Qt::RightButton);
  EXPECT_EQ(clicks.take(), 0);
  QTest::mouseClick(&label, Qt::LeftButton);
  EXPECT_EQ(clicks.take(), 1);
  QTest::mousePress(&label, Qt::LeftButton);
  QTest::mouseRelease(&label, Qt::LeftButton, {}, QPoint(200, 200));
  EXPECT_EQ(clicks.take(), 0);
  EXPECT_EQ(window.presses + window.releases, 0);
}

TEST(Label, ADoubleClickOfTheLeftButtonIsAnEventOfItsOwn) {
  Label label;
  Counter doubleClicks(label.dblClick);
  QTest::mouseClick(&label, Qt::LeftButton);
  QTest::mouseDClick(&label, Qt::RightButton);
  EXPECT_EQ(doubleClicks.take(), 0);
  QTest::mouseDClick(&label, Qt::LeftButton);
  EXPECT_EQ(doubleClicks.take(), 1);
}

TEST(Label, MarkupIsShownAsItIs) {
  Label markup, plain;
  markup.setText(QStringLiteral("<b>x</b>"));
  plain.setText(QStringLiteral("x"));
  EXPECT_EQ(markup.textFormat(), Qt::PlainText);
  EXPECT_GT(markup.sizeHint().width(), 3 * plain.sizeHint().width());
}

// Windows shrink on small screens, captions cannot.
TEST(Label, ACaptionThatHardlyFitsIsDrawnNarrowerAndKeepsItsEnd) {
  Label label;
  label.setText(QStringLiteral("MMMMMMMMMM"));
  const QSize whole = label.sizeHint();
  // Columns of the picture, from the left to the last one that has something on it.
  const auto drawnTo = [&](double share) {
    label.resize(qRound(whole.width() * share), whole.height());
    const QImage image = label.grab().toImage();
    int last = -1, columns = 0;
    for (int x = 0; x < image.width(); ++x) {
      bool drawn = false;
      for (int y = 0; y < image.height(); ++y)
        drawn |= image.pixel(x, y) != image.pixel(image.width() - 1, 0);
      if (drawn) last = x;
      columns += drawn;
    }
    EXPECT_GT(columns, 5);
    return double(last + 1) / whole.width();
  };
  const double end = drawnTo(1);
  EXPECT_NEAR(drawnTo(0.9), end * 0.9, 0.04);
  EXPECT_NEAR(drawnTo(0.76), end * 0.76, 0.04);
  // Below that it is cut: letters nobody could read would be no better.
  EXPECT_NEAR(drawnTo(0.4), 0.4, 0.04);
  EXPECT_NEAR(drawnTo(2), end, 0.001);
}

TEST(Button, ACaptionThatHardlyFitsIsDrawnNarrowerAndWhole) {
  Button button;
  button.setText(QStringLiteral("HHHHHHHHHH"));
  const int whole = button.fontMetrics().horizontalAdvance(button.text());
  // How many strokes of the letters are seen on the line through the middle, beside the bars of the letters.
  const auto strokes = [&](int width) {
    button.resize(width, 26);
    const QImage image = button.grab().toImage();
    int count = 0;
    bool wasDark = false;
    for (int x = 3; x < width - 3; ++x) {
      bool isDark = true;
      for (int y = 11; y <= 14; ++y) isDark &= qGray(image.pixel(x, y)) < 160;
      count += isDark && !wasDark;
      wasDark = isDark;
    }
    return count;
  };
  const int all = strokes(whole + 20);
  EXPECT_GE(all, 10);
  EXPECT_EQ(strokes(whole - 2), all);
  EXPECT_LT(strokes(whole / 2), all);
}

TEST(Label, LinkIsBlueUnderlinedWithAHand) {
  Label label;
  label.setProperty("link", true);
  EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(0x1F5F9C));
  EXPECT_TRUE(label.font().underline());
  EXPECT_EQ(label.cursor().shape(), Qt::PointingHandCursor);
}

TEST(Label, AccessKeyGoesToTheBuddy) {
  QWidget window;
  Label label(&window);
  TextBox other(&window), box(&window);
  label.setText(QStringLiteral("&Name"));
  label.setBuddy(&box);
  showWithFocus(window);
  other.setFocus();
  QTest::keyClick(&window, Qt::Key_N, Qt::AltModifier);
  EXPECT_TRUE(box.hasFocus());
}

TEST(CheckBox, ValuesAreNamedNotCast) {
  CheckBox box;
  box.setValue(1);
  EXPECT_EQ(box.checkState(), Qt::Checked);
  box.setValue(2);
  EXPECT_EQ(box.checkState(), Qt::PartiallyChecked);
  EXPECT_EQ(box.value(), 2);
  box.setValue(0);
  EXPECT_EQ(box.checkState(), Qt::Unchecked);
  EXPECT_EQ(errorOf([&] { box.setValue(3); }), 380);
}

TEST(CheckBox, UserSwitchesBetweenOffAndOnOnly) {
  CheckBox box;
  Counter clicks(box.click);
  box.setValue(2);
  EXPECT_EQ(clicks.take(), 0);
  showWithFocus(box);
  const int values[] = {0, 1, 0, 1};
  for (int value : values) {
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_EQ(box.value(), value);
  }
  EXPECT_EQ(clicks.take(), 4);
}

TEST(OptionButton, OneOfSeveralIsOnAndCodeMaySwitchItOff) {
  QWidget window;
  OptionButton first(&window), second(&window);
  Counter clicks(second.click);
  first.setValue(true);
  second.click = [&] { EXPECT_FALSE(first.value()); };
  second.setValue(true);
  EXPECT_FALSE(first.value());
  second.setValue(false);
  EXPECT_FALSE(second.value());
  Counter again(second.click);
  QTest::mouseClick(&second, Qt::LeftButton, {}, QPoint(8, second.height() / 2));
  EXPECT_TRUE(second.value());
  EXPECT_EQ(again.take(), 1);
}

TEST(Frame, TitleStandsInTheUpperLine) {
  Frame frame;
  frame.resize(200, 100);
  frame.setTitle(QStringLiteral("Title"));
  const QImage image = frame.grab().toImage();
  const QRgb window = image.pixel(100, 50);
  EXPECT_NE(image.pixel(150, 8), window);
  EXPECT_EQ(image.pixel(150, 2), window);
  EXPECT_NE(image.pixel(100, 99), window);
}

TEST(StatusBar, PanelsKeepTextsAndScaleWithTheBar) {
  StatusBar bar;
  bar.addPanel(QStringLiteral("MainText"), 0, 360);
  bar.addPanel(QStringLiteral("FontInfo"), 360, 384);
  bar.setPanelText(QStringLiteral("FontInfo"), QStringLiteral("Font: x"));
  EXPECT_EQ(bar.panelText(QStringLiteral("FontInfo")), QStringLiteral("Font: x"));
  EXPECT_EQ(bar.panelText(QStringLiteral("MainText")), QString());
  bar.resize(1280, 22);
  EXPECT_EQ(bar.panelRect(QStringLiteral("FontInfo")), QRect(360, 0, 384, 22));
  bar.resize(1920, 22);
  EXPECT_EQ(bar.panelRect(QStringLiteral("FontInfo")), QRect(540, 0, 576, 22));
  EXPECT_EQ(errorOf([&] { bar.setPanelText(QStringLiteral("none"), QString()); }), 9);
}

TEST(StatusBar, DisabledPanelIsPale) {
  StatusBar bar;
  bar.resize(1280, 22);
  bar.addPanel(QStringLiteral("Overwrite"), 0, 400);
  bar.setPanelText(QStringLiteral("Overwrite"), QStringLiteral("OVR"));
  const QImage enabled = bar.grab().toImage();
  EXPECT_EQ(enabled.pixel(300, 10), qRgb(0xFF, 0xFF, 0xC0));
  bar.setPanelEnabled(QStringLiteral("Overwrite"), false);
  EXPECT_FALSE(bar.isPanelEnabled(QStringLiteral("Overwrite")));
  EXPECT_NE(bar.grab().toImage(), enabled);
  bar.setBackground(Qt::white);
  EXPECT_EQ(bar.grab().toImage().pixel(300, 10), qRgb(255, 255, 255));
}

TEST(Timer, TicksOnlyWhileEnabledWithAnInterval) {
  Timer timer;
  int ticks = 0;
  timer.timer = [&] {
    if (++ticks == 2) timer.setEnabled(false);
  };
  EXPECT_EQ(timer.interval(), 0);
  timer.setInterval(1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return ticks == 2; }));
  EXPECT_FALSE(timer.isEnabled());
}

TEST(PopupMenu, EntriesFireTheirOwnClick) {
  PopupMenu menu;
  Counter about(menu.addEntry(QStringLiteral("mnuAbout"), QStringLiteral("&About")));
  Counter exit(menu.addEntry(QStringLiteral("mnuExit"), QStringLiteral("E&xit")));
  menu.popupAt(QPoint(10, 10));
  EXPECT_TRUE(menu.isVisible());
  QTest::mouseClick(&menu, Qt::LeftButton, {},
                    menu.actionGeometry(&menu.entry(QStringLiteral("mnuExit"))).center());
  EXPECT_EQ(about.take(), 0);
  EXPECT_EQ(exit.take(), 1);
  EXPECT_FALSE(menu.isVisible());
  EXPECT_EQ(errorOf([&] { menu.entry(QStringLiteral("none")); }), 9);
}

TEST(Look, ToolTipsShowMarkupAsItIs) {
  EXPECT_EQ(plainTip(QStringLiteral("plain & simple")), QStringLiteral("plain & simple"));
  EXPECT_TRUE(plainTip(QStringLiteral("<b>x</b>")).contains(QStringLiteral("&lt;b&gt;x&lt;/b&gt;")));
}

TEST(Look, ListsWithoutFocusHaveThePaleSelection) {
  const QPalette palette = lensPalette();
  EXPECT_EQ(palette.color(QPalette::Active, QPalette::Highlight), QColor(0x2A79AF));
  EXPECT_EQ(palette.color(QPalette::Active, QPalette::HighlightedText), QColor(Qt::white));
  EXPECT_EQ(palette.color(QPalette::Inactive, QPalette::Highlight), QColor(0xC6DCEC));
  EXPECT_EQ(palette.color(QPalette::Inactive, QPalette::HighlightedText), QColor(0x1B1B1B));
}

TEST(Fonts, MissingFamilyIsDrawnInTheMonospaceOne) {
  EXPECT_FALSE(monospaceFamily().isEmpty());
  EXPECT_EQ(installedFamily(QStringLiteral("No Such Family At All")), monospaceFamily());
  EXPECT_EQ(installedFamily(monospaceFamily()), monospaceFamily());
}

}  // namespace
}  // namespace lens
