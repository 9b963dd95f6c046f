// The two blocks that lead to everything else, packed and with their checksums: superblock and bucket
// descriptor block.
#pragma once

#include <QByteArray>
#include <QVector>

#include "embedded/nsf/maker/made_names.h"

namespace lens::made {

using MadeChange = std::function<void(MadePart part, quint32 number, QByteArray& bytes)>;

struct MadeSuperblock {
  TimeDate time;
  quint32 writeCount = 0;
  Packing packing = Packing::Matches;
  struct Bucket {
    quint32 position = 0;  // in units of 256 bytes
    TimeDate time;
  };
  QVector<Bucket> buckets;
  bool severalPages = false, pageOfBodies = false;
  QVector<quint32> bodyBuckets;  // positions in units of 256 bytes
  quint32 rrvPosition = 0, firstId = 0;
  QByteArray rrvCopy, listedNotes;  // the current bucket of the table of IDs; a table of note IDs
};
QByteArray superblockBytes(const MadeSuperblock& block, int copy, const MadeChange& change);
// So many buckets have their descriptors on one page.
inline constexpr int kDescriptorsOfPage = 570;

struct MadeDescriptors {
  TimeDate time;
  quint32 writeCount = 0;
  Packing packing = Packing::Matches;
  struct Rrv {
    quint32 position = 0;  // in units of 256 bytes
    bool ofDocuments = false;
    quint32 firstId = 0;
  };
  QVector<Rrv> rrvBuckets;
  QVector<MadeName> names;
};
QByteArray descriptorBytes(const MadeDescriptors& block, int copy, const MadeChange& change);

}  // namespace lens::made
