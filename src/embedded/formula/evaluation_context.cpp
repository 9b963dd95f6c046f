#include "embedded/formula/evaluation_context.h"

#include "embedded/formula/faults.h"

namespace lens::formula {

void Document::setItem(const QString&, const Value&) {
  throw Fault{fault::FieldsReadOnly};
}

void Document::removeItem(const QString&) {
  throw Fault{fault::FieldsReadOnly};
}

bool Document::respondsToSelected(bool) const {
  return false;
}

bool Database::documentItem(const Unid&, const Name&, Value&) const {
  throw Fault{fault::NoDocument};
}

void Database::setDocumentItem(const Unid&, const QString&, const Value&) {
  throw Fault{fault::FieldsReadOnly};
}

bool Database::profileItem(const QString&, const QString&, const Name&, Value&) const {
  return false;
}

void Database::setProfileItem(const QString&, const QString&, const QString&, const Value&) {
  throw Fault{fault::FieldsReadOnly};
}

bool Database::exists(const QString&, const QString&) const {
  return false;
}

Value Database::column(const ViewPlace&, int) const {
  throw Fault{fault::NotInContext};
}

bool Database::lookup(const ViewPlace&, const Lookup&, Value&) const {
  throw Fault{fault::NotInContext};
}

void Environment::setIniValue(const QString&, const QString&) {
  throw Fault{fault::SideEffect};
}

MachineEnvironment::MachineEnvironment()
    : zone_(QTimeZone::systemTimeZone()), region_(regionOf(QLocale::system())) {}

TimeDate MachineEnvironment::now() const {
  return timeDateNow();
}

}  // namespace lens::formula
