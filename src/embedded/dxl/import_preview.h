// What an import of DXL files would replace, told without importing them.
#pragma once

#include <QStringList>
#include <QVector>

#include "embedded/dxl/dxl_importer.h"
#include "embedded/store/database.h"

namespace lens {

struct ImportPreview {
  int notes = 0;             // that the files bring
  QVector<NoteId> replaced;  // notes of the target that they would replace or complete, each once, ascending
  bool cancelled = false;
};

// Reads the files as the importer does and changes nothing. A file that is no DXL, or is malformed, counts
// for nothing: none of it would be imported.
ImportPreview previewImport(Database& target, const QStringList& filesOrFolders,
                            ImportProgress* progress = nullptr);

// Whether the root of a file is a "database" element; reads its beginning only.
bool holdsDatabaseElement(const QString& file);

}  // namespace lens
