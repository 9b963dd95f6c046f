#include "shell/owned_window.h"

#include <QCloseEvent>

#include "controls/pictures.h"

namespace lens {

OwnedWindow::OwnedWindow(QWidget* owner) : QDialog(owner) {
  setWindowModality(Qt::WindowModal);
  setWindowIcon(pictures::program());
}

void OwnedWindow::closeEvent(QCloseEvent* event) {
  unload.fire();
  terminate.fire();
  event->accept();
}

}  // namespace lens
