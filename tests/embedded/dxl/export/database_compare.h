// Tells what two databases differ in, item by item; note IDs and object IDs may.
#pragma once

#include <QBuffer>
#include <algorithm>

#include "embedded/store/database.h"

namespace lens {

inline quint32 objectIdOf(const Item& item) {
  ByteReader reader(item.data());
  reader.skip(2);
  return reader.u32();
}

inline QByteArray objectBytes(const Database& database, quint32 object) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  database.objects().read(object, buffer);
  return buffer.data();
}

inline QString itemDifference(const Database& before, const Item& a, const Database& after, const Item& b) {
  if (a.name != b.name) return QStringLiteral("is \"%1\" instead").arg(b.name);
  if (a.flags != b.flags)
    return QStringLiteral("has flags %1, not %2").arg(b.flags, 0, 16).arg(a.flags, 0, 16);
  QByteArray x = a.value, y = b.value;
  const bool object = a.type() == itemtype::Object && x.size() >= 8 && y.size() == x.size() &&
                      before.objects().size(objectIdOf(a)) >= 0;
  if (object) {
    if (objectBytes(before, objectIdOf(a)) != objectBytes(after, objectIdOf(b)))
      return QStringLiteral("has other bytes in its object");
    x.replace(4, 4, QByteArray(4, '\0'));
    y.replace(4, 4, QByteArray(4, '\0'));
  }
  if (x == y) return {};
  return QStringLiteral("is %1, not %2")
      .arg(QString::fromLatin1(y.left(80).toHex()), QString::fromLatin1(x.left(80).toHex()));
}

inline QString headerText(const NoteHeader& header) {
  QStringList parts = {QString::number(header.noteClass, 16), header.unid.text(), header.parent.text(),
                       QString::number(header.sequence)};
  for (const TimeDate& time :
       {header.sequenceTime, header.created, header.modified, header.added, header.accessed})
    parts.push_back(timeDateHex(time));
  return parts.join(u' ');
}

inline QString noteDifference(const Database& before, const Note& a, const Database& after, const Note& b) {
  if (headerText(a.header) != headerText(b.header))
    return QStringLiteral("header %1, not %2").arg(headerText(b.header), headerText(a.header));
  if (a.items.size() != b.items.size())
    return QStringLiteral("%1 items, not %2").arg(b.items.size()).arg(a.items.size());
  for (qsizetype i = 0; i < a.items.size(); ++i) {
    const QString difference = itemDifference(before, a.items[i], after, b.items[i]);
    if (!difference.isEmpty())
      return QStringLiteral("item %1 \"%2\" %3").arg(i).arg(a.items[i].name, difference);
  }
  return {};
}

inline QString infoText(const DatabaseInfo& info) {
  return QStringList{info.title,        info.replicaId,  info.templateName,
                     info.inheritsFrom, info.categories, QString::number(info.publicAddressBook)}
      .join(u'|');
}

inline QVector<NoteSummary> byUnid(const Database& database) {
  QVector<NoteSummary> notes = database.notes().list(0xFFFF);
  std::sort(notes.begin(), notes.end(),
            [](const NoteSummary& a, const NoteSummary& b) { return a.unid.bytes() < b.unid.bytes(); });
  return notes;
}

// "" when the databases have the same properties and the same notes. The order of notes may differ: the
// access control list comes first in a file.
inline QString difference(const Database& before, const Database& after) {
  if (infoText(before.info()) != infoText(after.info()))
    return QStringLiteral("properties %1, not %2").arg(infoText(after.info()), infoText(before.info()));
  const QVector<NoteSummary> a = byUnid(before), b = byUnid(after);
  if (a.size() != b.size()) return QStringLiteral("%1 notes, not %2").arg(b.size()).arg(a.size());
  for (qsizetype i = 0; i < a.size(); ++i) {
    Note x, y;
    if (!before.notes().read(a[i].id, x) || !after.notes().read(b[i].id, y))
      return QStringLiteral("a note has gone");
    const QString found = noteDifference(before, x, after, y);
    if (!found.isEmpty()) return QStringLiteral("note %1: %2").arg(x.header.unid.text(), found);
  }
  return {};
}

}  // namespace lens
