// The full-text index of the database that the client window shows.
#include <QGuiApplication>

#include "client/client_window.h"
#include "client/report_dialog.h"
#include "embedded/search/full_text.h"
#include "ui_client_window.h"

namespace lens {
namespace {

// While a long piece of work holds the window.
class WaitPointer {
 public:
  WaitPointer() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
  ~WaitPointer() { QGuiApplication::restoreOverrideCursor(); }
  WaitPointer(const WaitPointer&) = delete;
  WaitPointer& operator=(const WaitPointer&) = delete;
};

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
  if (isImporting()) return showError(tr("An import is running: wait for its end or cancel it first"));
  if (!database_) return;
  clearError();
  try {
    const WaitPointer wait;
    createFullTextIndex(*database_);
  } catch (const RuntimeError& error) {
    return showError(error.description());
  }
  offerIndex();
  const QString heading = tr("Full-text index of %1 on %2").arg(place_->path, serverLabel(place_->server));
  auto* dialog =
      new ReportDialog(heading, tr("The index holds the words of all documents as they are now"), this);
  dialog->setWindowTitle(tr("Full-text index"));
  dialog->show();
}

}  // namespace lens
