// A note as the store holds it: identity, class, times and its items in order.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include "embedded/format/item_value.h"
#include "embedded/format/note_id.h"
#include "embedded/format/timedate.h"
#include "embedded/format/unid.h"

namespace lens {

namespace noteclass {
inline constexpr quint16 Document = 0x0001, About = 0x0002, Form = 0x0004, View = 0x0008, Icon = 0x0010,
                         Design = 0x0020, Acl = 0x0040, HelpIndex = 0x0080, Using = 0x0100, Filter = 0x0200,
                         SharedField = 0x0400, ReplicationFormula = 0x0800, Private = 0x1000,
                         Default = 0x8000;
// The class without its "private" and "default" marks.
inline constexpr quint16 base(quint16 noteClass) {
  return noteClass & ~(Private | Default);
}
}  // namespace noteclass

struct NoteHeader {
  NoteId id;  // null until it is saved for the first time
  Unid unid;
  quint16 noteClass = noteclass::Document;
  Unid parent;  // null for a main document
  quint32 sequence = 0;
  TimeDate sequenceTime, created, modified, added, accessed;
};

struct Note {
  NoteHeader header;
  QVector<Item> items;

  // First item of that name, null when there is none. Valid until the items change.
  const Item* find(QStringView name) const;
  Item* find(QStringView name);
  bool has(QStringView name) const { return find(name) != nullptr; }
  // First text of the item, "" when it is missing or no text.
  QString text(QStringView name) const;
  void add(QString name, quint16 flags, QByteArray value) {
    items.push_back({std::move(name), flags, std::move(value)});
  }
};

// A profile document: one for a database or user, found by its name, in no view and in no search.
bool isProfile(const Note& note);

}  // namespace lens
