// Names (of servers, files, items, design notes) as the bytes that a library behind the C API takes.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace lens {

// Bad file name: what codePageName raises.
inline constexpr int kUnsayableName = 52;

// The text of the system's code page. Raises kUnsayableName, with the name, where that lacks a character:
// the bytes would name something else.
QByteArray codePageName(QStringView name);

// Any name without loss: in the code page where that has all of it, otherwise in UTF-8 behind its byte order
// mark.
QByteArray markedName(QStringView name);
bool isMarkedName(QByteArrayView bytes);
// The name of either kind of bytes.
QString nameFromBytes(QByteArrayView bytes);

}  // namespace lens
