// A list or table as it is seen: the columns in their order, without hidden ones, the rows in theirs, below
// an unfolded row its own.
#pragma once

#include <QAbstractItemView>
#include <QIODevice>
#include <QMimeData>
#include <QModelIndex>
#include <QStringList>
#include <QVector>
#include <functional>
#include <memory>

namespace lens {

// A model gives the whole text of a cell here where the row shows only its beginning.
inline constexpr int kWholeText = Qt::UserRole + 100;

// A cell within a text that is parted by tabs and line ends.
QString oneLine(QString cell);

// Valid until the list changes.
class ShownList {
 public:
  explicit ShownList(const QAbstractItemView& view, bool onlyMarked = false);

  // Empty where the list has no header.
  QStringList titles() const;
  qsizetype rowCount() const { return rows_.size(); }
  QStringList row(qsizetype row) const;

  // CSV (records/csv_output.h) with the titles as the first row. Asks before each row whether to go on, and
  // gives false when the answer was no. The number of cells that were made safe comes back. Raises 75 when a
  // row was not taken.
  bool writeCsv(QIODevice& out, const std::function<bool(qsizetype done)>& goOn, qint64& madeSafe) const;
  // As HTML and as text parted by tabs, both of which spreadsheets and word processors paste as a table. What
  // a spreadsheet would run is made safe as in CSV.
  std::unique_ptr<QMimeData> table() const;

 private:
  void addRows(const QAbstractItemView& view, const QModelIndex& parent, bool onlyMarked);

  const QAbstractItemModel& model_;
  QVector<int> columns_;
  bool hasTitles_ = false;
  QVector<QModelIndex> rows_;  // first cells
};

}  // namespace lens
