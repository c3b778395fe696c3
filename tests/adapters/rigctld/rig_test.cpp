// One rig over a scripted channel, in virtual time.
#include <gtest/gtest.h>

#include "adapters/rigctld/fake_rig.h"
#include "adapters/rigctld/rigctld_rig.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

using Lines = std::vector<std::string>;
using State = RigLink::State;

class ScriptedChannel : public ByteChannel {
 public:
  enum class Mood { Answers, Accepts, Refuses, Unreachable };

  explicit ScriptedChannel(VirtualScheduler& scheduler) : scheduler_(scheduler) {}

  Mood mood = Mood::Answers;
  FakeRig rig;
  Milliseconds delay{10};
  int attempts = 0;
  int underWay = 0;
  int mostUnderWay = 0;

  void Connect(const ServerAddress&) override {
    ++attempts;
    underWay = 0;
    later_.clear();
    if (mood == Mood::Unreachable) return;
    later_.push_back(scheduler_.After(
        Milliseconds(1), [this] { mood == Mood::Refuses ? onClosed() : onConnected(); }));
  }
  void Disconnect() override {
    underWay = 0;
    later_.clear();
  }
  void Send(std::string_view bytes) override {
    ++underWay;
    mostUnderWay = std::max(mostUnderWay, underWay);
    if (mood == Mood::Accepts) return;
    const std::string reply = rig.Answer(std::string(bytes.substr(0, bytes.size() - 1)));
    later_.push_back(scheduler_.After(delay, [this, reply] {
      --underWay;
      onBytes(reply);
    }));
  }
  bool SendNow(const ServerAddress&, std::string_view bytes, Milliseconds) override {
    Send(bytes);
    return true;
  }
  void Break(Mood then) {
    mood = then;
    later_.clear();
    onClosed();
  }

 private:
  VirtualScheduler& scheduler_;
  std::vector<Scheduler::Handle> later_;
};

struct RigTest : testing::Test {
  VirtualScheduler time;
  ScriptedChannel channel{time};
  CrashLine crashLine;
  int statusEvents = 0;
  int32_t params = 0;
  RigctldRig rig{channel,
                 time,
                 crashLine,
                 {[this] { ++statusEvents; }, [this](int32_t bits) { params |= bits; }}};
  FakeRig& peer = channel.rig;
  std::vector<bool> reached;

  void Open() {
    rig.Open({"host", 1}, [this](bool ok) { reached.push_back(ok); });
  }
  void OpenAndSettle() {
    Open();
    time.Advance(Milliseconds(300));
    ASSERT_EQ(rig.Link().state, State::Linked);
    peer.lines.clear();
  }
};

TEST_F(RigTest, ShowsTheRigAndFollowsIt) {
  OpenAndSettle();
  EXPECT_EQ(reached, std::vector{true});
  EXPECT_EQ(rig.Freq(), 14074000);
  EXPECT_EQ(rig.FreqA(), 14074000);
  EXPECT_EQ(rig.FreqB(), 7074000);
  EXPECT_EQ(rig.Mode(), PM_SSB_U);
  EXPECT_EQ(rig.GetTxFrequency(), 0);
  EXPECT_EQ(rig.StatusStr(), "On-line");
  EXPECT_EQ(rig.RigType(), "Hamlib Dummy");
  params = 0;
  peer.freq["VFOA"] = 3573000;
  peer.mode = "RTTY";
  peer.keyed = peer.split = 1;
  time.Advance(Milliseconds(500));
  EXPECT_EQ(params, PM_FREQ | PM_FREQA | PM_UNKNOWN | PM_TX | PM_SPLITON);
  EXPECT_EQ(rig.Freq(), 3573000);
  EXPECT_EQ(rig.Mode(), 0);
  EXPECT_EQ(rig.Tx(), PM_TX);
  EXPECT_EQ(rig.GetTxFrequency(), 7074000);
  peer.split = 0;
  time.Advance(Milliseconds(300));
  EXPECT_EQ(rig.GetTxFrequency(), 3573000);
}

