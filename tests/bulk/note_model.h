// What the notes of a database must hold, kept beside the code: a test makes the notes, changes the model by
// what each operation is asked for, and holds the stored notes against it, item by item. Attachments and
// other objects count with their bytes and not with their number in the file.
#pragma once

#include <QBuffer>
#include <QHash>
#include <QSet>

#include "embedded/store/database.h"
#include "embedded/store/object_copy.h"

namespace lens::testbed {
using namespace Qt::StringLiterals;

struct ModelItem {
  QString name;
  quint16 flags = 0;
  QByteArray value;   // of an object without its number
  QByteArray file;    // its bytes
  QStringList texts;  // the values as text, of items in which text is replaced
};

struct ModelNote {
  Unid unid;  // null until the first comparison, of notes that the program makes
  Unid parent;
  quint16 noteClass = noteclass::Document;
  quint32 sequence = 1;  // one more for each time that it is written
  QVector<ModelItem> items;

  ModelItem* find(const QString& name) {
    for (ModelItem& item : items)
      if (item.name == name) return &item;
    return nullptr;
  }
  void add(const QString& name, const QByteArray& value, quint16 flags = itemflag::Summary,
           const QStringList& texts = {}) {
    items.push_back({name, flags, value, {}, texts});
  }
  void addFile(const QString& fileName, const QByteArray& bytes) {
    FileObject file;
    file.name = fileName;
    file.size = quint32(bytes.size());
    items.push_back({u"$FILE"_s, itemflag::Summary, fileObjectValue(file), bytes, {}});
  }
  // What becomes of an item in which text is replaced: text, whatever it was, and no names of a kind.
  void replaceText(const QString& name, const QString& find, const QString& replacement) {
    ModelItem* const item = this->find(name);
    if (!item || item->texts.isEmpty()) return;
    item->texts.replaceInStrings(find, replacement);
    item->value = item->texts.size() == 1 ? textValue(item->texts.first()) : textListValue(item->texts);
    item->flags &= itemflag::Sign | itemflag::Seal | itemflag::Summary | itemflag::Protected;
  }
};

inline bool isAttachment(const Item& item) {
  FileObject file;
  return readFileValue(item.value, file);
}

// Attachments, and what agents keep.
inline bool hasObject(const Database& database, const Item& item) {
  return mayReferToObject(item) && database.objects().size(objectIdOf(item.data())) >= 0;
}

// Saves it as people's own programs do; the model learns its UNID.
inline void store(Database& database, ModelNote& model) {
  Note note;
  note.header.noteClass = model.noteClass;
  note.header.parent = model.parent;
  for (const ModelItem& item : std::as_const(model.items)) {
    note.add(item.name, item.flags, item.value);
    if (!isAttachment(note.items.last())) continue;
    QBuffer source;
    source.setData(item.file);
    source.open(QIODevice::ReadOnly);
    replaceObjectId(note.items.last().value, database.objects().add(source).id);
  }
  database.notes().save(note);
  model.unid = note.header.unid;
}

inline ModelNote modelOf(const Database& database, const Note& note) {
  ModelNote model{note.header.unid, note.header.parent, note.header.noteClass, note.header.sequence, {}};
  for (const Item& item : note.items) {
    model.add(item.name, item.value, item.flags);
    if (!hasObject(database, item)) continue;
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    database.objects().read(objectIdOf(item.data()), bytes);
    model.items.last().file = bytes.data();
    replaceObjectId(model.items.last().value, 0);
  }
  return model;
}

// Every note of the database, in the order in which they came into it.
inline QVector<ModelNote> modelOf(const Database& database) {
  QVector<ModelNote> notes;
  constexpr quint16 kAllClasses = 0x7FFF;
  database.notes().scan(kAllClasses, [&](const Note& note) {
    notes.push_back(modelOf(database, note));
    return true;
  });
  return notes;
}

struct Comparison {
  qsizetype notes = 0, items = 0;
  QStringList differences;

  void compare(const ModelNote& expected, const ModelNote& found) {
    ++notes;
    const QString place = u"note "_s + found.unid.text();
    if (found.parent != expected.parent) differences += place + u": parent"_s;
    if (found.noteClass != expected.noteClass) differences += place + u": class"_s;
    if (found.sequence != expected.sequence)
      differences += place + u": written %1 times, not %2"_s.arg(found.sequence).arg(expected.sequence);
    if (found.items.size() != expected.items.size())
      differences += place + u": %1 items, not %2"_s.arg(found.items.size()).arg(expected.items.size());
    for (qsizetype i = 0; i < qMin(found.items.size(), expected.items.size()); ++i)
      compare(place, expected.items[i], found.items[i]);
  }

 private:
  void compare(const QString& place, const ModelItem& expected, const ModelItem& found) {
    ++items;
    const QString item = place + u", item "_s + expected.name;
    if (found.name != expected.name) differences += item + u": is "_s + found.name;
    if (found.flags != expected.flags)
      differences += item + u": flags %1, not %2"_s.arg(found.flags, 0, 16).arg(expected.flags, 0, 16);
    if (found.value != expected.value)
      differences += item + u": value "_s + QString::fromLatin1(found.value.left(40).toHex()) + u", not "_s +
                     QString::fromLatin1(expected.value.left(40).toHex());
    if (found.file != expected.file) differences += item + u": bytes of the file"_s;
  }
};

// Holds a database against its model. Notes that the program has made stand in the model in the order in
// which they must have been made, and have their UNIDs from then on.
inline Comparison compareWith(QVector<ModelNote>& model, const Database& database) {
  Comparison result;
  QHash<QByteArray, ModelNote> found;
  QSet<QByteArray> known;
  for (const ModelNote& note : std::as_const(model)) known.insert(note.unid.bytes());
  QVector<QByteArray> fresh;
  for (ModelNote& note : modelOf(database)) {
    const QByteArray unid = note.unid.bytes();
    if (!known.contains(unid)) fresh.push_back(unid);
    found.insert(unid, std::move(note));
  }
  qsizetype next = 0;
  for (ModelNote& note : model) {
    if (note.unid.isNull() && next < fresh.size()) note.unid = Unid::fromBytes(fresh[next++]);
    const auto at = found.constFind(note.unid.bytes());
    if (at == found.constEnd())
      result.differences += u"note %1 is not there"_s.arg(note.unid.text());
    else
      result.compare(note, *at);
  }
  if (next < fresh.size() || found.size() != model.size())
    result.differences += u"%1 notes, not %2"_s.arg(found.size()).arg(model.size());
  return result;
}

}  // namespace lens::testbed
