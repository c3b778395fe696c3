// The link's parts, and one rig over a scripted channel, in virtual time.
#include <gtest/gtest.h>

#include "adapters/rigctld/fake_rig.h"
#include "adapters/rigctld/key_watch.h"
#include "adapters/rigctld/rigctld_rig.h"
#include "adapters/rigctld/server_address.h"
#include "adapters/rigctld/write_queue.h"
#include "adapters/simulated_rig/simulated_rig.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;
using State = RigLink::State;

TEST(ServerAddress, TakesHostAndPortAndNothingElse) {
  EXPECT_EQ(ParseServerAddress(" shack-1.lan:1 ")->Text(), "shack-1.lan:1");
  EXPECT_EQ(ParseServerAddress("[::1]:65535")->Text(), "[::1]:65535");
  for (const char* text : {"", "host", ":4532", "host:", "host:0", "host:65536", "host:-1",
                           "host:12x", "host: 12", "ho st:1", "::1:4532", "[]:4532", "a\nb:1"}) {
    EXPECT_FALSE(ParseServerAddress(text)) << text;
  }
}

RigReply CurrentVfo(const std::string& name, int32_t code = 0) {
  return {{"get_vfo:", "VFO: " + name}, code};
}

// Sends everything that waits to a rig on the VFO `current` that refuses one line.
Lines Drain(WriteQueue& queue, const std::string& current = "VFOA", const std::string& no = "") {
  Lines sent;
  for (auto command = queue.Next(); command && sent.size() < 50; command = queue.Next()) {
    sent.push_back(command->line.substr(0, command->line.size() - 1));
    queue.Answered(*command, CurrentVfo(current, sent.back() == no ? -6 : 0));
  }
  return sent;
}

TEST(WriteQueue, NewerReplacesWaitingAndReleaseGoesFirst) {
  WriteQueue queue;
  queue.Put(RigProperty::Freq, 1);
  queue.Put(RigProperty::Mode, PM_AM);
  queue.PutKey();
  queue.Put(RigProperty::Freq, 2);
  EXPECT_EQ(Drain(queue), (Lines{"+M AM -1", "+T 1", "+F 2"}));
  queue.Put(RigProperty::Freq, 3);
  queue.PutKey();
  queue.PutRelease();
  EXPECT_EQ(Drain(queue), (Lines{"+T 0", "+F 3"}));
  queue.PutRelease();
  queue.PutKey();
  EXPECT_EQ(Drain(queue), (Lines{"+T 0", "+T 1"}));
}

TEST(WriteQueue, WritesAVfoWhereItIsAndReturns) {
  struct Case {
    std::string current, refused;
    Lines sent;
  };
  for (const Case& c :
       {Case{"VFOA", "", {"+v", "+V VFOB", "+F 7", "+V VFOA", "+v", "+F 9"}},
        Case{"Sub", "", {"+v", "+F 7", "+v", "+V VFOA", "+F 9", "+V Sub"}},
        Case{"MEM", "", {"+v", "+V VFOB", "+F 7", "+V MEM", "+v", "+V VFOA", "+F 9", "+V MEM"}},
        // Nothing is written to the wrong VFO; the return is tried again, but not for ever.
        Case{"Main", "+V VFOB", {"+v", "+V VFOB", "+V Main", "+v", "+F 9"}},
        Case{"VFOA",
             "+V VFOA",
             {"+v", "+V VFOB", "+F 7", "+V VFOA", "+V VFOA", "+V VFOA", "+v", "+F 9"}}}) {
    WriteQueue queue;
    queue.Put(RigProperty::FreqB, 7);
    queue.Put(RigProperty::FreqA, 9);
    EXPECT_EQ(Drain(queue, c.current, c.refused), c.sent) << c.current;
  }
}

