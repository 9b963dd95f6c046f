// What the low-level readers share: how a database and a note are named to the C API.
#pragma once

#include <QByteArray>
#include <QString>

#include "notes/capi.h"
#include "notes/objects/notes_database.h"

namespace lens {

// The network path that NSFDbOpen takes.
QByteArray networkPath(CApi& api, const QString& server, const QString& filePath);
// The same of an open database, which is asked for its server and then for its file.
QByteArray networkPath(CApi& api, const NotesDatabase& database);

// Bytes that a stored value takes for the user: some types carry words that are none of the content.
// Attachments have their size elsewhere.
qint64 contentLength(quint16 itemType, quint32 valueLength);

inline constexpr quint16 kObjectItem = 3;

// The legible letters of action text: from the byte behind the read pointer, count bytes at most, up
// to a zero byte. A byte above 125, or a control byte that is no line end, becomes a blank. Bytes
// behind the end count as zero.
QString legibleText(QByteArrayView behindPointer, qint16 count);
// The same of a whole value, when its fields have been read up to the pointer, counted from the start of
// the value. The byte at the pointer itself is never shown.
QString actionText(QByteArrayView value, qsizetype pointer, qint16 count);

}  // namespace lens
