// The single-byte text that the C API and ANSI files take. Outside Windows the system code page is
// Windows-1252, one byte a character, so that lengths and error offsets agree with what users see.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace lens {

// Characters that the code page lacks become "?"; a character outside the basic plane becomes "??",
// so a position in the bytes is a position in the UTF-16 text.
QByteArray toCodePage(QStringView text);
QString fromCodePage(QByteArrayView bytes);

// What a returned buffer holds: up to its first NUL, or all of it.
QByteArray upToNul(const QByteArray& buffer);

}  // namespace lens
