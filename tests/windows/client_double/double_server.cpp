// The automation server of the stand-in: three classes, made by one factory, registered by the test itself.
#include <objbase.h>

#include <QString>
#include <array>
#include <cstdio>

#include "counted_object.h"
#include "double_client.h"
#include "double_faults.h"
#include "double_object.h"
#include "notes/literals.h"

namespace lens {
namespace {

struct DoubleClass {
  CLSID id;
  const char* name;
};

// Numbers of its own: a client that is installed keeps its own.
constexpr std::array kClasses = {
    DoubleClass{{0x7E55A11D, 0x0001, 0x4C4E, {0x8D, 0x01, 0x54, 0x65, 0x73, 0x73, 0x61, 0x6C}},
                "Notes.NotesSession"},
    DoubleClass{{0x7E55A11D, 0x0002, 0x4C4E, {0x8D, 0x01, 0x54, 0x65, 0x73, 0x73, 0x61, 0x6C}},
                "Lotus.NotesSession"},
    DoubleClass{{0x7E55A11D, 0x0003, 0x4C4E, {0x8D, 0x01, 0x54, 0x65, 0x73, 0x73, 0x61, 0x6C}},
                "Notes.NotesUIWorkSpace"},
};

class DoubleFactory final : public CountedObject<IClassFactory> {
 public:
  explicit DoubleFactory(const char* name) : name_(QString::fromLatin1(name)) {}
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** place) override {
    *place = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    try {
      const ComReference<IDispatch> made(newDoubleObject(doubleClient().gateway.create(name_)));
      return made->QueryInterface(id, place);
    } catch (const RuntimeError&) {
      return E_FAIL;
    }
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  QString name_;
};

// With the calls of the system alone: what the library had of others is gone by then.
void tellWhatIsLeft() {
  wchar_t path[MAX_PATH] = {};
  const DWORD length = GetEnvironmentVariableW(L"TESSALY_DOUBLE_COUNT", path, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return;
  const HANDLE file =
      CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  char text[32] = {};
  const int size = std::snprintf(text, sizeof text, "%ld", livingDoubleObjects());
  DWORD written = 0;
  WriteFile(file, text, DWORD(size), &written, nullptr);
  CloseHandle(file);
}

}  // namespace
}  // namespace lens

extern "C" {

// A program that ends leaves the number of objects that it still refers to in the file that the environment
// variable TESSALY_DOUBLE_COUNT names.
BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_DETACH) lens::tellWhatIsLeft();
  return TRUE;
}

__declspec(dllexport) HRESULT STDAPICALLTYPE
    DllGetClassObject(REFCLSID id, REFIID interfaceId, void** place) {
  for (const lens::DoubleClass& known : lens::kClasses) {
    if (!IsEqualCLSID(id, known.id)) continue;
    const lens::ComReference<IClassFactory> factory(new lens::DoubleFactory(known.name));
    return factory->QueryInterface(interfaceId, place);
  }
  *place = nullptr;
  return CLASS_E_CLASSNOTAVAILABLE;
}

// What the tests ask the stand-in itself.
__declspec(dllexport) long __cdecl DoubleLivingObjects() {
  return lens::livingDoubleObjects();
}
__declspec(dllexport) void __cdecl DoubleTellFault(const char* fault) {
  lens::tellFault(QString::fromUtf8(fault));
}
}
