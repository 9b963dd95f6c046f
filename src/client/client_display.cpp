// What the client window says about what it shows: page, title, counts, and its actions.
#include <QStatusBar>

#include "client/client_window.h"
#include "client/document_model.h"
#include "client/import_bar.h"
#include "ui_client_window.h"

namespace lens {

void ClientWindow::setUpActions() {
  ::Ui::ClientWindow& ui = *ui_;
  const QList<QKeySequence> enter{Qt::Key_Return, Qt::Key_Enter};
  const auto bind = [](QAction* action, const QList<QKeySequence>& keys, QWidget* where) {
    action->setShortcuts(keys);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    where->addAction(action);
  };
  bind(ui.openDatabaseAction, enter, ui.databaseTree);
  bind(ui.openDocumentAction, enter, ui.documentTable);
  bind(ui.closeDocumentAction, {Qt::Key_Escape}, ui.reader);
  bind(ui.selectAllAction, {QKeySequence::SelectAll}, ui.documentTable);
  connect(ui.openDatabaseAction, &QAction::triggered, this, [this] {
    QTreeWidgetItem* row = ui_->databaseTree->currentItem();
    if (const auto place = ui_->databaseTree->currentPlace())
      openDatabase(*place);
    else if (row)
      row->setExpanded(!row->isExpanded());
  });
  connect(ui.databaseTree, &DatabaseTree::databaseChosen, ui.openDatabaseAction, &QAction::trigger);
  connect(ui.databaseTree, &DatabaseTree::listingFailed, this, &ClientWindow::showError);
  connect(ui.newDatabaseAction, &QAction::triggered, this, &ClientWindow::askNewDatabase);
  connect(ui.closeDatabaseAction, &QAction::triggered, this, &ClientWindow::closeDatabase);
  connect(ui.importFilesAction, &QAction::triggered, this, [this] { askImport(false, false); });
  connect(ui.importFolderAction, &QAction::triggered, this, [this] { askImport(true, false); });
  connect(ui.importNewAction, &QAction::triggered, this, [this] { askImport(false, true); });
  connect(ui.exportDatabaseAction, &QAction::triggered, this, [this] { askExport(ExportRange::Database); });
  connect(ui.exportViewAction, &QAction::triggered, this, [this] { askExport(ExportRange::View); });
  connect(ui.exportMarkedAction, &QAction::triggered, this, [this] { askExport(ExportRange::Marked); });
  for (QAction* action : {ui.createIndexAction, ui.updateIndexAction})
    connect(action, &QAction::triggered, this, &ClientWindow::indexDatabase);
  connect(ui.fileMenu, &QMenu::aboutToShow, this, &ClientWindow::offerIndex);
  connect(ui.hideAction, &QAction::triggered, this, &QWidget::close);
  connect(ui.refreshAction, &QAction::triggered, this, &ClientWindow::refresh);
  connect(ui.errorDismiss, &QPushButton::clicked, this, &ClientWindow::clearError);

  const auto openRow = [this](const QModelIndex& row) { openDocument(documents_->noteId(row.row())); };
  connect(ui.documentTable, &QTableView::doubleClicked, this, openRow);
  connect(ui.openDocumentAction, &QAction::triggered, this,
          [this, openRow] { openRow(ui_->documentTable->currentIndex()); });
  connect(ui.closeDocumentAction, &QAction::triggered, this, &ClientWindow::closeDocument);
  connect(ui.reader, &DocumentReader::closeRequested, this, &ClientWindow::closeDocument);
  connect(ui.selectAllAction, &QAction::triggered, ui.documentTable, &QTableView::selectAll);
  connect(ui.viewList, &QListWidget::currentRowChanged, this, [this] {
    if (!loading_) loadDocuments();
  });
  connect(ui.documentTable->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
    if (loading_) return;
    workspace_->client().select(markedDocuments());
    showCounts();
  });
}

void ClientWindow::showPage() {
  const bool open = place_.has_value(), document = workspace_->client().document() != 0;
  QWidget* page = !open ? ui_->emptyPage : document ? static_cast<QWidget*>(ui_->reader) : ui_->viewPage;
  ui_->pages->setCurrentWidget(page);
  ui_->closeDatabaseAction->setEnabled(open);
  ui_->exportDatabaseAction->setEnabled(open);
  ui_->exportViewAction->setEnabled(open && !document);
  ui_->exportMarkedAction->setEnabled(open);
  ui_->openDocumentAction->setEnabled(open && !document);
  ui_->selectAllAction->setEnabled(open && !document);
  ui_->closeDocumentAction->setEnabled(document);
  offerIndex();
  showCounts();
}

void ClientWindow::showTitle() {
  if (!database_) return setWindowTitle(tr("Client"));
  QString title = place_->path;
  try {
    const QString own = database_->info().title.simplified();
    if (!own.isEmpty()) title = own;
  } catch (const RuntimeError& error) {
    showError(error.description());
  }
  setWindowTitle(tr("Client: %1").arg(title));
}

void ClientWindow::showCounts() {
  const ViewEntry* entry = currentEntry();
  if (!place_ || !entry) return ui_->statusBar->showMessage(tr("No database is open"));
  const int count = documents_->documentCount();
  QString label = tr("Doc&uments: %1").arg(count);
  if (count == 0)
    label = entry->kind == ViewEntry::Kind::Folder
                ? tr("Doc&uments: none (what lies in a folder is found under \"All documents\")")
                : tr("Doc&uments: none in this view");
  ui_->documentLabel->setText(label);
  QString status = tr("%1 on %2").arg(place_->path, serverLabel(place_->server));
  const qsizetype marked = workspace_->client().visibleSelection().size();
  if (marked > 0) status += tr("    %1 marked").arg(marked);
  if (stale_) status += tr("    Documents have changed: F5 refreshes");
  ui_->statusBar->showMessage(status);
}

}  // namespace lens
