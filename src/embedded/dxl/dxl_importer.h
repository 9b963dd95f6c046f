// Import of DXL files into a database of the embedded store.
//
// One file is one change, whole or absent: what is malformed, cut short or stopped by the user leaves nothing
// behind. A large file gives others their turn to write all the same: its new notes come in many transactions
// and are seen by nobody before the last one. UNIDs of the file are kept, and a note with the UNID of a note
// in the database replaces it; note IDs are the database's own. What the importer has no counterpart for is
// stored as it came, in items whose names begin with "$DXL_", and the report names it; an attribute or
// element that is left out is named there as well. Formulas that come as source are items of type Formula in
// the form that embedded/format/source_formula.h describes.
#pragma once

#include <QString>
#include <QStringList>

#include "embedded/dxl/import_report.h"
#include "embedded/store/arrival.h"

namespace lens {

class Database;
class OtherFiles;
struct ImportContext;

// Files as they are named; of folders all files, with their subfolders, in order of name.
QStringList filesToImport(const QStringList& filesOrFolders);

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
  // From so many bytes on a file is a large one; how long it keeps others waiting. For tests.
  struct Large {
    qint64 fromBytes = 24 * 1024 * 1024;
    ArrivalPace pace = {};
  };
  void setLarge(const Large& large) { large_ = large; }

  // Never raises for what is in the file: the report tells. Failures of the target (a full disk) are
  // reported for the file as well.
  void importFile(const QString& path, ImportReport& report, ImportProgress* progress = nullptr);
  // Files, and all files of folders with their subfolders in order of name; of a folder, those that are no
  // DXL are counted in one line of the report. Goes on after a file that failed, ends after a cancellation.
  // Small files share the time that the disk takes for a transaction; between two files, and within a
  // large one, others have their turn to write within a second. What is told was written durably.
  void importFiles(const QStringList& filesOrFolders, ImportReport& report,
                   ImportProgress* progress = nullptr);

 private:
  struct ToImport;
  struct Result;
  Result read(const QString& path, ImportProgress* progress);
  bool isLarge(const QString& path) const;
  void importLarge(const QString& path, ImportContext& context, ImportProgress* progress);
  qsizetype importTurn(const QVector<ToImport>& files, ImportReport& report, ImportProgress* progress);

  Database& target_;
  bool applyProperties_ = true;
  Large large_;
};

}  // namespace lens
