// Making databases and importing DXL in the client window.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>

#include "client/client_window.h"
#include "client/import_bar.h"
#include "client/import_run.h"
#include "client/report_dialog.h"
#include "ui_client_window.h"

namespace lens {
namespace {

constexpr quint16 kAnyClass = 0x7FFF & ~(noteclass::Private);

DatabaseInfo newInfo(const QString& path) {
  DatabaseInfo info;
  info.title = QFileInfo(QDir::fromNativeSeparators(path)).completeBaseName();
  return info;
}

}  // namespace

bool ClientWindow::isImporting() const {
  return importBar_->isRunning();
}

bool ClientWindow::refuseWhileBusy() {
  if (!importBar_->isRunning()) return false;
  const ImportBar::Work work = importBar_->work();
  showError(work == ImportBar::Work::Import ? tr("An import is running: wait for its end or cancel it first")
            : work == ImportBar::Work::Export
                ? tr("An export is running: wait for its end or cancel it first")
                : tr("An index is being made: wait for its end or cancel it first"));
  return true;
}

bool ClientWindow::createDatabase(const QString& server, const QString& path) {
  DatabasePlace place;
  std::shared_ptr<Database> created;
  try {
    place = workspace_->place(server, path);
    created = workspace_->createDatabase(place.server, place.path, newInfo(place.path));
  } catch (const RuntimeError& error) {
    showError(error.description());
    return false;
  }
  ui_->databaseTree->refresh();
  return openDatabase(place);
}

void ClientWindow::askNewDatabase() {
  const QString server = ui_->databaseTree->currentServer();
  const QString path = choice_->databaseName(this, serverLabel(server));
  if (!path.isEmpty()) createDatabase(server, path);
}

void ClientWindow::askImport(bool folder, bool intoNew) {
  if (refuseWhileBusy()) return;
  importDxl(folder ? QStringList{choice_->folder(this)} : choice_->dxlFiles(this), intoNew);
}

std::optional<ClientWindow::ImportTarget> ClientWindow::importTarget(bool intoNew) {
  if (place_ && !intoNew) return ImportTarget{*place_, database_, false};
  const QString server = ui_->databaseTree->currentServer();
  const QString path = choice_->databaseName(this, serverLabel(server));
  if (path.isEmpty()) return std::nullopt;
  try {
    const DatabasePlace place = workspace_->place(server, path);
    return ImportTarget{place, workspace_->createDatabase(place.server, place.path, newInfo(place.path)),
                        true};
  } catch (const RuntimeError& error) {
    showError(error.description());
    return std::nullopt;
  }
}

void ClientWindow::importDxl(const QStringList& filesOrFolders, bool intoNew) {
  if (refuseWhileBusy()) return;
  QStringList paths = filesOrFolders;
  paths.removeAll(QString());
  if (paths.isEmpty()) return;
  std::optional<ImportTarget> target = importTarget(intoNew);
  if (!target) return;
  clearError();
  importBar_->begin(ImportBar::Work::Import);
  const QPointer<ClientWindow> self(this);
  // An old database keeps its title and identity.
  const ImportReport report = runImport(target->database->path(), paths, target->isNew, importBar_);
  if (!self) return;  // destroyed by what ran meanwhile
  importBar_->finish();
  const bool removed = dropEmpty(*target);
  ui_->databaseTree->refresh();
  if (target->isNew && !removed)
    openDatabase(target->place);
  else if (place_ == target->place)
    refresh();
  showReport(report, *target, removed);
}

// A database that was made for an import that brought nothing goes again, unless it is used by now.
bool ClientWindow::dropEmpty(ImportTarget& target) {
  if (!target.isNew) return false;
  try {
    if (place_ == target.place || target.database->notes().noteCount(kAnyClass) > 0) return false;
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

void ClientWindow::showReport(const ImportReport& report, const ImportTarget& target, bool removed) {
  QString heading = tr("Import into %1 on %2").arg(target.place.path, serverLabel(target.place.server));
  if (removed) heading += tr(": nothing was imported, so the new database was removed again");
  auto* dialog = new ReportDialog(heading, report.text(), this);
  dialog->show();
}

}  // namespace lens
