#include "notes/automation/windows/variant.h"

#include <QScopeGuard>

#include "notes/automation/automation_failure.h"
#include "notes/automation/variant_rules.h"

namespace lens {
namespace {

void requireDone(HRESULT status) {
  if (FAILED(status)) throw automationError(quint32(status));
}

// An array of variants, destroyed with what it holds unless somebody takes it.
class VariantArray {
 public:
  explicit VariantArray(qsizetype size) : array_(SafeArrayCreateVector(VT_VARIANT, 0, ULONG(size))) {
    if (!array_) throw RuntimeError(err::OutOfMemory);
  }
  ~VariantArray() {
    if (array_) SafeArrayDestroy(array_);
  }
  VariantArray(const VariantArray&) = delete;
  VariantArray& operator=(const VariantArray&) = delete;
  void fill(const QVector<Value>& values, const ObjectCrossing& objects) {
    VARIANT* places = nullptr;
    requireDone(SafeArrayAccessData(array_, reinterpret_cast<void**>(&places)));
    const auto done = qScopeGuard([this] { SafeArrayUnaccessData(array_); });
    for (const Value& value : values) putValue(value, *places++, objects);
  }
  SAFEARRAY* take() { return std::exchange(array_, nullptr); }

 private:
  SAFEARRAY* array_;
};

// An element of an array of any type, as a variant of its own.
void readElement(SAFEARRAY& array, VARTYPE type, LONG index, Variant& element) {
  if (type == VT_VARIANT) return requireDone(SafeArrayGetElement(&array, &index, element.raw()));
  requireDone(SafeArrayGetElement(&array, &index, &element.raw()->byref));
  element.raw()->vt = type;
}

Value valueOfArray(SAFEARRAY& array, const ObjectCrossing& objects) {
  if (SafeArrayGetDim(&array) != 1) throw RuntimeError(err::TypeMismatch);
  VARTYPE type = VT_EMPTY;
  LONG first = 0, last = -1;
  requireDone(SafeArrayGetVartype(&array, &type));
  requireDone(SafeArrayGetLBound(&array, 1, &first));
  requireDone(SafeArrayGetUBound(&array, 1, &last));
  QVector<Value> values;
  values.reserve(qMax<qsizetype>(0, qsizetype(last) - first + 1));
  for (LONG index = first; index <= last; ++index) {
    Variant element;
    readElement(array, type, index, element);
    values.append(valueOf(*element, objects));
  }
  return Value::array(std::move(values));
}

Value valueOfObject(IUnknown* object, const ObjectCrossing& objects) {
  ComReference<IDispatch> target;
  if (object) requireDone(object->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(target.place())));
  return target ? objects.fromPlatform(std::move(target)) : Object();
}

// Whole numbers of any width, amounts of money and the like.
Value valueOfNumber(const VARIANT& variant) {
  Variant number;
  const HRESULT status =
      VariantChangeTypeEx(number.raw(), const_cast<VARIANT*>(&variant), LOCALE_INVARIANT, 0, VT_R8);
  if (FAILED(status)) throw RuntimeError(458);
  return (*number).dblVal;
}

}  // namespace

void putValue(const Value& value, VARIANT& target, const ObjectCrossing& objects) {
  const VARTYPE type = variantKindOf(value);
  switch (type) {
    case variantkind::Text:
      target.bstrVal = newComText(value.text());
      if (!target.bstrVal) throw RuntimeError(err::OutOfMemory);
      break;
    case variantkind::Int16:
      target.iVal = SHORT(value.number());
      break;
    case variantkind::Int32:
      target.lVal = LONG(value.number());
      break;
    case variantkind::Double:
      target.dblVal = value.number();
      break;
    case variantkind::Boolean:
      target.boolVal = variantBoolean(value.boolean());
      break;
    case variantkind::Date:
      target.date = variantDate(value.dateTime());
      break;
    case variantkind::Dispatch:
      target.pdispVal = value.object().isNothing() ? nullptr : objects.toPlatform(value.object());
      break;
    case variantkind::Empty:
      break;
    default: {
      VariantArray array(value.values().size());
      array.fill(value.values(), objects);
      target.parray = array.take();
      break;
    }
  }
  // Only what is there is cleared.
  target.vt = type;
}

Value valueOf(const VARIANT& variant, const ObjectCrossing& objects) {
  if (variant.vt & VT_BYREF) {
    Variant copy;
    requireDone(VariantCopyInd(copy.raw(), const_cast<VARIANT*>(&variant)));
    return valueOf(*copy, objects);
  }
  if (variant.vt & VT_ARRAY) return variant.parray ? valueOfArray(*variant.parray, objects) : Value();
  switch (variant.vt) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_ERROR:
      return {};
    case VT_BSTR:
      return fromComText(variant.bstrVal);
    case VT_BOOL:
      return variant.boolVal != 0;
    case VT_DATE:
      return momentOfVariant(variant.date);
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return valueOfObject(variant.punkVal, objects);
    default:
      return valueOfNumber(variant);
  }
}

}  // namespace lens
