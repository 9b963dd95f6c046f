// The monospace font of boxes, lists and buttons.
#pragma once

#include <QString>

namespace lens {

// The first installed one of Consolas, Inconsolata, DejaVu Sans Mono, Liberation Mono; else the
// system's fixed font. Needs a running QGuiApplication.
QString monospaceFamily();

// The family that is drawn where `family` is asked for: the monospace one when it is not installed.
QString installedFamily(const QString& family);

}  // namespace lens
