// The part of a note that stands outside its summary: inside the record, or in a block of its own that proves
// whose it is.
#pragma once

#include <QByteArray>
#include <QString>
#include <functional>

#include "embedded/nsf/data_buckets.h"
#include "embedded/nsf/note_record.h"
#include "embedded/nsf/nsf_source.h"

namespace lens {

// Read in order, and never held whole: a block may be as large as the file.
class NoteData {
 public:
  // Whether the bytes are the values of the note's items: their sizes add up to them, and the checksum is
  // right. Asked of what lies where it is only guessed to be.
  using Proof = std::function<bool(QByteArrayView data, quint32 checksum)>;
  // Data in the record begins where the summary values end.
  NoteData(const NsfSource& source, const DataBuckets& buckets, const NoteRecord& record, qint64 summaryEnd,
           const Proof& proof);

  // Why there is none; "" otherwise, also for a note without.
  const QString& reason() const { return reason_; }
  qint64 size() const { return size_; }
  bool hasBlock() const { return hasBlock_; }
  // The block was written with another state of the note than the record.
  bool isOtherSequence() const { return otherSequence_; }
  // By the block; 0 for data in the record, which has none.
  quint32 checksum() const { return checksum_; }
  // The next bytes, valid until the next call; false when there are not so many.
  bool take(qint64 count, QByteArrayView& bytes);

  // The head of a block, which tells the note.
  static constexpr qint64 kBlockHead = 68;
  static bool isBlockOf(QByteArrayView head, const NoteRecord& record);

 private:
  void openBlock(const NoteRecord& record);
  void openInBucket(const DataBuckets& buckets, const NoteRecord& record, const Proof& proof);
  bool fill(qint64 count);

  const NsfSource& source_;
  QString reason_;
  qint64 size_ = 0, taken_ = 0;
  qint64 position_ = 0;     // of the block's data in the file
  qint64 windowStart_ = 0;  // in the data
  QByteArray held_;
  QByteArrayView window_;
  quint32 checksum_ = 0;
  bool hasBlock_ = false, otherSequence_ = false;
};

}  // namespace lens
