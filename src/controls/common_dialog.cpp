#include "controls/common_dialog.h"

#include <QFileDialog>

namespace lens {

CommonDialog::CommonDialog(QWidget* owner) : QObject(owner), owner_(owner) {
  ask = [](QWidget* window) { return QFileDialog::getSaveFileName(window); };
}

void CommonDialog::showSave() {
  fileName_ = ask(owner_);
}

}  // namespace lens
