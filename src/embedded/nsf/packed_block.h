// A block of tables as the file stores it: a head, its packed body, and a footer that proves both.
#pragma once

#include <QByteArray>
#include <QString>

#include "embedded/format/timedate.h"
#include "embedded/nsf/nsf_source.h"

namespace lens {

// What the head says of the block, in bytes.
struct PackedBlock {
  qint64 position = 0;  // in the file
  qint64 area = 0;      // so much room was set aside for it
  qint64 stored = 0;    // head and footer included
  quint16 compression = 0;
  qint64 inflated = 0;  // the body when it is unpacked
  qint64 headSize = 0;  // the count of packed bytes follows the head
  TimeDate time;        // the footer repeats it
};

struct UnpackedBlock {
  QByteArray bytes;
  QString reason;  // "" when the block is whole
  bool isUnsupported = false;
};
UnpackedBlock unpackBlock(const NsfSource& source, const PackedBlock& block);

}  // namespace lens
