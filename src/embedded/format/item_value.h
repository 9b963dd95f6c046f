// Items and the byte layout of their values. A value is kept exactly as the C API hands it out: a
// little-endian 16-bit type word, then the data in canonical form.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include "embedded/format/byte_reader.h"
#include "embedded/format/item_name.h"
#include "embedded/format/timedate.h"
#include "notes/bridge.h"

namespace lens {

namespace itemtype {
inline constexpr quint16 Unknown = 0x0000, RichText = 0x0001, Collation = 0x0002, Object = 0x0003,
                         NoteRefs = 0x0004, ViewFormat = 0x0005, Icon = 0x0006, NoteLinks = 0x0007,
                         Signature = 0x0008, UserData = 0x000E, Query = 0x000F, Action = 0x0010,
                         AssistantInfo = 0x0011, ViewMapDataset = 0x0012, ViewMapLayout = 0x0013,
                         LsObject = 0x0014, Html = 0x0015, MimePart = 0x0019, OutlineFormat = 0x001A,
                         Error = 0x0100, Unavailable = 0x0200, Number = 0x0300, NumberRange = 0x0301,
                         Time = 0x0400, TimeRange = 0x0401, Text = 0x0500, TextList = 0x0501,
                         Rfc822Text = 0x0502, Formula = 0x0600, UserId = 0x0700;
}  // namespace itemtype

namespace itemflag {
inline constexpr quint16 Sign = 0x0001, Seal = 0x0002, Summary = 0x0004, Authors = 0x0020, Names = 0x0040,
                         Placeholder = 0x0100, Protected = 0x0200, Readers = 0x0400, Unchanged = 0x1000;
}  // namespace itemflag

struct Item {
  QString name;
  quint16 flags = 0;
  QByteArray value;  // type word included; never shorter than 2 bytes

  quint16 type() const { return quint16(quint8(value[0]) | quint8(value[1]) << 8); }
  QByteArrayView data() const { return QByteArrayView(value).sliced(2); }
};

// Values from what they mean. A text list of one entry stays a list. A list of more than 65535 entries,
// or an entry of more than 65535 bytes, has no form and raises 6.
QByteArray rawValue(quint16 type, QByteArrayView data);
QByteArray textValue(QStringView text);
QByteArray textListValue(const QStringList& texts);
QByteArray numberValue(double number);
QByteArray numberListValue(const QVector<double>& numbers);
QByteArray timeValue(const TimeDate& time);
struct TimePair {
  TimeDate from, to;
};
QByteArray timeListValue(const QVector<TimeDate>& times, const QVector<TimePair>& pairs = {});
// 32 hexadecimal digits each; anything else raises 5.
QByteArray noteRefsValue(const QStringList& unids);

// The type code that the object model reports: names, readers, authors and attachments have codes of
// their own, and a list has the code of its element.
int objectModelType(const Item& item);

// The values as the object model gives them: an array for text, numbers, times, RFC822 text, note
// references (UNIDs) and "$FILE" (the file name); Empty for everything else and for a list without
// entries. A malformed value gives what can be read of it, never a crash. A pair gives its two entries.
// A NUL inside stored text is a line break and comes as LF. Rich text is Empty here: its text belongs
// to embedded/richtext, which the object model asks.
Value itemValues(const Item& item);

// First text of a text or text list; "" for everything else.
QString firstText(const Item& item);

// What a "$FILE" value says of its attachment.
struct FileObject {
  quint32 objectId = 0;
  QString name;
  quint32 size = 0;
  TimeDate created, modified;
  quint16 hostType = 0, compression = 0, attributes = 0, flags = 0;
};
QByteArray fileObjectValue(const FileObject& file);
// False when the value is no file object or is cut short.
bool readFileObject(QByteArrayView data, FileObject& file);
// The object that a value of type Object leads to, be it a file or what an agent keeps; 0 when the value is
// cut short.
quint32 objectIdOf(QByteArrayView data);

}  // namespace lens
