// What everything above relies on, asked of a real server with its dummy rig and of the simulated
// rig, so that what tests see of the one holds for the other; and what only the real one can show.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <algorithm>

#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/live_loop.h"
#include "adapters/rigctld/rigctld_server.h"
#include "adapters/simulated_rig/simulated_rig.h"
#include "support/rig_recipe.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

using State = RigLink::State;

// Rig 2 and its server, whichever they are.
struct Bench {
  virtual ~Bench() = default;
  virtual IOmniRigX& Server() = 0;
  virtual bool Until(const std::function<bool()>& condition) = 0;
  virtual void Vanish() = 0;
  virtual void ComeBack() = 0;  // keyed if it was so
};

struct RealBench : Bench {
  DummyRig peer;
  QtScheduler scheduler;
  RigctldServer server{scheduler};

  RealBench() { server.SetAddress(2, peer.Address()); }
  IOmniRigX& Server() override { return server; }
  bool Until(const std::function<bool()>& condition) override { return LoopUntil(condition); }
  void Vanish() override { peer.Kill(); }
  void ComeBack() override {
    peer.Start();
    peer.Ask("T 1");
  }
};

struct SimulatedBench : Bench {
  VirtualScheduler scheduler;
  SimulatedRigServer server{scheduler};

  IOmniRigX& Server() override { return server; }
  bool Until(const std::function<bool()>& condition) override {
    for (int ms = 0; ms < 8000 && !condition(); ++ms) scheduler.Advance(Milliseconds(1));
    return condition();
  }
  void Vanish() override { server.Rig2().Vanish(); }
  void ComeBack() override { server.Rig2().ComeBack(); }
};

// With a real server, or without.
struct RigContract : testing::TestWithParam<bool> {
  const std::unique_ptr<Bench> owned{GetParam() ? static_cast<Bench*>(new RealBench)
                                                : new SimulatedBench};
  Bench& bench = *owned;
  IOmniRigX& server = bench.Server();
  IRigX& rig = server.Rig2();
  int32_t params = 0;
  std::optional<bool> reached;
  const Connection connection = server.paramsChanged.Listen(
      [this](int32_t number, int32_t bits) { params |= number == 2 ? bits : -1; });

  void SetUp() override {
    EXPECT_FALSE(rig.SetFreq(7000000) || rig.SetTx(PM_TX)) << "not open";
    Open();
    ASSERT_TRUE(Until([&] { return rig.FreqB() > 0 && Tells(TxReport::Receives); }));
    EXPECT_EQ(reached, true);
  }
  void Open() {
    reached.reset();
    server.Open(2, [this](bool answer) { reached = answer; });
    EXPECT_FALSE(reached) << "answered within the call";
    EXPECT_EQ(rig.Link().state, State::Connecting);
  }
  bool Until(const std::function<bool()>& condition) { return bench.Until(condition); }
  bool Tells(TxReport report) const { return rig.Transmitter() == report; }
  void ExpectLink(State state, RigLink::Cause cause, const std::string& status) {
    EXPECT_TRUE(Until([&] { return rig.Link().state == state && rig.Link().cause == cause; }));
    EXPECT_EQ(rig.StatusStr(), status);
    EXPECT_EQ(rig.Recipe().has_value(), state == State::Linked);
  }
};

INSTANTIATE_TEST_SUITE_P(, RigContract, testing::Bool());

TEST_P(RigContract, WritesReadBackAtOnceAndReachTheRig) {
  params = 0;
  for (const int32_t hz : {-5, 0, 9'999, 2'000'000'001}) {
    EXPECT_FALSE(rig.SetFreq(hz) || rig.SetFreqA(hz) || rig.SetFreqB(hz)) << hz;
  }
  for (const int32_t mode : {0, 7, PM_RX}) EXPECT_FALSE(rig.SetMode(mode)) << mode;
  EXPECT_FALSE(rig.SetTx(PM_TX | PM_RX));
  EXPECT_TRUE(rig.SetFreqB(7100000) && rig.SetFreqA(7200000) && rig.SetMode(PM_AM));
  EXPECT_TRUE(rig.FreqB() == 7100000 && rig.FreqA() == 7200000);
  EXPECT_EQ(rig.Freq(), 7200000) << "VFO A is the current one";
  EXPECT_TRUE(rig.SetFreq(7300000));
  EXPECT_EQ(rig.FreqA(), 7300000);
  EXPECT_TRUE(rig.WritesWait() && Until([&] { return !rig.WritesWait(); }));
  EXPECT_EQ(rig.Mode(), PM_AM);
  EXPECT_TRUE(Until([&] { return params == (PM_FREQ | PM_FREQA | PM_FREQB | PM_AM); }));
}

TEST_P(RigContract, TheTransmitterIsAsItTells) {
  EXPECT_FALSE(rig.ReleaseAccepted());
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(rig.SetTx(PM_TX));
    EXPECT_TRUE(Tells(TxReport::Receives)) << "not before the rig says so";
    EXPECT_FALSE(rig.ReleaseAccepted());
    EXPECT_TRUE(Until([&] { return Tells(TxReport::Transmits); }));
    EXPECT_EQ(rig.GetTxFrequency(), rig.Freq());
    ASSERT_TRUE(rig.SetTx(PM_RX));
    EXPECT_TRUE(!rig.ReleaseAccepted() && Tells(TxReport::Transmits));
    EXPECT_TRUE(Until([&] { return rig.ReleaseAccepted() && Tells(TxReport::Receives); }));
    EXPECT_EQ(rig.GetTxFrequency(), 0);
  }
  ASSERT_TRUE(rig.SetTx(PM_TX) && Until([&] { return Tells(TxReport::Transmits); }));
  server.ReleaseNow(2, 500);
  EXPECT_TRUE(Until([&] { return Tells(TxReport::Receives); }));
}

