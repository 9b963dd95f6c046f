// Windows of a fixed design on the screens that there are.
#pragma once

#include <QWidget>
#include <functional>

#include "shell/window_layout.h"

namespace lens {

// On a screen lower than the window's design all places shrink before they are recorded, so the font stays.
// To be run before the record is made; does nothing where the design has room.
void fitDesignToScreen(QWidget& window);

// Window managers place a window, and may make it smaller, some time after it was shown: for about a second
// the record follows, and `resized` runs. What comes later is the user's own resize.
void fitRecordToDesktop(QWidget& window, WindowLayout& layout, std::function<void()> resized);

}  // namespace lens
