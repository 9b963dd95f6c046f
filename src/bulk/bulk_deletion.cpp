#include "bulk/bulk_deletion.h"

#include "bulk/run_steps.h"
#include "bulk/run_texts.h"
#include "notes/literals.h"
#include "notes/numbers.h"

namespace lens {

BulkDeletion::BulkDeletion(ReplicDesk& desk) : desk_(desk) {
  desk_.window.cmdDelDocs->click = [this] { cmdDelDocs_Click(); };
}

void BulkDeletion::cmdDelDocs_Click() {
  const FrmReplic& window = desk_.window;
  Globals& state = desk_.state;
  state.gDbPath = window.lstDBNames->text();
  window.txtProc->setText(QString());
  if (state.gDbPath.isEmpty()) return refuse();
  state.gDb = openListedSource(desk_, state.gDbPath);
  if (window.lstViewNames->listIndex() < 0) return refuse();
  const NotesView view = state.gDb.view(window.lstViewNames->text());
  const NotesViewEntryCollection entries = view.allEntries();
  const int reply =
      desk_.host.messageBox(u"Are you sure to delete the documents from: "_s + state.gDb.filePath() + u" ?",
                            box::OkCancel, u"Remove documents"_s);
  if (reply == answer::Cancel) return;
  entries.removeAll(true);
  window.txtDocsSelected->setText(numberText(view.allEntries().count()));
  desk_.routines.playDoneSound();
  state.gDb.release();
}

// The same text stands for a missing database.
void BulkDeletion::refuse() {
  desk_.host.messageBox(exact::kChooseViewToEmpty, box::Information, u"Delete documents from view"_s);
}

void BulkDeletion::removeDatabases() {
  const ListBox& list = *desk_.window.lstDBNames;
  Statements step;
  for (int row = 0; row < list.listCount(); ++row)
    if (list.selected(row) && !removeDatabase(step, row)) return;
  desk_.routines.playDoneSound();
  desk_.state.gDb.release();
  desk_.databases.GetDbs(desk_.window.lstServer->text(), u"lstDBNames"_s, u"frmReplic"_s);
}

// From the first removal on failures are passed over, until one is told: a later database that cannot be
// opened has no name to ask for. What was not asked for is never removed.
bool BulkDeletion::removeDatabase(Statements& step, int row) {
  ListBox& list = *desk_.window.lstDBNames;
  Globals& state = desk_.state;
  state.gDbPath = list.list(row);
  state.gDb.release();  // or the one before would be meant in place of one that cannot be opened
  step([&] { state.gDb = openListedSource(desk_, state.gDbPath); });
  int reply = answer::Ok;
  const bool asked = step([&] {
    reply = desk_.host.messageBox(u"Are you sure to delete the Database: "_s + state.gDb.filePath() + u" ?",
                                  box::OkCancel, u"Remove Database"_s);
  });
  if (reply == answer::Cancel) return false;
  Continue& removal = step.switchTrapOff();
  if (asked) {
    removal.clear();
    removal([&] { state.gDb.remove(); });
  }
  if (removal.number() > 0) {
    desk_.host.messageBox(removal.description(), box::Critical, u"Remove DB"_s);
    return false;
  }
  list.setSelected(row, !list.selected(row));
  list.refresh();
  return true;
}

}  // namespace lens
