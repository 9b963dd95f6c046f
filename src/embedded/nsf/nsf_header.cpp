#include "embedded/nsf/nsf_header.h"

#include "embedded/format/lmbcs.h"
#include "embedded/nsf/record_bytes.h"

namespace lens {
namespace {

// The title, then lines for categories, the name as a template ("#1") and the template of its design ("#2").
void readInformation(QByteArrayView buffer, NsfProperties& properties) {
  const qsizetype end = buffer.indexOf('\0');
  const QString text = fromLmbcs(end < 0 ? buffer : buffer.first(end));
  const QStringList lines = text.split(u'\n');
  properties.title = lines.first();
  for (const QString& line : lines.sliced(1)) {
    if (line.startsWith(u"#1"))
      properties.templateName = line.sliced(2);
    else if (line.startsWith(u"#2"))
      properties.inheritsFrom = line.sliced(2);
    else if (properties.categories.isEmpty())
      properties.categories = line;
  }
}

void readProperties(const RecordBytes& bytes, NsfProperties& properties) {
  properties.databaseId = bytes.time(10);
  properties.lastChange = bytes.time(34);
  properties.databaseClass = bytes.u16(42);
  properties.flags = bytes.u16(44);
  properties.lastDataChange = bytes.time(136);
  properties.nextPurge = bytes.time(144);
  properties.lastDesignChange = bytes.time(172);
  properties.replicaId = bytes.time(180);
  properties.replicationFlags = bytes.u16(188);
  properties.cutoffDays = bytes.u16(190);
  properties.cutoff = bytes.time(192);
  readInformation(bytes.part(200, 128), properties);
}

}  // namespace

bool readNsfHeader(QByteArrayView raw, NsfHeader& header) {
  const RecordBytes bytes(raw);
  if (bytes.size() < kNsfHeaderBytes || !bytes.isSigned(nsfsignature::Header)) return false;
  header.headerSize = bytes.u32(2);
  header.odsVersion = int(bytes.u32(6) & 0x7FFFFFFF);
  header.declaredSize = bytePosition(bytes.u32(88));
  readProperties(bytes, header.properties);
  for (size_t i = 0; i < header.specialNotes.size(); ++i)
    header.specialNotes[i] = bytes.u32(328 + 4 * qint64(i));
  header.aclObject = bytes.u32(328 + 4 * 16);
  for (size_t i = 0; i < header.superblocks.size(); ++i) {
    const qint64 at = 560 + 8 * qint64(i);
    header.superblocks[i] = {bytePosition(bytes.u32(at)), bytes.u32(at + 4)};
  }
  // Here the size comes first.
  for (size_t i = 0; i < header.descriptors.size(); ++i) {
    const qint64 at = 624 + 8 * qint64(i);
    header.descriptors[i] = {bytePosition(bytes.u32(at + 4)), bytes.u32(at)};
  }
  header.encryption = bytes.u8(646);
  return true;
}

}  // namespace lens
