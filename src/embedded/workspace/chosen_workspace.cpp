#include "embedded/workspace/chosen_workspace.h"

#include <QStandardPaths>
#ifdef Q_OS_WIN
#include <cstdlib>
#endif

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
#ifdef Q_OS_WIN
  // The code page lacks letters that a path may have.
  _wputenv_s(QString::fromLatin1(kVariable).toStdWString().c_str(), directory.toStdWString().c_str());
#else
  qputenv(kVariable, directory.toLocal8Bit());
#endif
}

}  // namespace lens
