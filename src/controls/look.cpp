#include "controls/look.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QStyle>
#include <QStyleFactory>
#include <QTextDocument>
#include <utility>

#include "notes/literals.h"

namespace lens {
namespace {

constexpr double kNarrowest = 0.75;

void setPair(QPalette& palette, QPalette::ColorRole background, QRgb backgroundColour,
             QPalette::ColorRole text, QRgb textColour) {
  palette.setColor(background, QColor(backgroundColour));
  palette.setColor(text, QColor(textColour));
}

// Lists without the keyboard, and what cannot be used.
void setSelections(QPalette& palette, QRgb selection, QRgb text, QRgb disabledText) {
  palette.setColor(QPalette::Inactive, QPalette::Highlight, QColor(selection));
  palette.setColor(QPalette::Inactive, QPalette::HighlightedText, QColor(text));
  palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(selection));
  for (const QPalette::ColorRole role :
       {QPalette::HighlightedText, QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor(disabledText));
  palette.setColor(QPalette::PlaceholderText, QColor(disabledText));
  palette.setColor(QPalette::BrightText, QColor(0xFFFFFF));
}

QPalette lightPalette() {
  QPalette palette(QColor(0xF6F6F6), QColor(0xEFEFEF));
  setPair(palette, QPalette::Window, 0xFFEFEFEF, QPalette::WindowText, colour::Text);
  setPair(palette, QPalette::Base, 0xFFFFFFFF, QPalette::Text, colour::Text);
  setPair(palette, QPalette::Button, 0xFFF5F5F5, QPalette::ButtonText, colour::Text);
  setPair(palette, QPalette::ToolTipBase, 0xFFFFFFC0, QPalette::ToolTipText, colour::Text);
  setPair(palette, QPalette::Highlight, colour::FocusBorder, QPalette::HighlightedText, 0xFFFFFFFF);
  setSelections(palette, 0xFFC6DCEC, colour::Text, 0xFF6C7478);
  palette.setColor(QPalette::AlternateBase, QColor(0xF7F7F7));
  setPair(palette, QPalette::Link, colour::Link, QPalette::LinkVisited, colour::Link);
  setPair(palette, QPalette::Light, 0xFFFFFFFF, QPalette::Midlight, 0xFFF7F7F7);
  setPair(palette, QPalette::Mid, colour::Border, QPalette::Dark, 0xFF9F9F9F);
  palette.setColor(QPalette::Shadow, QColor(0x767676));
  return palette;
}

QPalette darkPalette() {
  constexpr QRgb kText = 0xFFE4E6E8;
  QPalette palette(QColor(0x3A3D40), QColor(0x2B2D30));
  setPair(palette, QPalette::Window, 0xFF2B2D30, QPalette::WindowText, kText);
  setPair(palette, QPalette::Base, 0xFF1D1F21, QPalette::Text, kText);
  setPair(palette, QPalette::Button, 0xFF3A3D40, QPalette::ButtonText, kText);
  setPair(palette, QPalette::ToolTipBase, 0xFF3D3C26, QPalette::ToolTipText, 0xFFF0EFD8);
  setPair(palette, QPalette::Highlight, 0xFF3D8FC8, QPalette::HighlightedText, 0xFF0E1113);
  setSelections(palette, 0xFF34495A, kText, 0xFF8F969B);
  palette.setColor(QPalette::AlternateBase, QColor(0x242628));
  setPair(palette, QPalette::Link, 0xFF82BCEC, QPalette::LinkVisited, 0xFF82BCEC);
  setPair(palette, QPalette::Light, 0xFF4A4E52, QPalette::Midlight, 0xFF3F4347);
  setPair(palette, QPalette::Mid, 0xFF676D73, QPalette::Dark, 0xFF17181A);
  palette.setColor(QPalette::Shadow, QColor(0x0C0D0E));
  return palette;
}

// Fusion in our colours. The desktop's own palette passes through here each time that it changes.
class LensStyle : public QProxyStyle {
 public:
  explicit LensStyle(std::optional<Scheme> always)
      : QProxyStyle(QStyleFactory::create(u"Fusion"_s)), always_(always) {}

