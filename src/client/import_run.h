// An import beside the windows, and the look at what it would replace.
#pragma once

#include <QStringList>

#include "client/work_bar.h"
#include "embedded/dxl/import_preview.h"
#include "embedded/dxl/import_report.h"

namespace lens {

struct ImportRun {
  ImportReport report;
  bool canBeUndone = false;  // there is a record of what was changed (store/change_record.h)
  QString whyNot;            // the record could not be written
};

// Imports into the database at that path and returns when the import has ended; see runInBackground. A
// cancelled import ends at the next element. Whatever cannot be opened or written is among the report's
// failures.
ImportRun runImport(const QString& databasePath, const QStringList& filesOrFolders,
                    bool applyDatabaseProperties, const QString& recordPath, WorkBar* bar);

struct PreviewRun {
  ImportPreview preview;
  QString failure;
};
PreviewRun runPreview(const QString& databasePath, const QStringList& filesOrFolders, WorkBar* bar);

}  // namespace lens
