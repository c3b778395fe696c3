// The analyser on real sound in a real window.
#include <gtest/gtest.h>

#include "e2e/window_driver.h"
#include "support/pulse_server.h"
#include "ui/qt_text.h"

namespace velt {
namespace {

using std::chrono::seconds;

constexpr int kToneHz = 6000;
constexpr QRgb kRed = qRgb(255, 0, 0);

// Whether the picture is light at the tone and not far from it, so many pixels below the display's
// upper edge, and the display has the keyboard, which its rim tells.
bool ShowsTone(const WindowDriver& window, int y) {
  const Rectangle scope = window.form.Scope.place;
  const QImage picture = window.Picture().copy(scope.left, scope.top + y, scope.width, 1);
  const int tone = kToneHz * scope.width / 22115;
  int light = 0;
  for (int x = tone - 2; x <= tone + 2; ++x) light = std::max(light, qBlue(picture.pixel(x, 0)));
  const QRgb beside = picture.pixel(tone + 70, 0);
  return light > qBlue(beside) + 60 && (beside == kRed) == (y > 1) &&
         picture.pixel(0, 0) != picture.pixel(1, 0);
}

TEST(SoundWalk, AToneIsShownFoundLostAndFoundAgainUntilAResetForgetsTheSettings) {
  PulseServer sound;
  const auto home = std::make_shared<const TempFolder>();
  home->Write("KALVARO/VELT-SA.ini",
              "[VELT-SA]\nScopeColor=255\nAutoStartSA=True\nVersion=3.0.0\n");
  auto tone = sound.PlayTone(kToneHz);
  WindowDriver window({}, {sound.Environment().front()}, home);
  // Without a CAT server the program asks whether to configure it.
  ASSERT_TRUE(window.Dismiss("OmniRig not Configured for CAT"));
  const auto showsSpectrum = [&] { return ShowsTone(window, 60); };
  const auto showsWaterfall = [&] { return ShowsTone(window, 1); };
  ASSERT_TRUE(WaitUntil(showsSpectrum, seconds(10)));
  window.Click(window.form.chkSpecMode);
  EXPECT_TRUE(WaitUntil(showsWaterfall, seconds(5)));
  window.Click(window.form.chkSpecMode);
  EXPECT_TRUE(WaitUntil(showsSpectrum, seconds(5)));

  // Choosing from a menu stops capture and lets it go on, and the keyboard is the display's again.
  window.Press({"Tab"});
  window.OpenMenu(window.form.cmdOptions);
  window.Press({"Up", "Up", "Escape"});
  EXPECT_TRUE(WaitUntil(showsSpectrum, seconds(5)));

  sound.Kill();
  EXPECT_TRUE(WaitUntil([&] { return window.ShowsNotice(); }, seconds(3)));
  sound.Restart();
  tone = sound.PlayTone(kToneHz);
  EXPECT_TRUE(WaitUntil([&] { return !window.ShowsNotice() && showsSpectrum(); }, seconds(10)));

  // A second program of the same user ends at once and silently.
  EXPECT_EQ(Output({VELT_PROGRAM}, window.Environment()), "");
  EXPECT_TRUE(window.Program().Running());
  window.Program().Signal(SIGTERM);
  ASSERT_TRUE(window.Program().WaitForEnd(seconds(5))) << window.Said();
  EXPECT_EQ(window.Program().ExitCode(), 0);
  for (const char* kept : {"ScopeColor=255", "Slider=15"}) {
    EXPECT_NE(window.Settings().find(kept), std::string::npos) << window.Settings();
  }

  WindowDriver reset({"/RESET"}, {}, home);
  ASSERT_TRUE(reset.WaitForWindow("VELT-SA"));
  reset.Press({"Return"});
  EXPECT_TRUE(reset.Program().WaitForEnd(seconds(5)));
  EXPECT_EQ(reset.Settings(), "");
}

TEST(SoundWalk, TheDemonstrationNeedsNothingAroundIt) {
  const TempFolder home;
  const std::string picture = home / "demo.png";
  const std::string said =
      Output({VELT_PROGRAM, "--demo", "--headless", "--seconds", "1", "--screenshot", picture},
             {"HOME=" + home.Path().string(), "XDG_RUNTIME_DIR=" + home.Path().string(),
              "DISPLAY=", "PULSE_SERVER=unix:/nowhere"});
  const QImage image(ToQt(picture));
  ASSERT_EQ(image.size(), QSize(559 + WindowGrid::kPanelWidth, 164)) << said;
  EXPECT_FALSE(std::filesystem::exists(home / ".config"));
  const Rectangle scope = WindowGrid(559, 164).Scope();
  int blue = 0;
  for (int x = scope.left; x < scope.left + scope.width; ++x) {
    blue += qBlue(image.pixel(x, scope.top + scope.height - 12)) > 200 ? 1 : 0;
  }
  EXPECT_GT(blue, 10);
}

}  // namespace
}  // namespace velt
