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

}  // namespace

void RowBuffer::add(QByteArrayView key, quint32 note, QByteArrayView categories) {
  char end[4];
  qToBigEndian(note, end);
  const qsizetype at = bytes_.size();
  bytes_.append(key).append(end, 4);
  const qsizetype size = bytes_.size() - at;
  rows_.push_back(
      {firstBytes(QByteArrayView(bytes_).sliced(at)), at, quint32(size), quint32(categories.size())});
  bytes_.append(categories);
  if (bytes_.size() >= kMostBytes) flush();
}

void RowBuffer::flush() {
  std::sort(rows_.begin(), rows_.end(), [this](const Row& a, const Row& b) {
    if (a.first != b.first) return a.first < b.first;
    return keyOf(a).compare(keyOf(b)) < 0;
  });
  for (const Row& row : rows_)
    tables_.addRow(view_, keyOf(row),
                   QByteArrayView(bytes_).sliced(row.at + row.keySize, row.categoriesSize));
  rows_.clear();
  bytes_.clear();
}

}  // namespace lens
