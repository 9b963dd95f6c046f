#include "client/shown_list.h"

#include <QHeaderView>
#include <QListView>
#include <QTableView>
#include <QTreeView>

#include "notes/literals.h"
#include "notes/runtime_error.h"
#include "records/csv_output.h"

namespace lens {
namespace {

const QHeaderView* headerOf(const QAbstractItemView& view) {
  if (auto* table = qobject_cast<const QTableView*>(&view)) return table->horizontalHeader();
  if (auto* tree = qobject_cast<const QTreeView*>(&view)) return tree->header();
  return nullptr;
}

QVector<int> columnsOf(const QAbstractItemView& view) {
  const QHeaderView* header = headerOf(view);
  if (!header) return {0};
  QVector<int> columns;
  for (int place = 0; place < header->count(); ++place)
    if (const int column = header->logicalIndex(place); !header->isSectionHidden(column)) columns += column;
  return columns;
}

bool isHidden(const QAbstractItemView& view, const QModelIndex& row) {
  if (auto* table = qobject_cast<const QTableView*>(&view)) return table->isRowHidden(row.row());
  if (auto* tree = qobject_cast<const QTreeView*>(&view)) return tree->isRowHidden(row.row(), row.parent());
  if (auto* list = qobject_cast<const QListView*>(&view)) return list->isRowHidden(row.row());
  return false;
}

QString safeCell(const QString& cell) {
  return beginsAFormula(cell) ? u'\'' + cell : cell;
}

QString htmlRow(const QStringList& cells, QLatin1StringView tag) {
  QString row = u"<tr>"_s;
  for (const QString& cell : cells) {
    QString text = cell.toHtmlEscaped();
    text.replace(u'\n', u"<br>"_s);
    row += u'<' + tag + u'>' + text + u"</"_s + tag + u'>';
  }
  return row + u"</tr>\n"_s;
}

QString tabbedRow(const QStringList& cells) {
  QStringList texts;
  for (const QString& cell : cells) texts += oneLine(cell);
  return texts.join(u'\t') + u'\n';
}

}  // namespace

QString oneLine(QString cell) {
  cell.replace(u"\r\n"_s, u" "_s);
  for (QChar& c : cell)
    if (c == u'\t' || c == u'\n' || c == u'\r') c = u' ';
  return cell;
}

ShownList::ShownList(const QAbstractItemView& view, bool onlyMarked)
    : model_(*view.model()), columns_(columnsOf(view)) {
  const QHeaderView* header = headerOf(view);
  hasTitles_ = header && !header->isHidden();
  addRows(view, view.rootIndex(), onlyMarked);
}

void ShownList::addRows(const QAbstractItemView& view, const QModelIndex& parent, bool onlyMarked) {
  auto* tree = qobject_cast<const QTreeView*>(&view);
  const int count = model_.rowCount(parent);
  for (int number = 0; number < count; ++number) {
    const QModelIndex row = model_.index(number, 0, parent);
    if (isHidden(view, row)) continue;
    if (!onlyMarked || view.selectionModel()->isSelected(row)) rows_ += row;
    if (tree && tree->isExpanded(row)) addRows(view, row, onlyMarked);
  }
}

QStringList ShownList::titles() const {
  QStringList titles;
  for (const int column : columns_)
    if (hasTitles_) titles += model_.headerData(column, Qt::Horizontal).toString();
  return titles;
}

QStringList ShownList::row(qsizetype row) const {
  QStringList cells;
  for (const int column : columns_) {
    const QModelIndex cell = rows_[row].siblingAtColumn(column);
    const QVariant whole = cell.data(kWholeText);
    cells += whole.isValid() ? whole.toString() : cell.data().toString();
  }
  return cells;
}

bool ShownList::writeCsv(QIODevice& out, const std::function<bool(qsizetype done)>& goOn,
                         qint64& madeSafe) const {
  CsvRow line;
  const auto write = [&](const QStringList& cells) {
    for (const QString& cell : cells) line.text(cell);
    const QByteArray bytes = line.finish();
    if (out.write(bytes) != bytes.size()) throw RuntimeError(err::PathFileAccess, out.errorString());
  };
  if (hasTitles_) write(titles());
  for (qsizetype place = 0; place < rowCount(); ++place) {
    if (!goOn(place)) return false;
    write(row(place));
  }
  madeSafe = line.madeSafe();
  return true;
}

std::unique_ptr<QMimeData> ShownList::table() const {
  QString html = u"<meta charset=\"utf-8\"><table>\n"_s, text;
  const auto add = [&](QStringList cells, QLatin1StringView tag) {
    for (QString& cell : cells) cell = safeCell(cell);
    html += htmlRow(cells, tag);
    text += tabbedRow(cells);
  };
  if (hasTitles_) add(titles(), "th"_L1);
  for (qsizetype place = 0; place < rowCount(); ++place) add(row(place), "td"_L1);
  auto data = std::make_unique<QMimeData>();
  data->setHtml(html + u"</table>\n"_s);
  data->setText(text);
  return data;
}

}  // namespace lens
