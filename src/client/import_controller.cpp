#include "client/import_controller.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <algorithm>

#include "client/client_controls.h"
#include "client/note_texts.h"
#include "embedded/store/change_record.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kMostNamed = 200;  // notes in a report
constexpr quint16 kAnyClass = 0x7FFF & ~(noteclass::Private);

// A name for a new database that is free: that of the file or folder, with a number where it is taken.
QString freePath(const Workspace& workspace, const QString& server, const QFileInfo& from) {
  const QString name = from.isDir() ? QDir(from.absoluteFilePath()).dirName() : from.completeBaseName();
  for (int number = 1; number < 1000; ++number) {
    const QString path = number == 1 ? name + u".nsf"_s : u"%1 %2.nsf"_s.arg(name, QString::number(number));
    try {
      if (!QFileInfo::exists(workspace.absolutePath(workspace.place(server, path)))) return path;
    } catch (const RuntimeError&) {
      break;  // no name for a database
    }
  }
  return QObject::tr("new") + u".nsf"_s;
}

QString namesOf(const QStringList& paths) {
  const QString first = QFileInfo(QDir(paths.first()).absolutePath()).fileName();
  return paths.size() == 1 ? first : QObject::tr("%1 and others").arg(first);
}

}  // namespace

ImportController::ImportController(ClientControls& controls, std::shared_ptr<Workspace> workspace,
                                   DatabaseController& databases)
    : controls_(controls),
      workspace_(std::move(workspace)),
      databases_(databases),
      undo_(controls, workspace_->regional(), databases) {
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

ImportOffer ImportController::offerFor(const QStringList& paths, bool intoNew) const {
  ImportOffer offer;
  offer.paths = paths;
  offer.serverName = serverLabel(controls_.databaseTree->currentServer());
  offer.newPath = freePath(*workspace_, controls_.databaseTree->currentServer(), QFileInfo(paths.first()));
  offer.regional = &workspace_->regional();
  offer.preferNew = intoNew || std::any_of(paths.begin(), paths.end(), [](const QString& path) {
                      return QFileInfo(path).isDir() || holdsDatabaseElement(path);
                    });
  if (!databases_.place()) return offer;
  offer.open = databases_.database();
  offer.openName = tr("%1 on %2").arg(databases_.place()->path, serverLabel(databases_.place()->server));
  if (!offer.open->isWritable()) offer.whyNotOpen = tr("The open database can only be read.");
  return offer;
}

std::optional<ImportController::Target> ImportController::target(const QStringList& paths, bool intoNew) {
  const QString server = controls_.databaseTree->currentServer();
  const std::optional<DatabasePlace> open = databases_.place();
  const QPointer<ImportController> self(this);
  const ImportTarget wanted = controls_.choice->importTarget(&controls_.window, offerFor(paths, intoNew));
  if (!self || wanted.kind == ImportTarget::Kind::None) return std::nullopt;
  if (wanted.kind == ImportTarget::Kind::Open) {
    // Programs open and close databases too, also while somebody reads a dialog.
    if (open && databases_.place() == open) return Target{{*open, databases_.database()}, false};
    controls_.showError(tr("Nothing was imported: the database is no longer the open one"));
    return std::nullopt;
  }
  const auto made = databases_.make(server, wanted.newPath);
  return made ? std::optional(Target{*made, true}) : std::nullopt;
}

void ImportController::importDxl(const QStringList& filesOrFolders, bool intoNew) {
  if (controls_.refuseWhileBusy()) return;
  QStringList paths = filesOrFolders;
  paths.removeAll(QString());
  if (paths.isEmpty()) return;
  const QPointer<ImportController> self(this);
  std::optional<Target> into = target(paths, intoNew);
  if (!self || !into || controls_.refuseWhileBusy()) return;  // much may have happened while it was asked
  controls_.clearError();
  try {
    into->database->requireOwnFile();
  } catch (const RuntimeError& error) {
    return controls_.showError(error.description());
  }
  controls_.workBar->begin(WorkBar::Work::Import);
  const QString record = undo_.newRecord();
  // An old database keeps its title and identity.
  const ImportRun run = runImport(into->database->path(), paths, into->isNew, record, controls_.workBar);
  if (!self) return;  // destroyed by what ran meanwhile
  controls_.workBar->finish();
  const bool removed = dropEmpty(*into);
  controls_.databaseTree->refresh();
  if (into->isNew && !removed)
    databases_.open(into->place);
  else if (databases_.place() == into->place)
    databases_.refresh();
  showReport(run, *into, removed, record);
  if (run.canBeUndone) undo_.add(record, into->place, namesOf(paths));
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

void ImportController::showReport(const ImportRun& run, const Target& target, bool removed,
                                  const QString& record) {
  QString heading = tr("Import into %1 on %2").arg(target.place.path, serverLabel(target.place.server));
  if (removed) heading += tr(": nothing was imported, so the new database was removed again");
  QString text = run.report.text();
  if (run.canBeUndone && run.report.replaced > 0) text += replacedText(record);
  if (!run.whyNot.isEmpty()) text += u'\n' + tr("The import cannot be undone: %1").arg(run.whyNot) + u'\n';
  controls_.showResult(tr("Import report"), heading, text);
}

// As they were called before.
QString ImportController::replacedText(const QString& record) const {
  QString text = u'\n' + tr("Replaced:") + u'\n';
  try {
    const QVector<Note> notes = notesBefore(record, kMostNamed + 1);
    for (const Note& note : notes.first(qMin<qsizetype>(kMostNamed, notes.size()))) {
      const NoteTexts texts = textsOf(note, workspace_->regional());
      text += tr("  %1 (%2, Note ID %3)").arg(texts.subject, texts.form, noteIdText(note.header.id)) + u'\n';
    }
    if (notes.size() > kMostNamed) text += tr("  and more") + u'\n';
  } catch (const RuntimeError& error) {
    text += error.description() + u'\n';
  }
  return text;
}

}  // namespace lens
