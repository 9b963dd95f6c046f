// The views of the open database and the documents of the current one in the client window.
#include <QHeaderView>
#include <QItemSelection>
#include <QScopedValueRollback>
#include <QSet>

#include "client/client_window.h"
#include "client/document_model.h"
#include "ui_client_window.h"

namespace lens {

const ViewEntry* ClientWindow::currentEntry() const {
  const int row = ui_->viewList->currentRow();
  return row >= 0 && row < entries_.size() ? &entries_[row] : nullptr;
}

// Keeps the current view when it is still there.
void ClientWindow::loadViews() {
  const QVector<ViewEntry> fresh = viewEntries(*database_);
  const ViewEntry* old = currentEntry();
  int row = 0;
  for (int i = 0; old && i < fresh.size(); ++i)
    if (fresh[i].sameAs(*old)) row = i;
  entries_ = fresh;
  {
    const QScopedValueRollback quiet(loading_, true);
    ui_->viewList->clear();
    for (const ViewEntry& entry : entries_)
      ui_->viewList->addItem(entry.kind == ViewEntry::Kind::Folder ? tr("%1 (folder)").arg(entry.title)
                                                                   : entry.title);
    ui_->viewList->setCurrentRow(row);
  }
  loadDocuments();
}

void ClientWindow::loadDocuments() {
  const ViewEntry* entry = currentEntry();
  if (!entry || !database_) return;
  workspace_->client().showView(entry->noteId);
  const QVector<quint32> marked = markedDocuments();
  const quint32 current = documents_->noteId(ui_->documentTable->currentIndex().row());
  {
    const QScopedValueRollback quiet(loading_, true);
    try {
      showRows(*entry);
      stale_ = false;
    } catch (const RuntimeError& error) {
      documents_->show(nullptr, {});
      showError(error.description());
    }
    layOutColumns();
    markDocuments(marked, current);
  }
  workspace_->client().select(markedDocuments());
  showCounts();
}

// A view that has columns is shown by them.
void ClientWindow::showRows(const ViewEntry& entry) {
  if (entry.kind == ViewEntry::Kind::View || entry.kind == ViewEntry::Kind::Folder) {
    auto view = std::make_unique<ViewRows>(database_, entry.noteId, workspace_->regional());
    if (!view->columns().isEmpty()) return documents_->show(std::move(view));
  }
  documents_->show(database_, documentsOf(*database_, entry));
}

// Marks as few ranges as there are: a view may hold very many documents.
void ClientWindow::markDocuments(const QVector<quint32>& noteIds, quint32 current) {
  const QSet<quint32> wanted(noteIds.begin(), noteIds.end());
  const QVector<quint32>& rows = documents_->noteIds();
  QItemSelection selection;
  for (int row = 0; row < rows.size() && !wanted.isEmpty(); ++row) {
    if (!wanted.contains(rows[row])) continue;
    const int first = row;
    while (row + 1 < rows.size() && wanted.contains(rows[row + 1])) ++row;
    selection.append(QItemSelectionRange(documents_->index(first, 0),
                                         documents_->index(row, documents_->columnCount() - 1)));
  }
  QItemSelectionModel* marks = ui_->documentTable->selectionModel();
  marks->select(selection, QItemSelectionModel::ClearAndSelect);
  const qsizetype row = current == 0 ? 0 : qMax<qsizetype>(0, rows.indexOf(current));
  marks->setCurrentIndex(documents_->index(int(row), 0), QItemSelectionModel::NoUpdate);
}

// Each once: a document may stand below several categories.
QVector<quint32> ClientWindow::markedDocuments() const {
  QVector<std::pair<int, int>> ranges;
  for (const QItemSelectionRange& range : ui_->documentTable->selectionModel()->selection())
    ranges.push_back({range.top(), range.bottom()});
  std::sort(ranges.begin(), ranges.end());
  QVector<quint32> ids;
  QSet<quint32> known{0};  // a category
  for (const auto& [top, bottom] : ranges)
    for (int row = top; row <= bottom; ++row) {
      const quint32 id = documents_->noteId(row);
      if (known.contains(id)) continue;
      known.insert(id);
      ids.push_back(id);
    }
  return ids;
}

// What the user made of the widths stays until other columns come.
void ClientWindow::layOutColumns() {
  QTableView& table = *ui_->documentTable;
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
