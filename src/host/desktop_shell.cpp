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

namespace lens {
namespace {

constexpr int kNoSuchFile = 2, kNoSuchDirectory = 3, kNoAssociation = 31, kStarted = 33;

QString permissionsOf(const QFileInfo& file) {
  QStringList may;
  if (file.isReadable()) may += QStringLiteral("read");
  if (file.isWritable()) may += QStringLiteral("write");
  if (file.isExecutable()) may += QStringLiteral("run");
  return may.isEmpty() ? QStringLiteral("none") : may.join(QStringLiteral(", "));
}

QString sizeOf(const QFileInfo& file) {
  return QStringLiteral("%1 bytes").arg(QLocale().toString(file.size()));
}

// Whether the desktop has a program for files of this kind. Starting its opener succeeds even where there is
// none. A desktop that cannot be asked is taken at its word.
bool hasProgram(const QFileInfo& file) {
  const QString asking = QStandardPaths::findExecutable(QStringLiteral("xdg-mime"));
  if (asking.isEmpty()) return true;
  QProcess process;
  process.start(asking, {QStringLiteral("query"), QStringLiteral("default"),
                         QMimeDatabase().mimeTypeForFile(file).name()});
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
      owner, QStringLiteral("Choose a program to open %1").arg(QFileInfo(path).fileName()),
      QStringLiteral("/usr/bin"));
  if (program.isEmpty()) return 0;
  qint64 processId = 0;
  return QProcess::startDetached(program, {path}, QFileInfo(path).absolutePath(), &processId) ? processId : 0;
}

void showFileProperties(QWidget* owner, const QString& path) {
  const QFileInfo file(path);
  auto* window = new QDialog(owner);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->setObjectName(QStringLiteral("FileProperties"));
  window->setWindowTitle(QStringLiteral("Properties of %1").arg(file.fileName()));
  auto* rows = new QFormLayout(window);
  const auto add = [&](const QString& name, const QString& value) {
    auto* label = new QLabel(value, window);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    rows->addRow(name, label);
  };
  add(QStringLiteral("Path:"), QDir::toNativeSeparators(file.absoluteFilePath()));
  add(QStringLiteral("Kind:"), file.isDir() ? QStringLiteral("directory") : QStringLiteral("file"));
  if (!file.isDir()) add(QStringLiteral("Size:"), sizeOf(file));
  add(QStringLiteral("Changed:"), QLocale().toString(file.lastModified(), QLocale::ShortFormat));
  add(QStringLiteral("Owner:"), file.owner());
  add(QStringLiteral("You may:"), permissionsOf(file));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, window);
  QObject::connect(buttons, &QDialogButtonBox::rejected, window, &QDialog::close);
  rows->addRow(buttons);
  window->show();
}

}  // namespace lens
