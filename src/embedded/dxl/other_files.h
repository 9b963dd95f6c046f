// Files of a folder that are no DXL: pictures, sources, licences. A folder of a design has them by the
// hundred, so the report counts them in one line.
#pragma once

#include <QMap>
#include <QString>

#include "embedded/dxl/dxl_reader.h"

namespace lens {

class OtherFiles {
 public:
  // Counts a file that the fault tells to be none; false when it is to be reported by itself: it begins as
  // XML and breaks off before its root.
  bool take(const QString& path, const DxlFault& fault, bool rootSeen);
  // "FOLDER: 12 files that are no DXL (.gif 7, .lss 4, others 1)"; "" without any.
  QString line(const QString& folder) const;

 private:
  QMap<QString, int> endings_;
};

}  // namespace lens
