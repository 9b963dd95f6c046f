#include "embedded/nsf/maker/made_header.h"

#include "embedded/nsf/maker/made_bytes.h"

namespace lens::made {

qint64 headerSize(const MadeDatabase& described) {
  return described.ods >= 55 ? 2048 : 1024;
}

QByteArray headerBytes(const MadeDatabase& described, const MadeHeader& header) {
  QByteArray bytes = zeros(headerSize(described));
  put16(bytes, 0, 0x001A);
  put32(bytes, 2, quint32(bytes.size()));
  put32(bytes, 6, described.ods);
  putTime(bytes, 10, described.databaseId);
  put32(bytes, 20, header.otherTable);
  putTime(bytes, 34, described.changed);
  put16(bytes, 42, described.databaseClass);
  put16(bytes, 44, described.databaseFlags);
  put32(bytes, 62, header.currentTable);
  put32(bytes, 66, header.currentFirstId);
  put16(bytes, 76, 4096);
  put16(bytes, 78, 8192);
  put16(bytes, 82, 256);
  put32(bytes, 88, header.units);
  putTime(bytes, 136, described.changed);
  putTime(bytes, 172, described.changed);
  putTime(bytes, 180, described.replicaId);
  put16(bytes, 188, described.replicationOptions);
  put16(bytes, 190, described.cutoffDays);
  // What follows the end of the text is left over from something else.
  putBytes(bytes, 200, QByteArray(128, '\x6B'));
  putBytes(bytes, 200,
           described.information.first(std::min<qsizetype>(described.information.size(), 127)) + '\0');
  for (qsizetype i = 0; i < qsizetype(described.special.size()); ++i)
    put32(bytes, 328 + 4 * i, described.special[size_t(i)]);
  for (int copy = 0; copy < 3; ++copy) {
    put32(bytes, 560 + 8 * copy, header.superblocks[copy].position);
    put32(bytes, 564 + 8 * copy, header.superblocks[copy].size);
  }
  put32(bytes, 592, 0x40000);
  put16(bytes, 596, 4);
  put16(bytes, 598, 4);
  put32(bytes, 600, 8192);
  put32(bytes, 604, 32768);
  put32(bytes, 608, 63488);
  put32(bytes, 612, 32768);
  for (int copy = 0; copy < 2; ++copy) {
    put32(bytes, 624 + 8 * copy, header.descriptorBlocks[copy].size);
    put32(bytes, 628 + 8 * copy, header.descriptorBlocks[copy].position);
  }
  return bytes;
}

}  // namespace lens::made
