#include <QApplication>

#include "app/client_doors.h"
#include "app/launcher.h"
#include "command/command_main.h"
#include "command/run_command.h"
#include "host/shipped_files.h"
#ifdef Q_OS_WIN
#include "host/windows/windows_host.h"
using PlatformHost = lens::WindowsHost;
#else
#include "host/desktop_host.h"
using PlatformHost = lens::DesktopHost;
#endif

int main(int argc, char** argv) {
  if (const std::optional<int> code = lens::runAsCommand(argc, argv)) return *code;
  QApplication qtApplication(argc, argv);
  lens::speakLanguageOf(QLocale::system());
  PlatformHost host;
  lens::DesktopWorkspaceChoice choice;
  lens::Launcher program(host, lens::clientDoors(), &choice);
  program.openWhenShown(lens::filesOfWindows(QApplication::arguments().sliced(1)));
  program.start();
  return QApplication::exec();
}