TEST_P(RigContract, AfterALostLinkTheReleaseComesFirst) {
  ASSERT_TRUE(rig.SetTx(PM_TX) && Until([&] { return Tells(TxReport::Transmits); }));
  bench.Vanish();
  ExpectLink(State::Reconnecting, RigLink::Cause::Refused, "Port is not available");
  EXPECT_TRUE(rig.Link().stale && rig.Freq() > 0 && rig.GetTxFrequency() > 0);
  EXPECT_TRUE(Tells(TxReport::Untold));
  EXPECT_FALSE(rig.SetFreq(7000000) || rig.SetMode(PM_AM) || rig.SetTx(PM_TX));
  EXPECT_TRUE(rig.SetTx(PM_RX) && !rig.ReleaseAccepted());
  bench.ComeBack();
  ExpectLink(State::Linked, RigLink::Cause::None, "On-line");
  EXPECT_TRUE(Until([&] { return rig.ReleaseAccepted() && Tells(TxReport::Receives); }));
}

TEST_P(RigContract, IsQuietOnceClosedAndSaysWhenItCannotBeReached) {
  server.Close();
  ExpectLink(State::Off, RigLink::Cause::None, "Disabled");
  bench.Vanish();
  Open();
  EXPECT_TRUE(Until([&] { return reached == false; }));
  bench.ComeBack();
  ExpectLink(State::Linked, RigLink::Cause::None, "On-line");
  ASSERT_TRUE(rig.SetFreq(7000000));
  server.Close();
  params = 0;
  int turns = 0;
  EXPECT_TRUE(Until([&] { return ++turns >= 300 && !rig.WritesWait(); }));
  EXPECT_EQ(params, 0);
  Open();
  EXPECT_TRUE(Until([&] { return rig.Freq() == 7000000; })) << "what was written still went out";
}

struct ServerTest : testing::Test, RealBench {
  IRigX& rig = server.Rig2();

  void SetUp() override {
    server.Open(2, {});
    ASSERT_TRUE(LoopUntil([&] { return rig.FreqB() > 0 && rig.RigType() == "Hamlib Dummy"; }));
  }
  // A second client sees the answer in time.
  bool Sees(const std::string& command, const std::string& answer) {
    return LoopUntil([&] { return peer.Ask(command) == answer; });
  }
};

TEST_F(ServerTest, EveryWriteIsSeenByAnotherClient) {
  const std::pair<int32_t, std::string> modes[] = {
      {PM_SSB_U, "USB"}, {PM_SSB_L, "LSB"},    {PM_CW_U, "CW"}, {PM_CW_L, "CWR"},
      {PM_AM, "AM"},     {PM_DIG_U, "PKTUSB"}, {PM_FM, "FM"}};
  for (const auto& [mode, name] : modes) {
    EXPECT_TRUE(rig.SetMode(mode) && Sees("m", name) && rig.Mode() == mode) << name;
  }
  // Both go to their own VFO whichever is current.
  for (const std::string current : {"VFOA", "VFOB"}) {
    peer.Ask("V " + current);
    ASSERT_TRUE(rig.SetFreqA(3700000) && rig.SetFreqB(3600000));
    EXPECT_TRUE(Sees("\\get_vfo_info VFOA", "3700000") && Sees("\\get_vfo_info VFOB", "3600000"));
    EXPECT_TRUE(Sees("v", current == "VFOA" ? "Main" : "Sub")) << peer.Ask("v");
    EXPECT_TRUE(LoopUntil([&] { return rig.Freq() == (current == "VFOA" ? 3700000 : 3600000); }));
    EXPECT_TRUE(rig.SetFreq(7300000) && Sees("f", "7300000"));
  }
}

TEST_F(ServerTest, ANameIsLookedUpAndTheRecipeIsOfThePresentConnection) {
  ASSERT_TRUE(server.SetAddress(2, "localhost" + peer.Address().substr(9)));
  EXPECT_FALSE(rig.Recipe());
  ASSERT_TRUE(LoopUntil([&] { return rig.RigType() == "Hamlib Dummy"; }));
  EXPECT_EQ(FieldsOf(rig.Recipe().value()), FieldsOf(RigRecipe(peer.Port())));
}

TEST_F(ServerTest, AStoppedServerHoldsNothingUp) {
  ASSERT_TRUE(rig.SetTx(PM_TX) && Sees("t", "1"));
  peer.Signal(SIGSTOP);
  QElapsedTimer since;
  since.start();
  qint64 longest = 0;
  EXPECT_TRUE(LoopUntil([&] {
    longest = std::max(longest, since.restart());
    return rig.Link().cause == RigLink::Cause::NoAnswer;
  }));
  EXPECT_LT(longest, 250);
  peer.Signal(SIGCONT);
  ASSERT_TRUE(LoopUntil([&] { return rig.Link().state == State::Linked; }) && Sees("t", "1"));
  peer.Signal(SIGSTOP);
  server.ReleaseNow(2, 500);
  peer.Signal(SIGCONT);
  // Without the loop: the release leaves within its call, and makes a way of its own.
  EXPECT_TRUE(peer.Has("t", "0"));
  peer.Kill();
  ASSERT_TRUE(LoopUntil([&] { return rig.Link().state == State::Reconnecting; }));
  peer.Start();
  EXPECT_EQ(peer.Ask("T 1"), "RPRT 0");
  server.ReleaseNow(2, 500);
  EXPECT_TRUE(peer.Has("t", "0"));
}

}  // namespace
}  // namespace velt
