#include "host/windows/windows_host.h"

#include <windows.h>
// Behind the types that it needs.
#include <mmsystem.h>

#include <QApplication>
#include <QDir>
#include <QWidget>

#include "host/windows/ended_processes.h"
#include "host/windows/shell_calls.h"
#include "notes/code_page.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr QSize kTrayPicture(32, 32);

const wchar_t* wideText(const QString& text) {
  return reinterpret_cast<const wchar_t*>(text.utf16());
}

}  // namespace

// The codes of boxes and of answers are the system's own.
int WindowsHost::messageBox(const QString& text, int style, const QString& title) {
  const QWidget* const owner = boxOwner();
  const QString name = title.isEmpty() ? programTitle() : title;
  return MessageBoxW(owner ? HWND(owner->winId()) : nullptr, wideText(text), wideText(name), UINT(style));
}

void WindowsHost::playSound(const QString& path) {
  constexpr UINT kNoOtherSound = SND_NODEFAULT;
  sndPlaySoundA(toCodePage(QDir::toNativeSeparators(path)).constData(), kNoOtherSound);
}

QString WindowsHost::programDirectory() {
  return QDir::toNativeSeparators(DesktopHost::programDirectory());
}

QString WindowsHost::userDirectory() {
  return QDir::toNativeSeparators(DesktopHost::userDirectory());
}

int WindowsHost::shellOpen(const QString& path) {
  return shellExecute(path);
}

qint64 WindowsHost::openWith(const QString& path) {
  return shellOpenAs(path);
}

void WindowsHost::showProperties(const QString& path) {
  shellProperties(path);
}

void WindowsHost::addLibraryDirectory(const QString& directory) {
  SetDllDirectoryA(toCodePage(directory).constData());
}

bool WindowsHost::addTrayIcon(const QString& tip, std::function<void(int)> callback) {
  auto icon =
      std::make_unique<TrayIcon>(programPicture().pixmap(kTrayPicture).toImage(), tip, std::move(callback));
  if (!icon->isShown()) return false;
  icon_ = std::move(icon);
  return true;
}

void WindowsHost::removeTrayIcon() {
  icon_.reset();
}

void WindowsHost::waitForProcess(qint64 processId) {
  waitForProcessToEnd(processId);
}

bool WindowsHost::endProcesses(const QStringList& programs) {
  return endManagedProcesses(programs);
}

}  // namespace lens
