#include "client/export_file.h"

#include <QObject>
#include <QSaveFile>

#include "host/held_file.h"
#include "host/save_file.h"
#include "notes/runtime_error.h"

namespace lens {

bool writeExport(const QString& path, const std::function<bool(QIODevice&)>& write) {
  requireNotHeld(path);
  QSaveFile file(path);
  const bool opened = file.open(QIODevice::WriteOnly);
  if (opened && !write(file)) return false;
  if (!opened || !commitWhole(file))
    throw RuntimeError(err::PathFileAccess,
                       QObject::tr("the file cannot be written (%1)").arg(file.errorString()));
  return true;
}

}  // namespace lens
