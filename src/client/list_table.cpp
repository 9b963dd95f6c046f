#include "client/list_table.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QStyle>
#include <algorithm>

#include "client/shown_list.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kMostSought = 20'000;  // rows
constexpr int kWidestColumn = 60;    // characters
constexpr int kMostMeasured = 100;   // rows; more are hardly in sight

QString rowText(const QAbstractItemModel& model, int row) {
  QStringList cells;
  for (int column = 0; column < model.columnCount(); ++column)
    cells += oneLine(model.index(row, column).data().toString().trimmed());
  return cells.join(u'\t');
}

}  // namespace

ListTable::ListTable(QWidget* parent) : QTableView(parent), copy_(new QAction(tr("&Copy rows"), this)) {
  copy_->setShortcut(QKeySequence::Copy);
  copy_->setShortcutContext(Qt::WidgetShortcut);
  copy_->setToolTip(tr("Puts the marked rows with all their columns on the clipboard"));
  connect(copy_, &QAction::triggered, this, &ListTable::copyRows);
  addAction(copy_);
  setContextMenuPolicy(Qt::ActionsContextMenu);
}

void ListTable::copyRows() {
  if (!model()) return;
  QVector<std::pair<int, int>> ranges;
  for (const QItemSelectionRange& range : selectionModel()->selection())
    ranges.push_back({range.top(), range.bottom()});
  if (ranges.isEmpty() && currentIndex().isValid())
    ranges.push_back({currentIndex().row(), currentIndex().row()});
  std::sort(ranges.begin(), ranges.end());
  QString text;
  for (const auto& [top, bottom] : ranges)
    for (int row = top; row <= bottom; ++row) text += rowText(*model(), row) + u'\n';
  if (!text.isEmpty()) QApplication::clipboard()->setText(text);
}

bool ListTable::begins(int row, const QString& word) const {
  for (int column = 0; column < model()->columnCount(); ++column) {
    const QString text = model()->index(row, column).data().toString();
    for (qsizetype at = text.indexOf(word, 0, Qt::CaseInsensitive); at >= 0;
         at = text.indexOf(word, at + 1, Qt::CaseInsensitive))
      if (at == 0 || !text[at - 1].isLetterOrNumber()) return true;
  }
  return false;
}

void ListTable::keyboardSearch(const QString& typed) {
  const bool goesOn = typedAt_.isValid() && typedAt_.elapsed() < QApplication::keyboardInputInterval();
  typedAt_.start();
  sought_ = goesOn ? sought_ + typed : typed;
  const int rows = model() ? model()->rowCount() : 0;
  if (sought_.isEmpty() || rows == 0) return;
  const int first = qMax(0, currentIndex().row() + (goesOn ? 0 : 1));
  for (int i = 0; i < std::min(rows, kMostSought); ++i) {
    const int row = (first + i) % rows;
    if (begins(row, sought_)) return setCurrentIndex(model()->index(row, 0));
  }
}

// Rows that are out of sight would have to be read first.
int ListTable::fittingWidth(int column) const {
  const int margin = 2 * (style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1);
  const int first = qMax(0, rowAt(0)), below = rowAt(viewport()->height() - 1);
  const int last = below < 0 ? model()->rowCount() - 1 : below;
  int wanted = horizontalHeader()->sectionSizeHint(column);
  for (int row = first; row <= std::min(last, first + kMostMeasured); ++row)
    wanted = std::max(
        wanted, fontMetrics().horizontalAdvance(model()->index(row, column).data().toString()) + 2 * margin);
  return std::min(wanted, kWidestColumn * fontMetrics().averageCharWidth());
}

void ListTable::fitColumns() {
  QHeaderView& header = *horizontalHeader();
  for (int column = 0; model() && column < header.count(); ++column)
    if (header.sectionResizeMode(column) == QHeaderView::Interactive)
      header.resizeSection(column, fittingWidth(column));
}

void ListTable::widenColumns(const QVector<int>& widths) {
  QHeaderView& header = *horizontalHeader();
  if (!model() || header.count() != widths.size()) return;
  for (int column = 0; column < widths.size(); ++column)
    if (header.sectionResizeMode(column) == QHeaderView::Interactive &&
        header.sectionSize(column) == widths[column])
      header.resizeSection(column, std::max(widths[column], fittingWidth(column)));
}

void offerOrder(QTableView& table) {
  QHeaderView& header = *table.horizontalHeader();
  // A press would mark all rows of the column, which are all there are.
  QObject::disconnect(&header, &QHeaderView::sectionPressed, &table, nullptr);
  QObject::disconnect(&header, &QHeaderView::sectionEntered, &table, nullptr);
  header.setSectionsClickable(true);
  header.setSortIndicator(-1, Qt::AscendingOrder);
  header.setSortIndicatorClearable(true);
  header.setSortIndicatorShown(true);
}

}  // namespace lens
