// The look that all windows share: style, palette, plain tooltips.
#pragma once

#include <QApplication>
#include <QPalette>
#include <QString>

class QAbstractScrollArea;
class QPainter;

namespace lens {

// Colours that controls need beside the palette.
namespace colour {
inline constexpr QRgb Border = 0xFFB3B3B3;
inline constexpr QRgb FocusBorder = 0xFF2A79AF;
inline constexpr QRgb FrameLine = 0xFFC3C3C3;
inline constexpr QRgb Text = 0xFF1B1B1B;
inline constexpr QRgb Link = 0xFF1F5F9C;
inline constexpr QRgb DestructiveText = 0xFF8E1F1F;
}  // namespace colour

// The light palette, whatever the desktop's own colours are: every colour comes with its partner.
QPalette lensPalette();

// Fusion style and the light palette for the whole application.
void applyLook();

// The edge of a box, one pixel of the layout wide, in the colour that tells whether it has the focus. Filled,
// not drawn as a line, and reaching out to the box's clip: at scales like 1.25 the edge lies between pixels
// of the screen, and a line would leave some of them black.
void paintEdge(const QAbstractScrollArea& box, QPainter& painter);

// A caption in a place that is too narrow for it, as wide as it would be: drawn narrower, by up to a quarter,
// before anything of it is cut off.
void paintNarrowed(QPainter& painter, const QWidget& widget, const QRect& place, int wanted, int flags,
                   const QString& text);

// A tooltip that shows its text as it is, also where the text looks like markup.
QString plainTip(const QString& text);

}  // namespace lens
