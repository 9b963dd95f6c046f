#include "design/form3.h"

#include <QCloseEvent>

#include "controls/pictures.h"
#include "shell/control_fonts.h"

namespace lens {

Form3::Form3(QWidget* owner) : QDialog(owner) {
  setupUi(this);
  setWindowModality(Qt::WindowModal);
  setFixedSize(size());
  setWindowIcon(pictures::program());
  useControlFonts(*this);
}

void Form3::closeEvent(QCloseEvent* event) {
  unload.fire();
  terminate.fire();
  event->accept();
}

}  // namespace lens
