#include "client/document_pane.h"

#include "client/client_controls.h"
#include "client/note_texts.h"
#include "client/panes.h"

namespace lens {
namespace {

constexpr NoteId kNone;

}  // namespace

DocumentPane::DocumentPane(ClientControls& controls, std::shared_ptr<Workspace> workspace)
    : controls_(controls), workspace_(std::move(workspace)) {
  giveKeys(*controls.closeDocumentAction, {Qt::Key_Escape}, *controls.reader);
  connect(controls.closeDocumentAction, &QAction::triggered, this, &DocumentPane::close);
  connect(controls.reader, &DocumentReader::closeRequested, this, &DocumentPane::close);
}

bool DocumentPane::open(NoteId noteId) {
  if (!database_ || noteId == kNone || !read(noteId)) return false;
  controls_.clearError();
  workspace_->client().showDocument(noteId);
  Q_EMIT opened();
  controls_.reader->focusItems();
  return true;
}

// Puts the document as it is stored now into the reader.
bool DocumentPane::read(NoteId noteId) {
  try {
    Note note;
    if (!database_->notes().read(noteId, note))
      throw RuntimeError(enginefault::UnknownNote,
                         tr("%1: there is no note %2 any more; F5 refreshes the view")
                             .arg(database_->path(), noteIdText(noteId)));
    controls_.reader->show(std::move(note), workspace_->regional());
  } catch (const RuntimeError& error) {
    controls_.showError(error.description());
    return false;
  }
  return true;
}

void DocumentPane::close() {
  workspace_->client().closeDocument();
}

void DocumentPane::clear() {
  controls_.reader->clear();
}

void DocumentPane::refresh() {
  const NoteId open = workspace_->client().document();
  if (open != kNone && !read(open)) close();
}

}  // namespace lens
