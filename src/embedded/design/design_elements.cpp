#include "embedded/design/design_elements.h"

#include <algorithm>

#include "embedded/design/design_notes.h"
#include "embedded/format/packed_note.h"

namespace lens {
namespace {

QString textItem(const Database& database, NoteId noteId, QStringView name) {
  Item item;
  if (!database.notes().readItem(noteId, name, item)) return {};
  Note only;
  only.items.push_back(std::move(item));
  return only.text(name);
}

// Of a design note; documents are told apart while they are scanned.
NoteKinds kindsOf(const Database& database, const NoteSummary& note) {
  return kindsOfDesign(note.noteClass, textItem(database, note.id, u"$Flags"));
}

void addDocuments(const Database& database, NoteKinds kinds, QVector<NoteId>& found) {
  const bool documents = kinds.has(NoteKind::Documents);
  const bool profiles = kinds.has(NoteKind::Profiles);
  database.notes().scanPacked(noteclass::Document, [&](const PackedNote& note) {
    if (isProfile(note) ? profiles : documents) found.push_back(note.header.id);
    return true;
  });
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

QVector<NoteId> notesOfKinds(const Database& database, NoteKinds kinds) {
  QVector<NoteId> found;
  if (kinds.isEmpty()) return found;
  const quint16 classes = classesOf(kinds);
  eachReadable(database.notes().list(classes & ~noteclass::Document), [&](const NoteSummary& note) {
    if (kindsOf(database, note).meets(kinds)) found.push_back(note.id);
    return true;
  });
  if (classes & noteclass::Document) addDocuments(database, kinds, found);
  std::sort(found.begin(), found.end());
  return found;
}

NoteId findDesignElement(const Database& database, NoteKinds kinds, QStringView name) {
  NoteId found;
  if (name.trimmed().isEmpty()) return found;
  eachReadable(database.notes().list(classesOf(kinds) & ~noteclass::Document), [&](const NoteSummary& note) {
    if (titleAnswersTo(textItem(database, note.id, u"$TITLE"), name) && kindsOf(database, note).meets(kinds))
      found = note.id;
    return found.isNull();
  });
  return found;
}

NoteId findView(const Database& database, QStringView name) {
  return findDesignElement(database, kViewsAndFolders, name);
}

}  // namespace lens
