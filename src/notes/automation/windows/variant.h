// Values as the variants of the platform, and back.
#pragma once

#include <functional>

#include "notes/automation/windows/com_reference.h"
#include "notes/bridge.h"

namespace lens {

// How objects cross: each side of a door has its own objects on the one hand and the platform's on the other.
struct ObjectCrossing {
  // The platform's object, counted for the caller. Raises 13 where there is none.
  std::function<IDispatch*(const Object&)> toPlatform;
  // Takes over one count of an object that is there.
  std::function<Object(ComReference<IDispatch>)> fromPlatform;
};

// A variant that is cleared with its owner.
class Variant {
 public:
  Variant() { VariantInit(&raw_); }
  ~Variant() { VariantClear(&raw_); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  VARIANT* raw() { return &raw_; }
  const VARIANT& operator*() const { return raw_; }

 private:
  VARIANT raw_;
};

// Fills an empty variant. An array becomes one of variants, an empty reference the object "nothing".
void putValue(const Value& value, VARIANT& target, const ObjectCrossing& objects);
// Copies what the variant holds or points to. Nothing, null and a missing argument are Empty. Raises 458 for
// a type that no value has, and 13 for an array of more than one dimension.
Value valueOf(const VARIANT& variant, const ObjectCrossing& objects);

}  // namespace lens
