#include "embedded/formula_world/note_document.h"

#include <QSet>

#include "embedded/formula_world/item_conversion.h"
#include "embedded/richtext/rich_text.h"

namespace lens {
namespace {

using formula::Fault;
namespace fault = formula::fault;

// Answers to answers go no deeper than this in the platform; it also ends a circle.
constexpr int kDeepestAnswer = 32;

// An attachment's item, if this is one.
bool readAttachment(const Item& item, FileObject& file) {
  return item.value.size() >= 2 && item.type() == itemtype::Object && sameItemName(item.name, u"$FILE") &&
         readFileObject(item.data(), file);
}

// The header, the items with their names, and the attached files.
qint64 sizeOf(const Note& note) {
  constexpr qint64 kHeaderSize = 100, kItemSize = 20;
  qint64 size = kHeaderSize;
  FileObject file;
  for (const Item& item : note.items) {
    size += kItemSize + item.name.size() + item.value.size();
    if (readAttachment(item, file)) size += file.size;
  }
  return size;
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
  if (!reference || reference->value.size() < 2 || reference->type() != itemtype::NoteRefs) return {};
  ByteReader reader(reference->data());
  reader.skip(2);
  return Unid::fromBytes(reader.take(16));
}

const Item* NoteDocument::find(QStringView name) const {
  for (const Item& item : note_.items)
    if (sameItemName(item.name, name) && visible(item)) return &item;
  return nullptr;
}

bool NoteDocument::item(const formula::Name& name, formula::Value& value) const {
  const Item* found = find(name.text);
  if (!found || found->value.size() < 2 || found->type() == itemtype::Unavailable) return false;
  formulaValue(*found, value);
  return true;
}

QStringList NoteDocument::itemNames() const {
  QStringList names;
  QSet<QString> known;
  for (const Item& item : note_.items) {
    if (!visible(item)) continue;
    const qsizetype before = known.size();
    known.insert(formula::foldedName(item.name));
    if (known.size() > before) names.append(item.name);
  }
  return names;
}

QStringList NoteDocument::authorItems() const {
  QStringList names;
  for (const Item& item : note_.items)
    if ((item.flags & itemflag::Authors) && visible(item) && !names.contains(item.name, Qt::CaseInsensitive))
      names.append(item.name);
  return names;
}

Note& NoteDocument::writable() const {
  if (!writable_) throw Fault{fault::FieldsReadOnly};
  return *writable_;
}

void NoteDocument::setItem(const QString& name, const formula::Value& value) {
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

void NoteDocument::removeItem(const QString& name) {
  removeAll(writable(), name);
}

formula::DocumentProperties NoteDocument::properties() const {
  const NoteHeader& header = note_.header;
  const Unid parent = parentOf(note_);
  formula::DocumentProperties properties;
  properties.created = header.created;
  properties.modified = header.modified;
  properties.accessed = header.accessed;
  if (!header.unid.isNull()) properties.unid = header.unid.text();
  if (!parent.isNull()) properties.parentUnid = parent.text();
  properties.noteId = header.id;
  properties.size = sizeOf(note_);
  properties.isNew = header.id == 0;
  properties.isResponse = !parent.isNull();
  return properties;
}

QVector<formula::Attachment> NoteDocument::attachments() const {
  QVector<formula::Attachment> files;
  FileObject file;
  for (const Item& item : note_.items)
    if (readAttachment(item, file)) files.push_back({file.name, file.size, file.modified});
  return files;
}

// A long body stands in several items of the name.
QString NoteDocument::richText(const formula::Name& name) const {
  QString text;
  for (const Item& item : note_.items) {
    if (item.value.size() < 2 || item.type() != itemtype::RichText || !sameItemName(item.name, name.text))
      continue;
    if (!text.isEmpty()) text += u'\n';
    text +=
        RichText::fromBytes(item.data()).plainText().replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  }
  return text;
}

bool NoteDocument::respondsToSelected(bool everyLevel) const {
  if (!selected_) return false;
  Unid parent = parentOf(note_);
  Note above;
  for (int level = 0; level < kDeepestAnswer && !parent.isNull(); ++level) {
    if (selected_(parent)) return true;
    if (!everyLevel || !database_) return false;
    try {
      if (!database_->read(parent, above)) return false;
    } catch (const RuntimeError&) {
      return false;  // a damaged note leads no further
    }
    parent = parentOf(above);
  }
  return false;
}

}  // namespace lens
