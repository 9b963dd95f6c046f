#include "client/import_run.h"

#include "client/background_task.h"
#include "embedded/dxl/dxl_importer.h"
#include "embedded/store/database.h"

namespace lens {
namespace {

class ImportSteps : public ImportProgress {
 public:
  explicit ImportSteps(TaskProgress& progress) : progress_(progress) {}
  bool go(const QString& file, qint64 done, qint64 total) override { return progress_.go(file, done, total); }

 private:
  TaskProgress& progress_;
};

}  // namespace

ImportReport runImport(const QString& databasePath, const QStringList& filesOrFolders,
                       bool applyDatabaseProperties, WorkBar* bar) {
  ImportReport report;
  runInBackground(bar, [&](TaskProgress& progress) {
    try {
      const auto database = Database::open(databasePath);
      DxlImporter importer(*database);
      importer.applyDatabaseProperties(applyDatabaseProperties);
      ImportSteps steps(progress);
      importer.importFiles(filesOrFolders, report, &steps);
    } catch (const RuntimeError& error) {
      report.failed.push_back(error.description());
    }
  });
  return report;
}

}  // namespace lens
