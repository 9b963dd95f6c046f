#include "embedded/store/stored_blob.h"

#include "embedded/format/engine_fault.h"
#include "notes/runtime_error.h"

namespace lens {

StoredBlob::StoredBlob(const Connection& connection, NoteId noteId, Use use)
    : connection_(connection),
      fault_(use == Use::Read ? int(enginefault::CannotOpen) : int(enginefault::NotSaved)) {
  connection.requireFile();
  if (sqlite3_blob_open(connection.handle(), "main", "note", "items", noteId.value(),
                        use == Use::Write ? 1 : 0, &handle_) != SQLITE_OK)
    fail();
}

StoredBlob::~StoredBlob() {
  sqlite3_blob_close(handle_);
}

void StoredBlob::fail() const {
  connection_.fail(fault_);
}

qsizetype StoredBlob::size() const {
  return sqlite3_blob_bytes(handle_);
}

QByteArray StoredBlob::read(qsizetype at, qsizetype length) const {
  QByteArray bytes(length, Qt::Uninitialized);
  if (sqlite3_blob_read(handle_, bytes.data(), int(length), int(at)) != SQLITE_OK) fail();
  return bytes;
}

void StoredBlob::write(qsizetype at, QByteArrayView bytes) {
  if (sqlite3_blob_write(handle_, bytes.data(), int(bytes.size()), int(at)) != SQLITE_OK) fail();
}

}  // namespace lens
