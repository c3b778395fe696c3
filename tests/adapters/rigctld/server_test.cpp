// The link to a real server with its dummy rig.
#include <gtest/gtest.h>

#include <QElapsedTimer>

#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/live_loop.h"
#include "adapters/rigctld/rigctld_server.h"

namespace velt {
namespace {

using State = RigLink::State;

struct ServerTest : testing::Test {
  DummyRig peer;
  QtScheduler scheduler;
  RigctldServer server{scheduler};
  IRigX& rig = server.Rig2();
  bool calling = false;
  std::map<int32_t, int32_t> params, statuses;
  std::optional<bool> reached;
  Connections connections;

  void SetUp() override {
    connections += server.paramsChanged.Listen([this](int32_t number, int32_t bits) {
      EXPECT_FALSE(calling);
      params[number] |= bits;
    });
    connections += server.statusChanged.Listen([this](int32_t number) { ++statuses[number]; });
    ASSERT_TRUE(server.SetAddress(2, peer.Address()));
    server.Open(2, [this](bool answer) { reached = answer; });
    EXPECT_FALSE(reached) << "answered within the call";
    ASSERT_TRUE(LoopUntil([&] { return rig.FreqB() > 0 && rig.RigType() == "Hamlib Dummy"; }));
    EXPECT_EQ(reached, true);
    EXPECT_EQ(server.InterfaceVersion(), 0x101);
    EXPECT_EQ(rig.StatusStr(), "On-line");
  }
  // A second client sees the answer in time.
  bool Sees(const std::string& command, const std::string& answer) {
    return LoopUntil([&] { return peer.Ask(command) == answer; });
  }
  bool Reaches(State state) {
    return LoopUntil([&] { return rig.Link().state == state; });
  }
  void Key() {
    ASSERT_TRUE(rig.SetTx(PM_TX));
    EXPECT_EQ(rig.Tx(), PM_RX) << "not before the rig says so";
    ASSERT_TRUE(LoopUntil([&] { return rig.Tx() == PM_TX; }));
  }
};

TEST_F(ServerTest, EveryWriteIsReadBackAndSeenByAnotherClient) {
  params.clear();
  calling = true;
  ASSERT_TRUE(rig.SetFreqB(7100000) && rig.SetFreqA(7200000));
  calling = false;
  EXPECT_EQ(rig.FreqB(), 7100000);
  EXPECT_EQ(rig.Freq(), 7200000);
  EXPECT_TRUE(Sees("f", "7200000") && Sees("\\get_vfo_info VFOB", "7100000"));
  const std::pair<int32_t, std::string> modes[] = {
      {PM_SSB_U, "USB"}, {PM_SSB_L, "LSB"},    {PM_CW_U, "CW"}, {PM_CW_L, "CWR"},
      {PM_AM, "AM"},     {PM_DIG_U, "PKTUSB"}, {PM_FM, "FM"}};
  for (const auto& [mode, name] : modes) {
    ASSERT_TRUE(rig.SetMode(mode));
    EXPECT_TRUE(Sees("m", name));
    EXPECT_EQ(rig.Mode(), mode);
  }
  const int32_t told = PM_FREQ | PM_FREQA | PM_FREQB | PM_AM;
  EXPECT_TRUE(LoopUntil([&] { return (params[2] & told) == told; }));
  EXPECT_EQ(params[1], 0);
  ASSERT_NO_FATAL_FAILURE(Key());
  EXPECT_TRUE(Sees("t", "1"));
  ASSERT_TRUE(rig.SetTx(PM_RX));
  EXPECT_EQ(rig.Tx(), PM_TX) << "until the rig says so";
  EXPECT_TRUE(Sees("t", "0"));
  EXPECT_TRUE(LoopUntil([&] { return rig.Tx() == PM_RX; }));
  // Both go to their own VFO whichever is current.
  peer.Ask("V VFOB");
  ASSERT_TRUE(rig.SetFreqA(3700000) && rig.SetFreqB(3600000));
  EXPECT_TRUE(Sees("f", "3600000") && Sees("\\get_vfo_info VFOA", "3700000"));
  EXPECT_EQ(peer.Ask("v"), "Sub");
  EXPECT_TRUE(LoopUntil([&] { return rig.Freq() == 3600000 && rig.FreqA() == 3700000; }));
}

TEST_F(ServerTest, ComesBackAfterItsServerWasKilled) {
  ASSERT_NO_FATAL_FAILURE(Key());
  peer.Kill();
  ASSERT_TRUE(Reaches(State::Reconnecting));
  EXPECT_EQ(rig.StatusStr(), "Port is not available");
  peer.Start();
  // The transmitter goes on, and the release makes a way of its own.
  EXPECT_EQ(peer.Ask("T 1"), "RPRT 0");
  server.ReleaseNow(2, 500);
  EXPECT_TRUE(WaitUntil([&] { return peer.Ask("t") == "0"; }, std::chrono::seconds(5)));
  ASSERT_TRUE(Reaches(State::Linked));
  ASSERT_TRUE(rig.SetFreq(14200000));
  EXPECT_TRUE(Sees("f", "14200000"));
  EXPECT_TRUE(LoopUntil([&] { return rig.Tx() == PM_RX; }));
}

TEST_F(ServerTest, ComesBackWhetherItWasIdleOrBusyWhenItsServerWasKilled) {
  for (const bool busy : {false, true}) {
    if (busy) {
      ASSERT_TRUE(rig.SetFreq(14000000) && rig.SetFreqB(14100000));
    }
    peer.Kill();
    ASSERT_TRUE(Reaches(State::Reconnecting));
    peer.Start();
    ASSERT_TRUE(Reaches(State::Linked));
    ASSERT_TRUE(rig.SetFreq(14200000));
    EXPECT_TRUE(Sees("f", "14200000"));
  }
}

TEST_F(ServerTest, AnotherClientsChangeIsThereWithinHalfASecondAndTheOtherRigDoesNotMind) {
  DummyRig other;
  ASSERT_TRUE(server.SetAddress(1, other.Address()));
  server.Open(1, {});
  ASSERT_TRUE(LoopUntil([&] { return server.Rig1().FreqB() > 0; }));
  params.clear();
  peer.Ask("F 7050000");
  EXPECT_TRUE(LoopUntil([&] { return rig.Freq() == 7050000; }, std::chrono::milliseconds(500)));
  EXPECT_TRUE(LoopUntil([&] { return (params[2] & PM_FREQ) != 0; }));
  EXPECT_EQ(params[1], 0);
  EXPECT_EQ(server.Rig1().Freq(), 145000000);
  ASSERT_TRUE(server.Rig1().SetFreq(3600000));
  EXPECT_TRUE(LoopUntil([&] { return other.Ask("f") == "3600000"; }));
  EXPECT_EQ(peer.Ask("f"), "7050000");
}

TEST_F(ServerTest, AStoppedServerHoldsNothingUp) {
  ASSERT_NO_FATAL_FAILURE(Key());
  peer.Signal(ProcessSignal::Stop);
  QTimer tick;
  QElapsedTimer since;
  qint64 longest = 0;
  const auto measure = [&] { longest = std::max(longest, since.restart()); };
  QObject::connect(&tick, &QTimer::timeout, measure);
  since.start();
  tick.start(25);
  EXPECT_TRUE(Reaches(State::Reconnecting));
  EXPECT_EQ(rig.StatusStr(), "Rig is not responding");
  EXPECT_GT(longest, 0);
  EXPECT_LT(longest, 250);
  peer.Signal(ProcessSignal::Continue);
  ASSERT_TRUE(Reaches(State::Linked) && Sees("t", "1"));
  peer.Signal(ProcessSignal::Stop);
  server.ReleaseNow(2, 500);
  peer.Signal(ProcessSignal::Continue);
  // Without the loop: the release leaves within its call.
  EXPECT_TRUE(WaitUntil([&] { return peer.Ask("t") == "0"; }, std::chrono::seconds(5)));
}

TEST_F(ServerTest, SaysWhenItCannotBeReachedAndIsQuietOnceClosed) {
  server.Close();
  EXPECT_EQ(rig.StatusStr(), "Disabled");
  EXPECT_EQ(server.InterfaceVersion(), 0);
  peer.Kill();
  reached.reset();
  server.Open(2, [this](bool answer) { reached = answer; });
  ASSERT_TRUE(LoopUntil([&] { return reached.has_value(); }));
  EXPECT_FALSE(*reached);
  peer.Start();
  ASSERT_TRUE(Reaches(State::Linked));
  ASSERT_TRUE(rig.SetFreq(7000000));
  bool dropped = true;
  server.Open(1, [&](bool) { dropped = false; });
  server.Close();
  params.clear();
  statuses.clear();
  EXPECT_FALSE(LoopUntil([&] { return !dropped; }, std::chrono::milliseconds(300)));
  EXPECT_TRUE(params.empty() && statuses.empty());
}

}  // namespace
}  // namespace velt
