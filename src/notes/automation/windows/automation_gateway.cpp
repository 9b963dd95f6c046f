#include "notes/automation/windows/automation_gateway.h"

#include <objbase.h>

#include "notes/automation/automation_failure.h"
#include "notes/automation/windows/automation_object.h"

namespace lens {
namespace {

Object asObject(ComReference<IDispatch> target) {
  return automationObjects().fromPlatform(std::move(target));
}

const wchar_t* wide(const QString& text) {
  return reinterpret_cast<const wchar_t*>(text.utf16());
}

}  // namespace

Apartment::Apartment() : entered_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}

Apartment::~Apartment() {
  if (entered_) CoUninitialize();
}

Object AutomationGateway::create(const QString& classId) {
  CLSID id;
  ComReference<IDispatch> target;
  if (FAILED(CLSIDFromProgID(wide(classId), &id)) ||
      FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                              reinterpret_cast<void**>(target.place()))))
    throw RuntimeError(err::CannotCreateObject);
  return asObject(std::move(target));
}

Object automationObjectNamed(const QString& name) {
  ComReference<IDispatch> target;
  const HRESULT status =
      CoGetObject(wide(name), nullptr, IID_IDispatch, reinterpret_cast<void**>(target.place()));
  if (FAILED(status)) throw automationError(quint32(status));
  return asObject(std::move(target));
}

}  // namespace lens
