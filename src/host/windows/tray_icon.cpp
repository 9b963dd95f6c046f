#include "host/windows/tray_icon.h"

#include "notes/code_page.h"

namespace lens {
namespace {

constexpr wchar_t kWindowClass[] = L"TessalyLensTray";
constexpr UINT kIconId = 1;
// The shell's notifications arrive as mouse moves over a window that is never shown.
constexpr UINT kCallbackMessage = WM_MOUSEMOVE;
#ifndef _WIN64
static_assert(NOTIFYICONDATAA_V1_SIZE == 88);
#endif

}  // namespace

TrayIcon::TrayIcon(const QImage& picture, const QString& tip, std::function<void(int)> callback)
    : callback_(std::move(callback)) {
  const HINSTANCE program = GetModuleHandleW(nullptr);
  WNDCLASSW kind = {};
  kind.lpfnWndProc = &TrayIcon::received;
  kind.hInstance = program;
  kind.lpszClassName = kWindowClass;
  RegisterClassW(&kind);  // a second time it is there already
  record_.cbSize = NOTIFYICONDATAA_V1_SIZE;
  record_.hWnd = CreateWindowExW(0, kWindowClass, L"", 0, 0, 0, 0, 0, nullptr, nullptr, program, nullptr);
  record_.uID = kIconId;
  record_.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
  record_.uCallbackMessage = kCallbackMessage;
  record_.hIcon = picture.toHICON();
  const QByteArray text = toCodePage(tip).left(63);
  std::copy(text.begin(), text.end(), record_.szTip);
  SetWindowLongPtrW(record_.hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  shown_ = Shell_NotifyIconA(NIM_ADD, &record_);
}

TrayIcon::~TrayIcon() {
  if (shown_) Shell_NotifyIconA(NIM_DELETE, &record_);
  DestroyWindow(record_.hWnd);
  DestroyIcon(record_.hIcon);
}

LRESULT CALLBACK TrayIcon::received(HWND window, UINT message, WPARAM word, LPARAM mouseMessage) {
  const auto* const icon = reinterpret_cast<const TrayIcon*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (!icon || message != kCallbackMessage || word != kIconId)
    return DefWindowProcW(window, message, word, mouseMessage);
  // A copy: the icon may go while its callback runs.
  const std::function<void(int)> callback = icon->callback_;
  callback(int(mouseMessage));
  return 0;
}

}  // namespace lens
