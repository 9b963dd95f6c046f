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
  followColours(window, [this] { giveColours(); });
  statusBar->setAutoFillBackground(true);
  workBar = new WorkBar(&window);
  statusBar->addPermanentWidget(workBar);
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
            : work == WorkBar::Work::Compare
                ? QObject::tr("A comparison is running: wait for its end or cancel it first")
                : QObject::tr("An index is being made: wait for its end or cancel it first"));
  return true;
}

}  // namespace lens
