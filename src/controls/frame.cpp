#include "controls/frame.h"

#include <QPainter>
#include <QStyle>

#include "controls/look.h"

namespace lens {
namespace {

constexpr int kLineTop = 8;
constexpr int kTitleLeft = 8;

}  // namespace

void Frame::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  // A shade of the window's colour, so that it fits windows with colours of their own.
  const QColor ground = palette().color(QPalette::Window);
  painter.setPen(isDark(palette()) ? ground.lighter(170) : ground.darker(123));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.drawRoundedRect(QRectF(0.5, kLineTop + 0.5, width() - 1, height() - kLineTop - 1), 2, 2);
  if (title().isEmpty()) return;
  const QSize size = fontMetrics().size(Qt::TextShowMnemonic, title());
  const QRect place(kTitleLeft, qMax(0, kLineTop - size.height() / 2), size.width() + 4, size.height());
  painter.fillRect(place.adjusted(-2, 0, 0, 0), palette().window());
  style()->drawItemText(&painter, place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic, palette(),
                        isEnabled(), title(), QPalette::WindowText);
}

}  // namespace lens
