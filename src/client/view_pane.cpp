#include "client/view_pane.h"

#include <QHeaderView>
#include <QItemSelection>
#include <QScopedValueRollback>
#include <QSet>

#include "client/client_controls.h"
#include "client/document_model.h"
#include "client/panes.h"

namespace lens {

ViewPane::ViewPane(ClientControls& controls, std::shared_ptr<Workspace> workspace)
    : controls_(controls),
      workspace_(std::move(workspace)),
      documents_(new DocumentModel(workspace_->regional(), this)) {
  useListFont(*controls.viewList);
  giveRowsRoom(*controls.viewList);
  QTableView& table = *controls.documentTable;
  prepareTable(table);
  table.setModel(documents_);
  layOutColumns();
  giveKeys(*controls.openDocumentAction, enterKeys(), table);
  giveKeys(*controls.selectAllAction, {QKeySequence::SelectAll}, table);
  const auto openRow = [this](const QModelIndex& row) {
    Q_EMIT documentChosen(documents_->noteId(row.row()));
  };
  connect(&table, &QTableView::doubleClicked, this, openRow);
  connect(controls.openDocumentAction, &QAction::triggered, this,
          [this, openRow] { openRow(controls_.documentTable->currentIndex()); });
  connect(controls.selectAllAction, &QAction::triggered, &table, &QTableView::selectAll);
  connect(controls.viewList, &QListWidget::currentRowChanged, this, [this] {
    if (!loading_) loadDocuments();
  });
  connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
    if (loading_) return;
    workspace_->client().select(markedDocuments());
    Q_EMIT changed();
  });
}

void ViewPane::show(std::shared_ptr<Database> database) {
  database_ = std::move(database);
  entries_.clear();
  reload();
}

void ViewPane::clear() {
  database_.reset();
  entries_.clear();
  stale_ = false;
  const QScopedValueRollback quiet(loading_, true);
  controls_.viewList->clear();
  documents_->show(nullptr, {});
}

void ViewPane::showCount() {
  const ViewEntry* entry = currentEntry();
  if (!entry) return;
  const int count = documents_->documentCount();
  QString label = tr("Doc&uments: %1").arg(count);
  if (count == 0)
    label = entry->kind == ViewEntry::Kind::Folder
                ? tr("Doc&uments: none (what lies in a folder is found under \"All documents\")")
                : tr("Doc&uments: none in this view");
  if (!unreadable_.isEmpty())
    label = tr("Doc&uments: %1, all there are: formula not readable (%2)").arg(count).arg(unreadable_);
  controls_.documentLabel->setText(label);
}

const ViewEntry* ViewPane::currentEntry() const {
  const int row = controls_.viewList->currentRow();
  return row >= 0 && row < entries_.size() ? &entries_[row] : nullptr;
}

NoteId ViewPane::currentDocument() const {
  return documents_->noteId(controls_.documentTable->currentIndex().row());
}

// Keeps the current view when it is still there.
void ViewPane::reload() {
  const QVector<ViewEntry> fresh = viewEntries(*database_);
  const ViewEntry* old = currentEntry();
  int row = 0;
  for (int i = 0; old && i < fresh.size(); ++i)
    if (fresh[i].sameAs(*old)) row = i;
  entries_ = fresh;
  {
    const QScopedValueRollback quiet(loading_, true);
    controls_.viewList->clear();
    for (const ViewEntry& entry : entries_)
      controls_.viewList->addItem(entry.kind == ViewEntry::Kind::Folder ? tr("%1 (folder)").arg(entry.title)
                                                                        : entry.title);
    controls_.viewList->setCurrentRow(row);
  }
  loadDocuments();
}

void ViewPane::loadDocuments() {
  const ViewEntry* entry = currentEntry();
  if (!entry || !database_) return;
  workspace_->client().showView(entry->noteId);
  const QVector<NoteId> marked = markedDocuments();
  const NoteId current = currentDocument();
  {
    const QScopedValueRollback quiet(loading_, true);
    try {
      showRows(*entry);
      stale_ = false;
    } catch (const RuntimeError& error) {
      documents_->show(nullptr, {});
      controls_.showError(error.description());
    }
    layOutColumns();
    markDocuments(marked, current);
  }
  workspace_->client().select(markedDocuments());
  Q_EMIT changed();
}

// A view that has columns is shown by them.
void ViewPane::showRows(const ViewEntry& entry) {
  unreadable_.clear();
  if (entry.kind == ViewEntry::Kind::View || entry.kind == ViewEntry::Kind::Folder) {
    auto view = std::make_unique<ViewRows>(database_, entry.noteId, workspace_->regional(),
                                           [this] { return workspace_->isInterrupted(); });
    unreadable_ = view->whyUnreadable();
    if (!view->columns().isEmpty()) return documents_->show(std::move(view));
    if (!unreadable_.isEmpty())
      return documents_->show(database_, documentsOf(*database_, {ViewEntry::Kind::AllDocuments, {}, {}}));
  }
  documents_->show(database_, documentsOf(*database_, entry));
}

// Marks as few ranges as there are: a view may hold very many documents.
void ViewPane::markDocuments(const QVector<NoteId>& noteIds, NoteId current) {
  const QSet<NoteId> wanted(noteIds.begin(), noteIds.end());
  const QVector<NoteId>& rows = documents_->noteIds();
  QItemSelection selection;
  for (int row = 0; row < rows.size() && !wanted.isEmpty(); ++row) {
    if (!wanted.contains(rows[row])) continue;
    const int first = row;
    while (row + 1 < rows.size() && wanted.contains(rows[row + 1])) ++row;
    selection.append(QItemSelectionRange(documents_->index(first, 0),
                                         documents_->index(row, documents_->columnCount() - 1)));
  }
  QItemSelectionModel* marks = controls_.documentTable->selectionModel();
  marks->select(selection, QItemSelectionModel::ClearAndSelect);
  const qsizetype row = current.isNull() ? 0 : qMax<qsizetype>(0, rows.indexOf(current));
  marks->setCurrentIndex(documents_->index(int(row), 0), QItemSelectionModel::NoUpdate);
}

// Each once: a document may stand below several categories.
QVector<NoteId> ViewPane::markedDocuments() const {
  QVector<std::pair<int, int>> ranges;
  for (const QItemSelectionRange& range : controls_.documentTable->selectionModel()->selection())
    ranges.push_back({range.top(), range.bottom()});
  std::sort(ranges.begin(), ranges.end());
  QVector<NoteId> ids;
  QSet<NoteId> known{NoteId()};  // a category
  for (const auto& [top, bottom] : ranges)
    for (int row = top; row <= bottom; ++row) {
      const NoteId id = documents_->noteId(row);
      if (known.contains(id)) continue;
      known.insert(id);
      ids.push_back(id);
    }
  return ids;
}

// What the user made of the widths stays until other columns come.
void ViewPane::layOutColumns() {
  QTableView& table = *controls_.documentTable;
  const QVector<int> widths = documents_->columnWidths();
  if (widths == columnWidths_) return;
  columnWidths_ = widths;
  const int character = table.fontMetrics().averageCharWidth(), room = 2 * character;
  QHeaderView& header = *table.horizontalHeader();
  header.setStretchLastSection(!widths.contains(0));
  for (int column = 0; column < widths.size(); ++column) {
    const bool takesRest = widths[column] == 0;
    header.setSectionResizeMode(column, takesRest ? QHeaderView::Stretch : QHeaderView::Interactive);
    if (!takesRest) header.resizeSection(column, widths[column] * character + room);
  }
}

}  // namespace lens
