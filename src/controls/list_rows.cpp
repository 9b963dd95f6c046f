#include "controls/list_rows.h"

#include <algorithm>
#include <vector>

namespace lens {
namespace {

char16_t upper(QChar unit) {
  return char16_t(QChar::toUpper(char32_t(unit.unicode())));
}

bool startsWith(const QString& text, const QString& prefix) {
  return text.size() >= prefix.size() &&
         std::equal(prefix.begin(), prefix.end(), text.begin(),
                    [](QChar left, QChar right) { return upper(left) == upper(right); });
}

}  // namespace

bool sortsBefore(const QString& left, const QString& right) {
  return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                      [](QChar a, QChar b) { return upper(a) < upper(b); });
}

void ListRows::setSorted(bool sorted) {
  settle();
  sorted_ = sorted;
  settled_ = 0;
  settle();
}

QString ListRows::text(int row) {
  settle();
  return row >= 0 && row < count() ? rows_[row].text : QString();
}

void ListRows::setText(int row, const QString& text) {
  settle();
  rows_[row].text = text;
  Q_EMIT dataChanged(createIndex(row, 0), createIndex(row, 0));
}

void ListRows::add(const QString& text) {
  const int row = count();
  beginInsertRows(QModelIndex(), row, row);
  rows_.append({text, false});
  endInsertRows();
}

void ListRows::insert(int row, const QString& text) {
  settle();
  beginInsertRows(QModelIndex(), row, row);
  rows_.insert(row, {text, false});
  settled_ = count();
  if (index_ >= row) ++index_;
  if (markedLast_ >= row) ++markedLast_;
  if (markedFirst_ >= row) ++markedFirst_;
  endInsertRows();
}

void ListRows::remove(int row) {
  settle();
  beginRemoveRows(QModelIndex(), row, row);
  if (rows_[row].marked) --markedCount_;
  rows_.removeAt(row);
  settled_ = count();
  if (index_ == row)
    index_ = -1;
  else if (index_ > row)
    --index_;
  if (markedFirst_ > row) --markedFirst_;
  if (markedLast_ >= row) --markedLast_;
  endRemoveRows();
}

void ListRows::clear() {
  beginResetModel();
  rows_.clear();
  settled_ = 0;
  index_ = -1;
  markedCount_ = 0;
  markedFirst_ = 0;
  markedLast_ = -1;
  endResetModel();
}

int ListRows::settledIndexRow() {
  settle();
  return index_;
}

bool ListRows::isMarked(int row) {
  settle();
  return rows_[row].marked;
}

void ListRows::mark(int row, bool marked) {
  settle();
  if (rows_[row].marked == marked) return;
  rows_[row].marked = marked;
  markedCount_ += marked ? 1 : -1;
  if (marked) {
    const bool first = markedLast_ < markedFirst_;
    markedFirst_ = first ? row : std::min(markedFirst_, row);
    markedLast_ = first ? row : std::max(markedLast_, row);
  }
  Q_EMIT dataChanged(createIndex(row, 0), createIndex(row, 0));
}

void ListRows::markOnly(int first, int last) {
  settle();
  for (int row = markedFirst_; row <= markedLast_; ++row) rows_[row].marked = false;
  for (int row = first; row <= last; ++row) rows_[row].marked = true;
  if (markedLast_ >= markedFirst_)
    Q_EMIT dataChanged(createIndex(markedFirst_, 0), createIndex(markedLast_, 0));
  markedFirst_ = first;
  markedLast_ = last;
  markedCount_ = last - first + 1;
  if (last >= first) Q_EMIT dataChanged(createIndex(first, 0), createIndex(last, 0));
}

int ListRows::find(const QString& prefix, int start) {
  settle();
  for (int row = std::max(0, start); row < count(); ++row)
    if (startsWith(rows_[row].text, prefix)) return row;
  return -1;
}

int ListRows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count();
}

QVariant ListRows::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= count()) return QVariant();
  const Row& row = rows_[index.row()];
  if (role == Qt::DisplayRole) return row.text;
  if (role == Qt::CheckStateRole && checks_) return int(row.marked ? Qt::Checked : Qt::Unchecked);
  return QVariant();
}

Qt::ItemFlags ListRows::flags(const QModelIndex& index) const {
  return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren
                         : Qt::ItemFlags();
}

void ListRows::settle() {
  if (settled_ == count()) return;
  const int firstUnsorted = settled_;
  settled_ = count();
  if (sorted_) sortFrom(firstUnsorted);
}

void ListRows::sortFrom(int firstUnsorted) {
  const auto before = [](const Row& left, const Row& right) { return sortsBefore(left.text, right.text); };
  Q_EMIT layoutAboutToBeChanged();
  std::vector<int> order;
  const auto begin = rows_.begin();
  const auto middle = begin + firstUnsorted;
  if (firstUnsorted == 0 && (index_ >= 0 || markedCount_ > 0)) {
    // An old list that becomes sorted: its index has to be followed by hand.
    order.resize(std::size_t(count()));
    for (int row = 0; row < count(); ++row) order[std::size_t(row)] = row;
    std::stable_sort(order.begin(), order.end(),
                     [&](int left, int right) { return before(rows_[left], rows_[right]); });
    if (index_ >= 0) index_ = int(std::find(order.begin(), order.end(), index_) - order.begin());
    std::stable_sort(begin, rows_.end(), before);
  } else {
    std::stable_sort(middle, rows_.end(), before);
    if (index_ >= 0) index_ += int(std::lower_bound(middle, rows_.end(), rows_[index_], before) - middle);
    std::inplace_merge(begin, middle, rows_.end(), before);
  }
  if (markedCount_ > 0) {
    markedFirst_ = 0;
    markedLast_ = count() - 1;
  }
  Q_EMIT layoutChanged();
}

}  // namespace lens
