#include "client/client_controls.h"

#include "client/panes.h"
#include "controls/look.h"
#include "controls/pictures.h"

namespace lens {

ClientControls::ClientControls(QMainWindow& owner)
    : window(owner), choice(std::make_unique<DesktopFileChoice>()) {
  setupUi(&window);
  window.setAttribute(Qt::WA_QuitOnClose, false);
  window.setWindowIcon(pictures::program());
  panes->setSizes({260, 820});
  panes->setStretchFactor(1, 1);
  viewPanes->setSizes({190, 630});
  viewPanes->setStretchFactor(1, 1);
  QPalette error = window.palette();
  error.setColor(QPalette::WindowText, QColor(colour::DestructiveText));
  errorText->setPalette(error);
  QPalette foot = window.palette();
  foot.setColor(QPalette::Window, foot.color(QPalette::ToolTipBase));
  foot.setColor(QPalette::WindowText, foot.color(QPalette::ToolTipText));
  statusBar->setPalette(foot);
  statusBar->setAutoFillBackground(true);
  workBar = new WorkBar(&window);
  statusBar->addPermanentWidget(workBar);
  QObject::connect(hideAction, &QAction::triggered, &window, &QWidget::close);
  QObject::connect(errorDismiss, &QPushButton::clicked, errorStrip, [this] { clearError(); });
  clearError();
}

void ClientControls::showError(const QString& text) {
  errorText->setText(text);
  errorStrip->show();
}

void ClientControls::clearError() {
  errorStrip->hide();
  errorText->clear();
}

bool ClientControls::refuseWhileBusy() {
  if (!workBar->isRunning()) return false;
  const WorkBar::Work work = workBar->work();
  showError(work == WorkBar::Work::Import
                ? QObject::tr("An import is running: wait for its end or cancel it first")
            : work == WorkBar::Work::Export
                ? QObject::tr("An export is running: wait for its end or cancel it first")
            : work == WorkBar::Work::Read
                ? QObject::tr("A database is being read: wait for its end or cancel it first")
                : QObject::tr("An index is being made: wait for its end or cancel it first"));
  return true;
}

}  // namespace lens
