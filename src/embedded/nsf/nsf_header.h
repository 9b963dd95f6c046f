// The head of a real database's file: what it is, and where its tables lie.
#pragma once

#include <QByteArray>
#include <array>

#include "embedded/nsf/nsf_properties.h"

namespace lens {

inline constexpr qint64 kNsfHeaderBytes = 1024;  // that have a meaning here; the header itself may be longer
inline constexpr int kOldestOds = 43;            // before it notes and objects are laid out otherwise

// Where a copy of a block lies.
struct NsfArea {
  qint64 position = 0;  // 0: there is none
  qint64 size = 0;
};

struct NsfHeader {
  int odsVersion = 0;
  qint64 headerSize = 0, declaredSize = 0;
  std::array<NsfArea, 4> superblocks;
  std::array<NsfArea, 2> descriptors;
  std::array<quint32, 16> specialNotes{};  // by the class bit
  quint32 aclObject = 0;
  quint8 encryption = 0;
  NsfProperties properties;

  // Two versions have been compared with what clients show; the others are said to share the layout.
  bool isTestedVersion() const { return odsVersion == 52 || odsVersion == 55; }
};

// False when the bytes, kNsfHeaderBytes of them, begin no database.
bool readNsfHeader(QByteArrayView bytes, NsfHeader& header);

}  // namespace lens
