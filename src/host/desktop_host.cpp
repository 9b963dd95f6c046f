#include "host/desktop_host.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QStandardPaths>
#include <cstdlib>

#ifdef Q_OS_UNIX
#include <signal.h>

#include <QThread>
#endif

#include "controls/pictures.h"
#include "host/console_library.h"
#include "host/desktop_shell.h"
#include "host/paths.h"
#include "host/processes.h"
#include "host/sound.h"
#include "notes/literals.h"

namespace lens {
namespace {

QMessageBox::Icon iconOf(int style) {
  switch (style & 0xF0) {
    case box::Critical:
      return QMessageBox::Critical;
    case box::Exclamation:
      return QMessageBox::Warning;
    case box::Information:
      return QMessageBox::Information;
    default:
      return QMessageBox::NoIcon;
  }
}

QMessageBox::StandardButtons buttonsOf(int style) {
  switch (style & 0x0F) {
    case box::OkCancel:
      return QMessageBox::Ok | QMessageBox::Cancel;
    case box::YesNo:
      return QMessageBox::Yes | QMessageBox::No;
    default:
      return QMessageBox::Ok;
  }
}

int answerOf(int button) {
  switch (button) {
    case QMessageBox::Cancel:
      return answer::Cancel;
    case QMessageBox::Yes:
      return answer::Yes;
    case QMessageBox::No:
      return answer::No;
    default:
      return answer::Ok;
  }
}

bool belongsToClient(const QWidget* window) {
  for (; window; window = window->parentWidget())
    if (window->objectName() == u"ClientWindow") return true;
  return false;
}

Qt::CursorShape shapeOf(int pointerCode) {
  if (pointerCode == pointer::Hourglass) return Qt::WaitCursor;
  return pointerCode == pointer::ArrowHourglass ? Qt::BusyCursor : Qt::ArrowCursor;
}

// The window that stands modally over another one and blocks it; null when there is none.
QWidget* modalWindowOver(const QWidget& window) {
  for (QWidget* other : QApplication::topLevelWidgets())
    if (other->parentWidget() == &window && other->isModal() && other->isVisible()) return other;
  return nullptr;
}

}  // namespace

QString DesktopHost::programTitle() {
  return u"Tessaly Lens"_s;
}

QIcon DesktopHost::programPicture() {
  return pictures::program();
}

// The client window stands for another program and is never blocked.
QWidget* DesktopHost::boxOwner() {
  QWidget* active = QApplication::activeWindow();
  if (active && !belongsToClient(active)) return active;
  QWidget* owner = nullptr;
  for (QWidget* window : QApplication::topLevelWidgets())
    if (window->objectName() == u"Form1") owner = window;
  while (QWidget* above = owner ? modalWindowOver(*owner) : nullptr) owner = above;
  return owner;
}

DesktopHost::DesktopHost() : regional_(QLocale::system()) {}

int DesktopHost::messageBox(const QString& text, int style, const QString& title) {
  QMessageBox box(boxOwner());
  box.setWindowModality(box.parentWidget() ? Qt::WindowModal : Qt::ApplicationModal);
  box.setTextFormat(Qt::PlainText);
  box.setIcon(iconOf(style));
  box.setStandardButtons(buttonsOf(style));
  // Some desktops paint arrows and crosses on them, in a look that is none of ours.
  for (QAbstractButton* button : box.buttons()) button->setIcon(QIcon());
  box.setWindowTitle(title.isEmpty() ? programTitle() : title);
  box.setText(text);
  return answerOf(box.exec());
}

void DesktopHost::yield() {
  QCoreApplication::processEvents();
}

void DesktopHost::setPointer(int code) {
  if (code == pointer::Default) {
    if (pointerSet_) QApplication::restoreOverrideCursor();
    pointerSet_ = false;
    return;
  }
  const QCursor cursor(shapeOf(code));
  if (pointerSet_)
    QApplication::changeOverrideCursor(cursor);
  else
    QApplication::setOverrideCursor(cursor);
  pointerSet_ = true;
}

void DesktopHost::playSound(const QString& path) {
  playSoundFile(path);
}

QString DesktopHost::programDirectory() {
  return QCoreApplication::applicationDirPath();
}

QString DesktopHost::userDirectory() {
  const QString directory = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
  return QDir().mkpath(directory) ? directory : QString();
}

// Windows always says where; elsewhere hardly anybody does.
QString DesktopHost::tempDirectory() {
  const QString named = qEnvironmentVariable("TEMP");
#ifdef Q_OS_WIN
  return named;
#else
  return named.isEmpty() ? QDir::tempPath() : named;
#endif
}

QString DesktopHost::findFile(const QString& path) {
  const QString found = findPath(path);
  return QFileInfo(found).isFile() ? found : QString();
}

QString DesktopHost::joinPath(const QString& directory, const QString& name) {
  return joinedPath(directory, name);
}

void DesktopHost::deleteFile(const QString& path) {
  removeFile(path);
}

int DesktopHost::shellOpen(const QString& path) {
  return openWithDesktop(path);
}

qint64 DesktopHost::openWith(const QString& path) {
  return openWithChosenProgram(boxOwner(), path);
}

void DesktopHost::showProperties(const QString& path) {
  showFileProperties(boxOwner(), path);
}

// Where the dynamic linker has no such call the C library is looked for by its full path.
void DesktopHost::addLibraryDirectory(const QString&) {}

bool DesktopHost::addTrayIcon(const QString& tip, std::function<void(int)> callback) {
  constexpr int kLeftDown = 513, kRightUp = 517;
  if (!QSystemTrayIcon::isSystemTrayAvailable()) return false;
  tray_ = std::make_unique<QSystemTrayIcon>(programPicture());
  tray_->setToolTip(tip);
  QObject::connect(tray_.get(), &QSystemTrayIcon::activated, tray_.get(),
                   [callback](QSystemTrayIcon::ActivationReason reason) {
                     if (reason == QSystemTrayIcon::Context) callback(kRightUp);
                     if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
                       callback(kLeftDown);
                   });
  tray_->show();
  return true;
}

void DesktopHost::removeTrayIcon() {
  // The icon may be the one whose click runs now.
  if (tray_) {
    tray_->hide();
    tray_.release()->deleteLater();
  }
}

void DesktopHost::waitForProcess(qint64 processId) {
#ifdef Q_OS_UNIX
  while (processId > 0 && ::kill(pid_t(processId), 0) == 0) QThread::msleep(50);
#else
  Q_UNUSED(processId);
#endif
}

bool DesktopHost::endProcesses(const QStringList& programs) {
  return endOtherProcesses(programs);
}

RemoteCommand DesktopHost::remoteCommand() {
  return consoleLibraryIn(programDirectory());
}

void DesktopHost::endProcess() {
  std::_Exit(0);
}

}  // namespace lens
