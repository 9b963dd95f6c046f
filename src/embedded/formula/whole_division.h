// Division that rounds down below zero too, so that days before 1970 count like those after.
#pragma once

#include <QtGlobal>

namespace lens::formula {

constexpr qint64 floorOf(qint64 number, qint64 divisor) {
  return number / divisor - (number % divisor < 0 ? 1 : 0);
}

}  // namespace lens::formula
