// Items and the byte layout of their values. A value is kept exactly as the C API hands it out: a
// little-endian 16-bit type word, then the data in canonical form.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include "embedded/format/byte_reader.h"
#include "embedded/format/item_name.h"
#include "embedded/format/stored_item_types.h"
#include "embedded/format/stored_object.h"
#include "embedded/format/timedate.h"
#include "embedded/format/unid.h"
#include "notes/bridge.h"

namespace lens {

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
QByteArray noteRefsValue(const QVector<Unid>& unids);

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

}  // namespace lens
