// The light and the dark set of colours.
#include "controls/look.h"

#include <gtest/gtest.h>

#include <QTest>

#include "controls/button.h"
#include "controls/label.h"
#include "controls/pictures.h"
#include "controls/rich_text_box.h"
#include "support/contrast.h"

namespace lens {
namespace {

constexpr double kReadable = 4.5, kDisabled = 3;

class Colours : public testing::Test {
 protected:
  ~Colours() override { applyLook(); }
  // Widgets hear of it with the next events.
  static void show(Scheme scheme) {
    applyLook(scheme);
    QCoreApplication::processEvents();
  }
};

TEST_F(Colours, EveryTextCanBeReadOnItsGroundInBothSets) {
  using P = QPalette;
  const QVector<std::pair<P::ColorRole, P::ColorRole>> pairs = {{P::WindowText, P::Window},
                                                                {P::Text, P::Base},
                                                                {P::ButtonText, P::Button},
                                                                {P::Text, P::AlternateBase},
                                                                {P::Link, P::Window},
                                                                {P::Link, P::Base},
                                                                {P::ToolTipText, P::ToolTipBase},
                                                                {P::HighlightedText, P::Highlight}};
  for (const Scheme scheme : {Scheme::Light, Scheme::Dark}) {
    const QPalette palette = lensPalette(scheme);
    EXPECT_EQ(schemeOf(palette), scheme);
    for (const QPalette::ColorGroup group : {P::Active, P::Inactive})
      for (const auto& [text, ground] : pairs)
        EXPECT_GE(contrast(palette.color(group, text), palette.color(group, ground)), kReadable)
            << int(scheme) << ' ' << text << " on " << ground;
    EXPECT_GE(contrast(palette.color(P::Disabled, P::WindowText), palette.color(P::Window)), kDisabled);
    EXPECT_GE(contrast(colour::destructiveText(palette), palette.color(P::Window)), kReadable);
  }
}

TEST_F(Colours, FollowTheDesktop) {
  applyLook();
  QPalette desktop(Qt::darkGray, Qt::black);
  desktop.setColor(QPalette::WindowText, Qt::white);
  QApplication::style()->polish(desktop);
  EXPECT_EQ(desktop, lensPalette(Scheme::Dark));
  desktop = QPalette(Qt::lightGray, Qt::white);
  QApplication::style()->polish(desktop);
  EXPECT_EQ(desktop, lensPalette(Scheme::Light));
}

TEST_F(Colours, ReachWindowsThatAreThereAlready) {
  show(Scheme::Light);
  QWidget window;
  auto* link = new Label(&window);
  link->setLink(true);
  auto* button = new Button(&window);
  button->setDestructive(true);
  int chosen = 0;
  followColours(window, [&] { ++chosen; });
  window.show();
  const QRgb lightIcon = pictures::cross().pixmap(16, 16).toImage().pixel(8, 8);
  for (const Scheme scheme : {Scheme::Dark, Scheme::Light}) {
    show(scheme);
    const QPalette palette = lensPalette(scheme);
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), palette.color(QPalette::Window));
    EXPECT_EQ(window.palette().color(QPalette::Window), palette.color(QPalette::Window));
    EXPECT_EQ(link->palette().color(QPalette::WindowText), palette.color(QPalette::Link));
    EXPECT_EQ(button->palette().color(QPalette::ButtonText), colour::destructiveText(palette));
    EXPECT_EQ(pictures::cross().pixmap(16, 16).toImage().pixel(8, 8) == lightIcon, scheme == Scheme::Light);
  }
  EXPECT_GE(chosen, 3);
  const int before = chosen;
  QEvent fromTheDesktop(QEvent::ApplicationPaletteChange);
  QApplication::sendEvent(&window, &fromTheDesktop);
  EXPECT_EQ(chosen, before + 1);
}

TEST_F(Colours, OfATextAreToldForALightGroundAndReadableOnADarkOne) {
  const QPalette light = lensPalette(Scheme::Light), dark = lensPalette(Scheme::Dark);
  const QColor red(255, 0, 0), black(0, 0, 0);
  EXPECT_EQ(colour::shownText(red, light), red);
  EXPECT_EQ(colour::shownText(black, light), black);
  EXPECT_EQ(colour::shownText(black, dark), dark.color(QPalette::Text));
  const QColor shown = colour::shownText(red, dark);
  EXPECT_GE(contrast(shown, dark.color(QPalette::Base)), kReadable);
  EXPECT_EQ(shown.hue(), red.hue());
  const QColor ground = colour::shownGround(QColor(0xFFFFC0), dark);
  EXPECT_GE(contrast(QColor(0xEDECD2), ground), kReadable);
  EXPECT_EQ(colour::shownGround(QColor(0xFFFFC0), light), QColor(0xFFFFC0));
}

TEST_F(Colours, OfHitsFollowAndAreStillToldAsTheyWereSet) {
  show(Scheme::Light);
  RichTextBox box;
  box.resize(200, 100);
  box.setText(QStringLiteral("one two"));
  box.setSelStart(4);
  box.setSelLength(3);
  box.setSelColor(0x0000FF);
  box.show();
  const auto shown = [&](int position) {
    box.grab();
    QTextCursor cursor(box.document());
    cursor.setPosition(position + 1);
    return cursor.charFormat().foreground().color();
  };
  EXPECT_EQ(shown(4), QColor(255, 0, 0));
  show(Scheme::Dark);
  EXPECT_EQ(shown(4), colour::shownText(QColor(255, 0, 0), lensPalette(Scheme::Dark)));
  EXPECT_EQ(box.colorAt(5), 0x0000FFu);
  show(Scheme::Light);
  EXPECT_EQ(shown(4), QColor(255, 0, 0));
}

}  // namespace
}  // namespace lens
