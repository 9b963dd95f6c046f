#include "client/file_choice.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

#include "client/import_dialog.h"
#include "notes/literals.h"

namespace lens {
namespace {

QStringList chosen(QFileDialog& dialog) {
  dialog.setWindowModality(Qt::WindowModal);
  return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles() : QStringList();
}

const QString kImport = u"import"_s, kDatabase = u"database"_s, kExport = u"export"_s;

QString keyOf(const QString& purpose) {
  return u"folders/"_s + purpose;
}

QString askedName(QWidget* owner, const QString& title, const QString& caption, const QString& suggestion) {
  QInputDialog dialog(owner);
  dialog.setWindowModality(Qt::WindowModal);
  dialog.setWindowTitle(title);
  dialog.setLabelText(caption);
  dialog.setTextValue(suggestion);
  return dialog.exec() == QDialog::Accepted ? dialog.textValue().trimmed() : QString();
}

}  // namespace

QString FileChoice::folderOf(const QString& purpose) const {
  const QString kept = settings_ ? settings_->value(keyOf(purpose)).toString() : QString();
  return folders_.value(purpose, kept);
}

void FileChoice::keepFolder(const QString& purpose, const QString& folder) {
  folders_.insert(purpose, folder);
  if (settings_) settings_->set(keyOf(purpose), folder);
}

QStringList DesktopFileChoice::dxlFiles(QWidget* owner) {
  QFileDialog dialog(owner, QObject::tr("Import DXL"), folderOf(kImport),
                     QObject::tr("DXL files (*.dxl *.xml);;All files (*)"));
  dialog.setFileMode(QFileDialog::ExistingFiles);
  const QStringList files = chosen(dialog);
  if (!files.isEmpty()) keepFolder(kImport, QFileInfo(files.first()).path());
  return files;
}

QString DesktopFileChoice::databaseFile(QWidget* owner) {
  QFileDialog dialog(owner, QObject::tr("Open database file"), folderOf(kDatabase),
                     QObject::tr("Databases (*.nsf *.ntf *.NSF *.NTF);;All files (*)"));
  dialog.setFileMode(QFileDialog::ExistingFile);
  const QString file = chosen(dialog).value(0);
  if (!file.isEmpty()) keepFolder(kDatabase, QFileInfo(file).path());
  return file;
}

QString DesktopFileChoice::folder(QWidget* owner) {
  QFileDialog dialog(owner, QObject::tr("Import all DXL files of a folder"), folderOf(kImport));
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  const QString folder = chosen(dialog).value(0);
  if (!folder.isEmpty()) keepFolder(kImport, folder);
  return folder;
}

QString DesktopFileChoice::exportFile(QWidget* owner, const QString& suggestion) {
  const QString kind = QFileInfo(suggestion).suffix();
  QFileDialog dialog(owner, QObject::tr("Export %1").arg(kind.toUpper()), folderOf(kExport),
                     QObject::tr("%1 files (*.%2)").arg(kind.toUpper(), kind));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(kind);
  dialog.selectFile(suggestion);
  const QString file = chosen(dialog).value(0);
  if (!file.isEmpty()) keepFolder(kExport, QFileInfo(file).path());
  return file;
}

QString DesktopFileChoice::reportFile(QWidget* owner, const QString& suggestion) {
  QFileDialog dialog(owner, QObject::tr("Save report"), folderOf(kExport),
                     QObject::tr("Text (*.txt);;JSON (*.json)"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(u"txt"_s);
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString& filter) {
    dialog.setDefaultSuffix(filter.contains(u"json") ? u"json"_s : u"txt"_s);
  });
  dialog.selectFile(suggestion);
  const QString file = chosen(dialog).value(0);
  if (!file.isEmpty()) keepFolder(kExport, QFileInfo(file).path());
  return file;
}

QString DesktopFileChoice::databaseName(QWidget* owner, const QString& where) {
  return askedName(owner, QObject::tr("New database"),
                   QObject::tr("File name on %1, folders included:").arg(where),
                   QObject::tr("new") + u".nsf"_s);
}

QString DesktopFileChoice::otherDatabaseName(QWidget* owner, const QString& caption,
                                             const QString& suggestion) {
  return askedName(owner, caption, QObject::tr("New file name, folders included:"), suggestion);
}

ImportTarget DesktopFileChoice::importTarget(QWidget* owner, const ImportOffer& offer) {
  ImportDialog dialog(offer, owner);
  dialog.setWindowModality(Qt::WindowModal);
  return dialog.exec() == QDialog::Accepted ? dialog.target() : ImportTarget();
}

bool DesktopFileChoice::confirm(QWidget* owner, const QString& question, const QString& action) {
  QMessageBox box(QMessageBox::Warning, QObject::tr("Client"), question, QMessageBox::Cancel, owner);
  box.setWindowModality(Qt::WindowModal);
  box.setTextFormat(Qt::PlainText);
  const QPushButton* const yes = box.addButton(action, QMessageBox::AcceptRole);
  box.setDefaultButton(QMessageBox::Cancel);
  box.exec();
  return box.clickedButton() == yes;
}

}  // namespace lens
