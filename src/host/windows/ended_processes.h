// Processes by the name of their program, found and ended through the system's management service.
#pragma once

#include <QStringList>

namespace lens {

// Ends all other processes whose program file has one of these names, capitals or not, and does not wait for
// them; true when this process is one of them. Without the service, or where it ends none, the process table
// does.
bool endManagedProcesses(const QStringList& programs);

// Waits without limit for a process to end; returns at once when it cannot be opened.
void waitForProcessToEnd(qint64 processId);

}  // namespace lens
