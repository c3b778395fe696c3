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
  virtual void ComeBack() = 0;  // doing what it did
  virtual void Key() = 0;
  virtual bool Transmits() = 0;
};

struct RealBench : Bench {
  DummyRig peer;
  bool keyed = false;
  QtScheduler scheduler;
  RigctldServer server{scheduler};

  RealBench() { server.SetAddress(2, peer.Address()); }
  IOmniRigX& Server() override { return server; }
  bool Until(const std::function<bool()>& condition) override { return LoopUntil(condition); }
  void Vanish() override {
    keyed = Transmits();
    peer.Kill();
  }
  void ComeBack() override {
    peer.Start();
    if (keyed) Key();
  }
  void Key() override { peer.Ask("T 1"); }
  bool Transmits() override { return peer.Ask("t") == "1"; }
};

struct SimulatedBench : Bench {
  VirtualScheduler scheduler;
  SimulatedRigServer server{scheduler};
  SimulatedRig& rig = server.Rig2();

  IOmniRigX& Server() override { return server; }
  bool Until(const std::function<bool()>& condition) override {
    for (int ms = 0; ms < 8000 && !condition(); ++ms) scheduler.Advance(Milliseconds(1));
    return condition();
  }
  void Vanish() override { rig.Vanish(); }
  void ComeBack() override { rig.ComeBack(); }
  void Key() override { rig.Key(true); }
  bool Transmits() override { return rig.Transmits(); }
};

struct RigContract : testing::TestWithParam<std::unique_ptr<Bench> (*)()> {
  std::unique_ptr<Bench> owned = GetParam()();
  Bench& bench = *owned;
  IOmniRigX& server = bench.Server();
  IRigX& rig = server.Rig2();
  bool calling = false;
  int32_t params = 0;
  int statuses = 0;
  std::optional<bool> reached;
  Connections connections;

  void SetUp() override {
    connections += server.paramsChanged.Listen([this](int32_t number, int32_t bits) {
      EXPECT_TRUE(!calling && number == 2);
      params |= bits;
    });
    connections += server.statusChanged.Listen([this](int32_t number) {
      EXPECT_TRUE(!calling && number == 2);
      ++statuses;
    });
    EXPECT_FALSE(rig.SetFreq(7000000) || rig.SetTx(PM_TX)) << "not open";
    Open();
    ASSERT_TRUE(Until([&] { return rig.FreqB() > 0 && Tells(TxReport::Receives); }));
    EXPECT_EQ(reached, true);
    EXPECT_EQ(server.InterfaceVersion(), 0x101);
  }
  void Open() {
    calling = true;
    reached.reset();
    server.Open(2, [this](bool answer) { reached = answer; });
    EXPECT_FALSE(reached) << "answered within the call";
    EXPECT_EQ(rig.Link().state, State::Connecting);
    calling = false;
  }
  bool Until(const std::function<bool()>& condition) { return bench.Until(condition); }
  bool Tells(TxReport report) const { return rig.Transmitter() == report; }
  void ExpectLink(State state, RigLink::Cause cause, const std::string& status) {
    EXPECT_TRUE(Until([&] { return rig.Link().state == state && rig.Link().cause == cause; }));
    EXPECT_EQ(rig.StatusStr(), status);
    EXPECT_EQ(rig.Recipe().has_value(), state == State::Linked);
  }
};

template <class B>
std::unique_ptr<Bench> Make() {
  return std::make_unique<B>();
}

INSTANTIATE_TEST_SUITE_P(, RigContract, testing::Values(&Make<RealBench>, &Make<SimulatedBench>),
                         [](const auto& suite) { return suite.index == 0 ? "Real" : "Simulated"; });

TEST_P(RigContract, WritesReadBackAtOnceAndReachTheRig) {
  params = 0;
  calling = true;
  for (const int32_t hz : {-5, 0, 9'999, 2'000'000'001}) {
    EXPECT_FALSE(rig.SetFreq(hz) || rig.SetFreqA(hz) || rig.SetFreqB(hz)) << hz;
  }
  for (const int32_t mode : {0, 7, PM_RX}) EXPECT_FALSE(rig.SetMode(mode)) << mode;
  EXPECT_FALSE(rig.SetTx(PM_TX | PM_RX));
  EXPECT_TRUE(rig.SetFreqB(7100000) && rig.SetFreqA(7200000) && rig.SetMode(PM_AM));
  EXPECT_EQ(rig.FreqA(), 7200000);
  EXPECT_EQ(rig.FreqB(), 7100000);
  EXPECT_EQ(rig.Freq(), 7200000) << "VFO A is the current one";
  EXPECT_TRUE(rig.SetFreq(7300000));
  EXPECT_EQ(rig.FreqA(), 7300000);
  EXPECT_EQ(rig.Mode(), PM_AM);
  calling = false;
  const int32_t told = PM_FREQ | PM_FREQA | PM_FREQB | PM_AM;
  EXPECT_TRUE(Until([&] { return (params & told) == told; }));
}

