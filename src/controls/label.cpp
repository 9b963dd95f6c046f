#include "controls/label.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>

#include "controls/look.h"

namespace lens {
Label::Label(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
}

void Label::giveColours() {
  QPalette colours;
  if (link_) {
    const QPalette all = QApplication::palette();
    colours.setColor(QPalette::WindowText, all.color(QPalette::Active, QPalette::Link));
    colours.setColor(QPalette::Window, all.color(QPalette::Active, QPalette::Window));
  }
  setPalette(colours);
}

bool Label::event(QEvent* event) {
  if (link_ && tellsOfColours(*event)) giveColours();
  return QLabel::event(event);
}

void Label::setLink(bool link) {
  link_ = link;
  giveColours();
  QFont underlined = font();
  underlined.setUnderline(link);
  setFont(underlined);
  if (link)
    setCursor(Qt::PointingHandCursor);
  else
    unsetCursor();
}

void Label::paintEvent(QPaintEvent* event) {
  const int wanted = fontMetrics().size(Qt::TextShowMnemonic, text()).width();
  if (wanted <= width()) return QLabel::paintEvent(event);
  QPainter painter(this);
  paintNarrowed(painter, *this, rect(), wanted, int(alignment()), text());
}

// Mouse events end here: on the bare form they would open the form's own menu.
void Label::mousePressEvent(QMouseEvent* event) {
  event->accept();
}

void Label::mouseDoubleClickEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() == Qt::LeftButton) dblClick.fire();
}

void Label::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
}

void Label::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) click.fire();
}

}  // namespace lens
