#include "client/database_commands.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>

#include "client/background_task.h"
#include "client/client_controls.h"
#include "client/database_controller.h"
#include "client/database_tree.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr quint16 kDocuments = noteclass::Document;

// "sales/orders.nsf" gives "sales/orders copy.nsf".
QString copyName(const QString& path) {
  const qsizetype dot = path.lastIndexOf(u'.');
  const qsizetype end = dot < 0 ? path.size() : dot;
  return path.left(end) + u" copy"_s + path.mid(end);
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
  const int documents = workspace_->database(place.server, place.path)->notes().noteCount(kDocuments);
  const QPointer<DatabaseCommands> self(this);
  const bool sure = controls_.choice->confirm(
      &controls_.window,
      tr("Delete the database %1 with its %n document(s)? Nothing brings it back.", nullptr, documents)
          .arg(name),
      tr("&Delete"));
  if (self && sure) workspace_->removeDatabase(place);
}

void DatabaseCommands::renameDatabase(const DatabasePlace& place) {
  const QPointer<DatabaseCommands> self(this);
  const QString path =
      controls_.choice->otherDatabaseName(&controls_.window, tr("Rename database"), place.path);
  if (!self || path.isEmpty() || path == place.path) return;
  const bool wasOpen = workspace_->client().isOnTop(place);
  const DatabasePlace renamed = workspace_->renameDatabase(place, path);
  if (wasOpen) databases_.open(renamed);
}

// What is in a copy of a real database may lie in the file that it was read from, which this thread knows.
QString DatabaseCommands::runCopy(Database& source, const QString& file) {
  QString failure;
  const auto copy = [&](Database& from) {
    try {
      Workspace::copyDatabase(from, file);
    } catch (const RuntimeError& error) {
      failure = error.description();
    }
  };
  if (source.objects().hasOutside()) {
    copy(source);
    return failure;
  }
  runInBackground(controls_.workBar, [&](TaskProgress& progress) {
    progress.go(source.path(), 0, 0);
    try {
      copy(*Database::open(source.path()));
    } catch (const RuntimeError& error) {
      failure = error.description();
    }
  });
  return failure;
}

void DatabaseCommands::copyDatabase(const DatabasePlace& place) {
  const QPointer<DatabaseCommands> self(this);
  const QString path = controls_.choice->otherDatabaseName(
      &controls_.window, tr("Copy database"),
      copyName(QFileInfo(place.path).isAbsolute() ? QFileInfo(place.path).fileName() : place.path));
  if (!self || path.isEmpty() || controls_.refuseWhileBusy()) return;
  const std::shared_ptr<Database> source = workspace_->database(place.server, place.path);
  const DatabasePlace to = workspace_->place(place.server, path);
  const QString file = workspace_->absolutePath(to);
  controls_.workBar->begin(WorkBar::Work::Copy);
  const QString failure = runCopy(*source, file);
  if (!self) return;  // destroyed by what ran meanwhile
  controls_.workBar->finish();
  workspace_->client().changeDatabases();
  if (!failure.isEmpty()) return controls_.showError(failure);
  databases_.open(to);
}

}  // namespace lens
