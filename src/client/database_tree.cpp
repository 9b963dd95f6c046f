#include "client/database_tree.h"

#include <QAction>
#include <QDir>
#include <QSignalBlocker>

#include "controls/look.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kServer = Qt::UserRole, kPath = Qt::UserRole + 1, kFilled = Qt::UserRole + 2,
              kAdvice = Qt::UserRole + 3;

std::optional<DatabasePlace> placeOf(const QTreeWidgetItem* row) {
  if (!row || row->data(0, kPath).toString().isEmpty()) return std::nullopt;
  return DatabasePlace{row->data(0, kServer).toString(), row->data(0, kPath).toString()};
}

void addHint(QTreeWidgetItem* server, const QString& text) {
  auto* hint = new QTreeWidgetItem(server, {text});
  hint->setFlags(Qt::NoItemFlags);
}

}  // namespace

QString serverLabel(const QString& server) {
  return server.isEmpty() ? DatabaseTree::tr("Local") : nameWithoutLabels(server);
}

DatabaseTree::DatabaseTree(QWidget* parent) : QTreeWidget(parent) {
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setExpandsOnDoubleClick(true);
  connect(this, &QTreeWidget::itemExpanded, this, &DatabaseTree::fill);
  connect(this, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* row) {
    if (row->parent()) Q_EMIT databaseChosen();
  });
}

void DatabaseTree::setWorkspace(std::shared_ptr<Workspace> workspace) {
  workspace_ = std::move(workspace);
  refresh();
  if (topLevelItemCount() > 0) {
    topLevelItem(0)->setExpanded(true);
    setCurrentItem(topLevelItem(0));
  }
}

void DatabaseTree::refresh() {
  const std::optional<DatabasePlace> current = currentPlace();
  const QString server = currentServer();
  QStringList unfolded;
  for (int i = 0; i < topLevelItemCount(); ++i)
    if (topLevelItem(i)->isExpanded()) unfolded += topLevelItem(i)->data(0, kServer).toString();
  {
    const QSignalBlocker quiet(this);
    clear();
  }
  addServer({}, unfolded);
  for (const QString& name : workspace_->serverNames()) addServer(name, unfolded);
  QTreeWidgetItem* row = current ? rowOf(*current) : nullptr;
  for (int i = 0; !row && i < topLevelItemCount(); ++i)
    if (topLevelItem(i)->data(0, kServer).toString() == server) row = topLevelItem(i);
  if (row) setCurrentItem(row);
  markOpen(open_);
}

void DatabaseTree::addServer(const QString& server, const QStringList& unfolded) {
  auto* row = new QTreeWidgetItem(this, {serverLabel(server)});
  row->setData(0, kServer, server);
  row->setToolTip(
      0, plainTip(server.isEmpty() ? QDir::toNativeSeparators(workspace_->dataDirectory()) : server));
  row->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
  if (unfolded.contains(server)) row->setExpanded(true);
}

// A server is read when it is unfolded, as there may be many files on it.
void DatabaseTree::fill(QTreeWidgetItem* server) {
  if (server->parent() || server->data(0, kFilled).toBool()) return;
  server->setData(0, kFilled, true);
  const QString name = server->data(0, kServer).toString();
  try {
    for (const QString& path : workspace_->databaseFiles(name)) addFile(server, {name, path});
  } catch (const RuntimeError& error) {
    Q_EMIT listingFailed(error.description());
  }
  if (server->childCount() == 0) addHint(server, tr("No databases here yet"));
}

// A file that nobody can open here is listed all the same: it is there, and whoever looks for it is told what
// to do.
void DatabaseTree::addFile(QTreeWidgetItem* server, const DatabasePlace& place) {
  const QString file = workspace_->absolutePath(place);
  auto* row = new QTreeWidgetItem(server, {place.path});
  row->setData(0, kServer, place.server);
  row->setToolTip(0, plainTip(QDir::toNativeSeparators(file)));
  if (Workspace::looksLikeDatabase(file)) return row->setData(0, kPath, place.path);
  const QString advice =
      tr("%1 is no database that can be opened here. Where it can be opened, export it as DXL "
         "and import that.")
          .arg(QDir::toNativeSeparators(file));
  row->setText(0, tr("%1 (cannot be opened)").arg(place.path));
  row->setForeground(0, palette().brush(QPalette::Disabled, QPalette::Text));
  row->setToolTip(0, plainTip(advice));
  row->setData(0, kAdvice, advice);
}

QTreeWidgetItem* DatabaseTree::rowOf(const DatabasePlace& place) {
  for (int i = 0; i < topLevelItemCount(); ++i) {
    QTreeWidgetItem* server = topLevelItem(i);
    for (int k = 0; k < server->childCount(); ++k)
      if (placeOf(server->child(k)) == place) return server->child(k);
  }
  return nullptr;
}

void DatabaseTree::markOpen(const std::optional<DatabasePlace>& place) {
  const bool moves = place != open_;
  const auto setBold = [this](const std::optional<DatabasePlace>& which, bool bold) {
    QTreeWidgetItem* row = which ? rowOf(*which) : nullptr;
    if (!row) return;
    QFont face = font();
    face.setBold(bold);
    row->setFont(0, face);
  };
  setBold(open_, false);
  open_ = place;
  if (open_)
    for (int i = 0; i < topLevelItemCount(); ++i)
      if (topLevelItem(i)->data(0, kServer).toString() == open_->server) topLevelItem(i)->setExpanded(true);
  setBold(open_, true);
  if (moves && open_)
    if (QTreeWidgetItem* row = rowOf(*open_)) setCurrentItem(row);
}

std::optional<DatabasePlace> DatabaseTree::currentPlace() const {
  return placeOf(currentItem());
}

QString DatabaseTree::currentAdvice() const {
  const QTreeWidgetItem* row = currentItem();
  return row ? row->data(0, kAdvice).toString() : QString();
}

QString DatabaseTree::currentServer() const {
  const QTreeWidgetItem* row = currentItem();
  return row ? row->data(0, kServer).toString() : QString();
}

}  // namespace lens