TEST(WriteQueue, ReleaseWaitsForTheWayBackAndSurvivesABreak) {
  // What follows a release asked for after 0, 1, 2, 3 commands of a VFO write: on a link that
  // holds, and after one that breaks.
  const std::pair<Lines, Lines> cases[] = {{{"+T 0", "+v", "+V VFOB", "+F 7", "+V VFOA"}, {"+T 0"}},
                                           {{"+T 0", "+V VFOB", "+F 7", "+V VFOA"}, {"+T 0"}},
                                           {{"+F 7", "+V VFOA", "+T 0"}, {"+T 0", "+V VFOA"}},
                                           {{"+V VFOA", "+T 0"}, {"+T 0", "+V VFOA"}}};
  for (int sentBefore = 0; sentBefore < 4; ++sentBefore) {
    for (const bool breaks : {false, true}) {
      WriteQueue queue;
      queue.Put(RigProperty::FreqB, 7);
      for (int i = 0; i < sentBefore; ++i) queue.Answered(*queue.Next(), CurrentVfo("VFOA"));
      queue.PutRelease();
      if (breaks) queue.Interrupt();
      const auto& [held, broken] = cases[sentBefore];
      EXPECT_EQ(Drain(queue), breaks ? broken : held) << sentBefore;
    }
  }
  WriteQueue queue;
  queue.PutRelease();
  queue.Next();
  queue.Interrupt();
  EXPECT_EQ(Drain(queue), Lines{"+T 0"}) << "a release under way goes again";
}

TEST(KeyWatch, KnowsWhoseTransmissionItIs) {
  KeyWatch watch;
  watch.Reported(true);
  EXPECT_FALSE(watch.Keyed()) << "somebody else's";
  watch.Reported(false);
  watch.KeySent();
  watch.Reported(false);
  EXPECT_TRUE(watch.Keyed()) << "not there yet";
  watch.Reported(true);
  watch.ReleaseAnswered(true, true);
  EXPECT_TRUE(watch.Keyed()) << "until it is seen";
  watch.Reported(false);
  EXPECT_FALSE(watch.Keyed());
  watch.KeySent();
  watch.KeyAnswered(true);
  EXPECT_FALSE(watch.Keyed()) << "refused";
  watch.KeySent();
  watch.ReleaseAnswered(true, false);
  EXPECT_FALSE(watch.Keyed()) << "a rig that cannot report";
}

TEST(SimulatedRig, ReportsWhatItWasTold) {
  VirtualScheduler time;
  SimulatedRigServer server(time);
  IRigX& rig = server.Rig1();
  EXPECT_FALSE(rig.SetTx(PM_TX)) << "not open";
  server.Open(1, {});
  time.Advance(Milliseconds(1));
  for (const int32_t tx : {PM_TX, PM_RX}) {
    ASSERT_TRUE(rig.SetFreq(7000000 + tx) && rig.SetTx(tx));
    EXPECT_EQ(rig.Freq(), 7000000 + tx);
    EXPECT_NE(rig.Tx(), tx) << "a report later";
    time.Advance(Milliseconds(100));
    EXPECT_EQ(rig.Tx(), tx);
  }
  ASSERT_TRUE(rig.SetFreq(14000000));
  server.Rig1().Drift(50);
  time.Advance(std::chrono::seconds(10));
  EXPECT_NEAR(rig.Freq(), 14000500, 50);
  server.Rig1().Vanish();
  time.Advance(Milliseconds(100));
  EXPECT_TRUE(rig.Link().stale);
  EXPECT_FALSE(rig.SetFreq(7000000));
  server.Rig1().ComeBack();
  time.Advance(std::chrono::seconds(15));
  EXPECT_EQ(rig.Link().state, RigLink::State::Linked);
}

enum class Mood { Answers, Accepts, Refuses, Unreachable };

class ScriptedChannel : public ByteChannel {
 public:
  explicit ScriptedChannel(VirtualScheduler& scheduler) : scheduler_(scheduler) {}

  Mood mood = Mood::Answers;
  FakeRig rig;
  Milliseconds delay{10};
  int attempts = 0;
  int underWay = 0;

