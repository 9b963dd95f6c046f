// The host of a Windows desktop: what DesktopHost does with Qt alone, the system's own calls do here.
#pragma once

#include "host/desktop_host.h"
#include "host/windows/tray_icon.h"
#include "notes/automation/windows/automation_gateway.h"

namespace lens {

class WindowsHost : public DesktopHost {
 public:
  int messageBox(const QString& text, int style, const QString& title) override;
  void playSound(const QString& path) override;
  QString programDirectory() override;
  QString userDirectory() override;
  int shellOpen(const QString& path) override;
  qint64 openWith(const QString& path) override;
  void showProperties(const QString& path) override;
  void addLibraryDirectory(const QString& directory) override;
  bool addTrayIcon(const QString& tip, std::function<void(int)> callback) override;
  void removeTrayIcon() override;
  void waitForProcess(qint64 processId) override;
  bool endProcesses(const QStringList& programs) override;

 private:
  Apartment apartment_;  // for what is asked of the system's own automation servers
  std::unique_ptr<TrayIcon> icon_;
};

}  // namespace lens
