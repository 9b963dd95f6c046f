#include "app/window_places.h"

#include <algorithm>

namespace lens {
namespace {

bool holds(const QSize& room, const QSize& size) {
  return room.width() >= size.width() && room.height() >= size.height();
}

}  // namespace

std::optional<QRect> placeBeside(const QRect& window, const QVector<QRect>& screens, const QSize& wanted,
                                 const QSize& least) {
  if (screens.isEmpty()) return std::nullopt;
  const QRect& own = screens.first();
  const QRect right(QPoint(window.right() + 1, own.top()), own.bottomRight());
  const QRect left(own.topLeft(), QPoint(window.left() - 1, own.bottom()));
  QVector<QRect> rooms{right.intersected(own), left.intersected(own)};
  rooms += screens.sliced(1);
  for (const QRect& room : std::as_const(rooms)) {
    if (!holds(room.size(), least)) continue;
    const QSize size = wanted.boundedTo(room.size());
    const int x = room == rooms[1] ? room.right() - size.width() + 1 : room.left();
    // Level with the other window where that leaves it whole on the screen.
    const int y = qBound(room.top(), window.top(), room.bottom() - size.height() + 1);
    return QRect(QPoint(x, y), size);
  }
  return std::nullopt;
}

QRect widenedBehind(const QRect& place, const QRect& window, int leastWidth) {
  const int missing = std::max(0, leastWidth - place.width());
  return place.left() > window.left() ? place.adjusted(-missing, 0, 0, 0) : place.adjusted(0, 0, missing, 0);
}

}  // namespace lens
