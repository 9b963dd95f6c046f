#include "command/document_walk.h"

#include "command/command_table.h"
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
}

NotesView viewOf(const CommandCall& call, const NotesDatabase& database) {
  const NotesView view = database.view(call.value(u"view"));
  if (!view)
    throw RuntimeError(enginefault::UnknownNote,
                       u"%1: there is no view \"%2\""_s.arg(call.arguments.first(), call.value(u"view")));
  return view;
}

}  // namespace

bool choosesDocuments(const CommandCall& call) {
  const int given = call.has(u"view") + call.has(u"formula") + call.has(u"search");
  if (given > 1) throw WrongUse(u"--view, --formula and --search exclude each other"_s);
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
