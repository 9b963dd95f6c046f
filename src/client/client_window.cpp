#include "client/client_window.h"

#include <QFileInfo>
#include <QScopedValueRollback>

#include "client/document_model.h"
#include "client/import_bar.h"
#include "client/note_texts.h"
#include "client/panes.h"
#include "controls/look.h"
#include "controls/pictures.h"
#include "ui_client_window.h"

namespace lens {
namespace {

constexpr quint32 kNone = 0;

}  // namespace

ClientWindow::ClientWindow(std::shared_ptr<Workspace> workspace, QWidget* parent)
    : QMainWindow(parent, Qt::Window),
      workspace_(std::move(workspace)),
      ui_(std::make_unique<::Ui::ClientWindow>()),
      choice_(std::make_unique<DesktopFileChoice>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_QuitOnClose, false);
  setWindowIcon(pictures::program());
  documents_ = new DocumentModel(workspace_->regional(), this);
  importBar_ = new ImportBar(this);
  setUpPanes();
  setUpActions();
  clearError();
  ui_->databaseTree->setWorkspace(workspace_);
  workspace_->client().setListener(this);
  workspace_->setChangeListener([this](const DatabasePlace& place) {
    if (place != place_ || stale_) return;
    stale_ = true;
    showCounts();
  });
  syncWithState();
  if (!place_) showPage();
}

ClientWindow::~ClientWindow() {
  workspace_->client().setListener(nullptr);
  workspace_->setChangeListener(nullptr);
}

void ClientWindow::setFileChoice(std::unique_ptr<FileChoice> choice) {
  choice_ = choice ? std::move(choice) : std::make_unique<DesktopFileChoice>();
}

void ClientWindow::setUpPanes() {
  useListFont(*ui_->databaseTree);
  useListFont(*ui_->viewList);
  giveRowsRoom(*ui_->databaseTree);
  giveRowsRoom(*ui_->viewList);
  QTableView& table = *ui_->documentTable;
  prepareTable(table);
  table.setModel(documents_);
  layOutColumns();
  ui_->panes->setSizes({260, 820});
  ui_->panes->setStretchFactor(1, 1);
  ui_->viewPanes->setSizes({190, 630});
  ui_->viewPanes->setStretchFactor(1, 1);
  QPalette error = palette();
  error.setColor(QPalette::WindowText, QColor(colour::DestructiveText));
  ui_->errorText->setPalette(error);
  QPalette foot = palette();
  foot.setColor(QPalette::Window, foot.color(QPalette::ToolTipBase));
  foot.setColor(QPalette::WindowText, foot.color(QPalette::ToolTipText));
  ui_->statusBar->setPalette(foot);
  ui_->statusBar->setAutoFillBackground(true);
  ui_->statusBar->addPermanentWidget(importBar_);
}

void ClientWindow::showError(const QString& text) {
  ui_->errorText->setText(text);
  ui_->errorStrip->show();
}

void ClientWindow::clearError() {
  ui_->errorStrip->hide();
  ui_->errorText->clear();
}

bool ClientWindow::openDatabase(const DatabasePlace& place) {
  std::shared_ptr<Database> opened;  // held, so that it is not opened twice
  DatabasePlace canonical;
  try {
    canonical = workspace_->place(place.server, place.path);
    opened = workspace_->database(canonical.server, canonical.path);
  } catch (const RuntimeError& error) {
    showError(error.description());
    return false;
  }
  clearError();
  workspace_->client().showDatabase(canonical);
  syncWithState();
  if (place_ != canonical) return false;
  ui_->documentTable->setFocus();
  return true;
}

void ClientWindow::closeDatabase() {
  workspace_->client().closeDatabase();
}

void ClientWindow::databaseShown() {
  syncWithState();
}

void ClientWindow::databaseClosed() {
  syncWithState();
}

void ClientWindow::databasesChanged() {
  ui_->databaseTree->refresh();
}

// Whatever the state says is shown; what cannot be shown is explained.
void ClientWindow::syncWithState() {
  const DatabasePlace* top = workspace_->client().database();
  if (!top) {
    if (place_) unload();
    return;
  }
  if (place_ && *place_ == *top) return;
  place_ = *top;
  if (load()) refreshDocument();
}

bool ClientWindow::load() {
  try {
    database_ = workspace_->database(place_->server, place_->path);
    entries_.clear();
    loadViews();
  } catch (const RuntimeError& error) {
    unload(error.description());
    return false;
  }
  ui_->databaseTree->markOpen(place_);
  showTitle();
  showPage();
  return true;
}

void ClientWindow::unload(const QString& why) {
  place_.reset();
  database_.reset();
  entries_.clear();
  stale_ = false;
  {
    const QScopedValueRollback quiet(loading_, true);
    ui_->viewList->clear();
    documents_->show(nullptr, {});
  }
  ui_->reader->clear();
  ui_->databaseTree->markOpen(std::nullopt);
  if (!why.isEmpty()) showError(why);
  showTitle();
  showPage();
}

bool ClientWindow::openDocument(quint32 noteId) {
  if (!database_ || noteId == kNone || !readDocument(noteId)) return false;
  clearError();
  workspace_->client().showDocument(noteId);
  showPage();
  ui_->reader->focusItems();
  return true;
}

// Puts the document as it is stored now into the reader.
bool ClientWindow::readDocument(quint32 noteId) {
  try {
    Note note;
    if (!database_->notes().read(noteId, note))
      throw RuntimeError(enginefault::UnknownNote,
                         tr("%1: there is no note %2 any more; F5 refreshes the view")
                             .arg(database_->path(), noteIdText(noteId)));
    ui_->reader->show(std::move(note), workspace_->regional());
  } catch (const RuntimeError& error) {
    showError(error.description());
    return false;
  }
  return true;
}

void ClientWindow::closeDocument() {
  workspace_->client().closeDocument();
}

void ClientWindow::documentClosed() {
  ui_->reader->clear();
  showPage();
  ui_->documentTable->setFocus();
}

// An open document that has gone is closed.
void ClientWindow::refreshDocument() {
  const quint32 open = workspace_->client().document();
  if (open != kNone && !readDocument(open)) closeDocument();
}

void ClientWindow::refreshView() {
  if (!place_) return;
  if (!QFileInfo::exists(workspace_->absolutePath(*place_))) {
    const QString file = workspace_->absolutePath(*place_);
    closeDatabase();
    return showError(tr("%1: the database is no longer there").arg(file));
  }
  try {
    loadViews();
  } catch (const RuntimeError& error) {
    showError(error.description());
  }
}

void ClientWindow::refresh() {
  clearError();
  ui_->databaseTree->refresh();
  if (!place_) return syncWithState();
  refreshView();
  if (place_) refreshDocument();
  showTitle();
}

}  // namespace lens
