#include "client/import_run.h"

#include "client/background_task.h"
#include "embedded/dxl/dxl_importer.h"
#include "embedded/store/change_record.h"
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

// What was imported stays imported where the record finds no room.
void keepRecord(ChangeRecording& recording, const QString& path, ImportRun& run) {
  try {
    run.canBeUndone = recording.writeTo(path);
  } catch (const RuntimeError& error) {
    run.whyNot = error.description();
  }
}

}  // namespace

ImportRun runImport(const QString& databasePath, const QStringList& filesOrFolders,
                    bool applyDatabaseProperties, const QString& recordPath, WorkBar* bar) {
  ImportRun run;
  const QString failure = runOnDatabase(bar, databasePath, [&](Database& database, TaskProgress& progress) {
    ChangeRecording recording(database);
    DxlImporter importer(database);
    importer.applyDatabaseProperties(applyDatabaseProperties);
    ImportSteps steps(progress);
    importer.importFiles(filesOrFolders, run.report, &steps);
    keepRecord(recording, recordPath, run);
  });
  if (!failure.isEmpty()) run.report.failed.push_back(failure);
  return run;
}

PreviewRun runPreview(const QString& databasePath, const QStringList& filesOrFolders, WorkBar* bar) {
  PreviewRun run;
  run.failure = runOnDatabase(bar, databasePath, [&](Database& database, TaskProgress& progress) {
    ImportSteps steps(progress);
    run.preview = previewImport(database, filesOrFolders, &steps);
  });
  return run;
}

}  // namespace lens
