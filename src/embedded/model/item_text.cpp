#include "embedded/model/item_text.h"

#include "embedded/formula/compiled/stored_formula.h"
#include "embedded/richtext/rich_text.h"

namespace lens {

Value valuesOf(const Item& item) {
  if (item.type() != itemtype::RichText) return itemValues(item);
  return Value::array({Value(RichText::fromBytes(item.data()).plainText())});
}

QString itemAsText(const Item& item, const Regional& regional) {
  QString source;
  if (item.type() == itemtype::Formula) return formula::formulaSource(item, source) ? source : QString();
  const Value values = valuesOf(item);
  if (!values.isArray()) return {};
  QStringList texts;
  for (const Value& value : values.values()) texts.append(textOf(value, regional));
  return texts.join(u';');
}

}  // namespace lens
