#include "notes/bridge.h"

#include "notes/literals.h"
#include "notes/numbers.h"

namespace lens {

Value Object::get(const QString& name) const {
  return require().get(name);
}

void Object::set(const QString& name, const Value& value) const {
  require().set(name, value);
}

Value Value::array(QVector<Value> values) {
  Value result;
  result.data_ = std::make_shared<const QVector<Value>>(std::move(values));
  return result;
}

QString Value::typeName() const {
  switch (kind()) {
    case Kind::Empty:
      return u"Empty"_s;
    case Kind::Text:
      return u"String"_s;
    case Kind::Number:
      return u"Double"_s;
    case Kind::Boolean:
      return u"Boolean"_s;
    case Kind::DateTime:
      return u"Date"_s;
    case Kind::Array:
      return u"Variant()"_s;
    case Kind::Object:
      return std::get<lens::Object>(data_).isNothing() ? u"Nothing"_s : u"Object"_s;
  }
  return {};
}

QString Value::text() const {
  switch (kind()) {
    case Kind::Empty:
      return {};
    case Kind::Text:
      return std::get<QString>(data_);
    case Kind::Number:
      return numberText(std::get<double>(data_));
    case Kind::Boolean:
      return std::get<bool>(data_) ? u"True"_s : u"False"_s;
    default:
      throw RuntimeError(err::TypeMismatch);
  }
}

double Value::number() const {
  switch (kind()) {
    case Kind::Empty:
      return 0;
    case Kind::Text:
      return wholeNumberText(std::get<QString>(data_));
    case Kind::Number:
      return std::get<double>(data_);
    case Kind::Boolean:
      return std::get<bool>(data_) ? -1 : 0;
    default:
      throw RuntimeError(err::TypeMismatch);
  }
}

bool Value::boolean() const {
  if (kind() == Kind::Boolean) return std::get<bool>(data_);
  return number() != 0;
}

const DateTime& Value::dateTime() const {
  if (const DateTime* moment = std::get_if<DateTime>(&data_)) return *moment;
  throw RuntimeError(err::TypeMismatch);
}

const QVector<Value>& Value::values() const {
  if (const ArrayData* array = std::get_if<ArrayData>(&data_)) return **array;
  throw RuntimeError(err::TypeMismatch);
}

Object Value::object() const {
  if (const lens::Object* object = std::get_if<lens::Object>(&data_)) return *object;
  throw RuntimeError(424);
}

const Value& Value::at(int index) const {
  const QVector<Value>& all = values();
  if (index < 0 || index >= all.size()) throw RuntimeError(err::SubscriptOutOfRange);
  return all[index];
}

bool Value::operator==(const Value& other) const {
  if (isArray() && other.isArray()) return values() == other.values();
  return data_ == other.data_;
}

}  // namespace lens
