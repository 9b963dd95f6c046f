#include "client/database_commands.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>

#include "client/background_task.h"
#include "client/client_controls.h"
#include "client/database_controller.h"
#include "client/database_tree.h"
#include "client/real_reading.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr quint16 kDocuments = noteclass::Document;

// "sales/orders.nsf" gives "sales/orders copy.nsf".
QString copyName(const QString& path) {
  const qsizetype dot = path.lastIndexOf(u'.');
  const qsizetype end = dot < 0 ? path.size() : dot;
  return DatabaseCommands::tr("%1 copy").arg(path.left(end)) + path.mid(end);
}

struct CopyRun {
  bool finished = false;
  QString failure;
};

// A file of the platform is opened as such again: what is attached there lies in it.
CopyRun runCopy(const QString& source, const QString& workspace, const QString& target, WorkBar* bar) {
  CopyRun run;
  runInBackground(bar, [&](TaskProgress& progress) {
    const auto go = [&](qint64 done, qint64 total) { return progress.go(source, done, total); };
    try {
      const auto from =
          RealDatabases::isReal(source) ? RealDatabases(workspace).open(source) : Database::open(source);
      run.finished = go(0, 0) && Workspace::copyDatabase(*from, target, go);
    } catch (const RuntimeError& error) {
      run.failure = error.description();
    }
  });
  return run;
}

}  // namespace

DatabaseCommands::DatabaseCommands(ClientControls& controls, std::shared_ptr<Workspace> workspace,
                                   DatabaseController& databases)
    : controls_(controls), workspace_(std::move(workspace)), databases_(databases) {
  using Command = void (DatabaseCommands::*)(const DatabasePlace&);
  const auto bind = [this](QAction* action, Command command) {
    connect(action, &QAction::triggered, this, [this, command] {
      const std::optional<DatabasePlace> place = chosen();
      if (controls_.refuseWhileBusy()) return;
      if (!place) return controls_.showError(tr("No database is chosen on the left"));
      controls_.clearError();
      try {
        (this->*command)(*place);
      } catch (const RuntimeError& error) {
        controls_.showError(error.description());
      }
    });
  };
  bind(controls.deleteDatabaseAction, &DatabaseCommands::deleteDatabase);
  bind(controls.renameDatabaseAction, &DatabaseCommands::renameDatabase);
  bind(controls.copyDatabaseAction, &DatabaseCommands::copyDatabase);
}

std::optional<DatabasePlace> DatabaseCommands::chosen() const {
  const std::optional<DatabasePlace> current = controls_.databaseTree->currentPlace();
  return current ? current : databases_.place();
}

void DatabaseCommands::deleteDatabase(const DatabasePlace& place) {
  const QString name = tr("%1 on %2").arg(place.path, serverLabel(place.server));
  const std::shared_ptr<Database> asked = workspace_->ownDatabase(place, u"removed"_s);
  const int documents = asked->notes().noteCount(kDocuments);
  const QPointer<DatabaseCommands> self(this);
  const bool sure = controls_.choice->confirm(
      &controls_.window,
      tr("Delete the database %1 with its %n document(s)? Nothing brings it back.", nullptr, documents)
          .arg(name),
      tr("&Delete"));
  if (!self || !sure || controls_.refuseWhileBusy()) return;
  asked->requireOwnFile();  // what is there by now may be another one
  workspace_->removeDatabase(place);
}

void DatabaseCommands::renameDatabase(const DatabasePlace& place) {
  workspace_->ownDatabase(place, u"renamed"_s);
  const QPointer<DatabaseCommands> self(this);
  const QString path =
      controls_.choice->otherDatabaseName(&controls_.window, tr("Rename database"), place.path);
  if (!self || path.isEmpty() || path == place.path || controls_.refuseWhileBusy()) return;
  const bool wasOpen = workspace_->client().isOnTop(place);
  const DatabasePlace renamed = workspace_->renameDatabase(place, path);
  if (wasOpen) databases_.open(renamed);
}

void DatabaseCommands::copyDatabase(const DatabasePlace& place) {
  const QPointer<DatabaseCommands> self(this);
  const QString path = controls_.choice->otherDatabaseName(
      &controls_.window, tr("Copy database"),
      copyName(QFileInfo(place.path).isAbsolute() ? QFileInfo(place.path).fileName() : place.path));
  if (!self || path.isEmpty() || controls_.refuseWhileBusy()) return;
  const DatabasePlace to = workspace_->place(place.server, path);
  if (!readBeforeOpening(controls_, *workspace_, place) || !self) return;
  controls_.workBar->begin(WorkBar::Work::Copy);
  const CopyRun run = runCopy(workspace_->absolutePath(place), workspace_->directory(),
                              workspace_->absolutePath(to), controls_.workBar);
  if (!self) return;  // destroyed by what ran meanwhile
  controls_.workBar->finish();
  workspace_->client().changeDatabases();
  if (!run.failure.isEmpty()) return controls_.showError(run.failure);
  if (!run.finished)
    return controls_.statusBar->showMessage(tr("The copy was cancelled; no file was written"));
  databases_.open(to);
}

}  // namespace lens
