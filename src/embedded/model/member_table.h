// The members of a class of the object model: found by name once per call, without regard to case
// and without allocating.
#pragma once

#include <QString>
#include <QStringView>
#include <QVector>
#include <initializer_list>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "notes/bridge.h"
#include "notes/numbers.h"

namespace lens {

using Arguments = QVector<Value>;

namespace detail {

// What a member asks of an argument, converted as Value converts and with what it raises.
template <class Wanted>
Wanted converted(const Value& value) {
  if constexpr (std::is_same_v<Wanted, QString>)
    return value.text();
  else if constexpr (std::is_same_v<Wanted, bool>)
    return value.boolean();
  else if constexpr (std::is_same_v<Wanted, double>)
    return value.number();
  else if constexpr (std::is_same_v<Wanted, qint32>)
    return roundToInt32(value.number());
  else
    return value;  // const Value&: the member converts it itself
}

template <class Parameter>
using Wanted =
    std::conditional_t<std::is_same_v<Parameter, const Value&>, const Value&, std::decay_t<Parameter>>;

// A pointer is an argument that may be left out: null then.
template <class Parameter>
Wanted<Parameter> argument(const Arguments& arguments, size_t place) {
  if constexpr (std::is_same_v<Parameter, const Value*>)
    return qsizetype(place) < arguments.size() ? &arguments[qsizetype(place)] : nullptr;
  else
    return converted<Wanted<Parameter>>(arguments[qsizetype(place)]);
}

// The body of a member, a function object without state: its parameters tell the class and the arguments.
template <class Function>
struct Body;
template <class Lambda, class Result, class Class, class... Parameters>
struct Body<Result (Lambda::*)(Class&, Parameters...) const> {
  static constexpr int kFewest = (0 + ... + int(!std::is_pointer_v<Parameters>));
  static constexpr int kMost = sizeof...(Parameters);

  static Value run(Dispatch& self, const Arguments& arguments) {
    return run(static_cast<Class&>(self), arguments, std::index_sequence_for<Parameters...>());
  }
  static void write(Dispatch& self, const Value& value) {
    (Lambda{}(static_cast<Class&>(self), converted<Wanted<Parameters>>(value)), ...);
  }

 private:
  template <size_t... kPlaces>
  static Value run(Class& self, const Arguments& arguments, std::index_sequence<kPlaces...>) {
    // Braces convert the arguments in their order, so that the first one that does not fit is told.
    std::tuple<Wanted<Parameters>...> given{argument<Parameters>(arguments, kPlaces)...};
    if constexpr (std::is_void_v<Result>) {
      Lambda{}(self, std::get<kPlaces>(given)...);
      return {};
    } else {
      return Lambda{}(self, std::get<kPlaces>(given)...);
    }
  }
};
template <class Lambda>
using BodyOf = Body<decltype(&Lambda::operator())>;

}  // namespace detail

// One member: its name and what it does, as a lambda over its object. The parameters behind the object are
// the arguments: QString, bool, double and qint32 are converted before the body runs, const Value& is given
// as it is, and const Value* may be left out.
//
//   {u"GETFIELDTYPE", [](FormObject& self, const QString& name) { return self.typeOf(name); }}
//
// A member without arguments is a property: a reader may ask for it either way, and a second lambda takes
// what is written to it.
struct Member {
  template <class Read>
  Member(const char16_t* memberName, Read)
      : name(memberName),
        fewest(detail::BodyOf<Read>::kFewest),
        most(detail::BodyOf<Read>::kMost),
        read(detail::BodyOf<Read>::run) {}
  template <class Read, class Write>
  Member(const char16_t* memberName, Read body, Write) : Member(memberName, body) {
    static_assert(detail::BodyOf<Read>::kMost == 0 && detail::BodyOf<Write>::kMost == 1);
    write = detail::BodyOf<Write>::write;
  }

  const char16_t* name;
  int fewest;
  int most;
  Value (*read)(Dispatch& self, const Arguments& arguments);
  void (*write)(Dispatch& self, const Value& value) = nullptr;
};
using Members = std::vector<Member>;

class MemberTable {
 public:
  // A class may name its members in groups, and take over those of another class.
  MemberTable(std::initializer_list<Members> groups);

  // Null when the class has no such member.
  const Member* find(QStringView name) const;

 private:
  Members rows_;
  std::vector<qint16> slots_;  // open addressing, -1 is free
};

// An object of the model: looks the name up, checks the number of arguments, runs the member.
// Raises 438 for an unknown member, 449 for too few arguments, 450 for too many and for a member that cannot
// be written.
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
