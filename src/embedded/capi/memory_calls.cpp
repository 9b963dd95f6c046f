// The functions of the C API that read memory of the library: records, lists, locks.
#include "embedded/capi/call_support.h"
#include "embedded/capi/embedded_capi.h"
#include "embedded/format/lmbcs.h"

namespace lens {
namespace {

// Bytes of one field of a type code; 0 for codes that are not known.
qsizetype fieldSize(quint16 type) {
  switch (type) {
    case 0:   // 16-bit word
    case 13:  // head of a list
      return 2;
    case 1:   // 32-bit word
    case 14:  // head of a range
      return 4;
    case 2:   // double
    case 10:  // time
      return 8;
    case 28:  // universal ID
      return 16;
    case 318:  // agent schedule record
      return 102;
    default:
      return 0;
  }
}

quint16 wordAt(const char* bytes) {
  return quint16(quint8(bytes[0]) | quint8(bytes[1]) << 8);
}

}  // namespace

// Inside memory of ours nothing is read past the zeros behind the value, and the pointer stays there.
void EmbeddedCApi::ODSReadMemory(const char*& from, quint16 type, void* target, quint16 count) {
  const qsizetype size = fieldSize(type) * count;
  if (size == 0 || !target) return;
  const qsizetype known = from ? memory_.readable(from) : 0;
  const qsizetype available = known < 0 ? size : std::min(known, size);
  if (available > 0) std::memcpy(target, from, size_t(available));
  std::memset(static_cast<char*>(target) + available, 0, size_t(size - available));
  if (from) from += available;
}

quint32 EmbeddedCApi::ListGetNumEntries(const char* list, int prefixed) {
  if (!list) return 0;
  const char* head = list + (prefixed ? 2 : 0);
  const qsizetype known = memory_.readable(list);
  if (known >= 0 && known < head - list + 2) return 0;
  return wordAt(head);
}

// Where the entry's text begins, counted from the lengths. Callers walk a list from its first entry on, so
// the walk goes on from the last place instead of adding up all lengths again.
qsizetype EmbeddedCApi::offsetOfEntry(const char* lengths, quint32 entries, quint16 index) {
  const bool goesOn = walk_.lengths == lengths && walk_.changes == memory_.changes() && walk_.index <= index;
  if (!goesOn) walk_ = {lengths, memory_.changes(), 0, 2 * qsizetype(entries)};
  for (; walk_.index < index; ++walk_.index) walk_.at += wordAt(lengths + 2 * walk_.index);
  const qsizetype at = walk_.at;
  // Memory of the caller may hold something else the next time.
  if (memory_.readable(lengths) < 0) walk_ = {};
  return at;
}

Status EmbeddedCApi::ListGetText(const char* list, int prefixed, quint16 index, const char*& text,
                                 quint16& length) {
  text = nullptr;
  length = 0;
  const quint32 entries = ListGetNumEntries(list, prefixed);
  if (index >= entries) return status::NoListEntry;
  const char* const lengths = list + (prefixed ? 2 : 0) + 2;
  const qsizetype known = memory_.readable(lengths);
  if (known >= 0 && 2 * qsizetype(entries) > known) return status::NoListEntry;
  const qsizetype at = offsetOfEntry(lengths, entries, index);
  const quint16 bytes = wordAt(lengths + 2 * index);
  if (known >= 0 && at + bytes > known) return status::NoListEntry;
  text = lengths + at;
  length = bytes;
  return status::Ok;
}

Status EmbeddedCApi::NSGetServerList(int, MemHandle& list) {
  list = 0;
  QByteArray lengths, names;
  const QStringList servers = workspace_->serverNames();
  appendU16(lengths, quint16(servers.size()));
  for (const QString& server : servers) {
    const QByteArray name = toLmbcs(server);
    appendU16(lengths, quint16(name.size()));
    names += name;
  }
  list = memory_.add(QByteArray(lengths + names));
  return list ? status::Ok : status::NoMemory;
}

const char* EmbeddedCApi::OSLockObject(MemHandle handle) {
  return memory_.lock(handle);
}

bool EmbeddedCApi::OSUnlockObject(MemHandle handle) {
  memory_.unlock(handle);
  return true;
}

Status EmbeddedCApi::OSMemFree(MemHandle handle) {
  return memory_.free(handle);
}

}  // namespace lens
