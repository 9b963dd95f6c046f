// A note ID as rows and files show it.
#pragma once

#include <QString>

namespace lens {

// "00000000" with the ID appended, the rightmost 8 kept.
inline QString eightDigits(const QString& noteId) {
  return QString(QStringLiteral("00000000") + noteId).right(8);
}

}  // namespace lens
