#include "client/client_controls.h"

#include "client/panes.h"
#include "client/report_dialog.h"
#include "controls/look.h"
#include "controls/pictures.h"

namespace lens {
namespace {

QString busyText(WorkBar::Work work) {
  switch (work) {
    case WorkBar::Work::Import:
      return QObject::tr("An import is running: wait for its end or cancel it first");
    case WorkBar::Work::Export:
      return QObject::tr("An export is running: wait for its end or cancel it first");
    case WorkBar::Work::Index:
      return QObject::tr("An index is being made: wait for its end or cancel it first");
    case WorkBar::Work::Read:
      return QObject::tr("A database is being read: wait for its end or cancel it first");
    case WorkBar::Work::Compare:
      return QObject::tr("A comparison is running: wait for its end or cancel it first");
    case WorkBar::Work::Undo:
      return QObject::tr("An import is being undone: wait for its end or cancel it first");
    case WorkBar::Work::Copy:
      return QObject::tr("A database is being copied: wait for its end or cancel it first");
    case WorkBar::Work::Search:
      return QObject::tr("A search is running: wait for its end or cancel it first");
    case WorkBar::Work::Preview:
      break;
  }
  return QObject::tr("Files are being looked into: wait for the end of that");
}

// A menu has a tip for the status bar even where it has none: the bar would be empty behind every menu.
class StatusKeeper : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject*, QEvent* event) override { return event->type() == QEvent::StatusTip; }
};

}  // namespace

ClientControls::ClientControls(QMainWindow& owner)
    : window(owner), choice(std::make_unique<DesktopFileChoice>()) {
  setupUi(&window);
  window.setAttribute(Qt::WA_QuitOnClose, false);
  window.setWindowIcon(pictures::program());
  panes->setSizes({260, 820});
  panes->setStretchFactor(1, 1);
  viewPanes->setSizes({190, 630});
  viewPanes->setStretchFactor(1, 1);
  followColours(window, [this] { giveColours(); });
  statusBar->setAutoFillBackground(true);
  workBar = new WorkBar(&window);
  statusBar->addPermanentWidget(workBar);
  window.installEventFilter(new StatusKeeper(&window));
  QObject::connect(hideAction, &QAction::triggered, &window, &QWidget::close);
  QObject::connect(errorDismiss, &QPushButton::clicked, errorStrip, [this] { clearError(); });
  clearError();
}

void ClientControls::giveColours() {
  const QPalette all = QApplication::palette();
  QPalette error;
  error.setColor(QPalette::WindowText, colour::destructiveText(all));
  errorText->setPalette(error);
  QPalette foot;
  foot.setColor(QPalette::Window, all.color(QPalette::ToolTipBase));
  foot.setColor(QPalette::WindowText, all.color(QPalette::ToolTipText));
  statusBar->setPalette(foot);
}

void ClientControls::showError(const QString& text) {
  errorText->setForegroundRole(QPalette::WindowText);
  errorText->setText(text);
  errorStrip->show();
}

void ClientControls::showResult(const QString& windowTitle, const QString& heading, const QString& text) {
  const QString told = text.trimmed();
  if (told.contains(u'\n')) {
    auto* dialog = new ReportDialog(heading, told, &window);
    dialog->setWindowTitle(windowTitle);
    dialog->setAttribute(Qt::WA_ShowWithoutActivating);
    return dialog->show();
  }
  // Not in the colour of failures.
  errorText->setForegroundRole(QPalette::ButtonText);
  errorText->setText(QObject::tr("%1: %2").arg(heading, told));
  errorStrip->show();
}

void ClientControls::clearError() {
  errorStrip->hide();
  errorText->clear();
}

bool ClientControls::refuseWhileBusy() {
  if (!workBar->isRunning()) return false;
  showError(busyText(workBar->work()));
  return true;
}

}  // namespace lens
