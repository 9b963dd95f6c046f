#include "controls/label.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>

#include "controls/look.h"

namespace lens {
Label::Label(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
}

void Label::setLink(bool link) {
  link_ = link;
  QPalette colours;
  if (link) {
    colours.setColor(QPalette::WindowText, QColor(colour::Link));
    colours.setColor(QPalette::Window, palette().color(QPalette::Window));
  }
  setPalette(colours);
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
