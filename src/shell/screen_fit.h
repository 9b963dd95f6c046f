// Windows of a fixed design on the screens that there are.
#pragma once

#include <QWidget>
#include <functional>

#include "shell/window_layout.h"

namespace lens {

// What a screen leaves to the inside of a window, without the frame and the title bar that are to be
// expected.
QSize roomInside(const QScreen& screen);

// Where the room is smaller than the window's design, all places shrink into it, each way by itself; the font
// stays. Never below 800 x 500, where captions have no room. To be run before the record is made.
void fitDesign(QWidget& window, QSize room);
void fitDesignToScreen(QWidget& window);

// Window managers place a window, and may make it smaller, some time after it was shown. For about a second
// the record follows, and `resized` runs; a window that stands partly outside the screen is moved into it.
// What comes later is the user's own doing.
void settleOnDesktop(QWidget& window, WindowLayout& layout, const std::function<void()>& resized);

// The place nearest to the one given that is inside; at its upper left corner where there is no room.
QRect movedInside(QRect place, const QRect& area);

}  // namespace lens
