#include "command/document_walk.h"

#include "command/command_table.h"
#include "command/command_text.h"
#include "command/text_output.h"
#include "embedded/checks/note_walk.h"
#include "embedded/format/packed_note.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kAll = 0;

using Visit = std::function<void(const NotesDocument&)>;

// Of a view or a collection of documents.
template <class Documents>
void walkThrough(CommandCall& call, const Documents& documents, qint64 count, const Visit& visit) {
  qint64 done = 0;
  for (NotesDocument document = documents.firstDocument(); document;
       document = documents.nextDocument(document)) {
    call.console.progress(call.arguments.first(), done++, count);
    visit(document);
  }
}

void walkAll(CommandCall& call, const NotesDatabase& database, const Visit& visit) {
  const NotesNoteCollection notes = database.createNoteCollection(false);
  notes.select(u"SELECTDOCUMENTS"_s, true);
  notes.buildCollection();
  const auto count = qint64(notes.count());
  qint64 done = 0;
  for (QString id = notes.firstNoteId(); !id.isEmpty(); id = notes.nextNoteId(id)) {
    call.console.progress(call.arguments.first(), done++, count);
    // What was deleted since the walk began is passed over.
    if (const NotesDocument document = database.documentById(id)) visit(document);
  }
  if (!call.doors.workspace) return;
  const std::shared_ptr<Database> store = openStore(call.doors, call.name, call.arguments.first());
  qint64 readable = 0;
  store->notes().scanPacked(noteclass::Document, [&](const PackedNote&) { return ++readable > 0; });
  requireNothingDamaged(call, *store, readable);
}

NotesView viewOf(const CommandCall& call, const NotesDatabase& database) {
  const NotesView view = database.view(call.value(u"view"));
  if (!view)
    throw RuntimeError(
        enginefault::UnknownNote,
        CommandText::tr("%1: there is no view \"%2\"").arg(call.arguments.first(), call.value(u"view")));
  return view;
}

}  // namespace

// Somebody may have saved or deleted documents meanwhile, so a wrong count alone is no proof.
void requireNothingDamaged(const CommandCall& call, const Database& store, qint64 readable) {
  if (store.notes().noteCount(noteclass::Document) <= readable) return;
  qint64 damaged = 0;
  walkNotes(
      store, [](const Note&) { return true; }, {}, [&](NoteId, const QString&) { return ++damaged > 0; });
  requireNothingLeftOut(call, damaged);
}

void requireNothingLeftOut(const CommandCall& call, qint64 damaged) {
  if (damaged > 0)
    throw RuntimeError(enginefault::Damaged,
                       CommandText::tr("%1: %2 damaged and left out (\"integrity\" tells more)")
                           .arg(call.arguments.first(),
                                counted(damaged, CommandText::tr("note is"), CommandText::tr("notes are"))));
}

bool choosesDocuments(const CommandCall& call) {
  const int given = call.has(u"view") + call.has(u"formula") + call.has(u"search");
  if (given > 1) throw WrongUse(CommandText::tr("--view, --formula and --search exclude each other"));
  return given == 1;
}

void walkDocuments(CommandCall& call, const NotesDatabase& database, const Visit& visit) {
  if (!choosesDocuments(call)) return walkAll(call, database, visit);
  if (call.has(u"view")) return walkThrough(call, viewOf(call, database), 0, visit);
  const NotesDocumentCollection found = call.has(u"formula")
                                            ? database.search(call.value(u"formula"), kAll)
                                            : database.fullTextSearch(call.value(u"search"), kAll);
  walkThrough(call, found, qint64(found.count()), visit);
}

}  // namespace lens
