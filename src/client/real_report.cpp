#include "client/real_report.h"

#include <QDir>
#include <QFileInfo>
#include <QPushButton>

#include "client/client_controls.h"
#include "client/database_controller.h"
#include "client/note_texts.h"
#include "client/report_dialog.h"
#include "host/save_file.h"
#include "notes/literals.h"

namespace lens {

RealReport::RealReport(ClientControls& controls, DatabaseController& databases)
    : controls_(controls), databases_(databases) {
  connect(controls.readingReportAction, &QAction::triggered, this, &RealReport::show);
  connect(&databases, &DatabaseController::pageShown, this, &RealReport::offer);
  offer();
}

// Whoever reads on for hours has to know that not all is there; once is enough.
void RealReport::offer() {
  const std::shared_ptr<Database>& database = databases_.database();
  const std::optional<RealDatabase> real = databases_.real();
  controls_.readingReportAction->setEnabled(real.has_value());
  if (shown_.lock() == database) return;
  shown_ = database;
  if (real && !real->isComplete)
    controls_.showError(tr("%1: %2 of %3 notes read: not all that the file holds can be shown. The reading "
                           "report in the menu File tells what and why")
                            .arg(QFileInfo(real->source).fileName(), QString::number(real->notesRead),
                                 QString::number(real->notesFound)));
}

void RealReport::show() {
  const std::optional<RealDatabase> real = databases_.real();
  if (!real) return;
  auto* dialog = new ReportDialog(realLine(*real), real->reportText, &controls_.window);
  dialog->setWindowTitle(tr("Reading report"));
  QPushButton* save =
      dialog->addButton(tr("&Save..."), tr("Writes the report to a file, as JSON where it is called so"));
  connect(save, &QPushButton::clicked, this, [this, report = *real] { this->save(report); });
  dialog->show();
}

void RealReport::save(const RealDatabase& real) {
  const QString suggestion = tr("%1 report").arg(QFileInfo(real.source).completeBaseName()) + u".txt"_s;
  const QString file = controls_.choice->reportFile(&controls_.window, suggestion);
  if (file.isEmpty()) return;
  const bool isJson = file.endsWith(u".json", Qt::CaseInsensitive);
  const QString native = QDir::toNativeSeparators(file);
  try {
    replaceWhole(file, isJson ? real.reportJson : real.reportText.toUtf8());
    controls_.statusBar->showMessage(tr("The report was written to %1").arg(native));
  } catch (const RuntimeError& error) {
    controls_.showError(tr("%1 was not written: %2").arg(native, error.description()));
  }
}

}  // namespace lens
