#include "embedded/nsf/note_data.h"

#include <algorithm>

#include "embedded/nsf/record_bytes.h"

namespace lens {
namespace {
constexpr qint64 kWindow = 256 * 1024;
}

NoteData::NoteData(const NsfSource& source, const DataBuckets& buckets, const NoteRecord& record,
                   qint64 summaryEnd, const Proof& proof)
    : source_(source) {
  if (record.hasDataInside()) {
    if (record.dataPlace != summaryEnd || qint64(record.dataPlace) + record.dataSize > record.bytes.size()) {
      reason_ = QStringLiteral("its data does not begin where the summary ends");
      return;
    }
    size_ = record.dataSize;
    window_ = record.bytes.sliced(record.dataPlace, size_);
  } else if (record.hasDataOutside()) {
    if (record.hasKnownPlace())
      openBlock(record);
    else
      openInBucket(buckets, record, proof);
  }
}

bool NoteData::isBlockOf(QByteArrayView head, const NoteRecord& record) {
  const RecordBytes bytes(head);
  return bytes.isSigned(nsfsignature::NonSummary) && bytes.u32(2) == record.dataSize &&
         bytes.u32(6) == record.header.id.value() && bytes.unid(10) == record.header.unid;
}

void NoteData::openBlock(const NoteRecord& record) {
  const qint64 at = bytePosition(record.dataPlace), size = record.dataSize;
  if (size < kBlockHead || size > source_.size() - at ||
      !source_.read(at, std::min(size, kWindow + kBlockHead), held_)) {
    reason_ = QStringLiteral("its data lies beyond the end of the file");
    return;
  }
  if (!isBlockOf(held_, record)) {
    reason_ = QStringLiteral("the data there is not that of this note");
    return;
  }
  const RecordBytes bytes{QByteArrayView(held_)};
  hasBlock_ = true;
  otherSequence_ = bytes.u32(26) != record.header.sequence;
  checksum_ = bytes.u32(58);
  size_ = size - kBlockHead;
  position_ = at + kBlockHead;
  window_ = QByteArrayView(held_).sliced(kBlockHead);
}

void NoteData::openInBucket(const DataBuckets& buckets, const NoteRecord& record, const Proof& proof) {
  const QByteArray block = buckets.record(record.dataBucket(), record.dataSlot());
  const RecordBytes bytes(block);
  const bool isProven = qint64(block.size()) == record.dataSize && isBlockOf(block, record) &&
                        bytes.u32(26) == record.header.sequence &&
                        proof(QByteArrayView(block).sliced(kBlockHead), bytes.u32(58));
  if (!isProven) {
    reason_ = QStringLiteral("its data is stored in a form that cannot be read");
    return;
  }
  held_ = block;
  window_ = QByteArrayView(held_).sliced(kBlockHead);
  hasBlock_ = true;
  checksum_ = bytes.u32(58);
  size_ = window_.size();
}

bool NoteData::fill(qint64 count) {
  if (!hasBlock_) return false;
  const qint64 most = std::min(size_ - taken_, std::max(kWindow, count));
  if (!source_.read(position_ + taken_, most, held_)) return false;
  windowStart_ = taken_;
  window_ = held_;
  return true;
}

bool NoteData::take(qint64 count, QByteArrayView& bytes) {
  bytes = {};
  if (count > size_ - taken_) return false;
  const qint64 offset = taken_ - windowStart_;
  if (count > window_.size() - offset) {
    if (!fill(count)) return false;
    bytes = window_.first(count);
  } else {
    bytes = window_.sliced(offset, count);
  }
  taken_ += count;
  return true;
}

}  // namespace lens
