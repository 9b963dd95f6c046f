// Values of items and contents of objects as they are stored, without a type word.
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QVector>

#include "notes/capi.h"

namespace lens::made {

QByteArray textsValue(const QByteArrayList& texts);
QByteArray doubleValue(double number);
QByteArray doublesValue(const QVector<double>& numbers);
QByteArray instantValue(const TimeDate& time);
QByteArray instantsValue(const QVector<TimeDate>& times, const QVector<TimeDate>& endsOfRanges = {});
QByteArray referencesValue(const QByteArrayList& unids);  // of 16 bytes each
QByteArray objectValue(quint16 objectType, quint32 object);

struct FileItem {
  quint32 object = 0;
  QByteArray name;
  quint16 compression = 0;
  quint32 size = 0;  // of the file itself
  TimeDate created, modified;
};
QByteArray fileValue(const FileItem& file);

// Records of rich text: paragraphs of text, each record at an even place.
QByteArray richTextValue(const QByteArrayList& paragraphs);

// A sorted list of IDs as runs.
QByteArray idTable(const QVector<quint32>& ids, const TimeDate& time = {});

struct AccessEntry {
  QByteArray name;
  quint16 level = 0, flags = 0;
  QByteArray roles = QByteArray(10, '\0');  // a set of bits
};
QByteArray accessList(const QVector<AccessEntry>& entries, const QByteArrayList& roles,
                      const QByteArrayList& history);

}  // namespace lens::made
