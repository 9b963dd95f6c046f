#include "controls/common_dialog.h"

#include <QFileDialog>

namespace lens {
namespace {

// Blocks the windows of this tool only. Whoever writes the file replaces an old one without a question.
QString fileToWrite(QWidget* owner) {
  QFileDialog dialog(owner);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  dialog.setWindowModality(Qt::WindowModal);
  return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

}  // namespace

CommonDialog::CommonDialog(QWidget* owner) : QObject(owner), ask(fileToWrite), owner_(owner) {}

void CommonDialog::showSave() {
  fileName_ = ask(owner_);
}

}  // namespace lens
