#include "client/view_entries.h"

#include <algorithm>

#include "client/note_texts.h"
#include "embedded/design/note_kinds.h"
#include "embedded/views/view_documents.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr quint16 kDesign = quint16(~(noteclass::Document | noteclass::Private | noteclass::Default));

QString storedText(const Database& database, NoteId noteId, QStringView name) {
  Item item;
  if (!database.notes().readItem(noteId, name, item)) return {};
  const Value value = itemValues(item);
  return value.isArray() && value.upperBound() >= 0 ? value.at(0).text() : QString();
}

// Name of a title "name|alias"; a view without one is told by its ID.
ViewEntry entryOf(const Database& database, NoteId noteId) {
  ViewEntry entry{ViewEntry::Kind::View, {}, noteId, {}};
  const QString id = noteIdText(noteId);
  try {
    entry.title = storedText(database, noteId, u"$TITLE").section(u'|', 0, 0).trimmed();
    if (storedText(database, noteId, u"$Flags").contains(u'F')) entry.kind = ViewEntry::Kind::Folder;
  } catch (const RuntimeError&) {
    entry.title = QObject::tr("%1 (damaged)").arg(id);
  }
  if (entry.title.isEmpty()) entry.title = QObject::tr("%1 (without a title)").arg(id);
  return entry;
}

// Navigators and shared columns are notes of the same class, and show no documents.
bool showsDocuments(const Database& database, NoteId noteId) {
  try {
    const QString flags = storedText(database, noteId, u"$Flags");
    return kindsOfDesign(noteclass::View, flags).meets({NoteKind::Views, NoteKind::Folders});
  } catch (const RuntimeError&) {
    return true;  // a damaged one is listed as such
  }
}

QVector<NoteId> idsOf(const QVector<NoteSummary>& notes) {
  QVector<NoteId> ids;
  ids.reserve(notes.size());
  for (const NoteSummary& note : notes) ids.push_back(note.id);
  return ids;
}

}  // namespace

QVector<ViewEntry> viewEntries(const Database& database) {
  QVector<ViewEntry> entries{{ViewEntry::Kind::AllDocuments, QObject::tr("All documents"), NoteId(), {}},
                             {ViewEntry::Kind::DesignNotes, QObject::tr("Design notes"), NoteId(), {}}};
  for (const NoteSummary& view : database.notes().list(noteclass::View))
    if (showsDocuments(database, view.id)) entries.push_back(entryOf(database, view.id));
  std::stable_sort(entries.begin() + 2, entries.end(), [](const ViewEntry& a, const ViewEntry& b) {
    return a.title.compare(b.title, Qt::CaseInsensitive) < 0;
  });
  return entries;
}

QVector<NoteId> documentsOf(Database& database, const ViewEntry& entry) {
  if (entry.kind == ViewEntry::Kind::Found) return entry.found;
  if (entry.kind == ViewEntry::Kind::AllDocuments) return idsOf(database.notes().list(noteclass::Document));
  if (entry.kind == ViewEntry::Kind::DesignNotes) return idsOf(database.notes().list(kDesign));
  Note view;
  if (!database.notes().read(entry.noteId, view))
    throw RuntimeError(
        enginefault::UnknownNote,
        QObject::tr("%1: the view \"%2\" is no longer there").arg(database.path(), entry.title));
  return viewDocuments(database, view);
}

}  // namespace lens
