#include "embedded/design/form_fields.h"

#include <QHash>

#include "embedded/format/case_key.h"
#include "embedded/format/lmbcs.h"
#include "embedded/richtext/field_record.h"
#include "embedded/richtext/rich_text.h"

namespace lens {
namespace {

// Of the field record: what a text field holds.
constexpr quint16 kAuthors = 0x0001, kNames = 0x0004, kReaders = 0x0010;

class Fields {
 public:
  void add(const QString& name, int type) {
    if (name.isEmpty()) return;
    const auto place = places_.constFind(caseKey(name));
    if (place == places_.cend()) {
      places_.insert(caseKey(name), list_.size());
      list_.push_back({name, type});
    } else if (list_[*place].type == 0) {
      list_[*place].type = type;
    }
  }
  bool has(const QString& name) const { return places_.contains(caseKey(name)); }
  QVector<DesignField> take() {
    for (DesignField& field : list_)
      if (field.type == 0) field.type = itemtype::Text;
    return std::move(list_);
  }

 private:
  QVector<DesignField> list_;
  QHash<QString, qsizetype> places_;
};

int typeOf(quint16 valueType, quint16 fieldFlags) {
  Item item{QString(), 0, rawValue(valueType, {})};
  if (fieldFlags & kAuthors) item.flags |= itemflag::Authors;
  if (fieldFlags & kReaders) item.flags |= itemflag::Readers;
  if (fieldFlags & kNames) item.flags |= itemflag::Names;
  return objectModelType(item);
}

void addRecord(QByteArrayView record, Fields& fields) {
  StoredField field;
  if (readStoredField(record, field)) fields.add(fromLmbcs(field.name), typeOf(field.type, field.flags));
}

void addBody(const Item& body, Fields& fields) {
  const RichText text = RichText::fromBytes(body.data());
  for (const RichElement& element : text.elements())
    if (element.kind == RichElement::Kind::Raw) addRecord(element.record, fields);
}

bool isPlaceholder(const Item& item) {
  return (item.flags & itemflag::Placeholder) && !item.name.startsWith(u'$');
}

// What the form's own item tells of a field: numbers and times have a zero value, others a mark.
int typeOf(const Item& item) {
  constexpr quint16 kWho = itemflag::Authors | itemflag::Names | itemflag::Readers;
  if (item.type() != itemtype::Unknown) return objectModelType(item);
  return item.flags & kWho ? objectModelType({item.name, item.flags, textValue({})}) : 0;
}

}  // namespace

QVector<DesignField> fieldsOf(const Note& form) {
  Fields fields;
  if (const Item* listed = form.find(u"$Fields")) {
    const Value names = itemValues(*listed);
    if (names.isArray())
      for (const Value& name : names.values())
        if (name.kind() == Value::Kind::Text) fields.add(name.text(), 0);
  }
  for (const Item& item : form.items)
    if (item.value.size() >= 2 && item.type() == itemtype::RichText && sameItemName(item.name, u"$Body"))
      addBody(item, fields);
  for (const Item& item : form.items)
    if (item.value.size() >= 2 && (isPlaceholder(item) || fields.has(item.name)))
      fields.add(item.name, typeOf(item));
  return fields.take();
}

}  // namespace lens
