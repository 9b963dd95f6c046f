// Memory that the C API hands out by handle.
//
// Handles are 1 to 0x7FFF, since callers pass them through a signed 16-bit value, and go round, so
// that a freed one is not given again soon. Behind the value of an item stand 64 KB of zeros: callers read
// on past its end, as far as a 16-bit count can lead them. Other blocks end with a few zeros.
#pragma once

#include <QByteArray>
#include <QHash>
#include <functional>
#include <map>

#include "notes/capi.h"

namespace lens {

class MemoryPool {
 public:
  // Memory of the caller, 0 when no handle is left.
  MemHandle add(QByteArrayView bytes) { return add(bytes, false); }
  // The value of an item: it belongs to its note and cannot be freed by the caller.
  MemHandle addItem(QByteArrayView value) { return add(value, true); }
  // The address, or null. Locks are counted.
  const char* lock(MemHandle handle);
  void unlock(MemHandle handle);
  // Frees a caller's block that is not locked.
  Status free(MemHandle handle);
  // Frees whatever it is, for the owner.
  void drop(MemHandle handle);
  void clear();
  // How deep routines are nested that use the memory. What callers got on a deeper level goes.
  void setLevel(int level);
  qsizetype count() const { return blocks_.size(); }

  // Bytes that may be read from the address on, padding included; -1 when it is in no block.
  qsizetype readable(const char* address) const;
  // Grows whenever memory comes or goes, so that what is known of an address can be kept until then.
  quint64 changes() const { return changes_; }

 private:
  struct Block {
    QByteArray bytes;
    int locks = 0;
    bool owned = false;
    int level = 0;
  };
  MemHandle add(QByteArrayView bytes, bool owned);

  QHash<MemHandle, Block> blocks_;
  std::map<const char*, MemHandle, std::less<const char*>> byAddress_;
  quint64 changes_ = 0;
  MemHandle last_ = 0;
  int level_ = 0;
};

}  // namespace lens
