#include "shell/about.h"

#include <QCloseEvent>

#include "controls/pictures.h"
#include "shell/control_fonts.h"

namespace lens {

About::About(QWidget* owner) : QWidget(owner, Qt::Dialog) {
  setupUi(this);
  setWindowModality(Qt::WindowModal);
  setAttribute(Qt::WA_DeleteOnClose);
  setFixedSize(size());
  setWindowIcon(pictures::program());
  useControlFonts(*this);
  QFont strong = Label0->font();
  strong.setBold(true);
  Label0->setFont(strong);
  Image1->setPixmap(pictures::about(Image1->size()));
}

void About::closeEvent(QCloseEvent* event) {
  unload.fire();
  terminate.fire();
  event->accept();
}

}  // namespace lens
