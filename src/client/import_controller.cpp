#include "client/import_controller.h"

#include <QPointer>

#include "client/client_controls.h"
#include "client/import_run.h"
#include "client/report_dialog.h"

namespace lens {
namespace {

constexpr quint16 kAnyClass = 0x7FFF & ~(noteclass::Private);

}  // namespace

ImportController::ImportController(ClientControls& controls, std::shared_ptr<Workspace> workspace,
                                   DatabaseController& databases)
    : controls_(controls), workspace_(std::move(workspace)), databases_(databases) {
  connect(controls.importFilesAction, &QAction::triggered, this, [this] { ask(false, false); });
  connect(controls.importFolderAction, &QAction::triggered, this, [this] { ask(true, false); });
  connect(controls.importNewAction, &QAction::triggered, this, [this] { ask(false, true); });
}

void ImportController::ask(bool folder, bool intoNew) {
  if (controls_.refuseWhileBusy()) return;
  FileChoice& choice = *controls_.choice;
  QWidget* owner = &controls_.window;
  importDxl(folder ? QStringList{choice.folder(owner)} : choice.dxlFiles(owner), intoNew);
}

std::optional<ImportController::Target> ImportController::target(bool intoNew) {
  if (databases_.place() && !intoNew) return Target{{*databases_.place(), databases_.database()}, false};
  const DatabasePlace asked = databases_.askNewPlace();
  if (asked.path.isEmpty()) return std::nullopt;
  const std::optional<DatabaseController::Placed> made = databases_.make(asked.server, asked.path);
  return made ? std::optional(Target{*made, true}) : std::nullopt;
}

void ImportController::importDxl(const QStringList& filesOrFolders, bool intoNew) {
  if (controls_.refuseWhileBusy()) return;
  QStringList paths = filesOrFolders;
  paths.removeAll(QString());
  if (paths.isEmpty()) return;
  std::optional<Target> into = target(intoNew);
  if (!into) return;
  controls_.clearError();
  controls_.workBar->begin(WorkBar::Work::Import);
  const QPointer<ImportController> self(this);
  // An old database keeps its title and identity.
  const ImportReport report = runImport(into->database->path(), paths, into->isNew, controls_.workBar);
  if (!self) return;  // destroyed by what ran meanwhile
  controls_.workBar->finish();
  const bool removed = dropEmpty(*into);
  controls_.databaseTree->refresh();
  if (into->isNew && !removed)
    databases_.open(into->place);
  else if (databases_.place() == into->place)
    databases_.refresh();
  showReport(report, *into, removed);
}

// A database that was made for an import that brought nothing goes again, unless it is used by now.
bool ImportController::dropEmpty(Target& target) {
  if (!target.isNew) return false;
  try {
    if (databases_.place() == target.place || target.database->notes().noteCount(kAnyClass) > 0) return false;
  } catch (const RuntimeError&) {
    return false;
  }
  const std::weak_ptr<Database> watched = target.database;
  target.database.reset();
  if (!watched.expired()) return false;
  try {
    workspace_->removeDatabase(target.place);
    return true;
  } catch (const RuntimeError&) {
    return false;  // somebody else has it open by now
  }
}

void ImportController::showReport(const ImportReport& report, const Target& target, bool removed) {
  QString heading = tr("Import into %1 on %2").arg(target.place.path, serverLabel(target.place.server));
  if (removed) heading += tr(": nothing was imported, so the new database was removed again");
  auto* dialog = new ReportDialog(heading, report.text(), &controls_.window);
  dialog->show();
}

}  // namespace lens
