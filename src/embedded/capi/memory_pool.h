// Memory that the C API hands out by handle.
//
// Handles are 1 to 0x7FFF, since callers pass them through a signed 16-bit value, and go round, so
// that a freed one is not given again soon. Behind every block stand 64 KB of zeros: callers read on
// past the end of a value, as far as a 16-bit count can lead them.
#pragma once

#include <QByteArray>
#include <QHash>

#include "notes/capi.h"

namespace lens {

class MemoryPool {
 public:
  // Memory of a note belongs to its owner and cannot be freed by the caller. 0 when no handle is left.
  MemHandle add(QByteArrayView bytes, bool owned = false);
  // The address, or null. Locks are counted.
  const char* lock(MemHandle handle);
  void unlock(MemHandle handle);
  // Frees a caller's block that is not locked.
  Status free(MemHandle handle);
  // Frees whatever it is, for the owner.
  void drop(MemHandle handle) { blocks_.remove(handle); }
  void clear() { blocks_.clear(); }
  qsizetype count() const { return blocks_.size(); }

  // Bytes that may be read from the address on, padding included; -1 when it is in no block.
  qsizetype readable(const char* address) const;

 private:
  struct Block {
    QByteArray bytes;
    int locks = 0;
    bool owned = false;
  };
  QHash<MemHandle, Block> blocks_;
  MemHandle last_ = 0;
};

}  // namespace lens
