// An object of an automation server, bound late: every member by its name, whose number is asked for once.
#pragma once

#include <QHash>

#include "notes/automation/windows/com_reference.h"
#include "notes/automation/windows/variant.h"
#include "notes/bridge.h"

namespace lens {

class AutomationObject : public Dispatch {
 public:
  explicit AutomationObject(ComReference<IDispatch> target) : target_(std::move(target)) {}

  // A member that only gives a value may be a property or a method without arguments: servers differ.
  Value get(const QString& name) override;
  void set(const QString& name, const Value& value) override;
  Value call(const QString& name, const QVector<Value>& arguments) override;

  // What the object holds one by one, where it is a collection of the platform.
  QVector<Object> elements();

  IDispatch* target() const { return target_.get(); }

 private:
  DISPID idOf(const QString& name);
  Value invoke(DISPID member, WORD kind, const QVector<Value>& arguments);

  ComReference<IDispatch> target_;
  QHash<QString, DISPID> ids_;
};

// Objects of servers on the one side, AutomationObject on the other.
const ObjectCrossing& automationObjects();

}  // namespace lens
