#include "client/database_controller.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>

#include "client/client_controls.h"
#include "client/document_pane.h"
#include "client/note_texts.h"
#include "client/panes.h"
#include "client/real_reading.h"
#include "client/view_pane.h"

namespace lens {
namespace {

constexpr int kBetweenReloads = 250;  // milliseconds

}  // namespace

DatabaseController::DatabaseController(ClientControls& controls, std::shared_ptr<Workspace> workspace,
                                       ViewPane& views, DocumentPane& document)
    : controls_(controls), workspace_(std::move(workspace)), views_(views), document_(document) {
  useListFont(*controls.databaseTree);
  giveRowsRoom(*controls.databaseTree);
  connectActions();
  reload_.setSingleShot(true);
  connect(&reload_, &QTimer::timeout, this, &DatabaseController::reloadView);
  controls.databaseTree->setWorkspace(workspace_);
  workspace_->client().setListener(this);
  workspace_->setChangeListener([this](const DatabasePlace& place) {
    if (place != place_ || views_.isStale()) return;
    views_.markStale();
    showCounts();
  });
}

DatabaseController::~DatabaseController() {
  workspace_->client().setListener(nullptr);
  workspace_->setChangeListener(nullptr);
}

void DatabaseController::connectActions() {
  DatabaseTree& tree = *controls_.databaseTree;
  giveKeys(*controls_.openDatabaseAction, enterKeys(), tree);
  connect(controls_.openDatabaseAction, &QAction::triggered, this, [this, &tree] {
    QTreeWidgetItem* row = tree.currentItem();
    if (const auto place = tree.currentPlace())
      open(*place);
    else if (!tree.currentAdvice().isEmpty())
      controls_.showError(tree.currentAdvice());
    else if (row)
      row->setExpanded(!row->isExpanded());
  });
  tree.addActions({controls_.closeDatabaseAction, controls_.renameDatabaseAction,
                   controls_.copyDatabaseAction, controls_.deleteDatabaseAction, controls_.newDatabaseAction,
                   controls_.refreshAction});
  tree.setContextMenuPolicy(Qt::ActionsContextMenu);
  connect(&tree, &DatabaseTree::databaseChosen, controls_.openDatabaseAction, &QAction::trigger);
  connect(&tree, &DatabaseTree::listingFailed, this,
          [this](const QString& reason) { controls_.showError(reason); });
  connect(controls_.openFileAction, &QAction::triggered, this, [this] {
    const QString file = controls_.choice->databaseFile(&controls_.window);
    if (!file.isEmpty()) openFile(file);
  });
  connect(controls_.newDatabaseAction, &QAction::triggered, this, [this] {
    const DatabasePlace asked = askNewPlace();
    if (!asked.path.isEmpty()) create(asked.server, asked.path);
  });
  connect(controls_.closeDatabaseAction, &QAction::triggered, this, &DatabaseController::close);
  connect(controls_.refreshAction, &QAction::triggered, this, &DatabaseController::refresh);
  connect(&views_, &ViewPane::documentChosen, &document_, &DocumentPane::open);
  connect(&views_, &ViewPane::changed, this, &DatabaseController::showCounts);
  connect(&document_, &DocumentPane::opened, this, &DatabaseController::showPage);
}

void DatabaseController::start() {
  syncWithState();
  if (!place_) showPage();
}

bool DatabaseController::open(const DatabasePlace& place) {
  std::shared_ptr<Database> opened;  // held, so that it is not opened twice
  DatabasePlace canonical;
  const QPointer<DatabaseController> self(this);
  try {
    canonical = workspace_->place(place.server, place.path);
    if (!readBeforeOpening(controls_, *workspace_, canonical) || !self) return false;
    opened = workspace_->database(canonical.server, canonical.path);
  } catch (const RuntimeError& error) {
    controls_.showError(error.description());
    return false;
  }
  controls_.clearError();
  workspace_->client().showDatabase(canonical);
  syncWithState();
  if (place_ != canonical) return false;
  controls_.documentTable->setFocus();
  return true;
}

bool DatabaseController::openFile(const QString& path) {
  return open({QString(), path});
}

DatabasePlace DatabaseController::askNewPlace() {
  const QString server = controls_.databaseTree->currentServer();
  return {server, controls_.choice->databaseName(&controls_.window, serverLabel(server))};
}

std::optional<DatabaseController::Placed> DatabaseController::make(const QString& server,
                                                                   const QString& path) {
  try {
    const DatabasePlace place = workspace_->place(server, path);
    DatabaseInfo info;
    info.title = QFileInfo(QDir::fromNativeSeparators(place.path)).completeBaseName();
    return Placed{place, workspace_->createDatabase(place.server, place.path, info)};
  } catch (const RuntimeError& error) {
    controls_.showError(error.description());
    return std::nullopt;
  }
}

bool DatabaseController::create(const QString& server, const QString& path) {
  const std::optional<Placed> made = make(server, path);
  if (!made) return false;
  controls_.databaseTree->refresh();
  return open(made->place);
}

void DatabaseController::close() {
  workspace_->client().closeDatabase();
}

void DatabaseController::reopen() {
  const std::optional<DatabasePlace> place = place_;
  close();
  if (place) open(*place);
}

void DatabaseController::databasesChanged() {
  controls_.databaseTree->refresh();
}

// Whatever the state says is shown; what cannot be shown is explained.
void DatabaseController::syncWithState() {
  const DatabasePlace* top = workspace_->client().database();
  if (!top) {
    if (place_) unload();
    return;
  }
  if (place_ && *place_ == *top) return;
  place_ = *top;
  if (load()) document_.refresh();
}

bool DatabaseController::load() {
  reload_.stop();
  try {
    database_ = workspace_->database(place_->server, place_->path);
    document_.setDatabase(database_);
    views_.show(database_);
  } catch (const RuntimeError& error) {
    unload(error.description());
    return false;
  }
  controls_.databaseTree->markOpen(place_);
  showTitle();
  showPage();
  return true;
}

void DatabaseController::unload(const QString& why) {
  reload_.stop();
  place_.reset();
  database_.reset();
  views_.clear();
  document_.setDatabase(nullptr);
  document_.clear();
  controls_.databaseTree->markOpen(std::nullopt);
  if (!why.isEmpty()) controls_.showError(why);
  showTitle();
  showPage();
}

void DatabaseController::documentClosed() {
  document_.clear();
  showPage();
  controls_.documentTable->setFocus();
}

// A program that changes many documents asks behind each of them: one reload answers all that ask before
// events are taken again, and the next one waits a little.
void DatabaseController::refreshView() {
  if (!place_ || reload_.isActive()) return;
  const qint64 since = lastReload_.isValid() ? lastReload_.elapsed() : kBetweenReloads;
  reload_.start(int(std::max<qint64>(0, kBetweenReloads - since)));
}

void DatabaseController::settle() {
  if (reload_.isActive()) reloadView();
}

void DatabaseController::reloadView() {
  reload_.stop();
  if (!place_) return;
  if (!QFileInfo::exists(workspace_->absolutePath(*place_))) {
    const QString file = workspace_->absolutePath(*place_);
    close();
    return controls_.showError(tr("%1: the database is no longer there").arg(file));
  }
  try {
    views_.reload();
  } catch (const RuntimeError& error) {
    controls_.showError(error.description());
  }
  lastReload_.start();
}

void DatabaseController::refresh() {
  controls_.clearError();
  controls_.databaseTree->refresh();
  if (!place_) return syncWithState();
  reloadView();
  if (place_) document_.refresh();
  showTitle();
}

void DatabaseController::showPage() {
  ClientControls& ui = controls_;
  const bool open = place_.has_value(), document = !workspace_->client().document().isNull();
  QWidget* page = !open ? ui.emptyPage : document ? static_cast<QWidget*>(ui.reader) : ui.viewPage;
  ui.pages->setCurrentWidget(page);
  ui.closeDatabaseAction->setEnabled(open);
  ui.exportDatabaseAction->setEnabled(open);
  ui.exportViewAction->setEnabled(open && !document);
  ui.exportMarkedAction->setEnabled(open);
  ui.openDocumentAction->setEnabled(open && !document);
  for (QAction* ofTheList : {ui.selectAllAction, ui.filterAction, ui.fitColumnsAction})
    ofTheList->setEnabled(open && !document);
  ui.closeDocumentAction->setEnabled(document);
  Q_EMIT pageShown();
  showCounts();
}

void DatabaseController::showTitle() {
  QMainWindow& window = controls_.window;
  if (!database_) return window.setWindowTitle(tr("Client"));
  QString title = place_->path;
  try {
    const QString own = database_->info().title.simplified();
    if (!own.isEmpty()) title = own;
  } catch (const RuntimeError& error) {
    controls_.showError(error.description());
  }
  if (const auto real = workspace_->realDatabase(*database_)) title += tr(" (%1)").arg(realLine(*real));
  window.setWindowTitle(tr("Client: %1").arg(title));
}

void DatabaseController::showCounts() {
  if (!place_ || !views_.currentEntry()) return controls_.statusBar->showMessage(tr("No database is open"));
  views_.showCount();
  QString status = tr("%1 on %2").arg(place_->path, serverLabel(place_->server));
  if (const auto real = workspace_->realDatabase(*database_)) status += tr("    %1").arg(realLine(*real));
  const qsizetype marked = workspace_->client().visibleSelection().size();
  if (marked > 0) status += tr("    %1 marked").arg(marked);
  if (views_.isStale()) status += tr("    Documents have changed: F5 refreshes");
  controls_.statusBar->showMessage(status);
}

}  // namespace lens
