// documents: the documents of a database, of a view, of a formula or of a full-text query.
#include "command/command_functions.h"
#include "command/document_lines.h"
#include "command/document_walk.h"

namespace lens {
namespace {

// All of a database of the engine, as they lie in its file: nothing is kept, and most of a note is never
// looked at.
void scanDocuments(CommandCall& call, const Database& store, DocumentLines& lines) {
  qint64 done = 0;
  constexpr qint64 kBetween = 256;  // a look at the clock for each document would cost more than the document
  store.notes().scanPacked(noteclass::Document, [&](const PackedNote& note) {
    if (done++ % kBetween == 0) call.console.progress(call.arguments.first(), 0, 0);
    if (!isProfile(note)) lines.add(note);
    return true;
  });
  requireNothingDamaged(call, store, done);
}

}  // namespace

int listDocuments(CommandCall& call) {
  const bool chosen = choosesDocuments(call);
  const QString& name = call.arguments.first();
  DocumentLines lines(call.console.out(), call.json(), call.doors.regional);
  if (call.doors.workspace && !chosen)
    scanDocuments(call, *openStore(call.doors, call.name, name), lines);
  else
    walkDocuments(call, openDatabase(call.doors, name),
                  [&](const NotesDocument& document) { lines.add(document); });
  return exitcode::Done;
}

}  // namespace lens
