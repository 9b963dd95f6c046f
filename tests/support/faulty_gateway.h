// A gateway that wraps another, counts every call through it and fails one of them: the n-th, or
// every call of a member by name.
#pragma once

#include <QHash>
#include <QStringList>
#include <functional>
#include <memory>

#include "notes/bridge.h"

namespace lens {

class FaultyGateway : public Gateway {
 public:
  explicit FaultyGateway(Gateway& next) : next_(next) {}

  int failAt = 0;                              // the call of this number (from 1) raises; 0 means none
  int failNumber = 70;                         // what it raises
  QHash<QString, RuntimeError> failing;        // member or class name in upper case -> what it raises
  QHash<QString, Value> replies;               // member in upper case -> what a read or call of it gives
  std::function<void(const QString&)> onCall;  // what happens elsewhere at the moment of a call
  QStringList log;                             // names in the order of the calls
  int calls() const { return int(log.size()); }

  Object create(const QString& classId) override {
    note(classId);
    return wrap(next_.create(classId));
  }

 private:
  class Wrapped : public Dispatch {
   public:
    Wrapped(Object inner, FaultyGateway& gateway) : inner_(std::move(inner)), gateway_(gateway) {}
    Value get(const QString& name) override {
      gateway_.note(name);
      if (const auto reply = gateway_.replies.constFind(name.toUpper()); reply != gateway_.replies.cend())
        return *reply;
      return gateway_.wrapValue(inner_.get(name));
    }
    void set(const QString& name, const Value& value) override {
      gateway_.note(name);
      inner_.set(name, value);
    }
    Value call(const QString& name, const QVector<Value>& arguments) override {
      gateway_.note(name);
      if (const auto reply = gateway_.replies.constFind(name.toUpper()); reply != gateway_.replies.cend())
        return *reply;
      QVector<Value> plain;
      for (const Value& argument : arguments) plain.push_back(gateway_.unwrapValue(argument));
      return gateway_.wrapValue(inner_.target()->call(name, plain));
    }
    const Object& inner() const { return inner_; }

   private:
    Object inner_;
    FaultyGateway& gateway_;
  };

  void note(const QString& name) {
    log += name;
    if (onCall) onCall(name);
    if (calls() == failAt) throw RuntimeError(failNumber);
    if (const auto fault = failing.constFind(name.toUpper()); fault != failing.cend()) throw *fault;
  }
  Object wrap(const Object& object) {
    return object ? Object(std::make_shared<Wrapped>(object, *this)) : object;
  }
  Value wrapValue(const Value& value) {
    if (value.kind() == Value::Kind::Object) return wrap(value.object());
    if (!value.isArray()) return value;
    QVector<Value> wrapped;
    for (const Value& element : value.values()) wrapped.push_back(wrapValue(element));
    return Value::array(wrapped);
  }
  static Value unwrapValue(const Value& value) {
    if (value.kind() != Value::Kind::Object || value.object().isNothing()) return value;
    const auto* wrapped = dynamic_cast<const Wrapped*>(value.object().target().get());
    return wrapped ? Value(wrapped->inner()) : value;
  }

  Gateway& next_;
};

}  // namespace lens
