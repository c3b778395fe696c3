// The display under mouse and keyboard in a real window, with a real rig server and a Java program
// that plays the engine.
#include <gtest/gtest.h>

#include "adapters/rigctld/live_loop.h"
#include "display/cursor_readout.h"
#include "e2e/window_driver.h"
#include "support/java_engine.h"
#include "support/pulse_server.h"

namespace velt {
namespace {

using std::chrono::seconds;

TEST(DisplayWalk, ItIsTunedSteppedSavedAndCopied) {
  constexpr const char* kTitle = "VELT V9.9";
  const PulseServer sound;
  DummyRig rig;
  rig.Ask("F 14074000");
  const JavaEngine engine({}, kTitle);
  std::filesystem::copy_file(VELT_JAR, engine.folder / "velt.jar");
  ASSERT_TRUE(engine.log.Opens(1));
  const TempFolder data;
  data.Write("VELT-SA.ini", "[VELT-SA]\nVersion=3.0.0\nAutoRunZOKA=False\nZOKAMode=0\n");
  const WindowDriver window({"--rig1", rig.Address(), "--engine-folder",
                             engine.folder.Path().string(), "--data-folder", data.Path().string()},
                            {sound.Environment().front()});
  ASSERT_TRUE(window.Reads(window.form.lblFrequency, 21, "14.074.00"));
  const Rectangle scope = window.form.Scope.place;

  // Not while it is stopped; the click gives the keyboard to the display.
  window.ClickAt(window.form.Scope, 100, 1);
  window.Press({"Up", "Page_Up", "Right", "Right"});
  EXPECT_TRUE(rig.Has("f", "14075020"));
  window.Press(std::vector<std::string>(20, "Left"));
  EXPECT_TRUE(rig.Has("f", "14074820"));
  window.Press({"shift+Tab", "Down", "shift+Tab", "Down"});  // not from a slider, but from a button
  EXPECT_TRUE(rig.Has("f", "14073820"));
  EXPECT_TRUE(window.Reads(window.form.lblFrequency, 21, "14.073.82"));

  window.Click(window.form.imgStartStop);
  window.ClickAt(window.form.Scope, 100, 1);
  const int hertz = CursorHz(100, scope.width, 0, 0).value();
  EXPECT_TRUE(rig.Has("f", std::to_string(14073820 + hertz)));
  window.Click(window.form.imgStartStop);

  for (const auto& [x, chord] : {std::pair{10, "Ctrl+L "}, {scope.width - 10, "Ctrl+U "}}) {
    const std::string before = engine.log.All("chord ");
    window.ClickAt(window.form.Scope, x, 3);
    EXPECT_TRUE(engine.log.Chords(before + chord + chord)) << engine.log.All("chord ");
  }

  // What is saved and copied is what the display shows, but for the lines over it.
  window.ClickAt(window.form.Scope, 100, 1);
  window.Press({"F2"});
  ASSERT_TRUE(WaitUntil([&] { return FilesIn(data / "BMP").size() == 2; }, seconds(5)));
  const QImage bitmap(QString::fromStdString(FilesIn(data / "BMP")[0].string()));
  const QImage shown = window.Picture().copy(scope.left, scope.top, scope.width, scope.height);
  ASSERT_EQ(bitmap.size(), shown.size());
  for (int x = 2; x < scope.width - 2; ++x) {
    const bool line = x % (scope.width / 11) == 0 || x == scope.width / 2;
    ASSERT_TRUE(line || bitmap.pixel(x, 8) == shown.pixel(x, 8)) << x;
  }
  window.Press({"F5"});
  const std::string file = data / "copied.png";
  const auto copied = [&] {
    Output({"sh", "-c", "xclip -selection clipboard -t image/png -o > " + file},
           window.Environment());
    return QImage(QString::fromStdString(file)) == bitmap.convertToFormat(QImage::Format_RGB32);
  };
  EXPECT_TRUE(WaitUntil(copied, seconds(5)));
}

TEST(DisplayWalk, ColoursAreChosenByKeyboardSeenAndKept) {
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
