#include "design/dump_to_file.h"

#include <QCloseEvent>

#include "controls/pictures.h"
#include "shell/control_fonts.h"

namespace lens {

DumpToFile::DumpToFile(QWidget* owner) : QDialog(owner), cmdDialog1(new CommonDialog(this)) {
  setupUi(this);
  setModal(false);
  setAttribute(Qt::WA_DeleteOnClose);
  setFixedSize(size());
  setWindowIcon(pictures::program());
  useControlFonts(*this);
  cmdDialog1->setObjectName(QStringLiteral("cmdDialog1"));
  cmdOpenFile->setIcon(pictures::folder());
  cmdOpenFile->setAccessibleName(QStringLiteral("Choose a file"));
}

void DumpToFile::closeEvent(QCloseEvent* event) {
  event->accept();
}

}  // namespace lens
