#include "embedded/model/notes_item.h"

#include "embedded/model/notes_rich_text_item.h"
#include "embedded/richtext/rich_text.h"
#include "embedded/views/formula_source.h"

namespace lens {

namespace {

// A property that is read and written.
template <auto Read, auto Write>
Member both(const char16_t* name) {
  return {name, 0, 0, property<Read>(name).read, written<Write>(name).write};
}

}  // namespace

Value NotesItem::of(const std::shared_ptr<OpenNote>& note, quint32 number) {
  if (note->item(number).type() == itemtype::RichText) return newObject<NotesRichTextItem>(note, number);
  return newObject<NotesItem>(note, number);
}

const MemberTable& NotesItem::itemMembers() {
  static const MemberTable table{
      property<&NotesItem::name>(u"Name"),
      property<&NotesItem::text>(u"Text"),
      property<&NotesItem::type>(u"Type"),
      property<&NotesItem::values>(u"Values"),
      both<&NotesItem::isSummary, &NotesItem::setSummary>(u"ISSUMMARY"),
      both<&NotesItem::isEncrypted, &NotesItem::setEncrypted>(u"ISENCRYPTED"),
      both<&NotesItem::isSigned, &NotesItem::setSigned>(u"ISSIGNED"),
      both<&NotesItem::isProtected, &NotesItem::setProtected>(u"ISPROTECTED"),
      both<&NotesItem::isReaders, &NotesItem::setReaders>(u"ISREADERS"),
  };
  return table;
}

const MemberTable& NotesItem::members() const {
  return itemMembers();
}

void NotesItem::allow(const Member&) {
  open_->requirePresent();
  item();
}

Value NotesItem::valuesOf(const Item& item) {
  if (item.type() != itemtype::RichText) return itemValues(item);
  return Value::array({Value(RichText::fromBytes(item.data()).plainText())});
}

QString NotesItem::textOf(const Item& item, const Regional& regional) {
  QString source;
  if (item.type() == itemtype::Formula) return formulaSource(item, source) ? source : QString();
  const Value values = valuesOf(item);
  if (!values.isArray()) return {};
  QStringList texts;
  for (const Value& value : values.values()) texts.append(lens::textOf(value, regional));
  return texts.join(u';');
}

Value NotesItem::name() {
  return item().name;
}

Value NotesItem::text() {
  return textOf(item(), open_->database->context->workspace->regional());
}

Value NotesItem::type() {
  return objectModelType(item());
}

Value NotesItem::values() {
  return valuesOf(item());
}

Value NotesItem::isSummary() {
  return flag(itemflag::Summary);
}

Value NotesItem::isEncrypted() {
  return flag(itemflag::Seal);
}

Value NotesItem::isSigned() {
  return flag(itemflag::Sign);
}

Value NotesItem::isProtected() {
  return flag(itemflag::Protected);
}

Value NotesItem::isReaders() {
  return flag(itemflag::Readers);
}

void NotesItem::setFlag(quint16 bit, bool on) {
  Item& changed = item();
  changed.flags = on ? changed.flags | bit : changed.flags & ~bit;
}

// Rich text is never part of what views show of a document.
void NotesItem::setSummary(const Value& on) {
  const bool wanted = on.boolean();
  if (item().type() != itemtype::RichText) setFlag(itemflag::Summary, wanted);
}

// Both are marks: nothing is enciphered.
void NotesItem::setEncrypted(const Value& on) {
  setFlag(itemflag::Seal, on.boolean());
}

void NotesItem::setSigned(const Value& on) {
  setFlag(itemflag::Sign, on.boolean());
}

void NotesItem::setProtected(const Value& on) {
  setFlag(itemflag::Protected, on.boolean());
}

// Readers are names, and no longer authors.
void NotesItem::setReaders(const Value& on) {
  const bool wanted = on.boolean();
  const quint16 type = item().type();
  if (type == itemtype::RichText) return;  // as with the summary: it cannot be one
  if (wanted && type != itemtype::Text && type != itemtype::TextList)
    throw RuntimeError(err::TypeMismatch, QStringLiteral("%1: the item \"%2\" holds no text, so no readers")
                                              .arg(open_->database->place.path, item().name.left(64)));
  if (wanted) setFlag(itemflag::Authors, false);
  if (wanted || (item().flags & itemflag::Readers)) setFlag(itemflag::Names, wanted);
  setFlag(itemflag::Readers, wanted);
}

}  // namespace lens
