// The superblock of a real database: where its buckets of notes lie, the newest part of the table of IDs and
// the list of documents. It is written in turn to several places, so that one copy is always whole.
#pragma once

#include <QByteArray>
#include <QVector>
#include <array>

#include "embedded/nsf/nsf_header.h"
#include "embedded/nsf/nsf_id_table.h"
#include "embedded/nsf/nsf_report.h"
#include "embedded/nsf/nsf_source.h"

namespace lens {

struct Superblock {
  int slot = 0;  // from 1; 0: no copy is whole
  TimeDate time;
  quint32 writeCount = 0;
  quint32 bucketCount = 0, otherBucketCount = 0;  // of notes; of what stands outside their records
  // Positions in bytes by bucket number less one. Empty where the map does not lie in the block: then buckets
  // are to be looked for.
  QVector<qint64> bucketPositions;
  // The same for the buckets of what stands outside records.
  QVector<qint64> dataBucketPositions;
  // A bucket of the table of IDs, newer than what the file has under its first ID. Empty: none was found.
  QByteArray currentIdBucket;
  NsfIdTable documents;
  bool hasDocuments = false;
};

struct SuperblockChoice {
  Superblock block;
  bool isOlder = false;        // one that claims to be newer did not check
  bool isUnsupported = false;  // none is whole since all are packed in a way that is not known
  bool noneWasSigned = false;  // as in an encrypted database
};
// The newest copy that is whole. Why others are not is in the report.
SuperblockChoice chooseSuperblock(const NsfSource& source, const NsfHeader& header, NsfReport& report);

// The heads of all copies, by which a later write is noticed.
QByteArray superblockHeads(const NsfSource& source, const NsfHeader& header);

}  // namespace lens
