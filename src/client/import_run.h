// An import beside the windows.
#pragma once

#include <QStringList>

#include "client/work_bar.h"
#include "embedded/dxl/import_report.h"

namespace lens {

// Imports into the database at that path and returns when the import has ended; see runInBackground. A
// cancelled import ends at the next element. Whatever cannot be opened or written is among the report's
// failures.
ImportReport runImport(const QString& databasePath, const QStringList& filesOrFolders,
                       bool applyDatabaseProperties, WorkBar* bar);

}  // namespace lens
