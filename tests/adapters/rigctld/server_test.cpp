// The link to a real server with its dummy rig.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <algorithm>
#include <set>

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

  void SetUp() override {
    ASSERT_TRUE(server.SetAddress(2, peer.Address()));
    server.Open(2, {});
    ASSERT_TRUE(LoopUntil([&] { return rig.FreqB() > 0 && rig.RigType() == "Hamlib Dummy"; }));
  }
  // A second client sees the answer in time.
  bool Sees(const std::string& command, const std::string& answer) {
    return LoopUntil([&] { return peer.Ask(command) == answer; });
  }
  bool Reaches(State state, RigLink::Cause cause = RigLink::Cause::None) {
    return LoopUntil([&] { return rig.Link().state == state && rig.Link().cause == cause; });
  }
  void Key() {
    ASSERT_TRUE(rig.SetTx(PM_TX));
    ASSERT_TRUE(LoopUntil([&] { return rig.Transmitter() == TxReport::Transmits; }));
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
  }
}

// The recipe is what somebody else needs to release: followed to the letter over a connection of
// its own, also where the server was named.
TEST_F(ServerTest, TheRecipeReleasesAndIsOfThePresentConnection) {
  ASSERT_TRUE(server.SetAddress(2, "localhost" + peer.Address().substr(9)));
  EXPECT_FALSE(rig.Recipe());
  ASSERT_TRUE(LoopUntil([&] { return rig.RigType() == "Hamlib Dummy"; }));
  ASSERT_NO_FATAL_FAILURE(Key());
  const ReleaseRecipe recipe = rig.Recipe().value();
  EXPECT_EQ(recipe.host + ":" + std::to_string(recipe.port), peer.Address());
  const auto ask = [&](const std::string& bytes) {
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QString::fromStdString(recipe.host)), recipe.port);
    socket.write(bytes.c_str());
    std::set<std::string> lines;
    const auto ended = [&] {
      return std::ranges::any_of(lines, [&](auto& l) { return l.starts_with(recipe.answerEnd); });
    };
    while (!ended() && (socket.canReadLine() || socket.waitForReadyRead(3000))) {
      if (socket.canReadLine()) lines.insert(socket.readLine().chopped(1).toStdString());
    }
    return lines;
  };
  EXPECT_TRUE(ask(recipe.ask).contains(recipe.tells + "1"));
  EXPECT_TRUE(ask(recipe.release).contains(recipe.accepted));
  EXPECT_TRUE(ask(recipe.ask).contains(recipe.receives));
  EXPECT_EQ(peer.Ask("t"), "0");
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
  EXPECT_TRUE(Reaches(State::Reconnecting, RigLink::Cause::NoAnswer));
  EXPECT_GT(longest, 0);
  EXPECT_LT(longest, 250);
  peer.Signal(ProcessSignal::Continue);
  ASSERT_TRUE(Reaches(State::Linked) && Sees("t", "1"));
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

TEST_F(ServerTest, ANameThatNobodyKnowsIsToldAsSuch) {
  ASSERT_TRUE(server.SetAddress(2, "no-such-host.invalid:4532"));
  EXPECT_TRUE(Reaches(State::Reconnecting, RigLink::Cause::HostNotFound));
}

}  // namespace
}  // namespace velt
