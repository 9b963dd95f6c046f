#pragma once

#include <QWidget>

namespace lens {

// Labels, frame titles and the status bar speak in the platform's font; boxes, lists, buttons and
// contents in the monospace one, so that rows line up.
void useControlFonts(QWidget& window);

}  // namespace lens
