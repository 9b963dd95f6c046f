#include <QApplication>

#include "app/program.h"

int main(int argc, char** argv) {
  QApplication qtApplication(argc, argv);
  lens::Program program;
  program.start();
  return QApplication::exec();
}
