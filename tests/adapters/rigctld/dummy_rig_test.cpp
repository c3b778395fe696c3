// The link to a real server with its dummy rig.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <csignal>

#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/live_loop.h"
#include "adapters/rigctld/rigctld_server.h"

namespace velt {
namespace {

using State = RigLink::State;

struct DummyRigTest : testing::Test {
  QtScheduler scheduler;
  DummyRig peer;
  RigctldServer server{scheduler};
  IRigX& rig = server.Rig1();

  void SetUp() override {
    server.SetAddress(1, peer.Address());
    server.Open(1, {});
    ASSERT_TRUE(LoopUntil([&] { return rig.FreqB() > 0 && !rig.RigType().empty(); }));
  }
  // A second client sees the answer in time.
  bool Sees(const std::string& command, const std::string& answer) {
    return LoopUntil([&] { return peer.Ask(command) == answer; });
  }
};

TEST_F(DummyRigTest, EveryWriteIsSeenByAnotherClient) {
  EXPECT_EQ(rig.RigType(), "Hamlib Dummy");
  ASSERT_TRUE(rig.SetFreq(14250000));
  EXPECT_TRUE(Sees("f", "14250000"));
  const std::pair<int32_t, std::string> modes[] = {
      {PM_SSB_U, "USB"}, {PM_SSB_L, "LSB"},    {PM_CW_U, "CW"}, {PM_CW_L, "CWR"},
      {PM_AM, "AM"},     {PM_DIG_U, "PKTUSB"}, {PM_FM, "FM"}};
  for (const auto& [mode, name] : modes) {
    ASSERT_TRUE(rig.SetMode(mode));
    EXPECT_TRUE(Sees("m", name));
    EXPECT_EQ(rig.Mode(), mode);
  }
  ASSERT_TRUE(rig.SetFreqB(7100000));
  ASSERT_TRUE(rig.SetFreqA(7200000));
  EXPECT_TRUE(Sees("f", "7200000"));
  EXPECT_TRUE(Sees("\\get_vfo_info VFOB", "7100000"));
  ASSERT_TRUE(rig.SetTx(PM_TX));
  EXPECT_TRUE(Sees("t", "1"));
  ASSERT_TRUE(rig.SetTx(PM_RX));
  EXPECT_TRUE(Sees("t", "0"));
}

TEST_F(DummyRigTest, WritesToTheRightVfoWhileBIsCurrent) {
  peer.Ask("V VFOB");
  ASSERT_TRUE(rig.SetFreqA(3700000));
  ASSERT_TRUE(rig.SetFreqB(3600000));
  EXPECT_TRUE(Sees("f", "3600000"));
  EXPECT_TRUE(Sees("\\get_vfo_info VFOA", "3700000"));
  EXPECT_EQ(peer.Ask("v"), "Sub");
  EXPECT_TRUE(LoopUntil([&] { return rig.Freq() == 3600000 && rig.FreqA() == 3700000; }));
}

TEST_F(DummyRigTest, ComesBackAfterItsServerWasKilled) {
  const auto idle = [] {};
  const auto busy = [&] { ASSERT_TRUE(rig.SetFreq(14000000) && rig.SetFreqB(14100000)); };
  const auto keyed = [&] {
    ASSERT_TRUE(rig.SetTx(PM_TX));
    ASSERT_TRUE(LoopUntil([&] { return rig.Tx() == PM_TX; }));
  };
  for (const std::function<void()>& prepare : {std::function<void()>(idle), {busy}, {keyed}}) {
    prepare();
    peer.Kill();
    ASSERT_TRUE(LoopUntil([&] { return rig.Link().state == State::Reconnecting; }));
    EXPECT_EQ(rig.StatusStr(), "Port is not available");
    peer.Start();
    ASSERT_TRUE(LoopUntil([&] { return rig.Link().state == State::Linked; }));
    ASSERT_TRUE(rig.SetFreq(14200000));
    EXPECT_TRUE(Sees("f", "14200000"));
    EXPECT_TRUE(LoopUntil([&] { return rig.Tx() == PM_RX; }));
  }
}

TEST_F(DummyRigTest, AStoppedServerHoldsNothingUp) {
  peer.Signal(SIGSTOP);
  QTimer tick;
  int ticks = 0;
  QElapsedTimer since;
  qint64 longest = 0;
  QObject::connect(&tick, &QTimer::timeout, [&] {
    longest = std::max(longest, since.restart());
    ++ticks;
  });
  tick.setTimerType(Qt::PreciseTimer);
  since.start();
  tick.start(25);
  rig.SetFreq(14300000);
  EXPECT_TRUE(LoopUntil([&] { return rig.Link().state == State::Reconnecting; }));
  EXPECT_EQ(rig.StatusStr(), "Rig is not responding");
  EXPECT_GT(ticks, 30);
  EXPECT_LT(longest, 250);
  peer.Signal(SIGCONT);
  EXPECT_TRUE(LoopUntil([&] { return rig.Link().state == State::Linked; }));
}

}  // namespace
}  // namespace velt
