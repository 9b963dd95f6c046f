#include "design/form2.h"

#include <QCloseEvent>

#include "controls/pictures.h"
#include "shell/control_fonts.h"

namespace lens {

Form2::Form2(QWidget* owner) : QDialog(owner) {
  setupUi(this);
  setWindowModality(Qt::WindowModal);
  setFixedSize(size());
  setWindowIcon(pictures::program());
  useControlFonts(*this);
}

void Form2::closeEvent(QCloseEvent* event) {
  unload.fire();
  terminate.fire();
  event->accept();
}

}  // namespace lens
