#include "host/windows/shell_calls.h"

#include <windows.h>
// Behind the types that it needs.
#include <shellapi.h>

#include <QDir>
#include <string>

namespace lens {
namespace {

std::wstring nativeText(const QString& path) {
  return QDir::toNativeSeparators(path).toStdWString();
}

}  // namespace

int shellExecute(const QString& path) {
  const HINSTANCE code =
      ShellExecuteW(nullptr, L"open", nativeText(path).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
  return int(reinterpret_cast<INT_PTR>(code));
}

qint64 shellOpenAs(const QString& path) {
  std::wstring line = L"rundll32.exe shell32.dll,OpenAs_RunDLL " + nativeText(path);
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESHOWWINDOW;
  start.wShowWindow = SW_HIDE;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process))
    return 0;
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return process.dwProcessId;
}

void shellProperties(const QString& path) {
  const std::wstring file = nativeText(path);
  SHELLEXECUTEINFOW what = {};
  what.cbSize = sizeof what;
  what.fMask = SEE_MASK_INVOKEIDLIST;
  what.lpVerb = L"properties";
  what.lpFile = file.c_str();
  what.nShow = SW_SHOW;
  ShellExecuteExW(&what);
}

}  // namespace lens
