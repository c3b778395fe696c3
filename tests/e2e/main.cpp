#include <gtest/gtest.h>

#include <QApplication>
#include <cstdlib>

// The tests draw texts themselves to compare them with what a window shows.
int main(int argc, char** argv) {
  ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
  QApplication::setStyle("Fusion");
  const QApplication application(argc, argv);
  ::unsetenv("QT_QPA_PLATFORM");
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
