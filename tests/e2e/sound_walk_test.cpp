// The analyser on real sound in a real window.
#include <gtest/gtest.h>

#include <fstream>

#include "e2e/surroundings.h"
#include "e2e/window_driver.h"
#include "ui/qt_text.h"

namespace velt {
namespace {

using std::chrono::seconds;

constexpr int kToneHz = 6000;
constexpr QRgb kBackground = qRgb(0x00, 0x17, 0x64);

int ToneColumn(const WindowDriver& window) {
  return window.form.Scope.place.Get().left + kToneHz * window.form.Scope.place.Get().width / 22115;
}

// Whether the spectrum reaches the middle of the display at the tone and not far from it.
bool ShowsTone(const WindowDriver& window) {
  const QImage picture = window.Picture();
  const Rectangle scope = window.form.Scope.place;
  const int y = scope.top + scope.height / 2 + 3;
  bool bright = false;
  for (int x = ToneColumn(window) - 2; x <= ToneColumn(window) + 2; ++x) {
    bright = bright || qBlue(picture.pixel(x, y)) > 200;
  }
  return bright && picture.pixel(ToneColumn(window) + 70, y) == kBackground;
}

bool ShowsNotice(const WindowDriver& window) {
  const Rectangle notice = window.form.lblNotice.place;
  return window.Picture().pixel(notice.left + 2, notice.top + 2) == qRgb(0xFF, 0xD4, 0x5E);
}

// The waterfall's newest rows are light at the tone and darker beside it.
bool ShowsWaterfall(const WindowDriver& window) {
  const QImage picture = window.Picture();
  const int y = window.form.Scope.place.Get().top + 1;
  int light = 0;
  for (int x = ToneColumn(window) - 2; x <= ToneColumn(window) + 2; ++x) {
    light = std::max(light, qGray(picture.pixel(x, y)));
  }
  const QRgb beside = picture.pixel(ToneColumn(window) + 70, y);
  return light > qGray(beside) + 60 && beside != kBackground;
}

std::vector<std::string> PeakTexts() {
  std::vector<std::string> texts;
  for (int hz = kToneHz - 400; hz <= kToneHz + 400; ++hz)
    texts.push_back(std::to_string(hz) + "Hz");
  return texts;
}

TEST(SoundWalk, AToneIsShownFoundLostAndFoundAgain) {
  Surroundings around;
  auto tone = around.sound.PlayTone(kToneHz);
  WindowDriver window({}, around.Environment());
  // Without a CAT server the program asks whether to configure it.
  ASSERT_TRUE(window.Dismiss("OmniRig not Configured for CAT"));

  window.Click(window.form.imgStartStop.place);
  ASSERT_TRUE(WaitUntil([&] { return ShowsTone(window); }, seconds(10)));
  std::string peak;
  EXPECT_TRUE(WaitUntil(
      [&] {
        peak = window.ReadLabel(window.form.lblFreqDetect.place, 12, Qt::AlignCenter, PeakTexts());
        return !peak.empty();
      },
      seconds(5)));
  EXPECT_NEAR(std::atoi(peak.c_str()), kToneHz, 90) << peak;

  window.Click(window.form.chkSpecMode.place);
  EXPECT_TRUE(WaitUntil([&] { return ShowsWaterfall(window); }, seconds(5)));
  window.Click(window.form.chkSpecMode.place);
  EXPECT_TRUE(WaitUntil([&] { return ShowsTone(window); }, seconds(5)));

  // Choosing from a menu stops capture and lets it go on.
  window.Click(window.form.cmdOptions.place);
  window.Press({"Up", "Up", "Escape"});
  EXPECT_TRUE(WaitUntil([&] { return ShowsTone(window); }, seconds(5)));

  around.sound.Kill();
  EXPECT_TRUE(WaitUntil([&] { return ShowsNotice(window); }, seconds(3)));
  around.sound.Restart();
  tone = around.sound.PlayTone(kToneHz);
  EXPECT_TRUE(WaitUntil([&] { return !ShowsNotice(window) && ShowsTone(window); }, seconds(10)));

  // A second program of the same user ends at once and silently.
  EXPECT_EQ(Output({VELT_PROGRAM}, around.Environment()), "");
  EXPECT_TRUE(window.Program().Running());

  window.Close();
  ASSERT_TRUE(window.Program().WaitForEnd(seconds(5))) << window.Said();
  EXPECT_EQ(window.Program().ExitCode(), 0);
  EXPECT_NE(around.Settings().find("\nVersion=3."), std::string::npos) << around.Settings();
  EXPECT_TRUE(std::filesystem::is_directory(around.home.Path() / "VELT" / "WAV"));
}

TEST(SoundWalk, SavedSettingsComeBackAndAResetForgetsThem) {
  Surroundings around;
  std::filesystem::create_directories(around.home.Path() / "config" / "KALVARO");
  std::ofstream(around.home.Path() / "config" / "KALVARO" / "VELT-SA.ini")
      << "[VELT-SA]\nScopeColor=255\nAutoStartSA=True\nVersion=3.0.0\n";
  auto tone = around.sound.PlayTone(kToneHz);
  {
    WindowDriver window({}, around.Environment());
    ASSERT_TRUE(window.Dismiss("OmniRig not Configured for CAT"));
    const Rectangle scope = window.form.Scope.place;
    const QPoint corner(scope.left + scope.width - 20, scope.top + 4);
    EXPECT_TRUE(
        WaitUntil([&] { return window.Picture().pixel(corner) == qRgb(255, 0, 0); }, seconds(5)));
    window.Program().Signal(ProcessSignal::Terminate);
    ASSERT_TRUE(window.Program().WaitForEnd(seconds(5)));
    EXPECT_EQ(window.Program().ExitCode(), 0);
  }
  EXPECT_NE(around.Settings().find("ScopeColor=255"), std::string::npos);
  EXPECT_NE(around.Settings().find("Slider=15"), std::string::npos);
  {
    const TempFolder folder;
    Process reset({VELT_PROGRAM, "/RESET"},
                  {.environment = around.Environment(), .output = folder.Path() / "output"});
    ASSERT_TRUE(WaitUntil(
        [&] {
          return !Output({"xdotool", "search", "--onlyvisible", "--name", "VELT-SA"},
                         around.Environment())
                      .empty();
        },
        seconds(5)));
    Output({"xdotool", "key", "Return"}, around.Environment());
    EXPECT_TRUE(reset.WaitForEnd(seconds(5)));
  }
  EXPECT_EQ(around.Settings(), "");
}

TEST(SoundWalk, TheDemonstrationNeedsNothingAroundIt) {
  const TempFolder home;
  const std::string picture = (home.Path() / "demo.png").string();
  const std::string said =
      Output({VELT_PROGRAM, "--demo", "--headless", "--seconds", "1", "--screenshot", picture},
             {"HOME=" + home.Path().string(), "XDG_RUNTIME_DIR=" + home.Path().string(),
              "DISPLAY=", "PULSE_SERVER=unix:/nowhere"});
  const QImage image(ToQt(picture));
  ASSERT_EQ(image.size(), QSize(559, 164)) << said;
  EXPECT_FALSE(std::filesystem::exists(home.Path() / ".config"));
  const Rectangle scope = WindowGrid(559, 164).Scope();
  int blue = 0;
  for (int x = scope.left; x < scope.left + scope.width; ++x) {
    blue += qBlue(image.pixel(x, scope.top + scope.height - 12)) > 200 ? 1 : 0;
  }
  EXPECT_GT(blue, 10);
}

}  // namespace
}  // namespace velt
