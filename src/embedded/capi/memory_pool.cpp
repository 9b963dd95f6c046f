#include "embedded/capi/memory_pool.h"

#include <functional>

#include "embedded/capi/status.h"

namespace lens {
namespace {

constexpr qsizetype kPadding = 0x10000;
constexpr MemHandle kHighest = 0x7FFF;

}  // namespace

MemHandle MemoryPool::add(QByteArrayView bytes, bool owned) {
  if (blocks_.size() >= qsizetype(kHighest)) return 0;
  do last_ = last_ % kHighest + 1;
  while (blocks_.contains(last_));
  Block block;
  block.bytes.reserve(bytes.size() + kPadding);
  block.bytes.append(bytes.data(), bytes.size());
  block.bytes.append(kPadding, '\0');
  block.owned = owned;
  blocks_.insert(last_, std::move(block));
  return last_;
}

const char* MemoryPool::lock(MemHandle handle) {
  const auto block = blocks_.find(handle);
  if (block == blocks_.end()) return nullptr;
  ++block->locks;
  return block->bytes.constData();
}

void MemoryPool::unlock(MemHandle handle) {
  const auto block = blocks_.find(handle);
  if (block != blocks_.end() && block->locks > 0) --block->locks;
}

Status MemoryPool::free(MemHandle handle) {
  const auto block = blocks_.find(handle);
  if (block == blocks_.end() || block->owned) return status::BadHandle;
  if (block->locks > 0) return status::Locked;
  blocks_.erase(block);
  return status::Ok;
}

qsizetype MemoryPool::readable(const char* address) const {
  const std::less_equal<const char*> notAbove;
  for (const Block& block : blocks_) {
    const char* begin = block.bytes.constData();
    const char* end = begin + block.bytes.size();
    if (notAbove(begin, address) && notAbove(address, end)) return end - address;
  }
  return -1;
}

}  // namespace lens
