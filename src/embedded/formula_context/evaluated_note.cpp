#include "embedded/formula_context/evaluated_note.h"

#include <QSet>

#include "embedded/format/stored_lists.h"
#include "embedded/formula_context/item_conversion.h"
#include "embedded/richtext/rich_text.h"
#include "notes/literals.h"

namespace lens {
namespace {

using formula::Fault;
namespace fault = formula::fault;

// Answers to answers go no deeper than this in the platform; it also ends a circle.
constexpr int kDeepestAnswer = 32;

bool isFileItem(const Item& item) {
  return sameItemName(item.name, u"$FILE");
}

// The first note that a stored value refers to.
Unid referenceIn(QByteArrayView stored) {
  if (ByteReader(stored).u16() != itemtype::NoteRefs) return {};
  return StoredReferences(stored.sliced(2)).first();
}

void removeAll(Note& note, const QString& name) {
  note.items.removeIf([&](const Item& item) { return sameItemName(item.name, name); });
}

QByteArray bytesOf(const formula::Value& value) {
  try {
    return fieldValue(value);
  } catch (const RuntimeError&) {
    throw Fault{fault::ResultTooLong};
  }
}

}  // namespace

Unid parentOf(const Note& note) {
  if (!note.header.parent.isNull()) return note.header.parent;
  const Item* reference = note.find(u"$REF");
  return reference ? referenceIn(reference->value) : Unid();
}

Unid parentOf(const PackedNote& note) {
  if (!note.header.parent.isNull()) return note.header.parent;
  const qsizetype place = note.items.find(u"$REF");
  return place < 0 ? Unid() : referenceIn(note.items[place].value);
}

formula::DocumentProperties propertiesOf(const NoteHeader& header, const Unid& parent, qint64 size) {
  formula::DocumentProperties properties;
  properties.created = header.created;
  properties.modified = header.modified;
  properties.accessed = header.accessed;
  properties.unid = header.unid;
  properties.parentUnid = parent;
  properties.noteId = header.id;
  properties.size = size;
  properties.isNew = header.id.isNull();
  properties.isResponse = !parent.isNull();
  return properties;
}

void NoteSize::add(qsizetype nameLength, QByteArrayView value, bool isFile) {
  constexpr qint64 kItemSize = 20;
  bytes_ += kItemSize + nameLength + value.size();
  FileObject file;
  if (isFile && readFileValue(value, file)) bytes_ += file.size;
}

bool answersSelected(Unid parent, const EvaluatedNote::Selected& selected, const Database* database,
                     bool everyLevel) {
  if (!selected) return false;
  Note above;
  for (int level = 0; level < kDeepestAnswer && !parent.isNull(); ++level) {
    if (selected(parent)) return true;
    if (!everyLevel || !database) return false;
    try {
      if (!database->notes().read(parent, above)) return false;
    } catch (const RuntimeError&) {
      return false;  // a damaged note leads no further
    }
    parent = parentOf(above);
  }
  return false;
}

const Item* EvaluatedNote::find(QStringView name) const {
  for (const Item& item : note_.items)
    if (sameItemName(item.name, name) && visible(item)) return &item;
  return nullptr;
}

bool EvaluatedNote::item(const formula::Name& name, formula::Value& value) const {
  const Item* found = find(name.text());
  if (!found || found->value.size() < 2 || found->type() == itemtype::Unavailable) return false;
  formulaValue(*found, value);
  return true;
}

template <class Wanted>
QStringList EvaluatedNote::namesOf(const Wanted& wanted) const {
  QStringList names;
  QSet<ItemName> known;
  for (const Item& item : note_.items) {
    if (!wanted(item)) continue;
    const qsizetype before = known.size();
    known.insert(ItemName(item.name));
    if (known.size() > before) names.append(item.name);
  }
  return names;
}

QStringList EvaluatedNote::itemNames() const {
  return namesOf([this](const Item& item) { return visible(item); });
}

QStringList EvaluatedNote::authorItems() const {
  return namesOf([this](const Item& item) { return (item.flags & itemflag::Authors) && visible(item); });
}

Note& EvaluatedNote::writable() const {
  if (!writable_) throw Fault{fault::FieldsReadOnly};
  return *writable_;
}

void EvaluatedNote::setItem(const QString& name, const formula::Value& value) {
  Note& note = writable();
  QByteArray bytes = bytesOf(value);
  const Item* present = note_.find(name);
  if (!present) {
    note.add(name, itemflag::Summary, std::move(bytes));
    return;
  }
  const qsizetype place = present - note_.items.constData();
  note.items[place].value = std::move(bytes);
  const auto behind = note.items.begin() + place + 1;
  note.items.erase(std::remove_if(behind, note.items.end(),
                                  [&](const Item& item) { return sameItemName(item.name, name); }),
                   note.items.end());
}

void EvaluatedNote::removeItem(const QString& name) {
  removeAll(writable(), name);
}

formula::DocumentProperties EvaluatedNote::properties() const {
  NoteSize size;
  for (const Item& item : note_.items) size.add(item.name.size(), item.value, isFileItem(item));
  return propertiesOf(note_.header, parentOf(note_), size.bytes());
}

QVector<formula::Attachment> EvaluatedNote::attachments() const {
  QVector<formula::Attachment> files;
  FileObject file;
  for (const Item& item : note_.items)
    if (isFileItem(item) && readFileValue(item.value, file))
      files.push_back({file.name, file.size, file.modified});
  return files;
}

// A long body stands in several items of the name.
QString EvaluatedNote::richText(const formula::Name& name) const {
  QString text;
  for (const Item& item : note_.items) {
    if (item.value.size() < 2 || item.type() != itemtype::RichText || !sameItemName(item.name, name.text()))
      continue;
    if (!text.isEmpty()) text += u'\n';
    text += RichText::fromBytes(item.data()).plainText().replace(u"\r\n"_s, u"\n"_s);
  }
  return text;
}

bool EvaluatedNote::respondsToSelected(bool everyLevel) const {
  return answersSelected(parentOf(note_), selected_, database_, everyLevel);
}

}  // namespace lens
