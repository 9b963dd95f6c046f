#include <QFileDevice>
#include <QFileInfo>
#include <limits>

#include "embedded/files/save_file.h"
#include "embedded/store/database_impl.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kDeviceFault = 57;

[[noreturn]] void objectFault(const QString& path, quint32 objectId, const QString& fault) {
  throw RuntimeError(enginefault::Damaged,
                     u"%1: attachment object %2 %3"_s.arg(path, QString::number(objectId), fault));
}

// The file that a device stands for, or else the database that it is read for or written from.
QString fileOf(const QIODevice& device, const QString& databasePath) {
  const auto* file = qobject_cast<const QFileDevice*>(&device);
  return file && !file->fileName().isEmpty() ? file->fileName() : databasePath;
}

void writeAll(QIODevice& target, QByteArrayView bytes, const QString& databasePath) {
  while (!bytes.isEmpty()) {
    const qint64 written = target.write(bytes.data(), bytes.size());
    if (written <= 0)
      throw RuntimeError(kDeviceFault, u"%1: the attachment cannot be written (%2)"_s.arg(
                                           fileOf(target, databasePath), target.errorString()));
    bytes = bytes.sliced(written);
  }
}

}  // namespace

Database::Impl::Pending& Database::Impl::pending(quint32 objectId) {
  const auto found = objects.constFind(objectId);
  if (found == objects.constEnd())
    throw RuntimeError(err::InvalidCall, u"%1: attachment object %2 is not being written"_s.arg(
                                             connection.path(), QString::number(objectId)));
  return **found;
}

void Database::Impl::noteSaved(const Note& note) {
  if (unsavedObjects.isEmpty()) return;
  for (const Item& item : note.items)
    if (item.type() == itemtype::Object) unsavedObjects.remove(objectIdOf(item.data()));
}

void Database::Impl::storeChunk(quint32 objectId, Pending& object, QByteArrayView bytes) {
  checkWritable();
  Statement::Run(insertChunk, objectId, object.chunks, bytes).step();
  ++object.chunks;
}

quint32 Database::beginObject() {
  impl_->checkWritable();
  Statement::Run(impl_->insertObject).step();
  const qint64 id = sqlite3_last_insert_rowid(handle());
  if (id > std::numeric_limits<quint32>::max())
    throw RuntimeError(enginefault::NotSaved, u"%1: there are no object IDs left"_s.arg(path_));
  auto object = std::make_shared<Impl::Pending>();
  object->depth = impl_->depth;
  object->rest.reserve(kChunkSize);
  impl_->objects.insert(quint32(id), std::move(object));
  impl_->unsavedObjects.insert(quint32(id));
  return quint32(id);
}

void Database::appendObject(quint32 objectId, QByteArrayView piece) {
  Impl::Pending& object = impl_->pending(objectId);
  while (!piece.isEmpty()) {
    const qsizetype part = qMin(piece.size(), kChunkSize - object.rest.size());
    object.rest.append(piece.data(), part);
    object.hash.addData(piece.first(part));
    object.size += part;
    piece = piece.sliced(part);
    if (object.rest.size() < kChunkSize) continue;
    impl_->storeChunk(objectId, object, object.rest);
    object.rest.resize(0);
  }
}

Database::StoredObject Database::finishObject(quint32 objectId) {
  Impl::Pending& object = impl_->pending(objectId);
  Transaction transaction(*this);
  if (!object.rest.isEmpty()) impl_->storeChunk(objectId, object, object.rest);
  const QByteArray checksum = object.hash.result();
  Statement::Run(impl_->closeObject, object.size, object.chunks, checksum, objectId).step();
  transaction.commit();
  const StoredObject stored{objectId, object.size};
  impl_->objects.remove(objectId);
  return stored;
}

Database::StoredObject Database::addObject(QIODevice& source) {
  Transaction transaction(*this);
  const quint32 id = beginObject();
  QByteArray piece(kChunkSize, Qt::Uninitialized);
  for (;;) {
    const qint64 count = source.read(piece.data(), piece.size());
    if (count < 0)
      throw RuntimeError(kDeviceFault, u"%1: the file to attach cannot be read (%2)"_s.arg(
                                           fileOf(source, path_), source.errorString()));
    if (count == 0) break;
    appendObject(id, QByteArrayView(piece).first(count));
  }
  const StoredObject stored = finishObject(id);
  transaction.commit();
  return stored;
}

qint64 Database::objectSize(quint32 objectId) const {
  Statement::Run row(impl_->readObject, objectId);
  return row.step() ? row.integer(0) : -1;
}

void Database::readObject(quint32 objectId, QIODevice& target) const {
  qint64 size = 0, chunks = 0;
  QByteArray checksum;
  {
    Statement::Run row(impl_->readObject, objectId);
    if (!row.step()) objectFault(path_, objectId, u"does not exist"_s);
    size = row.integer(0);
    chunks = row.integer(1);
    checksum = row.blob(2).toByteArray();
  }
  QCryptographicHash hash(QCryptographicHash::Sha256);
  qint64 total = 0;
  QByteArray bytes;
  for (qint64 number = 0; number < chunks; ++number) {
    {
      Statement::Run row(impl_->readChunk, objectId, number);
      if (!row.step()) objectFault(path_, objectId, u"lacks a part"_s);
      bytes = row.blob(0).toByteArray();
    }
    total += bytes.size();
    if (total > size) break;
    hash.addData(bytes);
    writeAll(target, bytes, path_);
  }
  if (total != size || hash.result() != checksum)
    objectFault(path_, objectId, u"is damaged: its checksum does not hold"_s);
}

void Database::extractObject(quint32 objectId, const QString& filePath) const {
  QSaveFile file(filePath);
  if (!file.open(QIODevice::WriteOnly)) {
    const bool noDirectory = !QFileInfo(QFileInfo(filePath).absolutePath()).isDir();
    throw RuntimeError(noDirectory ? err::PathNotFound : err::PathFileAccess,
                       u"%1: the file cannot be written (%2)"_s.arg(filePath, file.errorString()));
  }
  readObject(objectId, file);
  if (!commitWhole(file))
    throw RuntimeError(err::PathFileAccess,
                       u"%1: the file cannot be written (%2)"_s.arg(filePath, file.errorString()));
}

void Database::removeObject(quint32 objectId) {
  Transaction transaction(*this);
  impl_->objects.remove(objectId);
  Statement::Run(impl_->eraseChunks, objectId).step();
  Statement::Run(impl_->eraseObject, objectId).step();
  transaction.commit();
}

}  // namespace lens
