// The door to the Notes object model: late-bound objects, called by member name.
//
// The logic above knows no class of the model. It asks a Gateway for one of three class identifiers
// ("Notes.NotesSession", "Lotus.NotesSession", "Notes.NotesUIWorkSpace") and calls members of what
// it gets. Behind the door stands the client's automation server or the embedded engine.
//
//  - Names match without regard to case.
//  - Any use of an empty Object raises 91, an unknown member 438, a class that cannot be made 429.
//  - A failing member raises a RuntimeError with the model's own number and text.
//  - All calls belong to the user-interface thread.
#pragma once

#include <QDate>
#include <QString>
#include <QTime>
#include <QVector>
#include <initializer_list>
#include <memory>
#include <utility>
#include <variant>

#include "notes/runtime_error.h"

namespace lens {

class Value;

// A date and time in local time. A date item may lack either half: an invalid date means a time of
// any day, an invalid time means the whole day.
struct DateTime {
  QDate date;
  QTime time;
  bool operator==(const DateTime&) const = default;
};

// What stands behind an Object. One instance is one object of the model; the last reference to it
// releases it.
class Dispatch {
 public:
  virtual ~Dispatch() = default;
  virtual Value get(const QString& name) = 0;
  virtual void set(const QString& name, const Value& value) = 0;
  virtual Value call(const QString& name, const QVector<Value>& arguments) = 0;
};

// A counted reference to an object of the model; it may be empty ("nothing").
class Object {
 public:
  Object() = default;
  explicit Object(std::shared_ptr<Dispatch> target) : target_(std::move(target)) {}

  bool isNothing() const { return !target_; }
  explicit operator bool() const { return bool(target_); }
  void release() { target_.reset(); }

  Value get(const QString& name) const;
  void set(const QString& name, const Value& value) const;
  template <class... Arguments>
  Value call(const QString& name, Arguments&&... arguments) const;

  // The object behind the reference, for the side that made it.
  const std::shared_ptr<Dispatch>& target() const { return target_; }
  bool operator==(const Object&) const = default;

 private:
  Dispatch& require() const {
    if (!target_) throw RuntimeError(err::ObjectNotSet);
    return *target_;
  }
  std::shared_ptr<Dispatch> target_;
};

// A value that crosses the door: nothing, text, number, boolean (-1 and 0), date-time, an array of
// values (0-based), or an object. The readers convert as the procedures expect and raise 13 when
// there is no sensible reading.
class Value {
 public:
  enum class Kind { Empty, Text, Number, Boolean, DateTime, Array, Object };

  Value() = default;
  Value(QString text) : data_(std::move(text)) {}
  Value(const char16_t* text) : data_(QString::fromUtf16(text)) {}
  Value(const char*) = delete;  // would turn into a boolean or a number by accident
  Value(double number) : data_(number) {}
  Value(int number) : data_(double(number)) {}
  Value(qint64 number) : data_(double(number)) {}
  Value(bool flag) : data_(flag) {}
  Value(DateTime moment) : data_(moment) {}
  Value(lens::Object object) : data_(std::move(object)) {}
  static Value array(QVector<Value> values);

  Kind kind() const { return Kind(data_.index()); }
  bool isEmpty() const { return kind() == Kind::Empty; }
  bool isArray() const { return kind() == Kind::Array; }
  // The type name that procedures test: "Empty", "String", "Double", "Boolean", "Date", "Variant()",
  // "Object"; an empty object reference is "Nothing".
  QString typeName() const;

  // Text of a text or number; a boolean is "True" or "False", Empty is "". A date has no text of its
  // own, since that is regional: see textOf in host/regional.h.
  QString text() const;
  // A number, a boolean as -1 or 0, Empty as 0, or a text that is a number as a whole.
  double number() const;
  // A boolean, or any number other than 0.
  bool boolean() const;
  const DateTime& dateTime() const;
  const QVector<Value>& values() const;
  // The object, which may be nothing; raises 424 for any other kind.
  lens::Object object() const;

  // Highest index of an array, -1 when it has no places. Raises 13 for anything else.
  int upperBound() const { return int(values().size()) - 1; }
  // Element of an array: 13 when this is no array, 9 when the index is outside.
  const Value& at(int index) const;

  bool operator==(const Value& other) const;

 private:
  using ArrayData = std::shared_ptr<const QVector<Value>>;
  std::variant<std::monostate, QString, double, bool, DateTime, ArrayData, lens::Object> data_;
};

// Makes the objects that a program can ask for by class identifier.
class Gateway {
 public:
  virtual ~Gateway() = default;
  // Raises 429 when the class is unknown or its server cannot be started.
  virtual Object create(const QString& classId) = 0;
};

template <class... Arguments>
Value Object::call(const QString& name, Arguments&&... arguments) const {
  return require().call(name, QVector<Value>{Value(std::forward<Arguments>(arguments))...});
}

}  // namespace lens