  void Connect(const ServerAddress&) override {
    ++attempts;
    Disconnect();
    if (mood == Mood::Unreachable) return;
    later_.push_back(scheduler_.After(
        Milliseconds(1), [this] { mood == Mood::Refuses ? onClosed() : onConnected(); }));
  }
  void Disconnect() override {
    underWay = 0;
    later_.clear();
  }
  void Send(std::string_view bytes) override {
    EXPECT_EQ(++underWay, 1) << "one command after the other";
    if (mood == Mood::Accepts) return;
    const std::string reply = rig.Answer(std::string(bytes.substr(0, bytes.size() - 1)));
    later_.push_back(scheduler_.After(delay, [this, reply] {
      onBytes(reply.substr(0, reply.size() / 2));
      if (--underWay < 0) return;
      onBytes(reply.substr(reply.size() / 2));
    }));
  }
  bool SendNow(const ServerAddress&, std::string_view bytes, Milliseconds) override {
    Send(bytes);
    return true;
  }
  void Break() {
    Disconnect();
    onClosed();
  }

 private:
  VirtualScheduler& scheduler_;
  std::vector<Scheduler::Handle> later_;
};

struct RigTest : testing::Test {
  VirtualScheduler time;
  ScriptedChannel channel{time};
  int statusEvents = 0;
  int32_t params = 0;
  RigctldRig::Events events{[this] { ++statusEvents; }, [this](int32_t bits) { params |= bits; }};
  RigctldRig rig{channel, time, events};
  FakeRig& peer = channel.rig;
  std::vector<bool> reached;

  void Open() {
    rig.Open({"host", 1}, [this](bool ok) { reached.push_back(ok); });
  }
  void Pass(int64_t ms) { time.Advance(Milliseconds(ms)); }
  void OpenAndSettle() {
    Open();
    Pass(300);
    ASSERT_EQ(rig.Link().state, State::Linked);
    peer.lines.clear();
  }
};

TEST_F(RigTest, FollowsTheRigWithinHalfASecond) {
  OpenAndSettle();
  EXPECT_EQ(reached, std::vector{true});
  params = 0;
  peer.freq["VFOA"] = 3573000;
  peer.mode = "RTTY";
  peer.keyed = peer.split = 1;
  Pass(500);
  EXPECT_EQ(params, PM_FREQ | PM_FREQA | PM_UNKNOWN | PM_TX | PM_SPLITON);
  EXPECT_EQ(rig.Freq(), 3573000);
  EXPECT_EQ(rig.Mode(), 0);
  EXPECT_EQ(rig.Tx(), PM_TX);
  EXPECT_EQ(rig.GetTxFrequency(), 7074000);
  peer.split = 0;
  Pass(300);
  EXPECT_EQ(rig.GetTxFrequency(), 3573000);
}

TEST_F(RigTest, ChecksBeforeSending) {
  Open();
  EXPECT_FALSE(rig.SetFreq(7000000) || rig.SetTx(PM_TX)) << "not linked yet";
  Pass(300);
  for (const int32_t hz : {-5, 0, 9'999, 2'000'000'001}) EXPECT_FALSE(rig.SetFreqB(hz)) << hz;
  for (const int32_t mode : {0, 7, PM_RX}) EXPECT_FALSE(rig.SetMode(mode)) << mode;
  EXPECT_FALSE(rig.SetTx(PM_TX | PM_RX));
  EXPECT_TRUE(rig.SetFreq(10'000) && rig.SetFreqA(2'000'000'000));
  Pass(300);
  EXPECT_EQ(peer.Writes(), (Lines{"+F 10000", "+F 2000000000"}));
}

