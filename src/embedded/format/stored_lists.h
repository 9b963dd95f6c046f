// Lists in the data of stored values (behind the type word), read where they lie: nothing is copied. What is
// malformed gives what can be read of it; who must not lose anything asks whether the counts fit.
#pragma once

#include <QByteArray>
#include <QtEndian>
#include <cstring>

#include "embedded/format/byte_reader.h"
#include "embedded/format/unid.h"

namespace lens {

// A text list: the count, the lengths, then the texts, all in 16 bits and LMBCS.
class StoredTexts {
 public:
  explicit StoredTexts(QByteArrayView data) : data_(data), claimed_(ByteReader(data).u16()) {}

  // As the value says; and how many have a length at least.
  qsizetype claimed() const { return claimed_; }
  bool hasLengths() const { return claimed_ == 0 || data_.size() >= 2 + claimed_ * 2; }
  qsizetype count() const { return hasLengths() ? claimed_ : 0; }
  // What the lengths claim together, and whether so much is there.
  qsizetype claimedBytes() const {
    qsizetype bytes = 0;
    for (qsizetype i = 0; i < count(); ++i) bytes += length(i);
    return bytes;
  }
  bool fits() const {
    return data_.size() >= 2 && hasLengths() && data_.size() - 2 - claimed_ * 2 >= claimedBytes();
  }

  // Calls visit(bytes, whole) for each text in order. One that is cut short comes as far as it goes, and
  // last.
  template <class Visit>
  void forEach(Visit&& visit) const {
    if (!hasLengths()) return;
    qsizetype at = 2 + claimed_ * 2;
    for (qsizetype i = 0; i < claimed_; ++i) {
      const qsizetype size = length(i), left = data_.size() - at;
      if (size > left) {
        if (left > 0) visit(data_.sliced(at), false);
        return;
      }
      visit(data_.sliced(at, size), true);
      at += size;
    }
  }

 private:
  qsizetype length(qsizetype place) const { return qFromLittleEndian<quint16>(data_.data() + 2 + place * 2); }
  QByteArrayView data_;
  qsizetype claimed_;
};

// A list of numbers or of times: counts of single entries and of pairs, then 8 bytes for each entry, of a
// pair two.
class StoredRange {
 public:
  explicit StoredRange(QByteArrayView data) : data_(data) {
    ByteReader reader(data);
    claimedSingles_ = reader.u16();
    claimedPairs_ = reader.u16();
    left_ = reader.left();
    hasCounts_ = !reader.failed();
  }

  // As the value says.
  qsizetype claimedSingles() const { return claimedSingles_; }
  qsizetype claimedPairs() const { return claimedPairs_; }
  // What is there: the ends of pairs, too, are entries.
  qsizetype entries() const { return qMin(claimedSingles_ + 2 * claimedPairs_, left_ / 8); }
  qsizetype singles() const { return qMin(claimedSingles_, entries()); }
  qsizetype pairs() const { return (entries() - singles()) / 2; }
  // The data is as long as the counts say, or longer; exactly so long.
  bool fits() const { return hasCounts_ && left_ >= claimedBytes(); }
  bool isExact() const { return hasCounts_ && left_ == claimedBytes(); }

  // By place among the entries.
  double number(qsizetype place) const {
    const quint64 bits = qFromLittleEndian<quint64>(data_.data() + 4 + place * 8);
    double number;
    std::memcpy(&number, &bits, sizeof number);
    return number;
  }
  TimeDate time(qsizetype place) const { return readTimeDate(data_.data() + 4 + place * 8); }
  TimeDate from(qsizetype pair) const { return time(singles() + 2 * pair); }
  TimeDate to(qsizetype pair) const { return time(singles() + 2 * pair + 1); }

 private:
  qsizetype claimedBytes() const { return claimedSingles_ * 8 + claimedPairs_ * 16; }
  QByteArrayView data_;
  qsizetype claimedSingles_ = 0, claimedPairs_ = 0, left_ = 0;
  bool hasCounts_ = false;
};

// References to notes: the count, then a UNID each.
class StoredReferences {
 public:
  explicit StoredReferences(QByteArrayView data)
      : data_(data), claimed_(ByteReader(data).u16()), there_(qMax<qsizetype>(0, data.size() - 2) / 16) {}

  qsizetype claimed() const { return claimed_; }
  bool fits() const { return data_.size() >= 2 && there_ >= claimed_; }
  qsizetype count() const { return qMin(claimed_, there_); }
  Unid unid(qsizetype place) const { return Unid::fromBytes(data_.sliced(2 + place * 16, 16)); }
  // The note that is answered, whatever the count says; null when none is there.
  Unid first() const { return there_ > 0 ? unid(0) : Unid(); }

 private:
  QByteArrayView data_;
  qsizetype claimed_, there_;
};

}  // namespace lens
