#include "records/shown_note.h"

#include "notes/eight_digits.h"
#include "notes/item_types.h"
#include "notes/literals.h"

namespace lens {
namespace {

// A formula has no values; its source is the item's text.
QVector<Value> valuesOf(const NotesItem& item, int type) {
  const Value values = item.values();
  if (values.isArray()) return values.values();
  if (!values.isEmpty()) return {values};
  if (type != itemcode::Formula) return {};
  const QString source = item.text();
  return source.isEmpty() ? QVector<Value>() : QVector<Value>{source};
}

}  // namespace

ItemRecord recordOf(const NotesItem& item) {
  ItemRecord record{item.name(), item.typeCode(), {}, {}};
  if (item.isSummary()) record.flags += u"summary"_s;
  if (item.isSigned()) record.flags += u"signed"_s;
  if (item.isEncrypted()) record.flags += u"encrypted"_s;
  if (item.isProtected()) record.flags += u"protected"_s;
  record.values = valuesOf(item, record.type);
  return record;
}

QString ItemRecord::text(const Regional& regional) const {
  QStringList lines;
  for (const Value& value : values) lines += textOf(value, regional);
  return lines.join(u'\n');
}

void ItemRecord::addTo(JsonLine& json, bool withValues) const {
  json.beginObject().text("name", name).text("type", itemTypeName(type)).texts("flags", flags);
  if (withValues) {
    json.beginArray("values");
    for (const Value& value : values) json.element(value);
    json.end();
  }
  json.end();
}

QString firstText(const NotesDocument& document, const QString& item, const Regional& regional) {
  const Value values = document.itemValue(item);
  if (!values.isArray() || values.upperBound() < 0) return {};
  return textOf(values.at(0), regional);
}

QByteArray jsonOf(const NotesDocument& document) {
  JsonLine json;
  json.text("noteId", eightDigits(document.noteId()))
      .text("unid", document.universalId())
      .beginArray("items");
  const Value items = document.items();
  if (items.isArray())
    for (const Value& item : items.values()) recordOf(NotesItem(item.object())).addTo(json, true);
  return json.finish();
}

}  // namespace lens
