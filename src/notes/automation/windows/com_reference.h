// Counted references to the platform's objects, and texts of its own, that are given back with their owner.
#pragma once

#include <windows.h>
// Behind the types that it needs.
#include <oleauto.h>

#include <QString>
#include <utility>

namespace lens {

template <class Interface>
class ComReference {
 public:
  ComReference() = default;
  // Takes over a count that the caller has.
  explicit ComReference(Interface* counted) : target_(counted) {}
  ComReference(ComReference&& other) noexcept : target_(std::exchange(other.target_, nullptr)) {}
  ComReference(const ComReference&) = delete;
  ComReference& operator=(const ComReference&) = delete;
  ComReference& operator=(ComReference&& other) noexcept {
    std::swap(target_, other.target_);
    return *this;
  }
  ~ComReference() {
    if (target_) target_->Release();
  }

  Interface* get() const { return target_; }
  Interface* operator->() const { return target_; }
  explicit operator bool() const { return target_ != nullptr; }
  // Where a call writes what it counts for us.
  Interface** place() { return &target_; }

 private:
  Interface* target_ = nullptr;
};

// Null for an empty text, which means the same.
inline BSTR newComText(const QString& text) {
  return SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.utf16()), UINT(text.size()));
}

inline QString fromComText(BSTR text) {
  return text ? QString::fromWCharArray(text, int(SysStringLen(text))) : QString();
}

}  // namespace lens
