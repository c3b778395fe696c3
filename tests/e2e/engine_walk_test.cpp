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
  TempFolder folder;  // the engine's, and all of the PATH
  EngineLog log{folder.Path()};

  EngineWalk() {
    std::filesystem::copy_file(VELT_JAR, folder / "velt.jar");
    folder.Write("zoka.ver", std::string(kTitle) + "\n");
    std::filesystem::create_directory(*home / "KALVARO");
    home->Write("KALVARO/VELT-SA.ini",
                "[VELT-SA]\nVersion=3.0.0\nAutoRunZOKA=False\ncmdZOKAstart=True\n");
    // The desktop that the test runs on has no say in how the engine is started.
    std::filesystem::create_symlink("/usr/bin/java", folder / "java");
  }
  ~EngineWalk() override {
    if (const int engine = EngineId()) ::kill(engine, SIGKILL);
  }

  std::unique_ptr<WindowDriver> Start() {
    std::vector<std::string> environment = sound.Environment();
    environment.push_back("PATH=" + folder.Path().string());
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
  static void Run(const WindowDriver& window) {
    window.OpenMenu(window.form.Image2);
    window.Press({"r"});  // the access letter, wherever the item stands
  }
  bool Rig(const char* command, const char* answer) {
    return WaitUntil([&] { return rig.Ask(command) == answer; }, seconds(5));
  }
  bool Chords(const std::string& expected) const {
    return WaitUntil([&] { return log.All("chord ") == expected; }, seconds(10));
  }
  // Every opening leaves one space.
  bool Opens(size_t times) const {
    return WaitUntil([&] { return log.All("open").size() == times; }, seconds(20));
  }
};

TEST_F(EngineWalk, ItIsStartedToldObeyedMissedAndClosed) {
  folder.Write("transmitter.cfg", "on\n0\n");  // left over from another run
  const auto window = Start();
  window->Click(window->form.imgStartStop);
  Run(*window);
  ASSERT_TRUE(Opens(1));
  std::string expected = "Ctrl+S Ctrl+S ";
  EXPECT_TRUE(Chords(expected));

  window->OpenMenu(window->form.lblMode);
  window->Press({"Down", "Return"});
  EXPECT_TRUE(Chords(expected += "Ctrl+L Ctrl+L "));
  EXPECT_TRUE(Rig("m", "LSB"));
  EXPECT_EQ(ReadText(folder / "status.cfg").substr(0, 4), "LSB\n");

  rig.Ask("T 1");
  for (const int side : {0, 1}) {
    window->Click(window->form.optTXRX[side]);
    ASSERT_TRUE(Chords(expected += side == 0 ? "Ctrl+T Ctrl+T " : "Ctrl+R Ctrl+R "));
  }
  EXPECT_TRUE(Rig("t", "0")) << "RX always works";
  EXPECT_FALSE(Rig("t", "1")) << "what is left over keys nothing";

  folder.Write("transmitter.cfg", "off\n7050000\n");
  EXPECT_TRUE(Rig("f", "7050000"));
  EXPECT_TRUE(
      WaitUntil([&] { return folder.Read("STATUSRX.CFG").starts_with("7050000"); }, seconds(5)));
  folder.Write("status.cfg", "USB\n0\n0\n0\n\noff\n");
  EXPECT_TRUE(window->Reads(window->form.lblMode, 12, "USB"));
  for (const bool killed : {false, true}) {
    folder.Write("transmitter.cfg", "on\n0\n");
    EXPECT_TRUE(Rig("t", "1"));
    ASSERT_GT(EngineId(), 0);
    killed ? (void)::kill(EngineId(), SIGKILL) : folder.Write("transmitter.cfg", "off\n0\n");
    EXPECT_TRUE(Rig("t", "0"));
  }
  EXPECT_TRUE(window->Reads(window->form.lblMode, 12, "LSB")) << "the rig's own";
  window->Click(window->form.optTXRX[0]);
  EXPECT_TRUE(Rig("t", "1")) << "it goes to the rig";
  window->Click(window->form.optTXRX[1]);
  EXPECT_TRUE(Rig("t", "0"));

  Run(*window);
  ASSERT_TRUE(Opens(2));
  window->Close();
  EXPECT_TRUE(WaitUntil([&] { return log.All("").ends_with("close "); }, seconds(5)))
      << "with the program, as the settings say";
  EXPECT_FALSE(window->Program().Running());
}

}  // namespace
}  // namespace velt
