// The object model of the client, as its automation server publishes it.
#pragma once

#include "notes/bridge.h"

namespace lens {

// The thread's apartment, entered for as long as this lives. Calls of all objects belong to this thread;
// entering it again is counted.
class Apartment {
 public:
  Apartment();
  ~Apartment();
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;

 private:
  bool entered_;
};

class AutomationGateway : public Gateway {
 public:
  // Any class that the system knows, not only the client's: the others raise their own errors.
  Object create(const QString& classId) override;

 private:
  Apartment apartment_;
};

// The object that a name means to the system, such as "winmgmts:...". Raises what finding it raises.
Object automationObjectNamed(const QString& name);

}  // namespace lens
