#include "controls/pictures.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include "controls/look.h"
#include "notes/literals.h"

namespace lens::pictures {
namespace {

constexpr QRgb kInk = 0xFF1F5F9C;
constexpr QRgb kLightInk = 0xFF82BCEC;
constexpr QRgb kDarkInk = 0xFF2C4A5E;
constexpr QRgb kDestructive = 0xFF8E1F1F;
constexpr QRgb kFolder = 0xFFF4E7B4;
constexpr QRgb kFolderLine = 0xFF7A6A2B;

// Draws on a 16 x 16 grid at the sizes that icons are asked for.
template <class Draw>
QIcon drawn(Draw draw) {
  QIcon icon;
  for (int size : {16, 32, 64}) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 16.0, size / 16.0);
    draw(painter);
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

// A picture of lines alone, in an ink that is seen on a button of today's colours.
template <class Draw>
QIcon onButton(QRgb usual, Draw draw) {
  const QColor ink(isDark(QApplication::palette()) ? kLightInk : usual);
  return drawn([&](QPainter& painter) { draw(painter, ink); });
}

void drawLens(QPainter& painter, QPointF centre, double radius, double handle) {
  const double reach = radius * 0.7071;
  painter.setPen(QPen(QColor(kInk), radius * 0.36, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(centre + QPointF(reach, reach), centre + QPointF(reach + handle, reach + handle));
  painter.setPen(QPen(QColor(kInk), radius * 0.24));
  painter.setBrush(QColor(255, 255, 255, 235));
  painter.drawEllipse(centre, radius, radius);
}

// One sheet of the About picture: rows of an item list as bars.
void drawSheet(QPainter& painter, const QRectF& sheet, int rows, const QColor& line, const QColor& name,
               const QColor& value) {
  painter.setPen(QPen(line, 1.5));
  painter.setBrush(Qt::white);
  painter.drawRoundedRect(sheet, 4, 4);
  painter.setPen(Qt::NoPen);
  for (int row = 0; row < rows; ++row) {
    const double top = sheet.top() + 14 + row * 13;
    painter.setBrush(name);
    painter.drawRect(QRectF(sheet.left() + 12, top, 18 + (row * 7) % 14, 5));
    painter.setBrush(value);
    painter.drawRect(QRectF(sheet.left() + 46, top, 20 + (row * 11) % 16, 5));
  }
}

}  // namespace

QIcon program() {
  static const QIcon icon = drawn([](QPainter& painter) {
    painter.setPen(QPen(QColor(kDarkInk), 1));
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(QRectF(1.5, 0.8, 10, 13.4), 1, 1);
    painter.setPen(QPen(QColor(0x7F, 0xA3, 0xB8), 1));
    for (double y : {3.6, 6.0, 8.4}) painter.drawLine(QPointF(3.4, y), QPointF(9.4, y));
    drawLens(painter, {9.6, 9.4}, 3.4, 2.6);
  });
  return icon;
}

QIcon history() {
  return onButton(kInk, [](QPainter& painter, const QColor& ink) {
    painter.setPen(QPen(ink, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    QPainterPath path({3.0, 6.0});
    path.lineTo(10.0, 6.0);
    path.cubicTo({14.5, 6.0}, {14.5, 12.5}, {10.0, 12.5});
    path.lineTo(6.0, 12.5);
    painter.drawPath(path);
    painter.drawPolyline(QPolygonF({{6.0, 3.0}, {3.0, 6.0}, {6.0, 9.0}}));
  });
}

QIcon cross() {
  return onButton(kDarkInk, [](QPainter& painter, const QColor& ink) {
    painter.setPen(QPen(ink, 1.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(4, 4), QPointF(12, 12));
    painter.drawLine(QPointF(12, 4), QPointF(4, 12));
  });
}

QIcon check() {
  static const QIcon icon = drawn([](QPainter& painter) {
    painter.setPen(QPen(QColor(kDarkInk), 1.2));
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(QRectF(2.5, 2.5, 11, 11), 1, 1);
    painter.setPen(QPen(QColor(kDarkInk), 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({{5.2, 8.2}, {7.2, 10.4}, {11.0, 5.6}}));
  });
  return icon;
}

QIcon clearHistory() {
  static const QIcon icon = drawn([](QPainter& painter) {
    painter.setPen(QPen(QColor(kDarkInk), 1));
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(QRectF(3, 1, 10, 14), 1, 1);
    painter.setPen(QPen(QColor(kDestructive), 1.8, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(6, 6), QPointF(10, 10));
    painter.drawLine(QPointF(10, 6), QPointF(6, 10));
  });
  return icon;
}

QIcon folder() {
  static const QIcon icon = drawn([](QPainter& painter) {
    painter.setPen(QPen(QColor(kFolderLine), 1));
    painter.setBrush(QColor(kFolder));
    painter.drawPolygon(
        QPolygonF({{1.5, 13.5}, {1.5, 3.5}, {6.0, 3.5}, {7.5, 5.5}, {14.5, 5.5}, {14.5, 13.5}}));
    painter.drawLine(QPointF(1.5, 7.5), QPointF(14.5, 7.5));
  });
  return icon;
}

QPixmap about(const QSize& size) {
  QPixmap pixmap(size);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  QLinearGradient sky(0, 0, size.width(), size.height());
  sky.setColorAt(0, QColor(0xEA, 0xF2, 0xF7));
  sky.setColorAt(1, QColor(0xC3, 0xD7, 0xE3));
  painter.fillRect(pixmap.rect(), sky);
  painter.setPen(QColor(0xBF, 0xD3, 0xDF));
  for (int y = 18; y < size.height(); y += 22) painter.drawLine(0, y, size.width(), y);

  drawSheet(painter, QRectF(178, 36, 92, 104), 0, QColor(0x9F, 0xB9, 0xC8), Qt::white, Qt::white);
  drawSheet(painter, QRectF(70, 22, 92, 118), 7, QColor(0x5B, 0x86, 0x9F), QColor(0x7F, 0xA3, 0xB8),
            QColor(0xC4, 0xDB, 0xE8));
  drawLens(painter, {196, 84}, 40, 38);

  QFont font(u"Inconsolata"_s);
  font.setStyleHint(QFont::Monospace);
  font.setPixelSize(14);
  painter.setFont(font);
  painter.setPen(QColor(kDarkInk));
  painter.drawText(QPointF(172, 76), u"Form:"_s);
  painter.drawText(QPointF(172, 93), u"Body:"_s);
  painter.setPen(QColor(kDestructive));
  painter.drawText(QPointF(172, 110), u"$FILE"_s);
  return pixmap;
}

}  // namespace lens::pictures