  using QProxyStyle::polish;
  void polish(QPalette& palette) override { palette = lensPalette(always_.value_or(schemeOf(palette))); }
  QPalette standardPalette() const override { return lensPalette(always_.value_or(Scheme::Light)); }

 private:
  const std::optional<Scheme> always_;
};

class ColourFollower : public QObject {
 public:
  ColourFollower(QWidget& widget, std::function<void()> choose)
      : QObject(&widget), choose_(std::move(choose)) {
    widget.installEventFilter(this);
  }

 private:
  bool eventFilter(QObject* widget, QEvent* event) override {
    if (tellsOfColours(*event)) choose_();
    return QObject::eventFilter(widget, event);
  }
  const std::function<void()> choose_;
};

}  // namespace

Scheme schemeOf(const QPalette& palette) {
  const int text = palette.color(QPalette::Active, QPalette::WindowText).lightness(),
            ground = palette.color(QPalette::Active, QPalette::Window).lightness();
  return text > ground ? Scheme::Dark : Scheme::Light;
}

QColor colour::destructiveText(const QPalette& palette) {
  return isDark(palette) ? QColor(0xFF9C94) : QColor(DestructiveText);
}

QColor colour::shownText(const QColor& told, const QPalette& palette) {
  constexpr float kLight = 0.72F;
  if (!isDark(palette)) return told;
  float hue = 0, saturation = 0, lightness = 0;
  told.getHslF(&hue, &saturation, &lightness);
  if (saturation == 0) return palette.color(QPalette::Active, QPalette::Text);
  return QColor::fromHslF(hue, saturation, qMax(lightness, kLight));
}

QColor colour::shownGround(const QColor& told, const QPalette& palette) {
  constexpr float kDull = 0.25F, kDeep = 0.2F;
  if (!isDark(palette)) return told;
  float hue = 0, saturation = 0, lightness = 0;
  told.getHslF(&hue, &saturation, &lightness);
  return QColor::fromHslF(qMax(0.F, hue), saturation * kDull, qMin(lightness, kDeep));
}

QPalette lensPalette(Scheme scheme) {
  return scheme == Scheme::Dark ? darkPalette() : lightPalette();
}

void applyLook(std::optional<Scheme> always) {
  QApplication::setStyle(new LensStyle(always));
}

// The one comes from the desktop, the other from the program itself.
bool tellsOfColours(const QEvent& event) {
  return event.type() == QEvent::ApplicationPaletteChange || event.type() == QEvent::StyleChange;
}

void followColours(QWidget& widget, std::function<void()> choose) {
  choose();
  new ColourFollower(widget, std::move(choose));
}

void paintEdge(const QAbstractScrollArea& box, QPainter& painter) {
  const QRect all = box.rect();
  painter.fillRect(all.adjusted(-1, -1, 1, 1),
                   box.hasFocus() ? QColor(colour::FocusBorder) : box.palette().color(QPalette::Mid));
  const QRect betweenBars(box.viewport()->geometry().bottomRight() + QPoint(1, 1),
                          all.bottomRight() - QPoint(1, 1));
  painter.fillRect(betweenBars, box.palette().window());
}

void paintNarrowed(QPainter& painter, const QWidget& widget, const QRect& place, int wanted, int flags,
                   const QString& text) {
  const double narrowed = qMax(double(place.width()) / wanted, kNarrowest);
  painter.setClipRect(place);
  painter.translate(place.left(), 0);
  painter.scale(narrowed, 1);
  widget.style()->drawItemText(
      &painter, QRect(0, place.top(), qRound(place.width() / narrowed), place.height()),
      flags | Qt::TextShowMnemonic, widget.palette(), widget.isEnabled(), text, widget.foregroundRole());
}

QString plainTip(const QString& text) {
  return Qt::mightBeRichText(text) ? QString(u"<span>" + text.toHtmlEscaped() + u"</span>") : text;
}

}  // namespace lens
