// An import on a thread of its own, with a connection of its own: what the user saves meanwhile is not
// part of the import's transaction, and a cancelled import takes nothing of it back.
#pragma once

#include <QPointer>
#include <QStringList>

#include "client/import_bar.h"
#include "embedded/dxl/import_report.h"

namespace lens {

// Imports into the database at that path and returns when the import has ended; events go through
// meanwhile, and the bar shows how far it is. An import whose bar is cancelled or has gone ends at the
// next element. Whatever cannot be opened or written is among the report's failures.
ImportReport runImport(const QString& databasePath, const QStringList& filesOrFolders,
                       bool applyDatabaseProperties, ImportBar* bar);

}  // namespace lens
