#include "embedded/workspace/chosen_workspace.h"

#include <QStandardPaths>

#include "notes/literals.h"

namespace lens {
namespace {

constexpr char kVariable[] = "TESSALY_WORKSPACE";

}  // namespace

QString chosenWorkspace() {
  if (isWorkspaceNamed()) return qEnvironmentVariable(kVariable);
  return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/tessaly-lens"_s;
}

bool isWorkspaceNamed() {
  return !qEnvironmentVariable(kVariable).isEmpty();
}

void nameWorkspace(const QString& directory) {
  qputenv(kVariable, directory.toLocal8Bit());
}

}  // namespace lens
