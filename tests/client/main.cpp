#include <gtest/gtest.h>

#include <QApplication>

#include "controls/look.h"

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  application.setQuitOnLastWindowClosed(false);
  lens::applyLook();
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
