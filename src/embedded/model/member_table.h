// The members of a class of the object model: found by name once per call, without regard to case
// and without allocating.
#pragma once

#include <QString>
#include <QStringView>
#include <QVector>
#include <initializer_list>
#include <memory>
#include <vector>

#include "notes/bridge.h"

namespace lens {

using Arguments = QVector<Value>;

// One member. A property is one that takes no arguments; a reader may ask for it either way.
struct Member {
  const char16_t* name;
  int fewest;
  int most;
  Value (*read)(Dispatch& self, const Arguments& arguments);
  void (*write)(Dispatch& self, const Value& value) = nullptr;
};

namespace detail {
template <class Function>
struct ClassOf;
template <class Class, class Result, class... Parameters>
struct ClassOf<Result (Class::*)(Parameters...)> {
  using Type = Class;
};
}  // namespace detail

// Rows from member functions: Value name(), Value name(const Arguments&), void name(const Value&).
template <auto Function>
Member property(const char16_t* name) {
  using Class = typename detail::ClassOf<decltype(Function)>::Type;
  return {name, 0, 0,
          [](Dispatch& self, const Arguments&) { return (static_cast<Class&>(self).*Function)(); }};
}

template <auto Function>
Member method(const char16_t* name, int fewest, int most) {
  using Class = typename detail::ClassOf<decltype(Function)>::Type;
  return {name, fewest, most, [](Dispatch& self, const Arguments& arguments) {
            return (static_cast<Class&>(self).*Function)(arguments);
          }};
}

template <auto Function>
Member written(const char16_t* name) {
  using Class = typename detail::ClassOf<decltype(Function)>::Type;
  return {name, 0, 0, nullptr,
          [](Dispatch& self, const Value& value) { (static_cast<Class&>(self).*Function)(value); }};
}

class MemberTable {
 public:
  MemberTable(std::initializer_list<Member> rows);
  // The rows of another class and more.
  MemberTable(const MemberTable& base, std::initializer_list<Member> rows);

  // Null when the class has no such member.
  const Member* find(QStringView name) const;

 private:
  void build();
  std::vector<Member> rows_;
  std::vector<qint16> slots_;  // open addressing, -1 is free
};

// An object of the model: looks the name up, checks the number of arguments, runs the member.
// Raises 438 for an unknown member, 449 for too few arguments, 450 for too many and for a property
// that cannot be written or read.
class ModelObject : public Dispatch, public std::enable_shared_from_this<ModelObject> {
 public:
  Value get(const QString& name) final { return call(name, {}); }
  void set(const QString& name, const Value& value) final;
  Value call(const QString& name, const Arguments& arguments) final;

 protected:
  virtual const MemberTable& members() const = 0;
  // A class may refuse members in a state that it is in.
  virtual void allow(const Member&) {}
};

// A reference to a new object of the model.
template <class Class, class... Parameters>
Value newObject(Parameters&&... parameters) {
  return Value(Object(std::make_shared<Class>(std::forward<Parameters>(parameters)...)));
}
inline Value nothing() {
  return Value(Object());
}

// The object of a class of ours behind an argument; null when it is none of that class.
template <class Class>
std::shared_ptr<Class> argumentAs(const Value& value) {
  if (value.kind() != Value::Kind::Object) return nullptr;
  return std::dynamic_pointer_cast<Class>(value.object().target());
}

}  // namespace lens
