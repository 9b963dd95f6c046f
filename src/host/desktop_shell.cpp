#include "host/desktop_shell.h"

#include <QDateTime>
#include <QDesktopServices>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QMimeDatabase>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#include "host/held_file.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kNoSuchFile = 2, kNoSuchDirectory = 3, kNoAssociation = 31, kStarted = 33;

QString permissionsOf(const QFileInfo& file) {
  QStringList may;
  if (file.isReadable()) may += u"read"_s;
  if (file.isWritable()) may += u"write"_s;
  if (file.isExecutable()) may += u"run"_s;
  return may.isEmpty() ? u"none"_s : may.join(u", "_s);
}

QString sizeOf(const QFileInfo& file) {
  return u"%1 bytes"_s.arg(QLocale().toString(file.size()));
}

// Whether the desktop has a program for files of this kind. Starting its opener succeeds even where there is
// none. A desktop that cannot be asked is taken at its word.
bool hasProgram(const QFileInfo& file) {
  // To look into a file that the program itself has open would end its locks.
  const bool held = HeldFile::isHeld(FileIdentity::of(file.filePath()));
  const auto way = held ? QMimeDatabase::MatchExtension : QMimeDatabase::MatchDefault;
  const QString asking = QStandardPaths::findExecutable(u"xdg-mime"_s);
  if (asking.isEmpty()) return true;
  QProcess process;
  process.start(asking, {u"query"_s, u"default"_s, QMimeDatabase().mimeTypeForFile(file, way).name()});
  if (!process.waitForFinished(3000) || process.exitCode() != 0) return true;
  return !process.readAllStandardOutput().trimmed().isEmpty();
}

}  // namespace

int openWithDesktop(const QString& path) {
  const QFileInfo file(path);
  if (!file.absoluteDir().exists()) return kNoSuchDirectory;
  if (!file.exists()) return kNoSuchFile;
  if (!hasProgram(file)) return kNoAssociation;
  return QDesktopServices::openUrl(QUrl::fromLocalFile(file.absoluteFilePath())) ? kStarted : kNoAssociation;
}

qint64 openWithChosenProgram(QWidget* owner, const QString& path) {
  const QString program = QFileDialog::getOpenFileName(
      owner, u"Choose a program to open %1"_s.arg(QFileInfo(path).fileName()), u"/usr/bin"_s);
  if (program.isEmpty()) return 0;
  qint64 processId = 0;
  return QProcess::startDetached(program, {path}, QFileInfo(path).absolutePath(), &processId) ? processId : 0;
}

void showFileProperties(QWidget* owner, const QString& path) {
  const QFileInfo file(path);
  auto* window = new QDialog(owner);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->setObjectName(u"FileProperties"_s);
  window->setWindowTitle(u"Properties of %1"_s.arg(file.fileName()));
  auto* rows = new QFormLayout(window);
  const auto add = [&](const QString& name, const QString& value) {
    auto* label = new QLabel(value, window);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    rows->addRow(name, label);
  };
  add(u"Path:"_s, QDir::toNativeSeparators(file.absoluteFilePath()));
  add(u"Kind:"_s, file.isDir() ? u"directory"_s : u"file"_s);
  if (!file.isDir()) add(u"Size:"_s, sizeOf(file));
  add(u"Changed:"_s, QLocale().toString(file.lastModified(), QLocale::ShortFormat));
  add(u"Owner:"_s, file.owner());
  add(u"You may:"_s, permissionsOf(file));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, window);
  QObject::connect(buttons, &QDialogButtonBox::rejected, window, &QDialog::close);
  rows->addRow(buttons);
  window->show();
}

}  // namespace lens
