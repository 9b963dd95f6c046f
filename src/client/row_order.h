// Which rows of a list are shown, and in which order.
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>
#include <functional>
#include <optional>

namespace lens {

struct RowArrangement {
  int column = -1;  // to order by; -1: the list's own order
  Qt::SortOrder order = Qt::AscendingOrder;
  QString filter;  // only rows in which each of these words occurs, in any letters; "" for all rows

  bool isPlain() const { return column < 0 && filter.trimmed().isEmpty(); }
  bool operator==(const RowArrangement&) const = default;
};

// What a cell counts by when rows are ordered: numbers and times before texts.
struct RowKey {
  bool isNumber = false;
  double number = 0;
  QString text;
};

struct RowSource {
  int count = 0;
  std::function<bool(int row)>
      isShown;  // rows that have no place in another order than the list's own: false
  std::function<QStringList(int row)> texts;
  std::function<RowKey(int row, int column)> key;
};

// The rows as they are to be shown. Reads every row; none when that was interrupted.
std::optional<QVector<int>> arrangedRows(const RowSource& rows, const RowArrangement& wanted,
                                         const std::function<bool()>& interrupted);

}  // namespace lens
