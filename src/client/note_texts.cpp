#include "client/note_texts.h"

#include "embedded/formula/compiled/stored_formula.h"
#include "embedded/richtext/rich_text.h"
#include "notes/item_types.h"
#include "notes/literals.h"

namespace lens {
namespace {

QString kindOf(const Note& note) {
  switch (noteclass::base(note.header.noteClass)) {
    case noteclass::About:
      return u"About document"_s;
    case noteclass::Form:
      return u"Form"_s;
    case noteclass::View:
      return note.text(u"$Flags").contains(u'F') ? u"Folder"_s : u"View"_s;
    case noteclass::Icon:
      return u"Icon"_s;
    case noteclass::Design:
      return u"Design collection"_s;
    case noteclass::Acl:
      return u"Access control list"_s;
    case noteclass::HelpIndex:
      return u"Help index"_s;
    case noteclass::Using:
      return u"Using document"_s;
    case noteclass::Filter:
      return u"Agent or script"_s;
    case noteclass::SharedField:
      return u"Shared field"_s;
    case noteclass::ReplicationFormula:
      return u"Replication formula"_s;
    default:
      return u"Class %1"_s.arg(note.header.noteClass, 4, 16, QChar(u'0'));
  }
}

bool isText(const Item& item) {
  return item.type() == itemtype::Text || item.type() == itemtype::TextList;
}

QString firstReadableText(const Note& note) {
  for (const Item& item : note.items) {
    if (!isText(item) || item.name.startsWith(u'$') || sameItemName(item.name, u"Form")) continue;
    const QString text = note.text(item.name);
    if (!text.trimmed().isEmpty()) return text;
  }
  return {};
}

QString subjectOf(const Note& note, bool isDocument) {
  const QString own = isDocument ? note.text(u"Subject") : note.text(u"$TITLE");
  return own.trimmed().isEmpty() ? firstReadableText(note) : own;
}

QString sizeText(const Item& item) {
  return u"(%1 bytes)"_s.arg(item.data().size());
}

}  // namespace

NoteTexts textsOf(const Note& note, const Regional& regional) {
  const bool isDocument = noteclass::base(note.header.noteClass) == noteclass::Document;
  const DateTime modified = localOf(note.header.modified);
  NoteTexts texts;
  texts.form = isDocument ? note.text(u"Form") : kindOf(note);
  texts.subject = subjectOf(note, isDocument).left(500).simplified();
  if (modified.date.isValid() || modified.time.isValid()) texts.modified = regional.text(modified);
  return texts;
}

QString noteIdText(NoteId noteId) {
  return u"%1"_s.arg(noteId.value(), 8, 16, QChar(u'0')).toUpper();
}

QString itemTypeName(const Item& item) {
  return itemTypeName(objectModelType(item));
}

QString itemText(const Item& item, const Regional& regional) {
  if (item.type() == itemtype::RichText) return RichText::fromBytes(item.data()).plainText();
  QString source;
  if (item.type() == itemtype::Formula && formula::formulaSource(item, source)) return source;
  const Value value = itemValues(item);
  if (value.isEmpty()) return item.data().isEmpty() || isText(item) ? QString() : sizeText(item);
  if (!value.isArray()) return textOf(value, regional);
  QStringList lines;
  for (const Value& entry : value.values()) lines += textOf(entry, regional);
  return lines.join(u'\n');
}

}  // namespace lens
