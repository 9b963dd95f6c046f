#include <gtest/gtest.h>

#include <QCoreApplication>

// No display, no platform: as the commands themselves run.
int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