TEST_F(RigTest, WritesGoAheadOfPollsWhichNeverPileUp) {
  channel.delay = Milliseconds(400);
  Open();
  Pass(5000);
  peer.lines.clear();
  for (int32_t hz = 7000000; hz < 7000100; ++hz) ASSERT_TRUE(rig.SetFreq(hz));
  Pass(900);
  EXPECT_EQ(peer.lines.front().substr(0, 2), "+F");
  EXPECT_LE(peer.Writes().size(), 2u);
  EXPECT_EQ(peer.freq["VFOA"], 7000099);
  channel.delay = Milliseconds(1);
  Pass(1000);
  peer.lines.clear();
  Pass(1000);
  const auto polls = std::count(peer.lines.begin(), peer.lines.end(), "+f");
  EXPECT_TRUE(polls >= 5 && polls <= 10) << polls;
}

TEST_F(RigTest, AnOldValueDoesNotFlickerBackAndTheRealOneIsShown) {
  OpenAndSettle();
  peer.instead["+f"] = FakeRig::Done("get_freq:\nFrequency: 14074000");
  ASSERT_TRUE(rig.SetFreq(14075001) && rig.SetFreq(14075003));
  for (int i = 0; i < 30; ++i) {
    EXPECT_EQ(rig.Freq(), 14075003) << i * 10 << " ms";
    Pass(10);
  }
  peer.instead["+f"] = FakeRig::Done("get_freq:\nFrequency: 14075000");
  Pass(400);
  EXPECT_EQ(rig.Freq(), 14075000) << "the rig rounds";
  peer.instead["+F 7000000"] = "set_freq: 7000000\nRPRT -9\n";
  ASSERT_TRUE(rig.SetFreq(7000000));
  Pass(150);
  EXPECT_EQ(rig.Freq(), 14075000) << "refused";
}

TEST_F(RigTest, AfterABreakTheReleaseComesFirstThenTheVfo) {
  OpenAndSettle();
  ASSERT_TRUE(rig.SetTx(PM_TX));
  Pass(40);
  EXPECT_EQ(rig.Tx(), PM_TX) << "asked at once";
  ASSERT_TRUE(rig.SetFreqB(7010000));
  while (peer.vfo != "VFOB") Pass(1);
  channel.Break();
  EXPECT_EQ(rig.Link().state, State::Reconnecting);
  EXPECT_TRUE(rig.Link().stale);
  EXPECT_EQ(rig.Freq(), 14074000) << "the last value";
  EXPECT_TRUE(rig.SetTx(PM_RX));
  EXPECT_FALSE(rig.SetTx(PM_TX) || rig.SetFreq(7000000));
  peer.lines.clear();
  Pass(1000);
  EXPECT_EQ(peer.lines.at(0), "+T 0");
  EXPECT_EQ(peer.Writes(), (Lines{"+T 0", "+V VFOA"}));
  EXPECT_EQ(rig.Tx(), PM_RX);
  EXPECT_FALSE(rig.Link().stale);
}

TEST_F(RigTest, RetriesForEverEverSlowerAndCountsDown) {
  channel.mood = Mood::Refuses;
  Open();
  for (const int64_t gap : {500, 1000, 2000, 4000, 8000, 10000, 10000, 10000}) {
    const int before = channel.attempts;
    Pass(gap - 20);
    EXPECT_EQ(channel.attempts, before) << gap;
    Pass(21);  // a refusal takes one
    EXPECT_EQ(channel.attempts, before + 1) << gap;
  }
  EXPECT_EQ(reached, std::vector{false});
  EXPECT_EQ(rig.StatusStr(), "Port is not available");
  Pass(2500);
  EXPECT_EQ(rig.Link().retryInSeconds, 8);
  statusEvents = 0;
  Pass(3000);
  EXPECT_EQ(rig.Link().retryInSeconds, 5);
  EXPECT_EQ(statusEvents, 3);
  channel.mood = Mood::Answers;
  Pass(10000);
  EXPECT_EQ(rig.Link().state, State::Linked);
  channel.Break();
  Pass(700);
  EXPECT_EQ(rig.Link().state, State::Linked) << "after a good link it starts from the shortest";
}

