// What every object of the platform has: its references are counted, and it goes with the last one.
#pragma once

#include <windows.h>
// Behind the types that it needs.
#include <oleauto.h>

#include <atomic>

namespace lens {

// An object with one interface. Whoever makes it has the first reference.
template <class Interface>
class CountedObject : public Interface {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** place) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, __uuidof(Interface));
    *place = known ? this : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++count_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --count_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~CountedObject() = default;

 private:
  std::atomic<ULONG> count_ = 1;
};

}  // namespace lens
