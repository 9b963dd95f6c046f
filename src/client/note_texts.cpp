#include "client/note_texts.h"

#include "embedded/richtext/rich_text.h"
#include "embedded/views/formula_source.h"
#include "notes/item_types.h"

namespace lens {
namespace {

QString kindOf(const Note& note) {
  switch (noteclass::base(note.header.noteClass)) {
    case noteclass::About:
      return QStringLiteral("About document");
    case noteclass::Form:
      return QStringLiteral("Form");
    case noteclass::View:
      return note.text(u"$Flags").contains(u'F') ? QStringLiteral("Folder") : QStringLiteral("View");
    case noteclass::Icon:
      return QStringLiteral("Icon");
    case noteclass::Design:
      return QStringLiteral("Design collection");
    case noteclass::Acl:
      return QStringLiteral("Access control list");
    case noteclass::HelpIndex:
      return QStringLiteral("Help index");
    case noteclass::Using:
      return QStringLiteral("Using document");
    case noteclass::Filter:
      return QStringLiteral("Agent or script");
    case noteclass::SharedField:
      return QStringLiteral("Shared field");
    case noteclass::ReplicationFormula:
      return QStringLiteral("Replication formula");
    default:
      return QStringLiteral("Class %1").arg(note.header.noteClass, 4, 16, QChar(u'0'));
  }
}

bool isText(const Item& item) {
  return item.type() == itemtype::Text || item.type() == itemtype::TextList;
}

QString firstText(const Note& note) {
  for (const Item& item : note.items) {
    if (!isText(item) || item.name.startsWith(u'$') || sameItemName(item.name, u"Form")) continue;
    const QString text = note.text(item.name);
    if (!text.trimmed().isEmpty()) return text;
  }
  return {};
}

QString subjectOf(const Note& note, bool isDocument) {
  const QString own = isDocument ? note.text(u"Subject") : note.text(u"$TITLE");
  return own.trimmed().isEmpty() ? firstText(note) : own;
}

QString sizeText(const Item& item) {
  return QStringLiteral("(%1 bytes)").arg(item.data().size());
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

QString noteIdText(quint32 noteId) {
  return QStringLiteral("%1").arg(noteId, 8, 16, QChar(u'0')).toUpper();
}

QString itemTypeName(const Item& item) {
  const int code = objectModelType(item);
  for (const ItemTypeRow& row : itemTypeTable())
    if (row.code == code) return QString::fromLatin1(row.sentence).section(u' ', 0, 0);
  return QString::number(code);
}

QString itemText(const Item& item, const Regional& regional) {
  if (item.type() == itemtype::RichText) return RichText::fromBytes(item.data()).plainText();
  QString source;
  if (item.type() == itemtype::Formula && formulaSource(item, source)) return source;
  const Value value = itemValues(item);
  if (value.isEmpty()) return item.data().isEmpty() || isText(item) ? QString() : sizeText(item);
  if (!value.isArray()) return textOf(value, regional);
  QStringList lines;
  for (const Value& entry : value.values()) lines += textOf(entry, regional);
  return lines.join(u'\n');
}

}  // namespace lens
