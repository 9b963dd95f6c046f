#include "embedded/model/item_object.h"

#include "embedded/format/formula_source.h"
#include "embedded/model/rich_text_item_object.h"
#include "embedded/richtext/rich_text.h"
#include "notes/literals.h"

namespace lens {

namespace {

// A property that is read and written.
template <auto Read, auto Write>
Member both(const char16_t* name) {
  return {name, 0, 0, property<Read>(name).read, written<Write>(name).write};
}

}  // namespace

Value ItemObject::of(const std::shared_ptr<OpenNote>& note, quint32 number) {
  if (note->item(number).type() == itemtype::RichText) return newObject<RichTextItemObject>(note, number);
  return newObject<ItemObject>(note, number);
}

const MemberTable& ItemObject::itemMembers() {
  static const MemberTable table{
      property<&ItemObject::name>(u"Name"),
      property<&ItemObject::text>(u"Text"),
      property<&ItemObject::type>(u"Type"),
      property<&ItemObject::values>(u"Values"),
      both<&ItemObject::isSummary, &ItemObject::setSummary>(u"ISSUMMARY"),
      both<&ItemObject::isEncrypted, &ItemObject::setEncrypted>(u"ISENCRYPTED"),
      both<&ItemObject::isSigned, &ItemObject::setSigned>(u"ISSIGNED"),
      both<&ItemObject::isProtected, &ItemObject::setProtected>(u"ISPROTECTED"),
      both<&ItemObject::isReaders, &ItemObject::setReaders>(u"ISREADERS"),
  };
  return table;
}

const MemberTable& ItemObject::members() const {
  return itemMembers();
}

void ItemObject::allow(const Member&) {
  open_->requirePresent();
  item();
}

Value ItemObject::valuesOf(const Item& item) {
  if (item.type() != itemtype::RichText) return itemValues(item);
  return Value::array({Value(RichText::fromBytes(item.data()).plainText())});
}

QString ItemObject::textOf(const Item& item, const Regional& regional) {
  QString source;
  if (item.type() == itemtype::Formula) return formulaSource(item, source) ? source : QString();
  const Value values = valuesOf(item);
  if (!values.isArray()) return {};
  QStringList texts;
  for (const Value& value : values.values()) texts.append(lens::textOf(value, regional));
  return texts.join(u';');
}

Value ItemObject::name() {
  return item().name;
}

Value ItemObject::text() {
  return textOf(item(), open_->database->context->workspace->regional());
}

Value ItemObject::type() {
  return objectModelType(item());
}

Value ItemObject::values() {
  return valuesOf(item());
}

Value ItemObject::isSummary() {
  return flag(itemflag::Summary);
}

Value ItemObject::isEncrypted() {
  return flag(itemflag::Seal);
}

Value ItemObject::isSigned() {
  return flag(itemflag::Sign);
}

Value ItemObject::isProtected() {
  return flag(itemflag::Protected);
}

Value ItemObject::isReaders() {
  return flag(itemflag::Readers);
}

void ItemObject::setFlag(quint16 bit, bool on) {
  Item& changed = item();
  changed.flags = on ? changed.flags | bit : changed.flags & ~bit;
}

// Rich text is never part of what views show of a document.
void ItemObject::setSummary(const Value& on) {
  const bool wanted = on.boolean();
  if (item().type() != itemtype::RichText) setFlag(itemflag::Summary, wanted);
}

// Both are marks: nothing is enciphered.
void ItemObject::setEncrypted(const Value& on) {
  setFlag(itemflag::Seal, on.boolean());
}

void ItemObject::setSigned(const Value& on) {
  setFlag(itemflag::Sign, on.boolean());
}

void ItemObject::setProtected(const Value& on) {
  setFlag(itemflag::Protected, on.boolean());
}

// Readers are names, and no longer authors.
void ItemObject::setReaders(const Value& on) {
  const bool wanted = on.boolean();
  const quint16 type = item().type();
  if (type == itemtype::RichText) return;  // as with the summary: it cannot be one
  if (wanted && type != itemtype::Text && type != itemtype::TextList)
    throw RuntimeError(err::TypeMismatch, u"%1: the item \"%2\" holds no text, so no readers"_s.arg(
                                              open_->database->place.path, item().name.left(64)));
  if (wanted) setFlag(itemflag::Authors, false);
  if (wanted || (item().flags & itemflag::Readers)) setFlag(itemflag::Names, wanted);
  setFlag(itemflag::Readers, wanted);
}

}  // namespace lens
