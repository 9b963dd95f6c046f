// An icon in the tray, in the system's first form of the record, which every version of it takes.
#pragma once

#include <windows.h>
// Behind the types that it needs.
#include <shellapi.h>

#include <QImage>
#include <functional>

namespace lens {

// Shown as long as it lives. The callback gets the mouse messages that the shell reports.
class TrayIcon {
 public:
  TrayIcon(const QImage& picture, const QString& tip, std::function<void(int)> callback);
  ~TrayIcon();
  TrayIcon(const TrayIcon&) = delete;
  TrayIcon& operator=(const TrayIcon&) = delete;
  // The shell took it; a desktop without a tray does not.
  bool isShown() const { return shown_; }

 private:
  static LRESULT CALLBACK received(HWND window, UINT message, WPARAM word, LPARAM mouseMessage);

  std::function<void(int)> callback_;
  NOTIFYICONDATAA record_ = {};
  bool shown_ = false;
};

}  // namespace lens
