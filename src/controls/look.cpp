#include "controls/look.h"

#include <QAbstractScrollArea>
#include <QPainter>
#include <QStyle>
#include <QStyleFactory>
#include <QTextDocument>

#include "notes/literals.h"

namespace lens {
namespace {

constexpr double kNarrowest = 0.75;

void setPair(QPalette& palette, QPalette::ColorRole background, QRgb backgroundColour,
             QPalette::ColorRole text, QRgb textColour) {
  palette.setColor(background, QColor(backgroundColour));
  palette.setColor(text, QColor(textColour));
}

}  // namespace

QPalette lensPalette() {
  QPalette palette(QColor(0xF6F6F6), QColor(0xEFEFEF));
  setPair(palette, QPalette::Window, 0xFFEFEFEF, QPalette::WindowText, colour::Text);
  setPair(palette, QPalette::Base, 0xFFFFFFFF, QPalette::Text, colour::Text);
  setPair(palette, QPalette::Button, 0xFFF5F5F5, QPalette::ButtonText, colour::Text);
  setPair(palette, QPalette::ToolTipBase, 0xFFFFFFC0, QPalette::ToolTipText, colour::Text);
  setPair(palette, QPalette::Highlight, colour::FocusBorder, QPalette::HighlightedText, 0xFFFFFFFF);
  palette.setColor(QPalette::Inactive, QPalette::Highlight, QColor(0xC6DCEC));
  palette.setColor(QPalette::Inactive, QPalette::HighlightedText, QColor(colour::Text));
  palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0xC6DCEC));
  palette.setColor(QPalette::Disabled, QPalette::HighlightedText, QColor(0x6C7478));
  palette.setColor(QPalette::AlternateBase, QColor(0xF7F7F7));
  palette.setColor(QPalette::PlaceholderText, QColor(0x6C7478));
  palette.setColor(QPalette::BrightText, QColor(0xFFFFFF));
  setPair(palette, QPalette::Link, colour::Link, QPalette::LinkVisited, colour::Link);
  setPair(palette, QPalette::Light, 0xFFFFFFFF, QPalette::Midlight, 0xFFF7F7F7);
  setPair(palette, QPalette::Mid, colour::Border, QPalette::Dark, 0xFF9F9F9F);
  palette.setColor(QPalette::Shadow, QColor(0x767676));
  for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor(0x6C7478));
  return palette;
}

void applyLook() {
  QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
  QApplication::setPalette(lensPalette());
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
