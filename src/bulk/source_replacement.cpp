#include "bulk/source_replacement.h"

#include "bulk/field_replacement.h"
#include "bulk/run_steps.h"
#include "bulk/run_texts.h"
#include "notes/literals.h"
#include "notes/numbers.h"

namespace lens {

SourceReplacement::SourceReplacement(ReplicDesk& desk) : desk_(desk) {
  desk_.window.cmdReplace->click = [this] { cmdReplace_Click(); };
}

// The boxes have the title of the move, though nothing moves here.
void SourceReplacement::cmdReplace_Click() {
  const ReplicRun run(desk_.window);
  const FrmReplic& window = desk_.window;
  desk_.state.gStopFlag = false;
  if (window.lstViewNames->listCount() == 0) return;
  const QString title = u"Move Docs"_s;
  if (!requireChosen(desk_, *window.lstViewNames, exact::kChooseView, title)) return;
  if (!requireChosen(desk_, *window.lstDBNames, exact::kChooseSource, title)) return;
  desk_.state.gDbPath = window.lstDBNames->text();
  const NotesDatabase source = openListedSource(desk_, desk_.state.gDbPath);
  const NotesView view = source.view(window.lstViewNames->text());
  const NotesViewEntryCollection entries = view.allEntries();
  forEachDocument(desk_, entries, [this](const NotesDocument& document) { replaceInDocument(document); });
  window.txtDocsSelected->setText(numberText(view.allEntries().count()));
  endRunWithSound(desk_);
}

// A row without a colon fails: what was replaced before it in the document is not saved then.
void SourceReplacement::replaceInDocument(const NotesDocument& document) {
  const FrmReplic& window = desk_.window;
  if (window.chkFields->value() != 1) return;
  const ListBox& rows = *window.fldList;
  bool changed = false;
  for (int row = 0; row < rows.listCount(); ++row) {
    if (!rows.selected(row)) continue;
    const QString name = requiredItemNameOfRow(rows.list(row));
    if (!document.hasItem(name)) continue;
    replaceInOwnItem(document, name, {window.txtFind->text(), window.txtReplace->text()},
                     desk_.host.regional());
    changed = true;
  }
  if (changed) document.save(true, false, true);
}

}  // namespace lens
