// The rig through a real CAT server, in a real window: followed, tuned, and released whatever ends
// the program, or makes it stand still, while it transmits.
#include <gtest/gtest.h>

#include "adapters/rigctld/live_loop.h"
#include "e2e/window_driver.h"
#include "support/login_manager.h"
#include "support/pulse_server.h"
#include "support/x_desktop.h"

namespace velt {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr seconds kAtOnce{2};
constexpr seconds kWithACore{6};

// A program of its own, linked to the rig.
class Station : public WindowDriver {
 public:
  explicit Station(DummyRig& rig, const std::vector<std::string>& environment = {})
      : WindowDriver({"--rig1", rig.Address()}, environment), rig_(rig) {
    // Without it nothing is keyed, and on a busy machine the window may be there first.
    WaitUntil([this] { return (guardian_ = GuardianOf(Program().Id())) != 0; }, seconds(10));
  }

  bool Transmits(milliseconds limit = seconds(5)) { return rig_.Has("t", "1", limit); }
  bool Receives(milliseconds limit = seconds(5)) { return rig_.Has("t", "0", limit); }
  bool ShowsFrequency(const std::string& text, seconds limit = seconds(5)) const {
    return Reads(form.lblFrequency, 21, text, limit);
  }
  // The RX button is lit, and TX is not.
  bool ShowsReceive() const {
    const auto shown = [this] {
      return Corner(form.optTXRX[1]) == 0xFF1F62C4 && Corner(form.optTXRX[0]) != 0xFFC82020;
    };
    return WaitUntil(shown, seconds(5));
  }
  bool PressTransmit() {
    Click(form.optTXRX[0]);
    return Transmits();
  }
  bool Key() { return ShowsFrequency("145.000.00") && PressTransmit(); }
  // Opens the menu below the control and chooses the line that the keys go to.
  void Choose(const Control& control, std::vector<std::string> keys) const {
    OpenMenu(control);
    keys.emplace_back("Return");
    Press(keys);
  }
  bool OpenDialog() const {
    Click(form.Image3);
    return WaitForWindow("OmniRig Configuration & Status");
  }
  // The program is gone, and with it, after its work, the guardian.
  bool Ends() {
    return Program().WaitForEnd(seconds(5)) &&
           WaitUntil([this] { return !IsAlive(guardian_); }, seconds(15));
  }

