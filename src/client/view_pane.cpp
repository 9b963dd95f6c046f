#include "client/view_pane.h"

#include <QApplication>
#include <QHeaderView>
#include <QItemSelection>
#include <QScopedValueRollback>
#include <QSet>

#include "client/client_controls.h"
#include "client/document_model.h"
#include "client/list_table.h"
#include "client/panes.h"

namespace lens {
namespace {

constexpr int kWhileTyping = 250;  // milliseconds

}  // namespace

ViewPane::ViewPane(ClientControls& controls, std::shared_ptr<Workspace> workspace)
    : controls_(controls),
      workspace_(std::move(workspace)),
      documents_(new DocumentModel(workspace_->regional(), this)) {
  useListFont(*controls.viewList);
  giveRowsRoom(*controls.viewList);
  ListTable& table = *controls.documentTable;
  prepareTable(table);
  table.setModel(documents_);
  offerOrder(table);
  layOutColumns();
  connectFilter();
  giveKeys(*controls.openDocumentAction, enterKeys(), table);
  giveKeys(*controls.selectAllAction, {QKeySequence::SelectAll}, table);
  const auto openRow = [this](const QModelIndex& row) {
    Q_EMIT documentChosen(documents_->noteId(row.row()));
  };
  connect(&table, &QTableView::doubleClicked, this, openRow);
  connect(controls.openDocumentAction, &QAction::triggered, this,
          [this, openRow] { openRow(controls_.documentTable->currentIndex()); });
  connect(controls.selectAllAction, &QAction::triggered, &table, &QTableView::selectAll);
  table.addAction(controls.exportMarkedAction);
  connect(controls.fitColumnsAction, &QAction::triggered, &table, &ListTable::fitColumns);
  controls.viewList->addActions({controls.refreshAction, controls.exportViewAction});
  controls.viewList->setContextMenuPolicy(Qt::ActionsContextMenu);
  connect(controls.viewList, &QListWidget::currentRowChanged, this, [this] {
    if (!loading_) loadDocuments();
  });
  connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
    if (loading_) return;
    workspace_->client().select(markedDocuments());
    Q_EMIT changed();
  });
}

void ViewPane::connectFilter() {
  QLineEdit& filter = *controls_.filterBox;
  filter.setClearButtonEnabled(true);
  filterLater_.setSingleShot(true);
  filterLater_.setInterval(kWhileTyping);
  const auto apply = [this, &filter] {
    filterLater_.stop();
    RowArrangement wanted = arrangement_;
    wanted.filter = filter.text().simplified();
    if (wanted != arrangement_) arrange(wanted);
  };
  connect(&filterLater_, &QTimer::timeout, this, apply);
  connect(&filter, &QLineEdit::textChanged, &filterLater_, qOverload<>(&QTimer::start));
  connect(&filter, &QLineEdit::returnPressed, this, [this, apply] {
    apply();
    controls_.documentTable->setFocus();
  });
  auto* empty = new QAction(tr("&Empty the filter"), this);
  giveKeys(*empty, {Qt::Key_Escape}, filter);
  connect(empty, &QAction::triggered, &filter, &QLineEdit::clear);
  connect(controls_.filterAction, &QAction::triggered, &filter, [&filter] {
    filter.setFocus();
    filter.selectAll();
  });
  connect(controls_.documentTable->horizontalHeader(), &QHeaderView::sortIndicatorChanged, this,
          [this](int column, Qt::SortOrder order) {
            if (!loading_) arrange({column, order, arrangement_.filter});
          });
}

// Marks stay on what is still shown. Rows may have to be read for it, which the user can end.
void ViewPane::arrange(const RowArrangement& wanted) {
  if (!database_) {
    arrangement_ = wanted;
    return;
  }
  const QVector<NoteId> marked = markedDocuments();
  const NoteId current = documents_->noteId(controls_.documentTable->currentIndex().row());
  {
    const QScopedValueRollback quiet(loading_, true);
    if (arrangeRows(wanted))
      arrangement_ = wanted;
    else
      controls_.documentTable->horizontalHeader()->setSortIndicator(arrangement_.column, arrangement_.order);
    markDocuments(marked, current);
  }
  workspace_->client().select(markedDocuments());
  Q_EMIT changed();
}

bool ViewPane::arrangeRows(const RowArrangement& wanted) {
  QApplication::setOverrideCursor(Qt::WaitCursor);
  const bool arranged = documents_->arrange(wanted, [this] { return workspace_->isInterrupted(); });
  QApplication::restoreOverrideCursor();
  return arranged;
}

void ViewPane::show(std::shared_ptr<Database> database) {
  database_ = std::move(database);
  found_.reset();
  entries_.clear();
  arrangement_ = {};
  controls_.filterBox->clear();
  filterLater_.stop();
  reload();
}

