#include "client/search_controller.h"

#include <QPointer>

#include "client/background_task.h"
#include "client/client_controls.h"
#include "client/database_controller.h"
#include "client/document_pane.h"
#include "client/index_controller.h"
#include "client/panes.h"
#include "client/view_pane.h"
#include "embedded/search/full_text.h"
#include "embedded/search/query_hits.h"

namespace lens {
namespace {

struct SearchRun {
  QVector<NoteId> found;
  bool cancelled = false;
  QString failure;
};

// The index first takes in what was changed since; where it cannot, the search sees to that.
bool bringUpToDate(Database& database, TaskProgress& progress) {
  const auto go = [&](qint64 done, qint64 total) { return progress.go(database.path(), done, total); };
  try {
    return go(0, 0) && refreshFullTextIndex(database, {go});
  } catch (const RuntimeError&) {
    return true;
  }
}

SearchRun runSearch(const QString& databasePath, const QString& query, WorkBar* bar) {
  SearchRun run;
  run.failure = runOnDatabase(bar, databasePath, [&](Database& database, TaskProgress& progress) {
    run.cancelled = !bringUpToDate(database, progress);
    if (!run.cancelled) run.found = fullTextSearch(database, query, 0);
  });
  return run;
}

}  // namespace

SearchController::SearchController(ClientControls& controls, DatabaseController& databases, ViewPane& views,
                                   DocumentPane& document, IndexController& index)
    : controls_(controls), databases_(databases), views_(views), index_(index) {
  QLineEdit& box = *controls.searchBox;
  box.setClearButtonEnabled(true);
  connect(&box, &QLineEdit::returnPressed, this, [this, &box] { search(box.text()); });
  connect(controls.searchButton, &QPushButton::clicked, this, [this, &box] { search(box.text()); });
  connect(&box, &QLineEdit::textChanged, this, [this](const QString& text) {
    if (text.isEmpty()) views_.clearFound();
  });
  connect(controls.searchAction, &QAction::triggered, this, [&document, &box] {
    document.close();  // the box stands above the list, whose commands are none of an open document
    box.setFocus();
    box.selectAll();
  });
  connect(&databases, &DatabaseController::pageShown, this,
          [this] { controls_.searchAction->setEnabled(databases_.database() != nullptr); });
  connect(&document, &DocumentPane::opened, this, &SearchController::markHits);
  controls.searchAction->setEnabled(false);
}

bool SearchController::isIndexed() {
  if (hasFullTextIndex(*databases_.database())) return true;
  const std::optional<DatabasePlace> place = databases_.place();
  const QPointer<SearchController> self(this);
  const bool wanted = controls_.choice->confirm(
      &controls_.window,
      tr("%1 has no full-text index, and only with one can it be searched. Make one now?").arg(place->path),
      tr("&Create index"));
  if (!self || !wanted || databases_.place() != place) return false;
  index_.makeIndex();
  return self && databases_.place() == place && hasFullTextIndex(*databases_.database());
}

void SearchController::search(const QString& asked) {
  if (!databases_.database() || controls_.refuseWhileBusy()) return;
  controls_.clearError();
  const QString query = asked.simplified();  // as it is kept
  if (query.isEmpty()) return views_.clearFound();
  const QPointer<SearchController> self(this);
  try {
    parseQuery(query);
    if (!isIndexed() || !self) return;
  } catch (const RuntimeError& error) {
    return controls_.showError(error.description());
  }
  const DatabasePlace place = *databases_.place();
  controls_.workBar->begin(WorkBar::Work::Search);
  const SearchRun run = runSearch(databases_.database()->path(), query, controls_.workBar);
  if (!self) return;  // destroyed by what ran meanwhile
  controls_.workBar->finish();
  if (!run.failure.isEmpty()) return controls_.showError(run.failure);
  if (run.cancelled || databases_.place() != place) return;
  views_.showFound(query, run.found);
  controls_.documentTable->setFocus();
}

void SearchController::markHits() {
  const ViewEntry* entry = views_.currentEntry();
  QueryHits hits;
  if (entry && entry->kind == ViewEntry::Kind::Found) hits = QueryHits(parseQuery(entry->title));
  controls_.reader->markHits(hits);
}

}  // namespace lens
