// Processes of this user by the file that they run.
#pragma once

#include <QStringList>

namespace lens {

// Name of the program file of a process without its directory, "" when it cannot be told. A Windows program
// that a loader runs is called after its own file.
QString programOf(qint64 processId);

// Ends all other processes of this user whose program file has one of these names, capitals or not, and does
// not wait for them. True when this process is one of them.
bool endOtherProcesses(const QStringList& programs);

}  // namespace lens
