#include <gtest/gtest.h>

#include <QApplication>

#include "controls/look.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  lens::applyLook();
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
