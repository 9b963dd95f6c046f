#include "embedded/store/object_store.h"

#include <QCryptographicHash>
#include <QFileDevice>
#include <QFileInfo>
#include <limits>

#include "embedded/format/item_value.h"
#include "embedded/format/packed_items.h"
#include "embedded/store/hashing_device.h"
#include "embedded/store/store_session.h"
#include "host/held_file.h"
#include "host/save_file.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr qsizetype kChunkSize = 256 * 1024;

// Objects that were stored before have checksums of SHA-256.
QCryptographicHash::Algorithm algorithmOf(const QByteArray& checksum) {
  const int older = QCryptographicHash::hashLength(QCryptographicHash::Sha256);
  return checksum.size() == older ? QCryptographicHash::Sha256 : kObjectChecksum;
}

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
      throw RuntimeError(err::DeviceFault, u"%1: the attachment cannot be written (%2)"_s.arg(
                                               fileOf(target, databasePath), target.errorString()));
    bytes = bytes.sliced(written);
  }
}

QByteArray digestOutside(OutsideObjects& outside, quint32 objectId) {
  const qint64 size = outside.size(objectId);
  if (size < 0) return {};
  HashingDevice device;
  outside.read(objectId, device);
  return QByteArray::number(size) + ' ' + device.result();
}

}  // namespace

// An object between its begin and its end.
struct ObjectStore::Pending {
  QCryptographicHash hash{kObjectChecksum};
  QByteArray rest;  // less than a chunk
  qint64 size = 0;
  int chunks = 0;
  int depth = 0;  // of the transaction in which it began
};

struct ObjectStore::Statements {
  explicit Statements(const Connection& c) : connection(c) {}
  const Connection& connection;
  Statement insert{connection, "INSERT INTO object (size, chunks, checksum) VALUES (0, 0, NULL)",
                   StoreSession::kWrite};
  Statement close{connection, "UPDATE object SET size = ?, chunks = ?, checksum = ? WHERE id = ?",
                  StoreSession::kWrite};
  Statement read{connection,
                 "SELECT size, chunks, checksum FROM object WHERE id = ? AND checksum IS NOT NULL",
                 StoreSession::kRead};
  Statement insertChunk{connection, "INSERT INTO object_chunk (object, number, bytes) VALUES (?, ?, ?)",
                        StoreSession::kWrite};
  Statement readChunk{connection, "SELECT bytes FROM object_chunk WHERE object = ? AND number = ?",
                      StoreSession::kRead};
  Statement erase{connection, "DELETE FROM object WHERE id = ?", StoreSession::kWrite};
  Statement eraseChunks{connection, "DELETE FROM object_chunk WHERE object = ?", StoreSession::kWrite};
};

ObjectStore::ObjectStore(StoreSession& session)
    : session_(session), statements_(std::make_unique<Statements>(session.connection())) {
  session_.undone = [this](int depth) {
    pending_.removeIf([&](const auto& object) { return object.value()->depth >= depth; });
  };
}

ObjectStore::~ObjectStore() {
  session_.undone = nullptr;
}

ObjectStore::Pending& ObjectStore::pending(quint32 objectId) {
  const auto found = pending_.constFind(objectId);
  if (found == pending_.constEnd())
    throw RuntimeError(err::InvalidCall, u"%1: attachment object %2 is not being written"_s.arg(
                                             session_.path(), QString::number(objectId)));
  return **found;
}

void ObjectStore::noteSaved(const Note& note) {
  if (unsaved_.isEmpty()) return;
  for (const Item& item : note.items)
    if (item.type() == itemtype::Object) unsaved_.remove(objectIdOf(item.data()));
}

void ObjectStore::storeChunk(quint32 objectId, Pending& object, QByteArrayView bytes) {
  session_.checkWritable();
  Statement::Run(statements_->insertChunk, objectId, object.chunks, bytes).step();
  ++object.chunks;
}

quint32 ObjectStore::begin() {
  session_.checkWritable();
  Statement::Run(statements_->insert).step();
  const qint64 id = sqlite3_last_insert_rowid(session_.connection().handle());
  if (id > std::numeric_limits<quint32>::max())
    throw RuntimeError(enginefault::NotSaved, u"%1: there are no object IDs left"_s.arg(session_.path()));
  auto object = std::make_shared<Pending>();
  object->depth = session_.depth();
  object->rest.reserve(kChunkSize);
  pending_.insert(quint32(id), object);
  unsaved_.insert(quint32(id));
  return quint32(id);
}

void ObjectStore::append(quint32 objectId, QByteArrayView piece) {
  Pending& object = pending(objectId);
  while (!piece.isEmpty()) {
    const qsizetype part = qMin(piece.size(), kChunkSize - object.rest.size());
    object.rest.append(piece.data(), part);
    object.hash.addData(piece.first(part));
    object.size += part;
    piece = piece.sliced(part);
    if (object.rest.size() < kChunkSize) continue;
    storeChunk(objectId, object, object.rest);
    object.rest.resize(0);
  }
}

