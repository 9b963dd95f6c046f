#include "client/import_undo.h"

#include <QFile>
#include <QPointer>

#include "client/background_task.h"
#include "client/client_controls.h"
#include "client/database_controller.h"
#include "client/note_texts.h"
#include "embedded/store/change_record.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr qsizetype kMostTold = 200;  // notes that a report names one by one

struct UndoRun {
  TakenBack result;
  QString failure;
};

UndoRun runUndo(const QString& databasePath, const QString& record, const QStringList& earlier,
                WorkBar* bar) {
  UndoRun run;
  run.failure = runOnDatabase(bar, databasePath, [&](Database& database, TaskProgress& progress) {
    const auto go = [&](qint64 done, qint64 total) { return progress.go(databasePath, done, total); };
    run.result = takeBack(database, record, go, earlier);
  });
  return run;
}

QString reasonText(LeftNote::Reason reason) {
  switch (reason) {
    case LeftNote::Reason::Changed:
      return QObject::tr("somebody has changed it since");
    case LeftNote::Reason::Deleted:
      return QObject::tr("somebody has deleted it since");
    case LeftNote::Reason::Displaced:
      return QObject::tr("another note has its place by now");
    case LeftNote::Reason::WithoutFile:
      return QObject::tr("its attachment is no longer in the database");
    case LeftNote::Reason::Damaged:
      break;
  }
  return QObject::tr("as it was before it was damaged");
}

QString leftText(const Database& database, const Regional& regional, const LeftNote& left) {
  QString subject;
  try {
    Note note;
    if (database.notes().read(left.id, note)) subject = textsOf(note, regional).subject;
  } catch (const RuntimeError&) {
    // It is named by its ID.
  }
  const QString name = subject.isEmpty() ? QObject::tr("Note ID %1").arg(noteIdText(left.id))
                                         : QObject::tr("%1 (Note ID %2)").arg(subject, noteIdText(left.id));
  return u"  %1: %2\n"_s.arg(name, reasonText(left.reason));
}

QString undoReport(const Database& database, const Regional& regional, const TakenBack& result) {
  QString text = QObject::tr("%1 notes removed that the import had brought, %2 put back as they were.")
                     .arg(result.removed)
                     .arg(result.restored);
  if (result.left.isEmpty()) return text;
  text += u"\n\n"_s + QObject::tr("Left as they are now: %1").arg(result.left.size()) + u'\n';
  for (const LeftNote& left : result.left.first(qMin(kMostTold, result.left.size())))
    text += leftText(database, regional, left);
  if (result.left.size() > kMostTold)
    text += QObject::tr("  and %1 more").arg(result.left.size() - kMostTold) + u'\n';
  return text;
}

}  // namespace

ImportUndo::ImportUndo(ClientControls& controls, const Regional& regional, DatabaseController& databases)
    : controls_(controls), regional_(regional), databases_(databases) {
  connect(controls.undoImportAction, &QAction::triggered, this, &ImportUndo::undo);
  connect(&databases, &DatabaseController::pageShown, this, [this] {
    if (databases_.place() != place_) forget();
  });
  offer();
}

ImportUndo::~ImportUndo() = default;

QString ImportUndo::newRecord() {
  if (!directory_ || !directory_->isValid()) directory_ = std::make_unique<QTemporaryDir>();
  return directory_->isValid() ? directory_->filePath(QString::number(++records_)) : QString();
}

void ImportUndo::add(const QString& record, const DatabasePlace& place, const QString& what) {
  if (databases_.place() != place) {
    QFile::remove(record);
    return;
  }
  place_ = place;
  imports_.push_back({record, what});
  offer();
}

void ImportUndo::forget() {
  for (const Import& import : imports_) QFile::remove(import.record);
  imports_.clear();
  place_.reset();
  offer();
}

void ImportUndo::offer() {
  controls_.undoImportAction->setEnabled(!imports_.empty());
  QString name = imports_.empty() ? QString() : imports_.back().what;
  controls_.undoImportAction->setText(
      imports_.empty() ? tr("Undo impor&t") : tr("Undo impor&t of %1").arg(name.replace(u'&', u"&&"_s)));
}

void ImportUndo::undo() {
  if (imports_.empty() || controls_.refuseWhileBusy()) return;
  const Import import = imports_.back();
  QStringList earlier;
  for (const Import& other : imports_) earlier += other.record;
  earlier.removeLast();
  const std::shared_ptr<Database> database = databases_.database();  // the user may open another meanwhile
  const DatabasePlace place = *place_;
  controls_.clearError();
  try {
    database->requireOwnFile();
  } catch (const RuntimeError& error) {
    return controls_.showError(error.description());
  }
  controls_.workBar->begin(WorkBar::Work::Undo);
  const QPointer<ImportUndo> self(this);
  const UndoRun run = runUndo(database->path(), import.record, earlier, controls_.workBar);
  if (!self) return;  // destroyed by what ran meanwhile
  controls_.workBar->finish();
  if (!run.failure.isEmpty()) return controls_.showError(run.failure);
  if (run.result.cancelled) return controls_.showError(tr("Cancelled: everything is as it was imported"));
  QFile::remove(import.record);
  if (place_ == place && !imports_.empty() && imports_.back().record == import.record) imports_.pop_back();
  offer();
  if (databases_.place() == place) databases_.refresh();
  controls_.showResult(
      tr("Import undone"),
      tr("The import of %1 into %2 on %3 was undone").arg(import.what, place.path, serverLabel(place.server)),
      undoReport(*database, regional_, run.result));
}

}  // namespace lens