TEST_F(RigTest, ChecksBeforeSending) {
  Open();
  EXPECT_FALSE(rig.SetFreq(7000000)) << "not linked yet";
  EXPECT_FALSE(rig.SetTx(PM_TX));
  time.Advance(Milliseconds(300));
  for (const int32_t hz : {-5, 0, 9'999, 2'000'000'001}) EXPECT_FALSE(rig.SetFreqB(hz)) << hz;
  for (const int32_t mode : {0, 7, PM_RX}) EXPECT_FALSE(rig.SetMode(mode)) << mode;
  EXPECT_FALSE(rig.SetTx(PM_TX | PM_RX));
  EXPECT_TRUE(rig.SetFreq(10'000));
  EXPECT_TRUE(rig.SetFreqA(2'000'000'000));
  time.Advance(Milliseconds(300));
  EXPECT_EQ(peer.Writes(), (Lines{"+F 10000", "+F 2000000000"}));
}

TEST_F(RigTest, WritesGoAheadOfPollsWhichNeverPileUp) {
  channel.delay = Milliseconds(400);
  Open();
  time.Advance(Milliseconds(5000));
  peer.lines.clear();
  for (int32_t hz = 7000000; hz < 7000100; ++hz) ASSERT_TRUE(rig.SetFreq(hz));
  EXPECT_EQ(rig.Freq(), 7000099);
  time.Advance(Milliseconds(900));
  EXPECT_EQ(peer.lines.front().substr(0, 2), "+F");
  EXPECT_LE(peer.Writes().size(), 2u);
  EXPECT_EQ(peer.freq["VFOA"], 7000099);
  time.Advance(Milliseconds(10000));
  EXPECT_EQ(channel.mostUnderWay, 1);
  channel.delay = Milliseconds(1);
  time.Advance(Milliseconds(1000));
  peer.lines.clear();
  time.Advance(Milliseconds(1000));
  const auto polls = std::count(peer.lines.begin(), peer.lines.end(), "+f");
  EXPECT_GE(polls, 5);
  EXPECT_LE(polls, 10);
}

TEST_F(RigTest, AnOldValueDoesNotFlickerBackAndTheRealOneIsShown) {
  OpenAndSettle();
  peer.instead["+f"] = FakeRig::Done("get_freq:\nFrequency: 14074000");
  ASSERT_TRUE(rig.SetFreq(14075003));
  for (int i = 0; i < 30; ++i) {
    EXPECT_EQ(rig.Freq(), 14075003) << i * 10 << " ms";
    time.Advance(Milliseconds(10));
  }
  peer.instead["+f"] = FakeRig::Done("get_freq:\nFrequency: 14075000");
  time.Advance(Milliseconds(400));
  EXPECT_EQ(rig.Freq(), 14075000) << "the rig rounds";
  peer.instead["+F 7000000"] = "set_freq: 7000000\nRPRT -9\n";
  ASSERT_TRUE(rig.SetFreq(7000000));
  time.Advance(Milliseconds(150));
  EXPECT_EQ(rig.Freq(), 14075000) << "refused";
}

TEST_F(RigTest, NothingComesBetweenTheCommandsOfAVfoWrite) {
  OpenAndSettle();
  ASSERT_TRUE(rig.SetFreqB(7010000));
  ASSERT_TRUE(rig.SetFreqA(7020000));
  EXPECT_EQ(rig.FreqB(), 7010000);
  EXPECT_EQ(rig.Freq(), 7020000);
  while (peer.vfo != "VFOB") time.Advance(Milliseconds(1));
  rig.SetTx(PM_RX);
  time.Advance(Milliseconds(300));
  const Lines lines = peer.Since("+V VFOB");
  ASSERT_GE(lines.size(), 6u);
  EXPECT_EQ(Lines(lines.begin(), lines.begin() + 6),
            (Lines{"+V VFOB", "+F 7010000", "+V VFOA", "+T 0", "+v", "+F 7020000"}));
}

TEST_F(RigTest, AfterABreakTheReleaseComesFirstThenTheVfo) {
  OpenAndSettle();
  ASSERT_TRUE(rig.SetTx(PM_TX));
  time.Advance(Milliseconds(40));
  EXPECT_EQ(rig.Tx(), PM_TX) << "asked at once";
  ASSERT_TRUE(rig.SetFreqB(7010000));
  while (peer.vfo != "VFOB") time.Advance(Milliseconds(1));
  channel.Break(ScriptedChannel::Mood::Refuses);
  EXPECT_EQ(rig.Link().state, State::Reconnecting);
  EXPECT_TRUE(rig.Link().stale);
  EXPECT_EQ(rig.Freq(), 14074000) << "the last value";
  EXPECT_TRUE(rig.SetTx(PM_RX));
  EXPECT_FALSE(rig.SetTx(PM_TX));
  EXPECT_FALSE(rig.SetFreq(7000000));
  peer.lines.clear();
  channel.mood = ScriptedChannel::Mood::Answers;
  time.Advance(Milliseconds(1000));
  ASSERT_GE(peer.lines.size(), 3u);
  EXPECT_EQ(Lines(peer.lines.begin(), peer.lines.begin() + 3), (Lines{"+T 0", "+V VFOA", "+t"}));
  EXPECT_EQ(peer.Writes(), (Lines{"+T 0", "+V VFOA"}));
  EXPECT_EQ(rig.Tx(), PM_RX);
  EXPECT_FALSE(rig.Link().stale);
}

TEST_F(RigTest, RetriesForEverEverSlowerAndCountsDown) {
  channel.mood = ScriptedChannel::Mood::Refuses;
  Open();
  std::vector<int64_t> gaps;
  SteadyTime last = time.Now();
  for (int seen = channel.attempts; gaps.size() < 8;) {
    time.Advance(Milliseconds(10));
    if (channel.attempts == seen) continue;
    seen = channel.attempts;
    gaps.push_back((time.Now() - last) / Milliseconds(1));
    last = time.Now();
  }
  const std::vector<int64_t> planned = {500, 1000, 2000, 4000, 8000, 10000, 10000, 10000};
  for (size_t i = 0; i < gaps.size(); ++i) EXPECT_NEAR(gaps[i], planned[i], 20) << i;
  EXPECT_EQ(reached, std::vector{false});
  EXPECT_EQ(rig.StatusStr(), "Port is not available");
  time.Advance(Milliseconds(2500));
  EXPECT_EQ(rig.Link().retryInSeconds, 8);
  statusEvents = 0;
  time.Advance(Milliseconds(3000));
  EXPECT_EQ(rig.Link().retryInSeconds, 5);
  EXPECT_EQ(statusEvents, 3);
  channel.mood = ScriptedChannel::Mood::Answers;
  time.Advance(Milliseconds(6000));
  EXPECT_EQ(rig.Link().state, State::Linked);
  EXPECT_EQ(rig.Link().retryInSeconds, 0);
  time.Advance(Milliseconds(4000));
  channel.Break(ScriptedChannel::Mood::Answers);
  time.Advance(Milliseconds(700));
  EXPECT_EQ(rig.Link().state, State::Linked) << "after a good link it starts from the shortest";
}

TEST_F(RigTest, GivesUpWithinEachKindsLimit) {
  struct Case {
    ScriptedChannel::Mood mood;
    Milliseconds limit;
    std::string status;
  };
  for (const Case& c :
       {Case{ScriptedChannel::Mood::Unreachable, Milliseconds(3000), "Port is not available"},
        Case{ScriptedChannel::Mood::Accepts, Milliseconds(2001), "Rig is not responding"}}) {
    rig.Close();
    channel.mood = c.mood;
    Open();
    time.Advance(c.limit - Milliseconds(1));
    EXPECT_EQ(rig.Link().state, State::Connecting);
    time.Advance(Milliseconds(2));
    EXPECT_EQ(rig.Link().state, State::Reconnecting);
    EXPECT_EQ(rig.StatusStr(), c.status);
  }
  channel.mood = ScriptedChannel::Mood::Answers;
  time.Advance(Milliseconds(2000));
  channel.mood = ScriptedChannel::Mood::Accepts;
  channel.Break(ScriptedChannel::Mood::Accepts);
  rig.SetTx(PM_RX);
  while (!channel.underWay) time.Advance(Milliseconds(1));
  time.Advance(Milliseconds(999));
  EXPECT_EQ(rig.Link().retryInSeconds, 0);
  time.Advance(Milliseconds(1));
  EXPECT_GT(rig.Link().retryInSeconds, 0);
}

TEST_F(RigTest, AForeignAnswerEndsTheConnection) {
  for (const char* answer :
       {"RPRT 0\n", "get_mode:\nMode: USB\nRPRT 0\n", "HTTP/1.1 400 Bad Request\r\nRPRT 0\r\n"}) {
    OpenAndSettle();
    peer.instead["+f"] = answer;
    time.Advance(Milliseconds(200));
    EXPECT_EQ(rig.Link().state, State::Reconnecting) << answer;
    EXPECT_EQ(rig.Freq(), 14074000);
    peer.instead.clear();
    rig.Close();
  }
}

TEST_F(RigTest, IsNotRespondingOnlyAfterSeveralFailures) {
  OpenAndSettle();
  peer.instead["+m"] = "get_mode:\nRPRT -6\n";
  peer.instead["+t"] = "get_ptt:\nRPRT -5\n";
  time.Advance(Milliseconds(2000));
  EXPECT_EQ(rig.StatusStr(), "On-line") << "its frequency comes";
  peer.instead = {{"+f", "get_freq:\nRPRT -5\n"}};
  peer.lines.clear();
  while (std::count(peer.lines.begin(), peer.lines.end(), "+f") < 3) {
    EXPECT_EQ(rig.StatusStr(), "On-line");
    time.Advance(Milliseconds(1));
  }
  time.Advance(Milliseconds(50));
  EXPECT_EQ(rig.Link().state, State::Silent);
  EXPECT_EQ(rig.StatusStr(), "Rig is not responding");
  EXPECT_TRUE(rig.Link().stale);
  EXPECT_FALSE(rig.SetFreq(7000000));
  peer.instead["+\\get_powerstat"] = FakeRig::Done("get_powerstat:\nPower Status: 0");
  time.Advance(Milliseconds(2000));
  EXPECT_EQ(rig.StatusStr(), "Rig is turned off");
  peer.instead.clear();
  time.Advance(Milliseconds(1500));
  EXPECT_EQ(rig.StatusStr(), "On-line");
}

TEST_F(RigTest, LivesWithAServerThatDoesNotKnowACommand) {
  for (const char* line : {"+v", "+\\get_vfo_info VFOA", "+\\dump_caps"}) peer.instead[line] = "";
  Open();
  time.Advance(Milliseconds(30000));
  EXPECT_EQ(rig.Link().state, State::Linked);
  peer.lines.clear();
  time.Advance(Milliseconds(8000));
  EXPECT_EQ(rig.Link().state, State::Linked);
  ASSERT_TRUE(rig.SetFreqB(7010000));
  time.Advance(Milliseconds(200));
  EXPECT_EQ(peer.Writes(), (Lines{"+V VFOB", "+F 7010000", "+V VFOA"}));
}

TEST_F(RigTest, ReleaseNowGoesPastTheCommandUnderWay) {
  OpenAndSettle();
  ASSERT_TRUE(rig.SetTx(PM_TX));
  time.Advance(Milliseconds(500));
  channel.delay = Milliseconds(300);
  ASSERT_TRUE(rig.SetMode(PM_AM));
  time.Advance(Milliseconds(20));
  rig.ReleaseNow(Milliseconds(100));
  EXPECT_EQ(peer.keyed, 0);
  time.Advance(Milliseconds(5000));
  EXPECT_EQ(rig.Link().state, State::Linked) << "both replies were taken in order";
  EXPECT_EQ(std::count(peer.lines.begin(), peer.lines.end(), "+T 0"), 1);
}

TEST_F(RigTest, MovingToAnotherServerTakesNothingAlong) {
  OpenAndSettle();
  channel.Break(ScriptedChannel::Mood::Refuses);
  rig.SetTx(PM_RX);
  channel.mood = ScriptedChannel::Mood::Answers;
  peer.lines.clear();
  rig.Move({"other", 2});
  EXPECT_EQ(rig.Freq(), 0);
  time.Advance(Milliseconds(500));
  EXPECT_EQ(rig.Freq(), 14074000);
  EXPECT_EQ(peer.Writes(), Lines());
}

}  // namespace
}  // namespace velt
