#include "client/import_dialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QPointer>
#include <QTimer>
#include <QVBoxLayout>

#include "client/background_task.h"
#include "client/document_model.h"
#include "client/import_run.h"
#include "client/panes.h"
#include "notes/literals.h"

namespace lens {
namespace {

QString describedPaths(const QStringList& paths) {
  const QString first = QDir::toNativeSeparators(paths.value(0));
  if (paths.size() == 1)
    return QFileInfo(first).isDir() ? QObject::tr("All DXL files of the folder %1").arg(first) : first;
  return QObject::tr("%1 and %n other(s)", nullptr, int(paths.size()) - 1).arg(first);
}

QLabel* plainLabel(const QString& text, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

}  // namespace

ImportDialog::ImportDialog(const ImportOffer& offer, QWidget* parent)
    : QDialog(parent),
      offer_(offer),
      intoOpen_(new QRadioButton(tr("Into the &open database"), this)),
      intoNew_(new QRadioButton(tr("Into a &new database on %1:").arg(offer.serverName), this)),
      newPath_(new QLineEdit(offer.newPath, this)),
      listLabel_(new QLabel(this)),
      list_(new QTableView(this)),
      replaced_(new DocumentModel(*offer.regional, this)),
      bar_(new WorkBar(this)),
      import_(nullptr) {
  setObjectName(u"importDialog"_s);
  setWindowTitle(tr("Import DXL"));
  resize(620, 420);
  intoOpen_->setObjectName(u"importIntoOpen"_s);
  intoNew_->setObjectName(u"importIntoNew"_s);
  newPath_->setObjectName(u"importNewPath"_s);
  newPath_->setAccessibleName(tr("File name of the new database, folders included"));
  list_->setObjectName(u"importReplaced"_s);
  listLabel_->setObjectName(u"importReplacedLabel"_s);
  layOut();
  const bool openTakes = offer.open && offer.whyNotOpen.isEmpty();
  intoOpen_->setEnabled(openTakes);
  if (offer.open) intoOpen_->setText(tr("Into the &open database %1").arg(offer.openName));
  (openTakes && !offer.preferNew ? intoOpen_ : intoNew_)->setChecked(true);
  connect(intoOpen_, &QRadioButton::toggled, this, &ImportDialog::showTarget);
  connect(newPath_, &QLineEdit::textChanged, this, &ImportDialog::showTarget);
  showTarget();
}

void ImportDialog::layOut() {
  prepareTable(*list_);
  list_->setModel(replaced_);
  list_->setAccessibleName(tr("Notes that would be replaced"));
  const QVector<int> widths = replaced_->columnWidths();
  for (int column = 0; column < widths.size(); ++column) {
    if (widths[column] == 0)
      list_->horizontalHeader()->setSectionResizeMode(column, QHeaderView::Stretch);
    else
      list_->setColumnWidth(column, (widths[column] + 2) * list_->fontMetrics().averageCharWidth());
  }
  listLabel_->setBuddy(list_);
  listLabel_->setWordWrap(true);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
  import_ = buttons->addButton(tr("&Import"), QDialogButtonBox::AcceptRole);
  import_->setObjectName(u"importStart"_s);
  import_->setDefault(true);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(plainLabel(describedPaths(offer_.paths), this));
  layout->addWidget(intoOpen_);
  if (!offer_.whyNotOpen.isEmpty()) layout->addWidget(plainLabel(offer_.whyNotOpen, this));
  layout->addWidget(intoNew_);
  layout->addWidget(newPath_);
  layout->addWidget(listLabel_);
  layout->addWidget(list_, 1);
  layout->addWidget(bar_);
  layout->addWidget(plainLabel(tr("An import can be undone until its database is closed."), this));
  layout->addWidget(buttons);
}

ImportTarget ImportDialog::target() const {
  if (intoOpen_->isChecked()) return {ImportTarget::Kind::Open, {}};
  return {ImportTarget::Kind::New, newPath_->text().trimmed()};
}

// Nothing is replaced before it was listed, or the user did not want to wait for the list.
void ImportDialog::showTarget() {
  const bool open = intoOpen_->isChecked();
  newPath_->setEnabled(!open);
  list_->setEnabled(open);
  import_->setEnabled(open ? looked_ : !newPath_->text().trimmed().isEmpty());
  if (!open) {
    listLabel_->setText(tr("Nothing is replaced in a new database"));
    if (bar_->isRunning()) bar_->cancel();
    replaced_->show(nullptr, {});
  } else if (!bar_->isRunning()) {
    looked_ = false;
    import_->setEnabled(false);
    QTimer::singleShot(0, this, &ImportDialog::look);
  }
}

void ImportDialog::look() {
  if (!intoOpen_->isChecked() || bar_->isRunning() || looked_ || !isVisible()) return;
  listLabel_->setText(tr("Looking which notes would be replaced..."));
  bar_->begin(WorkBar::Work::Preview);
  const QPointer<ImportDialog> self(this);
  const PreviewRun run = runPreview(offer_.open->path(), offer_.paths, bar_);
  if (!self) return;  // destroyed by what ran meanwhile
  bar_->finish();
  if (!isVisible() || !intoOpen_->isChecked()) return;
  looked_ = true;
  import_->setEnabled(true);
  if (!run.failure.isEmpty())
    return listLabel_->setText(tr("What would be replaced cannot be told: %1").arg(run.failure));
  if (run.preview.cancelled)
    return listLabel_->setText(
        tr("Notes of the same universal ID will be replaced; nobody has looked which"));
  showReplaced(run.preview.replaced);
}

void ImportDialog::showReplaced(const QVector<NoteId>& noteIds) {
  replaced_->show(offer_.open, noteIds);
  listLabel_->setText(noteIds.isEmpty() ? tr("No note of the open database would be replaced")
                                        : tr("%n note(s) of the open database would be &replaced:", nullptr,
                                             int(noteIds.size())));
}

void ImportDialog::done(int result) {
  if (bar_->isRunning()) bar_->cancel();
  QDialog::done(result);
}

}  // namespace lens
