#include "app/workspace_choice.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

namespace lens {
namespace {

// Beside the one that cannot be opened.
QString newDirectory(const QString& beside) {
  QFileDialog dialog(nullptr, QObject::tr("Make a new workspace"), QFileInfo(beside).path());
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  dialog.setLabelText(QFileDialog::Accept, QObject::tr("Make"));
  dialog.selectFile(QObject::tr("new workspace"));
  return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

}  // namespace

QString DesktopWorkspaceChoice::another(const QString& directory, const QString& failure) {
  for (;;) {
    QMessageBox box(QMessageBox::Critical, QObject::tr("Workspace"), failure);
    box.setObjectName(QStringLiteral("workspaceChoice"));
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(QObject::tr("The program can work on another workspace."));
    QPushButton* open = box.addButton(QObject::tr("&Open another..."), QMessageBox::ActionRole);
    QPushButton* make = box.addButton(QObject::tr("&Make a new one..."), QMessageBox::ActionRole);
    QPushButton* without = box.addButton(QObject::tr("&Go on without"), QMessageBox::RejectRole);
    box.setDefaultButton(open);
    box.setEscapeButton(without);
    box.exec();
    QString chosen;
    if (box.clickedButton() == open)
      chosen = QFileDialog::getExistingDirectory(nullptr, QObject::tr("Open a workspace"),
                                                 QFileInfo(directory).path());
    else if (box.clickedButton() == make)
      chosen = newDirectory(directory);
    else
      return {};
    if (!chosen.isEmpty()) return chosen;  // else the file dialog was left, and the question stands
  }
}

}  // namespace lens
