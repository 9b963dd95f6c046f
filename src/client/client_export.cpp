// Exporting DXL from the client window.
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QStatusBar>

#include "client/client_window.h"
#include "client/import_bar.h"
#include "embedded/dxl/dxl_exporter.h"
#include "embedded/files/save_file.h"
#include "notes/literals.h"
#include "ui_client_window.h"

namespace lens {
namespace {

// False when it was cancelled; nothing is left of the file then, nor after a failure.
bool writeFile(const QString& path, const std::function<bool(QIODevice&)>& write) {
  QSaveFile file(path);
  const bool opened = file.open(QIODevice::WriteOnly);
  if (opened && !write(file)) return false;
  if (!opened || !commitWhole(file))
    throw RuntimeError(err::PathFileAccess,
                       QObject::tr("the file cannot be written (%1)").arg(file.errorString()));
  return true;
}

}  // namespace

void ClientWindow::askExport(ExportRange range) {
  if (refuseWhileBusy() || !place_) return;
  const QString name = QFileInfo(QDir::fromNativeSeparators(place_->path)).completeBaseName();
  const QString file = choice_->exportFile(this, name + u".dxl"_s);
  if (!file.isEmpty()) exportDxl(range, file);
}

QVector<quint32> ClientWindow::exportedNotes(ExportRange range) const {
  const quint32 open = workspace_->client().document();
  if (range == ExportRange::Marked) return open ? QVector<quint32>{open} : markedDocuments();
  const ViewEntry* entry = currentEntry();
  return entry ? documentsOf(*database_, *entry) : QVector<quint32>();
}

void ClientWindow::exportDxl(ExportRange range, const QString& path) {
  if (refuseWhileBusy() || !database_) return;
  const std::shared_ptr<Database> database = database_;  // the user may open another meanwhile
  const bool whole = range == ExportRange::Database;
  clearError();
  QString failure;
  int count = 0;
  bool finished = false;
  const QPointer<ClientWindow> self(this);
  try {
    const QVector<quint32> notes = whole ? QVector<quint32>() : exportedNotes(range);
    if (!whole && notes.isEmpty()) return showError(tr("There are no documents to export"));
    importBar_->begin(ImportBar::Work::Export);
    ExportWatch watch(importBar_);
    const ExportProgress progress = [&](int done, int all) {
      count = all;
      return watch.go(path, done, all);
    };
    finished = writeFile(path, [&](QIODevice& file) {
      return whole ? exportDatabase(*database, file, progress)
                   : exportNotes(*database, notes, file, progress);
    });
  } catch (const RuntimeError& error) {
    failure = error.description();
  }
  if (!self) return;  // destroyed by what ran meanwhile
  importBar_->finish();
  const QString native = QDir::toNativeSeparators(path);
  if (!failure.isEmpty()) return showError(tr("%1 was not written: %2").arg(native, failure));
  ui_->statusBar->showMessage(finished ? tr("%n note(s) exported to %1", nullptr, count).arg(native)
                                       : tr("The export was cancelled; no file was written"));
}

}  // namespace lens
