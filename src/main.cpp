#include <QApplication>

#include "app/launcher.h"
#include "command/command_main.h"
#include "command/run_command.h"
#include "host/desktop_host.h"
#include "host/shipped_files.h"

int main(int argc, char** argv) {
  if (const std::optional<int> code = lens::runAsCommand(argc, argv)) return *code;
  QApplication qtApplication(argc, argv);
  lens::speakLanguageOf(QLocale::system());
  lens::DesktopHost host;
  lens::Launcher program(host);
  program.openWhenShown(lens::filesOfWindows(QApplication::arguments().sliced(1)));
  program.start();
  return QApplication::exec();
}
