// The head of the file: what kind it is, properties of the database, and where its blocks lie.
#pragma once

#include "embedded/nsf/maker/made_database.h"

namespace lens::made {

struct MadeArea {
  quint32 position = 0, size = 0;  // position in units of 256 bytes, size in bytes
};

struct MadeHeader {
  MadeArea superblocks[3], descriptorBlocks[2];
  quint32 otherTable = 0, currentTable = 0, currentFirstId = 0;  // tables of IDs
  quint32 units = 0;                                             // of the whole file
};

qint64 headerSize(const MadeDatabase& described);
QByteArray headerBytes(const MadeDatabase& described, const MadeHeader& header);

}  // namespace lens::made
