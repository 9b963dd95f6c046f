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
// A line break is a NUL in stored text and a line feed in the program. Each way for a text without the other
// kind.
QString withLineFeeds(QString stored);
QString withStoredBreaks(QString text);
// Stored text as the program has it.
QString textFromStored(QByteArrayView bytes);
// Whether every byte is a printable ASCII character and stands for itself.
bool isPlainLmbcs(QByteArrayView bytes);

}  // namespace lens