void ViewPane::clear() {
  database_.reset();
  found_.reset();
  entries_.clear();
  stale_ = false;
  const QScopedValueRollback quiet(loading_, true);
  controls_.viewList->clear();
  documents_->show(nullptr, {});
}

void ViewPane::showCount() {
  const ViewEntry* entry = currentEntry();
  if (!entry) return;
  const int count = documents_->documentCount(), shown = documents_->shownDocuments();
  const bool isFound = entry->kind == ViewEntry::Kind::Found;
  QString label = isFound ? tr("Doc&uments: %1 found").arg(count) : tr("Doc&uments: %1").arg(count);
  if (count == 0 && !isFound)
    label = entry->kind == ViewEntry::Kind::Folder
                ? tr("Doc&uments: none (what lies in a folder is found under \"All documents\")")
                : tr("Doc&uments: none in this view");
  if (!unreadable_.isEmpty())
    label = tr("Doc&uments: %1, all there are: formula not readable (%2)").arg(count).arg(unreadable_);
  if (shown != count) label = tr("Doc&uments: %1 of %2").arg(shown).arg(count);
  controls_.documentLabel->setText(label);
}

const ViewEntry* ViewPane::currentEntry() const {
  const int row = controls_.viewList->currentRow();
  return row >= 0 && row < entries_.size() ? &entries_[row] : nullptr;
}

NoteId ViewPane::currentDocument() const {
  return documents_->noteId(controls_.documentTable->currentIndex().row());
}

void ViewPane::showFound(const QString& query, const QVector<NoteId>& noteIds) {
  found_ = ViewEntry{ViewEntry::Kind::Found, query, NoteId(), noteIds};
  if (!reloadOrTell()) return;
  controls_.viewList->setCurrentRow(0);
  loadDocuments();
}

void ViewPane::clearFound() {
  if (!found_) return;
  found_.reset();
  if (database_) reloadOrTell();
}

bool ViewPane::reloadOrTell() {
  try {
    reload();
  } catch (const RuntimeError& error) {
    controls_.showError(error.description());
    return false;
  }
  return true;
}

QString ViewPane::listed(const ViewEntry& entry) {
  if (entry.kind == ViewEntry::Kind::Found) return tr("Found: %1").arg(entry.title);
  return entry.kind == ViewEntry::Kind::Folder ? tr("%1 (folder)").arg(entry.title) : entry.title;
}

// Keeps the current view when it is still there.
void ViewPane::reload() {
  QVector<ViewEntry> fresh = viewEntries(*database_);
  if (found_) fresh.push_front(*found_);
  const ViewEntry* old = currentEntry();
  int row = 0;
  for (int i = 0; old && i < fresh.size(); ++i)
    if (fresh[i].sameAs(*old)) row = i;
  entries_ = fresh;
  {
    const QScopedValueRollback quiet(loading_, true);
    controls_.viewList->clear();
    for (const ViewEntry& entry : std::as_const(entries_)) controls_.viewList->addItem(listed(entry));
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
      arrangeAnew();
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

// Other columns have another order; the filter stays.
void ViewPane::arrangeAnew() {
  if (documents_->columnWidths() != columnWidths_) {
    arrangement_.column = -1;
    controls_.documentTable->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
  }
  if (arrangement_.isPlain() || arrangeRows(arrangement_)) return;
  arrangement_.column = -1;
  arrangement_.filter.clear();
  controls_.filterBox->clear();
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
      return documents_->show(database_,
                              documentsOf(*database_, {ViewEntry::Kind::AllDocuments, {}, {}, {}}));
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
  ListTable& table = *controls_.documentTable;
  const QVector<int> widths = documents_->columnWidths();
  if (widths == columnWidths_) {
    if (!fitted_ && documents_->rowCount() > 0) widenColumns();
    return;
  }
  columnWidths_ = widths;
  fitted_ = false;
  designWidths_.clear();
  const int character = table.fontMetrics().averageCharWidth(), room = 2 * character;
  QHeaderView& header = *table.horizontalHeader();
  header.setStretchLastSection(!widths.contains(0));
  for (int column = 0; column < widths.size(); ++column) {
    const bool takesRest = widths[column] == 0;
    header.setSectionResizeMode(column, takesRest ? QHeaderView::Stretch : QHeaderView::Interactive);
    if (!takesRest) header.resizeSection(column, widths[column] * character + room);
    designWidths_.push_back(header.sectionSize(column));
  }
  if (documents_->rowCount() > 0) widenColumns();
}

// Once, by the first rows that there are, when the table has its place. What the user made of a width stays.
void ViewPane::widenColumns() {
  fitted_ = true;
  QTimer::singleShot(0, this, [this] { controls_.documentTable->widenColumns(designWidths_); });
}

}  // namespace lens
