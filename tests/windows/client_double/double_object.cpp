#include "double_object.h"

#include <QHash>
#include <QVector>
#include <atomic>

#include "counted_object.h"
#include "double_faults.h"
#include "notes/automation/windows/variant.h"
#include "notes/literals.h"

namespace lens {
namespace {

std::atomic<long> living = 0;

// Every name that was ever asked for has a number, the same in all objects.
DISPID numberOf(const QString& name) {
  static QHash<QString, DISPID> numbers;
  const QString key = name.toUpper();
  if (const auto known = numbers.constFind(key); known != numbers.constEnd()) return *known;
  return *numbers.insert(key, DISPID(numbers.size() + 1));
}

QVector<QString>& names() {
  static QVector<QString> all;
  return all;
}

const ObjectCrossing& doubleObjects();

class DoubleObject final : public CountedObject<IDispatch> {
 public:
  explicit DoubleObject(const Object& target) : target_(target) { ++living; }
  ~DoubleObject() override { --living; }
  const Object& target() const { return target_; }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, OLECHAR** given, UINT count, LCID, DISPID* ids) override {
    if (count != 1) return DISP_E_UNKNOWNNAME;
    const QString name = QString::fromWCharArray(given[0]);
    ids[0] = numberOf(name);
    if (ids[0] > names().size()) names().append(name);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD kind, DISPPARAMS* given, VARIANT* result,
                                   EXCEPINFO* exception, UINT*) override {
    if (member < 1 || member > names().size()) return DISP_E_MEMBERNOTFOUND;
    try {
      return run(names()[member - 1], kind, *given, result);
    } catch (const RuntimeError& error) {
      return told(error, exception);
    }
  }

 private:
  HRESULT run(const QString& name, WORD kind, const DISPPARAMS& given, VARIANT* result) {
    const DoubleFault fault = faultOfCall(name);
    if (fault == DoubleFault::Dies) return HRESULT(0x800706BA);
    if (fault == DoubleFault::Raises) throw RuntimeError(kToldNumber, u"told to fail"_s);
    Arguments arguments;
    for (UINT i = given.cArgs; i > 0; --i) arguments.append(valueOf(given.rgvarg[i - 1], doubleObjects()));
    if (kind & DISPATCH_PROPERTYPUT) {
      target_.target()->set(name, arguments.value(0));
      return S_OK;
    }
    const Value value =
        fault == DoubleFault::Wrong ? Value(u"wrong kind"_s) : target_.target()->call(name, arguments);
    if (result) putValue(value, *result, doubleObjects());
    return S_OK;
  }
  // The model's own numbers are exceptions of the server; what the call itself got wrong is told as such.
  static HRESULT told(const RuntimeError& error, EXCEPINFO* exception) {
    if (error.number() == err::MemberNotSupported) return DISP_E_MEMBERNOTFOUND;
    if (error.number() == 449) return DISP_E_PARAMNOTOPTIONAL;
    if (error.number() == 450) return DISP_E_BADPARAMCOUNT;
    if (exception) {
      *exception = {};
      exception->wCode = WORD(error.number());
      exception->bstrDescription = newComText(error.description());
    }
    return DISP_E_EXCEPTION;
  }
  using Arguments = QVector<Value>;

  Object target_;
};

const ObjectCrossing& doubleObjects() {
  static const ObjectCrossing crossing{[](const Object& object) { return newDoubleObject(object); },
                                       [](ComReference<IDispatch> target) {
                                         const auto* const own =
                                             dynamic_cast<const DoubleObject*>(target.get());
                                         if (!own) throw RuntimeError(err::TypeMismatch);
                                         return own->target();
                                       }};
  return crossing;
}

}  // namespace

IDispatch* newDoubleObject(const Object& target) {
  return new DoubleObject(target);
}

long livingDoubleObjects() {
  return living;
}

}  // namespace lens
