// Where windows come up that nobody has placed yet.
#pragma once

#include <QRect>
#include <QSize>
#include <QVector>
#include <optional>

namespace lens {

// A place beside a window: on its own screen at the right or at the left, else on another screen. As large as
// wanted where there is room, and never smaller than the least size; none where there is no such room. All
// are frames and screens without what the desktop keeps for itself, the window's own screen first.
std::optional<QRect> placeBeside(const QRect& window, const QVector<QRect>& screens, const QSize& wanted,
                                 const QSize& least);

// The place of a window that cannot be as narrow as it: as wide as that, its other end behind the window that
// it stands beside, so that nothing of it is beyond the screen.
QRect widenedBehind(const QRect& place, const QRect& window, int leastWidth);

}  // namespace lens
