// The full-text index of the database that the client window shows.
#include <QPointer>

#include "client/background_task.h"
#include "client/client_window.h"
#include "client/report_dialog.h"
#include "embedded/search/full_text.h"
#include "ui_client_window.h"

namespace lens {
namespace {

struct IndexResult {
  bool finished = false;
  QString failure;
};

IndexResult runIndexing(const QString& databasePath, ImportBar* bar) {
  IndexResult result;
  runInBackground(bar, [&](TaskProgress& progress) {
    const auto go = [&](qint64 done, qint64 total) { return progress.go(databasePath, done, total); };
    try {
      const auto database = Database::open(databasePath);
      result.finished = go(0, 0) && createFullTextIndex(*database, {go});
    } catch (const RuntimeError& error) {
      result.failure = error.description();
    }
  });
  return result;
}

}  // namespace

// One of the two commands makes sense: which one, another program may have decided meanwhile.
void ClientWindow::offerIndex() {
  bool indexed = false;
  try {
    indexed = database_ && hasFullTextIndex(*database_);
  } catch (const RuntimeError& error) {
    showError(error.description());
  }
  ui_->createIndexAction->setEnabled(database_ && !indexed);
  ui_->updateIndexAction->setEnabled(indexed);
}

void ClientWindow::indexDatabase() {
  if (refuseWhileBusy() || !database_) return;
  const DatabasePlace place = *place_;  // the user may open another meanwhile
  clearError();
  importBar_->begin(ImportBar::Work::Index);
  const QPointer<ClientWindow> self(this);
  const IndexResult result = runIndexing(database_->path(), importBar_);
  if (!self) return;  // destroyed by what ran meanwhile
  importBar_->finish();
  offerIndex();
  if (!result.failure.isEmpty()) return showError(result.failure);
  auto* dialog = new ReportDialog(
      tr("Full-text index of %1 on %2").arg(place.path, serverLabel(place.server)),
      result.finished
          ? tr("The index holds the words of all documents as they are now")
          : tr("Cancelled. What is done of the index is kept: the next time it goes on from there"),
      this);
  dialog->setWindowTitle(tr("Full-text index"));
  dialog->show();
}

}  // namespace lens
