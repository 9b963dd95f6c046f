#include "bulk/copy_move.h"

#include "bulk/field_replacement.h"
#include "bulk/run_steps.h"
#include "bulk/run_texts.h"
#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/exact_texts.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

// A failure ends the steps and is told under the operation's name.
template <class Steps>
void toldAs(Host& host, const QString& title, Steps&& steps) {
  try {
    steps();
  } catch (const RuntimeError& error) {
    host.messageBox(error.description() + exact::kInLineColon, box::Critical, title);
  }
}

}  // namespace

// What the loop over the entries has to know, and in what a move's loop differs from a copy's.
struct CopyMove::Operation {
  enum class Kind { Copy, Move };
  Kind kind;
  QString traceItem;
  QString stamp;
  NotesDatabase source, target;
};

CopyMove::CopyMove(ReplicDesk& desk) : desk_(desk) {
  desk_.window.cmdCopy->click = [this] { cmdCopy_Click(); };
  desk_.window.cmdMoveDocs->click = [this] { cmdMoveDocs_Click(); };
}

void CopyMove::cmdCopy_Click() {
  const ReplicRun run(desk_.window);
  desk_.state.gStopFlag = false;
  const QString stamp = timeStamp();
  toldAs(desk_.host, u"in Copy"_s, [&] { copyDocuments(stamp); });
  desk_.host.setPointer(pointer::Default);
}

void CopyMove::cmdMoveDocs_Click() {
  const ReplicRun run(desk_.window);
  desk_.state.gStopFlag = false;
  toldAs(desk_.host, u"in Move"_s, [&] { moveDocuments(); });
  desk_.host.setPointer(pointer::Default);
}

// Everything is chosen before anything is opened.
void CopyMove::copyDocuments(const QString& stamp) {
  const FrmReplic& window = desk_.window;
  const QString title = u"Copy Docs"_s;
  if (window.lstViewNames->listCount() == 0) return;
  if (!requireChosen(desk_, *window.lstViewNames, exact::kChooseView, title)) return;
  if (!requireChosen(desk_, *window.lstDBNames, exact::kChooseSource, title)) return;
  if (!requireChosen(desk_, *window.lstDBNamesDest, exact::kChooseTarget, title)) return;
  desk_.host.setPointer(pointer::ArrowHourglass);
  desk_.state.gDbPath = window.lstDBNames->text();
  const NotesDatabase source = openListedSource(desk_, desk_.state.gDbPath);
  desk_.state.gDestDbPath = window.lstDBNamesDest->text();
  if (desk_.state.gDestDbPath.isEmpty()) return refuse(desk_, exact::kChooseTarget, title);
  const NotesDatabase target = openTarget();
  readViewNote(source);
  const NotesView view = source.view(window.lstViewNames->text());
  copyEntries({Operation::Kind::Copy, u"qvCopiedFromAt"_s, stamp, source, target}, view.allEntries());
  window.txtDocsSelected->setText(numberText(view.allEntries().count()));
  endRunWithSound(desk_);
}

// The source is opened before the target is looked at, so a source that cannot be opened is told first.
void CopyMove::moveDocuments() {
  const FrmReplic& window = desk_.window;
  const QString title = u"Move Docs"_s;
  if (window.lstViewNames->listCount() == 0) return;
  const QString stamp = timeStamp();
  if (!requireChosen(desk_, *window.lstViewNames, exact::kChooseView, title)) return;
  if (!requireChosen(desk_, *window.lstDBNames, exact::kChooseSource, title)) return;
  desk_.host.setPointer(pointer::ArrowHourglass);
  desk_.state.gDbPath = window.lstDBNames->text();
  const NotesDatabase source = openListedSource(desk_, desk_.state.gDbPath);
  if (!requireChosen(desk_, *window.lstDBNamesDest, exact::kChooseTarget, title)) return;
  desk_.state.gDestDbPath = window.lstDBNamesDest->text();
  const NotesDatabase target = openTarget();
  readViewNote(source);
  const NotesView view = source.view(window.lstViewNames->text());
  const NotesViewEntryCollection entries = view.allEntries();
  copyEntries({Operation::Kind::Move, u"zpMovedFromAt"_s, stamp, source, target}, entries);
  // Also what a stop left uncopied. What came into the view since then stays.
  entries.removeAll(true);
  window.txtDocsSelected->setText(numberText(entries.count()));
  endRunWithSound(desk_);
}

// The same on every copy of a run. The time is written in full at midnight too.
QString CopyMove::timeStamp() {
  const QDateTime now = desk_.host.now();
  const Regional& regional = desk_.host.regional();
  return regional.text(DateTime{now.date(), QTime()}) + u' ' + regional.timeText(now.time());
}

NotesDatabase CopyMove::openTarget() {
  return desk_.state.gSession.database(namedServer(desk_.window.lstDesignServer->text()),
                                       desk_.state.gDestDbPath);
}

// Nothing is done with the note: a source whose design cannot be read ends the run before the first copy.
void CopyMove::readViewNote(const NotesDatabase& source) {
  const NotesNoteCollection views = source.createNoteCollection(false);
  views.select(u"SELECTVIEWS"_s, true);
  views.buildCollection();
  source.documentById(views.firstNoteId());
}

void CopyMove::copyEntries(const Operation& operation, const NotesViewEntryCollection& entries) {
  forEachDocument(desk_, entries, [&](const NotesDocument& document) { copyDocument(operation, document); });
}

// The copy is in the target before it is changed; a change that fails leaves it there without its trace.
void CopyMove::copyDocument(const Operation& operation, const NotesDocument& document) {
  const NotesDocument copy = document.copyToDatabase(operation.target);
  // A copy of nothing ends a copy run with a failure; a move passes over it, and removes its source.
  if (operation.kind == Operation::Kind::Move && copy.isNothing()) return;
  if (desk_.window.chkFields->value() == 1) replaceFields(operation, document, copy);
  const QString server = operation.source.server();
  const QString trace = server + u"!!" + operation.source.filePath() + u" at: " + operation.stamp;
  copy.replaceItemValue(operation.traceItem, trace);
  copy.save(true, false, true);
}

// The marks are read anew for each document, and so are the texts, which may be changed while the loop
// yields.
void CopyMove::replaceFields(const Operation& operation, const NotesDocument& document,
                             const NotesDocument& copy) {
  const FrmReplic& window = desk_.window;
  const ListBox& rows = *window.fldList;
  for (int row = 0; row < rows.listCount(); ++row) {
    if (!rows.selected(row)) continue;
    const std::optional<QString> name = itemNameOfRow(rows.list(row));
    if (!name) continue;
    // A move asks the document for the item without a name too, which none has.
    if (operation.kind == Operation::Kind::Copy && trimBlanks(*name).isEmpty()) continue;
    if (!copy.hasItem(*name)) continue;
    replaceInCopiedItem(copy, document, *name, {window.txtFind->text(), window.txtReplace->text()},
                        desk_.host.regional());
  }
}

}  // namespace lens
