// Values of type Object: what leads from an item to an attached file, or to what an agent keeps.
#pragma once

#include <QByteArray>
#include <QString>

#include "embedded/format/timedate.h"

namespace lens {

// What a "$FILE" value says of its attachment.
struct FileObject {
  quint32 objectId = 0;
  // As it was given, on whatever system: it may hold separators, be a device's name and stand twice in a
  // note.
  QString name;
  quint32 size = 0;
  TimeDate created, modified;
  quint16 hostType = 0, compression = 0, attributes = 0, flags = 0;
};
QByteArray fileObjectValue(const FileObject& file);
// From the data behind the type word. False when it is no file object or is cut short.
bool readFileObject(QByteArrayView data, FileObject& file);
// The same from a whole stored value; false for a value of another type, too.
bool readFileValue(QByteArrayView value, FileObject& file);
// Whether the host that made the object was an OLE server: then it is no file.
bool isOleObject(QByteArrayView data);
inline constexpr quint16 kOleHost = 0x0100;  // a FileObject's hostType

// Whether data of type Object is that of a file, whole or not.
bool isFileKind(QByteArrayView data);
// The object that data of type Object leads to, of whatever kind; 0 when it is cut short.
quint32 objectIdOf(QByteArrayView data);
// Puts another number in its place: in a value with its type word that is long enough to have one.
void replaceObjectId(QByteArray& value, quint32 objectId);

}  // namespace lens
