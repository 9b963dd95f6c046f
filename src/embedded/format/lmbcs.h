// Lotus multi-byte character set, optimisation group 1: the character set of all stored text.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace lens {

// A character that LMBCS cannot hold becomes "?". Only U+0000 itself, a line break inside stored text,
// gives a NUL.
QByteArray toLmbcs(QStringView text);
// Malformed sequences become U+FFFD; nothing is read outside the bytes. A NUL stays U+0000: callers
// decide whether it ends the text or breaks the line.
QString fromLmbcs(QByteArrayView bytes);
// Whether every byte is a printable ASCII character and stands for itself.
bool isPlainLmbcs(QByteArrayView bytes);

}  // namespace lens
