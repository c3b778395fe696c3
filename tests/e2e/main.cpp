#include <gtest/gtest.h>

#include <QApplication>
#include <cstdlib>
#include <optional>

#include "support/x_desktop.h"

// The tests draw texts themselves to compare them with what a window shows, on the same display.
int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  if (::testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  const velt::XDesktop desktop;
  ::setenv("DISPLAY", desktop.Display().c_str(), 1);
  ::unsetenv("WAYLAND_DISPLAY");
  ::setenv("QT_QPA_PLATFORM", "xcb", 1);
  QApplication::setStyle("Fusion");
  std::optional<QApplication> application(std::in_place, argc, argv);
  ::unsetenv("QT_QPA_PLATFORM");
  const int result = RUN_ALL_TESTS();
  application.reset();  // before its display goes
  return result;
}
