// Runs the tests of one program in a window system, the one without a screen unless the environment
// names another.
#include <gtest/gtest.h>

#include <QApplication>

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(count, arguments);
  return RUN_ALL_TESTS();
}
