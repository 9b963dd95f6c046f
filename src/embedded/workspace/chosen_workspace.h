// Which workspace the program works on.
#pragma once

#include <QString>

namespace lens {

// The directory that the environment variable TESSALY_WORKSPACE names, else the user's own. Nothing is made.
QString chosenWorkspace();
bool isWorkspaceNamed();
// Names another one for this process.
void nameWorkspace(const QString& directory);

}  // namespace lens
