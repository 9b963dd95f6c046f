#include "app/client_doors.h"

#ifdef Q_OS_WIN
#include "notes/automation/windows/automation_gateway.h"
#include "notes/library/library_capi.h"
#endif

namespace lens {

ClientDoors clientDoors() {
#ifdef Q_OS_WIN
  return {std::make_unique<AutomationGateway>(), std::make_unique<LibraryCApi>()};
#else
  return {};
#endif
}

}  // namespace lens
