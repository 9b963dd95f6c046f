// Versions of notes: their lineages, and notes and stubs as other replicas have them.
#include <QRandomGenerator>

#include "embedded/store/database_impl.h"
#include "embedded/store/packed_items.h"

namespace lens {

NoteVersion Database::Impl::readVersion(Statement::Run& row) {
  NoteVersion version;
  version.id = quint32(row.integer(0));
  version.unid = Unid::fromBytes(row.blob(1));
  version.noteClass = quint16(row.integer(2));
  version.live = row.integer(3) == kStateLive;
  version.sequence = quint32(row.integer(4));
  version.sequenceTime = fromStored(row.integer(5));
  const Lineage lineage = Lineage::fromBytes(row.blob(6));
  version.stamp = lineage.isNull() ? originalStamp(version.unid, version.sequence, version.sequenceTime)
                                   : lineage.stamp();
  return version;
}

Lineage Database::Impl::lineageOf(quint32 noteId, const VersionStamp& original) {
  Statement::Run row(readLineage, noteId);
  const Lineage lineage = row.step() ? Lineage::fromBytes(row.blob(0)) : Lineage();
  return lineage.isNull() ? Lineage(original) : lineage;
}

void Database::Impl::putLineage(quint32 noteId, const Lineage& lineage) {
  const QByteArray stamps = lineage.bytes();
  Statement::Run(writeLineage, noteId, stamps).step();
}

VersionStamp Database::Impl::nextStamp() {
  if (writer.writer == 0) writer = {QRandomGenerator::system()->generate64() | 1, 0};
  ++writer.count;
  return writer;
}

Lineage Database::Impl::nextLineage(const NoteHeader& before) {
  Lineage lineage = lineageOf(before.id, originalStamp(before.unid, before.sequence, before.sequenceTime));
  lineage.add(nextStamp());
  return lineage;
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

Lineage Database::lineage(const NoteVersion& version) const {
  return impl_->lineageOf(version.id, version.stamp);
}

void Database::setLineage(quint32 noteId, const Lineage& lineage) {
  Transaction transaction(*this);
  impl_->putLineage(noteId, lineage);
  transaction.commit();
}

void Database::saveVersion(Note& note, const Lineage& lineage) {
  Transaction transaction(*this);
  saveAsGiven(note);
  impl_->putLineage(note.header.id, lineage);
  transaction.commit();
}

void Database::saveStub(const NoteHeader& header, const Lineage& lineage) {
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
  impl_->putLineage(id, lineage);
  transaction.commit();
}

QByteArray Database::objectDigest(quint32 objectId) const {
  Statement::Run row(impl_->readObject, objectId);
  if (!row.step()) return {};
  return QByteArray::number(row.integer(0)) + ' ' + row.blob(2).toByteArray();
}

}  // namespace lens