TEST_F(RigTest, GivesUpWithinEachKindsLimit) {
  for (const auto& [mood, limit, status] :
       {std::tuple{Mood::Unreachable, 3000, "Port is not available"},
        std::tuple{Mood::Accepts, 2001, "Rig is not responding"}}) {
    rig.Close();
    channel.mood = mood;
    Open();
    Pass(limit - 1);
    EXPECT_EQ(rig.Link().state, State::Connecting);
    Pass(2);
    EXPECT_EQ(rig.Link().state, State::Reconnecting);
    EXPECT_EQ(rig.StatusStr(), status);
  }
  rig.SetTx(PM_RX);
  while (!channel.underWay) Pass(1);
  Pass(999);
  EXPECT_EQ(rig.Link().retryInSeconds, 0);
  Pass(1);
  EXPECT_GT(rig.Link().retryInSeconds, 0) << "of transmitting, sooner";
}

TEST_F(RigTest, AForeignAnswerEndsTheConnection) {
  for (const std::string& answer : {"RPRT 0\n"s, "get_mode:\nMode: USB\nRPRT 0\n"s,
                                    "HTTP/1.1 400\r\nRPRT 0\r\n"s, std::string(100'000, 'x')}) {
    OpenAndSettle();
    peer.instead["+f"] = answer;
    Pass(200);
    EXPECT_EQ(rig.Link().state, State::Reconnecting) << answer.substr(0, 20);
    EXPECT_EQ(rig.Freq(), 14074000);
    peer.instead.clear();
    rig.Close();
  }
}

TEST_F(RigTest, IsNotRespondingOnlyAfterSeveralFailures) {
  OpenAndSettle();
  peer.instead["+m"] = "get_mode:\nRPRT -6\n";
  peer.instead["+t"] = "get_ptt:\nRPRT -5\n";
  Pass(2000);
  EXPECT_EQ(rig.StatusStr(), "On-line") << "its frequency comes";
  peer.instead = {{"+f", "get_freq:\nRPRT -5\n"}};
  Pass(200);
  EXPECT_EQ(rig.StatusStr(), "On-line");
  Pass(300);
  EXPECT_EQ(rig.StatusStr(), "Rig is not responding");
  EXPECT_TRUE(rig.Link().stale);
  EXPECT_FALSE(rig.SetFreq(7000000));
  peer.instead["+\\get_powerstat"] = FakeRig::Done("get_powerstat:\nPower Status: 0");
  Pass(2000);
  EXPECT_EQ(rig.StatusStr(), "Rig is turned off");
  peer.instead.clear();
  Pass(1500);
  EXPECT_EQ(rig.StatusStr(), "On-line");
}

TEST_F(RigTest, LivesWithAServerThatDoesNotKnowACommand) {
  for (const char* line : {"+v", "+\\get_vfo_info VFOA", "+\\dump_caps"}) peer.instead[line] = "";
  peer.instead["+s"] = "get_split_vfo:\nRPRT -11\n";
  Open();
  Pass(30000);
  peer.lines.clear();
  Pass(8000);
  EXPECT_EQ(rig.Link().state, State::Linked);
  EXPECT_EQ(std::count(peer.lines.begin(), peer.lines.end(), "+s"), 0);
  ASSERT_TRUE(rig.SetFreqB(7010000));
  Pass(200);
  EXPECT_EQ(peer.Writes(), (Lines{"+V VFOB", "+F 7010000", "+V VFOA"}));
}

TEST_F(RigTest, MovingToAnotherServerTakesNothingAlong) {
  OpenAndSettle();
  channel.Break();
  rig.SetTx(PM_RX);
  rig.Move({"other", 2});
  EXPECT_EQ(rig.Freq(), 0);
  Pass(500);
  EXPECT_EQ(rig.Freq(), 14074000);
  EXPECT_EQ(peer.Writes(), Lines());
}

}  // namespace
}  // namespace velt
