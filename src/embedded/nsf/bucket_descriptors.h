// The bucket descriptor block of a real database: where the buckets of the table of IDs lie, and the names of
// all items with their usual types. Two copies are written in turn.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVector>

#include "embedded/nsf/nsf_header.h"
#include "embedded/nsf/nsf_report.h"
#include "embedded/nsf/nsf_source.h"

namespace lens {

class BucketDescriptors {
 public:
  struct IdBucketPlace {
    qint64 position = 0;
    quint32 firstId = 0;
  };

  // No names, no buckets.
  BucketDescriptors() = default;
  // The unpacked body, whose parts have these counts; isWhole() tells whether they add up to it.
  BucketDescriptors(QByteArray body, qint64 idBuckets, qint64 names, qint64 textSize, qint64 hashes);

  bool isWhole() const { return whole_; }
  QVector<IdBucketPlace> idBuckets() const;
  qint64 nameCount() const { return names_; }
  // The name and the usual type word; false for an index without a whole entry. Names are decoded once.
  bool name(qint64 index, QString& name, quint16& type) const;

 private:
  QByteArray body_;
  qint64 idBuckets_ = 0, names_ = 0, textSize_ = 0;
  bool whole_ = false;
  mutable QHash<quint32, QString> decoded_;
};

struct DescriptorChoice {
  BucketDescriptors block;
  int slot = 0;  // from 1; 0: no copy is whole
  bool isOlder = false;
  bool isUnsupported = false;
};
// The newest copy that is whole. Why others are not is in the report.
DescriptorChoice chooseDescriptors(const NsfSource& source, const NsfHeader& header, NsfReport& report);

}  // namespace lens
