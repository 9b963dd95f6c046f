#include "client/compare_controller.h"

#include <QMenu>
#include <QPointer>

#include "client/client_controls.h"
#include "client/database_controller.h"
#include "client/document_pane.h"
#include "client/list_export.h"
#include "client/real_reading.h"
#include "client/view_pane.h"
#include "notes/literals.h"

namespace lens {

CompareController::CompareController(ClientControls& controls, std::shared_ptr<Workspace> workspace,
                                     DatabaseController& databases, DocumentPane& document,
                                     const ViewPane& views, ListExport& lists)
    : controls_(controls),
      workspace_(std::move(workspace)),
      databases_(databases),
      document_(document),
      views_(views),
      lists_(lists) {
  auto* whole = new QAction(tr("Com&pare databases..."), &controls.window);
  whole->setObjectName(u"compareDatabasesAction"_s);
  whole->setToolTip(tr("Lists what two databases differ in, note by note and item by item"));
  controls.fileMenu->insertAction(controls.createIndexAction, whole);
  controls.fileMenu->insertSeparator(controls.createIndexAction);
  connect(whole, &QAction::triggered, this, &CompareController::offerDatabases);
  auto* marked = new QAction(tr("Com&pare marked documents"), &controls.window);
  marked->setObjectName(u"compareMarkedAction"_s);
  marked->setToolTip(tr("Shows the two marked documents side by side"));
  controls.documentMenu->addAction(marked);
  connect(marked, &QAction::triggered, this, &CompareController::compareMarked);
  const auto offer = [this, marked] {
    marked->setEnabled(databases_.place() && workspace_->client().document().isNull());
  };
  connect(&databases, &DatabaseController::pageShown, this, offer);
}

CompareWindow& CompareController::window() {
  if (window_) return *window_;
  window_ = new CompareWindow(workspace_, &controls_.window);
  connect(window_, &CompareWindow::compareAsked, this, &CompareController::compareChosen);
  connect(window_, &CompareWindow::documentAsked, this, [this](const DatabasePlace& place, NoteId note) {
    if (databases_.open(place)) document_.open(note);
    controls_.window.activateWindow();
    controls_.window.raise();
  });
  connect(window_, &CompareWindow::csvAsked, this, [this](QAbstractItemView* list) { exportCsv(*list); });
  connect(window_, &CompareWindow::copyAsked, this,
          [this](QAbstractItemView* list) { lists_.copyTable(*list); });
  return *window_;
}

void CompareController::exportCsv(QAbstractItemView& list) {
  const QPointer<QAbstractItemView> alive(&list);
  const QString file = controls_.choice->exportFile(window_, tr("differences") + u".csv"_s);
  if (!file.isEmpty() && alive) lists_.exportCsv(list, file);
}

void CompareController::offerDatabases() {
  if (controls_.refuseWhileBusy()) return;
  window().offer(databases_.place());
  window_->show();
  window_->raise();
  window_->activateWindow();
}

void CompareController::compareMarked() {
  controls_.clearError();
  const QVector<NoteId> marked = views_.markedDocuments();
  if (marked.size() != 2) return controls_.showError(tr("Mark the two documents that are to be compared"));
  const DatabasePlace place = *databases_.place();
  const std::shared_ptr<Database>& database = databases_.database();
  try {
    window().showDocuments({place, database, marked[0]}, {place, database, marked[1]});
  } catch (const RuntimeError& error) {
    return controls_.showError(error.description());
  }
  window_->show();
  window_->raise();
  window_->activateWindow();
}

void CompareController::compareChosen() {
  if (controls_.refuseWhileBusy()) return;
  const std::optional<DatabasePlace> first = window_->chosen(window_->first()),
                                     second = window_->chosen(window_->second());
  if (!first || !second) return;
  controls_.clearError();
  const QPointer<CompareController> self(this);
  try {
    for (const DatabasePlace& place : {*first, *second})
      if (!readBeforeOpening(controls_, *workspace_, place) || !self) return;
    compare({*first, workspace_->database(first->server, first->path), {}},
            {*second, workspace_->database(second->server, second->path), {}});
  } catch (const RuntimeError& error) {
    window_->tell(error.description());
  }
}

// Events go through meanwhile; the work only reads.
void CompareController::compare(const CompareWindow::Side& first, const CompareWindow::Side& second) {
  controls_.workBar->begin(WorkBar::Work::Compare);
  const QPointer<CompareController> self(this);
  ExportWatch watch(controls_.workBar);
  QVector<NoteDifference> found;
  QString failure;
  bool finished = false;
  try {
    finished = compareDatabases(
        *first.database, *second.database, [&](const NoteDifference& note) { found += note; },
        [&](qint64 done, qint64 all) { return watch.go(second.place.path, done, all); });
  } catch (const RuntimeError& error) {
    failure = error.description();
  }
  if (!self) return;  // destroyed by what ran meanwhile
  controls_.workBar->finish();
  if (!failure.isEmpty()) return window_->tell(failure);
  window_->showDifferences(first, second, std::move(found), finished);
}

}  // namespace lens
