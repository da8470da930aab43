// The test program of the windows: one QApplication for all tests, offscreen unless the caller
// chose a platform (the screenshots run under a virtual X display).
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char* argv[]) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
