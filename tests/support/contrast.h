// How well a text is read on its ground: 1 for the same colour, 21 for black on white (WCAG 2).
#pragma once

#include <QColor>
#include <algorithm>
#include <cmath>

namespace lens {

inline double luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

inline double contrast(const QColor& text, const QColor& ground) {
  const double a = luminance(text), b = luminance(ground);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

}  // namespace lens
