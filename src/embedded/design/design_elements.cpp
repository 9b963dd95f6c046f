#include "embedded/design/design_elements.h"

#include "embedded/design/profiles.h"
#include "embedded/views/design_notes.h"

namespace lens {
namespace {

QString textItem(const Database& database, quint32 noteId, QStringView name) {
  Item item;
  if (!database.readItem(noteId, name, item)) return {};
  Note only;
  only.items.push_back(std::move(item));
  return only.text(name);
}

NoteKinds kindsOf(const Database& database, const NoteSummary& note) {
  if (noteclass::base(note.noteClass) != noteclass::Document)
    return kindsOfDesign(note.noteClass, textItem(database, note.id, u"$Flags"));
  Item name;
  const bool profile = database.readItem(note.id, u"$Name", name) && isProfileName(name);
  return {profile ? NoteKind::Profiles : NoteKind::Documents};
}

template <class Visit>
void eachReadable(const QVector<NoteSummary>& notes, const Visit& visit) {
  for (const NoteSummary& note : notes) {
    try {
      if (!visit(note)) return;
    } catch (const RuntimeError& error) {
      if (error.number() != enginefault::Damaged) throw;
    }
  }
}

}  // namespace

QVector<quint32> notesOfKinds(const Database& database, NoteKinds kinds) {
  QVector<quint32> found;
  if (kinds.isEmpty()) return found;
  eachReadable(database.list(classesOf(kinds)), [&](const NoteSummary& note) {
    if (kindsOf(database, note).meets(kinds)) found.push_back(note.id);
    return true;
  });
  return found;
}

quint32 findDesignElement(const Database& database, NoteKinds kinds, QStringView name) {
  quint32 found = 0;
  if (name.trimmed().isEmpty()) return found;
  eachReadable(database.list(classesOf(kinds) & ~noteclass::Document), [&](const NoteSummary& note) {
    if (titleAnswersTo(textItem(database, note.id, u"$TITLE"), name) && kindsOf(database, note).meets(kinds))
      found = note.id;
    return found == 0;
  });
  return found;
}

}  // namespace lens
