// Import of DXL files into a database of the embedded store.
//
// One file is one transaction: what is malformed, cut short or stopped by the user leaves nothing
// behind. UNIDs of the file are kept, and a note with the UNID of a note in the database replaces it;
// note IDs are the database's own. What the importer has no counterpart for is stored as it came, in
// items whose names begin with "$DXL_", and the report names it; an attribute or element that is left out
// is named there as well. Formulas that come as source are
// items of type Formula in the form that embedded/format/source_formula.h describes.
#pragma once

#include <QString>
#include <QStringList>

#include "embedded/dxl/import_report.h"

namespace lens {

class Database;
class OtherFiles;

class ImportProgress {
 public:
  virtual ~ImportProgress() = default;
  // Bytes of the file read so far, and its size; false cancels the import.
  virtual bool go(const QString& file, qint64 done, qint64 total) = 0;
};

class DxlImporter {
 public:
  // The database must outlive the importer.
  explicit DxlImporter(Database& target) : target_(target) {}

  // Whether a database root sets title, templates, categories and replica ID of the target; on unless
  // it is turned off.
  void applyDatabaseProperties(bool apply) { applyProperties_ = apply; }

  // Never raises for what is in the file: the report tells. Failures of the target (a full disk) are
  // reported for the file as well.
  void importFile(const QString& path, ImportReport& report, ImportProgress* progress = nullptr);
  // Files, and all files of folders with their subfolders in order of name; of a folder, those that are no
  // DXL are counted in one line of the report. Goes on after a file that failed, ends after a cancellation.
  void importFiles(const QStringList& filesOrFolders, ImportReport& report,
                   ImportProgress* progress = nullptr);

 private:
  // Others takes files that are no DXL; null reports each.
  void takeFile(const QString& path, ImportReport& report, ImportProgress* progress, OtherFiles* others);

  Database& target_;
  bool applyProperties_ = true;
};

}  // namespace lens
