#include "embedded/model/notes_item.h"

#include "embedded/model/notes_rich_text_item.h"
#include "embedded/richtext/rich_text.h"
#include "embedded/views/formula_source.h"

namespace lens {

Value NotesItem::at(const std::shared_ptr<OpenNote>& note, qsizetype place) {
  if (note->note.items[place].type() == itemtype::RichText) return newObject<NotesRichTextItem>(note, place);
  return newObject<NotesItem>(note, place);
}

const MemberTable& NotesItem::itemMembers() {
  static const MemberTable table{
      property<&NotesItem::name>(u"Name"),           property<&NotesItem::text>(u"Text"),
      property<&NotesItem::type>(u"Type"),           property<&NotesItem::values>(u"Values"),
      property<&NotesItem::isSummary>(u"ISSUMMARY"), property<&NotesItem::isEncrypted>(u"ISENCRYPTED"),
      property<&NotesItem::isSigned>(u"ISSIGNED"),   property<&NotesItem::isProtected>(u"ISPROTECTED"),
  };
  return table;
}

const MemberTable& NotesItem::members() const {
  return itemMembers();
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

}  // namespace lens
