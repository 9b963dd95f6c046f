#include "bulk/field_replacement.h"

#include "shell/text_routines.h"

namespace lens {
namespace {

Value replacedText(const Value& values, int index, const FieldTexts& texts, const Regional& regional) {
  return replaceAllText(textOf(values.at(index), regional), texts.find, texts.replace);
}

Value replacedTexts(const Value& values, int bound, const FieldTexts& texts, const Regional& regional) {
  QVector<Value> list;
  list.reserve(bound + 1);
  for (int index = 0; index <= bound; ++index) list.push_back(replacedText(values, index, texts, regional));
  return Value::array(std::move(list));
}

}  // namespace

std::optional<QString> itemNameOfRow(const QString& row) {
  const qsizetype colon = row.indexOf(u':');
  if (colon < 0) return std::nullopt;
  return row.left(colon);
}

QString requiredItemNameOfRow(const QString& row) {
  if (const std::optional<QString> name = itemNameOfRow(row)) return *name;
  throw RuntimeError(err::InvalidCall);
}

void replaceInCopiedItem(const NotesDocument& copy, const NotesDocument& source, const QString& item,
                         const FieldTexts& texts, const Regional& regional) {
  const Value values = copy.itemValue(item);
  const int bound = values.isEmpty() ? -1 : values.upperBound();
  if (bound > 0) {
    const int lastIndex = source.itemValue(item).upperBound();
    copy.replaceItemValue(item, replacedTexts(values, lastIndex, texts, regional));
  } else if (bound == 0) {
    copy.replaceItemValue(item, replacedText(values, 0, texts, regional));
  }
}

void replaceInOwnItem(const NotesDocument& document, const QString& item, const FieldTexts& texts,
                      const Regional& regional) {
  const Value values = document.itemValue(item);
  const int bound = values.upperBound();
  document.replaceItemValue(item, bound > 0 ? replacedTexts(values, bound, texts, regional)
                                            : replacedText(values, 0, texts, regional));
}

}  // namespace lens
