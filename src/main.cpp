#include <QApplication>

#include "app/launcher.h"
#include "host/desktop_host.h"

int main(int argc, char** argv) {
  QApplication qtApplication(argc, argv);
  lens::DesktopHost host;
  lens::Launcher program(host);
  program.start();
  return QApplication::exec();
}
