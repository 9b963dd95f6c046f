#include "bulk/database_searches.h"

#include "bulk/run_steps.h"
#include "notes/literals.h"
#include "notes/numbers.h"

namespace lens {

DatabaseSearches::DatabaseSearches(ReplicDesk& desk) : desk_(desk) {
  desk_.window.cmdSearch->click = [this] { cmdSearch_Click(); };
  desk_.window.cmdSearchAZ->click = [this] { cmdSearchAZ_Click(); };
  desk_.window.cmdSearchInViews->click = [this] { cmdSearchInViews_Click(); };
}

void DatabaseSearches::cmdSearch_Click() {
  const ListBox& databases = *desk_.window.lstDBNames;
  beginSearch();
  clearResults();
  Statements step;
  for (int row = 0; row < databases.listCount() && !desk_.state.gStopFlag; ++row) {
    if (!databases.selected(row)) continue;
    if (!openRow(row, step)) return;
    searchWords(step);
    countSearched();
    desk_.state.gDb.release();
  }
  endSearch();
}

// The view is chosen in a list that this search therefore leaves alone.
void DatabaseSearches::cmdSearchAZ_Click() {
  const ListBox& databases = *desk_.window.lstDBNames;
  beginSearch();
  desk_.window.txtProc->setText(QString());
  Statements step;
  step.switchTrapOff();
  for (int row = 0; row < databases.listCount() && !desk_.state.gStopFlag; ++row) {
    if (!databases.selected(row)) continue;
    if (!openRow(row, step)) return;
    searchKey(row, step);
    desk_.state.gDb.release();
  }
  endSearch();
}

// A row that is not marked lowers the flag for the rest of the walk.
void DatabaseSearches::cmdSearchInViews_Click() {
  const ListBox& databases = *desk_.window.lstDBNames;
  beginSearch();
  clearResults();
  if (desk_.window.txtTemplale->text().isEmpty()) {
    desk_.host.messageBox(u"Specify the view name in the field above!"_s, box::Plain,
                          u"Search for number of docs in the view."_s);
    return;
  }
  Statements step;
  for (int row = 0; row < databases.listCount() && !desk_.state.gStopFlag; ++row) {
    if (!databases.selected(row)) {
      desk_.state.gSearchBusy = false;
      continue;
    }
    if (!openRow(row, step)) return;
    countEntries(step);
    countSearched();
    desk_.state.gDb.release();
  }
  endSearch();
}

void DatabaseSearches::beginSearch() {
  desk_.state.gStopFlag = false;
  desk_.state.gSearchBusy = true;
  desk_.window.txtDocsSelected->setText(QString::number(desk_.window.lstDBNames->listCount()));
  desk_.window.txtDocsSelected->repaint();
}

void DatabaseSearches::clearResults() {
  desk_.window.lstViewNames->clear();
  desk_.window.lstAgentNames->clear();
  desk_.window.lstDBNamesDest->clear();
  desk_.window.txtProc->setText(QString());
  desk_.window.txtDocsSelected->setText(QString());
}

bool DatabaseSearches::openRow(int row, Statements& step) {
  desk_.state.gDbPath = desk_.window.lstDBNames->list(row);
  return openToldDatabase(desk_, step);
}

// A database without an index is passed over.
void DatabaseSearches::searchWords(Statements& step) {
  const NotesDatabase& database = desk_.state.gDb;
  if (!step.holds([&] { return database.isIndexed(); })) return;
  NotesDocumentCollection found;
  step([&] { found = database.fullTextSearch(desk_.window.txtTemplale->text(), 0); });
  if (found && step.holds([&] { return found.count() > 0; })) addTarget(desk_.state.gDbPath);
}

// A view that is not there, without a failure, leaves the mark.
void DatabaseSearches::searchKey(int row, Statements& step) {
  const FrmReplic& window = desk_.window;
  NotesView view;
  Continue& looking = step.switchTrapOff();
  looking.clear();
  looking([&] { view = desk_.state.gDb.view(window.lstViewNames->text()); });
  if (looking.number() != 0) {
    looking.clear();
    step([&] { window.lstDBNames->setSelected(row, false); });
  }
  if (!view) return;
  NotesViewEntry entry;
  step([&] { entry = view.entryByKey(window.txtTemplale->text(), true); });
  if (!entry) step([&] { window.lstDBNames->setSelected(row, false); });
}

void DatabaseSearches::countEntries(Statements& step) {
  NotesView view;
  step([&] { view = desk_.state.gDb.view(desk_.window.txtTemplale->text()); });
  double entries = 0;
  if (view && step.holds([&] { return (entries = view.entryCount()) > 0; }))
    addTarget(desk_.state.gDbPath + u' ' + numberText(entries));
}

void DatabaseSearches::countSearched() {
  countProcessed(desk_.window);
  desk_.window.repaint();
}

void DatabaseSearches::endSearch() {
  desk_.state.gSearchBusy = false;
  desk_.routines.playDoneSound();
}

void DatabaseSearches::addTarget(const QString& row) {
  desk_.window.lstDBNamesDest->addItem(row);
  desk_.window.lstDBNamesDest->refresh();
}

}  // namespace lens
