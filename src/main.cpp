#include <QApplication>

#include "app/program.h"
#include "host/desktop_host.h"

int main(int argc, char** argv) {
  QApplication qtApplication(argc, argv);
  lens::DesktopHost host;
  lens::Program program(host);
  program.start();
  return QApplication::exec();
}
