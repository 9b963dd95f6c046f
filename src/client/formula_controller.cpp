#include "client/formula_controller.h"

#include "client/client_controls.h"
#include "client/database_controller.h"
#include "client/document_reader.h"
#include "client/formula_window.h"
#include "client/note_texts.h"
#include "client/view_pane.h"

namespace lens {

FormulaController::FormulaController(ClientControls& controls, std::shared_ptr<Workspace> workspace,
                                     DatabaseController& databases, ViewPane& views)
    : controls_(controls), workspace_(std::move(workspace)), databases_(databases), views_(views) {
  connect(controls.showFormulaAction, &QAction::triggered, this, &FormulaController::showOfNote);
  connect(controls.showViewFormulasAction, &QAction::triggered, this, [this] { show(currentView(), 0); });
  for (QMenu* menu : {controls.documentMenu, controls.viewMenu})
    connect(menu, &QMenu::aboutToShow, this, &FormulaController::offer);
  connect(&databases, &DatabaseController::pageShown, this, &FormulaController::offer);
  connect(&views, &ViewPane::changed, this, &FormulaController::offer);
  controls.reader->addItemAction(*controls.showFormulaAction);
  controls.documentTable->addAction(controls.showFormulaAction);
  controls.viewList->addAction(controls.showViewFormulasAction);
  for (QWidget* list :
       {static_cast<QWidget*>(controls.documentTable), static_cast<QWidget*>(controls.viewList)})
    list->setContextMenuPolicy(Qt::ActionsContextMenu);
  offer();
}

NoteId FormulaController::currentNote() const {
  if (!databases_.database()) return {};
  const NoteId open = workspace_->client().document();
  return open.isNull() ? views_.currentDocument() : open;
}

// Null where the list of views tells another set of notes.
NoteId FormulaController::currentView() const {
  const ViewEntry* const entry = databases_.database() ? views_.currentEntry() : nullptr;
  return entry ? entry->noteId : NoteId();
}

void FormulaController::offer() {
  controls_.showFormulaAction->setEnabled(!currentNote().isNull());
  controls_.showViewFormulasAction->setEnabled(!currentView().isNull());
}

void FormulaController::showOfNote() {
  const bool isOpen = !workspace_->client().document().isNull();
  show(currentNote(), isOpen ? controls_.reader->currentItem() : 0);
}

void FormulaController::show(NoteId noteId, qsizetype itemPlace) {
  const std::shared_ptr<Database>& database = databases_.database();
  if (!database || noteId.isNull()) return;
  controls_.clearError();
  try {
    Note note;
    if (!database->notes().read(noteId, note))
      throw RuntimeError(enginefault::UnknownNote,
                         tr("%1: there is no note %2 any more; F5 refreshes the view")
                             .arg(database->path(), noteIdText(noteId)));
    const NoteTexts texts = textsOf(note, workspace_->regional());
    if (!window_) window_ = new FormulaWindow(&controls_.window);
    window_->showNote(
        tr("%1 \"%2\", note ID %3,")
            .arg(texts.form, texts.subject.isEmpty() ? tr("(no title)") : texts.subject, noteIdText(noteId)),
        formulasOf(note), itemPlace);
  } catch (const RuntimeError& error) {
    controls_.showError(error.description());
  }
}

}  // namespace lens
