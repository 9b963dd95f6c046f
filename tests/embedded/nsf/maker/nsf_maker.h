// Writes a described database as a file of the platform's format, for tests, fuzzing and benchmarks: every
// structure that such files are made of, in the layouts of versions 52 and 55 (which 43 and later share).
// Written beside the reader, from what was found in real files; it shares no code with it.
//
//   MadeDatabase described;
//   described.add(MadeNote{...});
//   const MadeFile file = makeFile(described);
//   file.bytes ... or file.write(path)
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVector>

#include "embedded/nsf/maker/made_database.h"

namespace lens::made {

// Part of the file; positions are those of MadeFile::bytes.
struct MadePlace {
  qint64 at = 0, size = 0;
  qint64 end() const { return at + size; }
};

// What a note is read from besides the blocks that all share.
struct MadeNotePlaces {
  int bucket = -1;  // in MadeFile::buckets; -1: the record lies by itself
  MadePlace record;
  MadePlace slot;   // entry of the bucket's table of slots
  MadePlace entry;  // of the table of IDs on disk; empty where the superblock carries it
  MadePlace body;   // block of what is not in the summary; empty for none
};

struct MadeFile {
  QByteArray bytes;
  // So many bytes of nothing lie in the file in front of bytes[holeAt]; places behind count without them.
  qint64 holeAt = 0, hole = 0;

  MadePlace header;
  MadePlace superblocks[2], descriptorBlocks[2];  // what is stored, without the free rest of their areas
  QVector<MadePlace> rrvBuckets, buckets;
  QHash<quint32, MadeNotePlaces> notes;
  QHash<quint32, MadePlace> objects;

  qint64 size() const { return bytes.size() + hole; }
  // The hole takes no room on the disk. False where the file cannot be written.
  bool write(const QString& path) const;
};

MadeFile makeFile(const MadeDatabase& described);

// 32 hexadecimal digits of 16 stored bytes: the first eight from back to front, then the others.
QString unidText(const QByteArray& stored);

}  // namespace lens::made
