#include "client/list_export.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>

#include "client/client_controls.h"
#include "client/database_controller.h"
#include "client/export_file.h"
#include "client/shown_list.h"
#include "client/view_pane.h"
#include "embedded/model/embedded_gateway.h"
#include "notes/eight_digits.h"
#include "notes/literals.h"
#include "notes/objects/notes_session.h"
#include "records/shown_note.h"

namespace lens {
namespace {

// The clipboard holds all of a table at once.
constexpr qsizetype kMostRowsToCopy = 20'000;

// True as soon as a list is not what it was: what was taken down of it is no longer valid.
class ChangeWatch : public QObject {
 public:
  explicit ChangeWatch(const QAbstractItemModel& model) {
    const auto change = [this] { changed_ = true; };
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this, change);
    connect(&model, &QAbstractItemModel::layoutAboutToBeChanged, this, change);
    connect(&model, &QAbstractItemModel::rowsAboutToBeInserted, this, change);
    connect(&model, &QAbstractItemModel::rowsAboutToBeRemoved, this, change);
    connect(&model, &QObject::destroyed, this, change);
  }
  bool hasChanged() const { return changed_; }

 private:
  bool changed_ = false;
};

void writeLine(QIODevice& file, const QByteArray& line) {
  if (file.write(line + '\n') != line.size() + 1) throw RuntimeError(err::PathFileAccess, file.errorString());
}

}  // namespace

ListExport::ListExport(ClientControls& controls, std::shared_ptr<Workspace> workspace,
                       const DatabaseController& databases, const ViewPane& views)
    : controls_(controls), workspace_(std::move(workspace)), databases_(databases), views_(views) {
  QAction* csv =
      add(*controls.fileMenu, controls.exportMarkedAction, u"exportListAction"_s,
          tr("Export li&st as CSV..."), tr("Writes the list that the keyboard is in to a CSV file"));
  connect(csv, &QAction::triggered, this, &ListExport::askCsv);
  QAction* json = add(*controls.fileMenu, csv, u"exportJsonAction"_s, tr("Export documents as &JSON..."),
                      tr("Writes the open document, or the marked ones, with all items to a JSON file"));
  connect(json, &QAction::triggered, this, &ListExport::askJson);
  QAction* copy = add(*controls.documentMenu, controls.selectAllAction, u"copyTableAction"_s,
                      tr("Copy as &table"), tr("Puts the marked rows, or all, on the clipboard as a table"));
  copy->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_C);
  connect(copy, &QAction::triggered, this, [this] {
    if (const QAbstractItemView* list = currentList()) copyTable(*list);
  });
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    auto* list = qobject_cast<QAbstractItemView*>(now);
    if (list && list->window() == &controls_.window) last_ = list;
  });
  connect(&databases, &DatabaseController::pageShown, this,
          [this, json] { json->setEnabled(databases_.place().has_value()); });
}

QAction* ListExport::add(QMenu& menu, QAction* behind, const QString& name, const QString& text,
                         const QString& tip) {
  auto* action = new QAction(text, &controls_.window);
  action->setObjectName(name);
  action->setToolTip(tip);
  const QList<QAction*> all = menu.actions();
  menu.insertAction(all.value(all.indexOf(behind) + 1), action);
  return action;
}

QAbstractItemView* ListExport::currentList() const {
  if (last_ && last_->isVisible()) return last_;
  for (auto* list : controls_.pages->currentWidget()->findChildren<QAbstractItemView*>())
    if (list->isVisible() && list->objectName() != u"viewList") return list;
  return controls_.databaseTree;
}

QString ListExport::suggestion(const QString& suffix) const {
  const QString path = databases_.place() ? databases_.place()->path : QString();
  const QString name = QFileInfo(QDir::fromNativeSeparators(path)).completeBaseName();
  return (name.isEmpty() ? tr("list") : name) + u'.' + suffix;
}

void ListExport::askCsv() {
  const QPointer<QAbstractItemView> list = currentList();
  if (controls_.refuseWhileBusy() || !list) return;
  const QString file = controls_.choice->exportFile(&controls_.window, suggestion(u"csv"_s));
  if (!file.isEmpty() && list) exportCsv(*list, file);
}

