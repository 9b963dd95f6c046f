#include "client/index_controller.h"

#include <QPointer>

#include "client/background_task.h"
#include "client/client_controls.h"
#include "client/database_controller.h"
#include "embedded/search/full_text.h"

namespace lens {
namespace {

struct IndexResult {
  bool finished = false;
  QString failure;
};

// A copy of a real database gets its index in another copy.
IndexResult runIndexing(const QString& databasePath, bool isCopy, WorkBar* bar) {
  IndexResult result;
  runInBackground(bar, [&](TaskProgress& progress) {
    const auto go = [&](qint64 done, qint64 total) { return progress.go(databasePath, done, total); };
    try {
      result.finished = isCopy ? RealDatabases::indexCopy(databasePath, go)
                               : go(0, 0) && createFullTextIndex(*Database::open(databasePath), {go});
    } catch (const RuntimeError& error) {
      result.failure = error.description();
    }
  });
  return result;
}

}  // namespace

IndexController::IndexController(ClientControls& controls, DatabaseController& databases)
    : controls_(controls), databases_(databases) {
  for (QAction* action : {controls.createIndexAction, controls.updateIndexAction})
    connect(action, &QAction::triggered, this, &IndexController::makeIndex);
  connect(controls.fileMenu, &QMenu::aboutToShow, this, &IndexController::offer);
  connect(&databases, &DatabaseController::pageShown, this, &IndexController::offer);
}

// One of the two commands makes sense: which one, another program may have decided meanwhile.
void IndexController::offer() {
  const std::shared_ptr<Database>& database = databases_.database();
  bool indexed = false;
  try {
    indexed = database && hasFullTextIndex(*database);
  } catch (const RuntimeError& error) {
    controls_.showError(error.description());
  }
  controls_.createIndexAction->setEnabled(database && !indexed);
  controls_.updateIndexAction->setEnabled(indexed);
}

void IndexController::makeIndex() {
  if (controls_.refuseWhileBusy() || !databases_.database()) return;
  const DatabasePlace place = *databases_.place();  // the user may open another meanwhile
  controls_.clearError();
  controls_.workBar->begin(WorkBar::Work::Index);
  const bool isCopy = databases_.isCopy();
  const QPointer<IndexController> self(this);
  const IndexResult result = runIndexing(databases_.database()->path(), isCopy, controls_.workBar);
  if (!self) return;  // destroyed by what ran meanwhile
  controls_.workBar->finish();
  if (isCopy && result.finished && databases_.place() == place) databases_.reopen();
  offer();
  if (!result.failure.isEmpty()) return controls_.showError(result.failure);
  controls_.showResult(
      tr("Full-text index"), tr("Full-text index of %1 on %2").arg(place.path, serverLabel(place.server)),
      result.finished ? tr("The index holds the words of all documents as they are now")
      : isCopy        ? tr("Cancelled. The copy stays without an index")
               : tr("Cancelled. What is done of the index is kept: the next time it goes on from there"));
}

}  // namespace lens