TEST_P(RigContract, TheTransmitterIsAsItTells) {
  EXPECT_FALSE(rig.ReleaseAccepted());
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(rig.SetTx(PM_TX));
    EXPECT_TRUE(Tells(TxReport::Receives)) << "not before the rig says so";
    EXPECT_FALSE(rig.ReleaseAccepted());
    EXPECT_TRUE(Until([&] { return Tells(TxReport::Transmits); }));
    EXPECT_TRUE(bench.Transmits());
    EXPECT_EQ(rig.GetTxFrequency(), rig.Freq());
    ASSERT_TRUE(rig.SetTx(PM_RX));
    EXPECT_FALSE(rig.ReleaseAccepted());
    EXPECT_TRUE(Tells(TxReport::Transmits));
    EXPECT_TRUE(Until([&] { return rig.ReleaseAccepted() && Tells(TxReport::Receives); }));
    EXPECT_FALSE(bench.Transmits());
    EXPECT_EQ(rig.GetTxFrequency(), 0);
  }
  bench.Key();
  EXPECT_TRUE(Until([&] { return Tells(TxReport::Transmits); })) << "somebody else";
  EXPECT_TRUE(rig.ReleaseAccepted());
  server.ReleaseNow(2, 500);
  EXPECT_TRUE(Until([&] { return Tells(TxReport::Receives); }));
}

TEST_P(RigContract, AfterALostLinkTheReleaseComesFirst) {
  ASSERT_TRUE(rig.SetTx(PM_TX));
  ASSERT_TRUE(Until([&] { return Tells(TxReport::Transmits); }));
  bench.Vanish();
  ExpectLink(State::Reconnecting, RigLink::Cause::Refused, "Port is not available");
  EXPECT_TRUE(rig.Link().stale && rig.Freq() > 0 && rig.GetTxFrequency() > 0);
  EXPECT_TRUE(Tells(TxReport::Untold));
  EXPECT_FALSE(rig.SetFreq(7000000) || rig.SetMode(PM_AM) || rig.SetTx(PM_TX));
  EXPECT_TRUE(rig.SetTx(PM_RX));
  EXPECT_FALSE(rig.ReleaseAccepted());
  bench.ComeBack();
  ExpectLink(State::Linked, RigLink::Cause::None, "On-line");
  EXPECT_TRUE(Until([&] { return rig.ReleaseAccepted() && Tells(TxReport::Receives); }));
  EXPECT_FALSE(bench.Transmits());
}

TEST_P(RigContract, IsQuietOnceClosedAndSaysWhenItCannotBeReached) {
  server.Close();
  ExpectLink(State::Off, RigLink::Cause::None, "Disabled");
  EXPECT_EQ(server.InterfaceVersion(), 0);
  bench.Vanish();
  Open();
  EXPECT_TRUE(Until([&] { return reached.has_value(); }));
  EXPECT_FALSE(*reached);
  bench.ComeBack();
  ExpectLink(State::Linked, RigLink::Cause::None, "On-line");
  ASSERT_TRUE(rig.SetFreq(7000000));
  bool dropped = true;
  server.Open(1, [&](bool) { dropped = false; });
  server.Close();
  params = 0;
  statuses = 0;
  int turns = 0;
  EXPECT_TRUE(Until([&] { return ++turns >= 300; }));
  EXPECT_TRUE(dropped && params == 0 && statuses == 0);
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
    ASSERT_TRUE(rig.SetMode(mode));
    EXPECT_TRUE(Sees("m", name));
    EXPECT_EQ(rig.Mode(), mode);
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
  ASSERT_TRUE(server.SetAddress(2, "no-such-host.invalid:4532"));
  EXPECT_TRUE(LoopUntil([&] { return rig.Link().cause == RigLink::Cause::HostNotFound; }));
}

TEST_F(ServerTest, AStoppedServerHoldsNothingUp) {
  ASSERT_TRUE(rig.SetTx(PM_TX) && Sees("t", "1"));
  peer.Signal(ProcessSignal::Stop);
  QElapsedTimer since;
  since.start();
  qint64 longest = 0;
  EXPECT_TRUE(LoopUntil([&] {
    longest = std::max(longest, since.restart());
    return rig.Link().cause == RigLink::Cause::NoAnswer;
  }));
  EXPECT_LT(longest, 250);
  peer.Signal(ProcessSignal::Continue);
  ASSERT_TRUE(LoopUntil([&] { return rig.Link().state == State::Linked; }) && Sees("t", "1"));
  peer.Signal(ProcessSignal::Stop);
  server.ReleaseNow(2, 500);
  peer.Signal(ProcessSignal::Continue);
  // Without the loop: the release leaves within its call, and makes a way of its own.
  const auto receives = [&] { return peer.Ask("t") == "0"; };
  EXPECT_TRUE(WaitUntil(receives, std::chrono::seconds(5)));
  peer.Kill();
  ASSERT_TRUE(LoopUntil([&] { return rig.Link().state == State::Reconnecting; }));
  peer.Start();
  EXPECT_EQ(peer.Ask("T 1"), "RPRT 0");
  server.ReleaseNow(2, 500);
  EXPECT_TRUE(WaitUntil(receives, std::chrono::seconds(5)));
}

}  // namespace
}  // namespace velt
