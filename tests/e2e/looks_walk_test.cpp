// What a desktop shows of the program besides its window's content.
#include <gtest/gtest.h>

#include "e2e/window_driver.h"

namespace velt {
namespace {

TEST(LooksWalk, TaskBarsFindTheProgramsIconInEverySize) {
  const WindowDriver window({"--demo"});
  std::string found = Output({"xdotool", "search", "--onlyvisible", "--name", "^VELT-SA"}, {});
  found.resize(std::min(found.size(), found.find('\n')));
  const std::string told = Output({"xprop", "-id", found, "_NET_WM_ICON", "WM_CLASS"}, {});
  for (const char* size : {"16 x 16", "32 x 32", "64 x 64"}) {
    EXPECT_NE(told.find("Icon (" + std::string(size) + ")"), std::string::npos) << told;
  }
  EXPECT_NE(told.find("\"velt-sa\""), std::string::npos) << told;  // as the desktop's entry says
}

}  // namespace
}  // namespace velt
