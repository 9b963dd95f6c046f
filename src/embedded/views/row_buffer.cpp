#include "embedded/views/row_buffer.h"

#include <QtEndian>
#include <algorithm>
#include <cstring>

namespace lens {
namespace {

quint64 firstBytes(QByteArrayView key) {
  char bytes[8] = {};
  std::memcpy(bytes, key.data(), size_t(qMin<qsizetype>(key.size(), 8)));
  return qFromBigEndian<quint64>(bytes);
}

qsizetype shared(QByteArrayView a, QByteArrayView b, qsizetype most) {
  most = qMin(most, qMin(a.size(), b.size()));
  return std::mismatch(a.begin(), a.begin() + most, b.begin()).first - a.begin();
}

}  // namespace

void RowBuffer::add(QByteArrayView key, NoteId note, QByteArrayView categories) {
  char end[4];
  qToBigEndian(note.value(), end);
  const qsizetype at = bytes_.size();
  bytes_.append(key).append(end, 4);
  const qsizetype size = bytes_.size() - at;
  rows_.push_back({0, at, quint32(size), quint32(categories.size())});
  bytes_.append(categories);
  if (bytes_.size() >= kMostBytes) flush();
}

void RowBuffer::sort() {
  qsizetype same = rows_.empty() ? 0 : keyOf(rows_.front()).size();
  for (const Row& row : rows_) same = shared(keyOf(rows_.front()), keyOf(row), same);
  for (Row& row : rows_) row.first = firstBytes(keyOf(row).sliced(same));
  std::sort(rows_.begin(), rows_.end(), [this](const Row& a, const Row& b) {
    if (a.first != b.first) return a.first < b.first;
    return keyOf(a).compare(keyOf(b)) < 0;
  });
}

void RowBuffer::flush() {
  sort();
  std::size_t at = 0;
  for (IndexTables::RowsAtOnce several; at + IndexTables::kRowsAtOnce <= rows_.size();) {
    for (std::size_t i = 0; i < several.size(); i += 2, ++at) {
      several[i] = keyOf(rows_[at]);
      several[i + 1] = categoriesOf(rows_[at]);
    }
    tables_.addRows(view_, several);
    pause_();
  }
  for (; at < rows_.size(); ++at)
    tables_.writeRow(view_, {keyOf(rows_[at]).toByteArray(), 0, categoriesOf(rows_[at]).toByteArray()});
  count_ += qint64(rows_.size());
  rows_.clear();
  bytes_.clear();
}

}  // namespace lens
