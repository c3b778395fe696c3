// The engine's window, driven by the program in a real window: a Java program plays the engine.
#include <gtest/gtest.h>
#include <signal.h>

#include "adapters/rigctld/live_loop.h"
#include "e2e/window_driver.h"
#include "support/java_engine.h"
#include "support/pulse_server.h"

namespace velt {
namespace {

using std::chrono::seconds;

constexpr const char* kTitle = "VELT V9.9";

struct EngineWalk : testing::Test {
  PulseServer sound;
  DummyRig rig;
  const std::shared_ptr<TempFolder> home = std::make_shared<TempFolder>();
  TempFolder folder;  // the engine's
  TempFolder programs;
  EngineLog log{folder.Path()};

  EngineWalk() {
    std::filesystem::copy_file(VELT_JAR, folder / "velt.jar");
    folder.Write("zoka.ver", std::string(kTitle) + "\n");
    home->Write("KALVARO/VELT-SA.ini",
                "[VELT-SA]\nVersion=3.0.0\nAutoRunZOKA=False\ncmdZOKAstart=True\n");
    // The desktop that the test runs on has no say in how the engine is started.
    std::filesystem::create_symlink("/usr/bin/java", programs / "java");
  }
  ~EngineWalk() override {
    if (const int engine = EngineId()) ::kill(engine, SIGKILL);
  }

  std::unique_ptr<WindowDriver> Start() {
    std::vector<std::string> environment = sound.Environment();
    environment.push_back("PATH=" + programs.Path().string());
    return std::make_unique<WindowDriver>(
        std::vector<std::string>{"--rig1", rig.Address(), "--engine-folder",
                                 std::filesystem::relative(folder.Path()).string()},
        environment, home);
  }
  static int EngineId() {
    return std::atoi(
        Output({"xdotool", "search", "--name", "^" + std::string(kTitle), "getwindowpid"}, {})
            .c_str());
  }
  static void Choose(const WindowDriver& window, const std::vector<std::string>& keys) {
    window.OpenMenu(window.form.Image2);
    window.Press(keys);
  }
  bool Closes() const {
    return WaitUntil([&] { return log.All("").ends_with("close "); }, seconds(5));
  }
};

// By their access letters, wherever the items stand.
const std::vector<std::string> kRun{"r"}, kClose{"c"};

TEST_F(EngineWalk, ItIsStartedToldClosedAndMissed) {
  const auto window = Start();
  window->Click(window->form.imgStartStop);
  Choose(*window, kRun);
  ASSERT_TRUE(log.Opens(1));
  std::string expected = "Ctrl+S Ctrl+S ";
  EXPECT_TRUE(log.Chords(expected));

  window->OpenMenu(window->form.lblMode);
  window->Press({"Down", "Return"});
  EXPECT_TRUE(log.Chords(expected += "Ctrl+L Ctrl+L "));
  EXPECT_TRUE(rig.Has("m", "LSB"));
  EXPECT_EQ(ReadText(folder / "status.cfg").substr(0, 4), "LSB\n");

  rig.Ask("T 1");
  for (const int side : {0, 1}) {
    window->Click(window->form.optTXRX[side]);
    ASSERT_TRUE(log.Chords(expected += side == 0 ? "Ctrl+T Ctrl+T " : "Ctrl+R Ctrl+R "));
  }
  EXPECT_TRUE(rig.Has("t", "0")) << "RX always works";

  ASSERT_GT(EngineId(), 0);
  ::kill(EngineId(), SIGKILL);
  EXPECT_TRUE(window->Reads(window->form.lblMode, 12, "N/A"));
  window->Click(window->form.optTXRX[0]);
  EXPECT_TRUE(rig.Has("t", "1")) << "it goes to the rig";
  window->Click(window->form.optTXRX[1]);
  EXPECT_TRUE(rig.Has("t", "0"));

  Choose(*window, kRun);
  ASSERT_TRUE(log.Opens(2));
  ASSERT_TRUE(log.Chords(expected += "Ctrl+S Ctrl+S "));
  Choose(*window, kClose);
  EXPECT_TRUE(Closes());
  Choose(*window, kClose);
  EXPECT_TRUE(window->Dismiss("Closing VELT"));

  Choose(*window, kRun);
  ASSERT_TRUE(log.Opens(3));
  window->Close();
  EXPECT_TRUE(Closes()) << "with the program, as the settings say";
  EXPECT_FALSE(window->Program().Running());
}

TEST_F(EngineWalk, ItsFilesMoveTheRigAndNothingStaysKeyed) {
  folder.Write("transmitter.cfg", "on\n0\n");  // left over from another run
  const auto window = Start();
  Choose(*window, kRun);
  ASSERT_TRUE(log.Opens(1));
  EXPECT_TRUE(window->Reads(window->form.lblFrequency, 21, "145.000.00"));
  EXPECT_EQ(ReadText(folder / "STATUSRX.CFG").substr(0, 9), "145000000");
  EXPECT_FALSE(rig.Has("t", "1")) << "what is left over keys nothing";

  folder.Write("transmitter.cfg", "off\n7050000\n");
  EXPECT_TRUE(rig.Has("f", "7050000"));
  EXPECT_TRUE(
      WaitUntil([&] { return folder.Read("transmitter.cfg") == "off\r\n\r\n"; }, seconds(2)));
  EXPECT_TRUE(window->Reads(window->form.lblFrequency, 21, "7.050.00"));
  folder.Write("status.cfg", "CW-USB\n0\n0\n0\nlsb\noff\n");
  EXPECT_TRUE(rig.Has("m", "LSB")) << "the transmitter's mode";

  for (const bool killed : {false, true}) {
    folder.Write("transmitter.cfg", "on\n0\n");
    EXPECT_TRUE(rig.Has("t", "1"));
    killed ? void(::kill(EngineId(), SIGKILL)) : folder.Write("transmitter.cfg", "off\n0\n");
    EXPECT_TRUE(rig.Has("t", "0"));
  }
  EXPECT_TRUE(window->Reads(window->form.lblMode, 12, "LSB")) << "the rig's own";
}

TEST_F(EngineWalk, WithoutJavaTheUserIsToldWhatIsMissing) {
  std::filesystem::remove(programs / "java");
  const auto window = Start();
  Choose(*window, kRun);
  EXPECT_TRUE(window->Dismiss("Running VELT"));
}

}  // namespace
}  // namespace velt
