// Versions of notes: their version vectors, and notes and stubs as other replicas have them.
#include <QRandomGenerator>

#include "embedded/format/packed_items.h"
#include "embedded/store/database_impl.h"

namespace lens {

NoteVersion Database::Impl::readVersion(Statement::Run& row) {
  NoteVersion version;
  version.id = quint32(row.integer(0));
  version.unid = Unid::fromBytes(row.blob(1));
  version.noteClass = quint16(row.integer(2));
  version.live = row.integer(3) == kStateLive;
  version.sequence = quint32(row.integer(4));
  version.sequenceTime = fromStored(row.integer(5));
  const VersionVector versionVector = VersionVector::fromBytes(row.blob(6));
  version.stamp = versionVector.isNull() ? originalStamp(version.unid, version.sequence, version.sequenceTime)
                                         : versionVector.stamp();
  return version;
}

VersionVector Database::Impl::versionVectorOf(quint32 noteId, const VersionStamp& original) {
  Statement::Run row(readVersionVector, noteId);
  const VersionVector versionVector = row.step() ? VersionVector::fromBytes(row.blob(0)) : VersionVector();
  return versionVector.isNull() ? VersionVector(original) : versionVector;
}

void Database::Impl::putVersionVector(quint32 noteId, const VersionVector& versionVector) {
  const QByteArray stamps = versionVector.bytes();
  Statement::Run(writeVersionVector, noteId, stamps).step();
}

VersionStamp Database::Impl::nextStamp() {
  if (writer.writer == 0) writer = {QRandomGenerator::system()->generate64() | 1, 0};
  ++writer.count;
  return writer;
}

VersionVector Database::Impl::nextVersionVector(const NoteHeader& before) {
  VersionVector versionVector =
      versionVectorOf(before.id, originalStamp(before.unid, before.sequence, before.sequenceTime));
  versionVector.add(nextStamp());
  return versionVector;
}

QVector<NoteVersion> Database::versionsAfter(const Unid& unid, int most) const {
  QVector<NoteVersion> versions;
  const QByteArray after = unid.isNull() ? QByteArray() : unid.bytes();
  Statement::Run row(impl_->listVersions, after, most);
  while (row.step()) versions.push_back(Impl::readVersion(row));
  return versions;
}

bool Database::findVersion(const Unid& unid, NoteVersion& version) const {
  const QByteArray bytes = unid.bytes();
  Statement::Run row(impl_->versionOfUnid, bytes);
  if (!row.step()) return false;
  version = Impl::readVersion(row);
  return true;
}

VersionVector Database::versionVector(const NoteVersion& version) const {
  return impl_->versionVectorOf(version.id, version.stamp);
}

void Database::setVersionVector(quint32 noteId, const VersionVector& versionVector) {
  Transaction transaction(*this);
  impl_->putVersionVector(noteId, versionVector);
  transaction.commit();
}

void Database::saveVersion(Note& note, const VersionVector& versionVector) {
  Transaction transaction(*this);
  saveAsGiven(note);
  impl_->putVersionVector(note.header.id, versionVector);
  transaction.commit();
}

void Database::saveStub(const NoteHeader& header, const VersionVector& versionVector) {
  Transaction transaction(*this);
  NoteVersion there;
  const bool known = findVersion(header.unid, there);
  const quint32 id = known ? there.id : impl_->nextId();
  const qint64 time = stored(header.sequenceTime), change = impl_->nextChange();
  if (known) {
    Statement::Run(impl_->updateToStub, header.sequence, time, time, change, id).step();
  } else {
    const QByteArray unid = header.unid.bytes(), parent = parentBytes(header.parent);
    Statement::Run(impl_->insertStub, id, header.noteClass, unid, parent, header.sequence, time, time, time,
                   time, time, change)
        .step();
    impl_->renewWriter();
  }
  impl_->putVersionVector(id, versionVector);
  transaction.commit();
}

QByteArray Database::objectDigest(quint32 objectId) const {
  Statement::Run row(impl_->readObject, objectId);
  if (!row.step()) return {};
  return QByteArray::number(row.integer(0)) + ' ' + row.blob(2).toByteArray();
}

}  // namespace lens
