#include "design/dump_to_file.h"

#include <QCloseEvent>

#include "controls/pictures.h"
#include "notes/literals.h"
#include "shell/control_fonts.h"

namespace lens {

DumpToFile::DumpToFile(QWidget* owner) : QDialog(owner), cmdDialog1(new CommonDialog(this)) {
  setupUi(this);
  setModal(false);
  setAttribute(Qt::WA_DeleteOnClose);
  setFixedSize(size());
  setWindowIcon(pictures::program());
  useControlFonts(*this);
  cmdDialog1->setObjectName(u"cmdDialog1"_s);
  cmdOpenFile->setIcon(pictures::folder());
  cmdOpenFile->setAccessibleName(u"Choose a file"_s);
}

void DumpToFile::closeEvent(QCloseEvent* event) {
  event->accept();
}

}  // namespace lens