 private:
  DummyRig& rig_;
  int64_t guardian_ = 0;
};

TEST(RigWalk, TheWindowFollowsTheRigAndTunesIt) {
  const PulseServer sound;  // no sound, no choice of modes
  DummyRig rig;
  Station station(rig, {sound.Environment().front()});
  EXPECT_TRUE(station.ShowsFrequency("145.000.00"));
  rig.Ask("F 7074000");
  EXPECT_TRUE(station.ShowsFrequency("7.074.00"));

  station.Choose(station.form.lblFrequency, {"Down"});
  ASSERT_TRUE(station.WaitForWindow("Set Rig Frequency"));
  rig.Ask("T 1");
  station.Click(station.form.optTXRX[1]);
  EXPECT_TRUE(station.Receives()) << "RX works whatever is asked";
  ASSERT_TRUE(station.WaitForWindow("Set Rig Frequency"));
  station.Type("14250");
  station.Press({"Return"});
  EXPECT_TRUE(rig.Has("f", "14250000"));
  EXPECT_TRUE(station.ShowsFrequency("14.250.00"));
  station.Click(station.form.imgStartStop);
  EXPECT_TRUE(station.Reads(station.form.lblMode, 12, "FM"));
  station.Choose(station.form.lblMode, {"Down"});
  EXPECT_TRUE(rig.Has("m", "LSB"));
  EXPECT_TRUE(station.Reads(station.form.lblMode, 12, "LSB"));

  rig.Kill();
  const auto pale = [&] { return !station.ShowsFrequency("14.250.00", seconds(0)); };
  EXPECT_TRUE(WaitUntil(pale, seconds(5))) << "a lost link is shown";
  rig.Start();
  EXPECT_TRUE(station.ShowsFrequency("145.000.00", seconds(12)));
}

struct KeyedWalk : testing::Test {
  DummyRig rig;
  Station station{rig};
  void SetUp() override { ASSERT_TRUE(station.Key()); }
};

TEST(EndsWalk, EveryEndOfTheProgramReleasesTheTransmitter) {
  std::unique_ptr<XDesktop> display;  // for the one that loses it
  const auto signal = [](int which) {
    return [which](Station& station) { station.Program().Signal(which); };
  };
  struct End {
    const char* name;
    std::function<void(Station&)> happens;
    seconds limit = kAtOnce;
  };
  const std::vector<End> ends{
      {"the display's server dies", [&](Station&) { display->Kill(); }},
      {"the server takes its client away", [](Station& s) { s.KillClient(); }},
      {"another client destroys the window", [](Station& s) { s.DestroyWindow(); }},
      {"SIGTERM", signal(SIGTERM)},
      {"SIGINT", signal(SIGINT)},
      {"SIGHUP", signal(SIGHUP)},
      {"SIGQUIT", signal(SIGQUIT), kWithACore},
      {"SIGUSR1", signal(SIGUSR1)},
      {"SIGALRM", signal(SIGALRM)},
      {"SIGSEGV", signal(SIGSEGV), kWithACore},
      {"SIGKILL", signal(SIGKILL)},
      {"its group of processes killed", [](Station& s) { s.Program().KillGroup(); }},
      {"Alt+F4", [](Station& s) { s.Close(); }},
      {"\"Close VELT-SA \"", [](Station& s) { s.Choose(s.form.Image2, {"Up"}); }},
  };
  for (const End& end : ends) {
    SCOPED_TRACE(end.name);
    DummyRig rig;
    if (&end == &ends.front()) display = std::make_unique<XDesktop>();
    Station station(rig,
                    &end == &ends.front() ? display->Environment() : std::vector<std::string>());
    ASSERT_TRUE(station.Key());
    end.happens(station);
    EXPECT_TRUE(station.Receives(end.limit));
    EXPECT_TRUE(station.Ends());
    EXPECT_EQ(rig.Ask("t"), "0");
    EXPECT_EQ(station.Said().find("may still be on"), std::string::npos);
  }
}

TEST_F(KeyedWalk, LeavingTheRigReleasesItAndNoOther) {
  DummyRig strangers;
  strangers.Ask("F 7074000");
  strangers.Ask("T 1");
  ASSERT_TRUE(station.OpenDialog());
  station.Press({"alt+s"});
  EXPECT_TRUE(station.Receives(kAtOnce)) << "Stop";
  station.Press({"alt+s"});
  ASSERT_TRUE(station.Dismiss("OmniRig Configuration & Status"));

  ASSERT_TRUE(station.Key() && station.OpenDialog());
  station.Press({"alt+v"});
  station.Type(strangers.Address());
  station.Press({"alt+a"});
  EXPECT_TRUE(station.Receives(kAtOnce)) << "another address";
  ASSERT_TRUE(station.Dismiss("OmniRig Configuration & Status"));
  EXPECT_TRUE(station.ShowsFrequency("7.074.00"));
  station.Close();
  EXPECT_TRUE(station.Ends());
  EXPECT_EQ(rig.Ask("t"), "0");
  EXPECT_EQ(strangers.Ask("t"), "1") << "what others key is theirs";
}

TEST_F(KeyedWalk, AProgramThatStoodStillSaysSoAndKeysAgain) {
  station.Program().Signal(SIGSTOP);
  EXPECT_FALSE(station.Receives(seconds(4))) << "a program may be busy for a moment";
  EXPECT_TRUE(station.Receives(seconds(3)));
  // The guardian has looked twice before the program comes back.
  EXPECT_FALSE(station.Transmits(seconds(1)));
  station.Program().Signal(SIGCONT);
  EXPECT_TRUE(
      station.Reads(station.form.lblNotice, 11, "Transmission ended: the program had stood still"));
  EXPECT_TRUE(station.ShowsReceive());
  EXPECT_EQ(rig.Ask("t"), "0");

  EXPECT_TRUE(station.PressTransmit());
  EXPECT_FALSE(station.Receives(milliseconds(1500))) << "it is a transmission of its own";
  station.Click(station.form.optTXRX[1]);
  EXPECT_TRUE(station.Receives() && station.ShowsReceive());
}

TEST(EndsWalk, ADisplayThatStandsStillEndsATransmission) {
  XDesktop display;
  DummyRig rig;
  Station station(rig, display.Environment());
  ASSERT_TRUE(station.Key());
  EXPECT_FALSE(station.Receives(seconds(6))) << "it answers";
  display.Freeze();
  EXPECT_FALSE(station.Receives(seconds(4))) << "it may be busy for a moment";
  EXPECT_TRUE(station.Receives(seconds(3)));
  display.GoOn();
  EXPECT_TRUE(station.ShowsReceive());
  EXPECT_TRUE(station.PressTransmit());
  EXPECT_FALSE(station.Receives(seconds(6)));
}

TEST(EndsWalk, TheComputersSleepWaitsForTheRelease) {
  LoginManager manager;
  DummyRig rig;
  Station station(rig, manager.Environment());
  ASSERT_TRUE(station.Key());
  ASSERT_TRUE(LoopUntil([&] { return manager.Locked(); }));
  manager.GoToSleep();
  ASSERT_TRUE(LoopUntil([&] { return !manager.Locked(); }, kWithACore));
  EXPECT_EQ(rig.Ask("t"), "0");
  EXPECT_TRUE(station.ShowsReceive());
}

TEST_F(KeyedWalk, AReleaseThatNobodyAnswersIsTold) {
  rig.Signal(SIGSTOP);
  station.Program().Signal(SIGTERM);
  EXPECT_TRUE(station.Ends());
  EXPECT_NE(station.Said().find("velt-sa: the transmitter at " + rig.Address() +
                                " could not be released and may still be on"),
            std::string::npos)
      << station.Said();
}

}  // namespace
}  // namespace velt
