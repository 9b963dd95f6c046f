#include "embedded/nsf/nsf_id_table.h"

#include <algorithm>

#include "embedded/nsf/record_bytes.h"

namespace lens {
namespace {
constexpr quint32 kIdTableMark = 4;
constexpr qint64 kIdTableHead = 18, kIdTableRun = 5;
}  // namespace

NsfIdTable::NsfIdTable(QByteArrayView raw) {
  const RecordBytes bytes(raw);
  if (bytes.u32(0) != kIdTableMark || !bytes.has(0, kIdTableHead)) return;
  const quint16 ids = bytes.u16(4), runs = bytes.u16(6);
  const qint64 room = (bytes.size() - kIdTableHead) / kIdTableRun;
  // The counters have 16 bits: a larger table is read as far as its runs make sense.
  qint64 end = 0;
  for (qint64 i = 0; i < room; ++i) {
    const qint64 at = kIdTableHead + i * kIdTableRun;
    const Run run{bytes.u32(at + 1), quint32(bytes.u8(at)) + 1};
    const qint64 past = qint64(run.first) + 4 * qint64(run.count);
    const bool inOrder = run.first % 4 == 2 && run.first >= end && past <= qint64(0xFFFFFFFF) + 4;
    if (!inOrder || (i >= runs && quint16(i) == runs && quint16(count_) == ids)) break;
    runs_.push_back(run);
    count_ += run.count;
    end = past;
  }
  whole_ = quint16(runs_.size()) == runs && quint16(count_) == ids;
}

bool NsfIdTable::contains(NoteId id) const {
  const auto behind = std::upper_bound(runs_.begin(), runs_.end(), id.value(),
                                       [](quint32 value, const Run& run) { return value < run.first; });
  if (behind == runs_.begin()) return false;
  const Run& run = *(behind - 1);
  const quint32 distance = id.value() - run.first;
  return distance % 4 == 0 && distance / 4 < run.count;
}

}  // namespace lens
