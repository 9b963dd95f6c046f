#include "client/export_controller.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>

#include "client/client_controls.h"
#include "client/database_controller.h"
#include "client/export_file.h"
#include "client/view_pane.h"
#include "embedded/dxl/dxl_exporter.h"
#include "notes/literals.h"

namespace lens {
ExportController::ExportController(ClientControls& controls, std::shared_ptr<Workspace> workspace,
                                   const DatabaseController& databases, const ViewPane& views)
    : controls_(controls), workspace_(std::move(workspace)), databases_(databases), views_(views) {
  const auto bind = [this](QAction* action, ExportRange range) {
    connect(action, &QAction::triggered, this, [this, range] { ask(range); });
  };
  bind(controls.exportDatabaseAction, ExportRange::Database);
  bind(controls.exportViewAction, ExportRange::View);
  bind(controls.exportMarkedAction, ExportRange::Marked);
}

void ExportController::ask(ExportRange range) {
  if (controls_.refuseWhileBusy() || !databases_.place()) return;
  const QString name = QFileInfo(QDir::fromNativeSeparators(databases_.place()->path)).completeBaseName();
  const QString file = controls_.choice->exportFile(&controls_.window, name + u".dxl"_s);
  if (!file.isEmpty()) exportDxl(range, file);
}

QVector<NoteId> ExportController::notesOf(ExportRange range) const {
  const NoteId open = workspace_->client().document();
  if (range == ExportRange::Marked) return open ? QVector<NoteId>{open} : views_.markedDocuments();
  const ViewEntry* entry = views_.currentEntry();
  return entry ? documentsOf(*databases_.database(), *entry) : QVector<NoteId>();
}

void ExportController::exportDxl(ExportRange range, const QString& path) {
  if (controls_.refuseWhileBusy() || !databases_.database()) return;
  const std::shared_ptr<Database> database = databases_.database();  // the user may open another meanwhile
  const bool whole = range == ExportRange::Database;
  controls_.clearError();
  QString failure;
  int count = 0;
  bool finished = false;
  const QPointer<ExportController> self(this);
  try {
    const QVector<NoteId> notes = whole ? QVector<NoteId>() : notesOf(range);
    if (!whole && notes.isEmpty()) return controls_.showError(tr("There are no documents to export"));
    controls_.workBar->begin(WorkBar::Work::Export);
    ExportWatch watch(controls_.workBar);
    const ExportProgress progress = [&](int done, int all) {
      count = all;
      return watch.go(path, done, all);
    };
    finished = writeExport(path, [&](QIODevice& file) {
      return whole ? exportDatabase(*database, file, progress)
                   : exportNotes(*database, notes, file, progress);
    });
  } catch (const RuntimeError& error) {
    failure = error.description();
  }
  if (!self) return;  // destroyed by what ran meanwhile
  controls_.workBar->finish();
  const QString native = QDir::toNativeSeparators(path);
  if (!failure.isEmpty()) return controls_.showError(tr("%1 was not written: %2").arg(native, failure));
  controls_.statusBar->showMessage(finished ? tr("%n note(s) exported to %1", nullptr, count).arg(native)
                                            : tr("The export was cancelled; no file was written"));
}

}  // namespace lens