StoredObject ObjectStore::finish(quint32 objectId) {
  Pending& object = pending(objectId);
  StoreTransaction transaction(session_);
  if (!object.rest.isEmpty()) storeChunk(objectId, object, object.rest);
  const QByteArray checksum = object.hash.result();
  Statement::Run(statements_->close, object.size, object.chunks, checksum, objectId).step();
  transaction.commit();
  const StoredObject stored{objectId, object.size};
  pending_.remove(objectId);
  return stored;
}

StoredObject ObjectStore::add(QIODevice& source) {
  StoreTransaction transaction(session_);
  const quint32 id = begin();
  QByteArray piece(kChunkSize, Qt::Uninitialized);
  for (;;) {
    const qint64 count = source.read(piece.data(), piece.size());
    if (count < 0)
      throw RuntimeError(err::DeviceFault, u"%1: the file to attach cannot be read (%2)"_s.arg(
                                               fileOf(source, session_.path()), source.errorString()));
    if (count == 0) break;
    append(id, QByteArrayView(piece).first(count));
  }
  const StoredObject stored = finish(id);
  transaction.commit();
  return stored;
}

qint64 ObjectStore::size(quint32 objectId) const {
  Statement::Run row(statements_->read, objectId);
  if (row.step()) return row.below(0, kNoNumber);
  return outside_ ? outside_->size(objectId) : -1;
}

bool ObjectStore::holds(quint32 objectId) const {
  Statement::Run row(statements_->read, objectId);
  return row.step();
}

void ObjectStore::read(quint32 objectId, QIODevice& target) const {
  if (outside_ && !holds(objectId)) return outside_->read(objectId, target);
  qint64 size = 0, chunks = 0;
  QByteArray checksum;
  {
    Statement::Run row(statements_->read, objectId);
    if (!row.step()) objectFault(session_.path(), objectId, u"does not exist"_s);
    size = row.below(0, kNoNumber);
    chunks = row.below(1, kNoNumber);
    checksum = row.blob(2).toByteArray();
  }
  QCryptographicHash hash(algorithmOf(checksum));
  qint64 total = 0;
  QByteArray bytes;
  for (qint64 number = 0; number < chunks; ++number) {
    {
      Statement::Run row(statements_->readChunk, objectId, number);
      if (!row.step()) objectFault(session_.path(), objectId, u"lacks a part"_s);
      bytes = row.blob(0).toByteArray();
    }
    total += bytes.size();
    if (total > size) break;
    hash.addData(bytes);
    writeAll(target, bytes, session_.path());
  }
  if (total != size || hash.result() != checksum)
    objectFault(session_.path(), objectId, u"is damaged: its checksum does not hold"_s);
}

void ObjectStore::extract(quint32 objectId, const QString& filePath) const {
  requireNotHeld(filePath);
  QSaveFile file(filePath);
  if (!file.open(QIODevice::WriteOnly)) {
    const bool noDirectory = !QFileInfo(QFileInfo(filePath).absolutePath()).isDir();
    throw RuntimeError(noDirectory ? err::PathNotFound : err::PathFileAccess,
                       u"%1: the file cannot be written (%2)"_s.arg(filePath, file.errorString()));
  }
  read(objectId, file);
  if (!commitWhole(file))
    throw RuntimeError(err::PathFileAccess,
                       u"%1: the file cannot be written (%2)"_s.arg(filePath, file.errorString()));
}

void ObjectStore::remove(quint32 objectId) {
  StoreTransaction transaction(session_);
  pending_.remove(objectId);
  Statement::Run(statements_->eraseChunks, objectId).step();
  Statement::Run(statements_->erase, objectId).step();
  transaction.commit();
}

QByteArray ObjectStore::digest(quint32 objectId) const {
  Statement::Run row(statements_->read, objectId);
  if (!row.step()) return outside_ ? digestOutside(*outside_, objectId) : QByteArray();
  return QByteArray::number(row.integer(0)) + ' ' + row.blob(2).toByteArray();
}

// Adds what live notes refer to, those that are arriving among them. False when a note is damaged: what it
// refers to cannot be told.
bool ObjectStore::addReferences(QSet<quint32>& objects) const {
  Statement notes(session_.connection(), "SELECT items FROM note WHERE state = 0", enginefault::CannotOpen);
  Statement::Run row(notes);
  try {
    while (row.step())
      for (const Item& item : unpackItems(row.blob(0)))
        if (item.type() == itemtype::Object) objects.insert(objectIdOf(item.data()));
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::Damaged) throw;
    return false;
  }
  return true;
}

void ObjectStore::removeUnreferenced() {
  StoreTransaction transaction(session_);
  QSet<quint32> wanted = unsaved_;
  if (!addReferences(wanted)) return;
  QVector<quint32> lost;
  {
    Statement objects(session_.connection(), "SELECT id FROM object", enginefault::CannotOpen);
    Statement::Run row(objects);
    while (row.step()) {
      const quint32 id = row.number<quint32>(0);
      if (!wanted.contains(id)) lost.push_back(id);
    }
  }
  for (const quint32 id : std::as_const(lost)) remove(id);
  session_.connection().execute("DELETE FROM object_chunk WHERE object NOT IN (SELECT id FROM object)",
                                enginefault::NotSaved);
  transaction.commit();
}

}  // namespace lens
