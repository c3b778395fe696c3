// What a desktop shows of the program besides its window's content, and in which colours.
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

TEST(LooksWalk, ColoursAreChosenByKeyboardSeenAndKept) {
  const TempFolder data;
  WindowDriver window({"--demo", "--data-folder", data.Path().string()});
  const auto background = [&] { return window.Corner(window.form.Scope) & 0xFFFFFFU; };
  ASSERT_TRUE(WaitUntil([&] { return background() == 0x001764; }, std::chrono::seconds(5)));
  window.OpenMenu(window.form.cmdOptions);
  window.Press({"r", "Left", "Down", "Return"});  // below Resolution, whose submenu closes again
  ASSERT_TRUE(window.WaitForWindow("Edit User Colors"));
  window.Press({"alt+d"});
  ASSERT_TRUE(window.WaitForWindow("Display background"));
  window.Press({"alt+h", "ctrl+a"});
  window.Type("#102030");
  EXPECT_TRUE(WaitUntil([&] { return background() == 0x102030; }, std::chrono::seconds(5)));
  window.Press({"Return"});
  ASSERT_TRUE(window.WaitForWindow("Edit User Colors"));
  window.Press({"Tab", "Tab", "Tab", "Tab", "Tab", "Tab", "Tab", "Tab", "Return"});
  ASSERT_TRUE(window.WaitForWindow("VELT-SA.*"));
  window.Close();
  ASSERT_TRUE(window.Program().WaitForEnd(std::chrono::seconds(10)));
  EXPECT_NE(ReadText(data / "VELT-SA.ini").find("ScopeColor=3153936"), std::string::npos);
}

}  // namespace
}  // namespace velt
