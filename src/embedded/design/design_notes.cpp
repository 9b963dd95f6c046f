#include "embedded/design/design_notes.h"

#include "embedded/format/case_key.h"

namespace lens {
namespace {

bool sameTitle(QStringView a, QStringView b) {
  return sameCaseKey(a.trimmed(), b.trimmed());
}

QString titleOf(const Database& database, NoteId noteId) {
  Item item;
  if (!database.notes().readItem(noteId, u"$TITLE", item)) return {};
  const Value values = itemValues(item);
  if (!values.isArray() || values.upperBound() < 0 || values.at(0).kind() != Value::Kind::Text) return {};
  return values.at(0).text();
}

}  // namespace

bool titleAnswersTo(QStringView title, QStringView name) {
  if (name.trimmed().isEmpty()) return false;
  if (sameTitle(title, name)) return true;
  for (const QStringView part : title.split(u'|'))
    if (sameTitle(part, name)) return true;
  return false;
}

NoteId findDesignNote(const Database& database, quint16 classMask, QStringView name) {
  const quint16 designMask = classMask & ~noteclass::Document;
  if (name.trimmed().isEmpty() || designMask == 0) return NoteId();
  for (const NoteSummary& note : database.notes().list(designMask)) {
    try {
      if (titleAnswersTo(titleOf(database, note.id), name)) return note.id;
    } catch (const RuntimeError&) {
      // A damaged note must not hide the ones behind it.
    }
  }
  return NoteId();
}

bool isSpecialNoteId(NoteId noteId) {
  return noteId >= NoteId(0xFFFF0000u);
}

NoteId resolveSpecialNoteId(const Database& database, NoteId noteId) {
  const quint16 noteClass = noteId.value() & 0xFFFF;
  if (noteClass == 0) return NoteId();
  const bool many = noteClass == noteclass::Form || noteClass == noteclass::View;
  return database.notes().specialNote(many ? noteClass | noteclass::Default : noteClass);
}

}  // namespace lens
