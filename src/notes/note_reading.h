// What the low-level readers share: how a database and a note are named to the C API.
#pragma once

#include <QByteArray>
#include <QString>

#include "notes/capi.h"

namespace lens {

// The network path that NSFDbOpen takes.
QByteArray networkPath(CApi& api, const QString& server, const QString& filePath);

// Bytes that a stored value takes for the user: some types carry words that are none of the content.
// Attachments have their size elsewhere.
qint64 contentLength(quint16 itemType, quint32 valueLength);

inline constexpr quint16 kObjectItem = 3;

// The legible letters of action text: from the byte behind the read pointer, count bytes at most, up
// to a zero byte. A byte above 125, or a control byte that is no line end, becomes a blank. Bytes
// behind the end count as zero.
QString legibleText(QByteArrayView behindPointer, qint16 count);

}  // namespace lens
