// The look that all windows share: style, palette, plain tooltips.
#pragma once

#include <QApplication>
#include <QPalette>
#include <QString>
#include <functional>
#include <optional>

class QAbstractScrollArea;
class QEvent;
class QPainter;

namespace lens {

// The colours follow the desktop: a light set and a dark one, each chosen as a whole.
enum class Scheme { Light, Dark };

// By what a palette is: light text on a darker ground is dark.
Scheme schemeOf(const QPalette& palette);
inline bool isDark(const QPalette& palette) {
  return schemeOf(palette) == Scheme::Dark;
}

// Colours that controls need beside the palette, as they are in the light set.
namespace colour {
inline constexpr QRgb Border = 0xFFB3B3B3;
inline constexpr QRgb FocusBorder = 0xFF2A79AF;
inline constexpr QRgb FrameLine = 0xFFC3C3C3;
inline constexpr QRgb Text = 0xFF1B1B1B;
inline constexpr QRgb Link = 0xFF1F5F9C;
inline constexpr QRgb DestructiveText = 0xFF8E1F1F;
// A pair of its own, which can be read in any palette.
inline constexpr QRgb HitMark = 0xFFFFE08A;
inline constexpr QRgb HitText = 0xFF1B1B1B;

// In the set of the palette.
QColor destructiveText(const QPalette& palette);
// A colour of a text as it is shown on the ground of the palette. Colours are told for a light ground: on a
// dark one black and grey become the text's own colour, and others light enough to be read.
QColor shownText(const QColor& told, const QPalette& palette);
// The same for a ground: a pale colour becomes a deep one of its hue.
QColor shownGround(const QColor& told, const QPalette& palette);
}  // namespace colour

// Every colour comes with its partner, whatever the desktop's own colours are.
QPalette lensPalette(Scheme scheme = Scheme::Light);

// Fusion style for the whole application, and the palette of the set that goes with the desktop, now and
// whenever the desktop changes its colours; or always that of one set.
void applyLook(std::optional<Scheme> always = std::nullopt);

// Whether an event tells a widget that the colours of the application are other ones now.
bool tellsOfColours(const QEvent& event);

// Gives a widget what is not of its palette alone (pictures, colours of its own): runs the function now, and
// again whenever the colours of the application change.
void followColours(QWidget& widget, std::function<void()> choose);

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
