#include "embedded/format/stored_object.h"

#include <QtEndian>

#include "embedded/format/byte_reader.h"
#include "embedded/format/lmbcs.h"
#include "embedded/format/stored_item_types.h"

namespace lens {
namespace {

constexpr quint16 kFileObject = 0;
constexpr qsizetype kIdInData = 2;  // behind the kind of object

}  // namespace

QByteArray fileObjectValue(const FileObject& file) {
  const QByteArray name = toLmbcs(file.name);
  requireWordCount(name.size(), u"Too many bytes in the name of a file");
  QByteArray value;
  value.reserve(38 + name.size());
  appendU16(value, itemtype::Object);
  appendU16(value, kFileObject);
  appendU32(value, file.objectId);
  appendU16(value, quint16(name.size()));
  for (quint16 word : {file.hostType, file.compression, file.attributes, file.flags}) appendU16(value, word);
  appendU32(value, file.size);
  appendTimeDate(value, file.created);
  appendTimeDate(value, file.modified);
  return value.append(name);
}

bool readFileObject(QByteArrayView data, FileObject& file) {
  ByteReader reader(data);
  if (reader.u16() != kFileObject) return false;
  FileObject read;
  read.objectId = reader.u32();
  const quint16 nameLength = reader.u16();
  read.hostType = reader.u16();
  read.compression = reader.u16();
  read.attributes = reader.u16();
  read.flags = reader.u16();
  read.size = reader.u32();
  read.created = reader.time();
  read.modified = reader.time();
  const QByteArrayView name = reader.take(nameLength);
  if (reader.failed()) return false;
  read.name = fromLmbcs(name);
  file = read;
  return true;
}

bool readFileValue(QByteArrayView value, FileObject& file) {
  ByteReader reader(value);
  return reader.u16() == itemtype::Object && readFileObject(value.sliced(2), file);
}

bool isOleObject(QByteArrayView data) {
  ByteReader reader(data);
  const quint16 kind = reader.u16();
  reader.skip(6);
  return kind == kFileObject && reader.u16() == kOleHost && !reader.failed();
}

bool isFileKind(QByteArrayView data) {
  return ByteReader(data).u16() == kFileObject;
}

quint32 objectIdOf(QByteArrayView data) {
  ByteReader reader(data);
  reader.skip(kIdInData);
  const quint32 id = reader.u32();
  return reader.failed() ? 0 : id;
}

void replaceObjectId(QByteArray& value, quint32 objectId) {
  qToLittleEndian(objectId, value.data() + 2 + kIdInData);
}

}  // namespace lens
