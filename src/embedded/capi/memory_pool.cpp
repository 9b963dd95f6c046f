#include "embedded/capi/memory_pool.h"

#include <QVector>

#include "embedded/capi/status.h"

namespace lens {
namespace {

constexpr qsizetype kItemPadding = 0x10000;
constexpr qsizetype kPadding = 64;
constexpr MemHandle kHighest = 0x7FFF;

}  // namespace

MemHandle MemoryPool::add(QByteArrayView bytes, bool owned) {
  if (blocks_.size() >= qsizetype(kHighest)) return 0;
  do last_ = last_ % kHighest + 1;
  while (blocks_.contains(last_));
  const qsizetype padding = owned ? kItemPadding : kPadding;
  Block block;
  block.bytes.reserve(bytes.size() + padding);
  block.bytes.append(bytes.data(), bytes.size());
  block.bytes.append(padding, '\0');
  block.owned = owned;
  block.level = level_;
  byAddress_.emplace(block.bytes.constData(), last_);
  blocks_.insert(last_, block);
  ++changes_;
  return last_;
}

void MemoryPool::drop(MemHandle handle) {
  const auto block = blocks_.constFind(handle);
  if (block == blocks_.constEnd()) return;
  byAddress_.erase(block->bytes.constData());
  blocks_.erase(block);
  ++changes_;
}

void MemoryPool::clear() {
  blocks_.clear();
  byAddress_.clear();
  ++changes_;
}

void MemoryPool::setLevel(int level) {
  if (level < level_) {
    QVector<MemHandle> deeper;
    for (auto block = blocks_.cbegin(); block != blocks_.cend(); ++block)
      if (!block->owned && block->level > level) deeper.push_back(block.key());
    for (const MemHandle handle : std::as_const(deeper)) drop(handle);
  }
  level_ = level;
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
  drop(handle);
  return status::Ok;
}

qsizetype MemoryPool::readable(const char* address) const {
  auto next = byAddress_.upper_bound(address);
  if (next == byAddress_.begin()) return -1;
  const QByteArray& bytes = blocks_.find(std::prev(next)->second)->bytes;
  const qsizetype offset = address - bytes.constData();
  return offset <= bytes.size() ? bytes.size() - offset : -1;
}

}  // namespace lens
