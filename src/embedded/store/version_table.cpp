#include "embedded/store/version_table.h"

#include <QRandomGenerator>

#include "embedded/store/stored_row.h"

namespace lens {

NoteVersion VersionTable::readVersion(Statement::Run& row) {
  NoteVersion version;
  version.id = row.noteId(0);
  version.unid = Unid::fromBytes(row.blob(1));
  version.noteClass = row.number<quint16>(2);
  version.live = row.integer(3) == kStateLive;
  version.sequence = row.number<quint32>(4);
  version.sequenceTime = fromStored(row.integer(5));
  const VersionVector versionVector = VersionVector::fromBytes(row.blob(6));
  version.stamp = versionVector.isNull() ? originalStamp(version.unid, version.sequence, version.sequenceTime)
                                         : versionVector.stamp();
  return version;
}

QVector<NoteVersion> VersionTable::after(const Unid& unid, int most) {
  QVector<NoteVersion> versions;
  const QByteArray bytes = unid.isNull() ? QByteArray() : unid.bytes();
  Statement::Run row(list_, bytes, most);
  while (row.step()) {
    NoteVersion version = readVersion(row);
    const QByteArray last = versions.isEmpty() ? bytes : versions.last().unid.bytes();
    if (version.unid.bytes() <= last) row.wrongValue(1, "UNID behind the last one");
    versions.push_back(version);
  }
  return versions;
}

bool VersionTable::find(const Unid& unid, NoteVersion& version) {
  const QByteArray bytes = unid.bytes();
  Statement::Run row(ofUnid_, bytes);
  if (!row.step()) return false;
  version = readVersion(row);
  return true;
}

VersionVector VersionTable::vectorOf(NoteId noteId, const VersionStamp& original) {
  Statement::Run row(readVector_, noteId);
  const VersionVector versionVector = row.step() ? VersionVector::fromBytes(row.blob(0)) : VersionVector();
  return versionVector.isNull() ? VersionVector(original) : versionVector;
}

void VersionTable::put(NoteId noteId, const VersionVector& versionVector) {
  const QByteArray stamps = versionVector.bytes();
  Statement::Run(writeVector_, noteId, stamps).step();
}

void VersionTable::erase(NoteId noteId) {
  Statement::Run(eraseVector_, noteId).step();
}

VersionStamp VersionTable::nextStamp() {
  if (writer_.writer == 0) writer_ = {QRandomGenerator::system()->generate64() | 1, 0};
  ++writer_.count;
  return writer_;
}

VersionVector VersionTable::next(const NoteHeader& before) {
  VersionVector versionVector =
      vectorOf(before.id, originalStamp(before.unid, before.sequence, before.sequenceTime));
  versionVector.add(nextStamp());
  return versionVector;
}

}  // namespace lens
