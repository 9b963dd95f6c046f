// What commands and exports show of a document and its items, asked through the object model's door.
#pragma once

#include <QByteArray>
#include <QStringList>

#include "host/regional.h"
#include "notes/objects/notes_document.h"
#include "records/json_output.h"

namespace lens {

struct ItemRecord {
  QString name;
  int type = 0;       // as the object model tells it (notes/item_types.h)
  QStringList flags;  // "summary", "signed", "encrypted", "protected"
  QVector<Value> values;

  // The values one below the other, dates by the region.
  QString text(const Regional& regional) const;
  // The object of docs/command.schema.json, as the next element of the array that is open.
  void addTo(JsonLine& json, bool withValues) const;
};

ItemRecord recordOf(const NotesItem& item);

// First value of the item as text, "" when there is no such item or value.
QString firstText(const NotesDocument& document, const QString& item, const Regional& regional);

// The document with all its items as one line of JSON.
QByteArray jsonOf(const NotesDocument& document);

}  // namespace lens
