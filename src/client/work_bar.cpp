#include "client/work_bar.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHBoxLayout>

#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kSteps = 1000;
constexpr int kYieldEvery = 40;  // milliseconds; more often would slow the export down

}  // namespace

WorkBar::WorkBar(QWidget* parent)
    : QWidget(parent), file_(new QLabel(this)), bar_(new QProgressBar(this)), cancel_(new QPushButton(this)) {
  setObjectName(u"importBar"_s);
  bar_->setObjectName(u"importProgress"_s);
  bar_->setFixedWidth(180);
  bar_->setAccessibleName(tr("Progress of the file"));
  cancel_->setObjectName(u"importCancel"_s);
  cancel_->setText(tr("C&ancel import"));
  file_->setTextFormat(Qt::PlainText);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(file_);
  layout->addWidget(bar_);
  layout->addWidget(cancel_);
  connect(cancel_, &QPushButton::clicked, this, &WorkBar::cancel);
  hide();
}

void WorkBar::cancel() {
  cancelled_ = true;
  cancel_->setEnabled(false);
  Q_EMIT cancelled();
}

void WorkBar::begin(Work work) {
  switch (work) {
    case Work::Import:
      text_ = tr("Importing %1");
      cancel_->setText(tr("C&ancel import"));
      cancel_->setToolTip(tr("Ends the import; the file at hand leaves nothing in the database"));
      break;
    case Work::Export:
      text_ = tr("Exporting to %1");
      cancel_->setText(tr("C&ancel export"));
      cancel_->setToolTip(tr("Ends the export; no file is written"));
      break;
    case Work::Index:
      text_ = tr("Indexing %1");
      cancel_->setText(tr("C&ancel index"));
      cancel_->setToolTip(tr("Ends the work; what is done of the index is kept"));
      break;
    case Work::Read:
      text_ = tr("Reading %1");
      cancel_->setText(tr("C&ancel reading"));
      cancel_->setToolTip(tr("Ends the reading; nothing of it is kept"));
      break;
    case Work::Compare:
      text_ = tr("Comparing with %1");
      cancel_->setText(tr("C&ancel comparison"));
      cancel_->setToolTip(tr("Ends the comparison; what was found until then is listed"));
      break;
    case Work::Preview:
      text_ = tr("Looking into %1");
      cancel_->setText(tr("Stop loo&king"));
      cancel_->setToolTip(tr("Leaves it open what would be replaced"));
      break;
    case Work::Undo:
      text_ = tr("Undoing the import into %1");
      cancel_->setText(tr("C&ancel undo"));
      cancel_->setToolTip(tr("Ends the work; everything stays as it was imported"));
      break;
    case Work::Search:
      text_ = tr("Searching %1");
      cancel_->setText(tr("C&ancel search"));
      cancel_->setToolTip(tr("Ends the search; what was found before stays in the list"));
      break;
    case Work::Copy:
      text_ = tr("Copying %1");
      cancel_->setText(tr("C&ancel copy"));
      cancel_->setToolTip(tr("Ends the copy; no file is written"));
      break;
  }
  work_ = work;
  running_ = true;
  cancelled_ = false;
  cancel_->setEnabled(true);
  file_->clear();
  bar_->setRange(0, kSteps);
  bar_->setValue(0);
  show();
}

void WorkBar::finish() {
  running_ = false;
  hide();
}

void WorkBar::showProgress(const QString& file, qint64 done, qint64 total) {
  file_->setText(text_.arg(QFileInfo(file).fileName()));
  bar_->setRange(0, total > 0 ? kSteps : 0);
  bar_->setValue(total > 0 ? int(kSteps * (double(qBound<qint64>(0, done, total)) / double(total))) : 0);
}

bool ExportWatch::go(const QString& file, qint64 done, qint64 total) {
  if (!bar_) return false;
  if (sinceYield_.isValid() && sinceYield_.elapsed() < kYieldEvery) return !bar_->isCancelled();
  bar_->showProgress(file, done, total);
  QCoreApplication::processEvents();
  sinceYield_.start();
  return bar_ && !bar_->isCancelled();
}

}  // namespace lens
