// A recording on the air, by keyboard, through a real sound server and a real CAT server.
#include <gtest/gtest.h>

#include "adapters/rigctld/live_loop.h"
#include "e2e/window_driver.h"
#include "support/pulse_server.h"

namespace velt {
namespace {

using std::chrono::seconds;

TEST(PlayerWalk, ARecordingIsSentAndTheRigReleasedWhateverIsClosed) {
  PulseServer sound;
  DummyRig rig;
  const auto home = std::make_shared<const TempFolder>();
  home->Write("VELT/WAV/a text.wav", "no sound");
  WriteToneFile(*home / "VELT/WAV/tone.wav", 1500, 30);
  WindowDriver window({"--rig1", rig.Address()}, {sound.Environment().front()}, home);
  ASSERT_TRUE(window.Reads(window.form.lblFrequency, 21, "145.000.00"));
  const auto open = [&] {
    window.OpenMenu(window.form.Image2);
    window.Press({"Down", "Return"});
    return window.WaitForWindow("WAV-Player");
  };
  ASSERT_TRUE(open());
  window.Press({"Down", "alt+k", "alt+p"});
  EXPECT_FALSE(rig.Has("t", "1", seconds(1)));
  window.Press({"alt+i", "Down", "Return"});
  EXPECT_TRUE(rig.Has("t", "1"));
  EXPECT_NEAR(sound.MonitorHz(), 1500, 30);
  window.Click(window.form.optTXRX[1]);
  EXPECT_TRUE(rig.Has("t", "0")) << "the main window's RX stands beside the player";
  const std::vector<std::string> streams{"list", "short", "sink-inputs"};
  EXPECT_TRUE(WaitUntil([&] { return sound.Pactl(streams).empty(); }, seconds(5)));
  ASSERT_TRUE(open()) << "it comes before the other windows";
  window.Press({"alt+i", "Return"});
  EXPECT_TRUE(rig.Has("t", "1"));
  window.Close();
  EXPECT_TRUE(rig.Has("t", "0"));
  EXPECT_TRUE(window.Program().WaitForEnd(seconds(5)));
}

}  // namespace
}  // namespace velt
