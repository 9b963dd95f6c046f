#include "client/note_texts.h"

#include <QFileInfo>

#include "embedded/design/note_kinds.h"
#include "embedded/formula/compiled/stored_formula.h"
#include "embedded/richtext/rich_text.h"
#include "notes/item_types.h"
#include "notes/literals.h"

namespace lens {
namespace {

struct KindName {
  NoteKind kind;
  const char* name;
};
// In the order in which they are looked for; the kinds that hold the rest of a class come last.
constexpr KindName kKindNames[] = {
    {NoteKind::Acl, QT_TRANSLATE_NOOP("QObject", "Access control list")},
    {NoteKind::Actions, QT_TRANSLATE_NOOP("QObject", "Shared actions")},
    {NoteKind::Agents, QT_TRANSLATE_NOOP("QObject", "Agent")},
    {NoteKind::DatabaseScript, QT_TRANSLATE_NOOP("QObject", "Database script")},
    {NoteKind::DataConnections, QT_TRANSLATE_NOOP("QObject", "Data connection")},
    {NoteKind::Folders, QT_TRANSLATE_NOOP("QObject", "Folder")},
    {NoteKind::Forms, QT_TRANSLATE_NOOP("QObject", "Form")},
    {NoteKind::Framesets, QT_TRANSLATE_NOOP("QObject", "Frameset")},
    {NoteKind::HelpAbout, QT_TRANSLATE_NOOP("QObject", "About document")},
    {NoteKind::HelpIndex, QT_TRANSLATE_NOOP("QObject", "Help index")},
    {NoteKind::HelpUsing, QT_TRANSLATE_NOOP("QObject", "Using document")},
    {NoteKind::Icon, QT_TRANSLATE_NOOP("QObject", "Icon")},
    {NoteKind::ImageResources, QT_TRANSLATE_NOOP("QObject", "Image resource")},
    {NoteKind::JavaResources, QT_TRANSLATE_NOOP("QObject", "Applet resource")},
    {NoteKind::Navigators, QT_TRANSLATE_NOOP("QObject", "Navigator")},
    {NoteKind::Outlines, QT_TRANSLATE_NOOP("QObject", "Outline")},
    {NoteKind::Pages, QT_TRANSLATE_NOOP("QObject", "Page")},
    {NoteKind::ReplicationFormulas, QT_TRANSLATE_NOOP("QObject", "Replication formula")},
    {NoteKind::ScriptLibraries, QT_TRANSLATE_NOOP("QObject", "Script library")},
    {NoteKind::SharedFields, QT_TRANSLATE_NOOP("QObject", "Shared field")},
    {NoteKind::StyleSheets, QT_TRANSLATE_NOOP("QObject", "Style sheet")},
    {NoteKind::Subforms, QT_TRANSLATE_NOOP("QObject", "Subform")},
    {NoteKind::Views, QT_TRANSLATE_NOOP("QObject", "View")},
    {NoteKind::MiscCode, QT_TRANSLATE_NOOP("QObject", "Agent or script")},
    {NoteKind::MiscFormat, QT_TRANSLATE_NOOP("QObject", "Form")},
    {NoteKind::MiscIndex, QT_TRANSLATE_NOOP("QObject", "View")},
};

QString kindOf(const Note& note) {
  const quint16 noteClass = noteclass::base(note.header.noteClass);
  if (noteClass == noteclass::Design) return QObject::tr("Design collection");
  const QString flags = note.text(u"$Flags");
  // Kinds that collections of notes do not tell apart.
  if (noteClass == noteclass::Form && flags.contains(u'g')) return QObject::tr("File resource");
  if (noteClass == noteclass::View && flags.contains(u'^')) return QObject::tr("Shared column");
  const NoteKinds kinds = kindsOfDesign(noteClass, flags);
  for (const KindName& known : kKindNames)
    if (kinds.has(known.kind)) return QObject::tr(known.name);
  return QObject::tr("Class %1").arg(note.header.noteClass, 4, 16, QChar(u'0'));
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
  return QObject::tr("(%1 bytes)").arg(item.data().size());
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

QString realLine(const RealDatabase& real) {
  return QObject::tr("read-only copy of %1, %2 of %3 notes read")
      .arg(QFileInfo(real.source).fileName(), QString::number(real.notesRead),
           QString::number(real.notesFound));
}

}  // namespace lens
