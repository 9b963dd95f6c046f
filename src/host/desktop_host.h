// The host of a real desktop, on Qt.
#pragma once

#include <QSystemTrayIcon>
#include <memory>

#include "host/escape_watch.h"
#include "host/host.h"

namespace lens {

class DesktopHost : public Host {
 public:
  DesktopHost();

  int messageBox(const QString& text, int style, const QString& title) override;
  void yield() override;
  bool escapePressed() override { return escape_.pressed(); }
  void setPointer(int code) override;
  void playSound(const QString& path) override;
  QDateTime now() override { return QDateTime::currentDateTime(); }
  const Regional& regional() override { return regional_; }
  QString programDirectory() override;
  QString userDirectory() override;
  QString tempDirectory() override;
  QString findFile(const QString& path) override;
  QString joinPath(const QString& directory, const QString& name) override;
  void deleteFile(const QString& path) override;
  int shellOpen(const QString& path) override;
  qint64 openWith(const QString& path) override;
  void showProperties(const QString& path) override;
  void addLibraryDirectory(const QString& directory) override;
  bool addTrayIcon(const QString& tip, std::function<void(int)> callback) override;
  void removeTrayIcon() override;
  void waitForProcess(qint64 processId) override;
  bool endProcesses(const QStringList& programs) override;
  RemoteCommand remoteCommand() override;
  [[noreturn]] void endProcess() override;

 protected:
  // The title of a box that has none of its own.
  static QString programTitle();
  // The program's own picture, for the tray.
  static QIcon programPicture();
  // The tool's own window on top, which a box belongs to; null when there is none.
  static QWidget* boxOwner();

 private:
  Regional regional_;
  bool pointerSet_ = false;
  EscapeWatch escape_;
  std::unique_ptr<QSystemTrayIcon> tray_;
};

}  // namespace lens
