#include "client/row_order.h"

#include <QCollator>
#include <QLocale>
#include <algorithm>
#include <cmath>
#include <vector>

namespace lens {
namespace {

// Between two questions whether the user has had enough.
constexpr int kRowsAtOnce = 256;

// A system without a language of its own orders by the codes of characters, which is nobody's order.
QLocale orderingLocale() {
  const QLocale own = QLocale().collation();
  return own.language() == QLocale::C ? QLocale(QLocale::English) : own;
}

bool holdsAll(const QStringList& texts, const QStringList& words) {
  return std::all_of(words.begin(), words.end(), [&](const QString& word) {
    return std::any_of(texts.begin(), texts.end(),
                       [&](const QString& text) { return text.contains(word, Qt::CaseInsensitive); });
  });
}

struct KeyedRow {
  int row = 0;
  bool isNumber = false;
  double number = 0;
  QCollatorSortKey text;

  int compare(const KeyedRow& other) const {
    if (isNumber != other.isNumber) return isNumber ? -1 : 1;
    if (!isNumber) return text.compare(other.text);
    return number < other.number ? -1 : other.number < number ? 1 : 0;
  }
};

}  // namespace

std::optional<QVector<int>> arrangedRows(const RowSource& rows, const RowArrangement& wanted,
                                         const std::function<bool()>& interrupted) {
  const QStringList words = wanted.filter.split(u' ', Qt::SkipEmptyParts);
  QCollator collator(orderingLocale());
  collator.setCaseSensitivity(Qt::CaseInsensitive);
  collator.setNumericMode(true);
  std::vector<KeyedRow> keyed;
  QVector<int> shown;
  for (int row = 0; row < rows.count; ++row) {
    if (row % kRowsAtOnce == kRowsAtOnce - 1 && interrupted && interrupted()) return std::nullopt;
    if (!rows.isShown(row)) continue;
    if (!words.isEmpty() && !holdsAll(rows.texts(row), words)) continue;
    shown.push_back(row);
    if (wanted.column < 0) continue;
    const RowKey key = rows.key(row, wanted.column);
    const bool isNumber = key.isNumber && !std::isnan(key.number);  // which has no place among numbers
    keyed.push_back({row, isNumber, isNumber ? key.number : 0, collator.sortKey(key.text)});
  }
  if (wanted.column < 0) return shown;
  // Rows that are alike keep the order in which they came, both ways.
  const bool up = wanted.order == Qt::AscendingOrder;
  std::stable_sort(keyed.begin(), keyed.end(), [up](const KeyedRow& a, const KeyedRow& b) {
    return up ? a.compare(b) < 0 : b.compare(a) < 0;
  });
  std::transform(keyed.begin(), keyed.end(), shown.begin(), [](const KeyedRow& one) { return one.row; });
  return shown;
}

}  // namespace lens
