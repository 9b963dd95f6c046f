#include "client/window_state.h"

#include <QFileInfo>
#include <QSplitter>
#include <utility>

#include "client/client_controls.h"
#include "client/database_controller.h"
#include "client/kept_columns.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kSplitterQuietMs = 250;

QString keyOf(const QSplitter& splitter) {
  return u"client/"_s + splitter.objectName();
}

bool isGone(const Workspace& workspace, const DatabasePlace& place) {
  try {
    return !QFileInfo::exists(workspace.absolutePath(place));
  } catch (const RuntimeError&) {
    return true;  // with its server
  }
}

}  // namespace

WindowState::WindowState(ClientControls& controls, std::shared_ptr<Workspace> workspace,
                         DatabaseController& databases)
    : controls_(controls),
      workspace_(std::move(workspace)),
      databases_(databases),
      recent_(new QMenu(tr("Open &recent"), &controls.window)) {
  recent_->setObjectName(u"recentMenu"_s);
  recent_->menuAction()->setEnabled(false);
  controls.fileMenu->insertMenu(controls.newDatabaseAction, recent_);
  later_.setSingleShot(true);
  later_.setInterval(kSplitterQuietMs);
  connect(&later_, &QTimer::timeout, this, &WindowState::keepSplitters);
  connect(&databases, &DatabaseController::pageShown, this, &WindowState::keepDatabase);
}

bool WindowState::keepIn(KeptSettings& settings) {
  settings_ = &settings;
  kept_ = std::make_unique<KeptDatabases>(settings, *workspace_);
  controls_.choice->keepFoldersIn(settings);
  auto* place = new KeptPlace(controls_.window, settings, u"client/place"_s);
  const bool hadPlace = place->restore();
  for (QSplitter* splitter : controls_.window.findChildren<QSplitter*>()) keepSplitter(splitter);
  for (QTableView* table : controls_.window.findChildren<QTableView*>()) new KeptColumns(*table, settings);
  // What the first screen could not wait for comes up now.
  const std::optional<KeptDatabases::Top> top = kept_->top();
  if (top && top->place != databases_.place() && isToBeRead(*workspace_, top->place))
    QTimer::singleShot(0, this, [this, place = top->place] { databases_.open(place); });
  keepDatabase();
  return hadPlace;
}

void WindowState::keepSplitter(QSplitter* splitter) {
  if (splitter->objectName().isEmpty()) return;
  splitters_ += splitter;
  const QByteArray state = settings_->value(keyOf(*splitter)).toByteArray();
  if (!state.isEmpty()) splitter->restoreState(state);
  splitter->setChildrenCollapsible(false);  // whatever the state says
  connect(splitter, &QSplitter::splitterMoved, &later_, qOverload<>(&QTimer::start));
}

void WindowState::keepSplitters() {
  for (const QPointer<QSplitter>& splitter : std::as_const(splitters_))
    if (splitter) settings_->set(keyOf(*splitter), splitter->saveState());
}

void WindowState::keepDatabase() {
  if (!kept_) return;
  const std::optional<DatabasePlace>& place = databases_.place();
  if (place) {
    kept_->keepTop(KeptDatabases::Top{*place, workspace_->client().document()});
    kept_->addRecent(*place);
  } else {
    kept_->keepTop(std::nullopt);
  }
  fillRecent();
}

void WindowState::fillRecent() {
  recent_->clear();
  int number = 0;
  for (const DatabasePlace& place : kept_->recent()) {
    QString name = tr("%1 on %2").arg(place.path, serverLabel(place.server));
    name.replace(u'&', u"&&"_s);
    QAction* action = recent_->addAction(u"&%1 %2"_s.arg(++number).arg(name));
    connect(
        action, &QAction::triggered, this, [this, place] { openRecent(place); }, Qt::QueuedConnection);
  }
  recent_->menuAction()->setEnabled(number > 0);
  recent_->addSeparator();
  QAction* clear = recent_->addAction(tr("&Forget these"));
  connect(
      clear, &QAction::triggered, this,
      [this] {
        kept_->clearRecent();
        fillRecent();
      },
      Qt::QueuedConnection);
}

// One that has gone says so once.
void WindowState::openRecent(const DatabasePlace& place) {
  if (databases_.open(place) || !isGone(*workspace_, place)) return;
  kept_->removeRecent(place);
  fillRecent();
}

}  // namespace lens
