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
  const char16_t* name;
};
// In the order in which they are looked for; the kinds that hold the rest of a class come last.
constexpr KindName kKindNames[] = {
    {NoteKind::Acl, u"Access control list"},
    {NoteKind::Actions, u"Shared actions"},
    {NoteKind::Agents, u"Agent"},
    {NoteKind::DatabaseScript, u"Database script"},
    {NoteKind::DataConnections, u"Data connection"},
    {NoteKind::Folders, u"Folder"},
    {NoteKind::Forms, u"Form"},
    {NoteKind::Framesets, u"Frameset"},
    {NoteKind::HelpAbout, u"About document"},
    {NoteKind::HelpIndex, u"Help index"},
    {NoteKind::HelpUsing, u"Using document"},
    {NoteKind::Icon, u"Icon"},
    {NoteKind::ImageResources, u"Image resource"},
    {NoteKind::JavaResources, u"Applet resource"},
    {NoteKind::Navigators, u"Navigator"},
    {NoteKind::Outlines, u"Outline"},
    {NoteKind::Pages, u"Page"},
    {NoteKind::ReplicationFormulas, u"Replication formula"},
    {NoteKind::ScriptLibraries, u"Script library"},
    {NoteKind::SharedFields, u"Shared field"},
    {NoteKind::StyleSheets, u"Style sheet"},
    {NoteKind::Subforms, u"Subform"},
    {NoteKind::Views, u"View"},
    {NoteKind::MiscCode, u"Agent or script"},
    {NoteKind::MiscFormat, u"Form"},
    {NoteKind::MiscIndex, u"View"},
};

QString kindOf(const Note& note) {
  const quint16 noteClass = noteclass::base(note.header.noteClass);
  if (noteClass == noteclass::Design) return u"Design collection"_s;
  const QString flags = note.text(u"$Flags");
  // Kinds that collections of notes do not tell apart.
  if (noteClass == noteclass::Form && flags.contains(u'g')) return u"File resource"_s;
  if (noteClass == noteclass::View && flags.contains(u'^')) return u"Shared column"_s;
  const NoteKinds kinds = kindsOfDesign(noteClass, flags);
  for (const KindName& known : kKindNames)
    if (kinds.has(known.kind)) return QString::fromUtf16(known.name);
  return u"Class %1"_s.arg(note.header.noteClass, 4, 16, QChar(u'0'));
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

QString realLine(const RealDatabase& real) {
  return QObject::tr("read-only copy of %1, %2 of %3 notes read")
      .arg(QFileInfo(real.source).fileName())
      .arg(real.notesRead)
      .arg(real.notesFound);
}

}  // namespace lens