void ListExport::askJson() {
  if (controls_.refuseWhileBusy() || !databases_.place()) return;
  const QString file = controls_.choice->exportFile(&controls_.window, suggestion(u"json"_s));
  if (!file.isEmpty()) exportJson(file);
}

// Shows the work while it runs, and what ended it. True when the file is there.
bool ListExport::run(const QString& path, const std::function<bool(QIODevice&)>& write) {
  controls_.clearError();
  controls_.workBar->begin(WorkBar::Work::Export);
  const QPointer<ListExport> self(this);
  QString failure;
  bool finished = false;
  try {
    finished = writeExport(path, write);
  } catch (const RuntimeError& error) {
    failure = error.description();
  }
  if (!self) return false;  // destroyed by what ran meanwhile
  controls_.workBar->finish();
  if (!failure.isEmpty())
    controls_.showError(tr("%1 was not written: %2").arg(QDir::toNativeSeparators(path), failure));
  else if (!finished)
    controls_.statusBar->showMessage(tr("The export was cancelled; no file was written"));
  return finished;
}

void ListExport::exportCsv(QAbstractItemView& list, const QString& path) {
  if (controls_.refuseWhileBusy()) return;
  const ShownList shown(list);
  const ChangeWatch watch(*list.model());
  ExportWatch progress(controls_.workBar);
  qint64 madeSafe = 0;
  const auto goOn = [&](qsizetype done) {
    if (!progress.go(path, done, shown.rowCount())) return false;
    if (watch.hasChanged()) throw RuntimeError(err::PermissionDenied, tr("the list has changed meanwhile"));
    return true;
  };
  if (!run(path, [&](QIODevice& file) { return shown.writeCsv(file, goOn, madeSafe); })) return;
  QString told =
      tr("%n row(s) exported to %1", nullptr, int(shown.rowCount())).arg(QDir::toNativeSeparators(path));
  if (madeSafe > 0)
    told += tr("; %n cell(s) that a spreadsheet would run got an apostrophe", nullptr, int(madeSafe));
  controls_.statusBar->showMessage(told);
}

QVector<NoteId> ListExport::documents() const {
  const NoteId open = workspace_->client().document();
  return open ? QVector<NoteId>{open} : views_.markedDocuments();
}

// Asked through the door that commands ask, so that the lines are the same.
void ListExport::exportJson(const QString& path) {
  if (controls_.refuseWhileBusy() || !databases_.place()) return;
  const QVector<NoteId> ids = documents();
  if (ids.isEmpty()) return controls_.showError(tr("There are no documents to export"));
  const DatabasePlace place = *databases_.place();
  ExportWatch progress(controls_.workBar);
  const bool written = run(path, [&](QIODevice& file) {
    EmbeddedGateway gateway(workspace_);
    const NotesSession session = NotesSession::ofBackEnd(gateway);
    session.initialize();
    const NotesDatabase database = session.database(place.server, place.path);
    for (qsizetype done = 0; done < ids.size(); ++done) {
      if (!progress.go(path, done, ids.size())) return false;
      const QString id = eightDigits(QString::number(ids[done].value(), 16).toUpper());
      const NotesDocument document = database.documentById(id);
      if (!document)
        throw RuntimeError(enginefault::UnknownNote, tr("note %1 was deleted or cannot be read").arg(id));
      writeLine(file, jsonOf(document));
    }
    return true;
  });
  if (written)
    controls_.statusBar->showMessage(
        tr("%n document(s) exported to %1", nullptr, int(ids.size())).arg(QDir::toNativeSeparators(path)));
}

void ListExport::copyTable(const QAbstractItemView& list) {
  controls_.clearError();
  const ShownList marked(list, true);
  const ShownList shown = marked.rowCount() > 0 ? marked : ShownList(list, false);
  if (shown.rowCount() > kMostRowsToCopy)
    return controls_.showError(
        tr("These are %1 rows: mark some of them, or export the list as CSV").arg(shown.rowCount()));
  QApplication::clipboard()->setMimeData(shown.table().release());
  controls_.statusBar->showMessage(tr("%n row(s) copied", nullptr, int(shown.rowCount())));
}

}  // namespace lens
