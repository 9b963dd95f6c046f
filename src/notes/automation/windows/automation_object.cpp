#include "notes/automation/windows/automation_object.h"

#include <QScopeGuard>
#include <vector>

#include "notes/automation/automation_failure.h"

namespace lens {
namespace {

// What a server says of its exception, in texts that the caller gives back.
class ServerException {
 public:
  ServerException() : raw_() {}
  ~ServerException() {
    SysFreeString(raw_.bstrSource);
    SysFreeString(raw_.bstrDescription);
    SysFreeString(raw_.bstrHelpFile);
  }
  ServerException(const ServerException&) = delete;
  ServerException& operator=(const ServerException&) = delete;
  EXCEPINFO* raw() { return &raw_; }
  AutomationException told() {
    if (raw_.pfnDeferredFillIn) raw_.pfnDeferredFillIn(&raw_);
    return {raw_.wCode, quint32(raw_.scode), fromComText(raw_.bstrDescription)};
  }

 private:
  EXCEPINFO raw_;
};

// The arguments as a call takes them: the last one first.
class Arguments {
 public:
  explicit Arguments(const QVector<Value>& values) : raw_(size_t(values.size())) {
    for (VARIANT& place : raw_) VariantInit(&place);
    // No destructor runs behind a failure in here.
    auto cleared = qScopeGuard([this] { clear(); });
    auto place = raw_.rbegin();
    for (const Value& value : values) putValue(value, *place++, automationObjects());
    cleared.dismiss();
  }
  ~Arguments() { clear(); }
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;
  VARIANT* data() { return raw_.data(); }
  UINT count() const { return UINT(raw_.size()); }

 private:
  void clear() {
    for (VARIANT& place : raw_) VariantClear(&place);
  }
  std::vector<VARIANT> raw_;
};

bool isPut(WORD kind) {
  return kind == DISPATCH_PROPERTYPUT;
}

}  // namespace

DISPID AutomationObject::idOf(const QString& name) {
  const QString key = name.toCaseFolded();
  if (const auto known = ids_.constFind(key); known != ids_.constEnd()) return *known;
  // Nothing is written there, the platform only does not say so.
  OLECHAR* names[] = {const_cast<OLECHAR*>(reinterpret_cast<const OLECHAR*>(name.utf16()))};
  DISPID id = DISPID_UNKNOWN;
  const HRESULT status = target_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(status)) throw automationError(quint32(status));
  ids_.insert(key, id);
  return id;
}

Value AutomationObject::invoke(DISPID member, WORD kind, const QVector<Value>& values) {
  Arguments arguments(values);
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS given = {arguments.data(), isPut(kind) ? &put : nullptr, arguments.count(),
                      isPut(kind) ? 1u : 0u};
  Variant result;
  ServerException exception;
  // The object may go with the last reference to it while its member runs.
  const ComReference<IDispatch> held = [this] {
    target_->AddRef();
    return ComReference<IDispatch>(target_.get());
  }();
  const HRESULT status = held->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, kind, &given,
                                      isPut(kind) ? nullptr : result.raw(), exception.raw(), nullptr);
  if (FAILED(status)) throw automationError(quint32(status), exception.told());
  return valueOf(*result, automationObjects());
}

Value AutomationObject::get(const QString& name) {
  return invoke(idOf(name), DISPATCH_PROPERTYGET | DISPATCH_METHOD, {});
}

void AutomationObject::set(const QString& name, const Value& value) {
  invoke(idOf(name), DISPATCH_PROPERTYPUT, {value});
}

Value AutomationObject::call(const QString& name, const QVector<Value>& arguments) {
  return invoke(idOf(name), DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments);
}

QVector<Object> AutomationObject::elements() {
  Variant source;
  DISPPARAMS none = {};
  HRESULT status =
      target_->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET | DISPATCH_METHOD,
                      &none, source.raw(), nullptr, nullptr);
  if (FAILED(status)) throw automationError(quint32(status));
  const VARIANT& given = *source;
  if ((given.vt != VT_UNKNOWN && given.vt != VT_DISPATCH) || !given.punkVal)
    throw RuntimeError(err::TypeMismatch);
  ComReference<IEnumVARIANT> walk;
  status = given.punkVal->QueryInterface(IID_IEnumVARIANT, reinterpret_cast<void**>(walk.place()));
  if (FAILED(status)) throw automationError(quint32(status));
  QVector<Object> found;
  for (;;) {
    Variant element;
    if (walk->Next(1, element.raw(), nullptr) != S_OK) return found;
    found.append(valueOf(*element, automationObjects()).object());
  }
}

const ObjectCrossing& automationObjects() {
  static const ObjectCrossing crossing{[](const Object& object) {
                                         const auto* const automation =
                                             dynamic_cast<const AutomationObject*>(object.target().get());
                                         if (!automation) throw RuntimeError(err::TypeMismatch);
                                         automation->target()->AddRef();
                                         return automation->target();
                                       },
                                       [](ComReference<IDispatch> target) {
                                         return Object(std::make_shared<AutomationObject>(std::move(target)));
                                       }};
  return crossing;
}

}  // namespace lens
